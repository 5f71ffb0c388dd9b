// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps: open the file and find its best audio stream; decode its packets, count the frames,
// mix them down and resample them into the buffer as they come; find the length from the count and
// the container's word on the tail; cut or fill the buffer to it; look whether the file is still
// the same. Below 44100 Hz only a start is needed, as long as the count says, hence a second pass.

#include "platform/AudioDecoder.h"

#include "platform/DecodeDamage.h"
#include "platform/DecodeWatch.h"
#include "platform/GaplessNote.h"
#include "platform/LastMessage.h"
#include "platform/SourceFile.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/intreadwrite.h>
#include <libavutil/log.h>
#include <libavutil/mem.h>
#include <libswresample/swresample.h>
}

#include <algorithm>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <span>
#include <string_view>
#include <tuple>
#include <vector>

namespace {

constexpr int kOutputRate = 44100; // Fixed: rate of every analysis, samples per second.
constexpr char kFormats[] = "wav,w64,aiff,mp3,mov,caf,aac,flac,ogg"; // Fixed: what we open.
constexpr char kProtocols[] = "file";                                // Fixed: no network, no lists.
constexpr std::size_t kLargestAllocation = std::size_t{256} << 20U;  // Fixed: one block of libav.
constexpr int kSlowestRate = 1000;                                   // Fixed: a hostile rate must
constexpr int kFastestRate = 1'000'000;                              // not blow up the resampling.
constexpr int kReadBlock = 65536;                                    // Tuned: bench/whole_file.sh.

template <auto Free>
struct CFree {
    template <typename T>
    void operator()(T* object) const noexcept {
        Free(&object);
    }
};

void FreeIo(AVIOContext** io) {
    av_freep(&(*io)->buffer);
    avio_context_free(io);
}

using CIoPtr = std::unique_ptr<AVIOContext, CFree<FreeIo>>;
using CFormatPtr = std::unique_ptr<AVFormatContext, CFree<avformat_close_input>>;
using CCodecPtr = std::unique_ptr<AVCodecContext, CFree<avcodec_free_context>>;
using CPacketPtr = std::unique_ptr<AVPacket, CFree<av_packet_free>>;
using CFramePtr = std::unique_ptr<AVFrame, CFree<av_frame_free>>;
using CResamplerPtr = std::unique_ptr<SwrContext, CFree<swr_free>>;

/// `object`, unless there was no memory for it.
template <typename T>
T* Had(T* object) {
    if (object == nullptr) {
        throw std::bad_alloc();
    }
    return object;
}

void SetUpOnce() {
    static std::once_flag once;
    std::call_once(once, [] {
        av_log_set_callback([](void*, int level, char const* format, va_list arguments) {
            if (level <= AV_LOG_ERROR) {
                KeepMessage(format, arguments);
            }
        });
        av_log_set_level(AV_LOG_ERROR);
        av_max_alloc(kLargestAllocation);
    });
}

/// The file as libav reads it. Nothing else can be opened through it.
class CInput {
public:
    CInput(CSourceFile& source, CDecodeWatch& watch) : m_source(source), m_watch(watch) {}

    /// Reads the container's header. `ignoreEdits`: as if an MP4 file had no edit list.
    int Open(std::string const& path, bool ignoreEdits) {
        auto* const block = static_cast<unsigned char*>(Had(av_malloc(kReadBlock)));
        m_io.reset(avio_alloc_context(block, kReadBlock, 0, this, Read, nullptr, Seek));
        AVFormatContext* format = Had(avformat_alloc_context());
        format->pb = Had(m_io.get());
        format->io_open = [](AVFormatContext*, AVIOContext**, char const*, int, AVDictionary**) {
            return AVERROR(EPERM);
        };
        format->interrupt_callback = {
            [](void* watch) { return static_cast<CDecodeWatch*>(watch)->MustEnd() ? 1 : 0; },
            &m_watch};
        AVDictionary* options = nullptr;
        av_dict_set(&options, "format_whitelist", kFormats, 0);
        av_dict_set(&options, "protocol_whitelist", kProtocols, 0);
        av_dict_set(&options, "ignore_editlist", ignoreEdits ? "1" : "0", 0);
        // The name serves the guess at the format; with its prefix no part of it is a protocol.
        std::string const name = "file:" + path;
        (void)m_source.Seek(0);
        int const status = avformat_open_input(&format, name.c_str(), nullptr, &options);
        av_dict_free(&options);
        m_format.reset(format);
        return status;
    }

    void Close() { m_format.reset(); }
    [[nodiscard]] AVFormatContext* Get() const { return m_format.get(); }

private:
    static int Read(void* self, std::uint8_t* buffer, int size) {
        auto& [source, watch, io, format] = *static_cast<CInput*>(self);
        if (watch.MustEnd()) {
            return AVERROR_EXIT;
        }
        auto const done = static_cast<int>(source.Read(buffer, static_cast<std::size_t>(size)));
        watch.NoteRead(done);
        return done < 0 ? AVERROR(EIO) : done == 0 ? AVERROR_EOF : done;
    }

