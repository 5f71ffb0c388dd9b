// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <optional>

constexpr std::size_t kAudioHashBytes = 32; // Standard: SHA-256.
using CAudioHash = std::array<std::uint8_t, kAudioHashBytes>;

/// Hash of a file's sound as it is stored, undecoded: every audio packet with its time and what is
/// cut off it, and what a decoder is told before the first one. Tags, pictures and the order of a
/// file's parts don't count.
/// `file` is a descriptor open for reading, whose position changes.
/// Returns: nothing when there is no sound, or the file can't be read to its end.
/// Thread: any.
std::optional<CAudioHash> HashAudio(int file);
