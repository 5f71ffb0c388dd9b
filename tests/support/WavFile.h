// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// A RIFF/WAVE file of integer PCM, also one whose header lies.
struct CWavShape {
    std::uint32_t m_nRate = 44100;
    std::uint16_t m_nChannels = 1;
    std::uint16_t m_nBits = 16; // 8, 16, 24 or 32
    std::optional<std::uint32_t> m_nClaimedData =
        std::nullopt; // size in the data chunk; unset: the truth
};

/// The file for `samples`, channels interleaved. A sample s becomes s x 32767 rounded to the
/// nearest for 16 bits, and alike for the other depths; 8 bits are stored with an offset of 128.
std::vector<std::uint8_t> MakeWav(CWavShape const& shape, std::span<float const> samples);

/// The file for 16-bit samples that are stored as they are, channels interleaved.
std::vector<std::uint8_t> MakeWav16(CWavShape const& shape, std::span<std::int16_t const> samples);

void WriteWav(std::string const& path, CWavShape const& shape, std::span<float const> samples);

/// Mono, 16 bits, 44100 Hz.
void WriteWav(std::string const& path, std::span<float const> samples);
