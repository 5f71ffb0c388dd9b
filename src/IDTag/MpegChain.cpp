// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The steps: pass over further tags and zeros; see that the bytes there are not the beginning of
// another kind of file; then try each byte of a longest frame as the first header of a chain.

#include "IDTag/MpegChain.h"

#include "IDTag/OtherKind.h"
#include "IDTag/PosixFile.h"
#include "IDTag/RawTag.h"
#include "IDTag/TagBytes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kHeaderBytes = 4; // Standard: ISO/IEC 11172-3, section 2.4.1.3.
constexpr int kChainFrames = 3;         // Fixed: random bytes pass two of them once in 2^20 times.
constexpr std::size_t kEndMarkBytes = 12; // Fixed: the longest of the marks below, rounded up.
constexpr int kMostTags = 8;              // Fixed: tags behind one another before we give up.
constexpr std::uint64_t kMostZeros = 1'048'576; // Fixed: padding of some encoders.
constexpr std::size_t kZerosAtOnce = 65'536;    // Fixed: bytes looked at in one read.
constexpr std::size_t kLongestFrameBytes =
    2881; // Derived: layer II, 160 kbit/s at 8 kHz: 144 * 20.

// Standard: ISO/IEC 11172-3 and 13818-3, section 2.4.2.3: kbit/s by version, layer and index.
constexpr std::array<std::array<std::uint16_t, 16>, 5> kBitRates = {{
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448, 0}, // 1, layer I
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, 0},    // 1, layer II
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0},     // 1, layer III
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256, 0},    // 2, layer I
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0},         // 2, layers II, III
}};
constexpr std::array<std::uint32_t, 4> kSampleRates = {44100, 48000, 32000, 0};

/// What two frames of one stream have in common, and where the next one lies.
struct CMpegHeader {
    unsigned m_nVersion = 0; // 3: MPEG-1, 2: MPEG-2, 0: MPEG-2.5
    unsigned m_nLayer = 0;   // 3: layer I, 2: layer II, 1: layer III
    std::uint32_t m_nSampleRate = 0;
    std::uint32_t m_nFrameBytes = 0; // 0 when the header leaves the bit rate open

    [[nodiscard]] bool IsOfOneStream(CMpegHeader const& other) const {
        return m_nVersion == other.m_nVersion && m_nLayer == other.m_nLayer &&
               m_nSampleRate == other.m_nSampleRate &&
               (m_nFrameBytes == 0) == (other.m_nFrameBytes == 0);
    }
};

std::uint32_t FrameBytes(CMpegHeader const& header, std::uint32_t bitRate, std::uint32_t padding) {
    constexpr std::uint32_t kBitsPerKilobit = 1000;
    // Derived: samples of a frame / 8 bits a byte; layer I counts in slots of four bytes.
    if (header.m_nLayer == 3) {
        return (12 * bitRate * kBitsPerKilobit / header.m_nSampleRate + padding) * 4;
    }
    std::uint32_t const factor = header.m_nLayer == 1 && header.m_nVersion != 3 ? 72 : 144;
    return factor * bitRate * kBitsPerKilobit / header.m_nSampleRate + padding;
}

std::optional<CMpegHeader> HeaderAt(std::uint8_t const* bytes) {
    CMpegHeader header;
    header.m_nVersion = (bytes[1] >> 3U) & 3U;
    header.m_nLayer = (bytes[1] >> 1U) & 3U;
    unsigned const index = bytes[2] >> 4U;
    bool const isSync = bytes[0] == 0xFF && (bytes[1] & 0xE0U) == 0xE0U;
    std::uint32_t const sampleRate = kSampleRates[(bytes[2] >> 2U) & 3U];
    if (!isSync || header.m_nVersion == 1 || header.m_nLayer == 0 || index == 15 ||
        sampleRate == 0) {
        return std::nullopt;
    }
    bool const isFirstVersion = header.m_nVersion == 3;
    std::size_t const row = isFirstVersion ? 3 - header.m_nLayer : header.m_nLayer == 3 ? 3 : 4;
    header.m_nSampleRate = sampleRate >> (isFirstVersion ? 0U : header.m_nVersion == 2 ? 1U : 2U);
    if (index > 0) {
        header.m_nFrameBytes = FrameBytes(header, kBitRates[row][index], (bytes[2] >> 1U) & 1U);
    }
    return header;
}

/// The bytes at `offset`, fewer at the file's end.
std::vector<std::uint8_t> BytesAt(int file, std::uint64_t offset, std::size_t count) {
    struct stat info = {};
    if (::fstat(file, &info) != 0 || offset >= static_cast<std::uint64_t>(info.st_size)) {
        return {};
    }
    std::uint64_t const rest = static_cast<std::uint64_t>(info.st_size) - offset;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::min<std::uint64_t>(count, rest)));
    return ReadAllAt(file, bytes, offset) ? bytes : std::vector<std::uint8_t>();
}

