# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""`python -m tactus PATH...` is `tactus analyze PATH...`: the command line's own program."""

from __future__ import annotations

import os
import shutil
import sys

MISSING = 127  # What a shell answers for a command that isn't there.


def main() -> int:
    """Becomes the program; returns only when there is none."""
    beside = os.path.join(os.path.dirname(__file__), "bin", "tactus")
    program = beside if os.access(beside, os.X_OK) else shutil.which("tactus")
    if program is None:
        print("python -m tactus: the program tactus is not installed", file=sys.stderr)
        return MISSING
    os.execv(program, ["tactus", "analyze", *sys.argv[1:]])


if __name__ == "__main__":
    sys.exit(main())
