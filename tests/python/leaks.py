# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""leaks.py CALLS FILE: what so many calls leave behind.

Prints blocks of the interpreter, references to None and kilobytes of the process, each as the
difference between the two ends of the calls, after half as many for warming up.
"""

from __future__ import annotations

import contextlib
import gc
import pathlib
import sys

import tactus

from music import RATE, sixteen_bits, song


def resident_kilobytes() -> int:
    status = pathlib.Path("/proc/self/status").read_text()
    return next(int(line.split()[1]) for line in status.splitlines() if line.startswith("VmRSS"))


def main(calls: int, path: str) -> None:
    samples = sixteen_bits(song(125.0, seconds=1.0))
    percents: list[int] = []

    def state_after(count: int) -> tuple[int, int, int]:
        for _ in range(count):
            tactus.analyze_samples(samples, RATE, progress=percents.append, envelopes=True)
            percents.clear()
            with contextlib.suppress(tactus.CannotOpen):
                tactus.analyze(path + ".missing")
            tactus.read_tags(path)
        gc.collect()
        return sys.getallocatedblocks(), sys.getrefcount(None), resident_kilobytes()

    state_after(calls // 2)
    before = state_after(1)
    after = state_after(calls)
    print(*(now - then for now, then in zip(after, before)))


if __name__ == "__main__":
    main(int(sys.argv[1]), sys.argv[2])
