// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/OtherKind.h"

#include <algorithm>
#include <array>
#include <cstring>

bool BeginsWith(std::span<std::uint8_t const> bytes, std::size_t at, std::string_view mark) {
    return bytes.size() >= at + mark.size() &&
           std::memcmp(bytes.data() + at, mark.data(), mark.size()) == 0;
}

bool IsOfOtherKind(std::span<std::uint8_t const> bytes) {
    using namespace std::string_view_literals;
    // Sound and film, then archives and disks, programs, pages and mail.
    constexpr std::array kStarts = {
        "RIFF"sv,
        "RIFX"sv,
        "RF64"sv,
        "FORM"sv,
        "riff"sv,
        "OggS"sv,
        "fLaC"sv,
        "caff"sv,
        "FLV\x01"sv,
        "\x30\x26\xB2"sv,
        "\x1A\x45\xDF"sv,
        "\x00\x00\x01"sv,
        "MThd"sv,
        "PK"sv,
        "Rar!"sv,
        "7z\xBC\xAF"sv,
        "BZh"sv,
        "\x1F\x8B"sv,
        "\xFD"
        "7zXZ"sv,
        "\x28\xB5\x2F\xFD"sv,
        "070701"sv,
        "070702"sv,
        "070707"sv,
        "!<arch>\n"sv,
        "MSCF"sv,
        "ITSF"sv,
        "\xD0\xCF\x11\xE0"sv,
        "SQLite format 3"sv,
        "\x01"
        "CD001"sv,
        "MZ"sv,
        "\x7F"
        "ELF"sv,
        "#!"sv,
        "\xCA\xFE\xBA\xBE"sv,
        "\xCF\xFA\xED\xFE"sv,
        "\xCE\xFA\xED\xFE"sv,
        "%PDF"sv,
        "<!DOCTYPE"sv,
        "<!doctype"sv,
        "<html"sv,
        "<HTML"sv,
        "<?xml"sv,
        "<!--"sv,
        "From "sv,
        "From: "sv,
        "Return-Path: "sv,
        "Received: "sv,
        "MIME-Version: "sv,
    };
    constexpr std::size_t kArchiveMarkOffset = 257; // Standard: POSIX, ustar interchange format.
    constexpr std::size_t kBoxSizeBytes = 4;        // Standard: ISO/IEC 14496-12, section 4.2.
    // Standard: ISO/IEC 14496-12 and the QuickTime file format: boxes that may come first.
    constexpr std::array kBoxes = {"ftyp"sv, "moov"sv, "mdat"sv, "free"sv,
                                   "skip"sv, "wide"sv, "pnot"sv, "uuid"sv};
    auto const beginsWith = [&bytes](std::size_t at) {
        return [&bytes, at](std::string_view mark) { return BeginsWith(bytes, at, mark); };
    };
    // A box's mark follows its size of four bytes, of which zeros may have been passed over.
    bool isBox = false;
    for (std::size_t at = 1; at <= kBoxSizeBytes; ++at) {
        isBox = isBox || std::ranges::any_of(kBoxes, beginsWith(at));
    }
    return isBox || std::ranges::any_of(kStarts, beginsWith(0)) ||
           BeginsWith(bytes, kArchiveMarkOffset, "ustar");
}
