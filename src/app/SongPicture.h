// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BeatGrid.h"
#include "song/AnalysisProblem.h"
#include "song/TempoCandidates.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

struct CSongProfile;

constexpr std::size_t kAccentSteps = 8;          // Fixed: half beats of a measure.
constexpr std::int64_t kSamplesPerElement = 256; // Fixed: of the engine's envelopes.

/// What a picture of one song is drawn from. A plain value, some 350 bytes for each second of
/// music. Units: positions in samples at the engine's rate.
struct CSongPicture {
    /// False when there is nothing to see but the reason.
    [[nodiscard]] bool IsHeard() const { return m_outcome.m_problem == EAnalysisProblem::None; }

    [[nodiscard]] double Seconds() const;

    CAnalysisOutcome m_outcome;
    std::int64_t m_nSamples = 0; // length of the song, heard to its end or not
    float m_fBpm = 0.0f;         // 0 when no beat was found
    std::uint16_t m_nTonic = 0;  // pitch class, 0 is C
    std::uint16_t m_nMode = 0;   // of `CPfKeyDetector`

    /// One value for each `kSamplesPerElement` samples, 0 to 255: the root of the share in the
    /// largest, so that quiet passages are seen beside loud ones.
    std::vector<std::uint8_t> m_vEnergy;
    std::vector<std::uint8_t> m_vBass;

    CBeatGrid m_grid;
    std::int64_t m_nIntroEnd = 0;
    std::int64_t m_nOutroStart = 0;
    std::vector<std::int64_t> m_vFades;    // where the song before is turned down by another step
    std::vector<std::int64_t> m_vMixesIn;  // where a mix into this song can begin
    std::vector<std::int64_t> m_vMixesOut; // and one out of it
    std::array<float, kAccentSteps> m_fAccentsA{}; // 0 to 1; all 0 when there are none
    std::array<float, kAccentSteps> m_fAccentsB{};
    std::vector<CTempoCandidate> m_vCandidates; // readings of the tempo, the likeliest first
};

/// Takes from a profile, which must have kept its envelopes and heard the beats, what a picture
/// needs.
[[nodiscard]] CSongPicture MakeSongPicture(CSongProfile profile);
