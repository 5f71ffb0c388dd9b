#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Renders MIDI files that say their key, to judge the harmony model by.

  apt-get install fluidsynth fluid-soundfont-gm simutrans-data openttd-openmsx
  make_notated.py DIR [--seconds 60] FILE...

Takes a file with one key signature, unless that is C major, which programs write when nobody chose
one. Writes DIR/<name>.wav, no longer than so many seconds, and DIR/truth.csv (file, tonic, minor,
group). What a composer typed is the truth, right or not: many never chose minor.
"""

import argparse
import csv
import pathlib
import re
import subprocess
import wave

SOUND_FONT = "/usr/share/sounds/sf2/FluidR3_GM.sf2"


def notated(midi):
    """(tonic, minor) of the file's only key signature, or None."""
    found = set(re.findall(rb"\xff\x59\x02(.)([\x00\x01])", midi, re.DOTALL))
    if len(found) != 1:
        return None
    sharps, minor = found.pop()
    sharps, minor = int.from_bytes(sharps, "big", signed=True), minor[0]
    if (sharps, minor) == (0, 0) or not -7 <= sharps <= 7:
        return None
    return (7 * sharps + (9 if minor else 0)) % 12, minor


def cut(wav, seconds):
    with wave.open(str(wav)) as whole:
        parameters, frames = whole.getparams(), whole.readframes(int(seconds * 44100))
    with wave.open(str(wav), "wb") as short:
        short.setparams(parameters)
        short.writeframes(frames)


def main():
    arguments = argparse.ArgumentParser(description=__doc__,
                                        formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("dir", type=pathlib.Path)
    arguments.add_argument("files", type=pathlib.Path, nargs="+")
    arguments.add_argument("--seconds", type=float, default=60.0)
    options = arguments.parse_args()
    options.dir.mkdir(parents=True, exist_ok=True)
    rows = []
    for path in options.files:
        key = notated(path.read_bytes())
        if not key:
            continue
        wav = options.dir / (path.stem + ".wav")
        if not wav.exists():
            subprocess.run(["fluidsynth", "-n", "-i", "-q", "-g", "0.5", "-r", "44100", "-R", "0",
                            "-C", "0", "-z", "1024", "-O", "s16", "-T", "wav", "-F", str(wav),
                            SOUND_FONT, str(path)], check=True, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
            cut(wav, options.seconds)
        rows.append((wav.name, *key, path.stem))
    with open(options.dir / "truth.csv", "w", newline="", encoding="utf-8") as table:
        writer = csv.writer(table, lineterminator="\n")
        writer.writerow(("file", "tonic", "minor", "group"))
        writer.writerows(rows)
    print(f"{len(rows)} pieces")


if __name__ == "__main__":
    main()
