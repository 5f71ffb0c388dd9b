// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Seek
//   Restart        the decoder before the place, by the container's index where that is exact, else
//                  by reading packets without decoding them
//   Fill           decodes (NextFrame), drops what lies before the place and resamples (TakeFrame)
//
// Resampling starts on a frame of the file that falls on a whole frame of the output, so that its
// phase is that of a run from the start.

#include "platform/StereoReader.h"

#include "platform/AudioInput.h"
#include "platform/DecodeWatch.h"
#include "platform/LibAv.h"
#include "platform/SourceFile.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <new>
#include <numeric>
#include <tuple>
#include <utility>
#include <vector>

namespace {

constexpr std::chrono::milliseconds kPatience{2000}; // Fixed: of work without a sample.
constexpr int kPrerollFrames = 16 * 1152; // Fixed: sixteen frames of layer III; its bits reach back
                                          // over ten at the most.

/// True where the times of packets after a jump are reckoned, not known.
bool CountsFromStart(EContainer container) {
    return container == EContainer::MpegAudio || container == EContainer::AdtsAac;
}

} // namespace

struct CStereoReader::CStream {
    explicit CStream(int rate) : m_nRate(rate) {}

    EDecodeProblem Open();
    bool OpenDecoder();
    bool Seek(std::int64_t frame);
    bool Restart(std::int64_t place);
    bool NextFrame();
    bool ReadPacket();
    bool Fill();
    bool MakeResampler();
    bool TakeFrame();
    void Resample(std::uint8_t const** data, int count);
    [[nodiscard]] std::int64_t PlaceOf(AVFrame const& frame) const;

    int m_nRate;
    std::string m_sPath;
    CSourceFile m_source;
    CDecodeWatch m_watch{nullptr, kPatience};
    std::unique_ptr<CAudioInput> m_pInput;
    AVStream* m_pStream = nullptr;
    CCodecPtr m_codec;
    CPacketPtr m_packet{Had(av_packet_alloc())};
    CFramePtr m_frame{Had(av_frame_alloc())};
    CResamplerPtr m_resampler;
    std::tuple<int, int, int> m_shape; // rate, format and channels of what is resampled
    int m_nFileRate = 0;
    std::int64_t m_nFirstTime =
        AV_NOPTS_VALUE;         // of the music's first sample, in units of the stream
    std::int64_t m_nNext = 0;   // place of the next decoded frame, if it doesn't say
    std::int64_t m_nWanted = 0; // places before it are dropped; in frames of the file
    std::int64_t m_nSkipTime = AV_NOPTS_VALUE; // packets that end before it aren't decoded
    std::int64_t m_nDrop = 0;                  // frames of the output to be dropped
    bool m_bDraining = false;
    bool m_bEnded = true;        // nothing is open
    std::vector<float> m_vBlock; // resampled, to be handed out from m_nTaken on
    std::size_t m_nTaken = 0;
};

