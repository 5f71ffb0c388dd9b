// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

struct CTakenSong;

constexpr char kDrawingMark[] = "made by Tactus"; // Fixed: in every drawing.

/// A song as an SVG picture: envelope and bass over time with intro and outro, beats, measures,
/// fade and mix points, below them the accents of a measure and the readings of the tempo. Light or
/// dark as the reader's scheme is. The envelopes are missing unless the song has them.
[[nodiscard]] std::string SongDrawingOf(CTakenSong const& song);
