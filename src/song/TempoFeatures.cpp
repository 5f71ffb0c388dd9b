// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// ReadingFeatures
//   AddLikeness    what the curves have in common with themselves at fractions and multiples of
//                  the period
//   AddContrasts   which of those outweigh which
//   AddTempo       where the tempo lies
//   AddDensity     onsets a beat
//   AddOrigin      which ratio or runner-up the reading is
//   AddAccents     how the beats of the reported tempo differ
//   AddCharacter   the kind of song, leaning towards slow or fast
// SongFeatures     how clear, how high and how steady the first candidate's repetition is

#include "song/TempoFeatures.h"

#include "engine/beats/BeatPattern.h"
#include "song/PlainMath.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace {

using FeatureList = std::vector<float>;

// Tuned: tempo_model. Periods at which the curves are compared.
constexpr std::array<float, 16> kLagPeriods = {
    1.0f / 8, 1.0f / 6, 1.0f / 4, 1.0f / 3, 1.0f / 2, 2.0f / 3, 3.0f / 4, 1.0f,
    4.0f / 3, 3.0f / 2, 2.0f,     3.0f,     4.0f,     5.0f,     6.0f,     8.0f};
constexpr std::array<float, 8> kBetweenPeriods = {1.0f / 4, 1.0f / 3, 1.0f / 2, 1.0f,
                                                  3.0f / 2, 2.0f,     3.0f,     4.0f};
constexpr int kTempoHats = 12;         // Derived: 40 to 250 BPM in quarters of an octave.
constexpr float kTempoHat = 0.25f;     // Tuned: tempo_model; octaves.
constexpr int kDensityHats = 8;        // Tuned: tempo_model.
constexpr float kDensityFirst = -0.5f; // Tuned: tempo_model; octaves of onsets a beat.
constexpr float kDensityHat = 0.5f;    // Tuned: tempo_model; octaves.
constexpr float kMiddleBpm = 100.0f;   // Fixed: where a song's character leans to neither side.
constexpr std::array<std::int32_t, 7> kTimes = {1, 2, 1, 3, 2, 4, 3};
constexpr std::array<std::int32_t, 7> kOver = {1, 1, 2, 2, 3, 3, 4};

/// `count` numbers of which the two around x share 1 by nearness; the ends stand for all beyond.
void AddHats(float x, float first, float width, int count, FeatureList* out) {
    float const place = std::clamp((x - first) / width, 0.0f, static_cast<float>(count - 1));
    for (int i = 0; i < count; ++i) {
        out->push_back(std::max(0.0f, 1.0f - std::abs(place - static_cast<float>(i))));
    }
}

void AddLikeness(CTempoEvidence const& evidence, float period, FeatureList* out) {
    for (float const periods : kLagPeriods) {
        out->push_back(evidence.m_energyLikeness.m_whole.At(period * periods));
    }
    for (float const periods : kLagPeriods) {
        out->push_back(evidence.m_bassLikeness.m_whole.At(period * periods));
    }
    for (float const periods : kBetweenPeriods) {
        out->push_back(evidence.m_between.At(period * periods));
    }
}

void AddContrasts(CLagTable const& table, float period, FeatureList* out) {
    float const half = table.At(period / 2.0f);
    float const third = table.At(period / 3.0f);
    float const one = table.At(period);
    float const two = table.At(period * 2.0f);
    float const three = table.At(period * 3.0f);
    float const four = table.At(period * 4.0f);
    out->push_back(std::max(0.0f, half - third));
    out->push_back(std::max(0.0f, third - half));
    out->push_back(std::max(0.0f, one - half));
    out->push_back(std::max(0.0f, two - one));
    out->push_back(std::max(0.0f, three - two));
    out->push_back(std::min(std::min(one, two), four));
    out->push_back(std::min(one, three));
}

void AddTempo(float bpm, FeatureList* out) {
    AddHats(PlainLog2(bpm / kSlowestCandidateBpm), 0.0f, kTempoHat, kTempoHats, out);
}

void AddDensity(COnsetCurve const& curve, float bpm, FeatureList* out) {
    float const perBeat = curve.m_fOnsetsPerSecond * 60.0f / bpm;
    AddHats(PlainLog2(perBeat), kDensityFirst, kDensityHat, kDensityHats, out);
}

void AddOrigin(CTempoReading const& reading, FeatureList* out) {
    for (std::size_t i = 0; i < kTimes.size(); ++i) {
        bool const is = reading.m_nTimes == kTimes[i] && reading.m_nOver == kOver[i];
        out->push_back(is ? 1.0f : 0.0f);
    }
    for (std::int32_t rank = 0; rank < kMostRunnersUp; ++rank) {
        out->push_back(reading.m_nRank == rank ? 1.0f : 0.0f);
    }
}

