// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

/// Where things stand in an ID3v2 tag.
// Standard: ID3v2.3.0, sections 3.1 to 3.3: the header of the whole tag.
constexpr std::size_t kTagHeaderBytes = 10;
constexpr std::size_t kTagVersionOffset = 3;
constexpr std::size_t kTagFlagsOffset = 5;
constexpr std::size_t kTagSizeOffset = 6;
constexpr std::uint8_t kTagUnsynchronized = 0x80;
constexpr std::uint8_t kTagHasExtendedHeader = 0x40;

// Standard: ID3v2.2.0, section 3.2: the header of a frame.
constexpr std::uint32_t kOldFrameHeaderBytes = 6;
constexpr std::uint32_t kOldFrameIdBytes = 3;

// Standard: ID3v2.4.0 structure, section 4.1.2: of the second byte of a frame's flags.
constexpr std::uint8_t kFrameUnsynchronized = 0x02;

constexpr char kCommentId[] = "COMM";      // Standard: ID3v2.3.0, section 4.11.
constexpr char kCommentLanguage[] = "eng"; // Fixed: of the comments that count and are written.
