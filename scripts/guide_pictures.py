#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Draws every state of the window in every look, and writes the page that shows them.

  apt-get install fluidsynth fluid-soundfont-gm ffmpeg pngquant qt6-translations-l10n
  cmake --build --preset release --target desktop_pictures
  scripts/guide_pictures.py build/tests/desktop/pictures/desktop_pictures [--looks dark,german]

The pictures come to docs/guide/window/LOOK/STATE.png, with at most 64 colours each; the page is
docs/guide/window-pictures.md. The songs are made first, and kept in --songs.
"""

import argparse
import json
import os
import pathlib
import subprocess
import sys
import tempfile

from guide_states import LOOKS, STATES, page

ROOT = pathlib.Path(__file__).resolve().parent.parent
COLOURS = "64"
SCREEN = {"screens": [{"name": "wide", "x": 0, "y": 0, "width": 2560, "height": 2000,
                       "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]}
SECONDS = 150.0  # of a song

# file, style and its template, title, artist, tempo in the tag; empty: nobody has filled that in
SONGS = [
    ("01 Slow Harbour.mp3", "triphop", 0, "Slow Harbour", "Mira Löwe", "79.95"),
    ("02 Night Bus.mp3", "house", 0, "Night Bus", "The Clockmakers", "126.20"),
    ("03 Paper Lanterns.mp3", "waltz", 0, "Paper Lanterns", "Mira Löwe", "88.64"),
    ("04 Concrete Sky.mp3", "breakbeat", 0, "Concrete Sky", "Ada & Ivo", "134.13"),
    ("05 Glass.mp3", "drumnbass", 0, "Glass", "Ada & Ivo", ""),
    ("06 River.mp3", "folkguitar", 0, "Letters from the Far Side of the River (live at the old baths)",
     "Zielona Łąka & the Northern Brass", "123.74"),
    ("07 طريق البحر.mp3", "bolero", 0, "طريق البحر", "ليلى منصور", "156.40"),
    ("08 Long Way Home.m4a", "soul", 0, "Long Way Home", "The Clockmakers", ""),
    ("09 rehearsal.wav", "reggae", 0, "", "", ""),
]
OTHER_KINDS = [("10 Lighthouse.flac", "synthpop", "Lighthouse"), ("11 Tin Roof.ogg", "ska", "Tin Roof"),
               ("12 Early Train.flac", "countrytrain", "Early Train")]
TORN = "13 Demo take 3.mp3"  # a download that never came to its end


def make_song(path, style, template, title, artist, bpm):
    sys.path.insert(0, str(ROOT / "scripts" / "tempo_model"))
    from compose import Player, read_styles
    from make_music import render
    styles = {each.name: each for each in read_styles()}
    with tempfile.TemporaryDirectory() as folder:
        wav = pathlib.Path(folder) / "song.wav"
        chosen = styles[style]
        render(Player(chosen, chosen.templates[template], path.name, SECONDS).play().midi(), wav)
        tags = ["-metadata", f"title={title}", "-metadata", f"artist={artist}"] if title else []
        tags += ["-metadata", f"TBPM={bpm}"] if bpm else []
        bits = ["-b:a", "192k"] if path.suffix in (".mp3", ".m4a") else []
        subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-y", "-i", str(wav), *bits, *tags,
                        str(path)], check=True)


def make_songs(folder):
    folder.mkdir(parents=True, exist_ok=True)
    wanted = SONGS + [(name, style, 0, title, "The Clockmakers", "") for name, style, title in OTHER_KINDS]
    for name, *what in wanted:
        if not (folder / name).exists():
            make_song(folder / name, *what)
    (folder / TORN).write_bytes(b"ID3\x03\x00\x00\x00\x00\x00\x00" + bytes(4096))
    return [str(folder / name) for name, *_ in wanted] + [str(folder / TORN)]


def draw(program, look, folder, songs):
    with tempfile.TemporaryDirectory() as drawn:
        screen = pathlib.Path(drawn) / "screen.json"
        screen.write_text(json.dumps(SCREEN), encoding="utf-8")
        own = {"QT_QPA_PLATFORM": f"offscreen:configfile={screen}", "QT_SCALE_FACTOR": look.scale}
        subprocess.run([program, look.colours, look.locale, drawn, *songs], check=True,
                       env={**os.environ, **own})
        pictures = sorted(pathlib.Path(drawn).glob("*.png"))
        names = {picture.stem for picture in pictures}
        if names != {state.name for state in STATES}:
            sys.exit(f"{look.name}: drawn and described differ in "
                     f"{sorted(names ^ {state.name for state in STATES})}")
        folder.mkdir(parents=True, exist_ok=True)
        for picture in pictures:
            subprocess.run(["pngquant", "--force", "--strip", "--nofs", "--speed", "1", "--output",
                            str(folder / picture.name), COLOURS, str(picture)], check=True)


def main():
    arguments = argparse.ArgumentParser(description=__doc__,
                                        formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("program")
    arguments.add_argument("--looks", default=",".join(look.name for look in LOOKS))
    arguments.add_argument("--songs", type=pathlib.Path, default=ROOT / "build" / "guide-songs")
    arguments.add_argument("--guide", type=pathlib.Path, default=ROOT / "docs" / "guide")
    options = arguments.parse_args()
    songs = make_songs(options.songs)
    for look in LOOKS:
        if look.name in options.looks.split(","):
            draw(options.program, look, options.guide / "window" / look.name, songs)
    (options.guide / "window-pictures.md").write_text(page(), encoding="utf-8")


if __name__ == "__main__":
    main()
