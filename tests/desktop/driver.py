# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""What tests from outside need: a virtual display with a window manager, keys, and music."""

import os
import subprocess
import time

PATIENCE_SECONDS = 60


def wait_for(condition, what):
    """Waits until the condition holds and returns what it gave."""
    end = time.monotonic() + PATIENCE_SECONDS
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.02)
    raise AssertionError(f"waited in vain: {what}")


def make_clicks(path, bpm, seconds=45):
    """An MP3 file with a click on every beat, without any tag. Half a minute and more is analysed."""
    beat = 60 / bpm
    tone = f"0.6*exp(-mod(t,{beat})*50)*sin(2*PI*1000*mod(t,{beat}))"
    subprocess.run(
        ["ffmpeg", "-v", "error", "-f", "lavfi", "-i", f"aevalsrc='{tone}':s=44100:d={seconds}",
         "-map_metadata", "-1", "-id3v2_version", "0", str(path)], check=True)


def make_long(path, seconds=1800):
    """A silent WAV file of half an hour that takes next to no room on the disk."""
    size = seconds * 88200
    header = (b"RIFF" + (size + 36).to_bytes(4, "little") + b"WAVEfmt " + (16).to_bytes(4, "little")
              + (1).to_bytes(2, "little") + (1).to_bytes(2, "little") + (44100).to_bytes(4, "little")
              + (88200).to_bytes(4, "little") + (2).to_bytes(2, "little")
              + (16).to_bytes(2, "little") + b"data" + size.to_bytes(4, "little"))
    path.write_bytes(header)
    os.truncate(path, size + len(header))


def end(process):
    """Ends a program that may have ended already."""
    if process.poll() is None:
        process.kill()
    process.wait()


class Display:
    """A virtual screen with a window manager on it."""

    def __init__(self, scratch):
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x900x24", "-nolisten", "tcp",
             "-noreset"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as reader:
            number = reader.readline().strip()
        self.environment = {
            **os.environ, "DISPLAY": f":{number}", "QT_QPA_PLATFORM": "xcb", "LC_ALL": "C.UTF-8",
            "XDG_RUNTIME_DIR": str(scratch), "HOME": str(scratch),
            "TACTUS_NO_RECORDS": "1"}
        self.manager = subprocess.Popen(
            ["openbox"], env=self.environment, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        wait_for(lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"),
                 "a window manager")

    def run(self, *command):
        return subprocess.run(command, env=self.environment, capture_output=True, text=True,
                              check=False).stdout

    def windows(self, title):
        return self.run("xdotool", "search", "--onlyvisible", "--name", title).split()

    def window(self, title):
        return wait_for(lambda: self.windows(title), f"a window {title}")[-1]

    def press(self, *keys):
        self.run("xdotool", "key", "--clearmodifiers", *keys)

    def activate(self, window):
        self.run("xdotool", "windowactivate", "--sync", window)

    def place(self, window, x, y):
        self.run("xdotool", "windowmove", "--sync", window, str(x), str(y))

    def close(self):
        for process in (self.manager, self.server):
            end(process)
