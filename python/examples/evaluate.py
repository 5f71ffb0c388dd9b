#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Scores Tactus against a folder of music whose tempo and beats are known.

    evaluate.py Music --csv truth.csv
    evaluate.py Music --jams annotations

The CSV has a header: `path` (below the folder) and `tempo`, and if there are any, `group` and
`beats`, a text file beside the CSV whose lines begin with the time of a beat in seconds. JAMS files
are named as the music is, with .jams for its extension; their folder below the given one is the
group.

Acc1 is the share of tempos within 4 % of the truth, Acc2 the same where the double, the half, three
times and a third count too, 0.1 the share within 0.1 BPM. F is the mean F-measure of the beats,
each within 70 ms of one of the truth, from the fifth second on.
"""

from __future__ import annotations

import argparse
import csv
import json
import pathlib
import sys
from collections.abc import Iterable, Sequence
from dataclasses import dataclass
from statistics import mean
from typing import Any

import tactus

TOLERANCE = 0.04  # Of a tempo, as in the comparisons of the field.
OCTAVES = (1.0, 2.0, 0.5, 3.0, 1.0 / 3.0)
CLOSE_BPM = 0.1
BEAT_SECONDS = 0.07
FIRST_SECONDS = 5.0  # Left out, as annotators find their feet.


@dataclass(frozen=True)
class Truth:
    """What is known of one file. `tempo` in beats a minute, `beats` in seconds."""

    path: pathlib.Path
    group: str
    tempo: float | None
    beats: Sequence[float]


@dataclass(frozen=True)
class Score:
    """What became of one file; None where the truth is silent."""

    group: str
    acc1: float | None
    acc2: float | None
    close: float | None
    beats: float | None


def from_csv(table: pathlib.Path, music: pathlib.Path) -> list[Truth]:
    with open(table, newline="", encoding="utf-8") as file:
        return [_of_row(row, table.parent, music) for row in csv.DictReader(file)]


def _of_row(row: dict[str, str], folder: pathlib.Path, music: pathlib.Path) -> Truth:
    beats: list[float] = []
    if row.get("beats"):
        lines = (folder / row["beats"]).read_text(encoding="utf-8").splitlines()
        beats = [float(line.split()[0]) for line in lines if line.strip()]
    tempo = float(row["tempo"]) if row.get("tempo") else None
    return Truth(music / row["path"], row.get("group") or "", tempo, beats)


def from_jams(folder: pathlib.Path, music: pathlib.Path) -> list[Truth]:
    truths = []
    for jams in sorted(folder.rglob("*.jams")):
        below = jams.relative_to(folder)
        annotations = json.loads(jams.read_text(encoding="utf-8"))["annotations"]
        group = "" if below.parent == pathlib.Path() else str(below.parent)
        path = _named_as(music / below)
        truths.append(Truth(path, group, _tempo_in(annotations), _beats_in(annotations)))
    return truths


def _named_as(jams: pathlib.Path) -> pathlib.Path:
    """The music beside which the JAMS file would lie."""
    found = sorted(jams.parent.iterdir()) if jams.parent.is_dir() else []
    same = (path for path in found if path.stem == jams.stem and path.suffix != ".jams")
    return next(same, jams.with_suffix(""))


def _observations(annotations: list[dict[str, Any]], space: str) -> list[dict[str, float]]:
    return next((each["data"] for each in annotations if each["namespace"] == space), [])


def _tempo_in(annotations: list[dict[str, Any]]) -> float | None:
    """The one that the annotator trusts most."""
    data = _observations(annotations, "tempo")
    best = max(data, key=lambda each: each.get("confidence") or 0.0, default=None)
    return None if best is None else float(best["value"])


def _beats_in(annotations: list[dict[str, Any]]) -> list[float]:
    return sorted(float(each["time"]) for each in _observations(annotations, "beat"))


def f_measure(heard: Iterable[float], truth: Iterable[float]) -> float:
    """Of two rising lists of seconds. Each of one matches at most one of the other."""
    ours = [time for time in heard if time >= FIRST_SECONDS]
    theirs = [time for time in truth if time >= FIRST_SECONDS]
    matched = i = j = 0
    while i < len(ours) and j < len(theirs):
        if abs(ours[i] - theirs[j]) <= BEAT_SECONDS:
            matched, i, j = matched + 1, i + 1, j + 1
        elif ours[i] < theirs[j]:
            i += 1
        else:
            j += 1
    return 2.0 * matched / (len(ours) + len(theirs)) if ours or theirs else 1.0


def score(truth: Truth, song: tactus.Song | None) -> Score:
    """A file that can't be heard, or has no tempo, counts as wrong."""
    tempo = (song.tempo if song is not None else None) or 0.0
    beats = song.beats.tolist() if song is not None else []
    f = f_measure(beats, truth.beats) if truth.beats else None
    if truth.tempo is None:
        return Score(truth.group, None, None, None, f)
    wanted = truth.tempo
    acc1 = abs(tempo - wanted) <= TOLERANCE * wanted
    acc2 = any(abs(tempo - wanted * ratio) <= TOLERANCE * wanted * ratio for ratio in OCTAVES)
    return Score(truth.group, acc1, acc2, abs(tempo - wanted) <= CLOSE_BPM, f)


def table(scores: Sequence[Score]) -> str:
    """A line for each group, and one for all."""
    groups = sorted({each.group for each in scores if each.group})
    lines = [f"{'group':<24}{'files':>7}{'Acc1':>8}{'Acc2':>8}{'0.1':>8}{'F':>8}"]
    for group in groups:
        lines.append(_line(group, [each for each in scores if each.group == group]))
    return "\n".join([*lines, _line("all", scores)])


def _line(name: str, scores: Sequence[Score]) -> str:
    columns = [
        [getattr(each, key) for each in scores] for key in ("acc1", "acc2", "close", "beats")
    ]
    cells = (_mean([value for value in column if value is not None]) for column in columns)
    return f"{name:<24}{len(scores):>7}" + "".join(f"{cell:>8}" for cell in cells)


def _mean(values: Sequence[float]) -> str:
    return f"{mean(values):.3f}" if values else "-"


def main() -> int:
    parser = argparse.ArgumentParser(description="Score Tactus against music of known tempo")
    parser.add_argument("music", type=pathlib.Path, help="folder of the music")
    where = parser.add_mutually_exclusive_group(required=True)
    where.add_argument("--csv", type=pathlib.Path, help="table of the truth")
    where.add_argument("--jams", type=pathlib.Path, help="folder of JAMS files")
    parser.add_argument("--jobs", type=int, help="files at once")
    options = parser.parse_args()
    music = options.music
    truths = from_csv(options.csv, music) if options.csv else from_jams(options.jams, music)
    if not truths:
        print("there is no truth to score against", file=sys.stderr)
        return 2
    scores = []
    outcomes = tactus.iter_analyze([truth.path for truth in truths], jobs=options.jobs)
    for truth, outcome in zip(truths, outcomes):
        if outcome.error is not None:
            print(outcome.error, file=sys.stderr)
        scores.append(score(truth, outcome.song))
    print(table(scores))
    return 0


if __name__ == "__main__":
    sys.exit(main())
