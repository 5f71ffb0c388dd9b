#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Holds `tactus analyze` against tags of every kind of music file, as other programs write and read them.

ffmpeg makes the audio, mutagen or ffmpeg the tags; mutagen, TagLib and ffprobe are asked what a file says
before and after Tactus wrote a tempo into it. Monkey's Audio has no free encoder: its file is silence made by
hand.

kinds_matrix.py TACTUS
"""

import array
import hashlib
import json
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest

TACTUS = ""
MISSING = []
os.environ["TACTUS_NO_RECORDS"] = "1"
try:
    import mutagen
    import mutagen.aiff
    import mutagen.apev2
    import mutagen.asf
    import mutagen.flac
    import mutagen.id3 as id3
    import mutagen.mp4
    import mutagen.oggflac
    import mutagen.oggopus
    import mutagen.oggvorbis
    import mutagen.trueaudio
    import mutagen.wave
    import mutagen.wavpack
    import taglib
except ImportError as error:
    MISSING.append(f"{error}: install the Debian packages python3-mutagen and python3-taglib")

TITLE, ARTIST, ALBUM = "Tîtlé ñ", "Ärtist", "Ålbum"  # all in Latin-1
TEMPO = 124.0
RATE = 44100

# Name, ffmpeg's options, who writes the tags.
KINDS = [
    ("a.mp3", ["-c:a", "libmp3lame"], "id3"),
    ("a.mp2", ["-c:a", "mp2"], "id3"),
    ("a.aac", ["-c:a", "aac"], "id3"),
    ("a.wav", ["-fflags", "+bitexact"], "wav"),  # no texts of its own, for which ffprobe hides the ID3 chunk
    ("a.aiff", [], "aiff"),
    ("a.tta", ["-c:a", "tta"], "tta"),
    ("a.flac", ["-c:a", "flac"], "flac"),
    ("a.ogg", ["-c:a", "libvorbis"], "ogg"),
    ("a.oga", ["-c:a", "flac", "-f", "ogg"], "oga"),
    ("a.opus", ["-c:a", "libopus"], "opus"),
    ("a.m4a", ["-c:a", "aac"], "mp4"),
    ("b.m4a", ["-c:a", "alac"], "mp4"),
    ("a.m4b", ["-c:a", "aac", "-f", "mp4"], "mp4"),
    ("a.mp4", ["-c:a", "aac"], "mp4"),
    ("a.wv", ["-c:a", "wavpack"], "ape"),
    ("a.wma", ["-c:a", "wmav2"], "asf"),
    ("a.mka", ["-c:a", "flac"], "ffmpeg"),
    ("a.webm", ["-c:a", "libopus"], "ffmpeg"),
    ("a.mov", ["-c:a", "aac"], "ffmpeg"),
    ("a.caf", [], "ffmpeg"),
    ("a.au", [], "title"),
    ("a.w64", [], "none"),
]


def run(*arguments, status=0):
    done = subprocess.run(arguments, capture_output=True, check=False)
    if done.returncode != status:
        raise AssertionError(f"{arguments} ended with {done.returncode}: {done.stderr.decode()}")
    return done.stdout.decode("utf-8", "replace")


def rows_of(*arguments, status=0):
    """The rows of an analysis by their file's name."""
    out = run(TACTUS, "analyze", "-q", "--format", "jsonl", *map(str, arguments), status=status)
    rows = [json.loads(line) for line in out.splitlines()]
    return {pathlib.Path(row["path"]).name: row for row in rows}


