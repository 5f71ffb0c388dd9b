// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/AttackRises.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::size_t kLookBackHops = 12; // Tuned: beat_model; 9 ms.
constexpr int kDeepestLevels = 140;       // Tuned: beat_model; 53 dB below the loudest.
constexpr std::size_t kLookAheadHops =
    12;                          // Tuned: outside_decoders.py; what a lossy encoder smears
constexpr int kEchoLevels = 48;  // before a stroke is so much below it: 18 dB.
constexpr int kHighestRise = 30; // Tuned: beat_model; 11 dB, the rest counts no more.

} // namespace

std::vector<std::uint8_t> AttackRises(std::span<std::uint8_t const> levels) {
    int const loudest = levels.empty() ? 0 : *std::max_element(levels.begin(), levels.end());
    int const floor = std::max(0, loudest - kDeepestLevels);
    std::vector<std::uint8_t> rises(levels.size(), 0);
    for (std::size_t i = kLookBackHops; i < levels.size(); ++i) {
        int before = floor;
        std::size_t const end = std::min(levels.size(), i + kLookAheadHops);
        for (std::size_t ahead = i; ahead < end; ++ahead) {
            before = std::max(before, levels[ahead] - kEchoLevels);
        }
        for (std::size_t back = 1; back <= kLookBackHops; ++back) {
            before = std::max<int>(before, levels[i - back]);
        }
        rises[i] = static_cast<std::uint8_t>(std::clamp(levels[i] - before, 0, kHighestRise));
    }
    return rises;
}
