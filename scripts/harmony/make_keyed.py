#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Makes the music of known key that the harmony model is trained on: the styles of the tempo model's
music, with chords of more kinds of keys.

  apt-get install fluidsynth fluid-soundfont-gm
  make_keyed.py DIR [--pieces 2] [--seconds 32]

Writes DIR/<genre>_<template>_<n>.wav and DIR/truth.csv (file, tonic, minor, group): tonic 0 for C,
minor 0 or 1, group is the genre. The same arguments give the same notes.
"""

import argparse
import csv
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tempo_model"))

from compose import MAJOR, MINOR, Player, read_styles  # noqa: E402
from make_music import render  # noqa: E402

DORIAN = (0, 2, 3, 5, 7, 9, 10)
MIXOLYDIAN = (0, 2, 4, 5, 7, 9, 10)
HARMONIC = (0, 2, 3, 5, 7, 8, 11)
# Kind of key: how often, minor or not, the scale, scales of single degrees, the degrees a bar each.
KINDS = (
    (10, 0, MAJOR, {}, ((0, 3, 4, 0), (0, 4, 5, 3), (0, 5, 3, 4), (0, 5, 1, 4), (1, 4, 0, 0),
                        (0, 2, 3, 4), (0, 3, 0, 4), (0, 3), (0, 0, 3, 4), (0, 4, 0, 4), (0, 2, 5, 3),
                        (0, 4, 5, 2, 3, 0, 3, 4), (0, 5, 1, 4, 2, 5, 1, 4), (0, 0, 0, 0))),
    (2, 0, MIXOLYDIAN, {4: MAJOR}, ((0, 6, 3, 0), (0, 0, 6, 3), (0, 6, 0, 4))),
    (2, 0, MIXOLYDIAN, {3: DORIAN, 4: MAJOR}, ((0, 0, 0, 0, 3, 3, 0, 0, 4, 3, 0, 4),
                                               (0, 3, 0, 0, 3, 3, 0, 0, 4, 4, 0, 0))),
    (5, 1, MINOR, {}, ((0, 5, 2, 6), (0, 6, 5, 6), (0, 3, 0, 6), (0, 3, 4, 0), (0, 0, 5, 6),
                       (0, 5, 6, 0), (0, 2, 6, 3), (0, 3), (0, 0, 0, 0), (0, 5, 3, 6))),
    (4, 1, MINOR, {4: HARMONIC}, ((0, 3, 4, 0), (0, 5, 3, 4), (0, 6, 5, 4), (1, 4, 0, 0),
                                  (0, 4, 0, 4), (0, 3, 6, 2, 5, 1, 4, 0), (0, 5, 4, 4))),
    (2, 1, DORIAN, {}, ((0, 3), (0, 3, 0, 6), (0, 2, 6, 3), (0, 0, 3, 3))),
    (1, 1, MINOR, {4: HARMONIC}, ((0, 0, 0, 0, 3, 3, 0, 0, 5, 4, 0, 4),)),
)


class KeyedPlayer(Player):
    """A piece whose scale may change with its chords."""

    def __init__(self, style, template, seed, seconds):
        super().__init__(style, template, seed, seconds)
        kind = self.rng.choices(KINDS, [k[0] for k in KINDS])[0]
        _, self.minor, self.home, self.of_degree, chords = kind
        self.chords = self.rng.choice(chords)
        self.scale = self.home

    def bar_of(self, bar):
        self.scale = self.of_degree.get(self.chords[bar % len(self.chords)], self.home)

    def drum_bar(self, bar, fill):
        self.bar_of(bar)
        super().drum_bar(bar, fill)

    def bass_bar(self, bar, chord):
        self.bar_of(bar)
        super().bass_bar(bar, chord)

    def comp_bar(self, bar, chord, voice="comp", channel=1, loud=78):
        self.bar_of(bar)
        super().comp_bar(bar, chord, voice, channel, loud)


def main():
    arguments = argparse.ArgumentParser(description=__doc__,
                                        formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("dir", type=pathlib.Path)
    arguments.add_argument("--pieces", type=int, default=2, help="of each template")
    arguments.add_argument("--seconds", type=float, default=32.0)
    options = arguments.parse_args()
    options.dir.mkdir(parents=True, exist_ok=True)
    rows = []
    for n in range(options.pieces):
        for style in read_styles():
            for t, template in enumerate(style.templates):
                name = f"{style.name}_{t}_{n}"
                player = KeyedPlayer(style, template, "key" + name, options.seconds).play()
                wav = options.dir / (name + ".wav")
                if not wav.exists():
                    render(player.midi(), wav)
                rows.append((wav.name, player.key, player.minor, style.name))
    with open(options.dir / "truth.csv", "w", newline="", encoding="utf-8") as table:
        writer = csv.writer(table, lineterminator="\n")
        writer.writerow(("file", "tonic", "minor", "group"))
        writer.writerows(rows)
    print(f"{len(rows)} pieces")


if __name__ == "__main__":
    main()
