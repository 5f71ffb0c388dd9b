// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/LibAv.h"
#include "platform/SampleQueue.h"

#include <cstdint>
#include <tuple>
#include <vector>

/// Mixes frames down to mono, resamples them to 44100 Hz and appends them to a queue. The same
/// frames give the same samples on every processor.
/// Returns: 0 or more, or an error of libav's; ERANGE for a rate that can't be worked with.
/// Thread: one thread at a time.
class CAudioMixer {
public:
    /// `queue` must outlive it.
    explicit CAudioMixer(CSampleQueue& queue) : m_queue(queue) {}

    int Push(AVFrame const& frame);

    /// Hands on what the resampler still holds.
    int Flush();

private:
    int Configure(AVFrame const& frame);
    int Convert(std::uint8_t const** data, int count);
    void ChooseMixdown(AVChannelLayout const& in, AVSampleFormat format, int rate, int& status);
    int MixDown(std::uint8_t const** data, int count);
    template <typename T>
    void MixPlanes(std::uint8_t const* const* planes, std::size_t count);

    CSampleQueue& m_queue;
    AVSampleFormat m_eMixed = AV_SAMPLE_FMT_NONE; // what is mixed down here; none: nothing is
    std::vector<double> m_vShares;                // of each channel in that
    CResamplerPtr m_widened;                      // to what is mixed down; null where frames are
    std::vector<std::uint8_t> m_vPlanes;          // widened, one channel behind the other
    CResamplerPtr m_resampler;                    // to 44100 Hz; null where that is the rate
    std::vector<std::int16_t> m_vMono;            // mixed down, at the file's rate
    std::vector<std::int16_t> m_vBlock;
    // Rate, format, channels and speakers of the frames that it is ready for; a rate of 0 for none.
    std::tuple<int, int, int, std::uint64_t> m_shape{};
};