    static std::int64_t Seek(void* self, std::int64_t offset, int whence) {
        CSourceFile& source = static_cast<CInput*>(self)->m_source;
        return whence == AVSEEK_SIZE ? source.GetSize() : source.Seek(offset);
    }

    CSourceFile& m_source;
    CDecodeWatch& m_watch;
    CIoPtr m_io;
    CFormatPtr m_format;
};

/// Mixes frames down to mono, resamples them to 44100 Hz and appends them to a buffer.
/// Returns: 0 or more, or an error of libav's.
class CMixer {
public:
    explicit CMixer(CSampleBuffer& buffer) : m_buffer(buffer) {}

    int Push(AVFrame const& frame) {
        int const status = Configure(frame);
        auto** const data = const_cast<std::uint8_t const**>(frame.extended_data);
        return status >= 0 ? Convert(data, frame.nb_samples) : status;
    }

    /// Hands on what the resampler still holds.
    int Flush() { return m_resampler != nullptr ? Convert(nullptr, 0) : 0; }

private:
    int Configure(AVFrame const& frame);
    int Convert(std::uint8_t const** data, int count) {
        int const room = swr_get_out_samples(m_resampler.get(), count);
        m_vBlock.resize(static_cast<std::size_t>(std::max(room, 0)));
        auto* out = reinterpret_cast<std::uint8_t*>(m_vBlock.data());
        int const done = room > 0 ? swr_convert(m_resampler.get(), &out, room, data, count) : room;
        if (done > 0 && !m_buffer.Append({m_vBlock.data(), static_cast<std::size_t>(done)})) {
            throw std::bad_alloc();
        }
        return done;
    }

