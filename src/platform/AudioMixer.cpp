// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioMixer.h"

#include "base/EngineRate.h"
#include "platform/Mixdown.h"

#include <algorithm>
#include <cstring>
#include <numbers>

namespace {

// Derived: of 16-bit samples. These are mixed and resampled in whole numbers; wider ones would be
// in floats, whose sums come out otherwise with other vector units. So they are mixed down and
// rounded to 16 bits here.
constexpr int kExactBytes = 2;

constexpr AVChannelLayout kMono = AV_CHANNEL_LAYOUT_MONO;
constexpr std::size_t kMostNamed = 64; // Derived: bits of a layout's mask.

/// What each channel of `in` has in mono: the decoding library's own shares.
std::vector<double> SharesOf(AVChannelLayout const& in, int& status) {
    auto const channels = static_cast<std::size_t>(in.nb_channels);
    if (in.order == AV_CHANNEL_ORDER_UNSPEC) {
        // More channels than any layout has names for: each counts alike.
        return std::vector<double>(channels, 1.0 / in.nb_channels);
    }
    constexpr double kAside = std::numbers::sqrt2 / 2.0; // Standard: ITU-R BS.775, -3 dB.
    // The library scales all the rows and columns that there may be.
    std::vector<double> shares(kMostNamed * kMostNamed);
    status = swr_build_matrix2(&in, &kMono, kAside, kAside, 0.0, 1.0, 1.0, shares.data(),
                               kMostNamed, AV_MATRIX_ENCODING_NONE, nullptr);
    shares.resize(channels);
    return shares;
}

/// A converter; null, or of no use, with an error in `status`.
CResamplerPtr MakeConverter(AVChannelLayout in, AVSampleFormat format, int rate,
                            AVChannelLayout out, AVSampleFormat outFormat, int outRate,
                            int& status) {
    SwrContext* made = nullptr;
    status = swr_alloc_set_opts2(&made, &out, outFormat, outRate, &in, format, rate, 0, nullptr);
    CResamplerPtr converter(made);
    if (status >= 0 && in.order == AV_CHANNEL_ORDER_UNSPEC && out.nb_channels == 1) {
        std::vector<double> const shares = SharesOf(in, status);
        status = swr_set_matrix(made, shares.data(), in.nb_channels);
    }
    status = status >= 0 ? swr_init(made) : status;
    return converter;
}

} // namespace

int CAudioMixer::Push(AVFrame const& frame) {
    int const status = Configure(frame);
    auto** const data = const_cast<std::uint8_t const**>(frame.extended_data);
    if (status < 0 || m_eMixed == AV_SAMPLE_FMT_NONE) {
        return status >= 0 ? Convert(data, frame.nb_samples) : status;
    }
    int const mixed = MixDown(data, frame.nb_samples);
    if (mixed > 0 && m_resampler == nullptr) {
        m_queue.Append({m_vMono.data(), static_cast<std::size_t>(mixed)});
        return mixed;
    }
    auto const* mono = reinterpret_cast<std::uint8_t const*>(m_vMono.data());
    return mixed > 0 ? Convert(&mono, mixed) : mixed;
}

int CAudioMixer::Flush() {
    return m_resampler != nullptr ? Convert(nullptr, 0) : 0;
}

/// Returns: the samples in `m_vMono`, or an error.
int CAudioMixer::MixDown(std::uint8_t const** data, int count) {
    auto const samples = static_cast<std::size_t>(count);
    m_vMono.resize(samples);
    std::vector<std::uint8_t*> planes(m_vShares.size());
    if (m_widened != nullptr) {
        std::size_t const bytes =
            samples * static_cast<std::size_t>(av_get_bytes_per_sample(m_eMixed));
        m_vPlanes.resize(bytes * planes.size());
        for (std::size_t c = 0; c < planes.size(); ++c) {
            planes[c] = m_vPlanes.data() + c * bytes;
        }
        count = swr_convert(m_widened.get(), planes.data(), count, data, count);
        data = const_cast<std::uint8_t const**>(planes.data());
    }
    if (count > 0 && m_eMixed == AV_SAMPLE_FMT_S16P) {
        std::memcpy(m_vMono.data(), data[0], samples * sizeof(std::int16_t));
    } else if (count > 0 && m_eMixed == AV_SAMPLE_FMT_FLTP) {
        MixPlanes<float>(data, samples);
    } else if (count > 0) {
        MixPlanes<double>(data, samples);
    }
    return count;
}

