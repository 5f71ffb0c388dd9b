# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Arrays of every type, shape and rate."""

from __future__ import annotations

import pathlib

import numpy as np
import pytest
import tactus

from music import RATE, sixteen_bits, song, write_wav

SONG = sixteen_bits(song(125.0))


def print_of(heard: tactus.Song) -> bytes:
    return heard.fingerprint.values.tobytes()


def test_samples_give_the_bits_that_their_file_gives(tmp_path: pathlib.Path) -> None:
    stereo = np.stack([SONG, np.roll(SONG, 7) // 3], axis=1)
    for samples in (SONG, stereo):
        by_file = tactus.analyze(write_wav(tmp_path / "song.wav", samples))
        by_array = tactus.analyze_samples(samples, RATE)
        assert by_array.tempo == by_file.tempo
        assert print_of(by_array) == print_of(by_file)
        assert np.array_equal(by_array.measures, by_file.measures)


def test_every_type_is_scaled_from_its_range() -> None:
    expected = print_of(tactus.analyze_samples(SONG, RATE))
    as_float = SONG / 32768.0
    types = [as_float, as_float.astype(np.float32), SONG.astype(np.int32) * 65536]
    types += [SONG.astype(np.int64) * 2**48, (SONG.astype(np.int32) + 32768).astype(np.uint16)]
    types += [SONG.astype(">i2"), SONG[:, None], np.repeat(SONG[:, None], 6, axis=1)]
    for samples in types:
        assert print_of(tactus.analyze_samples(samples, RATE)) == expected, samples.dtype
    # Eight and eleven bits are coarser: the tempo stays.
    for coarse in ((SONG // 256 + 128).astype(np.uint8), as_float.astype(np.float16)):
        assert tactus.analyze_samples(coarse, RATE).tempo == pytest.approx(125.0, abs=0.1)


def test_a_view_with_strides_is_heard_as_what_it_shows() -> None:
    both = np.stack([SONG, SONG[::-1]], axis=1)
    expected = print_of(tactus.analyze_samples(SONG, RATE))
    assert print_of(tactus.analyze_samples(both[:, 0], RATE)) == expected
    assert print_of(tactus.analyze_samples(np.asfortranarray(both)[:, 0], RATE)) == expected


def test_other_rates_keep_tempo_and_length() -> None:
    for rate in (11025, 48000):
        heard = tactus.analyze_samples(song(125.0, rate=rate), rate)
        assert heard.tempo == pytest.approx(125.0, abs=0.1), rate
        assert heard.seconds == pytest.approx(31.0, abs=0.001), rate


def test_lists_and_integers_of_numpy_are_taken() -> None:
    assert tactus.analyze_samples([0] * RATE, np.int64(RATE)).seconds == 1.0


def test_loud_floats_are_cut_and_far_louder_ones_refused() -> None:
    loud = song(125.0) * 4.0
    cut = tactus.analyze_samples(np.clip(loud, -1.0, 1.0), RATE)
    assert print_of(tactus.analyze_samples(loud, RATE)) == print_of(cut)
    with pytest.raises(tactus.BadSamples, match="reach 32"):
        tactus.analyze_samples(np.array([0.0, -32.0]), RATE)


@pytest.mark.parametrize(
    ("samples", "rate", "error"),
    [
        ([], RATE, tactus.Empty),
        (np.zeros((0, 2)), RATE, tactus.Empty),
        ([0.0, np.nan], RATE, tactus.BadSamples),
        ([0.0, -np.inf], RATE, tactus.BadSamples),
        ([0.0] * 9, 999, tactus.BadSamples),
        ([0.0] * 9, -44100, tactus.BadSamples),
        ([0.0] * 9, 2**70, tactus.BadSamples),
        ([0.0] * 9, 44100.0, TypeError),
        (np.zeros((2, 44100)), RATE, ValueError),
        (np.zeros((9, 2, 2)), RATE, ValueError),
        (0.5, RATE, ValueError),
        (np.zeros(9, complex), RATE, TypeError),
        (np.zeros(9, bool), RATE, TypeError),
        (["a"], RATE, TypeError),
    ],
)
def test_what_is_no_sound_is_refused(samples: object, rate: int, error: type[Exception]) -> None:
    with pytest.raises(error):
        tactus.analyze_samples(samples, rate)  # type: ignore[arg-type]
