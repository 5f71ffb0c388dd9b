// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/Harmony.h"

#include "song/HarmonyModel.h"
#include "support/Chords.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <vector>

namespace {

CHarmony Hear(std::vector<float> const& samples) {
    CHarmonyEar ear;
    ear.Add(samples);
    return ear.Finish();
}

std::vector<float> Noise(std::size_t count) {
    std::vector<float> samples(count);
    std::uint32_t state = 7; // Numerical Recipes' 32-bit generator
    for (float& sample : samples) {
        state = state * 1664525U + 1013904223U;
        sample = static_cast<float>(state >> 8U) / 16777216.0f - 0.5f;
    }
    return samples;
}

} // namespace

TEST(HarmonyTest, CadencesNameTheirKeyInAllTwentyFour) {
    for (int tonic = 0; tonic < 12; ++tonic) {
        for (bool const minor : {false, true}) {
            CChords chords(440.0);
            chords.PlayCadence(tonic, minor);
            CHarmony const harmony = Hear(chords.Samples());
            EXPECT_EQ(harmony.m_nTonic, tonic) << (minor ? "minor" : "major");
            EXPECT_EQ(harmony.m_eMode, minor ? EKeyMode::Minor : EKeyMode::Major) << tonic;
            EXPECT_GT(harmony.m_fConfidence, 0.5f) << tonic;
            EXPECT_LE(harmony.m_fConfidence, 1.0f);
        }
    }
}

TEST(HarmonyTest, FindsTheTuningAndTheKeyInIt) {
    for (double const a4 : {434.0, 440.0, 446.0}) {
        for (bool const minor : {false, true}) {
            CChords chords(a4);
            chords.PlayCadence(2, minor);
            CHarmony const harmony = Hear(chords.Samples());
            EXPECT_EQ(harmony.m_nTonic, 2) << a4;
            EXPECT_EQ(harmony.m_eMode, minor ? EKeyMode::Minor : EKeyMode::Major) << a4;
            // 1200 log2(a4 / 440): -23.8, 0 and 23.5 cents. The steps are two cents, the peaks of
            // neighbouring tones pull one another by as much.
            EXPECT_NEAR(static_cast<double>(harmony.m_fTuningCents), 1200.0 * std::log2(a4 / 440.0),
                        4.0);
        }
    }
}

TEST(HarmonyTest, AScaleNamesItsKey) {
    CChords chords(440.0);
    for (int const step : {0, 2, 4, 5, 7, 9, 11, 12, 11, 9, 7, 5, 4, 2, 0}) {
        chords.Play({62 + step}, 0.6); // D major
    }
    chords.Play({50, 62, 66, 69}, 2.0);
    CHarmony const harmony = Hear(chords.Samples());
    EXPECT_EQ(harmony.m_eMode, EKeyMode::Major);
    EXPECT_EQ(harmony.m_nTonic, 2);
}

TEST(HarmonyTest, SilenceHasNoKey) {
    for (std::size_t const count : {0U, 1U, 1000U, 44100U, 441000U}) {
        CHarmony const harmony = Hear(std::vector<float>(count));
        EXPECT_EQ(harmony.m_eMode, EKeyMode::None) << count;
        EXPECT_EQ(harmony.m_nTonic, 0);
        EXPECT_EQ(harmony.m_fConfidence, 0.0f);
        EXPECT_EQ(harmony.m_fTuningCents, 0.0f);
    }
}

TEST(HarmonyTest, NoiseIsNotTrusted) {
    CChords chords(440.0);
    chords.PlayCadence(7, false);
    float const music = Hear(chords.Samples()).m_fConfidence;
    float const noise = Hear(Noise(20 * 44100)).m_fConfidence;
    EXPECT_LT(noise, 0.2f);
    EXPECT_GT(music, noise);
}

