#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Holds `tactus tag set` against tags that other programs write and read.

Every file is tagged by mutagen, eyeD3, id3v2 or ffmpeg, or byte by byte; then each of these programs
is asked what it sees before and after `tactus tag set FILE TBPM 128.00`. It must see the same
frames, plus the tempo, and the audio must have the same bytes.

round_trip.py TACTUS
"""

import hashlib
import json
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

TACTUS = ""
TOOLS = {"ffmpeg": "ffmpeg", "ffprobe": "ffmpeg", "eyeD3": "eyed3", "id3v2": "id3v2"}
TEMPO = "128.00"

MISSING = [
    f"/usr/bin/{tool} is missing: install the Debian package {package}"
    for tool, package in TOOLS.items()
    if not pathlib.Path("/usr/bin", tool).exists()
]
try:
    import eyed3
    import eyed3.id3
    from mutagen import id3
except ImportError as error:
    MISSING.append(f"{error}: install the Debian packages python3-mutagen and python3-eyed3")


def run(*arguments):
    """Output of a program; a failure is this test's failure."""
    done = subprocess.run(arguments, capture_output=True, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{arguments} ended with {done.returncode}: {done.stderr.decode()}")
    return done.stdout.decode("utf-8", "replace")


def tag_bytes(data):
    """Length of the tag at the start of a file, by the published syncsafe size."""
    if data[:3] != b"ID3":
        return 0
    size = 0
    for byte in data[6:10]:
        size = size << 7 | byte
    return size + 10


def audio_hash(path):
    data = path.read_bytes()
    return hashlib.sha256(data[tag_bytes(data) :]).hexdigest()


# What each reader sees: lists of lines, the tempo among them as one line.


def mutagen_view(path):
    try:
        tag = id3.ID3(path)
    except id3.ID3NoHeaderError:
        return []
    return sorted(f"{key}={frame!r}" for key, frame in tag.items())


def eyed3_view(path):
    tag = eyed3.id3.Tag()
    if not tag.parse(str(path), eyed3.id3.ID3_V2):
        return []
    lines = []
    for frame_id, frames in tag.frame_set.items():
        for frame in frames:
            values = {
                name: getattr(frame, name, None)
                for name in ("text", "description", "lang", "url", "mime_type", "picture_type")
            }
            for name in ("image_data", "object_data", "owner_data", "uniq_id"):
                values[name] = hashlib.sha256(getattr(frame, name, b"") or b"").hexdigest()
            if values["mime_type"]:
                # For version 2.2 it makes up a type of its own from the three letters.
                values["mime_type"] = values["mime_type"].lower()
            lines.append(f"{frame_id}={values}")
    return sorted(lines)


def id3v2_view(path):
    output = run("/usr/bin/id3v2", "-l", str(path))
    return sorted(line for line in output.splitlines() if line[4:5] in (" ", ":"))


def ffprobe_view(path):
    output = run("/usr/bin/ffprobe", "-v", "error", "-show_streams", "-show_format", "-of", "json", str(path))
    probe = json.loads(output)
    tags = probe["format"].get("tags", {})
    lines = [f"{key}={value}" for key, value in tags.items()]
    for stream in probe["streams"]:
        lines.append(f"{stream['codec_type']}: {stream['codec_name']} {stream.get('tags')}")
    return sorted(lines)


READERS = {
    "mutagen": (mutagen_view, f"TBPM=TBPM(encoding=<Encoding.UTF16: 1>, text=['{TEMPO}'])"),
    "eyeD3": (eyed3_view, None),
    "id3v2": (id3v2_view, f"TBPM (BPM (beats per minute)): {TEMPO}"),
    "ffprobe": (ffprobe_view, f"TBPM={TEMPO}"),
}


def without_tempo(lines):
    return [line for line in lines if "TBPM" not in line]


# What each writer makes.

PICTURE = bytes(range(256)) * 300


def full_mutagen_tag():
    tag = id3.ID3()
    tag.add(id3.TIT2(encoding=3, text=["Żółć 😀"]))
    tag.add(id3.TPE1(encoding=1, text=["Ένας", "Δύο"]))
    tag.add(id3.TALB(encoding=0, text=["Album"]))
    tag.add(id3.TDRC(encoding=3, text=["2021-05-06"]))
    tag.add(id3.TXXX(encoding=3, desc="MusicBrainz", text=["some-id"]))
    tag.add(id3.COMM(encoding=3, lang="eng", desc="", text=["A comment"]))
    tag.add(id3.COMM(encoding=1, lang="deu", desc="über", text=["Noch einer"]))
    tag.add(id3.USLT(encoding=3, lang="eng", desc="", text="la\nla"))
    tag.add(id3.APIC(encoding=0, mime="image/png", type=3, desc="cover", data=PICTURE))
    tag.add(id3.GEOB(encoding=0, mime="x/y", filename="f", desc="d", data=b"\xff\x00\xff\xe0"))
    tag.add(id3.PRIV(owner="someone", data=b"\x00\x01\xff\x00"))
    tag.add(id3.UFID(owner="http://id", data=b"abc"))
    tag.add(id3.POPM(email="me@example.org", rating=200, count=7))
    tag.add(id3.WXXX(encoding=0, desc="home", url="http://example.org"))
    return tag


def by_mutagen(version, **options):
    def write(path):
        tag = full_mutagen_tag()
        if version == 3:
            tag.update_to_v23()
        tag.save(path, v2_version=version, **options)

    return write


def by_eyed3(version):
    def write(path):
        picture = path.with_suffix(".png")
        run("/usr/bin/ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", "color=red:size=64x64",
            "-frames:v", "1", str(picture))
        run("/usr/bin/eyeD3", "-Q", f"--to-v2.{version}", "--title", "Titel äöü", "--artist", "A",
            "--album", "B", "--track", "3", "--genre", "Techno", "--comment", "c",
            "--release-year", "1999", "--add-image", f"{picture}:FRONT_COVER",
            "--user-text-frame", "key:value", str(path))

    return write


def by_id3v2(path):
    run("/usr/bin/id3v2", "-2", "-t", "Title", "-a", "Artist", "-A", "Album", "-y", "1999", "-g",
        "17", "-T", "3/9", "-c", "desc:comment:eng", str(path))


def by_ffmpeg(version):
    def write(path):
        tagged = path.with_name("tagged.mp3")
        run("/usr/bin/ffmpeg", "-v", "error", "-y", "-i", str(path), "-c", "copy", "-id3v2_version",
            version, "-metadata", "title=Title é", "-metadata", "artist=Artist", "-metadata",
            "album=Album", "-metadata", "date=2020", str(tagged))
        tagged.replace(path)

    return write


def by_hand(version):
    """Version 2.2, which none of the programs writes, with and without unsynchronisation."""

    def frame(name, body):
        return name + struct.pack(">I", len(body))[1:] + body

    def write(path):
        body = frame(b"TT2", b"\x00Title") + frame(b"TP1", b"\x01\xff\xfeA\x00\x00\x00")
        body += frame(b"COM", b"\x00eng\x00text")
        body += frame(b"PIC", b"\x00PNG\x03cover\x00" + PICTURE)
        flags = 0
        if version == "unsynchronized":
            flags = 0x80
            out = bytearray()
            for index, byte in enumerate(body):
                out.append(byte)
                following = body[index + 1] if index + 1 < len(body) else 0
                if byte == 0xFF and (following == 0 or following >= 0xE0):
                    out.append(0)
            body = bytes(out)
        size = bytes(len(body) >> shift & 0x7F for shift in (21, 14, 7, 0))
        path.write_bytes(b"ID3\x02\x00" + bytes([flags]) + size + body + path.read_bytes())

    return write


WRITERS = {
    "nobody": lambda path: None,
    "mutagen 2.4": by_mutagen(4),
    "mutagen 2.3": by_mutagen(3),
    "mutagen 2.3 and ID3v1": by_mutagen(3, v1=2),
    "mutagen 2.4 without padding": by_mutagen(4, padding=lambda info: 0),
    "eyeD3 2.4": by_eyed3(4),
    "eyeD3 2.3": by_eyed3(3),
    "id3v2": by_id3v2,
    "ffmpeg 2.4": by_ffmpeg("4"),
    "ffmpeg 2.3": by_ffmpeg("3"),
    "version 2.2": by_hand("plain"),
    "version 2.2 unsynchronized": by_hand("unsynchronized"),
}

# Readers that don't undo unsynchronisation in version 2.2 and hence see more afterwards.
DEAF = {("version 2.2 unsynchronized", "ffprobe")}


class RoundTrip(unittest.TestCase):
    def setUp(self):
        if MISSING:
            self.fail("; ".join(MISSING))
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.plain = pathlib.Path(self.folder.name, "plain.mp3")
        run("/usr/bin/ffmpeg", "-v", "error", "-f", "lavfi", "-i", "sine=440:duration=2",
            "-write_xing", "0", "-id3v2_version", "0", "-b:a", "96k", str(self.plain))
        self.assertNotEqual(self.plain.read_bytes()[:3], b"ID3")

    def song_by(self, writer):
        path = self.plain.with_name("song.mp3")
        shutil.copyfile(self.plain, path)
        writer(path)
        return path

    def check_reader(self, name, writer, before, after):
        tempo_line = READERS[name][1]
        if not before:
            # There was no tag, or one of a version that this reader doesn't know.
            return
        if (writer, name) in DEAF:
            self.assertLess(set(before), set(after))
        else:
            self.assertEqual(without_tempo(after), without_tempo(before))
        added = [line for line in after if "TBPM" in line]
        self.assertEqual(len(added), 1, after)
        self.assertIn(TEMPO, added[0])
        if tempo_line is not None:
            self.assertEqual(added[0], tempo_line)

    def test_every_reader_sees_every_writers_frames(self):
        for writer_name, writer in WRITERS.items():
            path = self.song_by(writer)
            views = {name: view(path) for name, (view, _) in READERS.items()}
            audio = audio_hash(path)
            decoded = self.decoded_hash(path)
            run(TACTUS, "tag", "set", str(path), "TBPM", TEMPO)
            with self.subTest(writer=writer_name, what="audio"):
                self.assertEqual(audio_hash(path), audio)
                self.assertEqual(self.decoded_hash(path), decoded)
                self.assertEqual(run(TACTUS, "tag", "get", str(path), "TBPM"), TEMPO + "\n")
            for name, (view, _) in READERS.items():
                with self.subTest(writer=writer_name, reader=name):
                    self.check_reader(name, writer_name, views[name], view(path))

    def test_frames_stay_after_many_changes(self):
        path = self.song_by(by_mutagen(4))
        before = mutagen_view(path)
        audio = audio_hash(path)
        for number in range(100, 140):
            run(TACTUS, "tag", "set", str(path), "TBPM", f"{number}.50")
        self.assertEqual(without_tempo(mutagen_view(path)), before)
        self.assertEqual(audio_hash(path), audio)
        self.assertEqual(str(id3.ID3(path)["TBPM"]), "139.50")

    def test_the_same_text_touches_nothing(self):
        for writer in (by_mutagen(4), by_mutagen(3), by_eyed3(4), by_hand("plain")):
            path = self.song_by(writer)
            run(TACTUS, "tag", "set", str(path), "TBPM", TEMPO)
            data, status = path.read_bytes(), path.stat()
            run(TACTUS, "tag", "set", str(path), "TBPM", TEMPO)
            now = path.stat()
            self.assertEqual(path.read_bytes(), data)
            self.assertEqual((now.st_mtime_ns, now.st_ino), (status.st_mtime_ns, status.st_ino))

    def test_tempo_of_other_writers_is_read(self):
        path = self.song_by(WRITERS["nobody"])
        tag = id3.ID3()
        tag.add(id3.TBPM(encoding=3, text=["140"]))
        tag.save(path)
        self.assertEqual(run(TACTUS, "tag", "get", str(path), "TBPM"), "140\n")
        run("/usr/bin/eyeD3", "-Q", "--bpm", "141", str(path))
        self.assertEqual(run(TACTUS, "tag", "get", str(path), "TBPM"), "141\n")
        run("/usr/bin/id3v2", "--TBPM", "142", str(path))
        self.assertEqual(run(TACTUS, "tag", "get", str(path), "TBPM"), "142\n")

    def decoded_hash(self, path):
        return run("/usr/bin/ffmpeg", "-v", "error", "-i", str(path), "-map", "0:a", "-c", "copy", "-f",
                   "md5", "-")


if __name__ == "__main__":
    TACTUS = sys.argv.pop(1)
    unittest.main(verbosity=2)
