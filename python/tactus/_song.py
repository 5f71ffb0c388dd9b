# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The values that a hearing brings. None of them can be changed, and all of them pickle."""

from __future__ import annotations

from collections.abc import Mapping
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any, TypeVar

import numpy as np
import numpy.typing as npt

from tactus._core import Evidence

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
    seconds: float
    """Length."""
    key: Key | None
    """Of the bass notes."""
    source: Source
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
    evidence: Evidence | None
    """Which file was heard, for `store_tempo`; None in a song that was unpickled."""

    def __getstate__(self) -> dict[str, Any]:
        return {**vars(self), "evidence": None}

    def __repr__(self) -> str:
        tempo = "no tempo" if self.tempo is None else f"{self.tempo:.2f} BPM"
        return f"<Song {self.path!r}: {tempo}, {self.seconds:.1f} s>"

    def plot(self, ax: Axes) -> None:
        """Draws the envelopes, as far as they were kept, the measures, intro and outro.

        `ax` is a matplotlib axes; its x axis becomes seconds.
        """
        for envelope, label in ((self.energy, "energy"), (self.bass, "bass")):
            if envelope is not None and envelope.values.size:
                times = np.arange(envelope.values.size) * envelope.step
                highest = float(envelope.values.max()) or 1.0
                ax.plot(times, envelope.values / highest, label=label, linewidth=0.6)
        ax.vlines(self.measures, 0.0, 1.0, colors="0.6", linewidth=0.5, label="measures")
        ax.axvspan(0.0, self.mix_points.intro_end, alpha=0.1, label="intro")
        ax.axvspan(self.mix_points.outro_start, self.seconds, alpha=0.1, label="outro")
        ax.set_xlim(0.0, max(self.seconds, 1.0))
        ax.set_xlabel("seconds")
        ax.set_title(repr(self).strip("<>"))


def song_of(path: str | bytes | None, values: dict[str, Any]) -> Song:
    """The song that the library told as plain dictionaries."""
    made: dict[str, type[_Value]] = {
        "key": Key,
        "source": Source,
        "mix_points": MixPoints,
        "fingerprint": Fingerprint,
        "energy": Envelope,
        "bass": Envelope,
    }
    for name, kind in made.items():
        values[name] = kind._made(values[name])
    return Song(path=path, **values)