std::uint64_t PastZeros(int file, std::uint64_t offset) {
    for (std::uint64_t const end = offset + kMostZeros; offset < end;) {
        std::vector<std::uint8_t> const bytes = BytesAt(file, offset, kZerosAtOnce);
        auto const first = std::ranges::find_if(bytes, [](std::uint8_t b) { return b != 0; });
        offset += static_cast<std::uint64_t>(first - bytes.begin());
        if (bytes.empty() || first != bytes.end()) {
            break;
        }
    }
    return offset;
}

/// Where the sound should begin; nothing where another kind of file does.
std::optional<std::uint64_t> PastTags(int file, std::uint64_t offset) {
    constexpr std::size_t kOtherTagHeaderBytes = 32; // Standard: APEv2, its header.
    constexpr std::size_t kOtherTagSizeOffset = 12;  // Standard: APEv2, little-endian.
    for (int i = 0; i < kMostTags; ++i) {
        std::vector<std::uint8_t> head = BytesAt(file, offset, kOtherKindBytes);
        // Some kinds begin with zeros that count, so they are looked for on both sides of them.
        if (!IsOfOtherKind(head) && !head.empty() && head.front() == 0) {
            offset = PastZeros(file, offset);
            head = BytesAt(file, offset, kOtherKindBytes);
        }
        if (head.size() >= kTagHeaderBytes && BeginsWith(head, 0, "ID3")) {
            offset += kTagHeaderBytes + ReadSyncsafe(&head[kTagSizeOffset]);
        } else if (head.size() >= kOtherTagHeaderBytes && BeginsWith(head, 0, "APETAGEX")) {
            std::array<std::uint8_t, 4> size = {};
            std::reverse_copy(head.begin() + kOtherTagSizeOffset,
                              head.begin() + kOtherTagSizeOffset + 4, size.begin());
            offset += kOtherTagHeaderBytes + ReadBigEndian(size.data());
        } else {
            return IsOfOtherKind(head) ? std::nullopt : std::optional(offset);
        }
    }
    return std::nullopt;
}

/// Where the frame behind an open bit rate begins: the next header of the same stream.
std::uint64_t NextOfFreeFormat(int file, std::uint64_t offset, CMpegHeader const& first) {
    std::vector<std::uint8_t> const bytes =
        BytesAt(file, offset, 2 * kLongestFrameBytes + kHeaderBytes);
    for (std::size_t i = kHeaderBytes; i + kHeaderBytes <= bytes.size(); ++i) {
        std::optional<CMpegHeader> const next = HeaderAt(&bytes[i]);
        if (next && next->IsOfOneStream(first)) {
            return offset + i;
        }
    }
    return offset + bytes.size();
}

/// True for the file's end and for what taggers put there.
bool IsEndOfSound(std::vector<std::uint8_t> const& bytes) {
    return bytes.size() < kHeaderBytes || BeginsWith(bytes, 0, "TAG") ||
           BeginsWith(bytes, 0, "APETAGEX") || BeginsWith(bytes, 0, "LYRICSBEGIN");
}

bool IsChain(int file, std::uint64_t offset, CMpegHeader const& first) {
    CMpegHeader header = first;
    for (int frames = 1; frames < kChainFrames; ++frames) {
        offset = header.m_nFrameBytes > 0 ? offset + header.m_nFrameBytes
                                          : NextOfFreeFormat(file, offset, header);
        std::vector<std::uint8_t> const bytes = BytesAt(file, offset, kEndMarkBytes);
        if (IsEndOfSound(bytes)) {
            return frames > 1;
        }
        std::optional<CMpegHeader> const next = HeaderAt(bytes.data());
        if (!next || !next->IsOfOneStream(first)) {
            return false;
        }
        header = *next;
    }
    return true;
}

} // namespace

bool HasMpegChain(int file, std::uint64_t offset) {
    std::optional<std::uint64_t> const begin = PastTags(file, offset);
    if (!begin) {
        return false;
    }
    std::vector<std::uint8_t> const bytes =
        BytesAt(file, *begin, kLongestFrameBytes + kHeaderBytes);
    for (std::size_t i = 0; i + kHeaderBytes <= bytes.size(); ++i) {
        std::optional<CMpegHeader> const header = HeaderAt(&bytes[i]);
        if (header && IsChain(file, *begin + i, *header)) {
            return true;
        }
    }
    return false;
}

bool HasOtherKind(int file, std::uint64_t offset) {
    return !PastTags(file, offset);
}

bool IsMp4At(int file, std::uint64_t offset) {
    constexpr std::string_view kMark = "ftyp"; // Standard: ISO/IEC 14496-12, section 4.3.
    constexpr std::size_t kMarkOffset = 4;     // Standard: likewise, behind the box's size.
    return BeginsWith(BytesAt(file, offset, kMarkOffset + kMark.size()), kMarkOffset, kMark);
}
