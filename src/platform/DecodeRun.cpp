// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/DecodeRun.h"

#include "base/EngineRate.h"
#include "platform/FileKind.h"
#include "platform/GaplessNote.h"
#include "platform/MpegCount.h"
#include "platform/PacketCount.h"
#include "platform/ReadKinds.h"
#include "platform/WavHeader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace {

// Standard: "FairPlay" tracks of the MP4 Registration Authority's list, and ISO/IEC 14496-12,
// section 8.12, for encrypted audio.
constexpr std::uint32_t kProtectedTags[] = {MKTAG('d', 'r', 'm', 's'), MKTAG('e', 'n', 'c', 'a')};

/// What the file is by its first bytes behind a tag.
EFileKind KindOf(CSourceFile& source) {
    std::array<std::uint8_t, kFileKindBytes> bytes{};
    auto const readAt = [&](std::int64_t place) {
        std::int64_t const done =
            source.Seek(place) == place ? source.Read(bytes.data(), bytes.size()) : 0;
        return std::span<std::uint8_t const>(
            bytes.data(), static_cast<std::size_t>(std::max<std::int64_t>(done, 0)));
    };
    return FileKindOf(readAt(LeadingTagBytes(readAt(0))));
}

/// Why a file can't be opened, by its first bytes.
EDecodeProblem ProblemOfKind(CSourceFile& source) {
    switch (KindOf(source)) {
    case EFileKind::Read:
        return EDecodeProblem::BrokenContainer;
    case EFileKind::Other:
        return EDecodeProblem::OtherKind;
    case EFileKind::FreeFormat:
        return EDecodeProblem::FreeFormat;
    case EFileKind::Unknown:
        break;
    }
    return EDecodeProblem::NotAudio;
}

/// Length of each stream by the container's header, in units of the stream; 0 when it has none.
std::vector<std::int64_t> PromisedLengths(AVFormatContext const& format, EContainer container,
                                          std::int64_t wavFrames) {
    std::vector<std::int64_t> lengths;
    for (AVStream const* stream : std::span(format.streams, format.nb_streams)) {
        std::int64_t length = std::max<std::int64_t>(stream->duration, 0); // negative: unknown
        if (length == 0 && container == EContainer::Wav) {
            length = wavFrames;
        } else if (length == 0 && container == EContainer::Caf) {
            length = std::max<std::int64_t>(stream->nb_frames, 0);
        }
        lengths.push_back(length);
    }
    return lengths;
}

/// True when the container says that its sound is encrypted: an ASF file as a whole, Matroska track
/// by track.
bool IsEncrypted(AVFormatContext const& format, AVStream const& stream) {
    return av_dict_get(format.metadata, "ASF_Protection_Type", nullptr, 0) != nullptr ||
           av_dict_get(stream.metadata, "enc_key_id", nullptr, 0) != nullptr;
}

/// True for a packet whose bytes were encrypted.
bool IsEncrypted(AVPacket const& packet) {
    std::size_t size = 0;
    return av_packet_get_side_data(&packet, AV_PKT_DATA_ENCRYPTION_INFO, &size) != nullptr;
}

/// True when a length is none: what a program writes that doesn't know it yet and can't go back,
/// and what no header says at all.
bool IsLengthUnknown(EContainer container, AVCodecParameters const& codec, std::int64_t length) {
    // Fixed: below the sizes that go for unknown: 0x7F000000, 0x7FFFF000, 2 GiB and 4 GiB less one
    // or less a header. The end of a song that is so large goes unchecked.
    constexpr std::int64_t kUnknownBytes = 0x7F000000;
    switch (container) {
    case EContainer::MpegAudio:
    case EContainer::Mp4:
    case EContainer::Flac:
    case EContainer::MonkeysAudio:
    case EContainer::TrueAudio:
    case EContainer::WavPack:
        return false;
    case EContainer::Wav:
    case EContainer::Aiff:
    case EContainer::Caf:
    case EContainer::Wave64:
    case EContainer::Au:
        return length >= kUnknownBytes / std::max(codec.block_align, 1);
    case EContainer::Asf: // these two tell the length of the longest stream, be it a film's
    case EContainer::Matroska:
    case EContainer::AdtsAac:
    case EContainer::Ogg:
    case EContainer::Unknown:
        break;
    }
    return true;
}

/// What a container that has frames skipped goes by.
EStartNote StartNoteOf(EContainer container, std::int64_t skipped) {
    return skipped <= 0                         ? EStartNote::None
           : container == EContainer::MpegAudio ? EStartNote::EncoderTag
           : container == EContainer::Mp4       ? EStartNote::TrackTable
                                                : EStartNote::StreamHeader;
}