    CSampleBuffer& m_buffer;
    CResamplerPtr m_resampler;
    std::vector<std::int16_t> m_vBlock;
    std::tuple<int, int, int, std::uint64_t> m_shape; // rate, format, channels, speakers
};

/// Makes a resampler for frames like `frame`, unless the one at hand is.
int CMixer::Configure(AVFrame const& frame) {
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

/// One pass over the file. Texts returned are reasons for giving up, empty when there is none.
class CDecodeRun {
public:
    CDecodeRun(std::string path, CSourceFile& source, CDecodeWatch& watch)
        : m_sPath(std::move(path)), m_source(source), m_watch(watch), m_input(source, watch) {}

    /// `wanted`: samples after which to stop; 0 for all, where a slow file is only counted.
    std::string Run(std::int64_t wanted) {
        m_nWanted = wanted;
        std::string reason = Open();
        return reason.empty() ? ReadAll() : reason;
    }

    [[nodiscard]] bool IsSlow() const { return m_nFileRate < kOutputRate; }
    [[nodiscard]] CDecodeDamage const& GetDamage() const { return m_damage; }

    /// Frames without the tail that fills up the last AAC packet of an MP4 file: libav drops the
    /// padding at the start only. Nothing can be read any more afterwards.
    [[nodiscard]] std::int64_t CountWithoutTail();

    /// Hands the samples over for a file of `frames` frames.
    std::string Finish(std::int64_t frames, CDecodedAudio& audio) {
        audio.m_nFileRate = static_cast<std::uint32_t>(m_nFileRate);
        // What a tail became after resampling goes with it.
        std::int64_t const musicEnd =
            frames < m_nFrames ? av_rescale_rnd(frames, kOutputRate, m_nFileRate, AV_ROUND_UP)
                               : m_buffer.GetCount();
        return TakeSamples(m_buffer, frames, musicEnd, audio);
    }

private:
    std::string Open();
    std::string OpenDecoder(AVCodec const* decoder);
    std::string ReadAll();
    int Decode(AVPacket* packet);
    [[nodiscard]] std::int64_t TrackLength();
    [[nodiscard]] bool IsFull() const { return m_nWanted > 0 && m_buffer.GetCount() >= m_nWanted; }

    std::string m_sPath;
    CSourceFile& m_source;
    CDecodeWatch& m_watch;
    CInput m_input;
    AVStream* m_pStream = nullptr;
    CCodecPtr m_codec;
    CPacketPtr m_packet{Had(av_packet_alloc())};
    CFramePtr m_frame{Had(av_frame_alloc())};
    CSampleBuffer m_buffer;
    CMixer m_mixer{m_buffer};
    CDecodeDamage m_damage;
    std::int64_t m_nWanted = 0;
    std::int64_t m_nFrames = 0;
    std::int64_t m_nSkippedStart = 0; // frames that the decoder drops at the start
    int m_nFileRate = 0;
};

std::string CDecodeRun::Open() {
    if (m_input.Open(m_sPath, false) < 0 || avformat_find_stream_info(m_input.Get(), nullptr) < 0) {
        return WithMessage("is not an audio file that can be read");
    }
    AVCodec const* decoder = nullptr;
    AVFormatContext* const format = m_input.Get();
    int const best = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (best < 0) {
        return best == AVERROR_DECODER_NOT_FOUND ? "holds audio of a kind that can't be decoded"
                                                 : WithMessage("holds no audio");
    }
    for (AVStream* stream : std::span(format->streams, format->nb_streams)) {
        stream->discard = stream->index == best ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    m_pStream = format->streams[best];
    return OpenDecoder(decoder);
}

std::string CDecodeRun::OpenDecoder(AVCodec const* decoder) {
    m_codec.reset(Had(avcodec_alloc_context3(decoder)));
    int status = avcodec_parameters_to_context(m_codec.get(), m_pStream->codecpar);
    m_codec->pkt_timebase = m_pStream->time_base; // without it the decoder trims wrongly
    m_codec->thread_count = 1;
    m_damage.SetCodec(decoder->name);
    status = status >= 0 ? avcodec_open2(m_codec.get(), decoder, nullptr) : status;
    return status < 0 ? WithMessage("holds audio that can't be decoded") : std::string();
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
        m_nFrames += m_frame->nb_samples;
        if (int const mixed = m_nWanted > 0 || !IsSlow() ? m_mixer.Push(*m_frame) : 0; mixed < 0) {
            return mixed;
        }
    }
    if (packet != nullptr) {
        m_damage.Note({packet->data, static_cast<std::size_t>(packet->size)},
                      status == AVERROR(EAGAIN) || status == AVERROR_EOF);
    }
    return 0;
}

std::string CDecodeRun::ReadAll() {
    int status = 0;
    while (status >= 0 && !IsFull() && !m_watch.MustEnd() &&
           av_read_frame(m_input.Get(), m_packet.get()) >= 0) {
        if (m_packet->stream_index == m_pStream->index) {
            std::size_t size = 0;
            std::uint8_t const* const skip =
                av_packet_get_side_data(m_packet.get(), AV_PKT_DATA_SKIP_SAMPLES, &size);
            m_nSkippedStart += size >= sizeof(std::uint32_t) ? AV_RL32(skip) : 0;
            status = Decode(m_packet.get());
        }
        av_packet_unref(m_packet.get());
    }
    status = status >= 0 ? Decode(nullptr) : status;
    status = status >= 0 ? m_mixer.Flush() : status;
    return status == AVERROR(ERANGE) ? "has a sample rate that can't be worked with"
           : status < 0              ? WithMessage("holds audio that can't be mixed down")
                                     : std::string();
}

/// Length of the track in frames by the container's table, edits left aside; 0 when unknown.
std::int64_t CDecodeRun::TrackLength() {
    auto const index = static_cast<unsigned>(m_pStream->index);
    m_input.Close(); // the table of a long file takes megabytes: one at a time
    CInput table(m_source, m_watch);
    if (table.Open(m_sPath, true) < 0 || index >= table.Get()->nb_streams) {
        return 0;
    }
    AVStream const& stream = *table.Get()->streams[index];
    return std::max(av_rescale_q(stream.duration, stream.time_base, {1, m_nFileRate}),
                    std::int64_t{0});
}

std::int64_t CDecodeRun::CountWithoutTail() {
    AVFormatContext const& format = *m_input.Get();
    bool const isMp4 = std::string_view(format.iformat->name).find("mp4") != std::string_view::npos;
    if (m_nFrames == 0 || !isMp4 || m_codec->codec_id != AV_CODEC_ID_AAC) {
        return m_nFrames;
    }
    AVDictionaryEntry const* const note = av_dict_get(format.metadata, "iTunSMPB", nullptr, 0);
    if (auto const gapless = ParseGaplessNote(note != nullptr ? note->value : "")) {
        return CountWithoutPadding(m_nFrames, m_nSkippedStart, *gapless);
    }
    std::int64_t const length = TrackLength() - m_nSkippedStart;
    return length > 0 ? std::min(m_nFrames, length) : m_nFrames;
}

std::string DecodeFile(std::string const& path, CSourceFile& source, CDecodeWatch& watch,
                       CDecodedAudio& audio) {
    CDecodeRun first(path, source, watch);
    std::string reason = first.Run(0);
    std::int64_t const frames = reason.empty() ? first.CountWithoutTail() : 0;
    audio.m_sDamage = first.GetDamage().Describe();
    if (frames <= 0 || !first.IsSlow()) {
        return reason.empty() ? first.Finish(frames, audio) : reason;
    }
    CDecodeRun second(path, source, watch);
    reason = second.Run(frames);
    return reason.empty() ? second.Finish(frames, audio) : reason;
}

} // namespace

CStatus CAudioDecoder::Decode(std::string const& path, CDecodedAudio& audio) {
    SetUpOnce();
    ForgetMessage();
    audio = {};
    CDecodeWatch watch(m_pCancel, m_patience);
    try {
        CSourceFile source;
        m_sReason = source.Open(path);
        if (m_sReason.empty()) {
            m_sReason = DecodeFile(path, source, watch, audio);
            m_sReason = watch.Explain(source.Explain(m_sReason));
        }
    } catch (std::bad_alloc const&) {
        m_sReason = "there is not enough memory for it";
    }
    if (m_sReason.empty()) {
        return kStatusOk;
    }
    audio = {};
    return watch.IsCancelled() ? kStatusNothing : kStatusFailure;
}
