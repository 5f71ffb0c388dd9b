#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Makes music whose every beat is known: the styles of scripts/tempo_model, played and rendered.

  apt-get install fluidsynth fluid-soundfont-gm
  make_music.py DIR [--pieces 2] [--seconds 46] [--first 20] [--only REGEX] [--drift 0.0]

Writes DIR/<genre>_<template>_<n>.wav and a line each to DIR/truth.jsonl: file, bpm, genre, template,
beatsPerBar, beats and downbeats in seconds. The same arguments give the same notes; what exists
already is not rendered again. `--drift 0.03` lets the tempo wander by up to 3 % and back over half
a minute or so.
"""

import argparse
import json
import math
import pathlib
import random
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tempo_model"))

import make_music as tempo_music  # noqa: E402  (the path comes first)
from compose import Player, read_styles  # noqa: E402


class Wander:
    """Where a moment of the even piece lies when the tempo wanders by `amount` at the most."""

    def __init__(self, amount, seed):
        rng = random.Random(f"wander {seed}")
        self.turn = 2 * math.pi / rng.uniform(20, 40)
        self.start = rng.uniform(0, 2 * math.pi)
        self.amount = amount

    def __call__(self, t):
        swing = math.cos(self.start) - math.cos(self.start + self.turn * t)
        return t + self.amount / self.turn * swing


def truth_of(player, name, place):
    beat = round(60e6 / player.bpm) / 1e6  # a MIDI file counts whole microseconds
    beats = [place(k * beat) for k in range(player.bars * player.style.beats)]
    return {"file": name + ".wav", "bpm": player.bpm, "genre": player.style.name,
            "beatsPerBar": player.style.beats, "beats": [round(t, 6) for t in beats],
            "downbeats": [round(t, 6) for t in beats[::player.style.beats]]}


def main():
    arguments = argparse.ArgumentParser(description=__doc__,
                                        formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("dir", type=pathlib.Path)
    arguments.add_argument("--pieces", type=int, default=2, help="of each template")
    arguments.add_argument("--seconds", type=float, default=46.0)
    arguments.add_argument("--first", type=int, default=20, help="number of the first piece")
    arguments.add_argument("--only", default="", help="genres that this matches")
    arguments.add_argument("--drift", type=float, default=0.0)
    options = arguments.parse_args()
    options.dir.mkdir(parents=True, exist_ok=True)
    styles = [s for s in read_styles() if re.search(options.only, s.name)]
    with open(options.dir / "truth.jsonl", "a", encoding="utf-8") as table:
        for n in range(options.first, options.first + options.pieces):
            for style, t in [(s, t) for s in styles for t in range(len(s.templates))]:
                name = f"{style.name}_{t}_{n}"
                player = Player(style, style.templates[t], name, options.seconds).play()
                place = Wander(options.drift, name)
                player.notes = [(place(note[0]), *note[1:]) for note in player.notes]
                score = player.midi()
                if not (options.dir / (name + ".wav")).exists():
                    tempo_music.render(score, options.dir / (name + ".wav"))
                line = truth_of(player, name, place) | {"template": t}
                table.write(json.dumps(line) + "\n")
                table.flush()


if __name__ == "__main__":
    main()
