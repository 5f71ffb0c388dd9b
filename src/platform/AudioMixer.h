// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/LibAv.h"
#include "platform/SampleBuffer.h"

#include <cstdint>
#include <tuple>
#include <vector>

inline constexpr int kOutputRate = 44100; // Fixed: rate of every analysis, samples per second.

/// Mixes frames down to mono, resamples them to 44100 Hz and appends them to a buffer. The same
/// frames give the same samples on every processor.
/// Returns: 0 or more, or an error of libav's; ERANGE for a rate that can't be worked with.
/// Thread: one thread at a time.
class CAudioMixer {
public:
    /// `buffer` must outlive it.
    explicit CAudioMixer(CSampleBuffer& buffer) : m_buffer(buffer) {}

    int Push(AVFrame const& frame);

    /// Hands on what the resampler still holds.
    int Flush();

private:
    int Configure(AVFrame const& frame);
    int Convert(std::uint8_t const** data, int count);
    int MixDown(std::uint8_t const** data, int count);

    CSampleBuffer& m_buffer;
    CResamplerPtr m_mixdown;   // to 16 bits at the file's rate; null where one step does all
    CResamplerPtr m_resampler; // to 44100 Hz
    std::vector<std::int16_t> m_vMono; // mixed down, at the file's rate
    std::vector<std::int16_t> m_vBlock;
    std::tuple<int, int, int, std::uint64_t> m_shape; // rate, format, channels, speakers
};