/// True where a PCM stream's data lies in one piece from where the header ends.
bool IsBareData(EContainer container) {
    return container == EContainer::Wav || container == EContainer::Aiff ||
           container == EContainer::Caf;
}

} // namespace

bool IsFreeFormat(CSourceFile& source) {
    return KindOf(source) == EFileKind::FreeFormat;
}

void CDecodeRun::Tell(CDecodeReport& report) const {
    m_damage.Tell(report);
    report.m_container = m_container;
    report.m_nFileRate = static_cast<std::uint32_t>(m_nFileRate);
    report.m_nChannels = m_nChannels;
    report.m_nSkippedFrames = m_nSkippedStart;
    report.m_startNote = StartNoteOf(m_container, m_nSkippedStart);
    // A decoder that would not open leaves its context behind, without a codec.
    if (m_codec != nullptr && m_codec->codec != nullptr) {
        report.m_sCodec = avcodec_get_name(m_codec->codec_id);
        report.m_sDecoder = m_codec->codec->name;
        double const unit = av_q2d(m_codec->pkt_timebase);
        report.m_dPromisedSeconds = unit * static_cast<double>(m_nPromised);
        // Some containers don't say how long a packet is.
        double const decoded = m_nFileRate > 0 ? static_cast<double>(m_nFrames) / m_nFileRate : 0.0;
        report.m_dHeardSeconds = std::max(unit * static_cast<double>(m_nHeard), decoded);
    }
}

