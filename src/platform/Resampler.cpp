// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/Resampler.h"

#include "base/EngineRate.h"
#include "platform/AudioMixer.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::size_t kBlock = 8192; // Tuned: samples handed over at once.

/// Returns: 0 or more, or an error of libav's.
int PushAll(std::span<float const> samples, std::uint32_t rate, CAudioMixer& mixer) {
    CFramePtr const frame(Had(av_frame_alloc()));
    frame->format = AV_SAMPLE_FMT_FLT;
    frame->sample_rate = static_cast<int>(rate);
    frame->ch_layout = AV_CHANNEL_LAYOUT_MONO;
    frame->extended_data = static_cast<std::uint8_t**>(frame->data);
    int status = 0;
    for (std::size_t i = 0; i < samples.size() && status >= 0; i += kBlock) {
        // The mixer only reads.
        auto* const block = const_cast<float*>(samples.data() + i);
        frame->data[0] = reinterpret_cast<std::uint8_t*>(block);
        frame->nb_samples = static_cast<int>(std::min(kBlock, samples.size() - i));
        status = mixer.Push(*frame);
    }
    return status >= 0 ? mixer.Flush() : status;
}

} // namespace

EDecodeProblem Resample(std::span<float const> samples, std::uint32_t rate, CDecodedAudio& audio) {
    constexpr std::uint64_t kMostSamples = std::numeric_limits<std::int32_t>::max();
    if (rate == 0 || rate > std::uint32_t{std::numeric_limits<std::int32_t>::max()}) {
        return EDecodeProblem::BadRate;
    }
    try {
        if (samples.size() * std::uint64_t{kEngineRateHz} / rate > kMostSamples) {
            return EDecodeProblem::TooLong;
        }
        CSampleQueue queue;
        CAudioMixer mixer(queue);
        int const status = PushAll(samples, rate, mixer);
        if (status < 0) {
            return status == AVERROR(ERANGE) ? EDecodeProblem::BadRate : EDecodeProblem::Unmixable;
        }
        std::size_t const count = std::min(queue.GetCount(), std::size_t{kMostSamples});
        audio.m_pSamples = std::make_unique_for_overwrite<float[]>(count);
        audio.m_nCount =
            static_cast<std::int32_t>(queue.Take(std::span(audio.m_pSamples.get(), count)));
    } catch (std::bad_alloc const&) {
        return EDecodeProblem::NoMemory;
    }
    return EDecodeProblem::None;
}
