// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/OnsetCurve.h"
#include "song/TempoCandidates.h"

#include <vector>

/// Tempos that the envelopes themselves propose, besides the reported one and its ratios.
constexpr int kMostRunnersUp = 3;

/// What the scores are worked out from: the onset curves of both envelopes and their likenesses.
struct CTempoEvidence {
    COnsetCurve m_energy;
    COnsetCurve m_bass;
    CSelfLikeness m_energyLikeness;
    CSelfLikeness m_bassLikeness;
    CLagTable m_between; // bass against energy
};
[[nodiscard]] CTempoEvidence GatherTempoEvidence(CTempoSource const& source);

/// A candidate before it has a score; `m_nRank` is its place among the runners-up, or -1.
struct CTempoReading {
    float m_fBpm = 0.0f;
    std::int32_t m_nTimes = 0;
    std::int32_t m_nOver = 0;
    std::int32_t m_nRank = -1;
};

/// Every reading of the song, the reported tempo first.
[[nodiscard]] std::vector<CTempoReading> ListReadings(CTempoSource const& source,
                                                      CTempoEvidence const& evidence);

/// How much the envelopes repeat after one to eight periods of a tempo.
[[nodiscard]] float Salience(CTempoEvidence const& evidence, float bpm);

/// The numbers that a reading is scored by, always as many; docs/song/TempoCandidates.md has the
/// list.
[[nodiscard]] std::vector<float> ReadingFeatures(CTempoSource const& source,
                                                 CTempoEvidence const& evidence,
                                                 CTempoReading const& reading);

/// The numbers that the confidence is worked out from, given the first candidate.
[[nodiscard]] std::vector<float> SongFeatures(CTempoEvidence const& evidence,
                                              CTempoCandidate const& first);
