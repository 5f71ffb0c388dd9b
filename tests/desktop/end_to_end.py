#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Drives tactus-desktop from outside: a virtual display, a window manager, real keys and a real drag.

Results are judged by another program's eyes: mutagen reads the tags, files are compared byte by byte.
The environment names the programs: TACTUS_DESKTOP and DRAG_SOURCE.
"""

import hashlib
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

import mutagen.id3

from driver import PATIENCE_SECONDS, Display, end, make_clicks, make_long, wait_for

PROGRAM = os.environ["TACTUS_DESKTOP"]
DRAG_SOURCE = os.environ["DRAG_SOURCE"]


def tempo_of(path):
    """The tempo text that mutagen finds, or None."""
    try:
        frames = mutagen.id3.ID3(str(path)).getall("TBPM")
    except mutagen.id3.ID3NoHeaderError:
        return None
    return frames[0].text[0] if frames else None


def digest(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


class EndToEnd(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        self.folder.chmod(0o700)
        self.display = Display(self.folder)
        self.addCleanup(self.display.close)

    def start(self, *paths):
        process = subprocess.Popen([PROGRAM, *map(str, paths)], env=self.display.environment)
        self.addCleanup(end, process)
        return process, self.display.window("Tactus$")

    def make_batch(self, count=60):
        """Files that keep the program busy for longer than a test looks at it."""
        for i in range(count):
            make_long(self.folder / f"long{i:02}.wav")
        return sorted(self.folder.glob("long*.wav"))

    def wait_until_closed(self, process):
        self.assertEqual(process.wait(PATIENCE_SECONDS), 0)

    def test_arguments_are_analysed_and_their_tags_written(self):
        album = self.folder / "album" / "disc"
        album.mkdir(parents=True)
        make_clicks(album / "a.mp3", 128)
        make_clicks(album / "b.MP3", 110)
        for name, tempo in (("kept.mp3", "99"), ("zero.mp3", "0"), ("word.mp3", "fast")):
            make_clicks(album / name, 120)
            tags = mutagen.id3.ID3()
            tags.add(mutagen.id3.TBPM(encoding=0, text=tempo))
            tags.add(mutagen.id3.TIT2(encoding=1, text="Song"))
            tags.save(str(album / name), v1=0, v2_version=3)
        before = digest(album / "kept.mp3")
        process, window = self.start(self.folder / "album")
        for name, tempo in (("a.mp3", 128), ("b.MP3", 110), ("zero.mp3", 120), ("word.mp3", 120)):
            text = wait_for(
                lambda path=album / name: (found := tempo_of(path)) not in (None, "0", "fast")
                and found, name)
            self.assertAlmostEqual(float(text), tempo, delta=0.1)
            self.assertRegex(text, r"^\d+\.\d\d$")
        self.assertEqual(mutagen.id3.ID3(str(album / "zero.mp3"))["TIT2"].text[0], "Song")
        self.assertEqual(digest(album / "kept.mp3"), before)
        self.assertEqual(list(album.glob("*~")), [])
        self.display.activate(window)
        time.sleep(0.3)
        self.display.press("alt+F4")
        self.wait_until_closed(process)

    def test_a_folder_dragged_from_another_program_is_analysed(self):
        nested = self.folder / "nested" / "deeper"
        nested.mkdir(parents=True)
        make_clicks(nested / "a.mp3", 140)
        process, window = self.start()
        self.display.place(window, 300, 100)
        source = subprocess.Popen([DRAG_SOURCE, str(self.folder / "nested")],
                                  env=self.display.environment)
        self.addCleanup(end, source)
        other = self.display.window("^Drag source")
        self.display.place(other, 20, 100)
        time.sleep(0.3)
        self.display.run("xdotool", "mousemove", "--window", other, "60", "60", "mousedown", "1")
        for x in range(70, 700, 30):
            self.display.run("xdotool", "mousemove", str(20 + x), "300")
            time.sleep(0.02)
        self.display.run("xdotool", "mouseup", "1")
        text = wait_for(lambda: tempo_of(nested / "a.mp3"), "the dragged file's tempo")
        self.assertAlmostEqual(float(text), 140, delta=0.1)
        process.terminate()
        self.wait_until_closed(process)

    def test_closing_is_refused_until_the_batch_is_stopped(self):
        last = self.folder / "z.mp3"
        make_clicks(last, 120)
        before = digest(last)
        process, window = self.start(*self.make_batch(), last)
        self.display.activate(window)
        time.sleep(0.5)
        self.display.press("alt+F4")
        time.sleep(0.7)
        self.assertIsNone(process.poll())
        self.assertEqual(self.display.windows("Tactus$")[-1], window)
        self.display.press("Escape")
        wait_for(lambda: self.display.press("alt+F4") or process.poll() is not None, "the end")
        self.assertEqual(process.returncode, 0)
        self.assertEqual(digest(last), before, "the batch went on to its end")

    def test_what_was_added_by_mistake_can_be_got_rid_of(self):
        last = self.folder / "z.mp3"
        make_clicks(last, 120)
        before = digest(last)
        process, window = self.start(*self.make_batch(), last)
        self.display.activate(window)
        time.sleep(0.5)
        self.display.press("ctrl+a", "Delete")
        # Nothing is left to work on, so the window closes now.
        wait_for(lambda: self.display.press("ctrl+w") or process.poll() is not None, "the end")
        self.assertEqual(process.returncode, 0)
        self.assertEqual(digest(last), before)

    def test_tempos_that_came_with_the_files_are_replaced_only_after_a_yes(self):
        song = self.folder / "a.mp3"
        make_clicks(song, 120)
        tags = mutagen.id3.ID3()
        tags.add(mutagen.id3.TBPM(encoding=0, text="99"))
        tags.save(str(song), v1=0, v2_version=3)
        before = digest(song)
        process, window = self.start(song)
        self.display.activate(window)
        time.sleep(0.5)
        self.display.press("shift+F5")
        self.display.window("^Analyze again")
        self.display.press("Escape")
        wait_for(lambda: not self.display.windows("^Analyze again"), "the question's end")
        time.sleep(0.5)
        self.assertEqual(digest(song), before)
        process.terminate()
        self.wait_until_closed(process)

    def check_early_end(self, ask):
        """The program ends while files are being analysed, and leaves those behind alone."""
        song = self.folder / "a.mp3"
        make_clicks(song, 120)
        before = digest(song)
        batch = self.make_batch()
        process, window = self.start(*batch, song)
        self.display.activate(window)
        time.sleep(0.5)
        ask(process)
        self.wait_until_closed(process)
        self.assertEqual(digest(song), before)

    def test_ctrl_q_ends_a_running_batch(self):
        self.check_early_end(lambda process: self.display.press("ctrl+q"))

    def test_sigterm_ends_a_running_batch(self):
        self.check_early_end(lambda process: process.send_signal(signal.SIGTERM))

    def test_a_lost_display_leaves_whole_files(self):
        make_clicks(self.folder / "00.mp3", 120)
        songs = [self.folder / f"{i:02}.mp3" for i in range(20)]
        last = self.folder / "last.mp3"
        for song in (*songs[1:], last):
            shutil.copy(songs[0], song)
        process, _ = self.start(*songs, *self.make_batch(), last)
        wait_for(lambda: tempo_of(songs[2]), "the third file's tempo")
        self.display.server.kill()
        process.wait(PATIENCE_SECONDS)
        self.assertIsNone(tempo_of(last), "the batch was through too early")
        for song in songs:
            subprocess.run(["ffmpeg", "-v", "error", "-i", str(song), "-f", "null", "-"], check=True)
            self.assertIn(tempo_of(song), (None, tempo_of(songs[0])))
            self.assertIn(len(song.read_bytes()), (len(last.read_bytes()),
                                                   len(songs[0].read_bytes())))
        self.assertEqual(list(self.folder.glob("*~")), [])


if __name__ == "__main__":
    unittest.main()
