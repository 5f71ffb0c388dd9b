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
#include "platform/SourceFile.h"

#include <cstdint>
#include <string>
#include <utility>

/// One pass over the file. Problems returned are reasons for giving up.
class CDecodeRun {
public:
    CDecodeRun(std::string path, CSourceFile& source, CDecodeWatch& watch)
        : m_sPath(std::move(path)), m_source(source), m_watch(watch), m_input(source, watch) {}

    /// `wanted`: samples after which to stop; 0 for all, where a slow file is only counted.
    EDecodeProblem Run(std::int64_t wanted) {
        m_nWanted = wanted;
        EDecodeProblem const problem = Open();
        return problem == EDecodeProblem::None ? ReadAll() : problem;
    }

    [[nodiscard]] bool IsSlow() const { return m_nFileRate < kOutputRate; }

    /// Enters what the run has learnt of the file.
    void Tell(CDecodeReport& report) const;

    /// Frames without the tail that fills up the last AAC packet of an MP4 file: libav drops the
    /// padding at the start only. Nothing can be read any more afterwards.
    [[nodiscard]] std::int64_t CountWithoutTail();

    /// Hands the samples over for a file of `frames` frames.
    EDecodeProblem Finish(std::int64_t frames, CDecodedAudio& audio) {
        // What a tail became after resampling goes with it.
        std::int64_t const musicEnd =
            frames < m_nFrames ? av_rescale_rnd(frames, kOutputRate, m_nFileRate, AV_ROUND_UP)
                               : m_buffer.GetCount();
        return TakeSamples(m_buffer, frames, musicEnd, audio);
    }

private:
    EDecodeProblem Open();
    EDecodeProblem OpenDecoder(AVCodec const* decoder);
    EDecodeProblem ReadAll();
    int Decode(AVPacket* packet);
    [[nodiscard]] std::int64_t TrackLength();
    [[nodiscard]] bool IsFull() const { return m_nWanted > 0 && m_buffer.GetCount() >= m_nWanted; }

    std::string m_sPath;
    CSourceFile& m_source;
    CDecodeWatch& m_watch;
    CAudioInput m_input;
    EContainer m_container = EContainer::Unknown;
    AVStream* m_pStream = nullptr;
    CCodecPtr m_codec;
    CPacketPtr m_packet{Had(av_packet_alloc())};
    CFramePtr m_frame{Had(av_frame_alloc())};
    CSampleBuffer m_buffer;
    CAudioMixer m_mixer{m_buffer};
    CDecodeDamage m_damage;
    std::int64_t m_nWanted = 0;
    std::int64_t m_nFrames = 0;
    std::int64_t m_nSkippedStart = 0; // frames that the decoder drops at the start
    std::int64_t m_nHeard = 0;        // length of the packets, in units of the stream
    std::int64_t m_nPromised = 0;     // length that the header gives, likewise; 0 for none
    int m_nFileRate = 0;
    int m_nChannels = 0;
};

/// True when the file begins, behind its tag, with MPEG audio that leaves its bit rate open.
bool IsFreeFormat(CSourceFile& source);
