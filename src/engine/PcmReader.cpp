// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/PcmReader.h"

#include "base/EngineRate.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr std::uint16_t kBytesPerSample = 4; // Standard: IEEE 754 binary32.
constexpr std::uint32_t kBytesPerSecond = kEngineRateHz * kBytesPerSample; // Derived: one channel.

constexpr std::uint16_t kFormatTagFloat = 3; // Standard: WAVE_FORMAT_IEEE_FLOAT of mmreg.h.

// Deliberate: the size of the whole record, where a WAVEFORMATEXTENSIBLE has the 22 bytes that
// follow this field.
constexpr std::uint16_t kExtraSize = 44;

// Deliberate: 00000006-0000-0010-8000-00AA00389B71 is the sub-format of A-law, with its first
// group big-endian, although the tag says float.
constexpr std::array<std::uint8_t, 16> kSubFormat{0x00, 0x00, 0x00, 0x06, 0x00, 0x00, 0x00, 0x10,
                                                  0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

template <typename T>
void PutField(std::uint8_t* record, std::size_t offset, T value) {
    std::memcpy(record + offset, &value, sizeof(value));
}

} // namespace

CPcmReader::CPcmReader(float const* samples, std::int32_t count)
    : m_pSamples(samples), m_nCount(count) {
}

CStatus CPcmReader::IsValid() {
    return kStatusOk;
}

CStatus CPcmReader::GetSampleRate(std::uint32_t* rate) {
    *rate = kEngineRateHz;
    return kStatusOk;
}

CStatus CPcmReader::GetStreamLength(std::int64_t* bytes) {
    std::uint32_t const product = static_cast<std::uint32_t>(m_nCount) * kBytesPerSample;
    *bytes = product;
    return kStatusOk;
}

CStatus CPcmReader::GetSampleCount(std::int64_t* count) {
    *count = m_nCount;
    return kStatusOk;
}

CStatus CPcmReader::GetFormatInfo(std::uint8_t* record, std::uint32_t* bitRate) {
    if (record != nullptr) {
        std::fill_n(record, kFormatRecordBytes, std::uint8_t{0});
        PutField(record, 0, kFormatTagFloat);
        PutField(record, 2, std::uint16_t{1}); // channels
        PutField(record, 4, kEngineRateHz);
        PutField(record, 8, kBytesPerSecond);
        PutField(record, 12, kBytesPerSample);   // block align
        PutField(record, 14, std::uint16_t{32}); // bits per sample
        PutField(record, 16, kExtraSize);
        PutField(record, 20, std::uint16_t{32}); // valid bits
        PutField(record, 24, std::uint32_t{0});  // channel mask
        std::ranges::copy(kSubFormat, record + 28);
    }
    if (bitRate != nullptr) {
        *bitRate = kBytesPerSecond * 8;
    }
    return kStatusOk;
}

CStatus CPcmReader::LoadPcm(std::uint8_t* dest, std::int64_t byteOffset, std::uint32_t byteCount) {
    std::int64_t const streamBytes = std::int64_t{m_nCount} * kBytesPerSample;
    if (byteOffset >= streamBytes || byteOffset <= -std::int64_t{byteCount}) {
        std::fill_n(dest, byteCount, std::uint8_t{0});
        return kStatusOk;
    }
    std::int64_t const first = std::max<std::int64_t>(byteOffset, 0);
    std::int64_t const last = std::min(byteOffset + byteCount, streamBytes);
    auto const* const bytes = reinterpret_cast<std::uint8_t const*>(m_pSamples);
    std::uint8_t* const begin = std::fill_n(dest, first - byteOffset, std::uint8_t{0});
    std::uint8_t* const end = std::copy_n(bytes + first, last - first, begin);
    std::fill(end, dest + byteCount, std::uint8_t{0});
    return kStatusOk;
}
