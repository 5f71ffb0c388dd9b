#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Trains the harmony model, measures it, and writes src/song/HarmonyModel.cpp.

  train.py --music FEATURES TRUTH [--music ...] [--judged NAME FEATURES TRUTH]...
           [--keyless NAME FEATURES]... [--ridge 0.3] [--write]

FEATURES are what tactus-harmony-features prints, TRUTH are the tables of the makers. Folds follow
from the genre. No model is trained on what `--judged` and `--keyless` name.
Needs python3-numpy.
"""

import argparse
import csv
import datetime
import json
import pathlib
import subprocess
import zlib

import numpy

FOLDS = 10
PARTS = ("low", "middle", "high", "bass", "triads")
TABLE = pathlib.Path(__file__).resolve().parents[2] / "src/song/HarmonyModel.cpp"
HEAD = """// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Written by scripts/harmony/train.py; docs/song/Harmony.md has the figures.

#include "song/HarmonyModel.h"

#include <array>

namespace {

"""
TAIL = """} // namespace

std::span<float const> HarmonyWeights() {
    return kHarmonyWeights;
}
"""
# Published profiles, tonic first, major and minor, to compare with.
PROFILES = {
    # Krumhansl and Kessler 1982, as printed in Krumhansl, Cognitive Foundations of Musical Pitch
    # (Oxford 1990), page 30.
    "Krumhansl and Kessler": (
        (6.35, 2.23, 3.48, 2.33, 4.38, 4.09, 2.52, 5.19, 2.39, 3.66, 2.29, 2.88),
        (6.33, 2.68, 3.52, 5.38, 2.60, 3.53, 2.54, 4.75, 3.98, 2.69, 3.34, 3.17)),
    # Temperley, Music and Probability (MIT Press 2007), chapter 6.
    "Temperley": (
        (0.748, 0.060, 0.488, 0.082, 0.670, 0.460, 0.096, 0.715, 0.104, 0.366, 0.057, 0.400),
        (0.712, 0.084, 0.474, 0.618, 0.049, 0.460, 0.105, 0.747, 0.404, 0.067, 0.133, 0.330)),
    # Albrecht and Shanahan, The Use of Large Corpora to Train a New Type of Key-Finding Algorithm,
    # Music Perception 31 (2013).
    "Albrecht and Shanahan": (
        (0.238, 0.006, 0.111, 0.006, 0.137, 0.094, 0.016, 0.214, 0.009, 0.080, 0.008, 0.081),
        (0.220, 0.006, 0.104, 0.123, 0.019, 0.103, 0.012, 0.214, 0.062, 0.022, 0.061, 0.052)),
}


class Music:
    """Songs of one maker: features of all 24 keys, true keys (major from C up, then minor)."""

    def __init__(self, features, truth):
        rows = {}
        if truth:
            with open(truth, encoding="utf-8") as table:
                rows = {row["file"]: row for row in csv.DictReader(table)}
        self.songs, self.key, self.group = [], [], []
        with open(features, encoding="utf-8") as lines:
            for line in map(json.loads, lines):
                row = rows.get(line["file"])
                if truth and row is None:
                    continue
                self.songs.append(line)
                self.key.append(int(row["tonic"]) + 12 * int(row["minor"]) if row else -1)
                self.group.append(row.get("group") or row["genre"] if row else "")
        self.key = numpy.array(self.key)
        self.x = numpy.array([self.features(song) for song in self.songs])

    @staticmethod
    def features(song):
        keys = []
        for key in range(24):
            shares = [numpy.array(song[p]) for p in PARTS[:4]]
            shares += [numpy.array(song["triads"][:12]), numpy.array(song["triads"][12:])]
            seen = numpy.sqrt(numpy.concatenate([numpy.roll(s, -(key % 12)) for s in shares]))
            row = numpy.zeros(2 * len(seen) + 1)
            row[len(seen) * (key // 12):][:len(seen)] = seen
            row[-1] = key // 12
            keys.append(row)
        return keys


def softmax(sums):
    p = numpy.exp(sums - sums.max(axis=-1, keepdims=True))
    return p / p.sum(axis=-1, keepdims=True)


def fit(x, key, ridge):
    """Weights of the conditional logit over 24 keys: Newton's method with halved steps."""
    songs, _, count = x.shape
    right = x[numpy.arange(songs), key]
    flat = x.reshape(-1, count)

    def loss(w):
        sums = x @ w
        top = sums.max(axis=1)
        return (ridge * (w @ w) / 2 - (right @ w).sum() +
                (top + numpy.log(numpy.exp(sums - top[:, None]).sum(axis=1))).sum())

    w = numpy.zeros(count)
    for _ in range(60):
        p = softmax(x @ w)
        mean = numpy.einsum("nk,nkd->nd", p, x)
        gradient = ridge * w - (right - mean).sum(axis=0)
        hessian = (flat * p.reshape(-1, 1)).T @ flat - mean.T @ mean + ridge * numpy.eye(count)
        step, now = numpy.linalg.solve(hessian, gradient), loss(w)
        while loss(w - step) > now and numpy.abs(step).max() > 1e-9:
            step = step / 2
        w = w - step
        if numpy.abs(step).max() < 1e-5:
            return w
    raise ArithmeticError("the fit did not converge")


