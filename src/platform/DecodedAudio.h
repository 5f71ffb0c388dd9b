// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DecodeProblem.h"
#include "platform/SampleBuffer.h"

#include <cstdint>
#include <optional>
#include <span>

/// One decoded file.
/// Units: samples in [-1.00003, 1], 44100 a second.
struct CDecodedAudio {
    [[nodiscard]] std::span<float const> Samples() const {
        return {m_pSamples.get(), static_cast<std::size_t>(m_nCount)};
    }

    CSamplePtr m_pSamples;
    std::int32_t m_nCount = 0; // samples in the buffer
};

/// Length of the buffer for a file of `frames` frames at its own rate: the low 32 bits of the
/// count. Nothing when these exceed the largest 32-bit signed number.
std::optional<std::int32_t> SampleCountOf(std::int64_t frames);

/// Moves `buffer` into `audio`, as long as `SampleCountOf(frames)` says. What lies at or past
/// `musicEnd`, in samples at 44100 Hz, becomes 0.
/// Returns: why that can't be done; `None` when it is.
EDecodeProblem TakeSamples(CSampleBuffer& buffer, std::int64_t frames, std::int64_t musicEnd,
                           CDecodedAudio& audio);
