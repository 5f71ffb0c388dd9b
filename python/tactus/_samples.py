# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Arrays of any kind, as the one channel that is heard."""

from __future__ import annotations

from typing import Any

import numpy as np
import numpy.typing as npt

from tactus._errors import BadSamples, Empty

MOST_CHANNELS = 64  # More than any file has: a longer second axis is time.
LOUDEST = 8.0  # 18 dB over full scale: louder floats weren't scaled to [-1, 1].
STEPS = 32768.0  # Of 16 bits, from 0 to -1.
FULL_SCALE = np.float32(32767.0)  # The highest of them is 1, as in the samples of files.
BLOCK = 1 << 20  # Samples that are doubles at a time.


def one_channel(samples: npt.ArrayLike) -> npt.NDArray[np.float32]:
    """The mean of the channels of `samples`, rounded to 16 bits, as a file's are."""
    array = np.asarray(samples)
    if array.ndim not in (1, 2):
        raise ValueError(f"samples have the shape (n,) or (n, channels), not {array.shape}")
    if array.size == 0:
        raise Empty(None, "there are no samples")
    if array.ndim == 2 and array.shape[1] > MOST_CHANNELS:
        raise ValueError(f"{array.shape[1]} channels of {array.shape[0]} samples: transpose them?")
    mono = np.empty(array.shape[0], np.float32)
    for start in range(0, array.shape[0], BLOCK):
        mono[start : start + BLOCK] = _mixed(array[start : start + BLOCK])
    return mono


def _mixed(array: npt.NDArray[Any]) -> npt.NDArray[np.float32]:
    scaled = _full_scale(array) * STEPS
    mono = scaled if scaled.ndim == 1 else scaled.mean(axis=1)
    # Halves go up where a file's do, in integers of 16 bits, and to the even step elsewhere.
    is_narrow = array.dtype.kind in "iu" and array.dtype.itemsize <= 2
    steps = np.floor(mono + 0.5) if is_narrow else np.rint(mono)
    cut: npt.NDArray[np.float32] = np.clip(steps, -STEPS, STEPS - 1.0).astype(np.float32)
    return cut / FULL_SCALE


def _full_scale(array: npt.NDArray[Any]) -> npt.NDArray[np.float64]:
    """As doubles, with the whole range of an integer type as [-1, 1)."""
    if array.dtype.kind == "f":
        return _checked(array.astype(np.float64))
    if array.dtype.kind not in "iu":
        raise TypeError(f"samples are floats or integers, not {array.dtype}")
    half = 2.0 ** (8 * array.dtype.itemsize - 1)
    middle = half if array.dtype.kind == "u" else 0.0
    return (array.astype(np.float64) - middle) / half


def _checked(array: npt.NDArray[np.float64]) -> npt.NDArray[np.float64]:
    if not np.isfinite(array).all():
        raise BadSamples(None, "samples that are infinite or no number")
    peak = float(np.abs(array).max())
    if peak > LOUDEST:
        raise BadSamples(None, f"float samples lie in [-1, 1], and these reach {peak:g}")
    return array
