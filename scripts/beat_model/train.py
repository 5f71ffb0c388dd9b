#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Trains the beat model, measures it, and writes src/song/BeatModel.cpp.

  train.py FEATURES TRUTH [--unseen NAME FEATURES TRUTH]... [--ridge 10] [--write]

FEATURES are what tactus-beat-features prints, TRUTH are the tables of the makers. `--unseen` names
music that no model is trained on. Every figure printed is of songs whose template, in the second
row whose whole genre, the model in question never saw. Needs python3-numpy.
"""

import argparse
import datetime
import json
import pathlib
import sys

import numpy

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tempo_model"))

import model  # noqa: E402  (the path comes first)

FOLDS = 10
TABLE = pathlib.Path(__file__).resolve().parents[2] / "src/song/BeatModel.cpp"
READINGS = [(3, first) for first in range(6)] + [(4, first) for first in range(8)]
# Seconds from a note to its being heard: the median of lone strokes of five drums of the sound
# font, up to 2 % of their height (measure_delay.py).
RENDERER_DELAY = 0.0043
RIGHT = 0.9  # part of the beats of a piece that must be right for the piece to be
SAME_TEMPO = 0.02
HEAD = """// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Written by scripts/beat_model/train.py; docs/song/BeatTimes.md has the figures.

#include "song/BeatModel.h"

#include "song/BeatFeatures.h"

#include <array>

namespace {

"""
TAIL = """} // namespace

std::span<float const> BeatWeights() {
    return kBeatWeights;
}
"""


def part_near(these, those, tolerance):
    """Part of these moments that have one of those nearby."""
    if not len(these) or not len(those):
        return 0.0
    return float((abs(these[:, None] - those[None]).min(axis=1) < tolerance).mean())


class Song:
    """One line of tactus-beat-features with what is known about the song."""

    def __init__(self, line, truth, delay):
        self.file = line["file"].rsplit("/", 1)[-1]
        self.genre, self.bar = truth["genre"], truth["beatsPerBar"]
        self.group = f"{self.genre}_{truth['template']}"
        self.times = numpy.array(line["times"])
        self.points = numpy.array(line["points"]) / 44100
        self.marks = numpy.array(line["marks"]) / 44100
        self.steady = line["steady"]
        self.features = numpy.array(line["readings"], dtype=float)
        self.beats = numpy.array(truth["beats"]) + delay
        self.downbeats = numpy.array(truth["downbeats"]) + delay
        if len(self.times):
            self.judge()

    def judge(self):
        first, last = self.beats[0] - 0.05, self.beats[-1] + 0.05
        step = float(numpy.median(numpy.diff(self.times)))
        self.tolerance = min(0.06, step / 4)
        self.ratio = 2 * step / float(numpy.median(numpy.diff(self.beats)))
        inside = (self.times > first) & (self.times < last)
        number = numpy.arange(len(self.times))
        down = self.downbeats[(self.downbeats > self.times[0] - 0.05) &
                              (self.downbeats < self.times[-1] + 0.05)]
        self.on_beat, self.on_downbeat, reached = [], [], []
        for beats, start in READINGS:
            mine = self.times[inside & (number % (2 * beats) == start)]
            self.on_downbeat.append(part_near(mine, self.downbeats, self.tolerance))
            reached.append(part_near(down, mine, self.tolerance))
            mine = self.times[inside & (number % 2 == start % 2)]
            self.on_beat.append(part_near(mine, self.beats, self.tolerance))
        self.right = numpy.array(self.on_downbeat) >= RIGHT
        if not self.right.any():  # counted too fast: all downbeats are met, and others between
            self.right = numpy.array(reached) >= RIGHT

    def same_tempo(self, times=1):
        return len(self.times) and abs(self.ratio / times - 1) < SAME_TEMPO

    def off(self, moments):
        """Seconds from the nearest true half beat, each."""
        between = (self.beats[1:] + self.beats[:-1]) / 2
        true = numpy.sort(numpy.concatenate([self.beats, between]))
        moments = moments[(moments > true[0] - 0.05) & (moments < true[-1] + 0.05)]
        if not len(moments):
            return numpy.zeros(0)
        return moments - true[abs(moments[:, None] - true[None]).argmin(axis=1)]

    def engines_reading(self):
        """The reading that the engine's first mark stands for."""
        if not len(self.marks):
            return None
        return 6 + int(abs(self.times - self.marks[0]).argmin()) % 8


