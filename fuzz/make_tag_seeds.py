#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Writes the seeds of the tag targets: small files, one for each path through the code.

Run it from anywhere; it writes into corpus/<target>/ beside itself, the same bytes every time.
"""

import pathlib
import struct

CORPUS = pathlib.Path(__file__).resolve().parent / "corpus"
AUDIO = bytes(range(1, 60))


def syncsafe(value):
    return bytes((value >> shift) & 0x7F for shift in (21, 14, 7, 0))


def tag(version, body, flags=0, size=None):
    size = len(body) if size is None else size
    return b"ID3" + bytes([version, 0, flags]) + syncsafe(size) + body


def frame22(name, body):
    return name + struct.pack(">I", len(body))[1:] + body


def frame23(name, body, flags=b"\0\0"):
    return name + struct.pack(">I", len(body)) + flags + body


def frame24(name, body, flags=b"\0\0"):
    return name + syncsafe(len(body)) + flags + body


def trailer(title, genre):
    fields = b"TAG" + title.ljust(30) + b"Album".ljust(30) + b"Artist".ljust(30)
    return fields + b"1999" + b" " * 30 + bytes([genre])


def velto(*texts):
    block = b"".join(struct.pack(">H", len(text)) + text for text in texts)
    return block.ljust(7936 - 48, b"\0") + b"Velto".ljust(48, b"\0")


UTF16 = b"\x01\xff\xfeA\0B\0\0\0"
TITLE = b"\0Title"
PICTURE22 = b"\0PNG\x03cover\0" + bytes(range(20))
COMMENT = b"\0eng\0A comment"
COMMENT16 = b"\x01eng\xff\xfe\0\0\xff\xfeA\0\0\0"
PRIVATE = b"owner\0\x01\x02\x03"

# Four frames of MPEG-2.5 layer III at 8 kbit/s and 8000 Hz, 72 bytes each.
MPEG = (b"\xff\xe3\x18\x64" + bytes(range(1, 69))) * 4

EXTENDED = b"\0\0\0\x06\0\0\0\0\0\0"

FILES = {
    "empty": b"",
    "header_alone": tag(3, b""),
    "no_tag": AUDIO,
    "v22": tag(2, frame22(b"TT2", TITLE) + frame22(b"TBP", b"\x00120") + bytes(40)) + AUDIO,
    "v22_picture": tag(2, frame22(b"PIC", PICTURE22) + frame22(b"TT2", UTF16)) + AUDIO,
    "v22_short_picture": tag(2, frame22(b"PIC", b"\0PNG\x03")) + AUDIO,
    "v22_unknown": tag(2, frame22(b"TT2", TITLE) + frame22(b"PCS", b"\0\0\0\0")) + AUDIO,
    "v22_unsynchronized": tag(2, frame22(b"TT2", b"\0\xff") + b"\0", 0x80) + AUDIO,
    "v22_players_ids": tag(2, frame22(b"GP1", TITLE) + frame22(b"PCS", b"\0\0\0\0")) + AUDIO,
    "v23": tag(3, frame23(b"TIT2", TITLE) + frame23(b"TBPM", UTF16) + bytes(60)) + AUDIO,
    "v23_full": tag(3, frame23(b"TIT2", TITLE) + frame23(b"PRIV", PRIVATE)) + AUDIO,
    "v23_comments": tag(3, frame23(b"COMM", COMMENT) + frame23(b"COMM", COMMENT16)) + AUDIO,
    "v23_dropped": tag(3, frame23(b"MCDI", b"abc", b"\x40\0") + frame23(b"TIT2", TITLE)) + AUDIO,
    "v23_extended": tag(3, EXTENDED + frame23(b"TIT2", TITLE), 0x40) + AUDIO,
    "v23_extended_far": tag(3, b"\x7f\x7f\x7f\x7f" + frame23(b"TIT2", TITLE), 0x40) + AUDIO,
    "v23_unsynchronized": tag(3, frame23(b"APIC", b"\xff\xe0").replace(b"\xff", b"\xff\0"), 0x80)
    + AUDIO,
    "v23_zero_frame": tag(3, frame23(b"TIT2", b"") + frame23(b"TPE1", TITLE)) + AUDIO,
    "v23_zero_frame_last": tag(3, frame23(b"TIT2", TITLE) + frame23(b"TPE1", b"") + bytes(60))
    + AUDIO,
    "v23_overlap": tag(3, frame23(b"TIT2", TITLE)[:-2]) + AUDIO,
    "v23_junk": tag(3, frame23(b"TIT2", TITLE) + bytes(12) + b"junk") + AUDIO,
    "v23_claims_256_mb": tag(3, frame23(b"TIT2", TITLE), size=(1 << 28) - 1) + AUDIO,
    "v23_huge_frame": tag(3, b"TIT2\xff\xff\xff\xff\0\0" + TITLE + bytes(20)) + AUDIO,
    "v24": tag(4, frame24(b"TIT2", b"\x03\xc3\xa9") + frame24(b"TBPM", b"\x00128") + bytes(30))
    + AUDIO,
    "v24_long": tag(4, frame24(b"TIT2", b"\0" + b"x" * 200) + bytes(30)) + AUDIO,
    "v24_unsynchronized": tag(4, frame24(b"APIC", b"\xff\0\xe0", b"\0\x03") + bytes(30)) + AUDIO,
    "v24_data_length": tag(4, frame24(b"TBPM", b"\0\0\0\x03\x0097", b"\0\x01") + bytes(60)) + AUDIO,
    "v24_grouped": tag(4, frame24(b"TBPM", b"\x80\x0097", b"\0\x40") + bytes(60)) + AUDIO,
    "v24_extended": tag(4, b"\0\0\0\x06\x01\0" + frame24(b"TIT2", TITLE), 0x40) + AUDIO,
    "v24_footer": tag(4, frame24(b"TIT2", TITLE), 0x10) + b"3DI\4\0\x10\0\0\0\x10" + AUDIO,
    "mpeg_frames": tag(3, frame23(b"TIT2", TITLE)) + MPEG,
    "mpeg_open_bit_rate": MPEG.replace(b"\xff\xe3\x18", b"\xff\xe3\x08"),
    "v5": tag(5, frame23(b"TIT2", TITLE)) + AUDIO,
    "v1": AUDIO + trailer(b"Song", 17),
    "v1_year": AUDIO + trailer(b"Song", 255),
    "v1_latin1": AUDIO + trailer(b"caf\xe9", 255),
    "v2_and_v1": tag(3, frame23(b"TIT2", TITLE)) + AUDIO + trailer(b"Song", 255),
    "velto": velto(b"a", b"", b"b"),
    "velto_long": velto(b"a" * 256, b"b" * 300),
    "velto_short": velto(b"a")[-200:],
}

FRAMES = {
    "latin1": (b"TIT2", TITLE),
    "latin1_empty": (b"TIT2", b"\0"),
    "utf16": (b"TIT2", UTF16),
    "utf16_big": (b"TIT2", b"\x01\xfe\xff\0A\0B"),
    "utf16_no_mark": (b"TIT2", b"\x01A"),
    "utf16_odd": (b"TIT2", b"\x01\xff\xfeA\0B"),
    "big_without_mark": (b"TIT2", b"\x02\0A\xfe\xff\0B"),
    "utf8": (b"TIT2", b"\x03\xc3\xa9"),
    "encoding_nine": (b"TIT2", b"\x09A\0B\0"),
    "comment": (b"COMM", COMMENT),
    "comment16": (b"COMM", COMMENT16),
    "comment_short": (b"COMM", b"\0en"),
    "private": (b"PRIV", PRIVATE),
    "private_bare": (b"PRIV", b"owner"),
    "picture": (b"APIC", PICTURE22),
    "picture_short": (b"APIC", PICTURE22[:15]),
    "picture_odd_format": (b"APIC", b"\0-->\x03cover\0" + bytes(20)),
}

# Found by the fuzzer: of two frames of one id the first goes when the tag is written.
DISCARDED_TWIN = tag(
    3, frame23(b"TBPM", b"\0Title", b"\x40\0") + frame23(b"TBPM", b"\x01\xff\xfeA\0B\0\0\0") + bytes(50),
) + bytes(range(1, 30))


def write(target, name, data):
    folder = CORPUS / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(data)


def main():
    for name, data in FILES.items():
        write("ID3TagFuzz", name, data)
        write("ImportMetaDataFuzz", name, data)
        write("TagRewriteFuzz", name, b"\0\x06128.00" + data)
        write("TagRewriteFuzz", "program_" + name, b"\2\x06128.00" + data)
    write("TagRewriteFuzz", "same_text", b"\0\x03120" + FILES["v22"])
    write("TagRewriteFuzz", "needs_frames", b"\6\x06128.00" + FILES["mpeg_frames"])
    write("TagRewriteFuzz", "misses_frames", b"\6\x06128.00" + FILES["v23"])
    write("TagRewriteFuzz", "program_discarded_twin", b"\2\0" + DISCARDED_TWIN)
    write("TagRewriteFuzz", "empty_text", b"\0\0" + FILES["v23"])
    write("TagRewriteFuzz", "discarded_twin", b"\0\0" + DISCARDED_TWIN)
    write("TagRewriteFuzz", "long_text", b"\x01\xff" + b"y" * 255 + FILES["v23"])
    for name, (frame_id, body) in FRAMES.items():
        write("ID3FrameFuzz", name, frame23(frame_id, body))
        write("ID3FrameFuzz", name + "_unsynchronized", frame23(frame_id, body, b"\0\x02"))


if __name__ == "__main__":
    main()
