# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The types that the package promises."""

from __future__ import annotations

import os
import pathlib
import subprocess
import sys

import pytest

ROOT = pathlib.Path(__file__).parents[2]


def test_the_types_hold_by_mypy(tmp_path: pathlib.Path) -> None:
    pytest.importorskip("mypy")
    folders = [ROOT / "python" / name for name in ("tactus", "beetsplug", "examples")]
    command = [sys.executable, "-m", "mypy", "--config-file", str(ROOT / "pyproject.toml")]
    command += ["--cache-dir", os.environ.get("TACTUS_MYPY_CACHE", str(tmp_path))]
    # The settings name the folder of the packages from there.
    run = subprocess.run([*command, *map(str, folders)], cwd=ROOT, capture_output=True, text=True)
    assert run.returncode == 0, run.stdout


def test_the_compiled_part_has_what_its_stub_says() -> None:
    from tactus import _core

    stub = (ROOT / "python" / "tactus" / "_core.pyi").read_text()
    told = {line.split("(")[0][4:] for line in stub.splitlines() if line.startswith("def ")}
    assert told == {name for name in vars(_core) if name[0].islower() and name[0] != "_"}