def read_songs(features, table, delay):
    with open(table, encoding="utf-8") as lines:
        truth = {row["file"]: row for row in map(json.loads, lines)}
    songs = []
    with open(features, encoding="utf-8") as lines:
        for line in map(json.loads, lines):
            name = line["file"].rsplit("/", 1)[-1]
            if name in truth:
                songs.append(Song(line, truth[name], delay))
    return songs


def fit(songs, ridge):
    """Weights of the conditional logit whose right readings may be several."""
    songs = [s for s in songs if len(s.times) and s.right.any() and not s.right.all()]
    spread = numpy.vstack([s.features for s in songs]).std(axis=0)
    spread[spread < 1e-6] = numpy.inf
    x = numpy.stack([s.features / spread for s in songs])
    right = numpy.stack([s.right for s in songs])
    rows = x.reshape(-1, x.shape[2])

    def shares(w):
        sums = x @ w
        likely = numpy.exp(sums - sums.max(axis=1, keepdims=True))
        return likely / likely.sum(axis=1, keepdims=True)

    def loss(w):
        p = shares(w)
        return ridge * (w @ w) / 2 - numpy.log(numpy.where(right, p, 0).sum(axis=1) + 1e-300).sum()

    w = numpy.zeros(len(spread))
    for _ in range(60):
        p = shares(w)
        wanted = numpy.where(right, p, 0)
        wanted /= wanted.sum(axis=1, keepdims=True)
        means = (p[:, None, :] @ x)[:, 0]
        gradient = ridge * w + rows.T @ (p - wanted).ravel()
        hessian = ridge * numpy.eye(len(w)) + (rows.T * p.ravel()) @ rows - means.T @ means
        step = model.descend(loss, w, gradient, numpy.linalg.solve(hessian, gradient))
        w = w - step
        if numpy.abs(step).max() < 1e-3:
            break
    return w / spread


def cross_validate(songs, ridge, group):
    shares = {}
    for fold in range(FOLDS):
        weights = fit([s for s in songs if model.fold_of(group(s), FOLDS) != fold], ridge)
        for s in songs:
            if model.fold_of(group(s), FOLDS) == fold and len(s.times):
                shares[s] = model.softmax(s.features @ weights)
    return shares


def part(flags):
    flags = list(flags)
    return f"{sum(flags) / len(flags):.1%}" if flags else "-"


def score_rows(name, songs, reading):
    """`reading(song)` is the number of the reading chosen, or None."""
    kinds = (("4/4", lambda s: s.same_tempo() and s.bar == 4),
             ("3/4", lambda s: s.same_tempo() and s.bar == 3),
             ("4/4 and 3/4", lambda s: s.same_tempo() and s.bar in (3, 4)),
             ("two beats a measure", lambda s: s.same_tempo() and s.bar == 2),
             ("counted at half the tempo", lambda s: s.same_tempo(2)))
    for kind, belongs in kinds:
        these = [(s, reading(s)) for s in songs if belongs(s)]
        if these:
            beat = [r is not None and s.on_beat[r] >= RIGHT for s, r in these]
            down = [r is not None and s.on_downbeat[r] >= RIGHT for s, r in these]
            print(f"| {name} | {kind} | {len(these)} | {part(beat)} | {part(down)} |")


def chosen(shares):
    return lambda s: int(numpy.argmax(shares[s]))


