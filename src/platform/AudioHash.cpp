// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioHash.h"

#include "platform/AudioInput.h"
#include "platform/DecodeWatch.h"
#include "platform/TagMarks.h"
#include "platform/TagReaders.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace {

constexpr std::chrono::milliseconds kHashPatience(30'000); // Fixed: as for decoding.
constexpr int kHashBits = 256;

/// Takes bytes and numbers, and makes the hash.
class CHasher {
public:
    CHasher() { (void)av_sha_init(m_sha.get(), kHashBits); }

    void Add(std::uint8_t const* bytes, std::size_t size) {
        av_sha_update(m_sha.get(), bytes, size);
    }

    void Add(std::int64_t number) {
        Add(reinterpret_cast<std::uint8_t const*>(&number), sizeof number);
    }

    CAudioHash Finish() {
        CAudioHash hash{};
        av_sha_final(m_sha.get(), hash.data());
        return hash;
    }

private:
    std::unique_ptr<AVSHA, decltype(&av_free)> m_sha{Had(av_sha_alloc()), &av_free};
};

/// One of the three headers of a Vorbis stream as the library strings them together: a 2, the
/// lengths of the first two, 255 for each 255 of them, then the headers.
std::span<std::uint8_t const> VorbisHeader(std::span<std::uint8_t const> all, bool isFirst) {
    std::size_t place = 1;
    std::size_t lengths[2] = {};
    for (std::size_t& length : lengths) {
        while (place < all.size() && all[place] == 0xFF) {
            length += all[place++];
        }
        length += place < all.size() ? all[place++] : std::size_t{0};
    }
    std::size_t const begin = isFirst ? place : place + lengths[0] + lengths[1];
    std::span<std::uint8_t const> const rest = all.subspan(std::min(begin, all.size()));
    return isFirst ? rest.first(std::min(lengths[0], rest.size())) : rest;
}

void AddCodec(AVCodecParameters const& codec, CHasher& hasher) {
    hasher.Add(codec.codec_id);
    hasher.Add(codec.sample_rate);
    hasher.Add(codec.ch_layout.nb_channels);
    std::span<std::uint8_t const> const extra(codec.extradata,
                                              static_cast<std::size_t>(codec.extradata_size));
    if (codec.codec_id != AV_CODEC_ID_VORBIS) {
        hasher.Add(extra.data(), extra.size());
        return;
    }
    for (bool const isFirst : {true, false}) { // the comments stand between
        std::span<std::uint8_t const> const header = VorbisHeader(extra, isFirst);
        hasher.Add(header.data(), header.size());
    }
}

void AddPacket(AVPacket const& packet, CHasher& hasher) {
    hasher.Add(packet.stream_index);
    hasher.Add(packet.pts);
    hasher.Add(packet.size);
    hasher.Add(packet.data, static_cast<std::size_t>(packet.size));
    std::size_t size = 0;
    std::uint8_t const* const skip =
        av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
    hasher.Add(skip, skip != nullptr ? size : 0);
}

/// Returns: whether there was any sound.
bool AddStreams(AVFormatContext const& format, CHasher& hasher) {
    bool hasSound = false;
    for (AVStream* stream : std::span(format.streams, format.nb_streams)) {
        bool const isSound = stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
        stream->discard = isSound ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
        if (isSound) {
            AddCodec(*stream->codecpar, hasher);
            hasSound = true;
        }
    }
    return hasSound;
}

/// Where tags begin that stand behind the sound: some containers take all up to the file's end for
/// it.
std::int64_t EndOfSound(CSourceFile& source) {
    constexpr std::size_t kSizeOffset = 12;
    constexpr std::size_t kFlagsOffset = 20;
    constexpr std::uint32_t kHasHeader = 0x80000000;
    auto const begins = [](std::vector<std::uint8_t> const& bytes, std::string_view mark) {
        return bytes.size() >= mark.size() && std::equal(mark.begin(), mark.end(), bytes.begin());
    };
    std::int64_t end = source.GetSize();
    end -= begins(ReadPiece(source, end - kOldTagBytes, kOldTagBytes), "TAG") ? kOldTagBytes : 0;
    std::vector<std::uint8_t> const footer =
        ReadPiece(source, end - kApeFooterBytes, kApeFooterBytes);
    if (footer.size() == static_cast<std::size_t>(kApeFooterBytes) && begins(footer, "APETAGEX")) {
        bool const hasHeader = (AV_RL32(&footer[kFlagsOffset]) & kHasHeader) != 0;
        end -= std::int64_t{AV_RL32(&footer[kSizeOffset])} + (hasHeader ? kApeFooterBytes : 0);
    }
    return std::max<std::int64_t>(end, 0);
}

} // namespace

std::optional<CAudioHash> HashAudio(int file) {
    CSourceFile source;
    CDecodeWatch watch(nullptr, kHashPatience);
    CAudioInput input(source, watch);
    CHasher hasher;
    if (source.Adopt(file) != EDecodeProblem::None) {
        return std::nullopt;
    }
    source.EndAt(EndOfSound(source));
    if (input.Open("", false) < 0 || !AddStreams(*input.Get(), hasher)) {
        return std::nullopt;
    }
    CPacketPtr const packet(Had(av_packet_alloc()));
    int status = 0;
    while ((status = av_read_frame(input.Get(), packet.get())) >= 0) {
        AVStream const& stream = *input.Get()->streams[packet->stream_index];
        if (stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO) {
            AddPacket(*packet, hasher);
        }
        watch.NoteYield();
        av_packet_unref(packet.get());
    }
    return status == AVERROR_EOF ? std::optional(hasher.Finish()) : std::nullopt;
}
