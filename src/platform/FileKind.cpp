// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/FileKind.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

struct CMark {
    std::size_t m_nPlace;
    std::string_view m_sBytes;
    EFileKind m_kind;
};

using namespace std::string_view_literals;

// Standard: the marks by which the formats' own descriptions tell them.
constexpr std::array kMarks = std::to_array<CMark>({
    {8, "WAVE"sv, EFileKind::Read},                 // RIFF, RIFX and RF64 before it
    {0, "riff\x2E\x91\xCF\x11"sv, EFileKind::Read}, // Wave64
    {8, "AIFF"sv, EFileKind::Read},
    {8, "AIFC"sv, EFileKind::Read},
    {0, "caff"sv, EFileKind::Read},
    {0, "fLaC"sv, EFileKind::Read},
    {0, "OggS"sv, EFileKind::Read},
    {4, "ftyp"sv, EFileKind::Read},
    {4, "moov"sv, EFileKind::Read},
    {4, "mdat"sv, EFileKind::Read},
    {0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"sv, EFileKind::Read}, // ASF: WMA, WMV
    {0, "\x1A\x45\xDF\xA3"sv, EFileKind::Read},                 // EBML: Matroska, WebM
    {0, "MAC "sv, EFileKind::Read},                             // Monkey's Audio
    {0, "wvpk"sv, EFileKind::Read},                             // WavPack
    {0, "TTA1"sv, EFileKind::Read},                             // True Audio
    {0, ".snd"sv, EFileKind::Read},                             // AU
    {8, "AVI "sv, EFileKind::Other},
    {8, "8SVX"sv, EFileKind::Other},
    {0, "MPCK"sv, EFileKind::Other},    // Musepack, stream version 8
    {0, "MP+"sv, EFileKind::Other},     // Musepack, stream version 7
    {0, "OFR "sv, EFileKind::Other},    // OptimFROG
    {0, "DSD "sv, EFileKind::Other},    // DSF
    {0, "FRM8"sv, EFileKind::Other},    // DSDIFF
    {0, ".RMF"sv, EFileKind::Other},    // RealMedia
    {0, ".ra\xFD"sv, EFileKind::Other}, // RealAudio
    {0, "#!AMR"sv, EFileKind::Other},
    {0, "MThd"sv, EFileKind::Other},             // MIDI
    {0, "FLV\x01"sv, EFileKind::Other},          // Flash video
    {0, "\x0B\x77"sv, EFileKind::Other},         // AC-3
    {0, "\x7F\xFE\x80\x01"sv, EFileKind::Other}, // DTS
    {0, "\x00\x00\x01\xBA"sv, EFileKind::Other}, // MPEG programme stream
});

bool HasMark(std::span<std::uint8_t const> head, CMark const& mark) {
    return head.size() >= mark.m_nPlace + mark.m_sBytes.size() &&
           std::ranges::equal(head.subspan(mark.m_nPlace, mark.m_sBytes.size()), mark.m_sBytes,
                              [](std::uint8_t byte, char letter) {
                                  return byte == static_cast<std::uint8_t>(letter);
                              });
}

/// True for a header of a layer III frame without a bit rate.
bool IsFreeFormatHeader(std::span<std::uint8_t const> bytes) {
    // Standard: ISO/IEC 11172-3, section 2.4.2.3: sync, version, layer, bit rate, sample rate.
    constexpr unsigned kReservedVersion = 1;
    constexpr unsigned kLayer3 = 1;
    constexpr unsigned kReservedRate = 3;
    return bytes[0] == 0xFF && (bytes[1] & 0xE0U) == 0xE0U &&
           ((bytes[1] >> 3U) & 3U) != kReservedVersion && ((bytes[1] >> 1U) & 3U) == kLayer3 &&
           (bytes[2] >> 4U) == 0 && ((bytes[2] >> 2U) & 3U) != kReservedRate;
}

/// True when `head` begins with a frame of free format and a second one like it follows.
bool IsFreeFormat(std::span<std::uint8_t const> head) {
    constexpr std::size_t kHeaderBytes = 4;
    constexpr std::size_t kShortestFrame = 24; // Derived: 72 x 8000 / 24000, header included.
    constexpr std::uint8_t kPaddingBit = 2;
    if (head.size() < kHeaderBytes || !IsFreeFormatHeader(head)) {
        return false;
    }
    for (std::size_t i = kShortestFrame; i + kHeaderBytes <= head.size(); ++i) {
        if (head[i] == head[0] && head[i + 1] == head[1] &&
            (head[i + 2] | kPaddingBit) == (head[2] | kPaddingBit)) {
            return true;
        }
    }
    return false;
}

} // namespace

EFileKind FileKindOf(std::span<std::uint8_t const> head) {
    auto const* const found =
        std::ranges::find_if(kMarks, [&](CMark const& mark) { return HasMark(head, mark); });
    if (found != kMarks.end()) {
        return found->m_kind;
    }
    return IsFreeFormat(head) ? EFileKind::FreeFormat : EFileKind::Unknown;
}

std::int64_t LeadingTagBytes(std::span<std::uint8_t const> head) {
    // Standard: ID3v2.4.0, section 3.1: four bytes of seven bits each; a footer is as long as a
    // header.
    constexpr std::size_t kHeaderBytes = 10;
    constexpr unsigned kFooterFlag = 0x10;
    if (head.size() < kHeaderBytes || head[0] != 'I' || head[1] != 'D' || head[2] != '3') {
        return 0;
    }
    std::uint32_t size = 0;
    for (std::uint8_t const byte : head.subspan(6, 4)) {
        size = (size << 7U) | (byte & 0x7FU);
    }
    bool const hasFooter = (head[5] & kFooterFlag) != 0;
    return std::int64_t{size} + (hasFooter ? 2 : 1) * std::int64_t{kHeaderBytes};
}
