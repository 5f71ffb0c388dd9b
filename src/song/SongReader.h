// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/PcmReader.h"
#include "song/ReadAhead.h"

#include <memory>

class CAudioStream;

/// Where decoder and engine meet: the samples of an open stream, decoded as the engine asks for
/// them, from the first to the last and each once. With the last one the whole file must turn out
/// to be what the stream took it for; if not, loading it fails, and with it the engine's pass.
/// Thread: one thread at a time.
class CSongReader final : public IPcmReader {
public:
    /// `stream` must outlive it; null is a song without samples. With `readAhead` the stream is
    /// decoded on a thread of its own, if one can be had, and is the reader's until it is gone.
    explicit CSongReader(CAudioStream* stream, bool readAhead = false);

    CStatus IsValid() override { return m_format.IsValid(); }
    CStatus GetSampleRate(std::uint32_t* rate) override { return m_format.GetSampleRate(rate); }
    CStatus GetStreamLength(std::int64_t* bytes) override {
        return m_format.GetStreamLength(bytes);
    }
    CStatus GetSampleCount(std::int64_t* count) override { return m_format.GetSampleCount(count); }
    CStatus GetFormatInfo(std::uint8_t* record, std::uint32_t* bitRate) override {
        return m_format.GetFormatInfo(record, bitRate);
    }

    /// Whole samples, which must follow on those before.
    /// Returns: what the stream does; `kStatusFailure` for another place than the next.
    CStatus LoadPcm(std::uint8_t* dest, std::int64_t byteOffset, std::uint32_t byteCount) override;

private:
    CAudioStream* m_pStream;
    std::unique_ptr<CReadAhead> m_pAhead; // null: the stream is read on the caller's thread
    CPcmReader m_format;                  // of as many samples, for what is not a sample
    std::int64_t m_nOffset = 0;           // bytes given so far
};
