// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/BeatFeatures.h"

#include "song/AttackRises.h"
#include "song/BeatModel.h"
#include "support/ClickTrack.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr std::size_t kFour = 6 * kBeatAccents; // first number of the profile of four beats
constexpr std::size_t kMetre = kFour + 8 * kBeatAccents; // 1 for three beats

/// Half beats whose first accent is 1 at every `period`-th, from `first` on, and 0 elsewhere.
std::vector<CBeatAccents> AccentEvery(std::size_t period, std::size_t first, std::size_t count) {
    std::vector<CBeatAccents> accents(count, CBeatAccents{});
    for (std::size_t i = first; i < count; i += period) {
        accents[i][0] = 1.0;
    }
    return accents;
}

} // namespace

TEST(BeatFeaturesTest, TheReadingsAreEveryPhaseOfThreeAndFourBeats) {
    auto const readings = ListBeatReadings();
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(readings[i].m_nBeats, 3U);
        EXPECT_EQ(readings[i].m_nFirst, i);
    }
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_EQ(readings[6 + i].m_nBeats, 4U);
        EXPECT_EQ(readings[6 + i].m_nFirst, i);
    }
}

TEST(BeatFeaturesTest, TheModelHasAWeightForEachNumber) {
    EXPECT_EQ(BeatWeights().size(), kBeatFeatures);
}

TEST(BeatFeaturesTest, AProfileBeginsAtItsReadingsDownbeat) {
    auto const features = BeatFeaturesOf(AccentEvery(8, 3, 64));
    // Reading 6 + 3 has four beats from half beat 3 on; 6 + 1 begins two half beats sooner.
    EXPECT_EQ(features[9][kFour], 1.0);
    EXPECT_EQ(features[9][kFour + kBeatAccents], 0.0);
    EXPECT_EQ(features[7][kFour], 0.0);
    EXPECT_EQ(features[7][kFour + 2 * kBeatAccents], 1.0);
    EXPECT_EQ(features[9][0], 0.0);      // nothing in the profile of three beats
    EXPECT_EQ(features[9][kMetre], 0.0); // nor in its other numbers
    EXPECT_EQ(features[0][kMetre], 1.0);
    EXPECT_EQ(features[0][kFour], 0.0);
}

TEST(BeatFeaturesTest, MeasuresOfThreeAreMoreAlikeAfterThreeBeats) {
    // Alike after 6 half beats and not after 8: 1 - 0, times the scale of 3.
    EXPECT_NEAR(BeatFeaturesOf(AccentEvery(6, 0, 96))[0][kMetre + 1], 3.0, 1e-9);
    EXPECT_NEAR(BeatFeaturesOf(AccentEvery(8, 0, 96))[0][kMetre + 1], -3.0, 1e-9);
}

TEST(BeatFeaturesTest, EachKindOfAccentHasMeanZeroAndDeviationOne) {
    CBeatListener listener;
    listener.Add(MakeSong(120.0, 30.0));
    CBeatCurves const curves = listener.Take();
    std::vector<double> halfBeats;
    for (int i = 1; i < 110; ++i) {
        halfBeats.push_back(0.25 * i);
    }
    auto const accents = AccentsOf(curves, AttackRises(curves.m_vAttack), halfBeats);
    ASSERT_EQ(accents.size(), halfBeats.size());
    double sum = 0.0;
    double squares = 0.0;
    for (CBeatAccents const& accent : accents) {
        sum += accent[0];
        squares += accent[0] * accent[0];
    }
    // Held to -2.5 and 4 deviations, which may take a little off.
    EXPECT_NEAR(sum / 109.0, 0.0, 0.05);
    EXPECT_NEAR(squares / 109.0, 1.0, 0.1);
}

TEST(BeatFeaturesTest, SilenceHasNoAccents) {
    CBeatListener listener;
    listener.Add(MakeSilence(10.0));
    CBeatCurves const curves = listener.Take();
    auto const accents = AccentsOf(curves, AttackRises(curves.m_vAttack),
                                   std::vector<double>{1.0, 2.0, 3.0, 4.0, 5.0});
    for (CBeatAccents const& accent : accents) {
        for (double const value : accent) {
            EXPECT_EQ(value, 0.0);
        }
    }
}

TEST(BeatFeaturesTest, HalfBeatsOutsideTheSongAreHarmless) {
    CBeatListener listener;
    listener.Add(MakeNoise(2.0, 0.5f));
    CBeatCurves const curves = listener.Take();
    auto const accents = AccentsOf(curves, AttackRises(curves.m_vAttack),
                                   std::vector<double>{-1.0, 0.0, 1.0, 2.0, 100.0});
    ASSERT_EQ(accents.size(), 5U);
    for (CBeatAccents const& accent : accents) {
        for (double const value : accent) {
            EXPECT_TRUE(std::isfinite(value));
        }
    }
    EXPECT_TRUE(AccentsOf(curves, {}, std::vector<double>{1.0}).empty());
    EXPECT_EQ(AccentsOf({}, {}, std::vector<double>{1.0, 2.0}).size(), 2U);
}
