# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""One file at a time."""

from __future__ import annotations

import dataclasses
import json
import os
import pathlib
import pickle
import shutil
import subprocess
import sys
import threading
import _thread
from typing import Any

import numpy as np
import numpy.typing as npt
import pytest
import tactus

from music import RATE, encode, sixteen_bits, song


EVERY_FIELD = ("--half-beats", "--fingerprint", "--envelopes", "--samples")


def lines_of(program: str, *arguments: object) -> list[dict[str, Any]]:
    """What `tactus profile` prints."""
    command = [program, "profile", *map(str, arguments)]
    lines = subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()
    return [json.loads(line) for line in lines]


def two_minutes() -> npt.NDArray[np.int16]:
    return np.tile(sixteen_bits(song(125.0)), 4)


def test_a_song_has_its_tempo_and_its_length(track: pathlib.Path) -> None:
    heard = tactus.analyze(track)
    assert heard.path == str(track)
    # The engine's own steps are 0.05 BPM there: one sample of its envelope in 31 s.
    assert heard.tempo == pytest.approx(125.0, abs=0.05)
    assert heard.seconds == 31.0
    assert (heard.source.decoder, heard.source.rate) == ("pcm_s16le", 44100)
    assert heard.energy_accents.shape == heard.bass_accents.shape == (8,)
    assert heard.mix_points.fade.shape == (12,)
    assert ((heard.measures >= 0.0) & (heard.measures <= 31.0)).all()


def test_fifty_files_have_the_record_of_the_command_line(
    fifty: list[pathlib.Path], program: str
) -> None:
    records = lines_of(program, *EVERY_FIELD, *fifty)
    assert len(records) == len(fifty) == 50
    for path, record in zip(fifty, records):
        heard = tactus.analyze(path, envelopes=True)
        assert heard.to_dict() == record, path
        # The values are the record's, before it rounds them to microseconds.
        assert heard.tempo == pytest.approx(record["tempo"], abs=1e-5)
        assert heard.beats.tolist() == pytest.approx(record["beats"], abs=1e-6)
        assert heard.downbeats.tolist() == pytest.approx(record["downbeats"], abs=1e-6)
        assert str(heard.key) == (record["key"] or {"plain": "None"})["plain"]


def test_the_bits_are_those_of_the_trace(fifty: list[pathlib.Path], program: str) -> None:
    for path, trace in zip(fifty[::7], lines_of(program, "--trace", *fifty[::7])):
        heard = tactus.analyze(path, envelopes=True)
        # Nine digits give back the bits of a float.
        assert np.float32(heard.tempo) == np.float32(trace["bpm"]), path
        assert heard.measures.tolist() == [mark / RATE for mark in trace["measureMarks"]]
        assert heard.fingerprint.values.tolist() == [
            float(np.float32(value)) for value in trace["fingerprint"]["values"]
        ]


def test_progress_rises_to_a_hundred_on_the_calling_thread(track: pathlib.Path) -> None:
    told: list[tuple[int, int]] = []
    tactus.analyze(track, progress=lambda percent: told.append((percent, threading.get_ident())))
    percents = [percent for percent, _ in told]
    assert percents == sorted(set(percents))
    assert percents[-1] == 100
    assert {thread for _, thread in told} == {threading.get_ident()}


def test_what_progress_raises_comes_through(track: pathlib.Path) -> None:
    def fail(percent: int) -> None:
        raise KeyError(percent)

    with pytest.raises(KeyError):
        tactus.analyze(track, progress=fail)


def test_an_event_cancels(track: pathlib.Path) -> None:
    cancel = threading.Event()
    with pytest.raises(tactus.Cancelled) as caught:
        tactus.analyze_samples(two_minutes(), RATE, progress=lambda _: cancel.set(), cancel=cancel)
    assert caught.value.path is None
    with pytest.raises(tactus.Cancelled) as caught:
        tactus.analyze(track, cancel=cancel)
    assert caught.value.path == str(track)


def test_an_interrupt_ends_a_hearing() -> None:
    with pytest.raises(KeyboardInterrupt):
        tactus.analyze_samples(two_minutes(), RATE, progress=lambda _: _thread.interrupt_main())


def test_a_song_cannot_be_changed(track: pathlib.Path) -> None:
    heard = tactus.analyze(track, envelopes=True)
    with pytest.raises(dataclasses.FrozenInstanceError):
        heard.tempo = 1.0  # type: ignore[misc]
    with pytest.raises(ValueError):
        heard.measures[0] = 1.0
    with pytest.raises(ValueError):
        heard.mix_points.fade[0] = 1.0


def test_a_song_comes_back_from_a_pickle_unchangeable(track: pathlib.Path) -> None:
    heard = tactus.analyze(track, envelopes=True)
    again = pickle.loads(pickle.dumps(heard))
    assert (again.tempo, again.key, again.source) == (heard.tempo, heard.key, heard.source)
    assert np.array_equal(again.fingerprint.values, heard.fingerprint.values)
    assert np.array_equal(again.energy.values, heard.energy.values)
    assert again.to_json() == heard.to_json() == pickle.loads(pickle.dumps(again)).to_json()
    with pytest.raises(ValueError):
        again.measures[0] = 1.0


