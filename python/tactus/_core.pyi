# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The compiled part: the library's functions, with problems by name."""

from collections.abc import Callable
from typing import Any, Protocol

import numpy as np
import numpy.typing as npt

__version__: str

class Heard: ...

class _SupportsIsSet(Protocol):
    def is_set(self) -> bool: ...

_Answer = tuple[str, int, dict[str, Any], Heard]

def analyze_file(
    path: bytes,
    progress: Callable[[int], object] | None,
    cancel: _SupportsIsSet | None,
    envelopes: bool,
) -> _Answer: ...
def analyze_samples(
    samples: npt.NDArray[np.float32],
    rate: int,
    progress: Callable[[int], object] | None,
    cancel: _SupportsIsSet | None,
    envelopes: bool,
) -> _Answer: ...
def to_json(heard: Heard) -> str: ...
def read_tags(path: bytes) -> dict[str, Any]: ...
def store_tempo(path: bytes, heard: Heard, tempo: float) -> str: ...
