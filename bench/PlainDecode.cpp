// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The least that any analysis of a file has to do: one process that opens it, decodes its audio,
// mixes it down to mono at 44100 Hz and throws the samples away, with the libav calls of
// `platform/AudioDecoder.cpp`. What Tactus takes beyond this is its own.
//
//     plain_decode FILE...

#include "base/EngineRate.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace {

/// Everything that one file takes.
struct CPlainDecode {
    AVFormatContext* m_pFormat = nullptr;
    AVCodecContext* m_pCodec = nullptr;
    AVPacket* m_pPacket = av_packet_alloc();
    AVFrame* m_pFrame = av_frame_alloc();
    SwrContext* m_pResampler = nullptr;
    std::vector<std::int16_t> m_vBlock;
    int m_nStream = -1;
    std::int64_t m_nFrames = 0;
    std::int64_t m_nSamples = 0;

    CPlainDecode() = default;
    CPlainDecode(CPlainDecode const&) = delete;
    CPlainDecode& operator=(CPlainDecode const&) = delete;
    ~CPlainDecode() {
        swr_free(&m_pResampler);
        av_frame_free(&m_pFrame);
        av_packet_free(&m_pPacket);
        avcodec_free_context(&m_pCodec);
        avformat_close_input(&m_pFormat);
    }

    bool Open(std::string const& path);
    bool OpenResampler();
    void Convert(std::uint8_t const** data, int count);
    void Decode(AVPacket const* packet);
    void Run();
};

bool CPlainDecode::Open(std::string const& path) {
    std::string const url = "file:" + path;
    if (avformat_open_input(&m_pFormat, url.c_str(), nullptr, nullptr) < 0 ||
        avformat_find_stream_info(m_pFormat, nullptr) < 0) {
        return false;
    }
    AVCodec const* decoder = nullptr;
    m_nStream = av_find_best_stream(m_pFormat, AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (m_nStream < 0) {
        return false;
    }
    AVStream const* const stream = m_pFormat->streams[m_nStream];
    m_pCodec = avcodec_alloc_context3(decoder);
    if (avcodec_parameters_to_context(m_pCodec, stream->codecpar) < 0) {
        return false;
    }
    m_pCodec->pkt_timebase = stream->time_base;
    m_pCodec->thread_count = 1;
    return avcodec_open2(m_pCodec, decoder, nullptr) >= 0;
}

bool CPlainDecode::OpenResampler() {
    AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
    AVChannelLayout in{};
    av_channel_layout_default(&in, m_pFrame->ch_layout.nb_channels);
    return swr_alloc_set_opts2(&m_pResampler, &mono, AV_SAMPLE_FMT_S16, int{kEngineRateHz}, &in,
                               static_cast<AVSampleFormat>(m_pFrame->format), m_pFrame->sample_rate,
                               0, nullptr) >= 0 &&
           swr_init(m_pResampler) >= 0;
}

void CPlainDecode::Convert(std::uint8_t const** data, int count) {
    int const room = swr_get_out_samples(m_pResampler, count);
    m_vBlock.resize(static_cast<std::size_t>(room) + 1);
    auto* out = reinterpret_cast<std::uint8_t*>(m_vBlock.data());
    m_nSamples += swr_convert(m_pResampler, &out, room, data, count);
}

void CPlainDecode::Decode(AVPacket const* packet) {
    if (avcodec_send_packet(m_pCodec, packet) < 0) {
        return;
    }
    while (avcodec_receive_frame(m_pCodec, m_pFrame) >= 0) {
        if (m_pResampler == nullptr && !OpenResampler()) {
            return;
        }
        m_nFrames += m_pFrame->nb_samples;
        Convert(const_cast<std::uint8_t const**>(m_pFrame->extended_data), m_pFrame->nb_samples);
    }
}

void CPlainDecode::Run() {
    while (av_read_frame(m_pFormat, m_pPacket) >= 0) {
        if (m_pPacket->stream_index == m_nStream) {
            Decode(m_pPacket);
        }
        av_packet_unref(m_pPacket);
    }
    Decode(nullptr);
    if (m_pResampler != nullptr) {
        Convert(nullptr, 0);
    }
}

} // namespace

int main(int argc, char** argv) {
    av_log_set_level(AV_LOG_QUIET);
    for (int i = 1; i < argc; ++i) {
        CPlainDecode decode;
        if (!decode.Open(argv[i])) {
            (void)std::fprintf(stderr, "plain_decode: %s: can't be decoded\n", argv[i]);
            return 1;
        }
        decode.Run();
        (void)std::printf("%s: %lld frames, %lld samples\n", argv[i],
                          static_cast<long long>(decode.m_nFrames),
                          static_cast<long long>(decode.m_nSamples));
    }
    return 0;
}
