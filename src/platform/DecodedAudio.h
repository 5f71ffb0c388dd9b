// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>

/// One decoded file.
/// Units: samples in [-1.00003, 1], 44100 a second.
struct CDecodedAudio {
    [[nodiscard]] std::span<float const> Samples() const {
        return {m_pSamples.get(), static_cast<std::size_t>(m_nCount)};
    }

    std::unique_ptr<float[]> m_pSamples;
    std::int32_t m_nCount = 0; // samples in the buffer
};

/// How long a song is.
struct CSongLength {
    bool operator==(CSongLength const&) const = default;

    std::int64_t m_nFrames = 0; // at the file's own rate

    // What lies at or past it, in samples at 44100 Hz, is not music any more and becomes 0.
    std::int64_t m_nMusicEnd = std::numeric_limits<std::int64_t>::max();
};

/// Samples at 44100 Hz of a file of `frames` frames at its own rate: the low 32 bits of the count.
/// Nothing when these exceed the largest 32-bit signed number.
std::optional<std::int32_t> SampleCountOf(std::int64_t frames);
