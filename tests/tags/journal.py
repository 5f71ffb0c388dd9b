#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Kills `tactus analyze --write` in the middle of its writes, and undoes batches of many files.

Whatever happens, the journal knows of every file that was written, and an undo brings every byte
back.

journal.py TACTUS [FILES KILLS]: 100 files and 5 kills unless said.
"""

import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time
import unittest

TACTUS = ""
FILES = 100
KILLS = 5

# Frames of MPEG-1 layer III at 128 kbit/s and 44100 Hz, 417 bytes each.
FRAME = b"\xff\xfb\x90\x64" + bytes(413)


def syncsafe(value):
    return bytes(value >> shift & 0x7F for shift in (21, 14, 7, 0))


def frame(name, body, version=3):
    size = syncsafe(len(body)) if version == 4 else len(body).to_bytes(4, "big")
    return name + size + b"\0\0" + body


def tag(version, body):
    return b"ID3" + bytes([version, 0, 0]) + syncsafe(len(body)) + body


def song(number):
    """A short song; its tag, if any, is of another kind for each of six."""
    random.seed(number)
    title = frame(b"TIT2", b"\0Song %d" % number)
    image = b"\0image/png\0\3\0" + random.randbytes(3000)
    tags = (b"", tag(3, title), tag(3, title + bytes(500)),
            tag(4, title + frame(b"APIC", image, 4)), tag(2, b"TT2\0\0\5\0Song"),
            tag(3, frame(b"APIC", image) + frame(b"TBPM", b"\x000") + bytes(64)))
    return tags[number % len(tags)] + FRAME * (40 + number % 7)


class Journal(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory()
        self.root = pathlib.Path(self.scratch.name).resolve()
        self.songs = self.root / "songs"
        self.songs.mkdir()
        self.environment = {**os.environ, "XDG_STATE_HOME": str(self.root / "state"),
                            "XDG_CACHE_HOME": str(self.root / "cache"), "TACTUS_NO_RECORDS": ""}
        self.before = {}
        for i in range(FILES):
            path = self.songs / f"{i:04}.mp3"
            path.write_bytes(song(i))
            os.utime(path, ns=(10**18, 10**18 + i * 1_000_003))
            self.before[path] = (path.read_bytes(), path.stat().st_mtime_ns)

    def tearDown(self):
        self.scratch.cleanup()

    def start(self, *words):
        return subprocess.Popen([TACTUS, *words], env=self.environment, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, text=True)

    def tactus(self, *words):
        process = self.start(*words)
        out, problem = process.communicate()
        self.assertEqual(process.returncode, 0, problem)
        return out

    def written(self):
        return [path for path, (content, _) in self.before.items() if path.read_bytes() != content]

    def history(self):
        return [json.loads(line) for line in self.tactus("history", "--json").splitlines()]

    def expect_all_back(self, with_times):
        for path, (content, mtime) in self.before.items():
            self.assertEqual(path.read_bytes(), content, path)
            if with_times:
                self.assertEqual(path.stat().st_mtime_ns, mtime, path)
        self.assertEqual(sorted(self.songs.iterdir()), sorted(self.before))

    def test_a_batch_comes_back_byte_for_byte_with_its_times(self):
        self.tactus("analyze", *WRITE, "-q", str(self.songs))
        self.assertEqual(len(self.written()), FILES)
        self.tactus("undo", "--keep-mtime")
        self.expect_all_back(with_times=True)
        # The undo of the undo, and that one's undo.
        self.tactus("undo")
        self.assertEqual(len(self.written()), FILES)
        self.tactus("undo")
        self.expect_all_back(with_times=False)

    def test_a_kill_loses_nothing(self):
        cut = 0
        for kill in range(KILLS):
            process = self.start("analyze", *WRITE, "-q", str(self.songs))
            # Somewhere in the first half of the batch, however quick the machine is.
            begin = time.monotonic()
            enough = random.Random(kill).randint(1, FILES // 2)
            while len(self.written()) < enough and process.poll() is None:
                time.sleep(0.001)
            process.kill()
            process.communicate()
            written = self.written()
            cut += 0 < len(written) < FILES
            batch = self.history()[0]["batch"]
            known = {json.loads(line)["path"]
                     for line in self.tactus("history", "--json", str(batch)).splitlines()}
            self.assertLessEqual({str(path) for path in written}, known)
            # Each job may have entered a write that it didn't come to make.
            self.assertLessEqual(len(known), len(written) + os.cpu_count())
            for path in written:
                # The sound behind the tag is whole.
                content = self.before[path][0]
                self.assertTrue(path.read_bytes().endswith(content[content.index(FRAME):]), path)
            self.tactus("undo", str(batch), "--keep-mtime")
            for leftover in self.songs.glob("*.MP~"):
                leftover.unlink()
            self.expect_all_back(with_times=True)
            print(f"kill {kill}: {len(written)} of {FILES} written after "
                  f"{time.monotonic() - begin:.2f} s, all back", file=sys.stderr)
        self.assertGreater(cut, 0, "no kill fell into a batch")


WRITE = ("-w", "--short")

if __name__ == "__main__":
    TACTUS = os.path.abspath(sys.argv[1])
    if len(sys.argv) > 2:
        FILES, KILLS = int(sys.argv[2]), int(sys.argv[3])
    unittest.main(argv=sys.argv[:1])
