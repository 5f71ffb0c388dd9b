// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/PlainMath.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

TEST(PlainMathTest, WholePowersAreExact) {
    EXPECT_EQ(PlainExp2(0.0f), 1.0f);
    EXPECT_EQ(PlainExp2(3.0f), 8.0f);
    EXPECT_EQ(PlainExp2(-2.0f), 0.25f);
}

TEST(PlainMathTest, PowersAgreeWithTheLibrary) {
    for (float x = -100.0f; x <= 100.0f; x += 0.37f) {
        float const expected = std::exp2(x);
        EXPECT_NEAR(PlainExp2(x), expected, 1e-6f * expected) << x;
    }
}

TEST(PlainMathTest, PowersOutOfRangeAreHeld) {
    EXPECT_EQ(PlainExp2(-127.0f), 0.0f);
    EXPECT_EQ(PlainExp2(500.0f), std::ldexp(1.0f, 126));
    EXPECT_EQ(PlainExp2(std::numeric_limits<float>::quiet_NaN()), std::ldexp(1.0f, 126));
}

TEST(PlainMathTest, LogarithmsOfPowersOfTwoAreExact) {
    EXPECT_EQ(PlainLog2(1.0f), 0.0f);
    EXPECT_EQ(PlainLog2(8.0f), 3.0f);
    EXPECT_EQ(PlainLog2(0.25f), -2.0f);
}

TEST(PlainMathTest, LogarithmsAgreeWithTheLibrary) {
    for (float x = 0.001f; x < 1e6f; x *= 1.17f) {
        EXPECT_NEAR(PlainLog2(x), std::log2(x), 1e-6f * (1.0f + std::abs(std::log2(x)))) << x;
    }
}

TEST(PlainMathTest, LogarithmsOutOfRangeAreHeld) {
    EXPECT_EQ(PlainLog2(0.0f), -126.0f);
    EXPECT_EQ(PlainLog2(-1.0f), -126.0f);
    EXPECT_EQ(PlainLog2(std::numeric_limits<float>::quiet_NaN()), -126.0f);
    EXPECT_EQ(PlainLog2(std::numeric_limits<float>::infinity()), 127.0f);
}

TEST(PlainMathTest, CosinesOfQuarterTurnsAreExact) {
    EXPECT_EQ(PlainCosTurns(0.0), 1.0);
    EXPECT_EQ(PlainCosTurns(0.5), -1.0);
    EXPECT_EQ(PlainCosTurns(-0.5), -1.0);
    EXPECT_EQ(PlainCosTurns(1.0), 1.0);
}

TEST(PlainMathTest, CosinesAgreeWithTheLibrary) {
    for (double turns = -1.0; turns <= 1.0; turns += 0.0037) {
        EXPECT_NEAR(PlainCosTurns(turns), std::cos(2.0 * std::numbers::pi * turns), 1e-14) << turns;
    }
}
