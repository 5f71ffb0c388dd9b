# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The functions for one song."""

from __future__ import annotations

import math
import operator
import os
from collections.abc import Callable
from typing import Any, Protocol

import numpy.typing as npt

from tactus import _core
from tactus._errors import BadSamples, NotStored, problem_of
from tactus._samples import one_channel
from tactus._song import Song, Tags, song_of

AnyPath = str | bytes | os.PathLike[str] | os.PathLike[bytes]
Progress = Callable[[int], object]

LOWEST_RATE, HIGHEST_RATE = 1_000, 1_000_000  # Hz


class SupportsIsSet(Protocol):
    """What may cancel a hearing, such as a `threading.Event`."""

    def is_set(self) -> bool:
        """Whether the hearing is to end."""


def analyze(
    path: AnyPath,
    *,
    progress: Progress | None = None,
    cancel: SupportsIsSet | None = None,
    envelopes: bool = False,
) -> Song:
    """Hears the file at `path`. The same file gives the same song, bit for bit.

    `progress` takes percents from 0 to 100, rising, on the calling thread. `cancel` is asked
    `is_set()` ten times a second; once it says yes, `Cancelled` is raised. `envelopes` keeps the
    two curves of loudness, one value for each 5.8 ms.

    The interpreter's lock is released meanwhile, and Ctrl+C ends the hearing. Raises a
    `TactusError` for a file that can't be heard; a song without a beat has the tempo None.
    """
    name = os.fspath(path)
    return _heard(name, _core.analyze_file(os.fsencode(name), progress, cancel, envelopes))


def analyze_samples(
    samples: npt.ArrayLike,
    rate: int,
    *,
    progress: Progress | None = None,
    cancel: SupportsIsSet | None = None,
    envelopes: bool = False,
) -> Song:
    """Hears an array of the shape (n,) or (n, channels), with `rate` samples a second.

    Floats of any width are in [-1, 1]; what lies outside is cut. Integers of any width are scaled
    from their whole range, unsigned ones around its middle. Channels are averaged and rounded to
    16 bits, as those of files are; rates other than 44100 Hz are resampled. The rest is as with
    `analyze`.

    Raises `BadSamples`, which is also a `ValueError`, for samples that are infinite, no number or
    far outside [-1, 1], and for rates outside 1,000 to 1,000,000; `Empty` for no samples;
    `ValueError` for another shape and `TypeError` for another type.
    """
    hertz = operator.index(rate)
    if not LOWEST_RATE <= hertz <= HIGHEST_RATE:
        raise BadSamples(None, f"a rate of {hertz} Hz, which isn't in 1,000 to 1,000,000")
    mono = one_channel(samples)
    return _heard(None, _core.analyze_samples(mono, hertz, progress, cancel, envelopes))


def read_tags(path: AnyPath) -> Tags:
    """Reads the tags of a file of any kind. What isn't there, or can't be read, is empty."""
    return Tags(**_core.read_tags(os.fsencode(path)))


def store_tempo(path: AnyPath, song: Song, tempo: float | None = None) -> None:
    """Writes a tempo into the tag of the MP3 file at `path`, with two decimals.

    The file must be the one that `song` was heard from, by this process, and unchanged. `tempo`
    in beats a minute takes the place of the song's own. Whatever tempo stood there is replaced,
    and nothing else changes. Raises `NotStored`, and leaves the file as it was, otherwise.
    """
    name = os.fspath(path)
    bpm = song.tempo if tempo is None else float(tempo)
    if bpm is None or song._heard is None or not (0.0 < bpm < math.inf):
        raise NotStored(name, "no_tempo")
    refusal = _core.store_tempo(os.fsencode(name), song._heard, bpm)
    if refusal:
        raise NotStored(name, refusal)


def _heard(path: str | bytes | None, answer: tuple[str, int, dict[str, Any], _core.Heard]) -> Song:
    problem, number, values, heard = answer
    if problem:
        raise problem_of(problem, number, path, _core.to_json(heard))
    return song_of(path, values, heard)
