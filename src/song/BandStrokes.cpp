// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/BandStrokes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace {

constexpr double kBeforeSeconds = 0.046; // Tuned: beat_model; what a band rises from,
constexpr double kGuardSeconds = 0.005;  // Tuned: beat_model; up to so much before the beat.
constexpr std::size_t kPeakHops = 10;    // Tuned: beat_model; 58 ms for a band to rise.
constexpr int kDeepestBandLevels = 120;  // Tuned: beat_model; 45 dB below the loudest.

std::array<int, kBeatBands> FloorOf(CBandRows const& bands) {
    auto floor = Loudest(bands);
    for (int& level : floor) {
        level = std::max(0, level - kDeepestBandLevels);
    }
    return floor;
}

} // namespace

CBandStrokes::CBandStrokes(CBandRows const& bands)
    : m_vBands(bands), m_floor(FloorOf(bands)), m_levels(bands, m_floor) {
}

CBandStroke CBandStrokes::At(double seconds) const {
    CBandStroke stroke;
    if (m_vBands.empty()) {
        return stroke;
    }
    auto const before = m_levels.Between((seconds - kBeforeSeconds) * kBandRate,
                                         (seconds - kGuardSeconds) * kBandRate);
    double const first = std::floor((seconds - kGuardSeconds) * kBandRate + 0.5);
    auto const last = static_cast<double>(m_vBands.size() - 1);
    for (std::size_t band = 0; band < kBeatBands; ++band) {
        int peak = 0;
        for (std::size_t hop = 0; hop < kPeakHops; ++hop) {
            double const row = std::clamp(first + static_cast<double>(hop), 0.0, last);
            peak = std::max<int>(peak, m_vBands[static_cast<std::size_t>(row)][band]);
        }
        stroke.m_top[band] = std::max(0, peak - m_floor[band]);
        stroke.m_rise[band] = std::max(0.0, stroke.m_top[band] - before[band]);
    }
    return stroke;
}

double CBandStrokes::MeanRise(std::span<double const> moments) const {
    double sum = 0.0;
    for (double const moment : moments) {
        auto const rise = At(moment).m_rise;
        sum = std::accumulate(rise.begin(), rise.end(), sum);
    }
    return moments.empty() ? 0.0 : sum / static_cast<double>(moments.size());
}
