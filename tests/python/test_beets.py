# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The plug-in in Debian's beets, with a library of 30 files of five kinds."""

from __future__ import annotations

import os
import pathlib
import shutil
import subprocess

import pytest
import tactus

CONFIG = """
directory: {folder}/music
library: {folder}/library.db
plugins: tactus
import: {{copy: no, write: no, autotag: no, quiet: yes}}
tactus: {{auto: {auto}, round: {round}}}
"""

pytestmark = pytest.mark.skipif(shutil.which("beet") is None, reason="beets is not installed")


class Library:
    """A library of copies, in a folder of its own."""

    def __init__(
        self, folder: pathlib.Path, files: list[pathlib.Path], auto: str = "no", rounds: str = "yes"
    ) -> None:
        self.folder = folder
        (folder / "music").mkdir()
        for file in files:
            shutil.copy(file, folder / "music" / file.name)
        text = CONFIG.format(folder=folder, auto=auto, round=rounds)
        (folder / "config.yaml").write_text(text)
        self.beet("import", str(folder / "music"))

    def beet(self, *arguments: str) -> str:
        env = {**os.environ, "BEETSDIR": str(self.folder), "HOME": str(self.folder)}
        command = ["/usr/bin/beet", *arguments]
        run = subprocess.run(command, env=env, check=True, capture_output=True, text=True)
        return run.stdout + run.stderr

    def fields(self, *names: str) -> dict[str, list[str]]:
        """The named fields by the name of the file."""
        wanted = "|".join(f"${name}" for name in ("path", *names))
        rows = [line.split("|") for line in self.beet("ls", "-f", wanted).splitlines()]
        return {os.path.basename(row[0]): row[1:] for row in rows}

    def path(self, name: str) -> pathlib.Path:
        return self.folder / "music" / name


def test_a_library_of_thirty_files_gets_its_tempos(
    tmp_path: pathlib.Path, fifty: list[pathlib.Path]
) -> None:
    thirty = fifty[20:]
    library = Library(tmp_path, thirty)
    heard = {path.name: tactus.analyze(path) for path in thirty}
    library.beet("modify", "-y", "-W", "path::4.mp3$", "bpm=77")
    library.beet("tactus")
    stored = library.fields("bpm", "initial_key", "tactus_confidence")
    assert len(stored) == 30
    for name, (bpm, key, confidence) in stored.items():
        song = heard[name]
        assert bpm == ("77" if name == "4.mp3" else str(round(song.tempo or 0))), name
        if name != "4.mp3":
            assert confidence == f"{song.confidence:.2f}", name
            assert song.harmony is None or key[:1] == str(song.harmony.key)[:1] or "#" in key, name
    # No tag was written before -w, and then beets' own writer did it.
    assert tactus.read_tags(library.path("4.flac")).tempo is None
    library.beet("tactus", "-f", "-w")
    for name in ("4.mp3", "4.flac", "4.ogg", "4.m4a", "4.wav"):
        assert tactus.read_tags(library.path(name)).tempo == round(heard[name].tempo or 0), name


def test_an_import_hears_by_itself_and_keeps_decimals_on_request(
    tmp_path: pathlib.Path, fifty: list[pathlib.Path]
) -> None:
    library = Library(tmp_path, fifty[45:], auto="yes", rounds="no")
    heard = {path.name: tactus.analyze(path) for path in fifty[45:]}
    for name, (bpm, tempo) in library.fields("bpm", "tactus_tempo").items():
        assert bpm == str(round(heard[name].tempo or 0))
        assert tempo == f"{heard[name].tempo:.2f}"
    library.path("9.flac").write_bytes(b"no music")
    told = library.beet("tactus", "-f")
    assert f"{library.path('9.flac')}: " in told
