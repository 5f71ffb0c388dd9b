// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/Utf16.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utf8proc.h>

namespace {

constexpr char32_t kFirstHighSurrogate = 0xD800; // Standard: Unicode, section 3.8.
constexpr char32_t kFirstLowSurrogate = 0xDC00;  // Standard: Unicode, section 3.8.
constexpr char32_t kPastSurrogates = 0xE000;     // Standard: Unicode, section 3.8.
constexpr char32_t kFirstPaired = 0x10000;       // Standard: first code point that takes two units.
constexpr char32_t kReplacement = 0xFFFD;        // Standard: U+FFFD REPLACEMENT CHARACTER.
constexpr char32_t kFirstEscape = 0xDC80;        // Derived: low surrogate + first byte past ASCII.
constexpr char32_t kLastEscape = 0xDCFF;         // Derived: low surrogate + last byte.

bool IsSurrogate(char32_t value) {
    return value >= kFirstHighSurrogate && value < kPastSurrogates;
}

void AppendUnits(std::u16string& out, char32_t codePoint) {
    if (codePoint < kFirstPaired) {
        out += static_cast<char16_t>(codePoint);
        return;
    }
    char32_t const offset = codePoint - kFirstPaired;
    out += static_cast<char16_t>(kFirstHighSurrogate + (offset >> 10U));
    out += static_cast<char16_t>(kFirstLowSurrogate + (offset & 0x3FFU));
}

// Takes one code point from the front of `units`, or one lone surrogate as its own value.
char32_t TakeCodePoint(std::u16string_view& units) {
    char32_t const first = units[0];
    if (first >= kFirstHighSurrogate && first < kFirstLowSurrogate && units.size() > 1) {
        char32_t const second = units[1];
        if (second >= kFirstLowSurrogate && second < kPastSurrogates) {
            units.remove_prefix(2);
            return kFirstPaired + ((first - kFirstHighSurrogate) << 10U) +
                   (second - kFirstLowSurrogate);
        }
    }
    units.remove_prefix(1);
    return first;
}

// Length of the valid UTF-8 sequence at the front of `bytes`, which isn't empty; 0 for none.
std::size_t SequenceLength(std::string_view bytes, char32_t& codePoint) {
    utf8proc_int32_t value = -1;
    // The length is bounded because no sequence is longer than 4 bytes.
    auto const length = static_cast<utf8proc_ssize_t>(bytes.size() < 4 ? bytes.size() : 4);
    utf8proc_ssize_t const taken =
        utf8proc_iterate(reinterpret_cast<utf8proc_uint8_t const*>(bytes.data()), length, &value);
    if (taken <= 0 || value < 0) {
        return 0;
    }
    codePoint = static_cast<char32_t>(value);
    return static_cast<std::size_t>(taken);
}

// Also takes surrogates, for which it writes the three bytes of UTF-8's pattern.
void AppendUtf8(std::string& out, char32_t codePoint) {
    if (IsSurrogate(codePoint)) {
        out += static_cast<char>(0xE0U | (codePoint >> 12U));
        out += static_cast<char>(0x80U | ((codePoint >> 6U) & 0x3FU));
        out += static_cast<char>(0x80U | (codePoint & 0x3FU));
        return;
    }
    std::array<utf8proc_uint8_t, 4> bytes{};
    utf8proc_ssize_t const count =
        utf8proc_encode_char(static_cast<utf8proc_int32_t>(codePoint), bytes.data());
    out.append(reinterpret_cast<char const*>(bytes.data()), static_cast<std::size_t>(count));
}

} // namespace

bool IsUtf8(std::string_view text) {
    return DecodeUtf8(text).has_value();
}

std::optional<std::u16string> DecodeUtf8(std::string_view utf8) {
    std::u16string units;
    units.reserve(utf8.size());
    while (!utf8.empty()) {
        char32_t codePoint = 0;
        std::size_t const length = SequenceLength(utf8, codePoint);
        if (length == 0) {
            return std::nullopt;
        }
        AppendUnits(units, codePoint);
        utf8.remove_prefix(length);
    }
    return units;
}

std::string EncodeUtf8(std::u16string_view units) {
    std::string utf8;
    utf8.reserve(units.size());
    while (!units.empty()) {
        char32_t const codePoint = TakeCodePoint(units);
        AppendUtf8(utf8, IsSurrogate(codePoint) ? kReplacement : codePoint);
    }
    return utf8;
}

std::u16string DecodePath(std::string_view bytes) {
    std::u16string units;
    units.reserve(bytes.size());
    while (!bytes.empty()) {
        char32_t codePoint = 0;
        std::size_t const length = SequenceLength(bytes, codePoint);
        if (length == 0) {
            units +=
                static_cast<char16_t>(kFirstLowSurrogate + static_cast<unsigned char>(bytes[0]));
            bytes.remove_prefix(1);
        } else {
            AppendUnits(units, codePoint);
            bytes.remove_prefix(length);
        }
    }
    return units;
}

std::string EncodePath(std::u16string_view units) {
    std::string bytes;
    bytes.reserve(units.size());
    while (!units.empty()) {
        char32_t const codePoint = TakeCodePoint(units);
        if (codePoint >= kFirstEscape && codePoint <= kLastEscape) {
            bytes += static_cast<char>(codePoint - kFirstLowSurrogate);
        } else {
            AppendUtf8(bytes, codePoint);
        }
    }
    return bytes;
}

std::u16string LowerCase(std::u16string_view units) {
    std::u16string lower;
    lower.reserve(units.size());
    while (!units.empty()) {
        char32_t const codePoint = TakeCodePoint(units);
        AppendUnits(lower, IsSurrogate(codePoint) ? codePoint
                                                  : static_cast<char32_t>(utf8proc_tolower(
                                                        static_cast<utf8proc_int32_t>(codePoint))));
    }
    return lower;
}