def beats(path, seconds):
    """A file of strokes in the tempo, each a short decaying tone."""
    spacing = round(RATE * 60 / TEMPO)
    tone = [int(20000 * 0.9985**i * (1 if i // 50 % 2 else -1)) for i in range(4000)]
    beat = array.array("h", tone + [0] * (spacing - len(tone)))
    samples = (beat * (int(seconds * RATE / spacing) + 1))[: int(seconds * RATE)].tobytes()
    form = struct.pack("<HHIIHH", 1, 1, RATE, 2 * RATE, 2, 16)
    data = b"WAVEfmt " + struct.pack("<I", 16) + form + b"data" + struct.pack("<I", len(samples)) + samples
    path.write_bytes(b"RIFF" + struct.pack("<I", len(data)) + data)


def monkeys_audio(path):
    """A file of silence of this kind, by its published layout."""
    frame = struct.pack("<IIII", 0x80000000, 3, 0, 0)
    head = b"MAC " + struct.pack("<HHIIIIIII16x", 3990, 0, 52, 24, 4, 0, len(frame), 0, 0)
    head += struct.pack("<HHIIIHHI", 1000, 0, 73728, 50000, 1, 16, 1, RATE)
    path.write_bytes(head + struct.pack("<I", len(head) + 4) + frame)


def id3_frames(encoding, tempo):
    return [
        id3.TIT2(encoding=encoding, text=[TITLE]),
        id3.TPE1(encoding=encoding, text=[ARTIST]),
        id3.TALB(encoding=encoding, text=[ALBUM]),
        id3.TKEY(encoding=encoding, text=["Am"]),
    ] + ([id3.TBPM(encoding=encoding, text=[tempo])] if tempo else [])


def write_id3(path, encoding, version, tempo):
    tag = id3.ID3()
    for frame in id3_frames(encoding, tempo):
        tag.add(frame)
    if version == 3:
        tag.update_to_v23()
    tag.save(path, v2_version=version)


def write_chunk(kind, path, encoding, tempo):
    song = kind(path)
    song.add_tags()
    for frame in id3_frames(encoding, tempo):
        song.tags.add(frame)
    song.save()


def write_fields(song, tempo, names):
    if song.tags is None:
        song.add_tags()
    for name, value in zip(names, (TITLE, ARTIST, ALBUM, "Am", tempo)):
        if value:
            song[name] = value
    song.save()


# What is written on request.
WRITTEN = ["a.wav", "a.aiff", "a.flac", "a.ogg", "a.oga", "a.opus", "a.m4a", "b.m4a", "a.m4b", "a.mp4", "a.wv", "a.ape"]
ALL_KINDS = [*KINDS, ("a.ape", [], "ape")]
COVER = b"\xff\xd8\xff\xe0" + bytes(range(256)) * 20
COMMENT = ("TITLE", "ARTIST", "ALBUM", "INITIALKEY", "BPM")


def write_mp4(path, tempo):
    song = mutagen.mp4.MP4(path)
    song["\xa9nam"], song["\xa9ART"], song["\xa9alb"] = TITLE, ARTIST, ALBUM
    song["----:com.apple.iTunes:initialkey"] = b"Am"
    if tempo:
        song["tmpo"] = [round(float(tempo))]
        song["----:com.apple.iTunes:BPM"] = tempo.encode()
    song.save()


def write_tags(path, writer, tempo):
    if writer == "id3":
        write_id3(path, 3, 4, tempo)
    elif writer == "mp4":
        write_mp4(path, tempo)
    elif writer in ("wav", "aiff", "tta"):
        kinds = {"wav": mutagen.wave.WAVE, "aiff": mutagen.aiff.AIFF, "tta": mutagen.trueaudio.TrueAudio}
        write_chunk(kinds[writer], path, 1, tempo)
    elif writer == "asf":
        names = ("Title", "Author", "WM/AlbumTitle", "WM/InitialKey", "WM/BeatsPerMinute")
        write_fields(mutagen.asf.ASF(path), tempo, names)
    elif writer in ("flac", "ogg", "oga", "opus"):
        kinds = {
            "flac": mutagen.flac.FLAC, "ogg": mutagen.oggvorbis.OggVorbis, "oga": mutagen.oggflac.OggFLAC,
            "opus": mutagen.oggopus.OggOpus,
        }
        write_fields(kinds[writer](path), tempo, COMMENT)
    elif writer == "ape":
        tag = mutagen.apev2.APEv2()
        for name, value in zip(("Title", "Artist", "Album", "Initialkey", "BPM"), (TITLE, ARTIST, ALBUM, "Am", tempo)):
            if value:
                tag[name] = value
        tag.save(str(path))


def copy_with_texts(source, path, tempo):
    texts = {"title": TITLE, "artist": ARTIST, "album": ALBUM, "initialkey": "Am", "BPM": tempo}
    options = [word for name, value in texts.items() if value for word in ("-metadata", f"{name}={value}")]
    extra = ["-movflags", "use_metadata_tags"] if path.suffix == ".mov" else []
    run("ffmpeg", "-v", "error", "-y", "-i", str(source), "-c", "copy", *options, *extra, str(path))


def add_picture_and_comment(path):
    """What a write must leave alone, in the form of each kind."""
    song = mutagen.File(path)
    if isinstance(song.tags, id3.ID3):
        song.tags.add(id3.APIC(encoding=0, mime="image/jpeg", type=3, desc="", data=COVER))
        song.tags.add(id3.COMM(encoding=3, lang="eng", desc="", text=["ein Kommentar"]))
        song.tags.add(id3.TXXX(encoding=1, desc="mood", text=["calm"]))
        song.tags.add(id3.GEOB(encoding=0, mime="x/y", filename="", desc="marks", data=bytes(range(99))))
    elif isinstance(song, mutagen.mp4.MP4):
        song["covr"] = [mutagen.mp4.MP4Cover(COVER, mutagen.mp4.MP4Cover.FORMAT_JPEG)]
        song["\xa9cmt"], song["trkn"], song["cpil"] = "ein Kommentar", [(3, 12)], True
        song["----:com.example:mood"] = b"calm"
    elif isinstance(song, mutagen.apev2.APEv2File):
        song["Comment"] = "ein Kommentar"
        song["Cover Art (Front)"] = mutagen.apev2.APEValue(b"cover.jpg\0" + COVER, mutagen.apev2.BINARY)
    else:
        song["COMMENT"] = ["ein Kommentar", "noch einer"]
        picture = mutagen.flac.Picture()
        picture.type, picture.mime, picture.data = 3, "image/jpeg", COVER
        if isinstance(song, mutagen.flac.FLAC):
            song.add_picture(picture)
    song.save()


def seen_by_mutagen(path):
    """Everything but the tempo."""
    song = mutagen.File(path)
    items = {key: repr(song.tags[key]) for key in song.tags.keys()}
    pictures = [repr(picture.data) for picture in getattr(song, "pictures", [])]
    tempo = re.compile(r"(?i)^(TBPM|bpm|tmpo|----:com.apple.iTunes:BPM)$")
    return {key.lower(): value for key, value in items.items() if not tempo.match(key)}, pictures


def tempo_by_mutagen(path):
    tags = mutagen.File(path).tags
    for key in ("----:com.apple.iTunes:BPM", "tmpo", "TBPM", "BPM", "bpm"):
        if key in tags:
            value = tags[key]
            value = value.text[0] if hasattr(value, "text") else value[0] if isinstance(value, list) else value
            return float(value.decode() if isinstance(value, bytes) else str(value))
    return None


def seen_by_taglib(path):
    song = taglib.File(str(path))
    items = {key: value for key, value in song.tags.items() if key != "BPM"}
    tempo = song.tags.get("BPM")
    song.close()
    return items, float(tempo[0]) if tempo else None


def seen_by_ffprobe(path):
    out = json.loads(run("ffprobe", "-v", "error", "-of", "json", "-show_format", "-show_streams", str(path)))
    texts = dict(out["format"].get("tags", {}))
    for stream in out["streams"]:
        texts.update(stream.get("tags", {}))
    tempo = [value for key, value in texts.items() if key.lower() in ("bpm", "tbpm", "tmpo")]
    # The names of comments may be written in any letters, and TagLib writes capital ones.
    others = {key.lower(): value for key, value in texts.items() if key.lower() not in ("bpm", "tbpm", "tmpo")}
    return others, float(tempo[0]) if tempo else None


def sound_of(path):
    if path.suffix == ".ape":  # ffmpeg takes a tag behind it for a part of the last packet
        return run("ffmpeg", "-v", "error", "-i", str(path), "-map", "0:a", "-f", "hash", "-")
    return run("ffmpeg", "-v", "error", "-i", str(path), "-map", "0:a", "-c", "copy", "-f", "streamhash", "-")


def write(*arguments, status=0):
    return rows_of("--write", "--short", "--force", "--write-types", "all", *arguments, status=status)


class Matrix(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.room = tempfile.TemporaryDirectory()
        cls.plain = pathlib.Path(cls.room.name) / "plain"
        cls.plain.mkdir()
        source = pathlib.Path(cls.room.name) / "source.wav"
        beats(source, 40)
        outputs = [word for name, options, _ in KINDS for word in (*options, str(cls.plain / name))]
        run("ffmpeg", "-v", "error", "-y", "-i", str(source), *outputs)
        monkeys_audio(cls.plain / "a.ape")

    @classmethod
    def tearDownClass(cls):
        cls.room.cleanup()

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(dir=self.room.name))

    def tearDown(self):
        shutil.rmtree(self.folder)

    def make(self, name, writer, tempo):
        path = self.folder / name
        if writer == "ffmpeg":
            copy_with_texts(self.plain / name, path, tempo)
        elif writer == "title":
            run("ffmpeg", "-v", "error", "-i", str(self.plain / name), "-metadata", f"title={TITLE}", str(path))
        else:
            shutil.copy(self.plain / name, path)
            write_tags(path, writer, tempo)
        return path

    def test_every_kind_has_its_texts_and_its_tempo(self):
        for name, _, writer in [*KINDS, ("a.ape", [], "ape")]:
            self.make(name, writer, "128.5")
        rows = rows_of(self.folder, status=0)
        for name, _, writer in [*KINDS, ("a.ape", [], "ape")]:
            with self.subTest(name):
                row = rows[name]
                self.assertEqual(row["title"], name if writer == "none" else TITLE)
                if writer in ("none", "title"):
                    continue
                self.assertEqual((row["artist"], row["album"]), (ARTIST, ALBUM))
                self.assertEqual((row["tempo"], row["source"], row["tempoNote"]), (128.5, "tag", None))
                self.assertEqual(row["tagKey"], "Am")

    def test_titles_in_every_encoding(self):
        for encoding, version in ((0, 3), (1, 3), (0, 4), (1, 4), (2, 4), (3, 4)):
            for name in ("a.mp3", "a.aac"):
                path = self.folder / f"{encoding}-{version}-{name}"
                shutil.copy(self.plain / name, path)
                write_id3(path, encoding, version, "128.5")
            for name, kind in (("a.wav", mutagen.wave.WAVE), ("a.aiff", mutagen.aiff.AIFF)):
                path = self.folder / f"{encoding}-{version}-{name}"
                shutil.copy(self.plain / name, path)
                write_chunk(kind, path, encoding, "128.5")
        for name, row in rows_of(self.folder).items():
            with self.subTest(name):
                self.assertEqual((row["title"], row["artist"], row["album"]), (TITLE, ARTIST, ALBUM))
                self.assertEqual(row["tempo"], 128.5)

    def test_one_song_has_one_tempo_in_every_kind(self):
        tempos = {name: row["tempo"] for name, row in rows_of(self.plain, "--force").items()}
        tempos.pop("a.ape")  # silence
        self.assertEqual(set(tempos), {name for name, _, _ in KINDS})
        self.assertLess(max(tempos.values()) - min(tempos.values()), 0.05, tempos)
        self.assertLess(abs(tempos["a.wav"] - TEMPO), 0.05)

    def test_an_old_trailer_gives_texts_and_never_a_tempo(self):
        path = self.folder / "a.mp3"
        field = lambda text: text.encode("latin-1").ljust(30, b" ")
        trailer = b"TAG" + field(TITLE) + field(ARTIST) + field(ALBUM) + b"1999" + bytes(30) + b"\xff"
        path.write_bytes((self.plain / "a.mp3").read_bytes() + trailer)
        row = rows_of(self.folder)["a.mp3"]
        self.assertEqual((row["title"], row["artist"], row["album"]), (TITLE, ARTIST, ALBUM))
        self.assertEqual(row["source"], "analysis")

    def test_tempos_that_no_song_has(self):
        cases = {"12800": (128.0, "times100"), "1285": (128.5, "times10"), "128,5": (128.5, None),
                 "5": (5.0, "unlikely"), "999999": (999999.0, "unlikely"), "20": (20.0, None)}
        for text in cases:
            path = self.folder / f"{text}.flac"
            shutil.copy(self.plain / "a.flac", path)
            write_fields(mutagen.flac.FLAC(path), text, COMMENT)
        rows = rows_of(self.folder)
        for text, (tempo, note) in cases.items():
            row = rows[f"{text}.flac"]
            self.assertEqual((row["tempo"], row["source"], row["tempoNote"]), (tempo, "tag", note), text)
        for name, row in rows_of(self.folder, "--recheck").items():
            text = pathlib.Path(name).stem
            self.assertEqual(row["source"], "analysis" if cases[text][1] == "unlikely" else "tag", text)


    def make_full(self, name):
        path = self.make(name, {kind: writer for kind, _, writer in ALL_KINDS}[name], None)
        add_picture_and_comment(path)
        return path

    def test_a_written_tempo_is_read_by_everybody_and_nothing_else_changes(self):
        for name in WRITTEN:
            with self.subTest(name):
                path = self.make_full(name)
                before = seen_by_mutagen(path), seen_by_taglib(path)[0], seen_by_ffprobe(path)[0], sound_of(path)
                row = write(path)[name]
                self.assertEqual((row["written"], row["notWritten"]), (True, None))
                after = seen_by_mutagen(path), seen_by_taglib(path)[0], seen_by_ffprobe(path)[0], sound_of(path)
                self.assertEqual(after, before)
                tempo = row["tempo"]
                self.assertAlmostEqual(tempo_by_mutagen(path), tempo, places=3)
                # TagLib and ffprobe read the whole number of MP4 files.
                tolerance = 0.51 if isinstance(mutagen.File(path), mutagen.mp4.MP4) else 0.001
                self.assertLess(abs(seen_by_taglib(path)[1] - tempo), tolerance)
                self.assertLess(abs(seen_by_ffprobe(path)[1] - tempo), tolerance)
                again = rows_of(path)[name]
                self.assertEqual((again["tempo"], again["source"]), (tempo, "tag"))
                self.assertEqual((again["title"], again["artist"], again["album"]), (TITLE, ARTIST, ALBUM))

    def test_a_second_write_changes_no_byte(self):
        paths = [self.make_full(name) for name in WRITTEN]
        write(self.folder)
        before = {path: (path.read_bytes(), path.stat().st_ino, path.stat().st_mtime_ns) for path in paths}
        write(self.folder)
        for path in paths:
            self.assertEqual((path.read_bytes(), path.stat().st_ino, path.stat().st_mtime_ns), before[path], path)
        self.assertEqual(len(list(self.folder.iterdir())), len(paths))

    def test_other_kinds_are_written_only_when_asked_for(self):
        paths = [self.make_full(name) for name in WRITTEN]
        before = [path.read_bytes() for path in paths]
        rows = rows_of("--write", "--force", "--write-types", "mka", self.folder)
        self.assertTrue(all(row["written"] is False for row in rows.values()))
        self.assertEqual([path.read_bytes() for path in paths], before)
        rows = rows_of("--write", "--force", "--write-types", "flac,ogg", self.folder)
        written = sorted(name for name, row in rows.items() if row["written"])
        self.assertEqual(written, ["a.flac", "a.oga", "a.ogg"])

    def test_attributes_are_carried_over_and_the_time_on_request(self):
        for name in WRITTEN:
            path = self.make_full(name)
            path.chmod(0o640)
            os.setxattr(path, "user.mood", b"calm")
            os.utime(path, ns=(1_000_000_000, 1_234_567_890_123_456_789))
        write("--keep-mtime", self.folder)
        for name in WRITTEN:
            status = (self.folder / name).stat()
            self.assertEqual((status.st_mode & 0o777, status.st_mtime_ns), (0o640, 1_234_567_890_123_456_789), name)
            self.assertEqual(os.getxattr(self.folder / name, "user.mood"), b"calm")

    def test_rounding_and_the_key(self):
        for name in WRITTEN:
            self.make_full(name)
        rows = write("--round", "0", "--write-key", self.folder)
        for name, row in rows.items():
            with self.subTest(name):
                self.assertEqual(tempo_by_mutagen(self.folder / name), float(round(row["tempo"])))
                key = rows_of(self.folder / name)[name]["tagKey"]
                self.assertRegex(key, "^[A-G][b#]?m?$")

    def test_a_read_only_file_stays(self):
        for name in WRITTEN:
            self.make_full(name).chmod(0o444)
        self.folder.chmod(0o777)
        pathlib.Path(self.room.name).chmod(0o755)
        before = {path: path.read_bytes() for path in self.folder.iterdir()}
        command = [TACTUS, "analyze", "-q", "-w", "-f", "--short", "--write-types", "all", "--format", "jsonl", str(self.folder)]
        user = 65534 if os.geteuid() == 0 else None
        done = subprocess.run(command, capture_output=True, check=False, user=user)
        self.assertEqual(done.returncode, 1, done.stderr)
        for line in done.stdout.splitlines():
            self.assertEqual(json.loads(line)["notWritten"], "it can't be opened for writing")
        self.assertEqual({path: path.read_bytes() for path in self.folder.iterdir()}, before)

    def test_a_full_disk_leaves_every_kind_as_it_was(self):
        for name in WRITTEN:
            if name == "a.ape":
                continue  # smaller than a page of the disk
            mount = self.folder / "small"
            mount.mkdir(exist_ok=True)
            path = self.make_full(name)
            size = path.stat().st_size * 3 // 2
            done = subprocess.run(
                ["mount", "-t", "tmpfs", "-o", f"size={size}", "tmpfs", str(mount)], capture_output=True, check=False
            )
            if done.returncode != 0:
                self.skipTest("a small disk can't be mounted: " + done.stderr.decode().strip())
            try:
                song = mount / name
                shutil.copy(path, song)
                before = song.read_bytes()
                row = write(song, status=1)[name]
                self.assertEqual(row["notWritten"], "no space left on the disk", name)
                self.assertEqual(song.read_bytes(), before)
                self.assertEqual(os.listdir(mount), [name])
            finally:
                subprocess.run(["umount", str(mount)], check=True)

    def test_a_kill_leaves_the_old_song_or_the_new_one(self):
        for name in WRITTEN:
            path = self.make_full(name)
            old = path.read_bytes()
            write(path)
            allowed = {hashlib.sha256(old).digest(), hashlib.sha256(path.read_bytes()).digest()}
            for pause in (0.02, 0.04, 0.06):
                path.write_bytes(old)
                command = [TACTUS, "analyze", "-q", "-w", "-f", "--short", "--write-types", "all", str(path)]
                with subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
                    time.sleep(pause)
                    process.kill()
                self.assertIn(hashlib.sha256(path.read_bytes()).digest(), allowed, name)
            # What was left half-made is no obstacle.
            path.write_bytes(old)
            write(path)
            self.assertIn(hashlib.sha256(path.read_bytes()).digest(), allowed, name)
            self.assertFalse(path.with_name(name + ".MP~").exists())

    def test_a_tag_of_version_24_stays_one_on_request(self):
        path = self.folder / "a.mp3"
        shutil.copy(self.plain / "a.mp3", path)
        write_id3(path, 3, 4, None)
        add_picture_and_comment(path)
        before = seen_by_mutagen(path)
        self.assertEqual(write("--id3", "keep", path)["a.mp3"]["written"], True)
        self.assertEqual(id3.ID3(path).version, (2, 4, 0))
        self.assertEqual(seen_by_mutagen(path), before)
        self.assertAlmostEqual(tempo_by_mutagen(path), TEMPO, places=1)
        run(TACTUS, "tag", "set", str(path), "TBPM", "99")
        self.assertEqual(id3.ID3(path, translate=False).version, (2, 3, 0))


if __name__ == "__main__":
    TACTUS = sys.argv.pop(1)
    if MISSING:
        sys.exit("\n".join(MISSING))
    unittest.main(verbosity=2)
