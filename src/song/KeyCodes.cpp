// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/KeyCodes.h"

namespace {

constexpr std::int32_t kSemitonesToRelative = 3; // Standard: a minor key's relative lies above it.
constexpr std::int32_t kFifth = 7;               // Standard: semitones.
constexpr std::int32_t kCamelotOfC = 8;          // Standard: Camelot's number of C major.

/// Fifths from C major up to the key, or to its relative major key, 0 to 11.
std::int32_t FifthsFromC(CHarmony const& harmony) {
    bool const minor = harmony.m_eMode == EKeyMode::Minor;
    std::int32_t const major = harmony.m_nTonic + (minor ? kSemitonesToRelative : 0);
    return major * kFifth % 12; // a fifth's inverse modulo 12 is itself
}

} // namespace

std::string CamelotCode(CHarmony const& harmony) {
    if (harmony.m_eMode == EKeyMode::None) {
        return {};
    }
    std::int32_t const number = (FifthsFromC(harmony) + kCamelotOfC - 1) % 12 + 1;
    return std::to_string(number) + (harmony.m_eMode == EKeyMode::Minor ? "A" : "B");
}

std::string OpenKeyCode(CHarmony const& harmony) {
    if (harmony.m_eMode == EKeyMode::None) {
        return {};
    }
    return std::to_string(FifthsFromC(harmony) + 1) +
           (harmony.m_eMode == EKeyMode::Minor ? "m" : "d");
}
