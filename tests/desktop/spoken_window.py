# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The real window on a virtual display, and what a screen reader is told of it.

TACTUS_DESKTOP names the program.
"""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

import mutagen.id3

import screen_reader as seen
from driver import Display, end, make_clicks, wait_for

PROGRAM = os.environ["TACTUS_DESKTOP"]
TITLE, ARTIST, TEMPO = range(3)
SONGS = (("Able", "Zoe", "120.00"), ("Baker", "Yan", "100.00"), ("", "", "140.00"))
UNTITLED = "charlie.mp3"  # has no title, so its row speaks the file's name


class World:
    """The display, the buses and the songs, which all tests share."""

    def __init__(self):
        self.scratch = tempfile.TemporaryDirectory()
        folder = pathlib.Path(self.scratch.name)
        folder.chmod(0o700)
        self.display = Display(folder)
        environment = self.display.environment
        self.bus = seen.start_session_bus(environment)
        os.environ.update(environment)
        self.reader = seen.Reader()
        self.songs = folder / "songs"
        self.songs.mkdir()
        for name, (title, artist, tempo) in zip(("able.mp3", "baker.mp3", UNTITLED), SONGS):
            path = self.songs / name
            make_clicks(path, float(tempo))
            tags = mutagen.id3.ID3()
            tags.add(mutagen.id3.TBPM(encoding=0, text=tempo))
            if title:
                tags.add(mutagen.id3.TIT2(encoding=1, text=title))
                tags.add(mutagen.id3.TPE1(encoding=1, text=artist))
            tags.save(str(path), v1=0, v2_version=3)

    def close(self):
        end(self.bus)
        self.display.close()
        self.scratch.cleanup()


WORLD = World()  # One, as a process knows only one accessibility bus.


class Window(unittest.TestCase):
    """A window of its own for every test, over copies of the songs."""

    def setUp(self):
        self.world = WORLD
        self.reader = WORLD.reader
        own = tempfile.TemporaryDirectory()
        self.addCleanup(own.cleanup)
        self.folder = pathlib.Path(own.name) / "music"
        shutil.copytree(self.world.songs, self.folder)

    def start(self, *paths):
        self.reader.forget()
        own = str(self.folder.parent)
        environment = {**self.world.display.environment, "TACTUS_NO_RECORDS": "",
                       "XDG_CONFIG_HOME": own, "XDG_DATA_HOME": own, "XDG_CACHE_HOME": own,
                       "XDG_STATE_HOME": own}
        # The order of the rows is that of the arguments.
        paths = paths or [self.folder / name for name in ("baker.mp3", "able.mp3", UNTITLED)]
        self.process = subprocess.Popen([PROGRAM, *map(str, paths)], env=environment,
                                        stderr=subprocess.DEVNULL)
        self.addCleanup(end, self.process)
        self.window = wait_for(lambda: self.shown("frame", "Tactus"), "the window")
        self.table = seen.Table(wait_for(lambda: self.find("table", "Files"), "the table"))
        wait_for(lambda: len(self.table.rows() or []) == len(paths), "the rows")
        self.world.display.activate(self.world.display.window("Tactus$"))
        return wait_for(self.reader.focus, "a focus")

    def shown(self, role, name):
        """The program's window with that role and beginning of a name."""
        for window in self.reader.windows("tactus-desktop"):
            if seen.role_of(window) == role and seen.name_of(window).startswith(name):
                return window
        return None

    def find(self, role, name=None):
        return seen.find(self.window, role, name)

    def wait_find(self, role, name=None):
        return wait_for(lambda: self.find(role, name), f"a {role} {name}")

    def press(self, *keys):
        self.world.display.press(*keys)

    def type(self, text):
        self.world.display.run("xdotool", "type", "--delay", "1", text)

    def wait_rows(self, column, texts):
        wait_for(lambda: self.table.column(column) == texts, f"rows {texts}")

    def select(self, row):
        """Goes to a row from the first one on."""
        self.press("End", "Home", *["Down"] * row)
        wait_for(lambda: self.table.selected() == [row], f"row {row} selected")

    def wait_picture(self):
        """The pane has heard the song of the row."""
        return self.wait_find("slider", "Some measures")

    def wait_label(self, text):
        return self.wait_find("label", text)
