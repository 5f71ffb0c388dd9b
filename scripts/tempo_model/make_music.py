#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Makes the music of known tempo that the tempo model is trained on.

  apt-get install fluidsynth fluid-soundfont-gm
  make_music.py DIR [--pieces 4] [--seconds 46] [--first 0]

Writes DIR/<genre>_<template>_<n>.wav and DIR/truth.csv (file, bpm, genre, template, beats, tonic,
minor): tonic 0 for C, minor 0 or 1.
The same arguments give the same notes; what exists already is not made again.
"""

import argparse
import csv
import pathlib
import subprocess
import tempfile

from compose import MINOR, Player, read_styles

SOUND_FONT = "/usr/share/sounds/sf2/FluidR3_GM.sf2"


def render(midi, wav):
    with tempfile.NamedTemporaryFile(suffix=".mid") as score:
        score.write(midi)
        score.flush()
        part = wav.with_suffix(".part")
        subprocess.run(["fluidsynth", "-n", "-i", "-q", "-g", "0.6", "-r", "44100", "-R", "0",
                        "-C", "0", "-o", "synth.polyphony=96", "-z", "1024",
                        "-o", "synth.dynamic-sample-loading=1", "-O", "s16", "-T", "wav",
                        "-F", str(part), SOUND_FONT, score.name],
                       check=True, stdout=subprocess.DEVNULL)
        part.rename(wav)


def main():
    arguments = argparse.ArgumentParser(description=__doc__,
                                        formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("dir", type=pathlib.Path)
    arguments.add_argument("--pieces", type=int, default=4, help="of each template")
    arguments.add_argument("--seconds", type=float, default=46.0)
    arguments.add_argument("--first", type=int, default=0, help="number of the first piece")
    options = arguments.parse_args()
    options.dir.mkdir(parents=True, exist_ok=True)
    rows = []
    for n in range(options.first, options.first + options.pieces):
        for style in read_styles():
            for t, template in enumerate(style.templates):
                name = f"{style.name}_{t}_{n}"
                player = Player(style, template, name, options.seconds).play()
                wav = options.dir / (name + ".wav")
                if not wav.exists():
                    render(player.midi(), wav)
                rows.append((wav.name, f"{player.bpm:.2f}", style.name, t, style.beats, player.key,
                             int(player.scale == MINOR)))
    with open(options.dir / "truth.csv", "a" if options.first else "w", newline="",
              encoding="utf-8") as table:
        writer = csv.writer(table, lineterminator="\n")
        if not options.first:
            writer.writerow(("file", "bpm", "genre", "template", "beats", "tonic", "minor"))
        writer.writerows(rows)
    print(f"{len(rows)} pieces")


if __name__ == "__main__":
    main()
