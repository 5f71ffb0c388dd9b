#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Trains the tempo model, measures it, and writes src/song/TempoModel.cpp.

  train.py --music FEATURES TRUTH --beatless FEATURES [--unseen NAME FEATURES TRUTH]...
           [--ridge 10] [--write]

FEATURES are what tactus-tempo-features prints, TRUTH are the tables of the makers. `--unseen` names
music that no model is trained on. Every figure printed is of songs whose template, and in the second
row whose whole genre, the model in question never saw. Needs python3-numpy.
"""

import argparse
import datetime
import pathlib

import numpy

import model

FOLDS = 10
TABLE = pathlib.Path(__file__).resolve().parents[2] / "src/song/TempoModel.cpp"
HEAD = """// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Written by scripts/tempo_model/train.py; docs/song/TempoCandidates.md has the figures.

#include "song/TempoModel.h"

#include <array>

namespace {

"""
TAIL = """} // namespace

std::span<float const> ReadingWeights() {
    return kReadingWeights;
}

std::span<float const> ConfidenceWeights() {
    return kConfidenceWeights;
}
"""


def row(name, songs, scores):
    print(f"| {name} | {len(songs)} | {model.reported_right(songs):.1%} | "
          f"{model.among(songs, scores, 1):.1%} | {model.among(songs, scores, 2):.1%} | "
          f"{model.among(songs, scores, 3):.1%} | {model.among(songs, scores, 99):.1%} |")


def score_all(songs, weights):
    return {s: model.softmax(s.features @ weights) for s in songs if len(s.bpm)}


def confidence_rows(songs, scores):
    """Features of the songs, each with its first candidate and that one's score."""
    rows = []
    for s in songs:
        if s in scores:
            first = int(numpy.argmax(scores[s]))
            features = s.song[first].copy()
            features[0] = scores[s][first]
            rows.append(features)
    return numpy.array(rows)


def confidence(x, weights):
    return 1 / (1 + numpy.exp(-(x @ weights[:-1] + weights[-1])))


def array_text(name, values, origin):
    numbers = [f"{numpy.float32(v):.9g}" for v in values]
    numbers = [n + ("f" if "." in n or "e" in n else ".0f") for n in numbers]
    lines, line = [], "   "
    for number in numbers:
        if len(line) + len(number) + 2 > 100:
            lines.append(line)
            line = "   "
        line += " " + number + ","
    lines.append(line)
    return (f"// Tuned: {origin}\nconstexpr std::array<float, {len(values)}> {name} = {{\n" +
            "\n".join(lines) + "\n};\n\n")


def write_table(readings, confident, songs, beatless):
    today = datetime.date.today().isoformat()
    origin = (f"scripts/tempo_model/train.py, {today}; {songs} pieces by make_music.py\n"
              f"// and {beatless} sounds by make_beatless.py.")
    TABLE.write_text(HEAD + array_text("kReadingWeights", readings, origin) +
                     array_text("kConfidenceWeights", confident, origin) + TAIL, encoding="utf-8")


def measure_readings(music, unseen, ridge):
    print("| music | pieces | reported | first | first two | first three | any |\n"
          "|---|---|---|---|---|---|---|")
    by_template = model.cross_validate(music, FOLDS, ridge)
    row("generated, folds by template", music, by_template)
    for s in music:
        s.group, s.template = s.genre, s.group
    row("generated, folds by genre", music, model.cross_validate(music, FOLDS, ridge))
    weights = model.fit_readings(music, ridge)
    for name, songs in unseen:
        row(name + ", never trained on", songs, score_all(songs, weights))
    everything = [s for _, songs in unseen for s in songs]
    for name, songs, scores in (("generated, folds by template", music, by_template),
                                ("never trained on", everything, score_all(everything, weights))):
        rows, error = model.reliability(songs, scores)
        print(f"\nReliability, {name}: mean error {error:.3f}\n\n"
              "| score | candidates | mean score | right |\n|---|---|---|---|")
        for low, high, count, mean, right in rows:
            print(f"| {low:.2f} to {min(high, 1):.2f} | {count} | {mean:.3f} | {right:.3f} |")
    return by_template, weights


def kind_of(song):
    return song.file.rsplit("/", 1)[-1].rsplit("_", 1)[0]


def measure_confidence(music, by_template, weights, beatless, unseen, ridge):
    """Fits the confidence; music's scores are those of the folds, as the model knows its music."""
    calm = confidence_rows(beatless, score_all(beatless, weights))
    lively = confidence_rows(music, by_template)
    x = numpy.vstack([lively, calm])
    y = numpy.arange(len(x)) < len(lively)
    fitted = model.fit_logistic(x, y, ridge)
    folds = numpy.array([model.fold_of(s.group, FOLDS) for s in music if s in by_template] +
                        [model.fold_of(s.group, FOLDS) for s in beatless if len(s.bpm)])
    held = numpy.zeros(len(x))
    for fold in range(FOLDS):
        test = folds == fold
        if test.any():
            held[test] = confidence(x[test], model.fit_logistic(x[~test], y[~test], ridge))
    print("\n| sound | pieces | median confidence | below 0.5 |\n|---|---|---|---|")

    def line(name, values):
        print(f"| {name} | {len(values)} | {numpy.median(values):.2f} | {(values < .5).mean():.0%} |")
    line("generated music, by folds", held[y])
    kinds = numpy.array([kind_of(s) for s in beatless if len(s.bpm)])
    for kind in sorted(set(kinds)):
        line(kind + ", by folds", held[~y][kinds == kind])
    print(f"(without candidates: {sum(not len(s.bpm) for s in beatless)} of {len(beatless)})")
    for name, songs in unseen:
        line(name + ", never trained on",
             confidence(confidence_rows(songs, score_all(songs, weights)), fitted))
    return fitted


def main():
    arguments = argparse.ArgumentParser(description=__doc__,
                                        formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("--music", nargs=2, required=True)
    arguments.add_argument("--beatless", required=True)
    arguments.add_argument("--unseen", nargs=3, action="append", default=[])
    arguments.add_argument("--ridge", type=float, default=10.0)
    arguments.add_argument("--write", action="store_true", help="write the table")
    options = arguments.parse_args()

    truth = model.read_truth(options.music[1])
    music = model.read_songs(options.music[0], truth, "music",
                             lambda name, row: f"{row['genre']}_{row['template']}")
    for s in music:
        s.genre = s.group.rsplit("_", 1)[0]
    beatless = model.read_songs(options.beatless, None, "beatless", lambda name, row: name)
    unseen = [(name, model.read_songs(features, model.read_truth(table), name, lambda n, r: n))
              for name, features, table in options.unseen]
    by_template, weights = measure_readings(music, unseen, options.ridge)
    fitted = measure_confidence(music, by_template, weights, beatless, unseen, options.ridge)
    if options.write:
        write_table(weights, fitted, len(music), len(beatless))


if __name__ == "__main__":
    main()
