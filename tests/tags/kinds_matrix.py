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
import json
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

TACTUS = ""
MISSING = []
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
    ("a.wav", [], "wav"),
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


if __name__ == "__main__":
    TACTUS = sys.argv.pop(1)
    if MISSING:
        sys.exit("\n".join(MISSING))
    unittest.main(verbosity=2)
