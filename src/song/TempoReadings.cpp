// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// GatherTempoEvidence   onset curves, then what they have in common with themselves
// ListReadings
//   AddRatios           the reported tempo and its simple ratios
//   AddRunnersUp        the most salient tempos that are none of those
//     Refined           their exact place, from eight periods on

#include "engine/envelope/PcmThumbnail.h"
#include "song/PlainMath.h"
#include "song/TempoFeatures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace {

constexpr float kMostLagSeconds =
    8.0f;                           // Tuned: tempo_model; four beats at 40 BPM and two frames over.
constexpr float kSameTempo = 0.03f; // Tuned: tempo_model; nearer ones are one reading.
constexpr int kSalienceSteps = 264; // Derived: 40 to 250 BPM in 1/100 of an octave.
constexpr float kStepOctaves = 0.01f; // Tuned: tempo_model; 0.7 %.
constexpr std::array<float, 5> kBarPeriods = {1.0f, 2.0f, 3.0f, 4.0f, 8.0f}; // Tuned: tempo_model.

struct CRatio {
    std::int32_t m_nTimes;
    std::int32_t m_nOver;
};
constexpr std::array<CRatio, 6> kRatios = {{{2, 1}, {1, 2}, {3, 2}, {2, 3}, {4, 3}, {3, 4}}};

bool IsInRange(float bpm) {
    return bpm >= kSlowestCandidateBpm && bpm <= kFastestCandidateBpm;
}

bool IsListed(std::vector<CTempoReading> const& readings, float bpm) {
    return std::any_of(readings.begin(), readings.end(), [bpm](CTempoReading const& reading) {
        return std::abs(bpm - reading.m_fBpm) < kSameTempo * reading.m_fBpm;
    });
}

void AddRatios(float bpm, std::vector<CTempoReading>* readings) {
    readings->push_back({bpm, 1, 1, -1});
    for (CRatio const& ratio : kRatios) {
        float const other =
            bpm * static_cast<float>(ratio.m_nTimes) / static_cast<float>(ratio.m_nOver);
        if (IsInRange(other)) {
            readings->push_back({other, ratio.m_nTimes, ratio.m_nOver, -1});
        }
    }
}

/// Frames of a period of `bpm`.
float PeriodFrames(CTempoEvidence const& evidence, float bpm) {
    return 60.0f / (bpm * evidence.m_energy.m_fFrameSeconds);
}

/// The lag nearest to `lag`, within a frame and a half, at which the table has its local peak,
/// between frames by the parabola through the peak and its neighbours.
float PeakNear(std::vector<float> const& values, float lag) {
    auto const from = static_cast<std::size_t>(std::max(1.0f, lag - 1.0f));
    auto const to = std::min(values.size(), static_cast<std::size_t>(lag + 2.5f));
    std::size_t best = 0;
    for (std::size_t i = from; i + 1 < to; ++i) {
        if (values[i] > values[i - 1] && values[i] >= values[i + 1] &&
            (best == 0 || values[i] > values[best])) {
            best = i;
        }
    }
    if (best == 0) {
        return lag;
    }
    float const down = values[best] - values[best - 1];
    float const up = values[best] - values[best + 1];
    return static_cast<float>(best) + 0.5f * (down - up) / (down + up);
}

/// `bpm` by the peaks at two, four and eight periods, each of which places the next.
float Refined(CTempoEvidence const& evidence, float bpm) {
    std::vector<float> const& values = evidence.m_energyLikeness.m_whole.Values();
    float period = PeriodFrames(evidence, bpm);
    for (float const periods : {1.0f, 2.0f, 4.0f, 8.0f}) {
        if (period * periods + 3.0f < static_cast<float>(values.size())) {
            period = PeakNear(values, period * periods) / periods;
        }
    }
    return 60.0f / (period * evidence.m_energy.m_fFrameSeconds);
}

/// The local peaks of the salience, the highest first.
std::vector<float> SalientTempos(CTempoEvidence const& evidence) {
    std::vector<float> salience(kSalienceSteps);
    std::vector<float> tempos(kSalienceSteps);
    for (std::size_t i = 0; i < tempos.size(); ++i) {
        tempos[i] = kSlowestCandidateBpm * PlainExp2(static_cast<float>(i) * kStepOctaves);
        salience[i] = Salience(evidence, tempos[i]);
    }
    std::vector<std::size_t> peaks;
    for (std::size_t i = 1; i + 1 < tempos.size(); ++i) {
        if (salience[i] > salience[i - 1] && salience[i] >= salience[i + 1]) {
            peaks.push_back(i);
        }
    }
    std::stable_sort(peaks.begin(), peaks.end(), [&salience](std::size_t a, std::size_t b) {
        return salience[a] > salience[b];
    });
    std::vector<float> found;
    found.reserve(peaks.size());
    for (std::size_t const peak : peaks) {
        found.push_back(tempos[peak]);
    }
    return found;
}

void AddRunnersUp(CTempoEvidence const& evidence, std::vector<CTempoReading>* readings) {
    std::int32_t rank = 0;
    for (float const salient : SalientTempos(evidence)) {
        float const bpm = Refined(evidence, salient);
        if (rank < kMostRunnersUp && IsInRange(bpm) && !IsListed(*readings, bpm)) {
            readings->push_back({bpm, 0, 0, rank});
            ++rank;
        }
    }
}

} // namespace

CTempoEvidence GatherTempoEvidence(CTempoSource const& source) {
    CTempoEvidence evidence;
    evidence.m_energy = MakeOnsetCurve(*source.m_pEnergy);
    evidence.m_bass = MakeOnsetCurve(*source.m_pBass);
    auto const lags =
        std::min(evidence.m_energy.m_vValues.size(),
                 static_cast<std::size_t>(kMostLagSeconds / evidence.m_energy.m_fFrameSeconds));
    evidence.m_energyLikeness = CompareWithItself(evidence.m_energy, lags);
    evidence.m_bassLikeness = CompareWithItself(evidence.m_bass, lags);
    evidence.m_between = Compare(evidence.m_bass, evidence.m_energy, lags / 2);
    return evidence;
}

float Salience(CTempoEvidence const& evidence, float bpm) {
    float const period = PeriodFrames(evidence, bpm);
    float sum = 0.0f;
    for (float const periods : kBarPeriods) {
        sum += evidence.m_energyLikeness.m_whole.At(period * periods) +
               0.5f * evidence.m_bassLikeness.m_whole.At(period * periods);
    }
    return sum;
}

std::vector<CTempoReading> ListReadings(CTempoSource const& source,
                                        CTempoEvidence const& evidence) {
    std::vector<CTempoReading> readings;
    AddRatios(source.m_fReportedBpm, &readings);
    if (IsInRange(source.m_fHeardBpm) && !IsListed(readings, source.m_fHeardBpm)) {
        readings.push_back({source.m_fHeardBpm, 0, 0, -1});
    }
    AddRunnersUp(evidence, &readings);
    return readings;
}