EDecodeProblem CDecodeRun::Open() {
    std::int64_t const wavFrames = ClaimedWavFrames(m_source);
    if (m_input.Open(m_sPath, false) < 0) {
        return ProblemOfKind(m_source);
    }
    m_container = m_input.GetContainer();
    AVFormatContext* const format = m_input.Get();
    m_nDataStart = avio_tell(format->pb);
    // Before the library fills in what it reckons.
    std::vector<std::int64_t> const promises = PromisedLengths(*format, m_container, wavFrames);
    if (avformat_find_stream_info(format, nullptr) < 0) {
        return EDecodeProblem::BrokenContainer;
    }
    AVCodec const* decoder = nullptr;
    int const best = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (best < 0) {
        return best == AVERROR_DECODER_NOT_FOUND ? EDecodeProblem::UnknownCodec
                                                 : EDecodeProblem::NoAudio;
    }
    for (AVStream* stream : std::span(format->streams, format->nb_streams)) {
        stream->discard = stream->index == best ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    m_pStream = format->streams[best];
    auto const index = static_cast<std::size_t>(best);
    m_nPromised = index < promises.size() ? promises[index] : 0;
    if (IsLengthUnknown(m_container, *m_pStream->codecpar, m_nPromised)) {
        m_nPromised = 0;
    }
    return OpenDecoder(decoder);
}

EDecodeProblem CDecodeRun::OpenDecoder(AVCodec const* decoder) {
    if (std::ranges::find(kProtectedTags, m_pStream->codecpar->codec_tag) !=
            std::end(kProtectedTags) ||
        IsEncrypted(*m_input.Get(), *m_pStream)) {
        return EDecodeProblem::Protected;
    }
    if (!IsReadDecoder(decoder->name)) {
        return EDecodeProblem::UnknownCodec;
    }
    m_codec.reset(Had(avcodec_alloc_context3(decoder)));
    int status = avcodec_parameters_to_context(m_codec.get(), m_pStream->codecpar);
    m_codec->pkt_timebase = m_pStream->time_base; // without it the decoder trims wrongly
    m_codec->thread_count = 1;
    m_damage.SetCodec(decoder->name);
    status = status >= 0 ? avcodec_open2(m_codec.get(), decoder, nullptr) : status;
    return status < 0 ? EDecodeProblem::Undecodable : EDecodeProblem::None;
}

/// Decodes one packet, or what the decoder still holds when it is null. A packet that can't be
/// decoded is only counted. Returns: 0 or more, or an error that ends the run.
int CDecodeRun::Decode(AVPacket* packet) {
    int status = avcodec_send_packet(m_codec.get(), packet);
    while (status >= 0) {
        status = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (status < 0 || m_frame->nb_samples <= 0) {
            continue;
        }
        m_watch.NoteYield();
        m_nFileRate = m_nFileRate == 0 ? m_frame->sample_rate : m_nFileRate;
        m_nChannels = m_nChannels == 0 ? m_frame->ch_layout.nb_channels : m_nChannels;
        m_nFrames += m_frame->nb_samples;
        if (int const mixed = MustMix() ? m_mixer.Push(*m_frame) : 0; mixed < 0) {
            return mixed;
        }
    }
    if (packet != nullptr) {
        m_damage.Note({packet->data, static_cast<std::size_t>(packet->size)},
                      status == AVERROR(EAGAIN) || status == AVERROR_EOF);
    }
    return 0;
}

bool CDecodeRun::MustMix() const {
    return m_nWanted > 0 && (m_nFileRate >= int{kEngineRateHz} || m_queue.GetTotal() < m_nWanted);
}

EDecodeProblem CDecodeRun::Step() {
    int status = 0;
    if (m_watch.MustEnd() || av_read_frame(m_input.Get(), m_packet.get()) < 0) {
        status = Decode(nullptr);
        status = status >= 0 && MustMix() ? m_mixer.Flush() : status;
        m_bEnded = true;
    } else if (m_packet->stream_index == m_pStream->index) {
        if (IsEncrypted(*m_packet)) {
            return EDecodeProblem::Protected;
        }
        std::size_t size = 0;
        std::uint8_t const* const skip =
            av_packet_get_side_data(m_packet.get(), AV_PKT_DATA_SKIP_SAMPLES, &size);
        m_nHeard += m_packet->duration;
        m_nSkippedStart += size >= sizeof(std::uint32_t) ? AV_RL32(skip) : 0;
        status = Decode(m_packet.get());
    }
    av_packet_unref(m_packet.get());
    return status == AVERROR(ERANGE) ? EDecodeProblem::BadRate
           : status < 0              ? EDecodeProblem::Unmixable
                                     : EDecodeProblem::None;
}

CSongLength CDecodeRun::Estimate() {
    AVCodecParameters const& codec = *m_pStream->codecpar;
    if (IsPlainPcm(codec) && IsBareData(m_container)) {
        return {.m_nFrames = CountPcmFrames(codec, m_nDataStart, m_source.GetSize(), m_nPromised)};
    }
    if (m_container == EContainer::MpegAudio && codec.codec_id == AV_CODEC_ID_MP3) {
        if (auto const frames = CountMpegSamples(m_source, m_nDataStart, m_watch)) {
            return {.m_nFrames = *frames};
        }
    }
    m_bUsedUp = true;
    auto const [frames, skippedStart] = CountPackets(*m_input.Get(), *m_pStream, m_watch);
    return LengthOf(frames, skippedStart, codec.sample_rate);
}

CSongLength CDecodeRun::GetLength() {
    return LengthOf(m_nFrames, m_nSkippedStart, m_nFileRate);
}

CSongLength CDecodeRun::LengthOf(std::int64_t frames, std::int64_t skippedStart, int rate) {
    CSongLength length{.m_nFrames = CountWithoutTail(frames, skippedStart, rate)};
    if (length.m_nFrames < frames) {
        // What a tail became after resampling goes with it.
        length.m_nMusicEnd =
            av_rescale_rnd(length.m_nFrames, int{kEngineRateHz}, rate, AV_ROUND_UP);
    }
    return length;
}

/// Length of the track in frames by the container's table, edits left aside; 0 when unknown.
std::int64_t CDecodeRun::TrackLength(int rate) {
    auto const index = static_cast<unsigned>(m_pStream->index);
    m_input.Close(); // the table of a long file takes megabytes: one at a time
    CAudioInput table(m_source, m_watch);
    if (table.Open(m_sPath, true) < 0 || index >= table.Get()->nb_streams) {
        return 0;
    }
    AVStream const& stream = *table.Get()->streams[index];
    return std::max(av_rescale_q(stream.duration, stream.time_base, {1, rate}), std::int64_t{0});
}

/// Frames without the tail that fills up the last AAC packet of an MP4 file: libav drops the
/// padding at the start only.
std::int64_t CDecodeRun::CountWithoutTail(std::int64_t frames, std::int64_t skippedStart,
                                          int rate) {
    if (frames <= 0 || rate <= 0 || m_container != EContainer::Mp4 ||
        m_codec->codec_id != AV_CODEC_ID_AAC) {
        return frames;
    }
    AVDictionaryEntry const* const note =
        av_dict_get(m_input.Get()->metadata, "iTunSMPB", nullptr, 0);
    if (auto const gapless = ParseGaplessNote(note != nullptr ? note->value : "")) {
        return CountWithoutPadding(frames, skippedStart, *gapless);
    }
    if (!m_nTrackLength) {
        m_nTrackLength = TrackLength(rate);
    }
    std::int64_t const length = *m_nTrackLength - skippedStart;
    return length > 0 ? std::min(frames, length) : frames;
}
