#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Makes the music that the harmony model is judged by and never trained on: chord charts of known
key, accompanied by another program's grooves and played with other instruments.

  apt-get install mma fluidsynth fluid-soundfont-gm timgm6mb-soundfont musescore-general-soundfont-small
  make_judged.py DIR [--pieces 120] [--seconds 34]

Writes DIR/<groove>_<n>.wav and DIR/truth.csv (file, tonic, minor, group, font): tonic 0 for C, minor
0 or 1. The same arguments give the same notes.
"""

import argparse
import csv
import pathlib
import random
import re
import subprocess
import tempfile

GROOVES = pathlib.Path("/usr/share/mma/lib/stdlib")
FONTS = ("/usr/share/sounds/sf2/TimGM6mb.sf2",
         "/usr/share/sounds/sf3/MuseScore_General_Lite.sf3",
         "/usr/share/sounds/sf2/FluidR3_GM.sf2")
NAMES = ("C", "Db", "D", "Eb", "E", "F", "Gb", "G", "Ab", "A", "Bb", "B")
STEPS = {"I": 0, "II": 2, "III": 4, "IV": 5, "V": 7, "VI": 9, "VII": 11}
# One chord a bar; small numerals are minor, what follows is the chart's suffix.
MAJOR = """I vi IV V
I V vi IV
I IV V7 I
ii7 V7 IM7 IM7
I7 I7 I7 I7 IV7 IV7 I7 I7 V7 IV7 I7 V7
I I IV I I I V7 V7 I I7 IV IV I V7 I I
I bVII IV I
I iii IV V
IM7 vi7 ii7 V7
I V vi iii IV I IV V
I VI7 II7 V7
I IV I V7
I I7 IV iv I V7 I I
I bVI bVII I
I ii IV V
IM7 IVM7 IM7 IVM7 ii7 V7 IM7 IM7""".splitlines()
MINOR = """i bVI bIII bVII
i iv V7 i
i bVII bVI V7
i7 iv7 i7 V7
iim7b5 V7 i i
i IV i IV
i bVII bVI bVII
i7 i7 i7 i7 iv7 iv7 i7 i7 bVI7 V7 i7 V7
i bVI iv V
i v i bVII
i iv bVII bIII bVI iim7b5 V7 i
i i bVI V7""".splitlines()


def chord(numeral, tonic):
    flat, roman, suffix = re.fullmatch(r"(b?)([IViv]+)(.*)", numeral).groups()
    root = NAMES[(tonic + STEPS[roman.upper()] - len(flat)) % 12]
    minor = roman.islower() and not suffix.startswith("m")
    return root + ("m" if minor else "") + suffix


def grooves():
    """The first groove of every file of the library, with its beats a bar."""
    for path in sorted(GROOVES.glob("*.mma")):
        text = path.read_text(encoding="latin-1")
        name = re.search(r"^DefGroove\s+(\S+)", text, re.MULTILINE | re.IGNORECASE)
        beats = re.search(r"^Time\s+(\d+)", text, re.MULTILINE | re.IGNORECASE)
        if name and not name.group(1).lower().startswith(("metronome", "none")):
            yield name.group(1), int(beats.group(1)) if beats else 4


def chart(rng, groove, beats, tonic, minor, seconds):
    tempo = rng.randrange(84, 152)
    scheme = rng.choice(MINOR if minor else MAJOR).split()
    bars = max(len(scheme), round(seconds * tempo / 60 / beats))
    lines = [f"RndSeed {rng.randrange(10000)}", f"Tempo {tempo}", f"Groove {groove}"]
    lines += [f"{bar + 1} {chord(scheme[bar % len(scheme)], tonic)}" for bar in range(bars)]
    return "\n".join(lines) + "\n"


def play(score, wav, font):
    with tempfile.TemporaryDirectory() as folder:
        source, midi = pathlib.Path(folder, "chart.mma"), pathlib.Path(folder, "chart.mid")
        source.write_text(score, encoding="ascii")
        done = subprocess.run(["mma", "-f", str(midi), str(source)], check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if done.returncode or not midi.exists():
            return False
        part = wav.with_suffix(".part")
        subprocess.run(["fluidsynth", "-n", "-i", "-q", "-g", "0.5", "-r", "44100", "-R", "1",
                        "-C", "0", "-z", "1024", "-O", "s16", "-T", "wav", "-F", str(part), font,
                        str(midi)], check=True, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)
        part.rename(wav)
        return True


def main():
    arguments = argparse.ArgumentParser(description=__doc__,
                                        formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("dir", type=pathlib.Path)
    arguments.add_argument("--pieces", type=int, default=120)
    arguments.add_argument("--seconds", type=float, default=34.0)
    options = arguments.parse_args()
    options.dir.mkdir(parents=True, exist_ok=True)
    kinds = list(grooves())
    rows = []
    for n in range(options.pieces):
        groove, beats = kinds[n * 7 % len(kinds)]
        rng = random.Random(f"{groove}{n}")
        tonic, minor = rng.randrange(12), rng.random() < 0.45
        font = FONTS[n % len(FONTS)]
        wav = options.dir / f"{groove}_{n}.wav"
        score = chart(rng, groove, beats, tonic, minor, options.seconds)
        if wav.exists() or play(score, wav, font):
            rows.append((wav.name, tonic, int(minor), groove, pathlib.Path(font).stem))
        else:
            print(f"{groove}: not played")
    with open(options.dir / "truth.csv", "w", newline="", encoding="utf-8") as table:
        writer = csv.writer(table, lineterminator="\n")
        writer.writerow(("file", "tonic", "minor", "group", "font"))
        writer.writerows(rows)
    print(f"{len(rows)} pieces")


if __name__ == "__main__":
    main()
