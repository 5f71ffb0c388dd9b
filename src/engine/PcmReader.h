// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Status.h"

#include <cstddef>
#include <cstdint>

constexpr std::size_t kFormatRecordBytes = 44; // Fixed: size of the record of `GetFormatInfo`.

/// Source of mono PCM. Every operation returns a status, `kStatusOk` for success. A reader is not
/// deleted through this interface.
class IPcmReader {
public:
    /// `kStatusOk` when the source can be read: success means yes here, as for every status.
    virtual CStatus IsValid() = 0;

    /// Samples per second.
    virtual CStatus GetSampleRate(std::uint32_t* rate) = 0;

    /// Length of the stream in bytes.
    virtual CStatus GetStreamLength(std::int64_t* bytes) = 0;

    virtual CStatus GetSampleCount(std::int64_t* count) = 0;

    /// Fills the format record of `kFormatRecordBytes` and the bit rate in bits per second; either
    /// pointer may be null.
    virtual CStatus GetFormatInfo(std::uint8_t* record, std::uint32_t* bitRate) = 0;

    /// Copies `byteCount` bytes of the sample stream, from `byteOffset` on, to `dest`.
    virtual CStatus LoadPcm(std::uint8_t* dest, std::int64_t byteOffset,
                            std::uint32_t byteCount) = 0;

protected:
    IPcmReader() = default;
    IPcmReader(IPcmReader const&) = default;
    IPcmReader& operator=(IPcmReader const&) = default;
    ~IPcmReader() = default;
};

/// View of a mono buffer of floats at 44100 Hz. The buffer stays the caller's and must outlive the
/// reader. No operation fails.
/// Thread: any, as long as nobody writes the buffer.
class CPcmReader final : public IPcmReader {
public:
    /// `samples` may be null when `count` is 0.
    CPcmReader(float const* samples, std::int32_t count);

    CStatus IsValid() override;

    /// 44100.
    CStatus GetSampleRate(std::uint32_t* rate) override;

    /// Four bytes a sample, the product held in 32 unsigned bits.
    CStatus GetStreamLength(std::int64_t* bytes) override;

    CStatus GetSampleCount(std::int64_t* count) override;

    /// A WAVEFORMATEXTENSIBLE record of 32-bit float mono at 44100 Hz in the machine's byte order,
    /// and 1411200 bits per second.
    CStatus GetFormatInfo(std::uint8_t* record, std::uint32_t* bitRate) override;

    /// Bytes outside the buffer come as 0.
    CStatus LoadPcm(std::uint8_t* dest, std::int64_t byteOffset, std::uint32_t byteCount) override;

private:
    float const* m_pSamples;
    std::int32_t m_nCount;
};
