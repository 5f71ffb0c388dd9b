// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

struct CTakenSong;

/// A song as JAMS (JSON Annotated Music Specification 0.3, schemas "jams_schema" and those of the
/// namespaces): tempo, beat, beat_position, key_mode and segment_open, as far as they are known.
/// One JSON object on one line without a line end. `version` is that of the program that writes.
[[nodiscard]] std::string JamsOf(CTakenSong const& song, std::string const& version);
