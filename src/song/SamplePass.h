// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/PcmReader.h"
#include "platform/DecodedAudio.h"

#include <cstddef>

/// Reads the samples of a decoded file once, from the first to the last, and gives their memory
/// back on the way: what comes after the pass over the audio runs in the room that they leave.
/// Thread: one thread at a time.
class CSamplePass final : public IPcmReader {
public:
    /// `audio` must outlive it.
    explicit CSamplePass(CDecodedAudio const& audio)
        : m_audio(audio), m_reader(audio.m_pSamples.get(), audio.m_nCount) {}

    CStatus IsValid() override { return m_reader.IsValid(); }
    CStatus GetSampleRate(std::uint32_t* rate) override { return m_reader.GetSampleRate(rate); }
    CStatus GetStreamLength(std::int64_t* bytes) override {
        return m_reader.GetStreamLength(bytes);
    }
    CStatus GetSampleCount(std::int64_t* count) override { return m_reader.GetSampleCount(count); }
    CStatus GetFormatInfo(std::uint8_t* record, std::uint32_t* bitRate) override {
        return m_reader.GetFormatInfo(record, bitRate);
    }

    /// What lies before `byteOffset` must not be asked for again.
    CStatus LoadPcm(std::uint8_t* dest, std::int64_t byteOffset, std::uint32_t byteCount) override;

private:
    CDecodedAudio const& m_audio;
    CPcmReader m_reader;
    std::size_t m_nGivenBack = 0; // samples
};
