// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <vector>

class CPfBeatPattern;
class CPfPcmThumbnail;

/// What an analysis has at hand when it is done. Nothing is taken over; no pointer may be null.
struct CTempoSource {
    CPfPcmThumbnail const* m_pEnergy = nullptr;
    CPfPcmThumbnail const* m_pBass = nullptr;
    CPfBeatPattern const* m_pEnergyPattern = nullptr;
    CPfBeatPattern const* m_pBassPattern = nullptr;
    float m_fReportedBpm = 0.0f; // the tempo of the record
    float m_fHeardBpm = 0.0f;    // the tempo before the rule for short clips; 0 for none
};

/// One reading of a song's tempo.
struct CTempoCandidate {
    float m_fBpm = 0.0f;
    std::int32_t m_nTimes = 0; // the reported tempo times m_nTimes over m_nOver is m_fBpm;
    std::int32_t m_nOver = 0;  // both 0 for a tempo that stands in no such ratio to it
    float m_fScore = 0.0f;     // share in the belief, above 0; those of a song add up to 1

    bool operator==(CTempoCandidate const&) const = default;
};

/// The readings of one song.
struct CTempoCandidates {
    /// The likeliest first; equals as they were found. Empty when no tempo is there.
    std::vector<CTempoCandidate> m_vCandidates;
    /// How likely the song has a steady beat at all, 0 to 1; 0 without candidates.
    float m_fConfidence = 0.0f;

    bool operator==(CTempoCandidates const&) const = default;
};

constexpr float kSlowestCandidateBpm = 40.0f; // Fixed: both ends are readings still.
constexpr float kFastestCandidateBpm = 250.0f;

/// The reported tempo; its ratios 2:1, 1:2, 3:2, 2:3, 4:3 and 3:4 as far as they lie between
/// `kSlowestCandidateBpm` and `kFastestCandidateBpm`; the tempo before the rule for short clips, if
/// it lies there too and is another; and up to `kMostRunnersUp` tempos at which the envelopes
/// repeat. Scores come from the model of `TempoModel.h`. Returns: nothing for a reported tempo that
/// is not a positive number, and for envelopes without a rise in them. The same input gives the
/// same bits. Thread: any; nothing is kept.
[[nodiscard]] CTempoCandidates FindTempoCandidates(CTempoSource const& source);
