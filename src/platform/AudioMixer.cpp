// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioMixer.h"

#include <algorithm>

namespace {

constexpr int kSlowestRate = 1000;      // Fixed: a hostile rate must
constexpr int kFastestRate = 1'000'000; // not blow up the resampling.

} // namespace

int CAudioMixer::Push(AVFrame const& frame) {
    int const status = Configure(frame);
    auto** const data = const_cast<std::uint8_t const**>(frame.extended_data);
    return status >= 0 ? Convert(data, frame.nb_samples) : status;
}

int CAudioMixer::Flush() {
    return m_resampler != nullptr ? Convert(nullptr, 0) : 0;
}

int CAudioMixer::Convert(std::uint8_t const** data, int count) {
    int const room = swr_get_out_samples(m_resampler.get(), count);
    m_vBlock.resize(static_cast<std::size_t>(std::max(room, 0)));
    auto* out = reinterpret_cast<std::uint8_t*>(m_vBlock.data());
    int const done = room > 0 ? swr_convert(m_resampler.get(), &out, room, data, count) : room;
    if (done > 0 && !m_buffer.Append({m_vBlock.data(), static_cast<std::size_t>(done)})) {
        throw std::bad_alloc();
    }
    return done;
}

/// Makes a resampler for frames like `frame`, unless the one at hand is.
int CAudioMixer::Configure(AVFrame const& frame) {
    auto const& [order, channels, speakers, opaque] = frame.ch_layout;
    std::uint64_t const mask = order == AV_CHANNEL_ORDER_NATIVE ? speakers.mask : 0;
    auto const shape = std::tuple(frame.sample_rate, frame.format, channels, mask);
    if (m_resampler != nullptr && m_shape == shape) {
        return 0;
    }
    if (frame.sample_rate < kSlowestRate || frame.sample_rate > kFastestRate) {
        return AVERROR(ERANGE);
    }
    int status = Flush();
    AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
    AVChannelLayout in{};
    if (mask == 0 || av_channel_layout_from_mask(&in, mask) < 0) {
        av_channel_layout_default(&in, channels);
    }
    auto const format = static_cast<AVSampleFormat>(frame.format);
    SwrContext* resampler = nullptr;
    if (status >= 0) {
        status = swr_alloc_set_opts2(&resampler, &mono, AV_SAMPLE_FMT_S16, kOutputRate, &in, format,
                                     frame.sample_rate, 0, nullptr);
    }
    m_resampler.reset(resampler);
    if (status >= 0 && in.order == AV_CHANNEL_ORDER_UNSPEC) {
        // More channels than any layout has names for: each counts alike.
        std::vector<double> const shares(static_cast<std::size_t>(channels), 1.0 / channels);
        status = swr_set_matrix(resampler, shares.data(), channels);
    }
    m_shape = shape;
    return status >= 0 ? swr_init(resampler) : status;
}
