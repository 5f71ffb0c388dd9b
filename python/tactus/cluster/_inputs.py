# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Which files are to be heard."""

from __future__ import annotations

import os
import re
from collections.abc import Iterable, Iterator

# What the command line takes in folders.
EXTENSIONS = frozenset(
    "aac aif aifc aiff ape au caf flac m4a m4b mka mov mp2 mp3 mp4 oga ogg opus rf64 snd tta w64 "
    "wav weba webm wma wv".split()
)
# What systems put beside music.
LITTER = re.compile(r"\._|\.Trash|#recycle$|\.snapshots$|@eaDir$|lost\+found$")


def inputs(paths: Iterable[str]) -> list[str]:
    """The files that `paths` name, absolute, each once, in their order; of folders, the audio files.

    A path that isn't there is an input too: its record will say so.
    """
    found: dict[str, None] = {}
    for name in paths:
        path = os.path.abspath(name)
        found.update(dict.fromkeys(_walk(path) if os.path.isdir(path) else [path]))
    return list(found)


def _walk(folder: str) -> Iterator[str]:
    """Folders behind links are left out."""
    try:
        with os.scandir(folder) as entries:
            found = sorted(entries, key=lambda entry: os.fsencode(entry.name))
    except OSError:
        return
    for entry in found:
        if LITTER.match(entry.name):
            continue
        if entry.is_dir(follow_symlinks=False):
            yield from _walk(entry.path)
        elif _is_audio(entry):
            yield entry.path


def _is_audio(entry: os.DirEntry[str]) -> bool:
    point = entry.name.rfind(".")
    return point >= 0 and entry.name[point + 1 :].lower() in EXTENSIONS and entry.is_file()


def size_of(path: str) -> int:
    """Bytes; 0 for what isn't there."""
    try:
        return os.stat(path).st_size
    except OSError:
        return 0
