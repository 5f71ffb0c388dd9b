# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The values that a hearing brings. None of them can be changed, and all of them pickle."""

from __future__ import annotations

import json
from collections.abc import Mapping
from dataclasses import dataclass
from fractions import Fraction
from typing import TYPE_CHECKING, Any, TypeVar

import numpy as np
import numpy.typing as npt

from tactus import _core

if TYPE_CHECKING:
    from matplotlib.axes import Axes

Seconds = npt.NDArray[np.float64]
Weights = npt.NDArray[np.float32]

_NAMES = ("C", "Db", "D", "Eb", "E", "F", "F#", "G", "Ab", "A", "Bb", "B")
_T = TypeVar("_T", bound="_Value")


class _Value:
    """What can't be changed: its arrays neither."""

    def __post_init__(self) -> None:
        for value in vars(self).values():
            if isinstance(value, np.ndarray):
                value.flags.writeable = False

    def __setstate__(self, state: dict[str, Any]) -> None:
        vars(self).update(state)
        self.__post_init__()

    @classmethod
    def _made(cls: type[_T], values: Mapping[str, Any] | None) -> _T | None:
        return None if values is None else cls(**values)


@dataclass(frozen=True)
class Key(_Value):
    """A key. `tonic` is a pitch class, 0 for C to 11 for B."""

    tonic: int
    is_minor: bool

    def __str__(self) -> str:
        """As tags have it, in at most three letters: "Am", "Eb", "F#m"."""
        return _NAMES[self.tonic] + ("m" if self.is_minor else "")


@dataclass(frozen=True)
class Harmony(_Value):
    """The key of chords and melody."""

    key: Key
    plain: str
    """As tags have it, in at most three letters: "Am"."""
    camelot: str
    """On Camelot's wheel: "8A"."""
    open_key: str
    """In Open Key's notation: "1m"."""
    confidence: float
    """How likely it is the song's key, 0 to 1."""
    tuning: float
    """Cents above A = 440 Hz, -50 to 50."""


@dataclass(frozen=True)
class Candidate(_Value):
    """One reading of the tempo."""

    tempo: float
    """Beats a minute."""
    ratio: Fraction | None
    """To the song's tempo; None when it is no simple one."""
    score: float
    """Share in the belief; those of a song add up to 1."""


@dataclass(frozen=True)
class Source(_Value):
    """What the sound was read from."""

    decoder: str
    """The decoder's name, "mp3float" or "pcm_s16le"; empty for samples."""
    rate: int
    """Samples a second of the file itself; 0 for samples."""
    channels: int
    """Of the file itself; 0 for samples."""
    packets: int
    """Pieces that the file consists of."""
    bad_packets: int
    """Those among them that can't be decoded."""
    promised_seconds: float
    """Length by the file's header; 0 when that is silent."""
    heard_seconds: float
    """Length that was heard."""
    is_damaged: bool
    """Not all of the file could be heard."""


@dataclass(frozen=True, eq=False)
class Envelope(_Value):
    """One value for each `step` seconds from the start.

    `values` has the shape (n,); they are 0 and above, without a unit.
    """

    step: float
    values: Weights


@dataclass(frozen=True, eq=False)
class MixPoints(_Value):
    """Where a song can be mixed with the one before it and the one behind it, in seconds."""

    intro_end: float
    outro_start: float
    fade: Seconds
    """Shape (12,): at each the song before it is turned down by one more step."""
    intro: Seconds
    """Shape (n,)."""
    outro: Seconds
    """Shape (n,)."""


@dataclass(frozen=True, eq=False)
class Fingerprint(_Value):
    """A short excerpt by which the same sound is found again.

    `start` is in seconds; `values` has the shape (n,), without a unit, and is empty for less than
    some seconds of sound.
    """

    start: float
    values: Weights


@dataclass(frozen=True)
class Tags(_Value):
    """What a file of any kind says of itself. What it doesn't say is empty."""

    title: str
    artist: str
    album: str
    key: str
    tempo_text: str
    tempo: float | None
    """Beats a minute, when the text is a believable tempo."""