EDecodeProblem CStereoReader::CStream::Open() {
    m_pInput = std::make_unique<CAudioInput>(m_source, m_watch);
    if (m_pInput->Open(m_sPath, false) < 0 ||
        avformat_find_stream_info(m_pInput->Get(), nullptr) < 0) {
        return EDecodeProblem::BrokenContainer;
    }
    int const best = av_find_best_stream(m_pInput->Get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (best < 0) {
        return EDecodeProblem::NoAudio;
    }
    AVFormatContext* const format = m_pInput->Get();
    for (AVStream* stream : std::span(format->streams, format->nb_streams)) {
        stream->discard = stream->index == best ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    m_pStream = format->streams[best];
    return OpenDecoder() ? EDecodeProblem::None : EDecodeProblem::Undecodable;
}

bool CStereoReader::CStream::OpenDecoder() {
    AVCodec const* decoder = avcodec_find_decoder(m_pStream->codecpar->codec_id);
    if (decoder == nullptr) {
        return false;
    }
    m_codec.reset(Had(avcodec_alloc_context3(decoder)));
    int const status = avcodec_parameters_to_context(m_codec.get(), m_pStream->codecpar);
    m_codec->pkt_timebase = m_pStream->time_base; // without it the decoder trims wrongly
    m_codec->thread_count = 1;
    m_bDraining = false;
    return status >= 0 && avcodec_open2(m_codec.get(), decoder, nullptr) >= 0;
}

/// Sends the next packet that is wanted to the decoder, or tells it that there is none.
bool CStereoReader::CStream::ReadPacket() {
    while (av_read_frame(m_pInput->Get(), m_packet.get()) >= 0) {
        bool const isOurs = m_packet->stream_index == m_pStream->index;
        bool const isEarly = m_nSkipTime != AV_NOPTS_VALUE && m_packet->pts != AV_NOPTS_VALUE &&
                             m_packet->pts + m_packet->duration < m_nSkipTime;
        if (isOurs && !isEarly) {
            (void)avcodec_send_packet(m_codec.get(), m_packet.get()); // a bad one is passed over
            av_packet_unref(m_packet.get());
            return true;
        }
        if (isOurs) {
            m_watch.NoteYield();
        }
        av_packet_unref(m_packet.get());
    }
    (void)avcodec_send_packet(m_codec.get(), nullptr);
    return !std::exchange(m_bDraining, true);
}

/// Decodes into `m_frame`. Returns: false at the end.
bool CStereoReader::CStream::NextFrame() {
    for (;;) {
        int const status = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (status >= 0 && m_frame->nb_samples > 0) {
            m_watch.NoteYield();
            return true;
        }
        if (status < 0 && (status != AVERROR(EAGAIN) || !ReadPacket())) {
            return false;
        }
    }
}

std::int64_t CStereoReader::CStream::PlaceOf(AVFrame const& frame) const {
    if (frame.pts == AV_NOPTS_VALUE || m_nFirstTime == AV_NOPTS_VALUE) {
        return m_nNext;
    }
    return av_rescale_q(frame.pts - m_nFirstTime, m_pStream->time_base, {1, m_nFileRate});
}

bool CStereoReader::CStream::Restart(std::int64_t place) {
    std::int64_t const time =
        m_nFirstTime == AV_NOPTS_VALUE
            ? AV_NOPTS_VALUE
            : m_nFirstTime + av_rescale_q(std::max<std::int64_t>(place - kPrerollFrames, 0),
                                          {1, m_nFileRate}, m_pStream->time_base);
    bool const isExact = !CountsFromStart(m_pInput->GetContainer()) && time != AV_NOPTS_VALUE;
    m_nSkipTime = AV_NOPTS_VALUE;
    m_nNext = 0;
    // The beginning is decoded as at first, with all that a decoder drops there.
    if (place > kPrerollFrames && isExact &&
        av_seek_frame(m_pInput->Get(), m_pStream->index, time, AVSEEK_FLAG_BACKWARD) >= 0) {
        return OpenDecoder();
    }
    if (Open() != EDecodeProblem::None) {
        return false;
    }
    m_nSkipTime = place > kPrerollFrames ? time : AV_NOPTS_VALUE;
    return true;
}

bool CStereoReader::CStream::Seek(std::int64_t frame) {
    std::int64_t const common = std::gcd(m_nFileRate, m_nRate);
    std::int64_t const steps = std::max<std::int64_t>(frame, 0) / (m_nRate / common);
    m_nWanted = steps * (m_nFileRate / common);
    m_nDrop = std::max<std::int64_t>(frame, 0) - steps * (m_nRate / common);
    m_vBlock.clear();
    m_nTaken = 0;
    m_resampler.reset();
    m_bEnded = !Restart(m_nWanted);
    return !m_bEnded;
}

/// Makes a resampler for frames like `m_frame`, unless the one at hand is.
bool CStereoReader::CStream::MakeResampler() {
    auto const shape =
        std::tuple(m_frame->sample_rate, m_frame->format, m_frame->ch_layout.nb_channels);
    if (m_resampler != nullptr && shape == m_shape) {
        return true;
    }
    if (m_resampler != nullptr) {
        Resample(nullptr, 0);
    }
    if (!IsUsableRate(m_frame->sample_rate)) {
        return false;
    }
    m_shape = shape;
    AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
    AVChannelLayout in = m_frame->ch_layout;
    if (in.order == AV_CHANNEL_ORDER_UNSPEC) {
        av_channel_layout_default(&in, m_frame->ch_layout.nb_channels);
    }
    SwrContext* made = nullptr;
    int status = swr_alloc_set_opts2(&made, &stereo, AV_SAMPLE_FMT_FLT, m_nRate, &in,
                                     static_cast<AVSampleFormat>(m_frame->format),
                                     m_frame->sample_rate, 0, nullptr);
    m_resampler.reset(made);
    auto const channels = static_cast<std::size_t>(in.nb_channels);
    if (status >= 0 && (channels == 1 || in.order == AV_CHANNEL_ORDER_UNSPEC)) {
        // One goes to both sides as it is; of more than have names, each counts alike.
        std::vector<double> const shares(2 * channels, 1.0 / in.nb_channels);
        status = swr_set_matrix(made, shares.data(), in.nb_channels);
    }
    return status >= 0 && swr_init(made) >= 0;
}

/// Appends to the block; null hands on what the resampler still holds.
void CStereoReader::CStream::Resample(std::uint8_t const** data, int count) {
    int const room = std::max(swr_get_out_samples(m_resampler.get(), count), 0);
    std::size_t const before = m_vBlock.size();
    m_vBlock.resize(before + 2 * static_cast<std::size_t>(room));
    auto* out = reinterpret_cast<std::uint8_t*>(m_vBlock.data() + before);
    int const done =
        room > 0 ? std::max(swr_convert(m_resampler.get(), &out, room, data, count), 0) : 0;
    m_vBlock.resize(before + 2 * static_cast<std::size_t>(done));
    std::int64_t const dropped = std::min<std::int64_t>(m_nDrop, done);
    m_vBlock.erase(m_vBlock.begin() + static_cast<std::ptrdiff_t>(before),
                   m_vBlock.begin() + static_cast<std::ptrdiff_t>(before) + 2 * dropped);
    m_nDrop -= dropped;
}

/// Resamples what of `m_frame` is wanted. Returns: false when that can't be done.
bool CStereoReader::CStream::TakeFrame() {
    std::int64_t const place = PlaceOf(*m_frame);
    int const count = m_frame->nb_samples;
    m_nNext = place + count;
    // A frame's own place counts until the first that is wanted; from there on all that comes is
    // one piece, as it is for the analysis.
    std::int64_t const early =
        m_resampler == nullptr ? std::clamp<std::int64_t>(m_nWanted - place, 0, count) : 0;
    if (early == count) {
        return true;
    }
    auto const format = static_cast<AVSampleFormat>(m_frame->format);
    bool const isPlanar = av_sample_fmt_is_planar(format) != 0;
    int const channels = m_frame->ch_layout.nb_channels;
    if (channels > AV_NUM_DATA_POINTERS || !MakeResampler()) {
        return false;
    }
    std::int64_t const bytes = early * av_get_bytes_per_sample(format) * (isPlanar ? 1 : channels);
    std::array<std::uint8_t const*, AV_NUM_DATA_POINTERS> data{};
    for (std::size_t i = 0; i < static_cast<std::size_t>(isPlanar ? channels : 1); ++i) {
        data[i] = m_frame->extended_data[i] + bytes;
    }
    Resample(data.data(), count - static_cast<int>(early));
    return true;
}

/// Refills an empty block. Returns: false at the end.
bool CStereoReader::CStream::Fill() {
    m_vBlock.clear();
    m_nTaken = 0;
    while (m_vBlock.empty() && !m_bEnded) {
        bool const hasFrame = NextFrame();
        m_bEnded = !hasFrame || !TakeFrame();
        if (!hasFrame && m_resampler != nullptr) {
            Resample(nullptr, 0);
        }
    }
    return !m_vBlock.empty();
}

CStereoReader::CStereoReader(int rate) : m_pStream(std::make_unique<CStream>(rate)) {
}

CStereoReader::~CStereoReader() = default;

EDecodeProblem CStereoReader::Open(std::string const& path) {
    CStream& stream = *m_pStream;
    stream.m_sPath = path;
    try {
        EDecodeProblem problem = stream.m_source.Open(path);
        problem = problem == EDecodeProblem::None ? stream.Open() : problem;
        if (problem != EDecodeProblem::None) {
            return problem;
        }
        if (!stream.NextFrame() || stream.m_frame->ch_layout.nb_channels > AV_NUM_DATA_POINTERS) {
            return EDecodeProblem::Undecodable;
        }
        if (!IsUsableRate(stream.m_frame->sample_rate)) {
            return EDecodeProblem::BadRate;
        }
        stream.m_nFileRate = stream.m_frame->sample_rate;
        stream.m_nFirstTime = stream.m_frame->pts;
        return stream.Seek(0) ? EDecodeProblem::None : EDecodeProblem::Undecodable;
    } catch (std::bad_alloc const&) {
        return EDecodeProblem::NoMemory;
    }
}

bool CStereoReader::Seek(std::int64_t frame) {
    try {
        return m_pStream->m_nFileRate > 0 && m_pStream->Seek(frame);
    } catch (std::bad_alloc const&) {
        return false;
    }
}

std::size_t CStereoReader::Read(std::span<float> stereo) {
    CStream& stream = *m_pStream;
    std::size_t done = 0;
    try {
        while (done < stereo.size()) {
            if (stream.m_nTaken == stream.m_vBlock.size() && !stream.Fill()) {
                break;
            }
            std::size_t const count =
                std::min(stereo.size() - done, stream.m_vBlock.size() - stream.m_nTaken);
            std::copy_n(stream.m_vBlock.begin() + static_cast<std::ptrdiff_t>(stream.m_nTaken),
                        count, stereo.begin() + static_cast<std::ptrdiff_t>(done));
            stream.m_nTaken += count;
            done += count;
        }
    } catch (std::bad_alloc const&) {
        stream.m_bEnded = true;
    }
    return done / 2;
}
