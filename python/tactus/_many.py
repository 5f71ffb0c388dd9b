# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Many songs at once."""

from __future__ import annotations

import os
import threading
from collections import deque
from collections.abc import Iterable, Iterator
from concurrent.futures import FIRST_COMPLETED, Future, ThreadPoolExecutor, wait
from typing import NamedTuple

from tactus._errors import TactusError
from tactus._hearing import AnyPath, analyze
from tactus._song import Song

AHEAD = 4  # Files that are taken on for each job before the first of them is given out.


class Outcome(NamedTuple):
    """What became of one path: a song, or the error that was raised for it."""

    path: AnyPath
    song: Song | None
    error: TactusError | None


def iter_analyze(
    paths: Iterable[AnyPath],
    *,
    jobs: int | None = None,
    ordered: bool = True,
    envelopes: bool = False,
) -> Iterator[Outcome]:
    """Hears many files, `jobs` at once (None: one for each processor), and yields their outcomes.

    They come in the order of `paths`, or with `ordered=False` as they are completed. `paths` may be
    endless: it is read as the outcomes are taken. A file that can't be heard is an outcome too.
    Closing the generator cancels what is being heard.
    """
    count = (os.cpu_count() or 1) if jobs is None else jobs
    if count < 1:
        raise ValueError(f"jobs are 1 or more, not {count}")
    return _outcomes(iter(paths), count, ordered, envelopes)


def _outcomes(
    paths: Iterator[AnyPath], jobs: int, ordered: bool, envelopes: bool
) -> Iterator[Outcome]:
    cancel = threading.Event()

    def outcome(path: AnyPath) -> Outcome:
        try:
            return Outcome(path, analyze(path, cancel=cancel, envelopes=envelopes), None)
        except TactusError as error:
            return Outcome(path, None, error)

    running: deque[Future[Outcome]] = deque()
    with ThreadPoolExecutor(jobs, thread_name_prefix="tactus") as pool:
        try:
            for path in paths:
                running.append(pool.submit(outcome, path))
                if len(running) == AHEAD * jobs:
                    yield _next(running, ordered)
            while running:
                yield _next(running, ordered)
        finally:
            cancel.set()
            pool.shutdown(cancel_futures=True)


def _next(running: deque[Future[Outcome]], ordered: bool) -> Outcome:
    """Takes the first one out, or the first of those that are done."""
    if not ordered:
        done = wait(running, return_when=FIRST_COMPLETED).done
        index = next(i for i, future in enumerate(running) if future in done)
        running.rotate(-index)
        first = running.popleft()
        running.rotate(index)
        return first.result()
    return running.popleft().result()
