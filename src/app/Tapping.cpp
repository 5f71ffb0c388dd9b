// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/Tapping.h"

#include "app/Correction.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kLongestSpanSeconds = 3.1; // Derived: 60 / 20 BPM, and a hand's delay.
constexpr double kSnapShare = 0.01;         // Fixed: told in the guide.
constexpr double kDeviationsPerMedian =
    1.4826; // Derived: of a normal distribution, 1 / its third quartile.

/// Median; of two in the middle, their mean. `values` isn't empty.
double Median(std::vector<double> values) {
    std::ranges::sort(values);
    std::size_t const middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2.0;
}

} // namespace

void CTapping::Tap(double seconds) {
    bool const goesOn = !m_vSeconds.empty() && seconds > m_vSeconds.back() &&
                        seconds - m_vSeconds.back() <= kLongestSpanSeconds;
    if (!goesOn) {
        m_vSeconds.clear();
    }
    m_vSeconds.push_back(seconds);
}

std::optional<CTappedTempo> CTapping::Tempo(std::span<double const> readings) const {
    if (m_vSeconds.size() < kFewestTaps) {
        return std::nullopt;
    }
    std::vector<double> spans;
    for (std::size_t i = 1; i < m_vSeconds.size(); ++i) {
        spans.push_back(m_vSeconds[i] - m_vSeconds[i - 1]);
    }
    double const span = Median(spans);
    CTappedTempo tempo;
    tempo.m_dTapped = kMinuteSeconds / span;
    if (!IsTempoInRange(tempo.m_dTapped)) {
        return std::nullopt;
    }
    std::vector<double> deviations = spans;
    for (double& each : deviations) {
        each = std::abs(each - span);
    }
    double const error =
        kDeviationsPerMedian * Median(deviations) / std::sqrt(static_cast<double>(spans.size()));
    tempo.m_dError = tempo.m_dTapped * error / span;
    tempo.m_dBpm = tempo.m_dTapped;
    double nearest = kSnapShare;
    for (double const reading : readings) {
        double const away = std::abs(tempo.m_dTapped - reading) / reading;
        if (reading > 0.0 && away <= nearest) {
            nearest = away;
            tempo.m_dBpm = reading;
        }
    }
    return tempo;
}
