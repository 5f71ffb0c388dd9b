// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/TempoText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

std::string TempoText(double bpm) {
    constexpr int kDecimals = 2;
    std::array<char, 400> text{}; // Derived: the largest double has 309 digits before the point.
    char* const end = std::to_chars(text.data(), text.data() + text.size(), bpm,
                                    std::chars_format::fixed, kDecimals)
                          .ptr;
    return {text.data(), end};
}

std::string RoundedTempo(double bpm, int decimals) {
    constexpr std::int64_t kUnits[] = {100, 10, 1}; // hundredths in a last decimal
    constexpr std::int64_t kScales[] = {1, 10, 100};
    auto const index = static_cast<std::size_t>(std::clamp(decimals, 0, 2));
    std::int64_t const units = (std::llround(bpm * 100.0) + kUnits[index] / 2) / kUnits[index];
    std::string text = std::to_string(units / kScales[index]);
    if (index > 0) {
        std::string const fraction = std::to_string(units % kScales[index] + kScales[index]);
        text += '.';
        text.append(fraction, 1); // behind the 1 that keeps its zeros
    }
    return text;
}

double LeadingNumber(CString const& text) {
    std::string const bytes = text.ToUtf8();
    char const* first = bytes.data();
    char const* last = first + bytes.size();
    first += std::min(bytes.find_first_not_of(" \t\n\r\f\v"), bytes.size());
    bool const isNegative = first != last && *first == '-';
    if (isNegative || (first != last && *first == '+')) {
        ++first;
    }
    // Neither a second sign nor words such as "inf" and "nan" are a number here.
    double value = 0.0;
    if (std::string_view(first, last).find_first_of("0123456789.") == 0) {
        std::from_chars(first, last, value);
    }
    return isNegative ? -value : value;
}
