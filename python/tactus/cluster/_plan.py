# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The folder of results: the plan, its shards, and what is done of them."""

from __future__ import annotations

import fcntl
import json
import os
from collections.abc import Iterable, Iterator
from dataclasses import dataclass, field

from tactus.cluster._inputs import size_of


@dataclass(frozen=True)
class Limits:
    """What a shard holds at most; one file that is larger has a shard of its own."""

    bytes: int
    files: int


@dataclass(frozen=True)
class Shard:
    """Some inputs, in their order."""

    index: int
    paths: list[str]

    @property
    def name(self) -> str:
        """Of the file of its records. These names are in the order of the inputs."""
        return f"part-{self.index:06}.jsonl"


@dataclass
class Plan:
    """Which inputs there are, and in which shards. It is written before anything is heard, so a
    later run goes on with the same shards; new inputs come behind them."""

    folder: str
    shards: list[Shard] = field(default_factory=list)
    _lock: int = -1

    @classmethod
    def opened(cls, folder: str) -> Plan | None:
        """What an earlier run left in `folder`, which is made when it isn't there, and which is
        this plan's own until it is closed. Returns: None when another run works there."""
        os.makedirs(folder, exist_ok=True)
        plan = cls(folder)
        if not plan._locked():
            return None
        try:
            with open(plan._path("plan.jsonl"), encoding="ascii") as file:
                plan.shards = [Shard(i, json.loads(line)) for i, line in enumerate(file)]
        except FileNotFoundError:
            pass
        return plan

    def close(self) -> None:
        """Lets other runs in."""
        os.close(self._lock)

    def add(self, paths: Iterable[str], limits: Limits) -> None:
        """Puts the inputs that are new into new shards, and writes the plan."""
        known = {path for shard in self.shards for path in shard.paths}
        for group in _grouped((path for path in paths if path not in known), limits):
            self.shards.append(Shard(len(self.shards), group))
        self._write("plan.jsonl", (json.dumps(shard.paths) for shard in self.shards))

    def is_done(self, shard: Shard) -> bool:
        return os.path.exists(self._path(shard.name))

    def finish(self, shard: Shard, records: list[str]) -> None:
        """Puts the records of a shard into its file: all of them or none."""
        if len(records) != len(shard.paths):
            raise ValueError(f"{len(records)} records for {len(shard.paths)} inputs")
        self._write(shard.name, records)

    def records(self) -> Iterator[str]:
        """The lines of all shards that are done, in the order of the inputs."""
        for shard in filter(self.is_done, self.shards):
            with open(self._path(shard.name), encoding="utf-8") as file:
                yield from file

    def write_summary(self, summary: dict[str, object]) -> None:
        self._write("summary.json", [json.dumps(summary, indent=2)])

    def _locked(self) -> bool:
        """Keeps other runs out as long as the plan is open and the process lives."""
        handle = os.open(self._path("lock"), os.O_RDWR | os.O_CREAT | os.O_CLOEXEC, 0o666)
        try:
            fcntl.flock(handle, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except OSError:
            os.close(handle)
            return False
        self._lock = handle
        return True

    def _path(self, name: str) -> str:
        return os.path.join(self.folder, name)

    def _write(self, name: str, lines: Iterable[str]) -> None:
        """A name has either its old content or the whole of the new, whatever ends the process."""
        with open(self._path(name + ".new"), "w", encoding="utf-8") as file:
            file.writelines(line + "\n" for line in lines)
            file.flush()
            os.fsync(file.fileno())
        os.replace(self._path(name + ".new"), self._path(name))


def _grouped(paths: Iterable[str], limits: Limits) -> Iterator[list[str]]:
    group: list[str] = []
    total = 0
    for path in paths:
        size = size_of(path)
        if group and (total + size > limits.bytes or len(group) == limits.files):
            yield group
            group, total = [], 0
        group.append(path)
        total += size
    if group:
        yield group
