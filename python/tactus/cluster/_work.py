# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""What runs on a worker, and what stands in for it."""

from __future__ import annotations

import json
import os
from urllib.parse import quote

import tactus

LOST = "every process that heard it died, for want of memory or by a fault"


def hear(paths: list[str]) -> list[str]:
    """One record for each path, as a line of JSON without its end."""
    return [_record(path) for path in paths]


def _record(path: str) -> str:
    try:
        return tactus.analyze(path).to_json()
    except tactus.TactusError as error:
        return error.to_json()


def lost(path: str) -> str:
    """The record of a file whose workers died."""
    raw = os.fsencode(path)
    shown = raw.decode("utf-8", "replace")
    record: dict[str, object] = {
        "schema": "tactus-song-1",
        "engine": tactus.__version__,
        "path": shown,
    }
    if shown != path:
        record["uri"] = "file://" + quote(raw)
    record.update(dict.fromkeys(("title", "artist", "album", "tagKey", "tagTempo")))
    record["error"] = {"code": "lost", "message": LOST}
    return json.dumps(record, ensure_ascii=False)
