// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// AccentsOf
//   AddAttacks       what sets in, of all and of each band
//   AddLoudness      how loud each band is until the next half beat
//   AddChanges       how much the pitches after a half beat differ from those before it
//   Standardise      mean 0, deviation 1

#include "song/BeatFeatures.h"

#include "base/EngineRate.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kRate = kEngineRateHz;
constexpr double kAttackRate = kRate / static_cast<double>(kAttackHopSamples);
constexpr double kBandRate = kRate / static_cast<double>(kBandHopSamples);
constexpr double kPitchRate = kRate / static_cast<double>(kPitchHopSamples);

constexpr double kAttackReachSeconds = 0.010; // Tuned: beat_model; the rises that belong to a beat.
constexpr double kBeforeSeconds = 0.046;      // Tuned: beat_model; what a band rises from,
constexpr double kGuardSeconds = 0.005;       // Tuned: beat_model; up to so much before the beat.
constexpr std::size_t kPeakHops = 10;         // Tuned: beat_model; 58 ms for a band to rise.
constexpr double kPitchDelaySeconds = 0.08;   // Derived: two resonators that ring for 60 ms.
constexpr int kDeepestBandLevels = 120;       // Tuned: beat_model; 45 dB below the loudest.
constexpr int kDeepestPitchLevels = 96;       // Tuned: beat_model; 36 dB below the loudest.
constexpr std::size_t kBassPitches = 20;      // Fixed: 55 to 165 Hz.
constexpr std::array<double, 3> kSpans = {2.0, 4.0, 8.0}; // Fixed: half beats: 1, 2, 4 beats.
constexpr double kLowestScore = -2.5;                     // Tuned: beat_model; deviations.
constexpr double kHighestScore = 4.0;    // Tuned: beat_model; so that one cymbal isn't all.
constexpr double kLeastDeviation = 1e-6; // Fixed: below it is what rounding leaves.

/// Mean of a row of levels between any two moments, from running sums.
template <std::size_t Width>
class CRunningMeans {
public:
    using CRow = std::array<double, Width>;

    /// `levels` less `floor`, and no less than 0. Nothing is kept of them.
    template <typename Rows>
    CRunningMeans(Rows const& levels, std::array<int, Width> const& floor) {
        m_vSums.reserve(levels.size() + 1);
        m_vSums.emplace_back();
        for (auto const& row : levels) {
            auto& sums = m_vSums.emplace_back(m_vSums.back());
            for (std::size_t i = 0; i < Width; ++i) {
                sums[i] += static_cast<std::uint32_t>(std::max(0, row[i] - floor[i]));
            }
        }
    }

    /// From row `from` up to but without row `to`, both rounded; the nearest row where that is
    /// none.
    [[nodiscard]] CRow Between(double from, double to) const {
        std::size_t const count = m_vSums.size() - 1;
        std::size_t const first = Held(from, count > 0 ? count - 1 : 0);
        std::size_t const end = std::max(Held(to, count), std::min(first + 1, count));
        CRow means{};
        for (std::size_t i = 0; i < Width; ++i) {
            means[i] = static_cast<double>(m_vSums[end][i] - m_vSums[first][i]) /
                       static_cast<double>(std::max<std::size_t>(1, end - first));
        }
        return means;
    }

private:
    static std::size_t Held(double place, std::size_t last) {
        double const held = std::clamp(std::floor(place + 0.5), 0.0, static_cast<double>(last));
        return static_cast<std::size_t>(held);
    }

    std::vector<std::array<std::uint32_t, Width>> m_vSums;
};

/// The loudest of each column.
template <std::size_t Width>
std::array<int, Width> Loudest(std::vector<std::array<std::uint8_t, Width>> const& rows) {
    std::array<int, Width> loudest{};
    for (auto const& row : rows) {
        for (std::size_t i = 0; i < Width; ++i) {
            loudest[i] = std::max<int>(loudest[i], row[i]);
        }
    }
    return loudest;
}

/// 1 less the cosine of the angle between two rows, from `first` up to `end`; 0 for silence.
template <typename Row>
double Turned(Row const& a, Row const& b, std::size_t end) {
    double product = 0.0;
    double before = 0.0;
    double after = 0.0;
    for (std::size_t i = 0; i < end; ++i) {
        product += a[i] * b[i];
        before += a[i] * a[i];
        after += b[i] * b[i];
    }
    double const scale = std::sqrt(before * after);
    return scale > 0.0 ? 1.0 - product / scale : 0.0;
}

/// Writes one kind of accent after the other into all half beats.
class CAccentTable {
public:
    CAccentTable(CBeatCurves const& curves, std::span<double const> halfBeats)
        : m_curves(curves), m_halfBeats(halfBeats), m_vAccents(halfBeats.size()) {}

    void AddAttacks(std::span<std::uint8_t const> rises);
    void AddBands(double step);
    void AddChanges(double step);
    std::vector<CBeatAccents> Standardised();

private:
    void Put(std::size_t beat, std::size_t kind, double value) { m_vAccents[beat][kind] = value; }

    CBeatCurves const& m_curves;
    std::span<double const> m_halfBeats;
    std::vector<CBeatAccents> m_vAccents;
    std::size_t m_nKind = 0; // the next
};

