// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/// What the header of an MPEG layer III frame says.
struct CMpegFrame {
    std::size_t m_nBytes = 0;      // of the frame, header and padding included
    std::size_t m_nSamples = 0;    // of each channel
    std::size_t m_nSampleRate = 0; // Hz
    bool m_bMono = false;
};

/// Reads the header that `bytes` begins with. Returns: nothing when there is none, or one that
/// leaves the bit rate open.
std::optional<CMpegFrame> MpegFrameOf(std::span<std::uint8_t const> bytes);
