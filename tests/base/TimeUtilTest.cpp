// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/TimeUtil.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();

} // namespace

TEST(TimeUtilTest, PositionsBecomeMicroseconds) {
    EXPECT_EQ(SamplePosToTime(44100, 44100), 1'000'000);
    EXPECT_EQ(SamplePosToTime(1, 44100), 23); // 22.68
    EXPECT_EQ(SamplePosToTime(3, 44100), 68); // 68.03
    EXPECT_EQ(SamplePosToTime(0, 44100), 0);
    EXPECT_EQ(SamplePosToTime(1, 3), 333'333); // 1000001 / 3 = 333333.67: half of 3 is 1
    EXPECT_EQ(SamplePosToTime(158'760'000, 44100), 3'600'000'000); // an hour
}

TEST(TimeUtilTest, RateZeroGivesTimeZero) {
    EXPECT_EQ(SamplePosToTime(12345, 0), 0);
}

TEST(TimeUtilTest, NegativePositionsRoundTowardZeroAfterHalfTheRate) {
    EXPECT_EQ(SamplePosToTime(-1, 44100), -22);          // (-1000000 + 22050) / 44100 = -22.18
    EXPECT_EQ(SamplePosToTime(-44100, 44100), -999'999); // -1000000 + 0.5
}

TEST(TimeUtilTest, MicrosecondsBecomePositions) {
    EXPECT_EQ(TimeToSamplePos(1'000'000, 44100), 44100);
    EXPECT_EQ(TimeToSamplePos(11, 44100), 0); // 0.4851
    EXPECT_EQ(TimeToSamplePos(12, 44100), 1); // 0.5292
    EXPECT_EQ(TimeToSamplePos(500'000, 1), 1);
    EXPECT_EQ(TimeToSamplePos(499'999, 1), 0);
    EXPECT_EQ(TimeToSamplePos(1'000'000, 0), 0);
    EXPECT_EQ(TimeToSamplePos(1'000'000, 0xFFFFFFFFU), 4'294'967'295);
    EXPECT_EQ(TimeToSamplePos(-1'000'000, 44100), -44099); // -44100 + 0.5, toward zero
}

TEST(TimeUtilTest, ProductsPastSixtyFourBitsWrap) {
    // (2^63 - 1) * 1000000 = -1000000 modulo 2^64, and (-1000000 + 22050) / 44100 = -22.18.
    EXPECT_EQ(SamplePosToTime(kLargest, 44100), -22);
    // (2^63 - 1) * 2 = -2 modulo 2^64.
    EXPECT_EQ(TimeToSamplePos(kLargest, 2), 0);
}

TEST(TimeUtilTest, CountsIntervalsToTheNearest) {
    EXPECT_EQ(CTimeUtil::GetIntervalCount(0, 250, 100), 3); // 2.5 + 0.5
    EXPECT_EQ(CTimeUtil::GetIntervalCount(0, 249, 100), 2); // 2.99
    EXPECT_EQ(CTimeUtil::GetIntervalCount(100, 300, 100), 2);
    EXPECT_EQ(CTimeUtil::GetIntervalCount(7, 7, 100), 0);
}

TEST(TimeUtilTest, NegativeDistancesCountTowardZero) {
    EXPECT_EQ(CTimeUtil::GetIntervalCount(250, 0, 100), -2);  // -2.5 + 0.5
    EXPECT_EQ(CTimeUtil::GetIntervalCount(260, 0, 100), -2);  // -2.6 + 0.5 = -2.1
    EXPECT_EQ(CTimeUtil::GetIntervalCount(100, 0, 100), 0);   // -1 + 0.5 = -0.5
    EXPECT_EQ(CTimeUtil::GetIntervalCount(0, 200, -100), -1); // -2 + 0.5 = -1.5
}

TEST(TimeUtilTest, IntervalZeroCountsNothing) {
    EXPECT_EQ(CTimeUtil::GetIntervalCount(0, 250, 0), 0);
}

TEST(TimeUtilTest, CountsStayIn32Bits) {
    EXPECT_EQ(CTimeUtil::GetIntervalCount(0, kLargest, 1),
              std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(CTimeUtil::GetIntervalCount(kLargest, 0, 1),
              std::numeric_limits<std::int32_t>::min());
}

TEST(TimeUtilTest, SplitsTimeIntoIndexAndFraction) {
    std::int32_t index = -1;
    float fraction = -1.0f;
    EXPECT_TRUE(CTimeUtil::MapTimeToMtOffset(250, 100, &index, &fraction));
    EXPECT_EQ(index, 2);
    EXPECT_EQ(fraction, 0.5f);
    EXPECT_TRUE(CTimeUtil::MapTimeToMtOffset(300, 100, &index, &fraction));
    EXPECT_EQ(index, 3);
    EXPECT_EQ(fraction, 0.0f);
    EXPECT_TRUE(CTimeUtil::MapTimeToMtOffset(25, 100, &index, &fraction));
    EXPECT_EQ(index, 0);
    EXPECT_EQ(fraction, 0.25f);
    EXPECT_TRUE(CTimeUtil::MapTimeToMtOffset(-250, -100, &index, &fraction));
    EXPECT_EQ(index, 2);
    EXPECT_EQ(fraction, 0.5f);
}

TEST(TimeUtilTest, SplitsNeitherNegativeQuotientsNorByZero) {
    std::int32_t index = 7;
    float fraction = 8.0f;
    EXPECT_FALSE(CTimeUtil::MapTimeToMtOffset(-1, 100, &index, &fraction));
    EXPECT_FALSE(CTimeUtil::MapTimeToMtOffset(1, -100, &index, &fraction));
    EXPECT_FALSE(CTimeUtil::MapTimeToMtOffset(1, 0, &index, &fraction));
    EXPECT_EQ(index, 7);
    EXPECT_EQ(fraction, 8.0f);
}
