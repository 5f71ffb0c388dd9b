// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// BeatFeaturesOf: ProfileOf (mean accents of each phase of a measure), Likeness (of the song and
//   itself some half beats later, which tells three beats from four)

#include "song/BeatFeatures.h"

#include "song/PlainMath.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kLikenessScale = 3.0; // Tuned: beat_model; brings it among the other numbers.
constexpr double kLeastPower = 0.001;  // Tuned: beat_model; of a profile, below which it is flat.

using CProfile = std::vector<CBeatAccents>;

/// Mean accents of each phase of a measure of `reading`.
CProfile ProfileOf(std::span<CBeatAccents const> accents, CBeatReading reading) {
    std::size_t const phases = 2 * reading.m_nBeats;
    CProfile profile(phases, CBeatAccents{});
    std::vector<double> counts(phases, 0.0);
    for (std::size_t i = 0; i < accents.size(); ++i) {
        std::size_t const phase = (i + phases - reading.m_nFirst) % phases;
        counts[phase] += 1.0;
        for (std::size_t j = 0; j < kBeatAccents; ++j) {
            profile[phase][j] += accents[i][j];
        }
    }
    for (std::size_t phase = 0; phase < phases; ++phase) {
        for (double& value : profile[phase]) {
            value /= std::max(1.0, counts[phase]);
        }
    }
    return profile;
}

double PowerOf(CProfile const& profile) {
    double power = kLeastPower;
    for (CBeatAccents const& phase : profile) {
        for (double const value : phase) {
            power += value * value;
        }
    }
    return static_cast<double>(PlainLog2(static_cast<float>(power)));
}

/// Correlation of all accents with those `lag` half beats later; 0 when there are too few.
double Likeness(std::span<CBeatAccents const> accents, std::size_t lag) {
    constexpr std::size_t kLeastPairs = 9; // Fixed: more than a measure.
    if (accents.size() < lag + kLeastPairs) {
        return 0.0;
    }
    double product = 0.0;
    double before = 0.0;
    double after = 0.0;
    for (std::size_t i = 0; i + lag < accents.size(); ++i) {
        for (std::size_t j = 0; j < kBeatAccents; ++j) {
            double const a = accents[i][j];
            double const b = accents[i + lag][j];
            product += a * b;
            before += a * a;
            after += b * b;
        }
    }
    double const scale = std::sqrt(before * after);
    return scale > 0.0 ? product / scale : 0.0;
}

/// By how much measures of three beats are more alike than measures of four.
std::array<double, 5> ThreeAgainstFour(std::span<CBeatAccents const> accents) {
    auto const like = [&](std::size_t lag) { return kLikenessScale * Likeness(accents, lag); };
    return {like(6) - like(8), like(12) - like(16), like(24) - like(16), like(6) - like(4),
            like(12) - like(8)};
}

} // namespace

std::array<CBeatReading, kBeatReadings> ListBeatReadings() {
    std::array<CBeatReading, kBeatReadings> readings;
    std::size_t next = 0;
    for (std::size_t const beats : {std::size_t{3}, std::size_t{4}}) {
        for (std::size_t first = 0; first < 2 * beats; ++first) {
            readings[next++] = {beats, first};
        }
    }
    return readings;
}

// The numbers: the profile of three beats, 0 for a reading of four; that of four, 0 for one of
// three; 1 and the likenesses for three; the power of the profile, for three and for four.
std::array<CBeatFeatures, kBeatReadings> BeatFeaturesOf(std::span<CBeatAccents const> accents) {
    constexpr std::size_t kFour = 6 * kBeatAccents;
    constexpr std::size_t kMetre = kFour + 8 * kBeatAccents;
    std::array<double, 5> const likenesses = ThreeAgainstFour(accents);
    std::array<CBeatFeatures, kBeatReadings> all{};
    auto const readings = ListBeatReadings();
    for (std::size_t i = 0; i < readings.size(); ++i) {
        CProfile const profile = ProfileOf(accents, readings[i]);
        bool const isThree = readings[i].m_nBeats == 3;
        auto* out = all[i].data() + (isThree ? 0 : kFour);
        for (CBeatAccents const& phase : profile) {
            out = std::copy(phase.begin(), phase.end(), out);
        }
        if (isThree) {
            all[i][kMetre] = 1.0;
            std::copy(likenesses.begin(), likenesses.end(), all[i].begin() + kMetre + 1);
        }
        all[i][kMetre + (isThree ? 6 : 7)] = PowerOf(profile);
    }
    return all;
}
