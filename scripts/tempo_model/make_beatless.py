#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Makes sound without a steady beat, for the confidence of the tempo model.

  apt-get install fluidsynth fluid-soundfont-gm ffmpeg espeak-ng
  make_beatless.py DIR [--pieces 8] [--seconds 46]

noise     white, pink, brown, violet, slowly swelling
drone     pads and organs that change chord every 5 to 14 s
rain      notes at random times (a Poisson process), of one or several instruments
rubato    a pianist whose beat wanders by a random walk and stops at the ends of phrases
speech    sentences of random words by espeak-ng, in several languages' voices
Writes DIR/<kind>_<n>.wav. The same arguments give the same sounds.
"""

import argparse
import pathlib
import random
import subprocess

from compose import MAJOR, Player, read_styles
from make_music import render

WORDS = """morning river carries seven small boats towards the harbour where nobody waits and
every window holds a different evening light while old stories about winter travel slowly from
house to house until someone remembers what the question was""".split()
VOICES = ("en", "en-us", "de", "fr", "es", "it")
COLOURS = ("white", "pink", "brown", "violet", "white", "pink")


class Beatless(Player):
    """Notes at free times, written at 60 BPM so that seconds are beats."""

    def __init__(self, seed, programs):
        style = read_styles()[0]
        style.programs = {"comp": programs, "bass": programs, "lead": programs}
        super().__init__(style, {}, seed, 10)
        self.bpm = 60.0
        self.notes = []

    def drone(self, seconds):
        now = 0.0
        while now < seconds:
            length, chord = self.rng.uniform(5, 14), self.rng.randrange(7)
            for d in (-7, 0, 2, 4):
                self.notes.append((now + self.rng.uniform(0, 0.8), length, 1,
                                   50 + self.key + self.degree(chord + d), 70))
            now += length * 0.9

    def rain(self, seconds):
        now, rate = 0.0, self.rng.uniform(1.0, 7.0)
        while now < seconds:
            self.notes.append((now, self.rng.uniform(0.1, 1.5), self.rng.choice((0, 1, 2)),
                               self.rng.randrange(40, 90), self.rng.randrange(40, 115)))
            now += self.rng.expovariate(rate)

    def rubato(self, seconds):
        now, beat, n = 0.0, self.rng.uniform(0.35, 1.0), 0
        middle = beat
        while now < seconds:
            beat *= 2 ** self.rng.gauss(0, 0.16)
            beat += 0.1 * (middle - beat)
            for i in range(self.rng.choice((1, 2, 2, 3, 4))):
                self.notes.append((now + i * beat / 4 + self.rng.gauss(0, 0.03), beat, 2,
                                   60 + self.key + self.degree(self.rng.randrange(12)),
                                   self.rng.randrange(50, 110)))
            if n % 2 == 0:
                self.notes.append((now, 2 * beat, 1, 40 + self.key + self.rng.choice(MAJOR), 70))
            n += 1
            now += beat * (self.rng.uniform(1.6, 3.0) if n % self.rng.randrange(5, 10) == 0 else 1)


def noise(wav, n, seconds):
    swell = f"volume='0.6+0.4*sin(t*{0.1 + 0.07 * n})':eval=frame"
    source = f"anoisesrc=c={COLOURS[n % len(COLOURS)]}:r=44100:d={seconds}:s={n + 1}:a=0.4"
    subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i", source,
                    "-af", swell if n % 2 else "anull", "-c:a", "pcm_s16le", str(wav)], check=True)


def speech(wav, n, seconds):
    rng = random.Random(f"speech{n}")
    text = ". ".join(" ".join(rng.choices(WORDS, k=rng.randrange(4, 15)))
                     for _ in range(round(seconds / 3)))
    subprocess.run(["espeak-ng", "-v", VOICES[n % len(VOICES)], "-s", str(rng.randrange(120, 220)),
                    "-p", str(rng.randrange(20, 80)), "-w", str(wav), text], check=True)


def notes(kind, programs):
    def make(wav, n, seconds):
        rng = random.Random(f"{kind}{n}")
        player = Beatless(f"{kind}{n}", [rng.choice(programs)])
        getattr(player, kind)(seconds)
        render(player.midi(), wav)
    return make


KINDS = {"noise": noise, "speech": speech,
         "drone": notes("drone", (16, 19, 48, 52, 89, 91, 95, 49)),
         "rain": notes("rain", (0, 8, 11, 46, 24, 98, 112, 45)),
         "rubato": notes("rubato", (0, 1, 4, 24, 46, 6))}


def main():
    arguments = argparse.ArgumentParser(description=__doc__,
                                        formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("dir", type=pathlib.Path)
    arguments.add_argument("--pieces", type=int, default=8, help="of each kind")
    arguments.add_argument("--seconds", type=float, default=46.0)
    options = arguments.parse_args()
    options.dir.mkdir(parents=True, exist_ok=True)
    for n in range(options.pieces):
        for kind, make in KINDS.items():
            wav = options.dir / f"{kind}_{n}.wav"
            if not wav.exists():
                make(wav, n, options.seconds)


if __name__ == "__main__":
    main()
