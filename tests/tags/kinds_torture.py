#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Kills `tactus analyze --write` at random times while it writes FLAC, M4A, Opus and AIFF files.

Whatever the moment, the song's name must hold the old file or the new one, byte for byte.

kinds_torture.py TACTUS [KILLS]     kills of each kind, 8 unless said
"""

import hashlib
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

import kinds_matrix

TACTUS = ""
KILLS = 8
KINDS = ("a.flac", "a.m4a", "a.opus", "a.aiff")
SECONDS = 150  # of music, so that copying and proving a file take their time


def digest(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


class KindsTorture(unittest.TestCase):
    def setUp(self):
        room = tempfile.TemporaryDirectory()
        self.addCleanup(room.cleanup)
        self.folder = pathlib.Path(room.name)
        # Fixed seed: the times differ from run to run anyway.
        self.random = random.Random(5)

    def start(self, song):
        command = [TACTUS, "analyze", "-q", "-w", "-f", "--write-types", "all", str(song)]
        return subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)

    def make(self, name):
        source = self.folder / "source.wav"
        kinds_matrix.beats(source, SECONDS)
        options, writer = next((options, writer) for kind, options, writer in kinds_matrix.KINDS if kind == name)
        song = self.folder / name
        subprocess.run(["ffmpeg", "-v", "error", "-y", "-i", str(source), *options, str(song)], check=True)
        kinds_matrix.write_tags(song, writer, None)
        kinds_matrix.add_picture_and_comment(song)
        return song

    def wait_for_the_copy(self, song, process):
        """Most of a run is listening: a kill counts from when the new file is there."""
        copy = song.with_name(song.name + ".MP~")
        while process.poll() is None and not copy.exists():
            time.sleep(0.0005)
        return time.monotonic()

    def test_kills_lose_no_song(self):
        for name in KINDS:
            with self.subTest(name):
                song = self.make(name)
                old_file = self.folder / "old"
                shutil.copyfile(song, old_file)
                with self.start(song) as process:
                    begin = self.wait_for_the_copy(song, process)
                    _, problem = process.communicate()
                    longest = 3 * (time.monotonic() - begin)  # some come behind the end
                self.assertEqual((process.returncode, problem), (0, b""))
                old, new = digest(old_file), digest(song)
                self.assertNotEqual(old, new)
                found = {"old": 0, "new": 0, "half-made": 0}
                for repetition in range(KILLS):
                    shutil.copyfile(old_file, song)
                    with self.start(song) as process:
                        self.wait_for_the_copy(song, process)
                        time.sleep(self.random.uniform(0, longest))
                        process.kill()
                    held = digest(song)
                    self.assertIn(held, (old, new), f"{name}, repetition {repetition}")
                    found["old" if held == old else "new"] += 1
                    found["half-made"] += song.with_name(name + ".MP~").exists()
                print(f"{name}: {KILLS} kills within {longest:.3f} s: {found}")
                # What was left half-made is no obstacle.
                shutil.copyfile(old_file, song)
                with self.start(song) as process:
                    process.communicate()
                self.assertEqual(digest(song), new)
                self.assertFalse(song.with_name(name + ".MP~").exists())


if __name__ == "__main__":
    TACTUS = sys.argv.pop(1)
    if len(sys.argv) > 1:
        KILLS = int(sys.argv.pop(1))
    if kinds_matrix.MISSING:
        sys.exit("\n".join(kinds_matrix.MISSING))
    unittest.main(verbosity=2)
