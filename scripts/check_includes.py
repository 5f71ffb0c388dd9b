#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Holds the includes of src/ to the arrows of the house, and the toolkits to their rooms."""

import pathlib
import re
import sys

ROOMS = {
    "base": {"base"},
    "platform": {"platform", "base"},
    "engine": {"engine", "base"},
    "IDTag": {"IDTag", "base"},
    "song": {"song", "engine", "IDTag", "platform", "base"},
    "export": {"export", "song", "engine", "IDTag", "platform", "base"},
    "tactus": {"tactus", "export", "song", "engine", "IDTag", "platform", "base"},
    "records": {"records", "song", "engine", "IDTag", "platform", "base"},
    "app": {"app", "records", "export", "song", "engine", "IDTag", "platform", "base"},
    "desktop": {"desktop", "app", "records", "export", "song", "engine", "IDTag", "platform", "base"},
    "cli": {"cli", "app", "records", "export", "song", "engine", "IDTag", "platform", "base"},
}
# The rooms of the engine, each with those that it reaches besides itself. A name with a slash is a
# family that stands apart from its room.
ENGINE = {
    "kernels": set(),
    "signal": {"kernels"},
    "envelope/Tempo": set(),
    "source": {"envelope/Tempo"},
    "envelope": {"envelope/Tempo", "source"},
    "tempo": {"envelope", "envelope/Tempo"},
    "beats": {"tempo", "envelope", "envelope/Tempo"},
    "record": {"beats", "envelope"},
    "notes": {"kernels", "signal", "envelope", "envelope/Tempo", "source", "record"},
    "print": {"envelope"},
    "mix": {"tempo", "envelope", "record"},
}
ENGINE["run"] = set(ENGINE)
# The families directly in src/engine: what a run is given, what it fills, and the run itself.
ENGINE_TOP = {
    "PcmReader": "source",
    "Profiler": "source",
    "ProfileResults": "record",
    "ProfileResultsCurve": "record",
    "ProfileBuilder": "run",
    "ProfileObserver": "run",
    "SpectralPass": "run",
}
# The sources that work with the decoding library; no header that others include shows it.
LIBAV_SOURCES = {
    f"src/platform/{name}"
    for name in (
        "AudioDecoder.cpp",
        "AudioHash.cpp",
        "AudioInput.cpp",
        "AudioInput.h",
        "AudioMixer.cpp",
        "AudioMixer.h",
        "AudioSetup.cpp",
        "AudioStream.cpp",
        "ContainerTags.cpp",
        "DecodeRun.cpp",
        "DecodeRun.h",
        "PacketCount.cpp",
        "PacketCount.h",
        "Resampler.cpp",
        "StereoReader.cpp",
    )
}
# The sources that work with TagLib, likewise.
TAGLIB_SOURCES = {
    f"src/platform/{name}"
    for name in (
        "OtherTags.cpp",
        "TagChange.cpp",
        "TagFile.cpp",
        "TagFile.h",
        "TagSeek.h",
        "TagItems.cpp",
        "TagLibVersions.h",
        "TagStream.cpp",
        "TagStream.h",
    )
}
# What only these files may include, by the start of the header's name.
TOOLKITS = {
    r"Q[A-Z]|Qt": lambda path: path.parts[1] == "desktop",
    r"hwy/": lambda path: path.parts[1] == "engine",
    r"SQLiteCpp/|sqlite3": lambda path: path.parts[1] == "records",
    r"records/(Database|JournalRows)\.h": lambda path: path.parts[1] == "records",
    r"lib(av|sw)": lambda path: path.as_posix() == "src/platform/LibAv.h",
    r"pugixml": lambda path: path.parts[1:3] == ("export", "xml"),
    r"taglib/|platform/Tag(Stream|File|Seek|LibVersions)\.h": lambda path: path.as_posix() in TAGLIB_SOURCES,
    r"platform/(LibAv|AudioInput|AudioMixer|DecodeRun|PacketCount)\.h": lambda path: path.as_posix() in LIBAV_SOURCES,
}
INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]', re.M)


def engine_room(name):
    """The engine's room that a header or source belongs to, by its path below src/engine."""
    family = name.rsplit(".", 1)[0]
    if family in ENGINE:
        return family
    return family.split("/")[0] if "/" in family else ENGINE_TOP[family]


def engine_complaints(path, name):
    source = engine_room(path.relative_to("src/engine").as_posix())
    target = engine_room(name.removeprefix("engine/"))
    if target != source and target not in ENGINE[source]:
        yield f"{path}: includes {name}, which {source} of the engine does not reach"


def complaints(root):
    for path in sorted((root / "src").rglob("*")):
        if path.suffix not in {".h", ".cpp"}:
            continue
        path = path.relative_to(root)
        room = path.parts[1]
        for quote, name in INCLUDE.findall((root / path).read_text(encoding="utf-8")):
            target = name.split("/")[0]
            if quote == '"' and "/" in name and target not in ROOMS[room]:
                yield f"{path}: includes {name}, which {room} does not reach"
            if quote == '"' and room == target == "engine":
                yield from engine_complaints(path, name)
            for start, allowed in TOOLKITS.items():
                if re.match(start, name) and not allowed(path):
                    yield f"{path}: includes {name}, which belongs to another room"


def python_complaints(root):
    """The Python module knows the front door and nothing behind it."""
    for path in sorted((root / "python" / "core").glob("*")):
        for quote, name in INCLUDE.findall(path.read_text(encoding="utf-8")):
            if (quote == '"' and "/" in name) or (name.split("/")[0] in ROOMS and name != "tactus/tactus.h"):
                yield f"{path.relative_to(root)}: includes {name}, which is behind the door"


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    found = [*complaints(root), *python_complaints(root)]
    print("\n".join(found) if found else "includes: every arrow points down")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
