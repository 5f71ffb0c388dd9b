#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Holds docs/quirks.md, the "Deliberate:" comments and the "Pins..." tests together.

Every row names a test that exists, every Pins test has a row, and every source with a "Deliberate:"
comment is named by a row: by its own name or that of the header it belongs to, in the first cell or as
the test's suite.
"""

import pathlib
import re
import sys

ROW = re.compile(r"^\|\s*([^|]+?)\s*\|.+\|\s*`?(\w+)\.([Pp]ins\w+)`?\s*\|\s*$")
TEST = re.compile(r"TEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(Pins\w+)\s*\)")
OWN_HEADER = re.compile(r'^#include "\w+/(\w+)\.h"', re.M)
QT_TEST = re.compile(r"void\s+(?:\w+::)?([Pp]ins\w+)\s*\(")


def texts(root, folder):
    for path in sorted((root / folder).rglob("*")):
        if path.suffix in {".h", ".cpp"}:
            yield path.relative_to(root), path.read_text(encoding="utf-8")


def complaints(root):
    lines = (root / "docs/quirks.md").read_text(encoding="utf-8").splitlines()
    rows = set()
    named = set()
    for line in [line for line in lines if line.startswith("|")][2:]:
        match = ROW.match(line)
        if not match:
            yield f"docs/quirks.md: not a row that ends with Suite.PinsTest: {line}"
            continue
        rows.add((match[2], match[3]))
        named |= {match[1], re.sub("Test$", "", match[2])}
    tests = set()
    for path, text in texts(root, "tests"):
        tests |= set(TEST.findall(text)) | {(path.stem, name) for name in QT_TEST.findall(text)}
    for suite, test in sorted(rows - tests):
        yield f"docs/quirks.md: names {suite}.{test}, which is not a test"
    for suite, test in sorted(tests - rows):
        yield f"docs/quirks.md: lacks a row for {suite}.{test}"
    for path, text in texts(root, "src"):
        own = OWN_HEADER.search(text) if path.suffix == ".cpp" else None
        names = {path.stem} | ({own[1]} if own else set())
        if "Deliberate:" in text and not names & named:
            yield f"{path}: a deliberate oddity without a row in docs/quirks.md"


def main():
    found = list(complaints(pathlib.Path(__file__).resolve().parent.parent))
    print("\n".join(found) if found else "quirks: table, comments and tests agree")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
