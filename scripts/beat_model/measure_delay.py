#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Prints how long after its note a stroke is heard, for five drums of the sound font.

Lone strokes at odd places are rendered as make_music.py does it; a stroke is heard once it reaches
2 % of its height. The renderer starts notes in steps of 1.45 ms, and the recordings of the drums
begin with some milliseconds of quiet. train.py takes the median of these medians for the distance
between notes and beats. Needs python3-numpy.
"""

import pathlib
import random
import struct
import sys
import tempfile
import wave

import numpy

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tempo_model"))

import make_music as tempo_music  # noqa: E402  (the path comes first)
from compose import TICKS, variable  # noqa: E402

DRUMS = {"clave": 75, "rim": 37, "hat": 42, "kick": 36, "snare": 38}
BPM = 100
RATE = 44100


def score(key, moments):
    """A MIDI file of strokes of one drum."""
    events = []
    for moment in moments:
        for at, message in ((moment, (0x99, key, 110)), (moment + 0.1, (0x89, key, 0))):
            events.append((round(at * BPM / 60 * TICKS), bytes(message)))
    track, now = b"\x00\xff\x51\x03" + round(60e6 / BPM).to_bytes(3, "big"), 0
    for tick, message in sorted(events):
        track += variable(tick - now) + message
        now = tick
    track += b"\x00\xff\x2f\x00"
    return (b"MThd" + struct.pack(">IHHH", 6, 0, 1, TICKS) + b"MTrk" +
            struct.pack(">I", len(track)) + track)


def delays(key, moments, folder):
    path = pathlib.Path(folder) / f"{key}.wav"
    tempo_music.render(score(key, moments), path)
    with wave.open(str(path)) as sound:
        samples = numpy.frombuffer(sound.readframes(sound.getnframes()), "<i2")
        samples = abs(samples.reshape(-1, sound.getnchannels()).mean(axis=1))
    for moment in moments:
        first = round((moment - 0.01) * RATE)
        stroke = samples[first:first + round(0.09 * RATE)]
        yield numpy.argmax(stroke > 0.02 * stroke.max()) / RATE - 0.01


def main():
    rng = random.Random(1)
    moments = [0.5 + i * 0.41731 + rng.random() * 0.05 for i in range(60)]
    medians = []
    with tempfile.TemporaryDirectory() as folder:
        for name, key in DRUMS.items():
            medians.append(float(numpy.median(list(delays(key, moments, folder)))))
            print(f"{name}: {1000 * medians[-1]:.2f} ms")
    print(f"median: {1000 * float(numpy.median(medians)):.2f} ms")


if __name__ == "__main__":
    main()