TEST(HarmonyTest, TonesThatKeepToNoTuningAreNotTrusted) {
    // Ten tones a second for half a minute, each anywhere from 110 to 880 Hz.
    std::vector<float> samples(30 * 44100);
    std::uint32_t state = 11; // Numerical Recipes' 32-bit generator
    double hertz = 0.0;
    double turns = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (i % 4410 == 0) {
            state = state * 1664525U + 1013904223U;
            hertz = 110.0 * std::exp2(3.0 * static_cast<double>(state >> 8U) / 16777216.0);
        }
        turns += hertz / 44100.0;
        samples[i] = static_cast<float>(0.3 * std::sin(2.0 * std::numbers::pi * turns));
    }
    EXPECT_LT(Hear(samples).m_fConfidence, 0.4f);
}

TEST(HarmonyTest, BlocksOfAnySizeGiveTheSameBits) {
    CChords chords(441.5);
    chords.PlayCadence(4, true);
    CHarmony const whole = Hear(chords.Samples());
    for (std::size_t const size : {1U, 997U, 32768U, 65536U, 100000U}) {
        CHarmonyEar ear;
        std::span<float const> rest = chords.Samples();
        while (!rest.empty()) {
            std::size_t const taken = std::min<std::size_t>(size, rest.size());
            ear.Add(rest.first(taken));
            rest = rest.subspan(taken);
        }
        CHarmony const harmony = ear.Finish();
        EXPECT_EQ(harmony.m_eMode, whole.m_eMode) << size;
        EXPECT_EQ(harmony.m_nTonic, whole.m_nTonic) << size;
        EXPECT_EQ(harmony.m_fConfidence, whole.m_fConfidence) << size;
        EXPECT_EQ(harmony.m_fTuningCents, whole.m_fTuningCents) << size;
    }
}

TEST(HarmonyTest, AThirdOfASecondIsHeard) {
    CChords chords(440.0);
    chords.Play({57, 61, 64}, 0.35); // A major, less than a frame
    CHarmony const harmony = Hear(chords.Samples());
    EXPECT_NE(harmony.m_eMode, EKeyMode::None);
}

TEST(HarmonyTest, HostileSamplesGiveFiniteNumbers) {
    for (float const value :
         {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN(),
          std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min()}) {
        CChords chords(440.0);
        chords.PlayCadence(0, false);
        chords.PlayCadence(0, false);
        std::vector<float> samples = chords.Samples();
        samples[1000] = value;
        samples[300000] = -value;
        CHarmony const harmony = Hear(samples);
        // The frames without such a value are heard as ever.
        EXPECT_EQ(harmony.m_eMode, EKeyMode::Major);
        EXPECT_EQ(harmony.m_nTonic, 0);
        EXPECT_TRUE(std::isfinite(harmony.m_fConfidence));
        EXPECT_TRUE(std::isfinite(harmony.m_fTuningCents));
    }
}

TEST(HarmonyTest, SharesAddUpToOne) {
    CChords chords(440.0);
    chords.PlayCadence(9, true);
    CHarmonyEar ear;
    ear.Add(chords.Samples());
    CToneShares const shares = ear.Chroma().Shares();
    auto const sum = [](std::span<float const> values) {
        float total = 0.0f;
        for (float const value : values) {
            total += value;
        }
        return total;
    };
    // Some dozen numbers below 1, each rounded to 24 bits.
    EXPECT_NEAR(sum(shares.m_low), 1.0f, 1e-6f);
    EXPECT_NEAR(sum(shares.m_middle), 1.0f, 1e-6f);
    EXPECT_NEAR(sum(shares.m_high), 1.0f, 1e-6f);
    EXPECT_NEAR(sum(shares.m_bass), 1.0f, 1e-6f);
    EXPECT_NEAR(sum(shares.m_triads), 1.0f, 1e-6f);
}

TEST(HarmonyTest, TheTableFitsTheFeatures) {
    EXPECT_EQ(HarmonyWeights().size(), 2 * kHarmonyFeatures + 1);
}
