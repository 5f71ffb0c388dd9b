// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioMixer.h"

#include <algorithm>

namespace {

constexpr int kSlowestRate = 1000;      // Fixed: a hostile rate must
constexpr int kFastestRate = 1'000'000; // not blow up the resampling.

// Derived: of 16-bit samples. These are resampled in whole numbers; wider ones would be in floats,
// whose sums come in another order with every vector unit. So they are rounded to 16 bits before.
constexpr int kExactBytes = 2;

/// A converter from `in` to mono in 16 bits; null, or of no use, with an error in `status`.
CResamplerPtr MakeConverter(AVChannelLayout in, AVSampleFormat format, int rate, int outRate,
                            int& status) {
    AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
    SwrContext* made = nullptr;
    status = swr_alloc_set_opts2(&made, &mono, AV_SAMPLE_FMT_S16, outRate, &in, format, rate, 0,
                                 nullptr);
    CResamplerPtr converter(made);
    if (status >= 0 && in.order == AV_CHANNEL_ORDER_UNSPEC) {
        // More channels than any layout has names for: each counts alike.
        auto const channels = static_cast<std::size_t>(in.nb_channels);
        std::vector<double> const shares(channels, 1.0 / in.nb_channels);
        status = swr_set_matrix(made, shares.data(), in.nb_channels);
    }
    status = status >= 0 ? swr_init(made) : status;
    return converter;
}

} // namespace

int CAudioMixer::Push(AVFrame const& frame) {
    int const status = Configure(frame);
    auto** const data = const_cast<std::uint8_t const**>(frame.extended_data);
    if (status < 0 || m_mixdown == nullptr) {
        return status >= 0 ? Convert(data, frame.nb_samples) : status;
    }
    int const mixed = MixDown(data, frame.nb_samples);
    auto const* mono = reinterpret_cast<std::uint8_t const*>(m_vMono.data());
    return mixed > 0 ? Convert(&mono, mixed) : mixed;
}

int CAudioMixer::Flush() {
    return m_resampler != nullptr ? Convert(nullptr, 0) : 0;
}

/// Returns: the samples in `m_vMono`, or an error.
int CAudioMixer::MixDown(std::uint8_t const** data, int count) {
    m_vMono.resize(static_cast<std::size_t>(count));
    auto* out = reinterpret_cast<std::uint8_t*>(m_vMono.data());
    return swr_convert(m_mixdown.get(), &out, count, data, count);
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
    AVChannelLayout in{};
    if (mask == 0 || av_channel_layout_from_mask(&in, mask) < 0) {
        av_channel_layout_default(&in, channels);
    }
    auto format = static_cast<AVSampleFormat>(frame.format);
    m_shape = shape;
    m_mixdown.reset();
    if (status >= 0 && frame.sample_rate != kOutputRate &&
        av_get_bytes_per_sample(format) > kExactBytes) {
        m_mixdown = MakeConverter(in, format, frame.sample_rate, frame.sample_rate, status);
        in = AV_CHANNEL_LAYOUT_MONO;
        format = AV_SAMPLE_FMT_S16;
    }
    if (status >= 0) {
        m_resampler = MakeConverter(in, format, frame.sample_rate, kOutputRate, status);
    }
    return status;
}
