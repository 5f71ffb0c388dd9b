# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""What goes wrong, as exceptions, and the sentences for it."""

from __future__ import annotations

import json
import os
from typing import Any

Path = str | bytes


class TactusError(Exception):
    """Something can't be heard or written.

    `path` is the file as it was named, or None for samples; `reason` says why in a few words.
    """

    path: Path | None
    reason: str
    _record: str = "null"

    def __init__(self, path: Path | None, reason: str) -> None:
        super().__init__(path, reason)
        self.path = path
        self.reason = reason

    def to_json(self) -> str:
        """The record "tactus-song-1" of a file that can't be heard; "null" where there is none."""
        return self._record

    def to_dict(self) -> dict[str, Any] | None:
        """The same record as a dictionary."""
        record: dict[str, Any] | None = json.loads(self._record)
        return record

    def __str__(self) -> str:
        if self.path is None:
            return self.reason
        return f"{os.fsdecode(self.path)}: {self.reason}"

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (self.path, self.reason), vars(self)


class Cancelled(TactusError):
    """The hearing was ended by `cancel`."""


class CannotOpen(TactusError, OSError):
    """The system doesn't give the file; `errno` is its number."""

    def __init__(self, path: Path | None, reason: str, number: int = 0) -> None:
        TactusError.__init__(self, path, reason)
        self.errno = number
        self.strerror = reason
        self.filename = path

    def __str__(self) -> str:
        return TactusError.__str__(self)

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (self.path, self.reason, self.errno), vars(self)


class NotAFile(TactusError):
    """A folder, a pipe or a device."""


class Empty(TactusError):
    """There is no byte in the file, or no sample in the array."""


class Changed(TactusError):
    """Somebody wrote the file, or took it away, while it was read."""


class NotAudio(TactusError):
    """The file is nothing that is known."""


class OtherKind(TactusError):
    """The file is of a known kind that isn't read."""


class Damaged(TactusError):
    """What the file says of its sound can't be read."""


class NoSound(TactusError):
    """There is no sound in the file."""


class Protected(TactusError):
    """The file is encrypted for those who bought it."""


class CannotDecode(TactusError):
    """The sound of the file can't be decoded."""


class BadSamples(TactusError, ValueError):
    """Samples that are no number or infinite, or a rate outside 1,000 to 1,000,000 Hz."""


class TooLong(TactusError):
    """There are more than 2^31 - 1 samples."""


class NoMemory(TactusError, MemoryError):
    """There is not enough memory for the file."""


class NotStored(TactusError):
    """A tempo was not stored; the file is as it was.

    `refusal` is one word for it: "no_tempo", "not_mp3", "not_whole", "changed", "in_use",
    "not_allowed", "tag", "too_large", "disk_full", "no_memory" or "disk".
    """

    refusal: str

    def __init__(self, path: Path | None, refusal: str) -> None:
        super().__init__(path, _REFUSALS[refusal])
        self.refusal = refusal

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (self.path, self.refusal)


_PROBLEMS: dict[str, tuple[type[TactusError], str]] = {
    "cancelled": (Cancelled, "cancelled"),
    "not_a_file": (NotAFile, "is a folder, a pipe or a device"),
    "empty": (Empty, "is empty"),
    "changed": (Changed, "changed while it was read"),
    "not_audio": (NotAudio, "is not an audio file that can be read"),
    "other_kind": (OtherKind, "is of a kind that isn't read"),
    "broken": (Damaged, "is damaged: what it says of its sound can't be read"),
    "no_sound": (NoSound, "holds no sound"),
    "protected": (Protected, "is protected"),
    "cannot_decode": (CannotDecode, "holds sound that can't be decoded"),
    "bad_rate": (BadSamples, "has a sample rate that can't be worked with"),
    "bad_samples": (BadSamples, "has samples that are infinite or no number"),
    "too_long": (TooLong, "is too long"),
    "no_memory": (NoMemory, "there is not enough memory for it"),
}

_REFUSALS: dict[str, str] = {
    "no_tempo": "isn't written: there is no tempo, or the song was not heard by this process",
    "not_mp3": "isn't written: it is no MP3 file, by its name or by its content",
    "not_whole": "isn't written: it is damaged or ends early",
    "changed": "isn't written: it is no longer the file that was heard",
    "in_use": "isn't written: another program is writing it",
    "not_allowed": "isn't written: it may not be written or not be replaced",
    "tag": "isn't written: its tag can't be read, or not be kept without loss",
    "too_large": "isn't written: it, or its tag, would become too large",
    "disk_full": "isn't written: no space left on the disk",
    "no_memory": "isn't written: there is not enough memory",
    "disk": "isn't written: the disk reports an error",
}


def problem_of(name: str, number: int, path: Path | None, record: str) -> TactusError:
    """The exception for a problem of the library; `number` is the errno of "cannot_open"."""
    error: TactusError
    if name == "cannot_open":
        error = CannotOpen(path, os.strerror(number), number)
    else:
        kind, reason = _PROBLEMS[name]
        error = kind(path, reason)
    if record:
        told = json.loads(record)
        told["error"]["message"] = error.reason
        error._record = json.dumps(told, ensure_ascii=False, separators=(",", ":"))
    return error
