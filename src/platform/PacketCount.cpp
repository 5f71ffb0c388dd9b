// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/PacketCount.h"

#include "platform/MpegFrame.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <span>
#include <string_view>

namespace {

// Standard: libavcodec's AV_PKT_DATA_SKIP_SAMPLES: two little-endian counts of 32 bits, to be
// dropped from the packet's start and from its end.
constexpr std::size_t kEndOffset = 4;
constexpr std::size_t kSkipBytes = 8;

/// Frames that a packet of `stream` decodes to, whatever is dropped of them.
std::int64_t FramesOf(AVPacket const& packet, AVStream const& stream) {
    AVCodecParameters const& codec = *stream.codecpar;
    if (codec.codec_id == AV_CODEC_ID_AAC && codec.frame_size > 0) {
        return codec.frame_size; // the container may give the last packet a shorter time
    }
    if (codec.codec_id == AV_CODEC_ID_MP3 &&
        !MpegFrameOf({packet.data, static_cast<std::size_t>(packet.size)})) {
        return 0; // foreign bytes
    }
    return av_rescale_q(packet.duration, stream.time_base, {1, std::max(codec.sample_rate, 1)});
}

/// Adds packets up as a decoder drops what is not music: frames at the start, up to a count that
/// comes with the first packet; packets that an edit leaves out; a packet's padding at its end.
class CPacketSum {
public:
    void Add(AVPacket const& packet, std::int64_t frames) {
        std::size_t size = 0;
        std::uint8_t const* const sideData =
            av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
        bool const hasSideData = size >= kSkipBytes;
        if (hasSideData) {
            m_nToSkip = AV_RL32(sideData);
            m_count.m_nSkippedStart += m_nToSkip;
        }
        std::int64_t const padding = hasSideData ? AV_RL32(sideData + kEndOffset) : 0;
        std::int64_t const skipped = std::min(frames, m_nToSkip);
        m_nToSkip -= skipped;
        std::int64_t const rest = frames - skipped;
        bool const isDropped = (packet.flags & AV_PKT_FLAG_DISCARD) != 0;
        m_count.m_nFrames += isDropped ? 0 : rest - (padding <= rest ? padding : 0);
    }

    [[nodiscard]] CPacketCount GetCount() const { return m_count; }

private:
    CPacketCount m_count;
    std::int64_t m_nToSkip = 0;
};

/// Follows the places of packets, for a container that tells these better than their lengths: a
/// page of an Ogg file says where it ends, the last one leaves the padding out, and what comes
/// before 0 is dropped.
class CPacketSpan {
public:
    void Add(AVPacket const& packet) {
        if (packet.pts != AV_NOPTS_VALUE) {
            m_nStart = std::max<std::int64_t>(std::min(m_nStart, packet.pts), 0);
            m_nEnd = std::max(m_nEnd, packet.pts + packet.duration);
        }
    }

    /// Units: the stream's. 0 when no packet had a place.
    [[nodiscard]] std::int64_t GetLength() const { return std::max(m_nEnd, m_nStart) - m_nStart; }

private:
    std::int64_t m_nStart = std::numeric_limits<std::int64_t>::max();
    std::int64_t m_nEnd = 0;
};

} // namespace

CPacketCount CountPackets(AVFormatContext& format, AVStream const& stream, CDecodeWatch& watch) {
    CPacketSum sum;
    CPacketSpan span;
    CPacketPtr const packet(Had(av_packet_alloc()));
    while (!watch.MustEnd() && av_read_frame(&format, packet.get()) >= 0) {
        if (packet->stream_index == stream.index) {
            watch.NoteYield();
            sum.Add(*packet, FramesOf(*packet, stream));
            span.Add(*packet);
        }
        av_packet_unref(packet.get());
    }
    CPacketCount count = sum.GetCount();
    if (std::string_view(format.iformat->name) == "ogg") {
        AVRational const rate{1, std::max(stream.codecpar->sample_rate, 1)};
        count.m_nFrames = av_rescale_q(span.GetLength(), stream.time_base, rate);
    }
    return count;
}

bool IsPlainPcm(AVCodecParameters const& codec) {
    return std::strncmp(avcodec_get_name(codec.codec_id), "pcm_", 4) == 0 &&
           codec.block_align > 0 &&
           codec.block_align * 8 ==
               av_get_bits_per_sample(codec.codec_id) * codec.ch_layout.nb_channels;
}

std::int64_t CountPcmFrames(AVCodecParameters const& codec, std::int64_t dataStart,
                            std::int64_t fileEnd, std::int64_t promised) {
    std::int64_t const there = std::max<std::int64_t>(fileEnd - dataStart, 0) / codec.block_align;
    return promised > 0 ? std::min(promised, there) : there;
}
