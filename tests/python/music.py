# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Music of known tempo, and files of it."""

from __future__ import annotations

import pathlib
import subprocess
import wave

import numpy as np
import numpy.typing as npt

RATE = 44100
SECONDS = 31.0  # The tempo of clips under 30 s comes from their length.


def song(bpm: float, seconds: float = SECONDS, rate: int = RATE) -> npt.NDArray[np.float64]:
    """A drum on each beat, a hat between and a bass note each measure, in [-1, 1]."""
    times = np.arange(round(seconds * rate)) / rate
    beat = 60.0 / bpm
    noise = np.random.default_rng(1).uniform(-1.0, 1.0, times.size)
    since_beat = times % beat
    since_hat = (times + beat / 2) % beat
    bass = np.array([55.0, 65.41, 49.0, 58.27])[(times // (4 * beat)).astype(int) % 4]
    drum = 0.6 * np.sin(2 * np.pi * 52.0 * since_beat) * np.exp(-14.0 * since_beat)
    click = 0.3 * noise * np.exp(-300.0 * since_beat)
    hat = 0.15 * noise * np.exp(-70.0 * since_hat)
    return drum + click + hat + 0.2 * np.sin(2 * np.pi * bass * times) * np.exp(-3.0 * since_beat)


def sixteen_bits(samples: npt.NDArray[np.float64]) -> npt.NDArray[np.int16]:
    return np.rint(samples * 32000.0).astype(np.int16)


def write_wav(path: pathlib.Path, samples: npt.NDArray[np.int16], rate: int = RATE) -> pathlib.Path:
    """`samples` of the shape (n,) or (n, channels)."""
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1 if samples.ndim == 1 else samples.shape[1])
        file.setsampwidth(2)
        file.setframerate(rate)
        file.writeframes(samples.tobytes())
    return path


def write_song(path: pathlib.Path, bpm: float, **how: float) -> pathlib.Path:
    return write_wav(path, sixteen_bits(song(bpm, **how)))


def encode(source: pathlib.Path, *targets: pathlib.Path, tags: tuple[str, ...] = ()) -> None:
    """By another maker's encoders, as the names of the targets tell."""
    command = ["ffmpeg", "-v", "error", "-y", "-i", str(source)]
    for target in targets:
        command += [*(word for tag in tags for word in ("-metadata", tag)), str(target)]
    subprocess.run(command, check=True)