void CAccentTable::AddAttacks(std::span<std::uint8_t const> rises) {
    std::vector<std::array<std::uint8_t, 1>> rows;
    for (std::uint8_t const rise : rises) {
        rows.push_back({rise});
    }
    CRunningMeans<1> const means(rows, {0});
    for (std::size_t i = 0; i < m_halfBeats.size(); ++i) {
        double const from = (m_halfBeats[i] - kAttackReachSeconds) * kAttackRate;
        double const to = (m_halfBeats[i] + kAttackReachSeconds) * kAttackRate;
        Put(i, m_nKind, std::sqrt(means.Between(from, to)[0]));
    }
    ++m_nKind;
}

void CAccentTable::AddBands(double step) {
    auto floor = Loudest(m_curves.m_vBands);
    for (int& level : floor) {
        level = std::max(0, level - kDeepestBandLevels);
    }
    CRunningMeans<kBeatBands> const means(m_curves.m_vBands, floor);
    auto const rows = static_cast<double>(m_curves.m_vBands.size());
    for (std::size_t i = 0; i < m_halfBeats.size() && rows > 0.0; ++i) {
        double const beat = m_halfBeats[i];
        auto const before =
            means.Between((beat - kBeforeSeconds) * kBandRate, (beat - kGuardSeconds) * kBandRate);
        auto const during = means.Between(beat * kBandRate, (beat + step) * kBandRate);
        double const first = std::floor((beat - kGuardSeconds) * kBandRate + 0.5);
        for (std::size_t band = 0; band < kBeatBands; ++band) {
            int peak = 0;
            for (std::size_t hop = 0; hop < kPeakHops; ++hop) {
                double const row = std::clamp(first + static_cast<double>(hop), 0.0, rows - 1.0);
                peak = std::max<int>(peak, m_curves.m_vBands[static_cast<std::size_t>(row)][band]);
            }
            double const top = std::max(0, peak - floor[band]);
            Put(i, m_nKind + band, std::max(0.0, top - before[band]));
            Put(i, m_nKind + kBeatBands + band, during[band]);
            if (band < 2) {
                Put(i, m_nKind + 2 * kBeatBands + band, top);
            }
        }
    }
    m_nKind += 2 * kBeatBands + 2;
}

void CAccentTable::AddChanges(double step) {
    auto const tops = Loudest(m_curves.m_vPitches);
    std::array<int, kBeatPitches> floor{};
    floor.fill(std::max(0, *std::max_element(tops.begin(), tops.end()) - kDeepestPitchLevels));
    CRunningMeans<kBeatPitches> const pitches(m_curves.m_vPitches, floor);
    for (double const span : kSpans) {
        for (std::size_t i = 0; i < m_halfBeats.size(); ++i) {
            double const beat = m_halfBeats[i] + kPitchDelaySeconds;
            auto const after =
                pitches.Between(beat * kPitchRate, (beat + span * step) * kPitchRate);
            auto const before =
                pitches.Between((beat - span * step) * kPitchRate, beat * kPitchRate);
            Put(i, m_nKind, Turned(after, before, kBeatPitches));
            Put(i, m_nKind + 1, Turned(after, before, kBassPitches));
        }
        m_nKind += 2;
    }
    CRunningMeans<kBeatBands> const bands(m_curves.m_vBands, {});
    double const span = kSpans.back() * step;
    for (std::size_t i = 0; i < m_halfBeats.size(); ++i) {
        double const beat = m_halfBeats[i];
        auto const after = bands.Between(beat * kBandRate, (beat + span) * kBandRate);
        auto const before = bands.Between((beat - span) * kBandRate, beat * kBandRate);
        double change = 0.0;
        for (std::size_t band = 0; band < kBeatBands; ++band) {
            change += std::abs(after[band] - before[band]);
        }
        Put(i, m_nKind, change);
    }
    ++m_nKind;
}

std::vector<CBeatAccents> CAccentTable::Standardised() {
    auto const count = static_cast<double>(m_vAccents.size());
    for (std::size_t kind = 0; kind < kBeatAccents; ++kind) {
        double sum = 0.0;
        double squares = 0.0;
        for (CBeatAccents const& accents : m_vAccents) {
            sum += accents[kind];
        }
        double const mean = sum / count;
        for (CBeatAccents const& accents : m_vAccents) {
            squares += (accents[kind] - mean) * (accents[kind] - mean);
        }
        double const deviation = std::sqrt(squares / count);
        for (CBeatAccents& accents : m_vAccents) {
            accents[kind] =
                deviation > kLeastDeviation
                    ? std::clamp((accents[kind] - mean) / deviation, kLowestScore, kHighestScore)
                    : 0.0;
        }
    }
    return std::move(m_vAccents);
}

} // namespace

std::vector<CBeatAccents> AccentsOf(CBeatCurves const& curves, std::span<std::uint8_t const> rises,
                                    std::span<double const> halfBeats) {
    if (halfBeats.size() < 2) {
        return {};
    }
    double const step =
        (halfBeats.back() - halfBeats.front()) / static_cast<double>(halfBeats.size() - 1);
    CAccentTable table(curves, halfBeats);
    table.AddAttacks(rises);
    table.AddBands(step);
    table.AddChanges(step);
    return table.Standardised();
}
