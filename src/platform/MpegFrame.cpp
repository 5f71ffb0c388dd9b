// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/MpegFrame.h"

#include <array>

namespace {

// Standard: ISO/IEC 11172-3 and 13818-3, section 2.4.2.3: layer III bit rates in kbit/s.
constexpr std::array<std::size_t, 16> kBitRates1 = {0,   32,  40,  48,  56,  64,  80,  96,
                                                    112, 128, 160, 192, 224, 256, 320, 0};
constexpr std::array<std::size_t, 16> kBitRates2 = {0,  8,  16, 24,  32,  40,  48,  56,
                                                    64, 80, 96, 112, 128, 144, 160, 0};
// Standard: the same section: sample rates of MPEG-1; the later versions halve and quarter them.
constexpr std::array<std::size_t, 4> kSampleRates = {44100, 48000, 32000, 0};

// Standard: the same, section 2.4.2.1: a later version's frame is one granule instead of two.
constexpr std::size_t kFrameSamples1 = 1152;
constexpr std::size_t kFrameSamples2 = 576;

constexpr std::size_t kBytesPerKilobit = 125; // Derived: 1000 / 8

} // namespace

std::optional<CMpegFrame> MpegFrameOf(std::span<std::uint8_t const> bytes) {
    constexpr std::size_t kHeaderBytes = 4;
    constexpr unsigned kSingleChannel = 3;
    if (bytes.size() < kHeaderBytes || bytes[0] != 0xFF || (bytes[1] & 0xE0U) != 0xE0U) {
        return std::nullopt;
    }
    unsigned const version = (bytes[1] >> 3U) & 3U; // 3: MPEG-1, 2: MPEG-2, 0: MPEG-2.5
    unsigned const layer = (bytes[1] >> 1U) & 3U;   // 1: layer III
    std::size_t const bitRateIndex = bytes[2] >> 4U;
    std::size_t const bitRate = version == 3 ? kBitRates1[bitRateIndex] : kBitRates2[bitRateIndex];
    std::size_t const halvings = version == 3 ? 0 : version == 2 ? 1 : 2;
    std::size_t const sampleRate = kSampleRates[(bytes[2] >> 2U) & 3U] >> halvings;
    if (version == 1 || layer != 1 || bitRate == 0 || sampleRate == 0) {
        return std::nullopt;
    }
    std::size_t const samples = version == 3 ? kFrameSamples1 : kFrameSamples2;
    std::size_t const padding = (bytes[2] >> 1U) & 1U;
    return CMpegFrame{.m_nBytes = samples * bitRate * kBytesPerKilobit / sampleRate + padding,
                      .m_nSamples = samples,
                      .m_nSampleRate = sampleRate,
                      .m_bMono = bytes[3] >> 6U == kSingleChannel};
}
