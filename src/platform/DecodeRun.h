// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AudioInput.h"
#include "platform/AudioMixer.h"
#include "platform/DecodeDamage.h"
#include "platform/DecodeProblem.h"
#include "platform/DecodeWatch.h"
#include "platform/DecodedAudio.h"
#include "platform/LibAv.h"
#include "platform/SampleQueue.h"
#include "platform/SourceFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

/// One pass over a file: every packet of its best audio stream is decoded, mixed down and resampled
/// into a queue, a packet at a time. Problems returned are reasons for giving up.
/// Thread: one thread at a time.
class CDecodeRun {
public:
    /// All but the path must outlive it.
    CDecodeRun(std::string path, CSourceFile& source, CDecodeWatch& watch, CSampleQueue& queue)
        : m_sPath(std::move(path)),
          m_source(source),
          m_watch(watch),
          m_input(source, watch),
          m_queue(queue),
          m_mixer(queue) {}

    /// Opens the file and the decoder of its best stream.
    EDecodeProblem Open();

    /// Length of the open file by its packets, or by its data; see `CountPackets`. To be called
    /// before the first step.
    [[nodiscard]] CSongLength Estimate();

    /// True when the estimate has read all packets, so that nothing is left to decode.
    [[nodiscard]] bool IsUsedUp() const { return m_bUsedUp; }

    /// How many samples are wanted. 0: none, the run only counts. A file below 44100 Hz is only
    /// counted from there on.
    void SetWanted(std::int64_t count) { m_nWanted = count; }

    /// Decodes the next packet, and what decoder and resampler still hold behind the last one.
    EDecodeProblem Step();

    [[nodiscard]] bool HasEnded() const { return m_bEnded; }

    /// Length of what was decoded; for the end. Nothing can be decoded any more afterwards.
    [[nodiscard]] CSongLength GetLength();

    /// Enters what the run has learnt of the file.
    void Tell(CDecodeReport& report) const;

    /// Length of an MP4 track by its table, once it was looked up; for another run over the file.
    [[nodiscard]] std::optional<std::int64_t> GetTrackLength() const { return m_nTrackLength; }
    void SetTrackLength(std::optional<std::int64_t> frames) { m_nTrackLength = frames; }

private:
    EDecodeProblem OpenDecoder(AVCodec const* decoder);
    int Decode(AVPacket* packet);
    [[nodiscard]] bool MustMix() const;
    [[nodiscard]] CSongLength LengthOf(std::int64_t frames, std::int64_t skippedStart, int rate);
    [[nodiscard]] std::int64_t CountWithoutTail(std::int64_t frames, std::int64_t skippedStart,
                                                int rate);
    [[nodiscard]] std::int64_t TrackLength(int rate);

    std::string m_sPath;
    CSourceFile& m_source;
    CDecodeWatch& m_watch;
    CAudioInput m_input;
    CSampleQueue& m_queue;
    CAudioMixer m_mixer;
    EContainer m_container = EContainer::Unknown;
    AVStream* m_pStream = nullptr;
    CCodecPtr m_codec;
    CPacketPtr m_packet{Had(av_packet_alloc())};
    CFramePtr m_frame{Had(av_frame_alloc())};
    CDecodeDamage m_damage;
    std::int64_t m_nDataStart = 0; // bytes
    std::int64_t m_nWanted = 0;
    std::int64_t m_nFrames = 0;
    std::int64_t m_nSkippedStart = 0; // frames that the decoder drops at the start
    std::int64_t m_nHeard = 0;        // length of the packets, in units of the stream
    std::int64_t m_nPromised = 0;     // length that the header gives, likewise; 0 for none
    std::optional<std::int64_t> m_nTrackLength; // frames; 0 when unknown
    int m_nFileRate = 0;
    int m_nChannels = 0;
    bool m_bUsedUp = false;
    bool m_bEnded = false;
};

/// True when the file begins, behind its tag, with MPEG audio that leaves its bit rate open.
bool IsFreeFormat(CSourceFile& source);
