// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// FindTempoCandidates
//   GatherTempoEvidence   onset curves and their likenesses
//   ListReadings          every tempo that the song may be read at
//   ScoreReadings         softmax of their weighted features
//   Confidence            logistic of the song's weighted features

#include "song/TempoCandidates.h"

#include "song/PlainMath.h"
#include "song/TempoFeatures.h"
#include "song/TempoModel.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

namespace {

/// Sum of the products in order; `weights` is at least as long as `features`.
float Weighted(std::span<float const> features, std::span<float const> weights) {
    float sum = 0.0f;
    for (std::size_t i = 0; i < features.size(); ++i) {
        sum += features[i] * weights[i];
    }
    return sum;
}

/// The readings with the softmax of `sums` for scores, the highest first.
std::vector<CTempoCandidate> Ranked(std::vector<CTempoReading> const& readings,
                                    std::vector<float> const& sums) {
    float const highest = *std::max_element(sums.begin(), sums.end());
    std::vector<CTempoCandidate> candidates;
    float total = 0.0f;
    for (std::size_t i = 0; i < readings.size(); ++i) {
        // Held so that every score stays above 0.
        float const share = PlainExp2(std::max(-100.0f, (sums[i] - highest) * kLog2E));
        candidates.push_back(
            {readings[i].m_fBpm, readings[i].m_nTimes, readings[i].m_nOver, share});
        total += share;
    }
    for (CTempoCandidate& candidate : candidates) {
        candidate.m_fScore /= total;
    }
    std::stable_sort(
        candidates.begin(), candidates.end(),
        [](CTempoCandidate const& a, CTempoCandidate const& b) { return a.m_fScore > b.m_fScore; });
    return candidates;
}

std::vector<CTempoCandidate> ScoreReadings(CTempoSource const& source,
                                           CTempoEvidence const& evidence) {
    std::vector<CTempoReading> const readings = ListReadings(source, evidence);
    std::vector<float> sums;
    sums.reserve(readings.size());
    for (CTempoReading const& reading : readings) {
        sums.push_back(Weighted(ReadingFeatures(source, evidence, reading), ReadingWeights()));
    }
    return Ranked(readings, sums);
}

float Confidence(CTempoEvidence const& evidence, CTempoCandidate const& first) {
    std::vector<float> const features = SongFeatures(evidence, first);
    std::span<float const> const weights = ConfidenceWeights();
    float const sum = Weighted(features, weights) + weights[features.size()];
    return 1.0f / (1.0f + PlainExp2(-sum * kLog2E));
}

} // namespace

CTempoCandidates FindTempoCandidates(CTempoSource const& source) {
    CTempoCandidates found;
    if (!(source.m_fReportedBpm > 0.0f) || !std::isfinite(source.m_fReportedBpm)) {
        return found;
    }
    CTempoEvidence const evidence = GatherTempoEvidence(source);
    if (evidence.m_energy.m_vValues.empty()) {
        return found;
    }
    found.m_vCandidates = ScoreReadings(source, evidence);
    found.m_fConfidence = Confidence(evidence, found.m_vCandidates.front());
    return found;
}
