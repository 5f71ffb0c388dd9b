#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Analyses a tree of good and broken files and holds the answers against what it wrote.

hostile_tree.py TACTUS [FILES BROKEN]: every good file has a tempo, every broken one a message, the
exit code is 1, memory stays flat, and an interrupt ends the run early with what is done.
"""

import json
import math
import os
import pathlib
import random
import resource
import signal
import struct
import subprocess
import sys
import tempfile
import time

RATE = 44100
CLIP_SECONDS = 2
FLAT_KILOBYTES = 64 * 1024  # what a whole tree may take more than its first tenth
ENV = {**os.environ, "LC_ALL": "C.UTF-8", "TACTUS_NO_RECORDS": "1"}


def clicks(bpm, seconds):
    step = RATE * 60 // bpm
    return b"".join(
        struct.pack("<h", round(20000 * math.exp(-(i % step) / 400) * math.sin(0.3 * (i % step))))
        for i in range(seconds * RATE)
    )


def wav(pcm, channels=1, rate=RATE, bits=16, kind=1, claimed=None):
    align = channels * bits // 8
    form = struct.pack("<4sIHHIIHH", b"fmt ", 16, kind, channels, rate, (rate * align) % 2**32, align, bits)
    data = struct.pack("<4sI", b"data", len(pcm) if claimed is None else claimed)
    return struct.pack("<4sI4s", b"RIFF", 36 + len(pcm), b"WAVE") + form + data + pcm


def broken_kinds(good, target):
    """Name and maker of each way to break a file; a maker takes the path and a number."""
    pcm = good[44:]

    def content(make):
        return lambda path, i: path.write_bytes(make(random.Random(i)))

    return {
        "empty": content(lambda r: b""),
        "noise": content(lambda r: r.randbytes(r.randrange(1, 20000))),
        "zeros": content(lambda r: bytes(r.randrange(1, 200000))),
        "text": content(lambda r: b"This is no music.\n" * r.randrange(1, 500)),
        "header_cut": content(lambda r: good[: r.randrange(1, 40)]),
        "no_data": content(lambda r: good[:36]),
        "no_sample": content(lambda r: wav(b"")),
        "no_channel": content(lambda r: wav(pcm, channels=0)),
        "no_rate": content(lambda r: wav(pcm, rate=0)),
        "rate_huge": content(lambda r: wav(pcm, rate=2**32 - 1)),
        "rate_tiny": content(lambda r: wav(pcm, rate=1)),
        "kind_unknown": content(lambda r: wav(pcm, kind=0x7777)),
        "claims_much": content(lambda r: wav(b"", claimed=2**32 - 16)),
        "tag_alone": content(lambda r: b"ID3\x03\0\0\0\0\x0f\x76" + bytes(2038)),
        "tag_lies": content(lambda r: b"ID3\x03\0\0\x7f\x7f\x7f\x7fTBPM\xff\xff\xff\xff\0\0"),
        "mp3_headers": content(lambda r: b"\xff\xfb\x90\x00" * r.randrange(1, 100)),
        "mp4_bomb": content(lambda r: struct.pack(">I4s4sI", 16, b"ftyp", b"M4A ", 0)
                            + struct.pack(">I4s", 2**31, b"moov") + r.randbytes(500)),
        "playlist": content(lambda r: f"#EXTM3U\n#EXTINF:2,\n{target}\n".encode()),
        "hls": content(lambda r: f"#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n{target}\n#EXT-X-ENDLIST\n".encode()),
        "concat": content(lambda r: f"ffconcat version 1.0\nfile {target}\n".encode()),
        "sdp": content(lambda r: b"v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\nt=0 0\nm=audio 5004 RTP/AVP 0\n"),
        "pipe": lambda path, i: os.mkfifo(path),
        "dead_link": lambda path, i: path.symlink_to("nowhere"),
        "loop_link": lambda path, i: path.symlink_to(path.name),
    }


def make_tree(root, count, broken_count):
    songs = [wav(clicks(bpm, CLIP_SECONDS)) for bpm in (100, 120, 140)]
    target = root / "0000_good.wav"
    kinds = list(broken_kinds(songs[0], target).items())
    good, broken = set(), set()
    stride = count // broken_count
    for i in range(count):
        folder = root / f"{i // 100:02}" if i else root
        folder.mkdir(exist_ok=True)
        if i % stride == stride - 1 and len(broken) < broken_count:
            name, make = kinds[len(broken) % len(kinds)]
            path = folder / f"{i:04}_{name}.{('mp3', 'wav', 'm4a', 'aiff', 'caf')[len(broken) % 5]}"
            make(path, i)
            broken.add(str(path))
        else:
            path = folder / f"{i:04}_good.wav"
            path.write_bytes(songs[i % 3])
            good.add(str(path))
    return good, broken


def peak_kilobytes(process):
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    return usage.ru_maxrss


def analyze(program, paths, scratch):
    begin = time.monotonic()
    with open(scratch / "out", "wb") as out, open(scratch / "err", "wb") as err:
        command = [program, "analyze", "--format", "jsonl", *map(str, paths)]
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=out, stderr=err, env=ENV)
        peak = peak_kilobytes(process)
    rows = [json.loads(line) for line in (scratch / "out").read_text().splitlines()]
    return process.returncode, rows, (scratch / "err").read_text(), peak, time.monotonic() - begin


def check_rows(rows, errors, good, broken):
    problems = []
    seen = {row["path"]: row for row in rows}
    if len(seen) != len(rows) or set(seen) != good | broken:
        problems.append(f"{len(rows)} rows for {len(good | broken)} files")
    for path in sorted(good & set(seen)):
        row = seen[path]
        if not row["tempo"] or row["error"] or row["source"] not in ("analysis", "length"):
            problems.append(f"no tempo: {row}")
    for path in sorted(broken & set(seen)):
        row = seen[path]
        if row["tempo"] is not None or not row["error"] or path not in errors:
            problems.append(f"no message: {row}")
    return problems


def check_interrupt(program, root, count, delay, scratch):
    out = open(scratch / "out", "wb")
    process = subprocess.Popen([program, "analyze", "--format", "jsonl", str(root)], stdout=out,
                               stderr=subprocess.PIPE, stdin=subprocess.DEVNULL, env=ENV, text=True)
    time.sleep(delay)
    begin = time.monotonic()
    process.send_signal(signal.SIGINT)
    _, errors = process.communicate()
    waited = time.monotonic() - begin
    rows = [json.loads(line) for line in (scratch / "out").read_text().splitlines()]
    print(f"interrupted: exit {process.returncode} after {waited:.2f} s with {len(rows)} rows; "
          f"said: {errors.strip().splitlines()[-1] if errors.strip() else 'nothing'}")
    problems = []
    if process.returncode != 130:
        problems.append("the interrupt does not end the run with 130")
    if not 0 < len(rows) < count or f"{len(rows)} of {count} files done" not in errors:
        problems.append("what was done before the interrupt is lost or not counted")
    return problems


def main():
    program = sys.argv[1]
    count, broken_count = map(int, sys.argv[2:4]) if len(sys.argv) > 3 else (200, 40)
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    with tempfile.TemporaryDirectory() as place:
        scratch = pathlib.Path(place)
        root = scratch / "tree"
        root.mkdir()
        good, broken = make_tree(root, count, broken_count)
        some = sorted(good | broken)[: max(count // 10, 1)]
        _, _, _, first_peak, _ = analyze(program, some, scratch)
        code, rows, errors, peak, seconds = analyze(program, [root], scratch)
        print(f"{len(good)} good and {len(broken)} broken files: exit {code} after {seconds:.1f} s, "
              f"at most {peak} kB, {first_peak} kB for a tenth of them")
        problems = check_rows(rows, errors, good, broken)
        if code != 1:
            problems.append(f"exit code {code} instead of 1")
        if peak > first_peak + FLAT_KILOBYTES:
            problems.append("memory grows with the number of files")
        problems += check_interrupt(program, root, count, seconds / 4, scratch)
    print("\n".join(problems) or "all as it should be")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
