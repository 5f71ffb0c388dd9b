// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// What a file that can't be opened seems to be.
enum class EFileKind {
    Unknown,
    Read,       // a kind that is read, so that something in it must be wrong
    Other,      // a kind of sound, or of film, that isn't read
    FreeFormat, // MPEG audio that leaves its bit rate open
};

inline constexpr std::size_t kFileKindBytes = 16384; // Fixed: as many are looked at.

/// Looks at the first bytes of a file; a tag in front must have been taken off.
EFileKind FileKindOf(std::span<std::uint8_t const> head);

/// Length of the ID3v2 tag that `head` begins with, footer included; 0 when there is none.
std::int64_t LeadingTagBytes(std::span<std::uint8_t const> head);
