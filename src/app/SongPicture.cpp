// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/SongPicture.h"

#include "base/EngineRate.h"
#include "song/SongCandidates.h"
#include "song/SongProfile.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace {

constexpr float kWholeLevel = 255.0f; // Derived: the largest number of 8 bits.

/// What isn't finite is left out of the scale and drawn as full or nothing.
std::vector<std::uint8_t> Levels(std::span<float const> elements, std::size_t count) {
    float largest = 0.0f;
    for (float const element : elements) {
        largest = std::isfinite(element) ? std::max(largest, element) : largest;
    }
    std::vector<std::uint8_t> levels(std::min(count, elements.size()), 0);
    for (std::size_t i = 0; i < levels.size(); ++i) {
        if (largest > 0.0f && elements[i] > 0.0f) {
            float const share = std::min(elements[i] / largest, 1.0f);
            levels[i] = static_cast<std::uint8_t>(std::lround(kWholeLevel * std::sqrt(share)));
        }
    }
    return levels;
}

std::vector<std::int64_t> Places(CProfileResults::CPositions const& positions, std::int64_t end) {
    std::vector<std::int64_t> places;
    for (std::int64_t const position : positions) {
        if (position >= 0 && position <= end) {
            places.push_back(position);
        }
    }
    return places;
}

std::array<float, kAccentSteps> Accents(CPfBeatPattern const& pattern) {
    std::array<float, kAccentSteps> accents{};
    for (std::size_t i = 0; i < kAccentSteps; ++i) {
        float const weight = pattern.GetValue(static_cast<std::int32_t>(i));
        accents[i] = weight > 0.0f ? std::min(weight, 1.0f) : 0.0f;
    }
    return accents;
}

/// Frames of the file as samples at the engine's rate.
std::int64_t LengthAtEngineRate(std::int64_t frames, std::uint32_t fileRate) {
    double const rate = fileRate == 0 ? kEngineRateHz : fileRate;
    return std::llround(static_cast<double>(frames) * kEngineRateHz / rate);
}

} // namespace

double CSongPicture::Seconds() const {
    return static_cast<double>(m_nSamples) / kEngineRateHz;
}

CSongPicture MakeSongPicture(CSongProfile profile) {
    CSongPicture picture;
    CProfileResults const& results = profile.m_results;
    picture.m_vCandidates = CandidatesOf(profile).m_vCandidates;
    picture.m_outcome = std::move(profile.m_outcome);
    picture.m_fBpm = results.GetBpm();
    results.GetKey(&picture.m_nTonic, &picture.m_nMode);
    // The samples count as many as the file's frames: above the engine's rate silence follows.
    picture.m_nSamples =
        LengthAtEngineRate(results.GetSampleCount(), picture.m_outcome.m_report.m_nFileRate);
    auto const heard = static_cast<std::size_t>(
        std::max<std::int64_t>(picture.m_nSamples / kSamplesPerElement, 0));
    picture.m_vEnergy = Levels(profile.m_energy.Elements(), heard);
    picture.m_vBass = Levels(profile.m_bass.Elements(), heard);
    picture.m_grid = CBeatGrid(profile.m_beats, picture.m_nSamples);
    picture.m_nIntroEnd = std::clamp<std::int64_t>(results.GetIntroEnd(), 0, picture.m_nSamples);
    picture.m_nOutroStart =
        std::clamp<std::int64_t>(results.GetOutroStart(), 0, picture.m_nSamples);
    picture.m_vFades = Places(results.GetIntroFadePoints(), picture.m_nSamples);
    picture.m_vMixesIn = Places(results.GetIntroSprockets(), picture.m_nSamples);
    picture.m_vMixesOut = Places(results.GetOutroSprockets(), picture.m_nSamples);
    CPfBeatPattern energyPattern;
    CPfBeatPattern bassPattern;
    results.GetBeatPatterns(&energyPattern, &bassPattern);
    picture.m_fAccentsA = Accents(energyPattern);
    picture.m_fAccentsB = Accents(bassPattern);
    return picture;
}
