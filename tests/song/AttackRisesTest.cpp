// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/AttackRises.h"

#include <gtest/gtest.h>
#include <vector>

TEST(AttackRisesTest, ARiseIsAboveAllOfTheLastTwelveSteps) {
    std::vector<std::uint8_t> levels(40, 50);
    levels[20] = 60;
    levels[21] = 65;
    levels[31] = 63; // the 60 lies eleven steps back, the 65 ten
    levels[34] = 63; // the 65 lies thirteen steps back, the 63 three
    levels[39] = 99;
    std::vector<std::uint8_t> const rises = AttackRises(levels);
    EXPECT_EQ(rises[20], 10);
    EXPECT_EQ(rises[21], 5);
    EXPECT_EQ(rises[31], 0);
    EXPECT_EQ(rises[34], 0);
    EXPECT_EQ(rises[39], 30); // of 36, held to 30
    EXPECT_EQ(rises[22], 0);
}

TEST(AttackRisesTest, WhatIsFarBelowTheLoudestDoesNotRise) {
    std::vector<std::uint8_t> levels(40, 0);
    levels[5] = 200;
    levels[20] = 50; // 53 dB below 200 is level 60
    levels[30] = 70;
    std::vector<std::uint8_t> const rises = AttackRises(levels);
    EXPECT_EQ(rises[20], 0);
    EXPECT_EQ(rises[30], 10);
}

TEST(AttackRisesTest, TheEchoBeforeAStrokeIsNone) {
    // A lossy encoder smears a stroke to the time before it: 18 dB, 48 levels, below it is nothing.
    std::vector<std::uint8_t> levels(60, 0);
    levels[30] = 40;
    levels[36] = 200;
    std::vector<std::uint8_t> const rises = AttackRises(levels);
    EXPECT_EQ(rises[30], 0);
    EXPECT_EQ(rises[36], 30);
    levels[30] = 155; // 3 above 200 - 48
    EXPECT_EQ(AttackRises(levels)[30], 3);
    levels[30] = 100;
    levels[42] = 200; // twelve steps later is too late
    levels[36] = 0;
    EXPECT_EQ(AttackRises(levels)[30], 30);
}

TEST(AttackRisesTest, NothingRisesInNothing) {
    EXPECT_TRUE(AttackRises({}).empty());
}
