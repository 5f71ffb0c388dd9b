// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongFacts.h"

#include "base/Rounding.h"
#include "engine/notes/KeyDetector.h"
#include "song/SongProfile.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kTopLevel = 255.0;              // Fixed: the largest of a byte.
constexpr double kMicroseconds = 1e6;            // Standard: in a second.
constexpr std::int64_t kSamplesPerElement = 256; // Fixed: of an envelope.

std::vector<std::int64_t> ListOf(CProfileResults::CPositions const& positions) {
    return {positions.begin(), positions.end()};
}

CHarmony KeyOf(CProfileResults const& results) {
    std::uint16_t tonic = 0;
    std::uint16_t mode = 0;
    results.GetKey(&tonic, &mode);
    CHarmony key;
    if (mode == CPfKeyDetector::kMinor || mode == CPfKeyDetector::kMajor) {
        key.m_eMode = mode == CPfKeyDetector::kMinor ? EKeyMode::Minor : EKeyMode::Major;
        key.m_nTonic = tonic;
    }
    return key;
}

CEnginePositions PositionsOf(CSongProfile const& profile) {
    CProfileResults const& results = profile.m_results;
    return {.m_vGrid = profile.m_beatSource.m_vPoints,
            .m_vMarks = ListOf(results.GetMeasMarks()),
            .m_nIntroEnd = results.GetIntroEnd(),
            .m_nOutroStart = results.GetOutroStart(),
            .m_vFades = ListOf(results.GetIntroFadePoints()),
            .m_vIntroMixes = ListOf(results.GetIntroSprockets()),
            .m_vOutroMixes = ListOf(results.GetOutroSprockets())};
}

float Finite(float value) {
    return std::isfinite(value) ? std::max(value, 0.0f) : 0.0f;
}

} // namespace

CLevels LevelsOf(std::span<float const> values, std::int64_t samplesEach) {
    CLevels levels;
    levels.m_nSamples = samplesEach;
    levels.m_vLevels.reserve(values.size());
    for (float const value : values) {
        levels.m_fTop = std::max(levels.m_fTop, Finite(value));
    }
    for (float const value : values) {
        float const share = levels.m_fTop > 0.0f ? Finite(value) / levels.m_fTop : 0.0f;
        double const level = static_cast<double>(share) * kTopLevel;
        levels.m_vLevels.push_back(static_cast<std::uint8_t>(RoundHalfUpToUint32(level)));
    }
    return levels;
}

CSongFacts FactsOf(CSongProfile const& profile, bool keepsEnvelopes) {
    CSongFacts facts;
    CProfileResults const& results = profile.m_results;
    facts.m_nFrames = results.GetSampleCount();
    facts.m_fBpm = Finite(results.GetBpm());
    facts.m_fHeardBpm = Finite(profile.m_fHeardBpm);
    facts.m_key = KeyOf(results);
    facts.m_harmony = profile.m_harmony.value_or(CHarmony());
    facts.m_beats = profile.m_beats;
    for (CBeatTime& beat : facts.m_beats.m_vHalfBeats) {
        beat.m_dSeconds = std::round(beat.m_dSeconds * kMicroseconds) / kMicroseconds;
    }
    CPfBeatPattern energyPattern;
    CPfBeatPattern bassPattern;
    (void)results.GetBeatPatterns(&energyPattern, &bassPattern);
    facts.m_vEnergyAccents = energyPattern.GetWeights();
    facts.m_vBassAccents = bassPattern.GetWeights();
    facts.m_positions = PositionsOf(profile);
    facts.m_print = {.m_nMicroseconds = profile.m_pPrint->GetTime(),
                     .m_vValues = profile.m_pPrint->GetValues()};
    facts.m_opening = LevelsOf(profile.m_pLargePrint->GetValues(), kSamplesPerElement);
    if (keepsEnvelopes) {
        facts.m_energy = LevelsOf(profile.m_energy.Elements(), kSamplesPerElement);
        facts.m_bass = LevelsOf(profile.m_bass.Elements(), kSamplesPerElement);
    }
    return facts;
}
