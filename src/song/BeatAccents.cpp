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
#include "song/BandStrokes.h"
#include "song/RunningMeans.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kAttackRate = kEngineRateHz / static_cast<double>(kAttackHopSamples);
constexpr double kPitchRate = kEngineRateHz / static_cast<double>(kPitchHopSamples);

constexpr double kAttackReachSeconds = 0.010; // Tuned: beat_model; the rises that belong to a beat.
constexpr double kPitchDelaySeconds = 0.08;   // Derived: two resonators that ring for 60 ms.
constexpr int kDeepestPitchLevels = 96;       // Tuned: beat_model; 36 dB below the loudest.
constexpr std::size_t kBassPitches = 20;      // Fixed: 55 to 165 Hz.
constexpr std::array<double, 3> kSpans = {2.0, 4.0, 8.0}; // Fixed: half beats: 1, 2, 4 beats.
constexpr double kLowestScore = -2.5;                     // Tuned: beat_model; deviations.
constexpr double kHighestScore = 4.0;    // Tuned: beat_model; so that one cymbal isn't all.
constexpr double kLeastDeviation = 1e-6; // Fixed: below it is what rounding leaves.

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
    CBandStrokes const strokes(m_curves.m_vBands);
    for (std::size_t i = 0; i < m_halfBeats.size() && !m_curves.m_vBands.empty(); ++i) {
        double const beat = m_halfBeats[i];
        CBandStroke const stroke = strokes.At(beat);
        auto const during = strokes.Levels().Between(beat * kBandRate, (beat + step) * kBandRate);
        for (std::size_t band = 0; band < kBeatBands; ++band) {
            Put(i, m_nKind + band, stroke.m_rise[band]);
            Put(i, m_nKind + kBeatBands + band, during[band]);
            if (band < 2) {
                Put(i, m_nKind + 2 * kBeatBands + band, stroke.m_top[band]);
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
