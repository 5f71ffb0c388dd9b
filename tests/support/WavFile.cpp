// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/WavFile.h"

#include "support/TempFolder.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace {

using CBytes = std::vector<std::uint8_t>;

void PutText(CBytes& bytes, std::string_view text) {
    for (char const c : text) {
        bytes.push_back(static_cast<std::uint8_t>(c));
    }
}

/// Appends the low `count` bytes of `value`, the lowest first.
void PutNumber(CBytes& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

CBytes MakeFile(CWavShape const& shape, CBytes const& data) {
    auto const dataSize = static_cast<std::uint32_t>(data.size());
    std::uint32_t const claimed = shape.m_nClaimedData.value_or(dataSize);
    auto const frameBytes = static_cast<std::uint16_t>(shape.m_nChannels * (shape.m_nBits / 8));
    CBytes bytes;
    PutText(bytes, "RIFF");
    PutNumber(bytes, shape.m_nClaimedData ? claimed : 36 + dataSize, 4);
    PutText(bytes, "WAVE");
    PutText(bytes, "fmt ");
    PutNumber(bytes, 16, 4);
    PutNumber(bytes, 1, 2); // integer PCM
    PutNumber(bytes, shape.m_nChannels, 2);
    PutNumber(bytes, shape.m_nRate, 4);
    PutNumber(bytes, shape.m_nRate * frameBytes, 4);
    PutNumber(bytes, frameBytes, 2);
    PutNumber(bytes, shape.m_nBits, 2);
    PutText(bytes, "data");
    PutNumber(bytes, claimed, 4);
    bytes.insert(bytes.end(), data.begin(), data.end());
    return bytes;
}

} // namespace

std::vector<std::uint8_t> MakeWav(CWavShape const& shape, std::span<float const> samples) {
    CBytes data;
    int const depth = shape.m_nBits / 8;
    data.reserve(samples.size() * static_cast<std::size_t>(depth));
    double const full = std::ldexp(1.0, shape.m_nBits - 1) - 1.0;
    for (float const sample : samples) {
        double const held = std::clamp(static_cast<double>(sample), -1.0, 1.0);
        auto const value = static_cast<std::int32_t>(std::lround(held * full));
        PutNumber(data, static_cast<std::uint32_t>(depth == 1 ? value + 128 : value), depth);
    }
    return MakeFile(shape, data);
}

std::vector<std::uint8_t> MakeWav16(CWavShape const& shape, std::span<std::int16_t const> samples) {
    CBytes data;
    for (std::int16_t const sample : samples) {
        PutNumber(data, static_cast<std::uint16_t>(sample), 2);
    }
    return MakeFile(shape, data);
}

void WriteWav(std::string const& path, CWavShape const& shape, std::span<float const> samples) {
    WriteBytes(path, MakeWav(shape, samples));
}

void WriteWav(std::string const& path, std::span<float const> samples) {
    WriteWav(path, CWavShape{}, samples);
}
