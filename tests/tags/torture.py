#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Kills `tactus tag set` and `tactus analyze -w`, fills their disk and lets them meet themselves.

Whatever happens, the song's name must hold one complete file: the old one or the new one.

torture.py TACTUS
"""

import ctypes
import hashlib
import os
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

TACTUS = ""
SONG_BYTES = 20 * 1000 * 1000
KILLS = 200
KILLS_IN_PLACE = 100
STOPS = 84  # stops ahead of a change of the song: one before and one behind each system call
STOPS_BEHIND = 16  # and behind it


def syncsafe(value):
    return bytes(value >> shift & 0x7F for shift in (21, 14, 7, 0))


def tag(frames, padding):
    body = frames + bytes(padding)
    return b"ID3\x03\x00\x00" + syncsafe(len(body)) + body


def frame(name, body):
    return name + len(body).to_bytes(4, "big") + b"\0\0" + body


def text(value):
    return b"\x01\xff\xfe" + value.encode("utf-16-le") + b"\0\0"


TITLE = frame(b"TIT2", text("A title"))

# Four frames of MPEG-1 layer III at 128 kbit/s and 44100 Hz, 417 bytes each: what a song's sound
# begins with. The rest of it may be anything. By themselves they are silence.
FRAMES = (b"\xff\xfb\x90\x64" + bytes(413)) * 4


def sound(seed, size):
    return FRAMES + random.Random(seed).randbytes(size - len(FRAMES))


def digest(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def start(path, tempo):
    return subprocess.Popen(
        [TACTUS, "tag", "set", str(path), "TBPM", tempo],
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
    )


def finish(process):
    _, problem = process.communicate()
    return process.returncode, problem.decode()


def set_tempo(path, tempo):
    return finish(start(path, tempo))


class Tracee:
    """A process that is stopped before and behind each of its system calls, and killed at one."""

    TRACE_ME, SYSCALL = 0, 24  # Standard: ptrace(2).

    def __init__(self, command):
        self.libc = ctypes.CDLL(None, use_errno=True)
        self.command = [os.fsencode(word) for word in command]

    def run(self, last_stop=None, look=lambda stop: None):
        """Kills it at stop number `last_stop`; calls `look` at each stop. Returns: the stops up to
        its end."""
        process = os.fork()
        if process == 0:
            silent = os.open(os.devnull, os.O_RDWR)
            for stream in (0, 1, 2):
                os.dup2(silent, stream)
            self.libc.ptrace(self.TRACE_ME, 0, None, None)
            os.execv(self.command[0], self.command)
        stops = 0
        while True:
            _, status = os.waitpid(process, 0)
            if os.WIFEXITED(status) or os.WIFSIGNALED(status):
                return stops
            stops += 1
            look(stops)
            if stops == last_stop:
                os.kill(process, signal.SIGKILL)
            else:
                self.libc.ptrace(self.SYSCALL, process, None, None)


class Torture(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.song = pathlib.Path(self.folder.name, "song.mp3")
        self.home = pathlib.Path(self.folder.name, "home")
        for kind in ("CACHE", "STATE"):
            os.environ[f"XDG_{kind}_HOME"] = str(self.home)
        self.temporary = self.song.with_name("song.MP~")
        # Fixed seed: the times differ from run to run anyway.
        self.random = random.Random(3)

    def kill_at_random_times(self, repetitions, longest, restore, tempo_of, allowed_of):
        """Returns how often the old file, the new file and a half-made one were found."""
        found = {"old": 0, "new": 0, "half-made": 0}
        for repetition in range(repetitions):
            restore(repetition)
            old, new = allowed_of(repetition)
            process = start(self.song, tempo_of(repetition))
            time.sleep(self.random.uniform(0, longest))
            process.send_signal(signal.SIGKILL)
            process.communicate()
            held = digest(self.song)
            self.assertIn(held, (old, new), f"repetition {repetition}")
            found["old" if held == old else "new"] += 1
            found["half-made"] += self.temporary.exists()
        return found

    def test_kill_while_a_new_file_is_made(self):
        old_file = self.song.with_name("old")
        new_file = self.song.with_name("new.mp3")
        old_file.write_bytes(tag(TITLE, 0) + sound(1, SONG_BYTES))
        shutil.copyfile(old_file, new_file)
        begin = time.monotonic()
        self.assertEqual(set_tempo(new_file, "128.00"), (0, ""))
        longest = 1.3 * (time.monotonic() - begin)
        old, new = digest(old_file), digest(new_file)
        self.assertEqual(new_file.stat().st_size, old_file.stat().st_size + 4096 + 27)
        shutil.copyfile(old_file, self.song)

        def restore(_):
            if self.song.stat().st_size != old_file.stat().st_size:
                shutil.copyfile(old_file, self.song)

        found = self.kill_at_random_times(
            KILLS, longest, restore, lambda _: "128.00", lambda _: (old, new)
        )
        print(f"{KILLS} kills within {longest:.3f} s: {found}")
        self.assertGreater(found["half-made"], 0, "no kill came in the middle")
        restore(None)
        self.assertEqual(set_tempo(self.song, "128.00"), (0, ""))
        self.assertEqual(digest(self.song), new)
        self.assertFalse(self.temporary.exists())

    def test_kill_while_the_tag_is_written_in_place(self):
        audio = sound(2, 1_000_000)
        picture = frame(b"APIC", b"\0image/png\0\3\0" + random.Random(4).randbytes(300_000))

        def content(tempo):
            frames = TITLE + picture + frame(b"TBPM", text(tempo))
            return tag(frames, 2048) + audio

        def tempo_of(repetition):
            return f"{101 + repetition}.00"

        def sum_of(repetition):
            return hashlib.sha256(content(tempo_of(repetition))).hexdigest()

        begin = time.monotonic()
        self.song.write_bytes(content("99.00"))
        self.assertEqual(set_tempo(self.song, "98.00"), (0, ""))
        self.assertEqual(self.song.read_bytes(), content("98.00"))
        longest = 1.3 * (time.monotonic() - begin)

        def restore(repetition):
            self.song.write_bytes(content(tempo_of(repetition - 1)))

        found = self.kill_at_random_times(
            KILLS_IN_PLACE, longest, restore, tempo_of, lambda n: (sum_of(n - 1), sum_of(n))
        )
        print(f"{KILLS_IN_PLACE} kills within {longest:.3f} s: {found}")
        self.assertEqual(found["half-made"], 0)

    def test_kill_while_a_tag_that_fits_changes_over_many_pages(self):
        # The title's length moves eight megabytes of picture.
        picture = frame(b"APIC", b"\0image/png\0\3\0" + random.Random(4).randbytes(8_000_000))
        audio = sound(2, 1_000_000)

        def content(title):
            title_frame = frame(b"TIT2", text(title))
            return tag(title_frame + picture, 100 - len(title_frame)) + audio

        files = [content("Short"), content("A longer title")]
        self.assertEqual(len(files[0]), len(files[1]))
        command = [TACTUS, "tag", "set", str(self.song), "TIT2", "A longer title"]
        self.song.write_bytes(files[0])
        begin = time.monotonic()
        subprocess.run(command, check=True)
        longest = 1.3 * (time.monotonic() - begin)
        self.assertEqual(self.song.read_bytes(), files[1])
        found = [0, 0]
        for repetition in range(KILLS_IN_PLACE):
            self.song.write_bytes(files[0])
            process = subprocess.Popen(command)
            time.sleep(self.random.uniform(0, longest))
            process.kill()
            process.wait()
            held = self.song.read_bytes()
            self.assertTrue(held in files, f"a torn file in repetition {repetition}")
            found[files.index(held)] += 1
        print(f"{KILLS_IN_PLACE} kills within {longest:.3f} s: {found[0]} old, {found[1]} new")

    def forget_earlier_runs(self):
        """Removes journal and cache, which a killed process leaves for the next one to mend: that
        takes a different number of calls."""
        shutil.rmtree(self.home, ignore_errors=True)

    def kill_at_every_call(self, old_file, what):
        """Kills at each system call around the song's change, so that every moment between looking
        at the song and its last byte is met. A sanitizer makes thousands of calls at the end."""
        tracee = Tracee([TACTUS, "tag", "set", str(self.song), "TBPM", "128.00"])
        self.song.write_bytes(old_file)
        self.forget_earlier_runs()
        still_old = [0]

        def look(stop):
            if self.song.read_bytes() == old_file:
                still_old.append(stop)

        total = tracee.run(look=look)
        change = still_old[-1] + 1
        new_file = self.song.read_bytes()
        self.assertNotEqual(new_file, old_file)
        found = {"old": 0, "new": 0, "half-made": 0}
        for stop in range(max(change - STOPS, 1), min(change + STOPS_BEHIND, total) + 1):
            self.forget_earlier_runs()
            self.song.write_bytes(old_file)
            tracee.run(stop)
            held = self.song.read_bytes()
            self.assertTrue(held in (old_file, new_file), f"a torn file at stop {stop}")
            found["old" if held == old_file else "new"] += 1
            found["half-made"] += self.temporary.exists()
        print(f"{what}: killed at {found['old'] + found['new']} of {total} stops, the song changed "
              f"at {change}: {found}")
        self.assertGreater(min(found["old"], found["new"]), 0)
        # What the killed ones left is no obstacle.
        self.song.write_bytes(old_file)
        self.assertEqual(set_tempo(self.song, "128.00"), (0, ""))
        self.assertEqual(self.song.read_bytes(), new_file)
        self.assertFalse(self.temporary.exists())

    def test_kill_at_every_system_call_of_a_write(self):
        try:
            Tracee(["/bin/true"]).run()
        except OSError as error:
            self.skipTest(f"processes can't be traced: {error}")
        self.kill_at_every_call(tag(TITLE, 0) + sound(1, 100_000), "a new file")
        self.kill_at_every_call(tag(TITLE, 300) + sound(1, 100_000), "in place")

    def test_kill_while_a_song_is_analysed_and_written(self):
        # Ten seconds of silence are one measure of 96 beats a minute.
        old_file = tag(TITLE, 0) + FRAMES * 96
        command = [TACTUS, "analyze", "-w", "--short", "-q", "-o", os.devnull, str(self.song)]
        self.song.write_bytes(old_file)
        begin = time.monotonic()
        subprocess.run(command, check=True)
        longest = 1.3 * (time.monotonic() - begin)
        new_file = self.song.read_bytes()
        self.assertIn(b"9\x005\x00.", new_file[: 10 + len(TITLE) + 27])
        self.assertEqual(len(new_file), len(old_file) + 4096 + len(frame(b"TBPM", text("95.70"))))
        found = {old_file: 0, new_file: 0}
        for repetition in range(KILLS_IN_PLACE):
            self.song.write_bytes(old_file)
            process = subprocess.Popen(command)
            time.sleep(self.random.uniform(0, longest))
            process.kill()
            process.wait()
            held = self.song.read_bytes()
            self.assertTrue(held in found, f"a torn file in repetition {repetition}")
            found[held] += 1
        print(f"{KILLS_IN_PLACE} kills within {longest:.3f} s of an analysis: "
              f"{found[old_file]} old, {found[new_file]} new")

    def test_interrupt_lets_the_write_finish(self):
        self.song.write_bytes(tag(TITLE, 0) + sound(1, SONG_BYTES))
        process = start(self.song, "128.00")
        while process.poll() is None and not self.temporary.exists():
            time.sleep(0.001)
        process.send_signal(signal.SIGINT)
        code, problem = finish(process)
        self.assertEqual(problem, "")
        self.assertIn(code, (0, 130))
        self.assertFalse(self.temporary.exists())
        self.assertEqual(self.song.stat().st_size, SONG_BYTES + 10 + len(TITLE) + 27 + 4096)

    def test_full_disk_leaves_the_song_as_it_was(self):
        mount = self.song.with_name("small")
        mount.mkdir()
        done = subprocess.run(
            ["mount", "-t", "tmpfs", "-o", "size=8m", "tmpfs", str(mount)],
            capture_output=True,
            check=False,
        )
        if done.returncode != 0:
            self.skipTest("a small disk can't be mounted: " + done.stderr.decode().strip())
        try:
            song = mount / "song.mp3"
            song.write_bytes(tag(TITLE, 0) + sound(1, 5_000_000))
            before, status = digest(song), song.stat()
            code, problem = set_tempo(song, "128.00")
            self.assertEqual(code, 1)
            self.assertIn("no space left", problem)
            self.assertEqual(digest(song), before)
            self.assertEqual(song.stat().st_mtime_ns, status.st_mtime_ns)
            self.assertEqual(sorted(os.listdir(mount)), ["song.mp3"])
            # Where the tag has room, a full disk is no obstacle.
            song.write_bytes(tag(TITLE, 100) + sound(1, 5_000_000))
            (mount / "filler").write_bytes(bytes(8 * 1024 * 1024 - 5_300_000))
            self.assertEqual(set_tempo(song, "128.00"), (0, ""))
        finally:
            subprocess.run(["umount", str(mount)], check=True)

    def test_a_song_that_is_being_written_is_left_alone(self):
        # A download: a writer appends to the song, a piece every ten milliseconds, while the tempo
        # is set again and again. Whatever is refused, no piece may be missing at the end.
        piece = random.Random(7).randbytes(1000)
        self.song.write_bytes(tag(TITLE, 0) + sound(1, 100_000))
        before = self.song.read_bytes()
        refused = 0
        with open(self.song, "ab", buffering=0) as download:
            for _ in range(50):
                download.write(piece)
                code, problem = set_tempo(self.song, "128.00")
                self.assertEqual(code, 1)
                self.assertRegex(problem, "another program|changed in the meantime")
                refused += 1
        self.assertEqual(self.song.read_bytes(), before + 50 * piece)
        print(f"{refused} of 50 writes refused while a download ran")
        self.assertEqual(set_tempo(self.song, "128.00"), (0, ""))

    def test_processes_on_one_song_never_lose_it(self):
        neighbour = self.song.with_name("song.MP3")
        audio = {
            self.song: sound(5, 2_000_000),
            neighbour: sound(6, 2_000_001),
        }
        wins = losses = 0
        for repetition in range(30):
            for path, data in audio.items():
                path.write_bytes(tag(TITLE, 0) + data)
            tempos = [f"{100 + repetition}.{i}0" for i in range(3)]
            started = [(path, tempo, start(path, tempo)) for tempo in tempos for path in audio]
            outcomes = [(path, tempo, finish(process)) for path, tempo, process in started]
            for path, data in audio.items():
                allowed = {tag(TITLE, 0) + data: None}
                for tempo in tempos:
                    frames = TITLE + frame(b"TBPM", text(tempo))
                    allowed[tag(frames, 4096) + data] = tempo
                held = path.read_bytes()
                self.assertIn(held, allowed)
                won = [tempo for p, tempo, (code, _) in outcomes if p == path and code == 0]
                if allowed[held] is None:
                    self.assertEqual(won, [])
                else:
                    self.assertIn(allowed[held], won)
            for _, _, (code, problem) in outcomes:
                wins += code == 0
                losses += code == 1
                if code != 0:
                    self.assertEqual(code, 1)
                    self.assertRegex(problem, "another program|changed in the meantime")
            self.assertFalse(self.temporary.exists())
        print(f"{wins} processes wrote, {losses} failed cleanly")
        self.assertGreater(wins, 0)


if __name__ == "__main__":
    TACTUS = sys.argv.pop(1)
    unittest.main(verbosity=2)
