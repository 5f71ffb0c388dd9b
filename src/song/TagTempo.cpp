// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/TagTempo.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace {

// Fixed: what a tempo times 10 or 100 must come to.
constexpr double kSlowestScaledBpm = 40.0;
constexpr double kFastestScaledBpm = 250.0;

constexpr double kLargest = 1e9; // Fixed: a number beyond it is none.

bool IsScaled(double bpm) {
    return bpm >= kSlowestScaledBpm && bpm <= kFastestScaledBpm;
}

/// The number at the front of `text`; 0 when there is none.
double NumberAt(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    std::string number(text.substr(0, text.find_first_not_of("0123456789.,")));
    if (std::size_t const comma = number.find(','); comma != std::string::npos) {
        number[comma] = '.';
    }
    double value = 0.0;
    (void)std::from_chars(number.data(), number.data() + number.size(), value,
                          std::chars_format::fixed);
    return value <= kLargest ? value : 0.0;
}

} // namespace

CTagTempo JudgeTagTempo(std::string_view text) {
    double const value = NumberAt(text);
    if (!(value > 0.0)) {
        return {};
    }
    if (value >= kSlowestTagBpm && value <= kFastestTagBpm) {
        return {ETagTempo::Plain, value};
    }
    if (value > kFastestTagBpm && IsScaled(value / 10.0)) {
        return {ETagTempo::TimesTen, value / 10.0};
    }
    if (value > kFastestTagBpm && IsScaled(value / 100.0)) {
        return {ETagTempo::TimesHundred, value / 100.0};
    }
    return {ETagTempo::Unlikely, value};
}