@dataclass(frozen=True, eq=False)
class Song(_Value):
    """What one hearing brings. Times are in seconds from the start of the sound."""

    path: str | bytes | None
    """The file as it was named; None for samples."""
    tempo: float | None
    """Beats a minute; None when no beat was found."""
    heard_tempo: float | None
    """The same before the length of a clip under 30 s decided."""
    confidence: float
    """That there is a steady beat at all, 0 to 1."""
    candidates: tuple[Candidate, ...]
    """Readings of the tempo, the likeliest first."""
    seconds: float
    """Length."""
    key: Key | None
    """Of the bass notes."""
    harmony: Harmony | None
    """Of chords and melody."""
    source: Source
    tags: Tags
    """What the file says of itself; empty for samples."""
    beats: Seconds
    """Shape (n,): every beat."""
    downbeats: Seconds
    """Shape (n,): the beats that begin a measure."""
    beats_per_measure: int
    """3 or 4; 0 without beats."""
    beat_confidence: float
    """That these are the beats, not the points between, 0 to 1."""
    downbeat_confidence: float
    """That measures begin where they do, 0 to 1."""
    measures: Seconds
    """Shape (n,): starts of measures that stand out."""
    energy_accents: Weights
    """Shape (8,): weights of the eight half beats of a measure."""
    bass_accents: Weights
    """Likewise, below 120 Hz."""
    mix_points: MixPoints
    fingerprint: Fingerprint
    energy: Envelope | None
    """Loudness over all frequencies; None unless `envelopes` was asked for."""
    bass: Envelope | None
    """Peaks below 120 Hz; likewise."""
    _heard: _core.Heard | None
    """What the library keeps of it; None in a song that was unpickled."""
    _record: str | None = None
    """The record of a song that was unpickled."""

    def __getstate__(self) -> dict[str, Any]:
        return {**vars(self), "_heard": None, "_record": self.to_json()}

    def to_json(self) -> str:
        """The record "tactus-song-1", a JSON object on one line, with all its fields."""
        if self._heard is None:
            return self._record or ""
        return _core.to_json(self._heard)

    def to_dict(self) -> dict[str, Any]:
        """The same record as a dictionary."""
        record: dict[str, Any] = json.loads(self.to_json())
        return record

    def __repr__(self) -> str:
        tempo = "no tempo" if self.tempo is None else f"{self.tempo:.2f} BPM"
        return f"<Song {self.path!r}: {tempo}, {self.seconds:.1f} s>"

    def plot(self, ax: Axes) -> None:
        """Draws the envelopes, if they were kept, beats and downbeats, intro and outro.

        `ax` is a matplotlib axes; its x axis becomes seconds.
        """
        for envelope, label in ((self.energy, "energy"), (self.bass, "bass")):
            if envelope is not None and envelope.values.size:
                times = np.arange(envelope.values.size) * envelope.step
                highest = float(envelope.values.max()) or 1.0
                ax.plot(times, envelope.values / highest, label=label, linewidth=0.6)
        ax.vlines(self.beats, 0.0, 0.05, colors="0.6", linewidth=0.5, label="beats")
        ax.vlines(self.downbeats, 0.0, 1.0, colors="0.6", linewidth=0.5, label="downbeats")
        ax.axvspan(0.0, self.mix_points.intro_end, alpha=0.1, label="intro")
        ax.axvspan(self.mix_points.outro_start, self.seconds, alpha=0.1, label="outro")
        ax.set_xlim(0.0, max(self.seconds, 1.0))
        ax.set_xlabel("seconds")
        ax.set_title(repr(self).strip("<>"))


def song_of(path: str | bytes | None, values: dict[str, Any], heard: _core.Heard) -> Song:
    """The song that the library told as plain dictionaries."""
    made: dict[str, type[_Value]] = {
        "key": Key,
        "source": Source,
        "tags": Tags,
        "mix_points": MixPoints,
        "fingerprint": Fingerprint,
        "energy": Envelope,
        "bass": Envelope,
    }
    for name, kind in made.items():
        values[name] = kind._made(values[name])
    if values["harmony"] is not None:
        key = Key(**values["harmony"].pop("key"))
        values["harmony"] = Harmony(key=key, **values["harmony"])
    values["candidates"] = tuple(map(_candidate, values["candidates"]))
    return Song(path=path, **values, _heard=heard)


def _candidate(values: dict[str, Any]) -> Candidate:
    ratio = Fraction(values["times"], values["over"]) if values["over"] else None
    return Candidate(values["tempo"], ratio, values["score"])
