#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""guide_commands.py TACTUS PAGE...: runs every line of the pages that begins with "$ " in a shell, in
a folder that has a Music folder, and fails for one that fails or prints nothing where it should."""

import math
import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import wave

RATE = 44100
BPM = 124
MEASURES = 20


def write_song(path):
    """Measures of four strokes at BPM over a chord in A minor, the first stroke louder."""
    step = round(60 * RATE / BPM)
    measure = []
    for i in range(4 * step):
        gain = 0.7 if i < step else 0.45
        time = i % step / RATE
        stroke = gain * math.exp(-time / 0.01) * math.cos(2 * math.pi * 150 * time)
        chord = sum(math.sin(2 * math.pi * f * i / RATE) for f in (220.0, 261.63, 329.63))
        measure.append(round(32767 * (stroke + 0.05 * chord) / 1.2))
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(struct.pack(f"<{len(measure)}h", *measure) * MEASURES)


def commands(page):
    return re.findall(r"^\$ (.*)$", pathlib.Path(page).read_text(encoding="utf-8"), re.M)


def main():
    tactus = pathlib.Path(sys.argv[1]).resolve()
    failed = 0
    count = 0
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "Music").mkdir()
        (folder / "bin").mkdir()
        (folder / "bin/tactus").symlink_to(tactus)
        write_song(folder / "Music/one.wav")
        (folder / "Music/broken.wav").write_text("no sound")
        environment = dict(os.environ, PATH=f"{folder}/bin:{os.environ['PATH']}", HOME=name,
                           XDG_CACHE_HOME=f"{folder}/cache", XDG_STATE_HOME=f"{folder}/state")
        for page in sys.argv[2:]:
            for command in commands(page):
                count += 1
                run = subprocess.run(["bash", "-c", command], cwd=folder, env=environment,
                                     capture_output=True, text=True, check=False)
                # 1: broken.wav can't be heard.
                needs_output = " -o " not in command
                if run.returncode not in (0, 1) or (needs_output and not run.stdout.strip()):
                    failed += 1
                    print(f"{page}: {command}\n{run.stdout}{run.stderr}")
    print(f"{count} commands, {failed} failed")
    return 1 if failed or not count else 0


if __name__ == "__main__":
    sys.exit(main())
