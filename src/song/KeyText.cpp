// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/KeyText.h"

#include <array>

std::string KeyText(std::uint16_t tonic, std::uint16_t mode) {
    // Standard: ID3v2.3.0, section 4.2.1, TKEY; each key by its usual name of the two.
    constexpr std::array<char const*, 12> kMinor = {"Cm",  "C#m", "Dm",  "Ebm", "Em",  "Fm",
                                                    "F#m", "Gm",  "G#m", "Am",  "Bbm", "Bm"};
    constexpr std::array<char const*, 12> kMajor = {"C",  "Db", "D",  "Eb", "E",  "F",
                                                    "F#", "G",  "Ab", "A",  "Bb", "B"};
    if (tonic >= kMinor.size() || (mode != 1 && mode != 2)) {
        return {};
    }
    return mode == 1 ? kMinor[tonic] : kMajor[tonic];
}
