# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The command line of `tactus.cluster`."""

from __future__ import annotations

import argparse
import json
import logging
import os
import sys
import time
from collections.abc import Iterator
from contextlib import closing, contextmanager

import dask
from distributed import Client, LocalCluster

from tactus.cluster._inputs import inputs
from tactus.cluster._plan import Limits, Plan
from tactus.cluster._run import Run

FAILED, USAGE, BUSY, STOPPED = 1, 2, 75, 130  # Exit statuses, as those of the program tactus.
MEBIBYTE = 1 << 20
# A task that waits on a worker which dies for another task's sake is not to be blamed for it.
LOCAL_CONFIG = {"distributed.scheduler.worker-saturation": 1.0}


def parser() -> argparse.ArgumentParser:
    made = argparse.ArgumentParser(prog="python -m tactus.cluster", description=__doc__)
    made.description = "Hear many files on a Dask cluster; the same command again goes on"
    where = made.add_mutually_exclusive_group(required=True)
    where.add_argument("--scheduler", metavar="ADDRESS", help="of Dask, such as tcp://host:8786")
    where.add_argument("--scheduler-file", metavar="FILE", help="that Dask's scheduler has written")
    where.add_argument("--local", type=_count, metavar="N", help="worker processes on this machine")
    made.add_argument("paths", nargs="*", metavar="PATH", help="audio files, and folders of them")
    made.add_argument("--files-from", metavar="FILE", help="a path a line; - is standard input")
    made.add_argument("-o", "--output", required=True, metavar="DIR", help="folder of the results")
    made.add_argument(
        "--shard-mib", type=_count, default=256, metavar="N", help="at most; %(default)s"
    )
    made.add_argument(
        "--shard-files", type=_count, default=50, metavar="N", help="at most; %(default)s"
    )
    made.add_argument("-q", "--quiet", action="store_true", help="no progress")
    return made


def main() -> int:
    """Returns: the exit status."""
    options = parser().parse_args()
    try:
        return _run(options)
    except OSError as error:
        print(f"{options.output}: {error}", file=sys.stderr)
        return FAILED


def _run(options: argparse.Namespace) -> int:
    plan = Plan.opened(options.output)
    if plan is None:
        print(f"{options.output}: another run works there", file=sys.stderr)
        return BUSY
    with closing(plan):
        return _work(plan, options)


def _work(plan: Plan, options: argparse.Namespace) -> int:
    plan.add(inputs(_named(options)), Limits(options.shard_mib * MEBIBYTE, options.shard_files))
    if not plan.shards:
        print("there is nothing to hear", file=sys.stderr)
        return USAGE
    try:
        with _client(options) as client:
            summary = _hear(client, plan, options.quiet)
    except KeyboardInterrupt:
        print("\nstopped; the same command goes on", file=sys.stderr)
        return STOPPED
    plan.write_summary(summary)
    print(json.dumps(summary))
    return FAILED if summary["failed"] else 0


def _count(text: str) -> int:
    number = int(text)
    if number < 1:
        raise argparse.ArgumentTypeError(f"{text} is not 1 or more")
    return number


def _named(options: argparse.Namespace) -> Iterator[str]:
    yield from options.paths
    if options.files_from:
        name = 0 if options.files_from == "-" else options.files_from
        with open(name, "rb", closefd=name != 0) as file:
            yield from (os.fsdecode(line.rstrip(b"\r\n")) for line in file if line.strip())


@contextmanager
def _client(options: argparse.Namespace) -> Iterator[Client]:
    if not options.local:
        with Client(address=options.scheduler, scheduler_file=options.scheduler_file) as client:
            yield client
        return
    with dask.config.set(LOCAL_CONFIG):
        cluster = LocalCluster(
            n_workers=options.local,
            threads_per_worker=1,
            dashboard_address="127.0.0.1:0",
            silence_logs=logging.CRITICAL,
        )
        with cluster, Client(cluster) as client:
            yield client


def _hear(client: Client, plan: Plan, quiet: bool) -> dict[str, object]:
    files = sum(len(shard.paths) for shard in plan.shards)
    before = sum(len(shard.paths) for shard in plan.shards if plan.is_done(shard))
    begin = time.monotonic()
    done = before

    def tell(count: int) -> None:
        nonlocal done
        done += count
        if not quiet and sys.stderr.isatty():
            _show(done, files, done - before, time.monotonic() - begin)

    run = Run(client, plan, tell)
    run.finish()
    seconds = time.monotonic() - begin
    if not quiet and sys.stderr.isatty():
        print(file=sys.stderr)
    return {
        **_counted(plan),
        "earlier": before,
        "workerSeconds": round(seconds, 3),
        "filesPerMinute": round(60.0 * (files - before) / seconds, 1) if files > before else 0.0,
        "restarts": run.restarts,
    }


def _show(done: int, files: int, heard: int, seconds: float) -> None:
    rate = heard / max(seconds, 1e-3)
    left = (files - done) / rate
    line = f"{done} of {files} files, {60 * rate:.0f} a minute, {left:.0f} s left"
    print(f"\r{line:<70}", end="", file=sys.stderr, flush=True)


def _counted(plan: Plan) -> dict[str, object]:
    """What all the records say together, those of earlier runs too."""
    files = failed = 0
    music = 0.0
    for line in plan.records():
        record = json.loads(line)
        files += 1
        failed += record.get("tempo") is None
        music += record.get("duration", 0.0)
    return {"files": files, "failed": failed, "musicSeconds": round(music, 3)}


if __name__ == "__main__":
    sys.exit(main())
