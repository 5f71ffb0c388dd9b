// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Add        every second frame of sound to Hear
// Finish
//   Features   square roots of what sounds how much, seen from a tonic
//   Belief     their weighted sums, for each of the 24 keys, through the softmax
//   less confidence for tones that keep to no tuning

#include "song/Harmony.h"

#include "song/HarmonyModel.h"
#include "song/PlainMath.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// Tuned: scripts/harmony; one frame of two tells the key as well as all of them do.
constexpr std::size_t kSamplesBetweenFrames = kToneFrameSamples;
constexpr std::size_t kKeys = 2 * kToneClasses; // major from C up, then minor

// Tuned: scripts/harmony; music with tones is clearer, noise and speech reach 0.11.
constexpr float kClearTuning = 0.3f;

using Features = std::array<float, kHarmonyFeatures>;

/// Twelve shares from the tonic up, as square roots: they tell little from nothing.
float* AddFrom(std::span<float const> shares, std::size_t tonic, float* out) {
    for (std::size_t i = 0; i < kToneClasses; ++i) {
        *out++ = std::sqrt(shares[(tonic + i) % kToneClasses]);
    }
    return out;
}

Features FeaturesOf(CToneShares const& shares, std::size_t tonic) {
    Features features;
    float* out = features.data();
    out = AddFrom(shares.m_low, tonic, out);
    out = AddFrom(shares.m_middle, tonic, out);
    out = AddFrom(shares.m_high, tonic, out);
    out = AddFrom(shares.m_bass, tonic, out);
    std::span<float const> const triads = shares.m_triads;
    out = AddFrom(triads.first(kToneClasses), tonic, out);
    AddFrom(triads.last(kToneClasses), tonic, out);
    return features;
}

/// How likely each key is; they add up to 1.
std::array<float, kKeys> Belief(CToneShares const& shares) {
    std::span<float const> const weights = HarmonyWeights();
    std::array<float, kKeys> sums{};
    for (std::size_t key = 0; key < kKeys; ++key) {
        bool const minor = key >= kToneClasses;
        Features const features = FeaturesOf(shares, key % kToneClasses);
        sums[key] = minor ? weights[2 * kHarmonyFeatures] : 0.0f;
        for (std::size_t i = 0; i < kHarmonyFeatures; ++i) {
            sums[key] += features[i] * weights[minor ? kHarmonyFeatures + i : i];
        }
    }
    float const highest = *std::max_element(sums.begin(), sums.end());
    float total = 0.0f;
    for (float& sum : sums) {
        sum = PlainExp2((sum - highest) * kLog2E);
        total += sum;
    }
    for (float& sum : sums) {
        sum /= total;
    }
    return sums;
}

} // namespace

void CHarmonyEar::Add(std::span<float const> samples) {
    while (!samples.empty()) {
        if (m_nToSkip > 0) {
            std::size_t const skipped = std::min(m_nToSkip, samples.size());
            m_nToSkip -= skipped;
            samples = samples.subspan(skipped);
            continue;
        }
        samples = samples.subspan(m_spectrum.Take(samples));
        if (m_spectrum.Taken() == kToneFrameSamples) {
            Hear();
            m_nToSkip = kSamplesBetweenFrames;
        }
    }
}

void CHarmonyEar::Hear() {
    CToneMagnitudes magnitudes;
    m_spectrum.Analyze(&magnitudes);
    m_chroma.Add(magnitudes);
}

CHarmony CHarmonyEar::Finish() {
    if (m_chroma.Frames() == 0 && m_spectrum.Taken() > 0) {
        Hear(); // less than a frame: what there is, followed by silence
    }
    CHarmony harmony;
    if (m_chroma.Frames() == 0) {
        return harmony;
    }
    std::array<float, kKeys> const belief = Belief(m_chroma.Shares());
    auto const place =
        static_cast<std::size_t>(std::max_element(belief.begin(), belief.end()) - belief.begin());
    harmony.m_eMode = place < kToneClasses ? EKeyMode::Major : EKeyMode::Minor;
    harmony.m_nTonic = static_cast<std::int32_t>(place % kToneClasses);
    harmony.m_fConfidence = belief[place] * std::min(1.0f, m_chroma.TuningClarity() / kClearTuning);
    harmony.m_fTuningCents = m_chroma.TuningCents();
    return harmony;
}
