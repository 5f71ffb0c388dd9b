// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongCandidates.h"

#include "song/SongProfile.h"

#include <algorithm>
#include <cmath>

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
