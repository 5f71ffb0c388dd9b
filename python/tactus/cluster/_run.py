# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Has a cluster hear what a plan still lacks."""

from __future__ import annotations

from collections import deque
from collections.abc import Callable, Iterator
from dataclasses import dataclass, field
from uuid import uuid4

from distributed import Client, Future, KilledWorker, as_completed

from tactus.cluster._plan import Plan, Shard
from tactus.cluster._work import hear, lost

LEAST_AHEAD = 64  # Tasks at hand for the scheduler, so that no worker waits for this process.
AHEAD = 4  # The same for each thread of the workers.
ATTEMPTS = 4  # For each input; each may cost several workers, as Dask itself tries again.


@dataclass
class _Part:
    """A shard on its way: the records that are there, by the place of their input."""

    shard: Shard
    records: dict[int, str] = field(default_factory=dict)

    def is_whole(self) -> bool:
        return len(self.records) == len(self.shard.paths)

    def lines(self) -> list[str]:
        return [self.records[place] for place in range(len(self.shard.paths))]


@dataclass(frozen=True)
class _Task:
    """The inputs of a part from `start` on, `count` of them."""

    part: _Part
    start: int
    count: int
    attempt: int = 1

    def paths(self) -> list[str]:
        return self.part.shard.paths[self.start : self.start + self.count]

    def again(self) -> list[_Task]:
        """What is to be tried after its workers died: each file alone, with one attempt less."""
        if self.attempt == ATTEMPTS:
            return []
        places = range(self.start, self.start + self.count)
        return [_Task(self.part, place, 1, self.attempt + 1) for place in places]


class Run:
    """One run of a plan on a cluster."""

    def __init__(
        self,
        client: Client,
        plan: Plan,
        tell: Callable[[int], None],
        work: Callable[[list[str]], list[str]] = hear,
    ) -> None:
        """`tell` takes the number of files whose records have been written, in steps."""
        self._client = client
        self._plan = plan
        self._tell = tell
        self._work = work
        self._name = f"tactus-{uuid4().hex[:8]}"
        self._tasks: dict[str, _Task] = {}
        # Dask blames all that waits on a worker for its death. So what was blamed is tried again
        # one by one, where nothing else that was blamed can take it along.
        self._suspects: deque[_Task] = deque()
        self._count = 0
        self.restarts = 0
        """Tasks that were tried again after their workers had died too often for Dask."""

    def finish(self) -> None:
        """Hears every shard that isn't done."""
        open_shards = (shard for shard in self._plan.shards if not self._plan.is_done(shard))
        tasks = (_Task(_Part(shard), 0, len(shard.paths)) for shard in open_shards)
        completed = as_completed()
        self._fill(completed, tasks)
        for future in completed:
            self._suspects.extend(self._take(future))
            self._fill(completed, tasks)

    def _fill(self, completed: as_completed, tasks: Iterator[_Task]) -> None:
        if self._suspects and all(task.attempt == 1 for task in self._tasks.values()):
            completed.add(self._submit(self._suspects.popleft()))
        threads = sum(self._client.nthreads().values())
        while len(self._tasks) < max(LEAST_AHEAD, AHEAD * threads):
            task = next(tasks, None)
            if task is None:
                return
            completed.add(self._submit(task))

    def _submit(self, task: _Task) -> Future:
        self._count += 1
        key = f"{self._name}-{self._count}"
        self._tasks[key] = task
        return self._client.submit(self._work, task.paths(), key=key)

    def _take(self, future: Future) -> list[_Task]:
        """Keeps the records of a task. Returns: what is to be tried instead, if it has none."""
        task = self._tasks.pop(future.key)
        try:
            records = future.result()
        except KilledWorker:
            self.restarts += 1
            instead = task.again()
            if instead:
                return instead
            records = [lost(path) for path in task.paths()]
        task.part.records.update(enumerate(records, task.start))
        if task.part.is_whole():
            self._plan.finish(task.part.shard, task.part.lines())
            self._tell(len(task.part.shard.paths))
        return []
