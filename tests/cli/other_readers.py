#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Reads with other programs' readers what `tactus export` writes of music whose beats are known.

other_readers.py TACTUS GUIDE: clicks at known times in three kinds of file, each kind of export read
by xmllint and Python's XML, mido, ffprobe, csv and json, and the commands of the page GUIDE run.
"""

import array
import collections
import csv
import io
import json
import math
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import urllib.parse
import wave
import xml.etree.ElementTree as ElementTree

import mido

RATE = 44100
SECONDS = 40
NEAR = 0.006  # s; a click's attack is found to a millisecond or two, an export adds up to 3 ms
LAME_DELAY = 1105 / RATE  # s; LAME's 576 samples and a decoder's 529
SONGS = {  # path: (BPM, seconds of the first click, title)
    "music/House/one.mp3": (125.0, 0.35, "One & <Only>"),
    "music/House/two.flac": (128.0, 0.10, "Zwei \"Tänze\""),
    "music/Slow/three.wav": (96.0, 0.50, ""),
}


def clicks(bpm, first):
    """Samples of clicks, every fourth one louder, and their times."""
    samples = array.array("h", bytes(2 * RATE * SECONDS))
    times = [first + k * 60 / bpm for k in range(int((SECONDS - first - 0.2) * bpm / 60))]
    for k, at in enumerate(times):
        start = round(at * RATE)
        for i in range(3000):
            tone = math.exp(-i / 600) * math.cos(2 * math.pi * 900 * i / RATE)
            samples[start + i] = round((28000 if k % 4 == 0 else 17000) * tone)
    return samples, times


def make_music(folder):
    for path, (bpm, first, title) in SONGS.items():
        target = folder / path
        target.parent.mkdir(parents=True, exist_ok=True)
        plain = target.with_suffix(".wav")
        with wave.open(str(plain), "wb") as out:
            out.setparams((1, 2, RATE, 0, "NONE", ""))
            out.writeframes(clicks(bpm, first)[0].tobytes())
        if target != plain:
            subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-i", plain, "-metadata",
                            "title=" + title, "-metadata", "artist=Click", target], check=True)
            plain.unlink()


def check(holds, what):
    if not holds:
        sys.exit("other_readers.py: " + what)


def check_beats(found, path, what):
    """Every beat lies on a click, and nearly every click has one."""
    truth = clicks_of[path]
    for at in found:
        nearest = min(truth, key=lambda t: abs(t - at))
        beyond = at < truth[0] - 0.1 or at > truth[-1] + 0.1  # a grid goes on in silence
        check(beyond or abs(nearest - at) < NEAR, f"{what} of {path}: {at} is {at - nearest} off")
    inside = [at for at in found if truth[0] - 0.1 <= at <= truth[-1] + 0.1]
    check(len(inside) >= 0.95 * len(truth), f"{what} of {path}: {len(inside)} of {len(truth)}")


class Runner:
    def __init__(self, program, folder):
        self.program = program
        self.folder = folder
        self.env = {**os.environ, "LC_ALL": "C.UTF-8", "HOME": str(folder / "home"),
                    "XDG_CACHE_HOME": str(folder / "cache"),
                    "XDG_STATE_HOME": str(folder / "state")}

    def __call__(self, *arguments, expected=0):
        done = subprocess.run([self.program, *arguments], cwd=self.folder, env=self.env,
                              capture_output=True, check=False)
        check(done.returncode == expected, f"{arguments} gave {done.returncode}: {done.stderr}")
        return done.stdout


def labels_of(text):
    """The rules of Audacity: START tab END tab TEXT, ascending, starts not after ends."""
    labels = []
    for line in text.decode("utf-8").splitlines():
        fields = line.split("\t")
        check(len(fields) == 3, f"label with {len(fields)} fields: {line}")
        start, end = float(fields[0]), float(fields[1])
        check(0 <= start <= end and fields[2], f"label {line}")
        check(not labels or labels[-1][0] <= start, f"label out of order: {line}")
        labels.append((start, end, fields[2]))
    return labels


def check_labels(run):
    for path in SONGS:
        labels = labels_of(run("export", "labels", path))
        beats = [start for start, end, text in labels if re.match(r"\d+\.\d", text)]
        check_beats(beats, path, "labels")
        downbeats = [start for start, end, text in labels if text.endswith("downbeat")]
        check(set(downbeats) <= set(beats) and len(downbeats) >= len(beats) // 4, "downbeats")


def check_csv(run):
    text = run("export", "csv", "music", "--columns", "path,title,tempo,firstBeat", "--bom",
               "--delimiter", ";", "--sort", "-tempo", "-q")
    check(text.startswith(b"\xef\xbb\xbf"), "no mark")
    rows = list(csv.DictReader(io.StringIO(text.decode("utf-8-sig")), delimiter=";"))
    check([row["path"] for row in rows] ==
          ["music/House/two.flac", "music/House/one.mp3", "music/Slow/three.wav"], f"order {rows}")
    for row in rows:
        bpm, first, title = SONGS[row["path"]]
        check(abs(float(row["tempo"]) - bpm) < 0.1, f"tempo of {row}")
        check(row["title"] == title, f"title of {row}")


def check_playlist(run):
    run("export", "m3u8", "music", "-o", "lists.m3u8", "--relative", "--where",
        "tempo>=120 and tempo<=130 and not title=''", "--sort", "tempo")
    lines = (run.folder / "lists.m3u8").read_text(encoding="utf-8").splitlines()
    check(lines[0] == "#EXTM3U", "no #EXTM3U")
    entries = [(lines[i], lines[i + 1]) for i, line in enumerate(lines)
               if line.startswith("#EXTINF:")]
    check([path for _, path in entries] == ["music/House/one.mp3", "music/House/two.flac"],
          f"entries {entries}")
    for info, path in entries:
        seconds, name = info[len("#EXTINF:"):].split(",", 1)
        check(name == "Click - " + SONGS[path][2], f"name {name}")
        probed = subprocess.run(["ffprobe", "-v", "error", "-show_entries", "format=duration",
                                 "-of", "csv=p=0", run.folder / path],
                                capture_output=True, check=True, text=True).stdout
        check(abs(float(probed) - int(seconds)) < 1, f"length of {path}: {seconds}, {probed}")


def check_midi(run):
    (run.folder / "midi").mkdir()
    run("export", "midi", "music", "-o", "midi")
    for path in SONGS:
        song = mido.MidiFile(run.folder / "midi" / (pathlib.Path(path).stem + ".mid"))
        check(song.type == 0 and len(song.tracks) == 1, "kind of MIDI file")
        tick, changes, metres = 0, [], []
        for message in song.tracks[0]:
            tick += message.time
            if message.type == "set_tempo":
                changes.append((tick, message.tempo))
            elif message.type == "time_signature":
                metres.append((tick, message.numerator, message.denominator))
        check(metres == [(0, 4, 4)], f"metre {metres}")
        end, beats, clock = tick, [], 0.0
        for (start, tempo), after in zip(changes, changes[1:] + [(end, 0)]):
            for k in range((after[0] - start) // song.ticks_per_beat):
                beats.append(clock + k * tempo / 1e6)
            clock += (after[0] - start) / song.ticks_per_beat * tempo / 1e6
        lead_in = changes[1][0] // song.ticks_per_beat
        check_beats(beats[lead_in:], path, "MIDI")


def check_rekordbox(run):
    run("export", "rekordbox", "music", "-o", "lib.xml", "--base", "music=D:/Music")
    subprocess.run(["xmllint", "--noout", run.folder / "lib.xml"], check=True)
    root = ElementTree.parse(run.folder / "lib.xml").getroot()
    check(root.tag == "DJ_PLAYLISTS" and root.get("Version") == "1.0.0", "root")
    tracks = root.findall("COLLECTION/TRACK")
    check(len(tracks) == len(SONGS) == int(root.find("COLLECTION").get("Entries")), "tracks")
    for track in tracks:
        place = urllib.parse.unquote(track.get("Location"))
        check(place.startswith("file://localhost/D:/Music/"), f"location {place}")
        path = "music/" + place[len("file://localhost/D:/Music/"):]
        bpm, _, title = SONGS[path]
        check(track.get("Name") == (title or "three"), f"name {track.attrib}")
        check(abs(float(track.get("AverageBpm")) - bpm) < 0.1, f"tempo {track.attrib}")
        # What an encoder put before the music is played there, and counted.
        late = LAME_DELAY if path.endswith(".mp3") else 0.0
        check_beats([at - late for at in grid_of(track)], path, "TEMPO")
        cues = track.findall("POSITION_MARK")
        check(all(cue.get("Num") == "-1" and cue.get("Type") == "0" for cue in cues), "cues")
    lists = root.findall("PLAYLISTS/NODE/NODE")
    keys = {track.get("TrackID"): track for track in tracks}
    check({node.get("Name"): len(node) for node in lists} == {"House": 2, "Slow": 1}, "playlists")
    check(all(entry.get("Key") in keys for node in lists for entry in node), "keys")
    plain = ElementTree.fromstring(run("export", "rekordbox", "music/House/one.mp3", "--offset",
                                       "0"))
    check_beats(grid_of(plain.find("COLLECTION/TRACK")), "music/House/one.mp3", "plain TEMPO")


def grid_of(track):
    """Beats that the TEMPO entries of a track make, to its end."""
    steps = [(float(t.get("Inizio")), float(t.get("Bpm")), t) for t in track.findall("TEMPO")]
    check(steps and all(t.get("Metro") == "4/4" and t.get("Battito") in "1234"
                        for _, _, t in steps), "TEMPO")
    beats = []
    for (start, bpm, _), after in zip(steps, steps[1:] + [(SECONDS, 0, None)]):
        count = round((after[0] - start) * bpm / 60)
        beats += [start + k * 60 / bpm for k in range(count)]
    return beats


def check_jams(run):
    for path in SONGS:
        jams = json.loads(run("export", "jams", path))
        meta = jams["file_metadata"]
        check(abs(meta["duration"] - SECONDS) < 0.1, "duration")
        check(re.fullmatch(r"\d\.\d\.\d", meta["jams_version"]), "version")
        data = {}
        for annotation in jams["annotations"]:
            check(isinstance(annotation["annotation_metadata"], dict), "metadata")
            for one in annotation["data"]:
                check(one.keys() == {"time", "duration", "value", "confidence"}, f"fields {one}")
                check(one["time"] >= 0 and one["duration"] >= 0, f"times {one}")
            data[annotation["namespace"]] = annotation["data"]
        check_beats([beat["time"] for beat in data["beat"]], path, "JAMS")
        check(0 <= data["tempo"][0]["confidence"] <= 1, "confidence")
        check(all(1 <= at["value"]["position"] <= at["value"]["num_beats"] == 4
                  and at["value"]["beat_units"] == 4 for at in data["beat_position"]), "positions")


def check_drawing(run):
    (run.folder / "svg").mkdir()
    run("export", "svg", "music", "-o", "svg")
    for path, (bpm, _, _) in SONGS.items():
        file = run.folder / "svg" / (pathlib.Path(path).stem + ".svg")
        subprocess.run(["xmllint", "--noout", file], check=True)
        kinds = collections.Counter(
            (node.tag.split("}")[1], node.get("class")) for node in ElementTree.parse(file).iter())
        beats = kinds["line", "beat"] + kinds["line", "measure"]
        check(abs(beats - SECONDS * bpm / 60) < 4, f"{beats} beats in {file}")
        check(kinds["polygon", "energy"] == kinds["polygon", "bass"] == 1, "envelopes")
        check(kinds["rect", "energy"] > 1, "accents and readings")


def check_again(run):
    """Results are replaced, other people's files are not."""
    run("export", "midi", "music", "-o", "midi")
    run("export", "rekordbox", "music", "-o", "lib.xml")
    run("export", "m3u8", "music", "-o", "lists.m3u8")
    run("export", "csv", "music", "-o", "table.csv")
    run("export", "csv", "music", "-o", "table.csv", "--columns", "file,beats")
    (run.folder / "mine.m3u8").write_text("#EXTM3U\nmy.mp3\n")
    run("export", "m3u8", "music", "-o", "mine.m3u8", expected=2)
    check((run.folder / "mine.m3u8").read_text() == "#EXTM3U\nmy.mp3\n", "a list is lost")
    run("export", "m3u8", "music", "-o", "mine.m3u8", "--overwrite-output")


def check_guide(run, guide):
    """Every command of the page is run where it says that music lies."""
    blocks = re.findall(r"^```\n(.*?)^```", guide.read_text(encoding="utf-8"), re.M | re.S)
    commands = [line for block in blocks for line in block.splitlines()
                if line.startswith("tactus ")]
    check(len(commands) >= 8, f"{len(commands)} commands in {guide}")
    home = run.folder / "home"
    home.mkdir()
    (home / "Music").symlink_to(run.folder / "music")
    (home / "beats").mkdir()
    for command in commands:
        words = [word.replace("~/", str(home) + "/") for word in shlex.split(command)[1:]]
        run(*words)


clicks_of = {path: clicks(bpm, first)[1] for path, (bpm, first, _) in SONGS.items()}


def main():
    program, guide = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    with tempfile.TemporaryDirectory() as folder:
        run = Runner(program, pathlib.Path(folder))
        make_music(run.folder)
        for part in (check_drawing, check_labels, check_csv, check_playlist, check_midi,
                     check_rekordbox, check_jams, check_again):
            part(run)
        check_guide(run, guide)


main()
