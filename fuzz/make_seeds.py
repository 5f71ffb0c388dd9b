#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Writes the seeds of the fuzz targets for audio, samples, prints, archives, curves and paths.

Run it from anywhere; it writes into corpus/<target>/ beside itself, the same bytes every time. Compressed
audio comes from ffmpeg and is only made anew with --compressed: its bytes differ by version.
"""

import math
import pathlib
import struct
import subprocess
import sys

CORPUS = pathlib.Path(__file__).resolve().parent / "corpus"
MP3, WAV, AIFF, M4A, CAF = range(5)  # the byte before a file that chooses its name
OTHER = 6  # a name of no kind: the content alone decides
RATE = 44100


def save(target, name, data):
    folder = CORPUS / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(data)


def sine(count, amplitude=12000, hertz=440):
    step = 2 * math.pi * hertz / RATE
    return [round(amplitude * math.sin(step * i)) for i in range(count)]


def chunk(name, body, order="<"):
    return name + struct.pack(order + "I", len(body)) + body + b"\0" * (len(body) % 2)


def wav(pcm, channels=1, rate=RATE, bits=16, kind=1, claimed=None):
    align = channels * bits // 8
    form = struct.pack("<HHIIHH", kind, channels, rate, (rate * align) % 2**32, align, bits)
    data = b"data" + struct.pack("<I", len(pcm) if claimed is None else claimed) + pcm
    body = b"WAVE" + chunk(b"fmt ", form) + data
    return b"RIFF" + struct.pack("<I", len(body)) + body


def shorts(values, order="<"):
    return struct.pack(f"{order}{len(values)}h", *values)


def aiff(values):
    rate = b"\x40\x0e\xac\x44" + b"\0" * 6  # 44100 as an 80-bit float
    common = struct.pack(">HIH", 1, len(values), 16) + rate
    sound = struct.pack(">II", 0, 0) + shorts(values, ">")
    body = b"AIFF" + chunk(b"COMM", common, ">") + chunk(b"SSND", sound, ">")
    return b"FORM" + struct.pack(">I", len(body)) + body


def caf(values):
    form = struct.pack(">d4sIIIII", RATE, b"lpcm", 0, 2, 1, 1, 16)
    data = struct.pack(">I", 0) + shorts(values, ">")
    described = b"desc" + struct.pack(">q", len(form)) + form
    return b"caff" + struct.pack(">HH", 1, 0) + described + b"data" + struct.pack(">q", len(data)) + data


def monkeys_audio(samples, frame):
    """A file of the kind of one frame; silence is the only one that can be written by hand."""
    head = b"MAC " + struct.pack("<HHIIIIIII16x", 3990, 0, 52, 24, 4, 0, len(frame), 0, 0)
    head += struct.pack("<HHIIIHHI", 1000, 0, 73728, samples, 1, 16, 1, RATE)
    return head + struct.pack("<I", len(head) + 4) + frame


def decoder_seeds():
    tone = shorts(sine(600))
    files = {
        "wav": (WAV, wav(tone)),
        "wav_stereo": (WAV, wav(shorts([v for s in sine(300) for v in (s, -s)]), channels=2)),
        "wav_8_bits": (WAV, wav(bytes(range(256)), bits=8)),
        "wav_float": (WAV, wav(struct.pack("<6f", 0, 1, -1, math.inf, math.nan, 1e30), bits=32, kind=3)),
        "wav_slow": (WAV, wav(tone, rate=8000)),
        "wav_fast": (WAV, wav(tone, rate=192000)),
        "wav_rate_0": (WAV, wav(tone, rate=0)),
        "wav_rate_huge": (WAV, wav(tone, rate=2**32 - 1)),
        "wav_no_channel": (WAV, wav(tone, channels=0)),
        "wav_many_channels": (WAV, wav(tone, channels=60)),
        "wav_claims_4_gb": (WAV, wav(tone, claimed=2**32 - 2)),
        "wav_cut": (WAV, wav(tone)[:50]),
        "wav_named_mp3": (MP3, wav(tone)),
        "aiff": (AIFF, aiff(sine(600))),
        "caf": (CAF, caf(sine(600))),
        "monkeys_silence": (OTHER, monkeys_audio(600, struct.pack("<IIII", 0x80000000, 3, 0, 0))),
        "monkeys_noise": (OTHER, monkeys_audio(600, bytes((i * i * 31 + i * 7) % 127 for i in range(400)))),
        "empty": (MP3, b""),
        "zeros": (MP3, bytes(512)),
        "noise": (MP3, bytes((i * i * 31 + i * 7) % 256 for i in range(1024))),
        "tag_alone": (MP3, b"ID3\x03\0\0\0\0\0\x20" + bytes(32)),
        "mp3_headers_alone": (MP3, b"\xff\xfb\x90\x00" * 64),
        "playlist": (MP3, b"#EXTM3U\n#EXTINF:1,\n/etc/hostname\n"),
        "hls": (MP3, b"#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\nhttp://127.0.0.1:9/a.ts\n#EXT-X-ENDLIST\n"),
        "concat": (MP3, b"ffconcat version 1.0\nfile /etc/hostname\n"),
        "sdp": (MP3, b"v=0\r\no=- 0 0 IN IP4 127.0.0.1\r\ns=x\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0\r\n"),
    }
    for name, (kind, data) in files.items():
        save("DecoderFuzz", name, bytes([kind]) + data)


def compressed_seeds():
    source = wav(shorts(sine(4000)))
    ways = {
        "mp3": (MP3, "mp3", ["-c:a", "libmp3lame", "-b:a", "64k"]),
        "mp3_no_note": (MP3, "mp3", ["-c:a", "libmp3lame", "-b:a", "64k", "-write_xing", "0"]),
        "m4a": (M4A, "mp4", ["-c:a", "aac", "-b:a", "48k", "-movflags", "+faststart"]),
        "m4a_lossless": (M4A, "mp4", ["-c:a", "alac", "-movflags", "+faststart"]),
        "caf_lossless": (CAF, "caf", ["-c:a", "alac"]),
        "adts": (M4A, "adts", ["-c:a", "aac", "-b:a", "48k"]),
        "flac": (MP3, "flac", ["-c:a", "flac"]),
        "wav_adpcm": (WAV, "wav", ["-c:a", "adpcm_ms"]),
        "ogg_vorbis": (OTHER, "ogg", ["-c:a", "libvorbis"]),
        "ogg_flac": (OTHER, "ogg", ["-c:a", "flac"]),
        "ogg_opus": (OTHER, "ogg", ["-c:a", "libopus", "-b:a", "32k"]),
        "mp2": (OTHER, "mp2", ["-c:a", "mp2", "-b:a", "64k"]),
        "wavpack": (OTHER, "wv", ["-c:a", "wavpack"]),
        "true_audio": (OTHER, "tta", ["-c:a", "tta"]),
        "windows_media": (OTHER, "asf", ["-c:a", "wmav2", "-b:a", "48k"]),
        "windows_media_1": (OTHER, "asf", ["-c:a", "wmav1", "-b:a", "48k"]),
        "matroska_flac": (OTHER, "matroska", ["-c:a", "flac"]),
        "webm_opus": (OTHER, "webm", ["-c:a", "libopus", "-b:a", "32k"]),
        "webm_vorbis": (OTHER, "webm", ["-c:a", "libvorbis"]),
        "au": (OTHER, "au", ["-c:a", "pcm_mulaw"]),
        "wave64": (OTHER, "w64", ["-c:a", "pcm_s16le"]),
        "rf64": (WAV, "wav", ["-rf64", "always"]),
        "quicktime": (M4A, "mov", ["-c:a", "pcm_s16le", "-movflags", "+faststart"]),
    }
    for name, (kind, form, options) in ways.items():
        exact = ["-map_metadata", "-1", "-bitexact", "-fflags", "+bitexact"]
        out = CORPUS / "DecoderFuzz" / f"{name}.part"
        command = ["ffmpeg", "-v", "error", "-y", "-f", "wav", "-i", "-", *options, *exact, "-f", form, str(out)]
        subprocess.run(command, input=source, check=True)
        data = out.read_bytes()
        out.unlink()
        save("DecoderFuzz", name, bytes([kind]) + data)
        save("DecoderFuzz", name + "_cut", bytes([kind]) + data[: len(data) * 2 // 3])


def tagged_seeds():
    """Every kind of tag around a few samples, as ffmpeg writes it."""
    source = wav(shorts(sine(400)))
    texts = {"title": "Tîtlé", "artist": "Ärtist", "album": "Ålbum", "initialkey": "Am", "TBPM": "128.5", "BPM": "128,5"}
    words = [word for name, value in texts.items() for word in ("-metadata", f"{name}={value}")]
    ways = {
        "id3v23.mp3": ["-c:a", "libmp3lame", "-id3v2_version", "3", "-write_id3v1", "1"],
        "id3v24.mp3": ["-c:a", "libmp3lame", "-id3v2_version", "4"],
        "info.wav": [], "id3.aiff": ["-write_id3v2", "1"], "vorbis.ogg": ["-c:a", "libvorbis"],
        "flac.oga": ["-c:a", "flac", "-f", "ogg"], "opus.opus": ["-c:a", "libopus"], "flac.flac": ["-c:a", "flac"],
        "items.m4a": ["-c:a", "alac"], "quicktime.mov": ["-c:a", "alac"], "ape.wv": ["-c:a", "wavpack"],
        "ape.tta": ["-c:a", "tta"], "asf.wma": ["-c:a", "wmav2"], "matroska.mka": ["-c:a", "flac"], "info.caf": [],
        "text.au": [],
    }
    for name, options in ways.items():
        out = CORPUS / "SongTagsFuzz" / name
        out.parent.mkdir(parents=True, exist_ok=True)
        exact = ["-bitexact", "-fflags", "+bitexact"]
        command = ["ffmpeg", "-v", "error", "-y", "-f", "wav", "-i", "-", *options, *words, *exact, str(out)]
        subprocess.run(command, input=source, check=True)
        endings = [".flac", ".ogg", ".opus", ".m4a", ".wav", ".aiff", ".wv"]  # as LibraryStoreFuzz has them
        if out.suffix in endings:
            save("LibraryStoreFuzz", name, bytes([endings.index(out.suffix)]) + out.read_bytes())
    silence = monkeys_audio(600, struct.pack("<IIII", 0x80000000, 3, 0, 0))
    save("LibraryStoreFuzz", "silence.ape", bytes([len(endings)]) + silence)


def engine_seeds():
    def seed(name, length, payload, as_bytes=False, hold=0):
        header = bytes([hold << 4 | int(as_bytes)]) + struct.pack("<I", length)[:3]
        save("EngineFuzz", name, header + payload)

    def floats(*values):
        return struct.pack(f"<{len(values)}f", *values)

    def patterns(*values):
        return struct.pack(f"<{len(values)}I", *values)

    beat = bytes([127, 40, 10] + [0] * 8)
    for length in (0, 1, 255, 256, 257, 511, 1024, 44100, 200000):
        seed(f"sine_{length}", length, bytes(v >> 8 & 0xFF for v in sine(441)), as_bytes=True)
    seed("silence", 200000, b"")
    seed("full_scale", 100000, floats(1.0))
    seed("clicks", 200000, beat, as_bytes=True, hold=11)
    seed("clicks_fast", 200000, beat, as_bytes=True, hold=9)
    seed("steps", 200000, bytes([5, 60, 120, 0, 0, 90]), as_bytes=True, hold=14)
    seed("infinities", 100000, floats(math.inf, -math.inf))
    seed("one_infinity", 50000, floats(*([0.25, -0.25] * 12000), math.inf, 0.5))
    seed("nans", 100000, patterns(0x7FC00000, 0xFFC00000, 0x7F800001, 0x7FFFFFFF))
    seed("one_nan", 50000, floats(*([0.25, -0.25] * 12000), math.nan, 0.5))
    seed("nan_now_and_then", 200000, floats(0.5, 0.1, math.nan, -0.2), hold=8)
    seed("denormals", 100000, patterns(1, 0x80000001, 0x007FFFFF))
    seed("largest", 100000, patterns(0x7F7FFFFF, 0xFF7FFFFF))
    seed("largest_held", 200000, patterns(0x7F7FFFFF, 0, 0, 0, 1), hold=11)
    seed("smallest_steps", 200000, patterns(0x00800000, 0x80800000, 0x00000000), hold=10)


def fingerprint_seeds():
    values = struct.pack(">8f", 0.5, -0.25, 1e30, -1e-40, math.inf, -math.inf, math.nan, 0.0)
    save("FingerprintFuzz", "full", b"\x04" + struct.pack(">q", 1_500_000) + values)
    save("FingerprintFuzz", "full_odd", b"\x00" + struct.pack(">q", -1) + values[:7])
    save("FingerprintFuzz", "full_one", b"\x04" + bytes(8) + values[:4])
    save("FingerprintFuzz", "short", b"\x04" + bytes(8))
    for name, low, high in (("range", -0.5, 0.5), ("flat", 0.25, 0.25), ("turned", 1.0, -1.0),
                            ("infinite", -math.inf, math.inf), ("nan", math.nan, 1.0),
                            ("largest", -3.4e38, 3.4e38), ("tiny", 0.0, 1e-45)):
        head = b"\x04" + struct.pack(">Iff", 2_000_000, low, high)
        save("FingerprintFuzz", "compact_" + name, head + bytes(range(0, 256, 5)))
    save("FingerprintFuzz", "compact_old", b"\x03" + bytes(12) + b"\x80" * 9)
    save("FingerprintFuzz", "compact_head", b"\x04" + bytes(12))


def archive_seeds():
    def embedded(cbor):
        return struct.pack("=I", len(cbor)) + cbor

    root = b"\xa1\x66Object"
    objects = {
        "null": root + b"\xf6", "true": root + b"\xf5", "integer": root + b"\x39\x01\x00",
        "float": root + b"\xfb" + struct.pack(">d", 0.1), "nan": root + b"\xf9\x7e\x00",
        "text": root + b"\x64text", "bytes": root + b"\x43abc",
        "date": root + b"\xa1\x64Date\x1a\x00\x0f\x42\x40", "array": root + b"\x82\x01\x02",
        "deep": root + b"\xa1" * 50, "claims_much": root + b"\x5b\x7f" + b"\xff" * 7 + b"abc",
        "claims_text": root + b"\x7a\xff\xff\xff\xff", "endless": root + b"\x5f\x43abc\xff",
        "large": root + b"\x1b" + b"\xff" * 8, "empty": b"",
    }
    for name, cbor in objects.items():
        save("ArchiveFuzz", "object_" + name, b"\0" + embedded(cbor))
        save("ArchiveFuzz", "time_" + name, b"\1" + embedded(cbor))
    save("ArchiveFuzz", "objects", b"\0" + b"".join(map(embedded, objects.values())))
    save("ArchiveFuzz", "object_length_lies", b"\0" + struct.pack("=I", 2**32 - 1) + root)
    print_head = b"\2\4" + struct.pack("=q", 1_500_000)
    save("ArchiveFuzz", "print", print_head + struct.pack("=i3f", 3, 0.5, -1.0, math.nan))
    save("ArchiveFuzz", "print_cut", print_head + struct.pack("=i1f", 3, 0.5))
    save("ArchiveFuzz", "print_old", b"\2\3" + bytes(20))
    for name, count in (("most", 2**20), ("too_many", 2**20 + 1), ("huge", 2**31 - 1), ("minus", -1)):
        save("ArchiveFuzz", "print_" + name, print_head + struct.pack("=i", count))
        save("ArchiveFuzz", "positions_" + name, b"\3" + struct.pack("=i", count))
    save("ArchiveFuzz", "positions", b"\3" + struct.pack("=i3q", 3, 1, -1, 2**62))
    save("ArchiveFuzz", "positions_cut", b"\3" + struct.pack("=i1qi", 3, 1, 7))


def curve_seeds():
    def seed(name, points, rate=RATE, other=RATE, time=1_000_000, atten=-1500):
        head = struct.pack("<IIqi", rate, other, time, atten)
        save("FadeCurveFuzz", name, head + struct.pack(f"<{len(points)}q", *points))

    plain = [22050 * i for i in range(12)]
    for atten in (0, -1, -599, -600, -1500, -6600, -6601, 1, -2**31, 2**31 - 1):
        seed(f"plain_{atten}", plain, atten=atten)
    for time in (-1, 0, 499_999, 5_500_000, 2**63 - 1, -2**63):
        seed(f"time_{time}", plain, time=time)
    seed("no_rate", plain, rate=0)
    seed("other_rate_0", plain, other=0)
    seed("largest_rates", plain, rate=2**32 - 1, other=2**32 - 2)
    seed("no_point", [])
    seed("one_point", [44100])
    seed("equal_points", [5] * 12)
    seed("falling_points", plain[::-1])
    seed("far_points", [-2**63, 2**63 - 1, 0, 2**32, 2**31, 2**33])
    seed("distance_4_gb", [0, 2**32, 2**33], time=2**45)
    seed("distance_minus_1", [0, 2**32 - 1], time=2**40, atten=-300)


def path_seeds():
    paths = [b"", b"/", b"//", b"a", b"/a", b"a/", b"/a/b.mp3", b"a.b/c", b".mp3", b"/x/.mp3",
             b"a.MP3", b"a.", b"..", b"a.tar.gz", b"/a/b/", b"%^*\"\\?:'|<>$[]", b"\xff\xfe.mp3",
             b"\xed\xb2\x80", b"\xc3\x84.\xc3\x96", b"\xf0\x9f\x8e\xb5.mp3", b"\xc0\x80", b"k\xe2\x84\xaa.K"]
    lists = [b"", b";", b"mp3", b"mp3;", b"mp3;wav", b"wav;mp3;", b";mp3;", b"a;;mp3;", b"MP3;x;",
             b"\xe2\x84\xaa;k;", b"/a/b.mp3;", b"mp3 ;mp;"]
    for i, path in enumerate(paths):
        for j in (i % len(lists), (5 * i + 3) % len(lists)):
            save("PathFuzz", f"path_{i}_list_{j}", path + b"\0" + lists[j])


def main():
    decoder_seeds()
    engine_seeds()
    fingerprint_seeds()
    archive_seeds()
    curve_seeds()
    path_seeds()
    if "--compressed" in sys.argv[1:]:
        compressed_seeds()
        tagged_seeds()


if __name__ == "__main__":
    main()
