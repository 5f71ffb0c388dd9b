// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

struct CTakenSong;

constexpr char kMidiMark[] = "made by Tactus"; // Fixed: a text event in every file.

/// A song's tempo map and time signature as a standard MIDI file of type 0 without notes, as bytes:
/// put beside the song from its first sample on, its beats are the song's. What comes before the
/// first beat is filled by whole measures at a tempo of their own, so that downbeats begin
/// measures. Empty without two beats.
[[nodiscard]] std::string MidiOf(CTakenSong const& song);