def test_every_kind_of_path_is_taken(tmp_path: pathlib.Path, track: pathlib.Path) -> None:
    odd = os.fsencode(tmp_path) + b"/caf\xe9 \xf0\x9f\x8e\xb5.wav"
    shutil.copy(track, odd)
    assert tactus.analyze(odd).path == odd
    decoded = os.fsdecode(odd)
    for path in (decoded, pathlib.Path(decoded)):
        assert tactus.analyze(path).path == decoded
        assert tactus.read_tags(path).tempo is None


def test_each_failure_has_its_exception(tmp_path: pathlib.Path) -> None:
    empty, text, broken = tmp_path / "empty.wav", tmp_path / "text.mp3", tmp_path / "broken.m4a"
    empty.touch()
    text.write_bytes(b"x" * 5000)
    # A type box and nothing else.
    broken.write_bytes(b"\0\0\0\x18ftypM4A \0\0\0\0M4A isom\0\0\0\0" + b"\0\0\0\x08free" * 4)
    expected: dict[object, type[tactus.TactusError]] = {
        tmp_path: tactus.NotAFile,
        empty: tactus.Empty,
        text: tactus.NotAudio,
        broken: tactus.Damaged,
    }
    for path, kind in expected.items():
        with pytest.raises(kind) as caught:
            tactus.analyze(str(path))
        assert type(caught.value) is kind
        assert (caught.value.path, caught.value.reason != "") == (str(path), True)
        assert str(caught.value) == f"{path}: {caught.value.reason}"
        record = pickle.loads(pickle.dumps(caught.value)).to_dict()
        assert record["path"] == str(path)
        assert record["error"]["message"] == caught.value.reason


def test_a_missing_file_is_an_error_of_the_system(tmp_path: pathlib.Path) -> None:
    with pytest.raises(OSError) as caught:
        tactus.analyze(tmp_path / "missing.wav")
    assert isinstance(caught.value, tactus.CannotOpen)
    assert caught.value.errno == 2
    assert caught.value.filename == str(tmp_path / "missing.wav")


def test_exceptions_pickle(tmp_path: pathlib.Path) -> None:
    errors = [
        tactus.CannotOpen("a.wav", "No such file or directory", 2),
        tactus.NotAudio(b"a", "is not an audio file"),
        tactus.NotStored("a.mp3", "not_whole"),
    ]
    for error in errors:
        again = pickle.loads(pickle.dumps(error))
        assert (type(again), str(again), vars(again)) == (type(error), str(error), vars(error))


def test_silence_is_a_song_without_a_tempo() -> None:
    heard = tactus.analyze_samples(np.zeros(RATE * 31, np.int16), RATE)
    assert heard.tempo is None
    assert heard.seconds == 31.0
    assert "no tempo" in repr(heard)


def test_a_tempo_is_stored_in_the_file_that_was_heard(
    tmp_path: pathlib.Path, track: pathlib.Path
) -> None:
    mp3 = tmp_path / "song.mp3"
    encode(track, mp3, tags=("title=Träume", "artist=Ana"))
    heard = tactus.analyze(mp3)
    tactus.store_tempo(mp3, heard)
    tags = tactus.read_tags(mp3)
    assert tags.tempo_text == f"{heard.tempo:.2f}"
    assert (tags.title, tags.artist) == ("Träume", "Ana")
    # It is another file now, by its bytes.
    with pytest.raises(tactus.NotStored) as caught:
        tactus.store_tempo(mp3, heard, 90.0)
    assert caught.value.refusal == "changed"
    tactus.store_tempo(mp3, tactus.analyze(mp3), 90.0)
    assert tactus.read_tags(mp3).tempo == 90.0


def test_a_tempo_is_refused_for_anything_else(track: pathlib.Path) -> None:
    heard = tactus.analyze(track)
    cases = [(heard, None, "not_mp3"), (heard, float("nan"), "no_tempo"), (heard, 0.0, "no_tempo")]
    cases.append((pickle.loads(pickle.dumps(heard)), None, "no_tempo"))
    for song_of, tempo, refusal in cases:
        with pytest.raises(tactus.NotStored) as caught:
            tactus.store_tempo(track, song_of, tempo)
        assert caught.value.refusal == refusal


def test_the_package_runs_as_the_command_line(track: pathlib.Path, program: str) -> None:
    env = {**os.environ, "PATH": os.path.dirname(program) + ":" + os.environ["PATH"]}
    arguments = ["--format", "jsonl", str(track)]
    by_python = subprocess.run(
        [sys.executable, "-m", "tactus", *arguments], env=env, capture_output=True
    )
    direct = subprocess.run([program, "analyze", *arguments], env=env, capture_output=True)
    assert by_python.returncode == direct.returncode == 0
    assert by_python.stdout == direct.stdout
    assert json.loads(direct.stdout)["tempo"] == pytest.approx(125.0, abs=0.05)
    without = subprocess.run(
        [sys.executable, "-m", "tactus"], env={**env, "PATH": "/nowhere"}, capture_output=True
    )
    assert (without.returncode, b"not installed" in without.stderr) == (127, True)


def test_a_song_is_drawn(track: pathlib.Path) -> None:
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    from matplotlib.figure import Figure

    heard = tactus.analyze(track, envelopes=True)
    ax = Figure().add_subplot()
    heard.plot(ax)
    assert ax.get_xlim() == (0.0, 31.0)
    assert heard.energy is not None
    assert len(ax.lines[0].get_xdata()) == heard.energy.values.size
    tactus.analyze(track).plot(Figure().add_subplot())
