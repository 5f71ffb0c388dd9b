// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

// The decoding library, for the sources that work with it; no header of the room that others
// include includes this one.

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/intreadwrite.h>
#include <libavutil/mem.h>
#include <libavutil/sha.h>
#include <libswresample/swresample.h>
}

#include <memory>
#include <new>

template <auto Free>
struct CFreeAv {
    template <typename T>
    void operator()(T* object) const noexcept {
        Free(&object);
    }
};

inline void FreeIo(AVIOContext** io) {
    av_freep(&(*io)->buffer);
    avio_context_free(io);
}

using CIoPtr = std::unique_ptr<AVIOContext, CFreeAv<FreeIo>>;
using CFormatPtr = std::unique_ptr<AVFormatContext, CFreeAv<avformat_close_input>>;
using CCodecPtr = std::unique_ptr<AVCodecContext, CFreeAv<avcodec_free_context>>;
using CPacketPtr = std::unique_ptr<AVPacket, CFreeAv<av_packet_free>>;
using CFramePtr = std::unique_ptr<AVFrame, CFreeAv<av_frame_free>>;
using CResamplerPtr = std::unique_ptr<SwrContext, CFreeAv<swr_free>>;

/// True for sample rates in Hz that don't blow up the resampling, as a hostile one would.
inline bool IsUsableRate(int rate) {
    constexpr int kSlowestRate = 1000;      // Fixed: no
    constexpr int kFastestRate = 1'000'000; // music has these.
    return rate >= kSlowestRate && rate <= kFastestRate;
}

/// `object`, unless there was no memory for it.
template <typename T>
T* Had(T* object) {
    if (object == nullptr) {
        throw std::bad_alloc();
    }
    return object;
}
