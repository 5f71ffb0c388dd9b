# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Folders of music that several tests share."""

from __future__ import annotations

import os
import pathlib

import pytest

from music import encode, song, sixteen_bits, write_song, write_wav

KINDS = ("wav", "mp3", "flac", "ogg", "m4a")


@pytest.fixture(scope="session")
def track(tmp_path_factory: pytest.TempPathFactory) -> pathlib.Path:
    """A WAV file of 125 BPM, 31 s."""
    return write_song(tmp_path_factory.mktemp("track") / "track.wav", 125.0)


@pytest.fixture(scope="session")
def fifty(tmp_path_factory: pytest.TempPathFactory) -> list[pathlib.Path]:
    """Ten songs, each in five kinds: other tempos, rates, channels and lengths."""
    folder = tmp_path_factory.mktemp("fifty")
    paths = []
    for i in range(10):
        rate = (44100, 22050, 48000)[i % 3]
        mono = song(84.0 + 7.5 * i, seconds=31.0 if i == 9 else 4.0 + i / 2, rate=rate)
        samples = sixteen_bits(mono if i % 2 else mono[:, None] * [0.9, 0.4])
        kinds = [folder / f"{i}.{kind}" for kind in KINDS]
        encode(write_wav(kinds[0], samples, rate), *kinds[1:])
        paths += kinds
    return paths


@pytest.fixture(scope="session")
def program() -> str:
    """The command line that was built with the package."""
    return os.environ["TACTUS_PROGRAM"]
