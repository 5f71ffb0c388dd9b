// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/Tapping.h"

#include <gtest/gtest.h>

namespace {

CTapping Taps(std::vector<double> const& seconds) {
    CTapping tapping;
    for (double const each : seconds) {
        tapping.Tap(each);
    }
    return tapping;
}

} // namespace

TEST(TappingTest, TheMedianOfTheSpansCounts) {
    // Spans of 0.5, 0.5, 0.5 and, once the hand was late, 1 second; all exact in binary.
    std::optional<CTappedTempo> const tempo = Taps({8.0, 8.5, 9.0, 9.5, 10.5}).Tempo({});
    ASSERT_TRUE(tempo);
    EXPECT_EQ(tempo->m_dTapped, 120.0);
    EXPECT_EQ(tempo->m_dBpm, 120.0);
    EXPECT_EQ(tempo->m_dError, 0.0);
}

TEST(TappingTest, TheErrorFollowsTheSpread) {
    // Spans of 0.375, 0.5 and 0.625: each of the outer ones is 0.125 away. 1.4826 * 0.125 / sqrt(3)
    // seconds are 21.4 % of 0.5, which are 25.68 BPM of 120.
    std::optional<CTappedTempo> const tempo = Taps({0.0, 0.375, 0.875, 1.5}).Tempo({});
    ASSERT_TRUE(tempo);
    EXPECT_NEAR(tempo->m_dError, 25.68, 0.005); // as many decimals as were worked out
}

TEST(TappingTest, ThreeTapsAreTooFew) {
    EXPECT_FALSE(Taps({0.0, 0.5, 1.0}).Tempo({}));
    EXPECT_TRUE(Taps({0.0, 0.5, 1.0, 1.5}).Tempo({}));
}

TEST(TappingTest, APauseBeginsAnew) {
    CTapping tapping = Taps({0.0, 0.5, 1.0, 1.5});
    tapping.Tap(4.5); // 20 BPM
    EXPECT_EQ(tapping.Count(), 5U);
    tapping.Tap(8.0);
    EXPECT_EQ(tapping.Count(), 1U);
    tapping.Tap(7.0); // another clock
    EXPECT_EQ(tapping.Count(), 1U);
}

TEST(TappingTest, AReadingOfTheSongIsMeantWithinOnePercent) {
    CTapping const tapping = Taps({0.0, 0.5, 1.0, 1.5}); // 120
    EXPECT_EQ(tapping.Tempo(std::vector{60.2, 121.0})->m_dBpm, 121.0);
    EXPECT_EQ(tapping.Tempo(std::vector{121.0, 119.5})->m_dBpm, 119.5); // the nearer one
    EXPECT_EQ(tapping.Tempo(std::vector{121.3, 118.7})->m_dBpm, 120.0);
    EXPECT_EQ(tapping.Tempo(std::vector{121.0})->m_dTapped, 120.0);
}

TEST(TappingTest, NoTempoOutsideTheRangeIsTaken) {
    EXPECT_FALSE(Taps({0.0, 0.05, 0.1, 0.15}).Tempo({})); // 1200
    EXPECT_FALSE(Taps({0.0, 3.05, 6.1, 9.15}).Tempo({})); // 19.67
}
