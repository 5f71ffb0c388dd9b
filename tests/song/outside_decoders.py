#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Holds the beats of click tracks against the clicks as other decoders give them.

  outside_decoders.py tactus-beat-features

Each track is stored in every kind of file, heard by the library, and decoded by FFmpeg, libsndfile
(sndfile-convert) and mpg123 as far as they are there and read it. A click is where the decoded
sound first reaches half of the click's height. Of each kind and decoder the mean distance of the
beats from the clicks must be at most 0.5 ms, and 95 % of them within 3 ms. Prints a table; exits
with 1 when a row fails, and with 77 when there is no FFmpeg.
"""

import array
import json
import math
import pathlib
import shutil
import subprocess
import sys
import tempfile
import wave

RATE = 44100
SECONDS = 50
TRACKS = ((97.3, 0.137), (128.0, 0.211))  # beats a minute, seconds of the first click
MOST_MEAN = 0.0005
NEAR, NEAR_PART = 0.003, 0.95
KINDS = {"wav": ["-c:a", "pcm_s16le"], "wav24": ["-c:a", "pcm_s24le"],
         "wav48": ["-ar", "48000", "-c:a", "pcm_s16le"], "aiff": ["-c:a", "pcm_s16be"],
         "caf": ["-c:a", "pcm_s16le"], "w64": ["-c:a", "pcm_s16le"], "flac": ["-c:a", "flac"],
         "mp3": ["-c:a", "libmp3lame", "-b:a", "192k"],
         "mp3vbr": ["-c:a", "libmp3lame", "-q:a", "4"],
         "mp3bare": ["-c:a", "libmp3lame", "-b:a", "192k", "-write_xing", "0"],
         "mp348": ["-ar", "48000", "-c:a", "libmp3lame", "-b:a", "192k"],
         "m4a": ["-c:a", "aac", "-b:a", "160k"], "m4aalac": ["-c:a", "alac"],
         "m4abare": ["-c:a", "aac", "-b:a", "160k", "-use_editlist", "0"],
         "aac": ["-c:a", "aac", "-b:a", "160k"], "ogg": ["-c:a", "libvorbis", "-q:a", "5"],
         "opus": ["-c:a", "libopus", "-b:a", "128k"]}
NAMES = ("wav", "aiff", "caf", "w64", "flac", "mp3", "m4a", "aac", "ogg", "opus")
SNDFILE = ("wav", "wav24", "wav48", "aiff", "caf", "w64", "flac", "mp3", "mp3vbr", "mp3bare",
           "mp348", "ogg", "opus")


def clicks(bpm, start):
    """Moments of the clicks, and the samples."""
    samples = array.array("h", bytes(2 * RATE * SECONDS))
    moments = []
    while start + len(moments) * 60 / bpm < SECONDS - 0.2:
        first = round((start + len(moments) * 60 / bpm) * RATE)
        for i in range(RATE // 10):
            t = i / RATE
            samples[first + i] = round(18000 * math.exp(-t / 0.02) *
                                       math.cos(2 * math.pi * 1000 * t))
        moments.append(first / RATE)
    return moments, samples


def decoders():
    """Name, the kinds it reads, and its command for a file and the WAV file to be made."""
    yield "FFmpeg", KINDS, lambda path, wav: ["ffmpeg", "-v", "error", "-y", "-i", path, "-c:a",
                                              "pcm_s16le", wav]
    if shutil.which("sndfile-convert"):
        yield "libsndfile", SNDFILE, lambda path, wav: ["sndfile-convert", "-pcm16", path, wav]
    if shutil.which("mpg123"):
        yield "mpg123", [k for k in KINDS if k.startswith("mp3")], \
            lambda path, wav: ["mpg123", "-q", "-w", wav, path]


def heard_clicks(wav, moments):
    """Where the clicks lie in a decoded file: near where they were put, give or take 80 ms."""
    with wave.open(wav) as sound:
        rate, channels = sound.getframerate(), sound.getnchannels()
        samples = array.array("h", sound.readframes(sound.getnframes()))[::channels]
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


def main():
    if not shutil.which("ffmpeg"):
        print("there is no ffmpeg")
        return 77
    program, bad = sys.argv[1], 0
    with tempfile.TemporaryDirectory() as folder:
        files = {}
        for number, (bpm, start) in enumerate(TRACKS):
            moments, samples = clicks(bpm, start)
            source = f"{folder}/source.wav"
            with wave.open(source, "wb") as sound:
                sound.setparams((1, 2, RATE, 0, "NONE", ""))
                sound.writeframes(samples.tobytes())
            for kind, options in KINDS.items():
                path = f"{folder}/{number}-{kind}." + next(n for n in NAMES if kind.startswith(n))
                subprocess.run(["ffmpeg", "-v", "error", "-y", "-i", source, *options, path],
                               check=True)
                files[path] = (kind, moments)
        lines = subprocess.run([program, *files], check=True, capture_output=True).stdout
        songs = [json.loads(line) for line in lines.splitlines()]
        print("| kind | decoder | beats | mean, ms | within 3 ms |\n|---|---|---|---|---|")
        for name, kinds, command in decoders():
            for kind in [k for k in KINDS if k in kinds]:
                off = []
                for song in [s for s in songs if files[s["file"]][0] == kind]:
                    subprocess.run(command(song["file"], f"{folder}/out.wav"), check=True,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                    found = heard_clicks(f"{folder}/out.wav", files[song["file"]][1])
                    off += distances(song["beats"], found)
                mean = sum(off) / len(off) if off else math.inf
                near = sum(abs(d) < NEAR for d in off) / len(off) if off else 0.0
                right = off and abs(mean) <= MOST_MEAN and near >= NEAR_PART
                bad += not right
                print(f"| {kind} | {name} | {len(off)} | {1000 * mean:.2f} | {near:.1%} |"
                      f"{'' if right else ' <- wrong'}")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
