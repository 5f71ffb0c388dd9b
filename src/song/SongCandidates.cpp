// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongCandidates.h"

#include "song/SongProfile.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kCloseShare = 0.5f; // Fixed: of the reported reading's score; told in the help.

/// Score of the reported tempo among the readings; 0 when it isn't there.
float ReportedScore(CTempoCandidates const& candidates) {
    for (CTempoCandidate const& reading : candidates.m_vCandidates) {
        if (reading.m_nTimes == reading.m_nOver && reading.m_nTimes != 0) {
            return reading.m_fScore;
        }
    }
    return 0.0f;
}

} // namespace

CTempoCandidates CandidatesOf(CSongProfile const& profile) {
    if (!profile.IsHeard()) {
        return {};
    }
    CPfBeatPattern energyPattern;
    CPfBeatPattern bassPattern;
    (void)profile.m_results.GetBeatPatterns(&energyPattern, &bassPattern);
    CTempoSource source;
    source.m_pEnergy = &profile.m_energy;
    source.m_pBass = &profile.m_bass;
    source.m_pEnergyPattern = &energyPattern;
    source.m_pBassPattern = &bassPattern;
    source.m_fReportedBpm = profile.m_results.GetBpm();
    source.m_fHeardBpm = profile.m_fHeardBpm;
    return FindTempoCandidates(source);
}

CTempoCandidate const* OtherReading(CTempoCandidates const& candidates) {
    auto const other =
        std::ranges::find_if(candidates.m_vCandidates, [](CTempoCandidate const& reading) {
            return reading.m_nTimes != reading.m_nOver || reading.m_nTimes == 0;
        });
    return other != candidates.m_vCandidates.end() ? &*other : nullptr;
}

std::optional<float> DoubtIn(CTempoCandidates const& candidates) {
    CTempoCandidate const* const other = OtherReading(candidates);
    float const reported = ReportedScore(candidates);
    return other != nullptr && other->m_fScore >= kCloseShare * reported
               ? std::optional(other->m_fScore - reported)
               : std::nullopt;
}

double FoldedTempo(double bpm, double slowest, double fastest) {
    constexpr double kOctave = 2.0;
    if (!(bpm > 0.0) || !std::isfinite(bpm)) {
        return bpm;
    }
    while (bpm < slowest) {
        bpm *= kOctave;
    }
    while (bpm > fastest) {
        bpm /= kOctave;
    }
    return bpm;
}
