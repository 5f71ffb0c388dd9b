// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/WavHeader.h"

#include "platform/SourceFile.h"

#include <array>
#include <cstring>
#include <span>

namespace {

// Standard: Multimedia Programming Interface and Data Specifications 1.0, "Resource Interchange
// File Format": a form of chunks, each with an id, a size and, when that is odd, a byte of padding.
constexpr std::int64_t kFormBytes = 12;
constexpr std::int64_t kChunkHeadBytes = 8;
constexpr std::size_t kFormatBytes = 16;
constexpr std::size_t kFrameSizeOffset = 12;
constexpr int kMostWavChunks = 1000; // Fixed: a file with more is not followed.

template <std::size_t Size>
bool ReadAt(CSourceFile& source, std::int64_t place, std::array<std::uint8_t, Size>& bytes) {
    return source.Seek(place) == place &&
           source.Read(bytes.data(), bytes.size()) == static_cast<std::int64_t>(bytes.size());
}

std::uint32_t LittleEndian32(std::uint8_t const* bytes) {
    return bytes[0] | std::uint32_t{bytes[1]} << 8U | std::uint32_t{bytes[2]} << 16U |
           std::uint32_t{bytes[3]} << 24U;
}

bool IsMark(std::uint8_t const* bytes, char const* mark) {
    return std::memcmp(bytes, mark, 4) == 0;
}

} // namespace

std::int64_t ClaimedWavFrames(CSourceFile& source) {
    std::array<std::uint8_t, kFormBytes> form{};
    if (!ReadAt(source, 0, form) || !IsMark(form.data(), "RIFF") || !IsMark(&form[8], "WAVE")) {
        return 0;
    }
    std::int64_t frameBytes = 0;
    std::int64_t place = kFormBytes;
    for (int i = 0; i < kMostWavChunks; ++i) {
        std::array<std::uint8_t, kChunkHeadBytes> head{};
        if (!ReadAt(source, place, head)) {
            return 0;
        }
        std::int64_t const size = LittleEndian32(&head[4]);
        if (IsMark(head.data(), "data")) {
            return frameBytes > 0 ? size / frameBytes : 0;
        }
        std::array<std::uint8_t, kFormatBytes> format{};
        if (IsMark(head.data(), "fmt ") && ReadAt(source, place + kChunkHeadBytes, format)) {
            frameBytes = format[kFrameSizeOffset] | format[kFrameSizeOffset + 1] << 8;
        }
        place += kChunkHeadBytes + size + size % 2;
    }
    return 0;
}