def by_profile(music, profiles):
    """Correlation of the whole chroma with a published profile, for all 24 keys."""
    rows = []
    for song in music.songs:
        chroma = sum(numpy.array(song[part]) for part in PARTS[:3])
        flat = chroma.std() == 0
        rows.append([0 if flat else numpy.corrcoef(
            numpy.roll(profiles[key // 12], key % 12), chroma)[0, 1] for key in range(24)])
    return numpy.array(rows)


def cross_validate(x, key, group, ridge):
    folds = numpy.array([zlib.crc32(g.encode()) % FOLDS for g in group])
    belief = numpy.zeros((len(key), 24))
    for fold in range(FOLDS):
        test = folds == fold
        if test.any():
            belief[test] = softmax(x[test] @ fit(x[~test], key[~test], ridge))
    return belief


def row(name, belief, key):
    found = belief.argmax(axis=1)
    apart, same = (found - key) % 12, found // 12 == key // 12
    exact = found == key
    fifth = same & ((apart == 7) | (apart == 5))
    relative = ~same & (apart == numpy.where(key // 12 == 0, 9, 3))
    parallel = ~same & (apart == 0)
    other = ~(exact | fifth | relative | parallel)
    print(f"| {name} | {len(key)} | " +
          " | ".join(f"{m.mean():.1%}" for m in (exact, fifth, relative, parallel, other)) + " |")


def reliability(belief, key, edges=(0, .3, .5, .7, .8, .9, .97, 1.0001)):
    found, sure = belief.argmax(axis=1), belief.max(axis=1)
    print("\n| confidence | pieces | mean | right |\n|---|---|---|---|")
    for low, high in zip(edges, edges[1:]):
        inside = (sure >= low) & (sure < high)
        if inside.any():
            print(f"| {low:.2f} to {min(high, 1):.2f} | {inside.sum()} | {sure[inside].mean():.2f} "
                  f"| {(found == key)[inside].mean():.2f} |")


def write_table(weights, songs):
    origin = (f"// Tuned: scripts/harmony/train.py, {datetime.date.today().isoformat()}; {songs} "
              "generated pieces.\n")
    numbers = [f"{numpy.float32(v):.9g}" for v in weights]
    numbers = [n + ("f" if "." in n or "e" in n else ".0f") for n in numbers]
    TABLE.write_text(HEAD + origin + f"constexpr std::array<float, {len(numbers)}> "
                     "kHarmonyWeights = {" + ", ".join(numbers) + "};\n\n" + TAIL, encoding="utf-8")
    subprocess.run(["clang-format-14", "-i", str(TABLE)], check=True)


def main():
    arguments = argparse.ArgumentParser(description=__doc__,
                                        formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("--music", nargs=2, action="append", required=True)
    arguments.add_argument("--judged", nargs=3, action="append", default=[])
    arguments.add_argument("--keyless", nargs=2, action="append", default=[])
    arguments.add_argument("--ridge", type=float, default=0.3)
    arguments.add_argument("--write", action="store_true")
    options = arguments.parse_args()
    music = [Music(*paths) for paths in options.music]
    judged = [(name, Music(*paths)) for name, *paths in options.judged]
    x = numpy.concatenate([m.x for m in music])
    key = numpy.concatenate([m.key for m in music])
    held = cross_validate(x, key, [g for m in music for g in m.group], options.ridge)
    weights = fit(x, key, options.ridge)
    print("| music | pieces | exact | fifth | relative | parallel | other |\n"
          "|---|---|---|---|---|---|---|")
    first = 0
    for (path, _), m in zip(options.music, music):
        row(f"{pathlib.Path(path).stem}, folds by genre", held[first:first + len(m.key)], m.key)
        first += len(m.key)
    for name, m in judged:
        row(f"{name}, never trained on", softmax(m.x @ weights), m.key)
        for author, profiles in PROFILES.items():
            row(f"{name}, profiles of {author}", by_profile(m, profiles), m.key)
    print("\nReliability, generated, folds by genre")
    reliability(held, key)
    if judged:
        print("\nReliability, never trained on")
        reliability(numpy.concatenate([softmax(m.x @ weights) for _, m in judged]),
                    numpy.concatenate([m.key for _, m in judged]))
    print("\n| sound without a key | pieces | median confidence | highest |\n|---|---|---|---|")
    for name, path in options.keyless:
        sure = softmax(Music(path, None).x @ weights).max(axis=1)
        print(f"| {name} | {len(sure)} | {numpy.median(sure):.2f} | {sure.max():.2f} |")
    if options.write:
        write_table(weights, len(key))


if __name__ == "__main__":
    main()
