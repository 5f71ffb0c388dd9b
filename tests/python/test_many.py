# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Many files, threads and processes, and what all of that leaves behind."""

from __future__ import annotations

import itertools
import multiprocessing
import os
import pathlib
import subprocess
import sys
import threading
from collections.abc import Iterator
from concurrent.futures import ProcessPoolExecutor, ThreadPoolExecutor

import numpy as np
import pytest
import tactus

from music import RATE, sixteen_bits, song

CALLS = int(os.environ.get("TACTUS_LEAK_CALLS", "200"))
FLAT_KILOBYTES = 1024  # Pages that the allocator keeps from one call to the next.


def tempo_of(path: pathlib.Path) -> float | None:
    return tactus.analyze(path).tempo


def test_outcomes_come_in_order(fifty: list[pathlib.Path]) -> None:
    outcomes = list(tactus.iter_analyze(fifty, jobs=4))
    assert [outcome.path for outcome in outcomes] == fifty
    assert all(outcome.song and outcome.error is None for outcome in outcomes)


def test_outcomes_come_as_completed_each_once(
    fifty: list[pathlib.Path], tmp_path: pathlib.Path
) -> None:
    paths = [tmp_path / "missing.wav", *fifty[:9]]
    outcomes = list(tactus.iter_analyze(paths, jobs=3, ordered=False))
    assert sorted(outcome.path for outcome in outcomes) == sorted(paths)
    failed = [outcome for outcome in outcomes if outcome.song is None]
    assert [(outcome.path, type(outcome.error)) for outcome in failed] == [
        (paths[0], tactus.CannotOpen)
    ]


def test_an_endless_list_is_read_as_outcomes_are_taken(track: pathlib.Path) -> None:
    read = 0

    def endless() -> Iterator[pathlib.Path]:
        nonlocal read
        for read in itertools.count(1):
            yield track

    outcomes = tactus.iter_analyze(endless(), jobs=2)
    assert next(outcomes).song is not None
    assert read <= 8
    outcomes.close()  # type: ignore[attr-defined]
    assert not [thread for thread in threading.enumerate() if "tactus" in thread.name]


def test_no_jobs_are_refused_at_once() -> None:
    with pytest.raises(ValueError):
        tactus.iter_analyze([], jobs=0)


def test_eight_threads_hear_the_same(fifty: list[pathlib.Path]) -> None:
    expected = list(map(tempo_of, fifty[:10]))
    with ThreadPoolExecutor(8) as pool:
        assert list(pool.map(tempo_of, fifty[:10])) == expected


@pytest.mark.parametrize("method", ["fork", "spawn"])
def test_four_processes_hear_the_same(fifty: list[pathlib.Path], method: str) -> None:
    expected = list(map(tempo_of, fifty[:10]))
    context = multiprocessing.get_context(method)
    with ProcessPoolExecutor(4, mp_context=context) as pool:
        assert list(pool.map(tempo_of, fifty[:10])) == expected


def test_other_threads_of_python_run_meanwhile() -> None:
    two_minutes = np.tile(sixteen_bits(song(125.0)), 4)
    turns = 0
    done = threading.Event()

    def count() -> None:
        nonlocal turns
        while not done.wait(0.001):
            turns += 1

    counter = threading.Thread(target=count)
    counter.start()
    before = None

    def start(percent: int) -> None:
        nonlocal before
        before = turns if before is None else before

    try:
        tactus.analyze_samples(two_minutes, RATE, progress=start)
    finally:
        done.set()
        counter.join()
    assert before is not None and turns > before


def test_nothing_is_left_behind(track: pathlib.Path) -> None:
    script = pathlib.Path(__file__).with_name("leaks.py")
    command = [sys.executable, str(script), str(CALLS), str(track)]
    run = subprocess.run(command, check=True, capture_output=True, text=True)
    blocks, references, kilobytes = map(int, run.stdout.split())
    # A block or a reference for each call would be CALLS of them.
    assert blocks < CALLS // 2
    assert references < CALLS // 2
    assert kilobytes < FLAT_KILOBYTES
