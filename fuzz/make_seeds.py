#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Writes the seeds of every target that doesn't read tags (those: make_tag_seeds.py)."""

import math
import pathlib
import struct

CORPUS = pathlib.Path(__file__).resolve().parent / "corpus"


def write(target, name, data):
    folder = CORPUS / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(data)


def floats(values):
    return b"".join(struct.pack("<f", value) for value in values)


def engine():
    tone = [math.sin(2 * math.pi * 55 * i / 44100) for i in range(802)]
    clicks = [0.9 * math.exp(-i / 200) * (-1) ** (i // 20) for i in range(5000)]
    for name, length, pattern in (
        ("silence", 150000, floats([0.0])),
        ("tone", 199999, floats(tone)),
        ("clicks", 199999, floats(clicks)),
        ("short", 100, floats(clicks[:100])),
        ("nan", 150000, floats(tone[:100]) + bytes.fromhex("0000c07f") + floats(tone[100:200])),
        ("infinity", 150000, floats(tone[:50]) + bytes.fromhex("0000807f 000080ff")),
        ("denormal", 150000, bytes.fromhex("01000000 01000080")),
        ("huge", 150000, bytes.fromhex("ffff7f7f ffff7fff")),
    ):
        write("EngineFuzz", name, struct.pack("<I", length) + pattern)


def wav(samples, channels=1, rate=44100, claim=None):
    body = b"".join(struct.pack("<h", sample) for sample in samples)
    head = struct.pack("<HHIIHH", 1, channels, rate, rate * channels * 2, channels * 2, 16)
    size = len(body) if claim is None else claim
    return (b"RIFF" + struct.pack("<I", (36 + size) & 0xFFFFFFFF) + b"WAVEfmt " +
            struct.pack("<I", 16) + head + b"data" + struct.pack("<I", size) + body)


def decoder():
    samples = [int(20000 * math.sin(i / 9)) for i in range(2000)]
    write("DecoderFuzz", "wav", wav(samples))
    write("DecoderFuzz", "wav_claim", wav(samples, claim=0xFFFFFFFF))
    write("DecoderFuzz", "wav_stereo_96k", wav(samples, channels=2, rate=96000))
    write("DecoderFuzz", "wav_header", wav([]))
    write("DecoderFuzz", "text", b"not music\n")
    write("DecoderFuzz", "playlist", b"#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nother.mp3\n")
    write("DecoderFuzz", "concat", b"ffconcat version 1.0\nfile other.mp3\n")
    frame = bytes.fromhex("fffb9064") + bytes(413)
    write("DecoderFuzz", "mp3_frames", frame * 4)
    write("DecoderFuzz", "mp3_cut", frame * 2 + frame[:100])
    write("DecoderFuzz", "caf", b"caff" + bytes.fromhex("00010000") + b"desc" + bytes(8))
    write("DecoderFuzz", "m4a", bytes.fromhex("00000018") + b"ftypM4A " + bytes(12))
    write("DecoderFuzz", "aiff", b"FORM" + struct.pack(">I", 18) + b"AIFFCOMM" + bytes(14))


def others():
    full = b"\x04" + struct.pack(">q", 1_000_000)
    values = b"".join(struct.pack(">f", math.sin(i)) for i in range(128))
    write("FingerprintFuzz", "full", full + values)
    write("FingerprintFuzz", "compact", b"\x04" + bytes(4) + struct.pack(">ff", -1, 1) + bytes(range(128)))
    write("FingerprintFuzz", "short", full)
    cbor = bytes.fromhex("a1") + b"\x66Object" + bytes.fromhex("63") + b"abc"
    write("ArchiveFuzz", "text", struct.pack("<I", len(cbor)) + cbor)
    write("ArchiveFuzz", "positions", struct.pack("<iqq", 2, 1, -1))
    write("ArchiveFuzz", "claim", struct.pack("<I", 0xFFFFFFFF) + cbor)
    write("FadeCurveFuzz", "even", struct.pack("<IIqi", 44100, 44100, 500000, -900) +
          struct.pack("<4q", 0, 44100, 88200, 88200))
    write("FadeCurveFuzz", "falling", struct.pack("<IIqi", 48000, 0, -1, 5) + struct.pack("<2q", 9, -9))
    write("PathFuzz", "song", b"/music/a.b/song.MP3\nwav;mp3;aiff")
    write("PathFuzz", "bytes", b"/\xff\xfe/\xed\xa0\x80.\n;")
    write("PathFuzz", "dots", b".mp3\n.mp3;")


if __name__ == "__main__":
    engine()
    decoder()
    others()
