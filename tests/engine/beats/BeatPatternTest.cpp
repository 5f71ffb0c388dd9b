// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/beats/BeatPattern.h"

#include <gtest/gtest.h>

TEST(BeatPatternTest, StartsWithoutWeights) {
    CPfBeatPattern const pattern;
    EXPECT_EQ(pattern.GetCount(), 0);
    EXPECT_EQ(pattern.GetValue(0), 0.0f);
}

TEST(BeatPatternTest, InitializeMakesZeros) {
    CPfBeatPattern pattern;
    pattern.Initialize(4);
    pattern.SetBeatWeight(2, 0.5f);
    pattern.Initialize(4);
    for (int i = -1; i <= 4; ++i) {
        EXPECT_EQ(pattern.GetValue(i), 0.0f) << i;
    }
    EXPECT_EQ(pattern.GetCount(), 4);
    pattern.Initialize(-1);
    EXPECT_EQ(pattern.GetCount(), 0);
}

TEST(BeatPatternTest, WeightsOutsideTheMeasureAreIgnored) {
    CPfBeatPattern pattern;
    pattern.Initialize(4);
    CPfBeatPattern const zeros = pattern;
    pattern.SetBeatWeight(4, 1.0f);
    pattern.SetBeatWeight(-1, 1.0f);
    EXPECT_TRUE(pattern == zeros);
    pattern.SetBeatWeight(3, 0.25f);
    EXPECT_EQ(pattern.GetValue(3), 0.25f);
    EXPECT_EQ(pattern.GetValue(4), 0.0f);
}

TEST(BeatPatternTest, EqualityNeedsTheSameLengthAndExactWeights) {
    CPfBeatPattern four;
    CPfBeatPattern five;
    four.Initialize(4);
    five.Initialize(5);
    EXPECT_FALSE(four == five); // a prefix is not enough
    CPfBeatPattern copy(four);
    EXPECT_TRUE(four == copy);
    copy.SetBeatWeight(1, 1e-30f);
    EXPECT_FALSE(four == copy);
    copy = five;
    EXPECT_TRUE(copy == five);
}
