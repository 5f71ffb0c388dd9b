# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Finds tempo and key of the music in a beets library.

`beet tactus [-f] [-w] [QUERY]` hears what has no tempo yet; on import it is done by itself. Fields:
`bpm`, `initial_key` and `tactus_confidence`, how likely there is a steady beat at all, 0 to 1.
"""

from __future__ import annotations

import optparse
from collections.abc import Iterable
from typing import Any

import tactus
from beets import ui, util
from beets.dbcore import types
from beets.importer import ImportSession, ImportTask
from beets.library import Item, Library
from beets.plugins import BeetsPlugin

DEFAULTS = {
    "auto": True,  # On import too.
    "overwrite": False,  # Also where there is a tempo, or a key.
    "octave": "heard",  # Or "likely": the likeliest reading of the tempo.
    "round": True,  # No: two decimals as well, in `tactus_tempo`, for beets' own are whole.
    "jobs": 0,  # Files at once; 0 for one each processor.
}


class TactusPlugin(BeetsPlugin):  # type: ignore[misc]
    """The command, and the stage of an import."""

    item_types = {"tactus_confidence": types.Float(2), "tactus_tempo": types.Float(2)}

    def __init__(self) -> None:
        super().__init__()
        self.config.add(DEFAULTS)
        if self.config["auto"].get(bool):
            self.import_stages = [self.imported]

    def commands(self) -> list[ui.Subcommand]:
        command = ui.Subcommand("tactus", help="find tempo and key of music")
        command.parser.add_option(
            "-f", "--force", action="store_true", help="hear again what has a tempo, and replace it"
        )
        command.parser.add_option(
            "-w",
            "--write",
            action="store_true",
            help="write the files' tags, whatever import.write is",
        )
        command.func = self.command
        return [command]

    def command(self, lib: Library, options: optparse.Values, arguments: list[str]) -> None:
        overwrite = options.force or self.config["overwrite"].get(bool)
        write = ui.should_write(options.write)
        self.hear(lib.items(ui.decargs(arguments)), overwrite, write)

    def imported(self, session: ImportSession, task: ImportTask) -> None:
        """Before the importer writes tags, if it does."""
        self.hear(task.imported_items(), self.config["overwrite"].get(bool), write=False)

    def hear(self, items: Iterable[Item], overwrite: bool, write: bool) -> None:
        """Hears the items that lack a tempo, or all, and stores what comes out."""
        wanted = [item for item in items if overwrite or not item["bpm"]]
        jobs = self.config["jobs"].get(int) or None
        outcomes = tactus.iter_analyze([util.syspath(item.path) for item in wanted], jobs=jobs)
        for item, outcome in zip(wanted, outcomes):
            if outcome.error is not None:
                self._log.warning("{0}", outcome.error)
            elif outcome.song is not None and self.take(item, outcome.song, overwrite):
                if write:
                    item.try_write()
                item.store()

    def take(self, item: Item, song: tactus.Song, overwrite: bool) -> bool:
        """Returns: whether there was a tempo to take."""
        tempo = self.tempo_of(song)
        if tempo is None:
            self._log.info("no beat was found in {0}", util.displayable_path(item.path))
            return False
        item["bpm"] = round(tempo)
        item["tactus_confidence"] = song.confidence
        if not self.config["round"].get(bool):
            item["tactus_tempo"] = round(tempo, 2)
        key = song.harmony.key if song.harmony else song.key
        if key is not None and (overwrite or not item["initial_key"]):
            item["initial_key"] = str(key)
        self._log.info("{0:.2f} BPM: {1}", tempo, util.displayable_path(item.path))
        return True

    def tempo_of(self, song: tactus.Song) -> float | None:
        """By the configured octave."""
        octave: Any = self.config["octave"].as_choice(["heard", "likely"])
        likely = octave == "likely" and song.tempo is not None and len(song.candidates) > 0
        return song.candidates[0].tempo if likely else song.tempo
