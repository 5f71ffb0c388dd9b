# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The example that scores a folder, held against sums by hand."""

from __future__ import annotations

import importlib.util
import json
import pathlib
import subprocess
import sys
from types import ModuleType

import pytest

from music import write_song

SCRIPT = pathlib.Path(__file__).parents[2] / "python" / "examples" / "evaluate.py"


@pytest.fixture(scope="module")
def evaluate() -> ModuleType:
    spec = importlib.util.spec_from_file_location("evaluate", SCRIPT)
    assert spec is not None and spec.loader is not None
    module = importlib.util.module_from_spec(spec)
    sys.modules["evaluate"] = module
    spec.loader.exec_module(module)
    return module


def test_each_beat_matches_one_within_70_ms(evaluate: ModuleType) -> None:
    # Two of three match two of four: 2 * 2 / (3 + 4).
    assert evaluate.f_measure([5.0, 6.06, 7.5], [5.0, 6.0, 7.0, 8.0]) == 4 / 7
    # One that lies near two matches one of them.
    assert evaluate.f_measure([6.0], [5.95, 6.05]) == 2 / 3
    assert evaluate.f_measure([], [6.0]) == 0.0
    # What lies before the fifth second is left out.
    assert evaluate.f_measure([1.0, 6.0], [6.0]) == 1.0


def test_a_folder_is_scored_by_group(tmp_path: pathlib.Path) -> None:
    write_song(tmp_path / "a.wav", 125.0)
    (tmp_path / "a.beats").write_text("".join(f"{0.48 * i:.3f}\t{i % 4 + 1}\n" for i in range(65)))
    (tmp_path / "truth.csv").write_text(
        "path,tempo,group,beats\n"
        "a.wav,125,right,a.beats\n"
        "a.wav,62.5,octave,\n"
        "missing.wav,120,octave,\n"
    )
    command = [sys.executable, str(SCRIPT), str(tmp_path), "--csv", str(tmp_path / "truth.csv")]
    run = subprocess.run(command, check=True, capture_output=True, text=True)
    rows = [line.split() for line in run.stdout.splitlines()]
    assert rows == [
        ["group", "files", "Acc1", "Acc2", "0.1", "F"],
        ["octave", "2", "0.000", "0.500", "0.000", "-"],
        ["right", "1", "1.000", "1.000", "1.000", "1.000"],
        ["all", "3", "0.333", "0.667", "0.333", "1.000"],
    ]
    assert "missing.wav: No such file" in run.stderr


def test_jams_files_are_read(tmp_path: pathlib.Path, evaluate: ModuleType) -> None:
    music, jams = tmp_path / "music", tmp_path / "jams"
    for folder in (music / "house", jams / "house"):
        folder.mkdir(parents=True)
    (music / "house" / "a.b.flac").touch()
    tempos = [{"value": 60.0, "confidence": 0.2}, {"value": 120.0, "confidence": 0.8}]
    beats = [{"time": 0.5, "value": 1}, {"time": 1.0, "value": 2}]
    annotations = [{"namespace": "tempo", "data": tempos}, {"namespace": "beat", "data": beats}]
    (jams / "house" / "a.b.jams").write_text(json.dumps({"annotations": annotations}))
    assert evaluate.from_jams(jams, music) == [
        evaluate.Truth(music / "house" / "a.b.flac", "house", 120.0, [0.5, 1.0])
    ]
