# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Finds the tempo of music.

>>> import tactus
>>> song = tactus.analyze("song.mp3")
>>> song.tempo, song.beats[:3]

`analyze` hears a file and `analyze_samples` hears an array; both answer with a `Song`, whose times
are in seconds from the start of the sound. `iter_analyze` hears many files at once. `read_tags`
and `store_tempo` read and write what the file says of itself. What can't be heard raises a
`TactusError` with a path and a reason.
"""

from tactus._core import __version__
from tactus._errors import (
    BadSamples,
    Cancelled,
    CannotDecode,
    CannotOpen,
    Changed,
    Damaged,
    Empty,
    NoMemory,
    NoSound,
    NotAFile,
    NotAudio,
    NotStored,
    OtherKind,
    Protected,
    TactusError,
    TooLong,
)
from tactus._hearing import (
    analyze,
    analyze_samples,
    read_tags,
    store_tempo,
)
from tactus._many import Outcome, iter_analyze
from tactus._song import (
    Candidate,
    Envelope,
    Fingerprint,
    Harmony,
    Key,
    MixPoints,
    Song,
    Source,
    Tags,
)

__all__ = [
    "BadSamples",
    "Cancelled",
    "Candidate",
    "CannotDecode",
    "CannotOpen",
    "Changed",
    "Damaged",
    "Empty",
    "Envelope",
    "Fingerprint",
    "Harmony",
    "Key",
    "MixPoints",
    "NoMemory",
    "NoSound",
    "NotAFile",
    "NotAudio",
    "NotStored",
    "OtherKind",
    "Outcome",
    "Protected",
    "Song",
    "Source",
    "TactusError",
    "Tags",
    "TooLong",
    "__version__",
    "analyze",
    "analyze_samples",
    "iter_analyze",
    "read_tags",
    "store_tempo",
]
