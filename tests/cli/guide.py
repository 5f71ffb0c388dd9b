#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Runs every command of the guide's recipes, as a reader would: the ```sh blocks of a page, one after another, over two
songs in a home folder of its own. What must come out of them is held here.

guide.py TACTUS GUIDE SERVICE"""

import array
import json
import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import unittest

RATE = 44100
# The programs of others that the recipes call; each does what the recipe relies on, and nothing else.
STUBS = {
    "systemctl": """case "$*" in
    "--user enable --now tactus.timer") ;;
    "--user start tactus.service") exec sh "$HOME/service" ;;
    *) echo "systemctl: $*" >&2; exit 1 ;;
esac""",
    "beet": """case "$*" in
    "import -q Incoming" | "update -M") ;;
    "ls -p bpm:0") find "$PWD/Music" -name '*.mp3' ;;
    *) echo "beet: $*" >&2; exit 1 ;;
esac""",
}


def clicks(path, tempo, seconds):
    """A file of short decaying strokes on every beat."""
    spacing = round(RATE * 60 / tempo)
    stroke = [int(20000 * 0.9985**i * (1 if i // 50 % 2 else -1)) for i in range(4000)]
    beat = array.array("h", stroke + [0] * (spacing - len(stroke)))
    samples = (beat * (int(seconds * RATE / spacing) + 1))[: int(seconds * RATE)].tobytes()
    form = struct.pack("<HHIIHH", 1, 1, RATE, 2 * RATE, 2, 16)
    data = b"WAVEfmt " + struct.pack("<I", 16) + form + b"data" + struct.pack("<I", len(samples)) + samples
    path.write_bytes(b"RIFF" + struct.pack("<I", len(data)) + data)


def service_script(text, program):
    """The command of a systemd service as a shell would run it."""
    command = re.search(r"^ExecStart=(.*)$", text, re.MULTILINE).group(1)
    command = command.replace("@CMAKE_INSTALL_FULL_BINDIR@/tactus", program).replace("%C", "$HOME/.cache")
    command = command.replace("${TACTUS_MUSIC}", '"$TACTUS_MUSIC"')
    return ('TACTUS_MUSIC=$HOME/Music; TACTUS_OPTIONS=\n'
            'mkdir -p "$HOME/.cache/tactus"\n'
            f"{command} > /dev/null\n")


class Guide(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.room = tempfile.TemporaryDirectory()
        cls.songs = {}
        for name, tempo in (("one", 120), ("two", 97)):
            wav, mp3 = (pathlib.Path(cls.room.name) / f"{name}.{kind}" for kind in ("wav", "mp3"))
            clicks(wav, tempo, 31)
            subprocess.run(["ffmpeg", "-v", "error", "-i", wav, "-metadata", f"title={name}", mp3], check=True)
            cls.songs[mp3.name] = mp3.read_bytes()

    @classmethod
    def tearDownClass(cls):
        cls.room.cleanup()

    def setUp(self):
        self.home = pathlib.Path(tempfile.mkdtemp(dir=self.room.name))
        for folder in ("Music", "Incoming"):
            (self.home / folder).mkdir()
            for name, content in self.songs.items():
                (self.home / folder / name).write_bytes(content)
        programs = self.home / "bin"
        programs.mkdir()
        for name, text in STUBS.items():
            (programs / name).write_text(f"#!/bin/sh\n{text}\n")
            (programs / name).chmod(0o755)
        (programs / "tactus").symlink_to(TACTUS)
        (self.home / "service").write_text(service_script(SERVICE.read_text(), str(programs / "tactus")))
        kept = {key: value for key, value in os.environ.items() if not key.startswith(("XDG_", "TACTUS_"))}
        self.environment = {**kept, "HOME": str(self.home), "PATH": f"{programs}:{os.environ['PATH']}"}

    def run_page(self, name):
        """What each block of the page prints."""
        blocks = re.findall(r"^```sh\n(.*?)^```$", (GUIDE / name).read_text(), re.MULTILINE | re.DOTALL)
        self.assertTrue(blocks, name)
        outputs = []
        for block in blocks:
            done = subprocess.run(["bash", "-euo", "pipefail", "-c", block], cwd=self.home, env=self.environment,
                                  capture_output=True, text=True, check=False)
            self.assertEqual(done.returncode, 0, f"{name}:\n{block}\n{done.stdout}{done.stderr}")
            outputs.append(done.stdout)
        return outputs

    def tempo_in(self, path):
        command = [TACTUS, "tag", "get", str(self.home / path), "TBPM"]
        return subprocess.run(command, env=self.environment, capture_output=True, text=True, check=False).stdout.strip()

    def test_every_night(self):
        outputs = self.run_page("nightly.md")
        # The service heard both, and stored nothing.
        self.assertEqual(len(outputs[2].splitlines()), 2)
        self.assertRegex(outputs[2], r"(?m)^(119|120)(\.\d+)?\t.*/Music/one\.mp3$")
        log = (self.home / ".cache/tactus/nightly.jsonl").read_text()
        self.assertEqual([json.loads(line)["written"] for line in log.splitlines()], [None, None])
        # The script of one's own stored them.
        self.assertEqual(outputs[3], "")
        self.assertRegex(self.tempo_in("Music/one.mp3"), r"^(119|120)\.")
        self.assertEqual((self.home / ".config/tactus/nightly.env").read_text().splitlines()[0],
                         "TACTUS_MUSIC=/srv/music")

    def test_beets_and_picard(self):
        self.run_page("beets-picard.md")
        for folder in ("Incoming", "Music"):
            for name, tempo in (("one.mp3", "120"), ("two.mp3", "97")):
                path = self.home / folder / name
                self.assertEqual(self.tempo_in(path), tempo)
                self.assertEqual(path.read_bytes()[:4], b"ID3\x04")  # as it was

    def test_scripts(self):
        outputs = self.run_page("scripts.md")
        lines = outputs[0].splitlines()
        self.assertRegex(lines[0], r"^9[67](\.\d+)? Music/two\.mp3$")
        self.assertRegex(lines[1], r"^1(19|20)(\.\d+)? Music/one\.mp3$")
        self.assertAlmostEqual(float(lines[2]), 108.5, delta=1)
        self.assertEqual(lines[3], "\t2")
        is_fast = float(lines[1].split()[0]) >= 120
        self.assertEqual((self.home / "fast.m3u").read_text(), "Music/one.mp3\n" if is_fast else "")
        self.assertEqual(len((self.home / "week.csv").read_text().splitlines()), 3)
        self.assertRegex(outputs[2], r"(?m)^  9[67]\.\d\d  two$")
        self.assertRegex(outputs[3], r"(?m)^2 heard, 0 failed, [\d.]+ s$")
        self.assertEqual(outputs[4], "all done\n")

    def test_a_wrong_tempo(self):
        outputs = self.run_page("wrong-tempo.md")
        self.assertRegex(outputs[0], r"(?m)Source +Or$")
        self.assertRegex(outputs[1], r"(?m)^  \d+")
        self.assertRegex(outputs[3], r"(?m)^write\tnothing -> ")
        fixed = outputs[4].splitlines()
        self.assertEqual(fixed[0], fixed[1])  # what the dry run says is done
        self.assertRegex(fixed[0], r"^Music/one\.mp3: 1\d\d\.\d\d -> 2\d\d\.\d\d$")
        self.assertRegex(fixed[2], r"^Music/two\.mp3: 9\d\.\d\d -> 174\.50$")
        # The last write of the second song, then the last batch, which was that undo.
        self.assertRegex(outputs[5], r"(?m)^Music/two\.mp3: TBPM '174\.50' -> nothing$")
        self.assertRegex(outputs[5].splitlines()[-1], r"TBPM nothing -> '174\.50'$")


if __name__ == "__main__":
    TACTUS = os.path.abspath(sys.argv[1])
    GUIDE, SERVICE = map(pathlib.Path, sys.argv[2:4])
    unittest.main(argv=sys.argv[:1])