/// Of a pattern of eight steps: what the beats have more than the steps between, and what the
/// louder pair of beats has more than the other; both over the sum. 0 for other patterns.
std::array<float, 2> Accents(CPfBeatPattern const& pattern) {
    float const outer = pattern.GetValue(0) + pattern.GetValue(4);
    float const inner = pattern.GetValue(2) + pattern.GetValue(6);
    float const between =
        pattern.GetValue(1) + pattern.GetValue(3) + pattern.GetValue(5) + pattern.GetValue(7);
    float const sum = outer + inner + between;
    if (pattern.GetCount() != 8 || !(sum > 0.0f) || !std::isfinite(sum)) {
        return {0.0f, 0.0f};
    }
    return {(outer + inner - between) / sum, std::abs(outer - inner) / sum};
}

/// The accents where the reading is the reported tempo, its double or its half; else 0.
void AddAccents(CTempoSource const& source, CTempoReading const& reading, FeatureList* out) {
    for (CPfBeatPattern const* pattern : {source.m_pEnergyPattern, source.m_pBassPattern}) {
        for (float const accent : Accents(*pattern)) {
            for (std::size_t i = 0; i < 3; ++i) {
                bool const is = reading.m_nTimes == kTimes[i] && reading.m_nOver == kOver[i];
                out->push_back(is ? accent : 0.0f);
            }
        }
    }
}

void AddCharacter(CTempoEvidence const& evidence, float bpm, FeatureList* out) {
    float const lean = PlainLog2(bpm / kMiddleBpm);
    out->push_back(lean * (evidence.m_energy.m_fPeakiness - 1.5f));
    out->push_back(lean * (evidence.m_bass.m_fPeakiness - 1.5f));
    out->push_back(lean * PlainLog2(std::max(0.25f, evidence.m_energy.m_fOnsetsPerSecond) / 4.0f));
    out->push_back(lean * PlainLog2(std::max(0.25f, evidence.m_bass.m_fOnsetsPerSecond) / 2.0f));
    out->push_back(lean * (evidence.m_between.At(0.0f) - 0.5f));
}

/// Highest value of the table at lags of a period of 40 to 250 BPM, and its lag.
std::array<float, 2> HighestBeat(CLagTable const& table, float frameSeconds) {
    auto const first = static_cast<std::size_t>(60.0f / (kFastestCandidateBpm * frameSeconds));
    auto const end =
        std::min(table.Values().size(),
                 static_cast<std::size_t>(60.0f / (kSlowestCandidateBpm * frameSeconds)));
    std::array<float, 2> highest = {0.0f, 0.0f};
    for (std::size_t lag = first; lag < end; ++lag) {
        if (table.Values()[lag] > highest[0]) {
            highest = {table.Values()[lag], static_cast<float>(lag)};
        }
    }
    return highest;
}

} // namespace

std::vector<float> ReadingFeatures(CTempoSource const& source, CTempoEvidence const& evidence,
                                   CTempoReading const& reading) {
    FeatureList features;
    float const period = 60.0f / (reading.m_fBpm * evidence.m_energy.m_fFrameSeconds);
    AddLikeness(evidence, period, &features);
    AddContrasts(evidence.m_energyLikeness.m_whole, period, &features);
    AddContrasts(evidence.m_bassLikeness.m_whole, period, &features);
    AddTempo(reading.m_fBpm, &features);
    AddDensity(evidence.m_energy, reading.m_fBpm, &features);
    AddDensity(evidence.m_bass, reading.m_fBpm, &features);
    AddOrigin(reading, &features);
    AddAccents(source, reading, &features);
    AddCharacter(evidence, reading.m_fBpm, &features);
    return features;
}

std::vector<float> SongFeatures(CTempoEvidence const& evidence, CTempoCandidate const& first) {
    CLagTable const& energy = evidence.m_energyLikeness.m_whole;
    CLagTable const& bass = evidence.m_bassLikeness.m_whole;
    float const period = 60.0f / (first.m_fBpm * evidence.m_energy.m_fFrameSeconds);
    float steady = 0.0f;
    float highest = 0.0f;
    for (CLagTable const& part : evidence.m_energyLikeness.m_vParts) {
        steady += part.At(period * 2.0f) + part.At(period * 4.0f);
        highest += HighestBeat(part, evidence.m_energy.m_fFrameSeconds)[0];
    }
    constexpr auto kParts = static_cast<float>(kCurveParts);
    return {first.m_fScore,
            energy.At(period),
            energy.At(period * 2.0f),
            energy.At(period * 4.0f),
            energy.At(period * 8.0f),
            bass.At(period),
            bass.At(period * 4.0f),
            HighestBeat(energy, evidence.m_energy.m_fFrameSeconds)[0],
            steady / kParts,
            highest / kParts,
            evidence.m_energy.m_fPeakiness,
            evidence.m_bass.m_fPeakiness,
            PlainLog2(std::max(0.25f, evidence.m_energy.m_fOnsetsPerSecond))};
}