def print_times(name, songs):
    rows = [(numpy.median(s.off(s.points)), numpy.median(s.off(s.times)),
             numpy.median(abs(s.off(s.times))))
            for s in songs if s.same_tempo() or s.same_tempo(2)]
    if rows:
        rows = [row for row in rows if not numpy.isnan(row).any()]
        a = numpy.array(rows) * 1000
        q = numpy.percentile(abs(a[:, 1]), (50, 75, 90, 95))
        print(f"| {name} | {len(rows)} | {numpy.median(a[:, 0]):.1f} | {numpy.median(abs(a[:, 0])):.1f} | "
              f"{numpy.median(a[:, 1]):.1f} | {q[0]:.1f} | {q[1]:.1f} | {q[2]:.1f} | {q[3]:.1f} |")


def print_reliability(songs, shares):
    print("\n| confidence | pieces | mean | downbeats right |\n|---|---|---|---|")
    pairs = [(shares[s].max(), s.on_downbeat[int(numpy.argmax(shares[s]))] >= RIGHT)
             for s in songs if s in shares and s.same_tempo() and s.bar in (3, 4)]
    for low, high in ((0, .3), (.3, .5), (.5, .7), (.7, .9), (.9, 1.01)):
        inside = [(p, right) for p, right in pairs if low <= p < high]
        if inside:
            print(f"| {low:.1f} to {min(high, 1):.1f} | {len(inside)} | "
                  f"{numpy.mean([p for p, _ in inside]):.2f} | {part(r for _, r in inside)} |")


def write_table(weights, count):
    numbers = [f"{numpy.float32(v):.9g}" for v in weights]
    numbers = [n + ("f" if "." in n or "e" in n else ".0f") for n in numbers]
    lines, line = [], "   "
    for number in numbers:
        if len(line) + len(number) + 2 > 98:
            lines.append(line)
            line = "   "
        line += f" {number},"
    text = HEAD + f"// Tuned: scripts/beat_model/train.py, {datetime.date.today()}; {count} pieces.\n"
    text += "constexpr std::array<float, kBeatFeatures> kBeatWeights = {\n"
    TABLE.write_text(text + "\n".join(lines + [line]) + "\n};\n\n" + TAIL, encoding="utf-8")
    print(f"wrote {TABLE}")


def main():
    arguments = argparse.ArgumentParser(description=__doc__,
                                        formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("features")
    arguments.add_argument("truth")
    arguments.add_argument("--unseen", nargs=3, action="append", default=[])
    arguments.add_argument("--ridge", type=float, default=10.0)
    arguments.add_argument("--delay", type=float, default=RENDERER_DELAY)
    arguments.add_argument("--write", action="store_true", help="write the table")
    options = arguments.parse_args()
    songs = read_songs(options.features, options.truth, options.delay)
    unseen = [(n, read_songs(f, t, options.delay)) for n, f, t in options.unseen]

    print("| music | pieces | engine, median | engine, median of the size | median | "
          "median of the size | 75 % | 90 % | 95 % |\n|---|---|---|---|---|---|---|---|---|")
    for name, these in [("generated", songs)] + unseen:
        print_times(name, these)
    print(f"\n({sum(not len(s.times) for s in songs)} of {len(songs)} have no grid, "
          f"{sum(bool(s.same_tempo()) for s in songs)} the right tempo)\n\n"
          "| by | music | pieces | on the beat | downbeats right |\n|---|---|---|---|---|")
    weights = fit(songs, options.ridge)
    by_template = cross_validate(songs, options.ridge, lambda s: s.group)
    by_genre = cross_validate(songs, options.ridge, lambda s: s.genre)
    score_rows("engine", songs, Song.engines_reading)
    score_rows("folds by template", songs, chosen(by_template))
    score_rows("folds by genre", songs, chosen(by_genre))
    for name, these in unseen:
        score_rows(f"engine, {name}", these, Song.engines_reading)
        score_rows(f"{name}, never trained on", these,
                   lambda s: int(numpy.argmax(s.features @ weights)))
    print_reliability(songs, by_template)
    if options.write:
        write_table(weights, len(songs))


if __name__ == "__main__":
    main()
