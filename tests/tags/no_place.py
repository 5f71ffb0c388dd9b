#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""What is remembered, where there is no place for it: a full disk, a folder that may not be written, one that is a
file, no home folder. The answers and the tags must be the same, the exit status too, and there is one line about it at
the most for the journal and for the store each.

no_place.py TACTUS"""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

# 128 kbit/s at 44100 Hz, no padding: 417 bytes and 1152 samples each.
FRAMES = (b"\xff\xfb\x90\x64" + bytes(413)) * 400
NOBODY = 65534
FULL_KILOBYTES = 64
LINE = r"^tactus: /.*/(journal|songs)\.sqlite: the (journal of writes|store of results) can't be (opened or made|written)$"


class NoPlace(unittest.TestCase):
    usual = ()  # what is said and left behind where there is a home folder

    def setUp(self):
        room = tempfile.TemporaryDirectory()
        self.addCleanup(room.cleanup)
        self.root = pathlib.Path(room.name)
        self.root.chmod(0o755)
        self.songs = self.root / "songs"

    def make_songs(self):
        shutil.rmtree(self.songs, ignore_errors=True)
        self.songs.mkdir()
        for name in ("a.mp3", "b.mp3"):
            (self.songs / name).write_bytes(FRAMES)
        for path in (self.songs, *self.songs.iterdir()):
            os.chown(path, *((NOBODY, NOBODY) if os.geteuid() == 0 else (-1, -1)))

    def run_tactus(self, *arguments, **environment):
        kept = {key: value for key, value in os.environ.items()
                if not key.startswith(("XDG_", "TACTUS_")) and key != "HOME"}
        # Nobody has no rights beyond those of the files.
        user = {"user": NOBODY, "group": NOBODY, "extra_groups": []} if os.geteuid() == 0 else {}
        return subprocess.run([TACTUS, *map(str, arguments)], cwd=self.songs, env={**kept, **environment},
                              capture_output=True, text=True, check=False, **user)

    def answers(self, **environment):
        """What some commands say and leave behind, and what they say about the places."""
        self.make_songs()
        lines, told = [], []
        for command in (["analyze", "--format", "jsonl", "."],
                        ["analyze", "--write", "--short", "--format", "jsonl", "."],
                        ["analyze", "--force", "--candidates", "--format", "jsonl", "."],
                        ["fix", "=150", "a.mp3"],
                        ["tag", "set", "b.mp3", "TBPM", "99"]):
            done = self.run_tactus(*command, **environment)
            # Who set a tempo is known from the journal alone.
            out = done.stdout.replace('"setBy":"tactus"', '"setBy":"other"')
            lines.append((command, done.returncode, out))
            about = [line for line in done.stderr.splitlines() if "the journal" in line or "the store" in line]
            self.assertLessEqual(len(about), 2, about)
            self.assertEqual(len({"the journal" in line for line in about}), len(about), about)
            told += about
        files = {path.name: path.read_bytes() for path in self.songs.iterdir()}
        return lines, files, told

    def expected(self):
        """The same with a home folder, found once."""
        if not NoPlace.usual:
            home = self.root / "home"
            home.mkdir()
            os.chown(home, *((NOBODY, NOBODY) if os.geteuid() == 0 else (-1, -1)))
            lines, files, told = self.answers(HOME=str(home))
            self.assertEqual(told, [])
            self.assertTrue((home / ".local/state/tactus/journal.sqlite").exists())
            NoPlace.usual = (lines, files)
        return NoPlace.usual

    def expect_the_same(self, **environment):
        lines, files = self.expected()
        other_lines, other_files, told = self.answers(**environment)
        for (command, code, out), (_, other_code, other_out) in zip(lines, other_lines):
            self.assertEqual((other_code, other_out), (code, out), command)
            for line in out.splitlines() if "jsonl" in command else []:
                self.assertIsNone(json.loads(line)["error"])
        self.assertEqual(other_files, files)
        for line in told:
            self.assertRegex(line, LINE)
        return told

    def test_no_home_folder(self):
        self.assertEqual(self.expect_the_same(), [])
        self.assertEqual(self.expect_the_same(HOME=""), [])

    def test_a_home_that_may_not_be_written(self):
        locked = self.root / "locked"
        locked.mkdir()
        locked.chmod(0o555)
        self.assertTrue(self.expect_the_same(HOME=str(locked)))
        self.assertEqual(os.listdir(locked), [])

    def test_a_file_in_the_folders_place(self):
        (self.root / "file").write_text("")
        self.assertTrue(self.expect_the_same(HOME=str(self.root / "file")))

    def test_databases_that_may_only_be_read(self):
        home = self.root / "other"
        home.mkdir(mode=0o777)
        os.chown(home, *((NOBODY, NOBODY) if os.geteuid() == 0 else (-1, -1)))
        self.make_songs()
        self.run_tactus("analyze", "--write", "--short", ".", HOME=str(home))
        for folder, _, names in os.walk(home):
            for name in names:
                os.chmod(pathlib.Path(folder) / name, 0o444)
            os.chmod(folder, 0o555)
        try:
            self.expect_the_same(HOME=str(home))
        finally:
            for folder, _, _ in os.walk(home):
                os.chmod(folder, 0o755)

    def test_a_full_disk(self):
        small = self.root / "small"
        small.mkdir()
        done = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={FULL_KILOBYTES}k", "tmpfs", str(small)],
                              capture_output=True, check=False)
        if done.returncode != 0:
            self.skipTest("a small disk can't be mounted: " + done.stderr.decode().strip())
        try:
            small.chmod(0o777)
            for free in (0, 8, 40):
                filler = small / "filler"
                filler.unlink(missing_ok=True)
                for name in (".local", ".cache"):
                    shutil.rmtree(small / name, ignore_errors=True)
                filler.write_bytes(bytes((FULL_KILOBYTES - free) * 1024))
                self.assertTrue(self.expect_the_same(HOME=str(small)), free)
        finally:
            subprocess.run(["umount", str(small)], check=True)


if __name__ == "__main__":
    TACTUS = os.path.abspath(sys.argv[1])
    unittest.main(argv=sys.argv[:1])
