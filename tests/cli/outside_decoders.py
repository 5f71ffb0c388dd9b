#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Holds the beats of click tracks against the clicks as other decoders give them.

  outside_decoders.py tactus [--all]

A track is stored in the usual kinds of file at 44100 and 48000 Hz, heard by `tactus profile`, and
decoded by FFmpeg, libsndfile (sndfile-convert) and mpg123 as far as they are there and read it. A
click is where the decoded sound first reaches half of the click's height. Of each kind and decoder
the mean distance of the record's beats from the clicks must be at most 0.5 ms, 95 % of them within
3 ms, and no more than one click in twenty without a beat. Prints a table; exits with 1 when a row
fails, and with 77 when there is no FFmpeg. With --all: more kinds and rates, and two tracks each.
"""

import array
import json
import math
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import wave

SECONDS = 32
TRACKS = ((128.0, 0.211), (97.3, 0.137))  # beats a minute, seconds of the first click
MOST_MEAN = 0.0005
NEAR, NEAR_PART = 0.003, 0.95
FOUND_PART = 0.95
CODERS = {"wav": ["-c:a", "pcm_s16le"], "aiff": ["-c:a", "pcm_s16be"], "flac": ["-c:a", "flac"],
          "mp3": ["-c:a", "libmp3lame", "-b:a", "192k"], "m4a": ["-c:a", "aac", "-b:a", "160k"],
          "ogg": ["-c:a", "libvorbis", "-q:a", "5"], "opus": ["-c:a", "libopus", "-b:a", "128k"]}
MORE = {"wav24": ["-c:a", "pcm_s24le"], "caf": ["-c:a", "pcm_s16le"],
        "w64": ["-c:a", "pcm_s16le"], "mp3vbr": ["-c:a", "libmp3lame", "-q:a", "4"],
        "mp3bare": ["-c:a", "libmp3lame", "-b:a", "192k", "-write_xing", "0"],
        "m4aalac": ["-c:a", "alac"],
        "m4abare": ["-c:a", "aac", "-b:a", "160k", "-use_editlist", "0"],
        "aac": ["-c:a", "aac", "-b:a", "160k"]}
NAMES = ("wav", "aiff", "caf", "w64", "flac", "mp3", "m4a", "aac", "ogg", "opus")
SNDFILE = ("wav", "aiff", "caf", "w64", "flac", "mp3", "ogg", "opus")
RATES = (44100, 48000)
HIGH_RATES = (88200, 96000, 192000)  # of kinds without loss


def clicks(bpm, start, rate):
    """Moments of the clicks, and the samples."""
    samples = array.array("h", bytes(2 * rate * SECONDS))
    click = array.array("h", (round(18000 * math.exp(-i / rate / 0.02) *
                                    math.cos(2 * math.pi * 1000 * i / rate))
                              for i in range(rate // 10)))
    moments = []
    while start + len(moments) * 60 / bpm < SECONDS - 0.2:
        first = round((start + len(moments) * 60 / bpm) * rate)
        samples[first:first + len(click)] = click
        moments.append(first / rate)
    return moments, samples


def kinds(is_all):
    """Name, rate and what FFmpeg is told, of every kind of file to be made."""
    for name, coder in {**CODERS, **(MORE if is_all else {})}.items():
        without_loss = name in ("wav", "aiff", "flac", "caf", "w64")
        for rate in RATES + (HIGH_RATES if is_all and without_loss else ()):
            yield name, rate, coder


def ending(name):
    return next(n for n in NAMES if name.startswith(n))


def decoders():
    """Name, the endings it reads, and its command for a file and the WAV file to be made."""
    yield "FFmpeg", NAMES, lambda path, wav: ["ffmpeg", "-v", "error", "-y", "-i", path, "-c:a",
                                              "pcm_s16le", wav]
    if shutil.which("sndfile-convert"):
        yield "libsndfile", SNDFILE, lambda path, wav: ["sndfile-convert", "-pcm16", path, wav]
    if shutil.which("mpg123"):
        yield "mpg123", ("mp3",), lambda path, wav: ["mpg123", "-q", "-w", wav, path]


def sound_of(wav):
    """Rate and first channel of a WAV file with 16 bits; the module `wave` knows no high rates."""
    with open(wav, "rb") as file:
        content = file.read()
    form, data = content.index(b"fmt "), content.index(b"data") + 8
    channels, rate = struct.unpack_from("<HI", content, form + 10)
    end = min(data + struct.unpack_from("<I", content, data - 4)[0], len(content))
    return rate, array.array("h", content[data:end])[::channels]


def heard_clicks(wav, moments):
    """Where the clicks lie in a decoded file: near where they were put, give or take 80 ms."""
    rate, samples = sound_of(wav)
    found = []
    for moment in moments:
        first = max(0, round((moment - 0.02) * rate))
        around = [abs(s) for s in samples[first:first + rate // 10]]
        if around and max(around) > 3000:
            height = max(around)
            found.append((first + next(i for i, s in enumerate(around) if 2 * s >= height)) / rate)
    return found


def distances(beats, found):
    return [beat - min(found, key=lambda click: abs(click - beat))
            for beat in beats if found[0] - 0.1 < beat < found[-1] + 0.1]


def make_files(folder, is_all):
    """Paths of the files, each with its kind, its rate and the moments of its clicks."""
    files = {}
    for number, (bpm, start) in enumerate(TRACKS if is_all else TRACKS[:1]):
        for rate in RATES + HIGH_RATES:
            made = {f"{folder}/{number}-{rate}-{name}.{ending(name)}": (name, coder)
                    for name, of, coder in kinds(is_all) if of == rate}
            if made:
                moments, samples = clicks(bpm, start, rate)
                with wave.open(f"{folder}/source.wav", "wb") as sound:
                    sound.setparams((1, 2, rate, 0, "NONE", ""))
                    sound.writeframes(samples.tobytes())
                outputs = [word for path, (_, coder) in made.items() for word in (*coder, path)]
                subprocess.run(["ffmpeg", "-v", "error", "-y", "-i", f"{folder}/source.wav",
                                *outputs], check=True)
            files.update({path: (name, rate, moments) for path, (name, _) in made.items()})
    return files


def hear(program, files):
    """The beats in the record of each file."""
    lines = subprocess.run([program, "profile", "--fields", "path,beats", *files], check=True,
                           env={**os.environ, "TACTUS_NO_RECORDS": "1"},
                           capture_output=True).stdout
    return {song["path"]: song["beats"] for song in map(json.loads, lines.splitlines())}


def row(paths, files, beats, command, folder):
    """Distances of the beats of `paths` from the clicks that a decoder gives, and the clicks."""
    off, count = [], 0
    for path in paths:
        subprocess.run(command(path, f"{folder}/out.wav"), check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        off += distances(beats[path], heard_clicks(f"{folder}/out.wav", files[path][2]))
        count += len(files[path][2])
    return off, count


def main():
    if not shutil.which("ffmpeg"):
        print("there is no ffmpeg")
        return 77
    program, is_all, bad = sys.argv[1], "--all" in sys.argv[2:], 0
    with tempfile.TemporaryDirectory() as folder:
        files = make_files(folder, is_all)
        beats = hear(program, files)
        print("| kind | Hz | decoder | beats | mean, ms | within 3 ms |\n|---|---|---|---|---|---|")
        for decoder, endings, command in decoders():
            for kind in dict.fromkeys((name, rate) for name, rate, _ in files.values()):
                if ending(kind[0]) not in endings:
                    continue
                paths = [path for path in files if files[path][:2] == kind]
                off, count = row(paths, files, beats, command, folder)
                mean = sum(off) / len(off) if off else math.inf
                near = sum(abs(d) < NEAR for d in off) / len(off) if off else 0.0
                right = (len(off) >= FOUND_PART * count and abs(mean) <= MOST_MEAN
                         and near >= NEAR_PART)
                bad += not right
                print(f"| {kind[0]} | {kind[1]} | {decoder} | {len(off)} | {1000 * mean:.2f} | "
                      f"{near:.1%} |{'' if right else ' <- wrong'}")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
