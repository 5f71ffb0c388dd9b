// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

// Fixed: what is believed of a tag, and taken from a person.
inline constexpr double kSlowestTagBpm = 20.0;
inline constexpr double kFastestTagBpm = 999.0;

/// What a tempo in a tag is worth.
enum class ETagTempo {
    None,     // no number, or one that isn't above 0
    Plain,    // believed
    TimesTen, // the tempo times 10, as some programs store it
    TimesHundred,
    Unlikely, // a number that no song has for its tempo
};

struct CTagTempo {
    ETagTempo m_worth = ETagTempo::None;
    double m_dBpm = 0.0; // what is meant: 128 for 12800; the number as it is when `Unlikely`

    bool operator==(CTagTempo const&) const = default;
};

/// Judges the number that `text` begins with, blanks before it skipped and anything behind it
/// ignored, with a point or a comma before its decimals, whatever the locale. From 20 to 999 it is
/// believed; above that it is a tempo times 10 or 100 if that gives 40 to 250.
CTagTempo JudgeTagTempo(std::string_view text);