template <typename T>
void CAudioMixer::MixPlanes(std::uint8_t const* const* planes, std::size_t count) {
    std::vector<T const*> channels(m_vShares.size());
    for (std::size_t c = 0; c < channels.size(); ++c) {
        channels[c] = reinterpret_cast<T const*>(planes[c]);
    }
    std::vector<T> const shares(m_vShares.begin(), m_vShares.end());
    std::vector<T> sum;
    MixToMono<T>(channels.data(), shares, count, sum, m_vMono.data());
}

/// Decides how frames wider than 16 bits become mono.
void CAudioMixer::ChooseMixdown(AVChannelLayout const& in, AVSampleFormat format, int rate,
                                int& status) {
    bool const isWhole = av_get_packed_sample_fmt(format) == AV_SAMPLE_FMT_S32 ||
                         av_get_packed_sample_fmt(format) == AV_SAMPLE_FMT_S64;
    m_eMixed = av_get_bytes_per_sample(format) > 4 ? AV_SAMPLE_FMT_DBLP : AV_SAMPLE_FMT_FLTP;
    if (isWhole && in.nb_channels == 1) {
        m_eMixed = AV_SAMPLE_FMT_S16P; // the upper bits, as they are
    }
    m_vShares = SharesOf(in, status);
    if (status >= 0 && format != m_eMixed) {
        m_widened = MakeConverter(in, format, rate, in, m_eMixed, rate, status);
    }
}

int CAudioMixer::Convert(std::uint8_t const** data, int count) {
    int const room = swr_get_out_samples(m_resampler.get(), count);
    m_vBlock.resize(static_cast<std::size_t>(std::max(room, 0)));
    auto* out = reinterpret_cast<std::uint8_t*>(m_vBlock.data());
    int const done = room > 0 ? swr_convert(m_resampler.get(), &out, room, data, count) : room;
    if (done > 0) {
        m_queue.Append({m_vBlock.data(), static_cast<std::size_t>(done)});
    }
    return done;
}

/// Gets ready for frames like `frame`, unless it is. What comes out of the mixing at 44100 Hz needs
/// no resampler.
int CAudioMixer::Configure(AVFrame const& frame) {
    auto const& [order, channels, speakers, opaque] = frame.ch_layout;
    std::uint64_t const mask = order == AV_CHANNEL_ORDER_NATIVE ? speakers.mask : 0;
    auto const shape = std::tuple(frame.sample_rate, frame.format, channels, mask);
    if (m_shape == shape) {
        return 0;
    }
    if (!IsUsableRate(frame.sample_rate)) {
        return AVERROR(ERANGE);
    }
    int status = Flush();
    AVChannelLayout in{};
    if (mask == 0 || av_channel_layout_from_mask(&in, mask) < 0) {
        av_channel_layout_default(&in, channels);
    }
    auto format = static_cast<AVSampleFormat>(frame.format);
    m_eMixed = AV_SAMPLE_FMT_NONE;
    m_widened.reset();
    m_resampler.reset();
    if (status >= 0 && av_get_bytes_per_sample(format) > kExactBytes) {
        ChooseMixdown(in, format, frame.sample_rate, status);
        in = kMono;
        format = AV_SAMPLE_FMT_S16;
    }
    bool const isReady = m_eMixed != AV_SAMPLE_FMT_NONE && frame.sample_rate == int{kEngineRateHz};
    if (status >= 0 && !isReady) {
        m_resampler = MakeConverter(in, format, frame.sample_rate, kMono, AV_SAMPLE_FMT_S16,
                                    int{kEngineRateHz}, status);
    }
    m_shape = status >= 0 ? shape : decltype(m_shape)();
    return status;
}
