// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/envelope/Tempo.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(TempoTest, AMeasureIsFourBeats) {
    EXPECT_EQ(SamPerMeas(0.0f, 44100), 0U);
    EXPECT_EQ(SamPerMeas(120.0f, 44100), 88200U); // 2 s
    EXPECT_EQ(SamPerMeas(60.0f, 44100), 176400U); // 4 s
    EXPECT_EQ(SamPerMeas(120.0f, 0), 0U);
}

TEST(TempoTest, SamplesPerMeasureRoundsAfterEachStep) {
    // 140 BPM: 35 / 60 = 0.583333333... lies nearest to the float 0x1.2aaaaap-1 below it, which is
    // 9786709 / 2^24. 44100 * 2^24 / 9786709 = 75600.0038..., and floats near 75600 are 2^-7 apart,
    // so the quotient is 75600.0 or 75600.0078125, which truncate to 75600.
    EXPECT_EQ(SamPerMeas(140.0f, 44100), 75600U);
    // 100 BPM: 25 / 60 = 0.41666666... lies nearest to 13981013 / 2^25 = 0.416666656..., below it;
    // 44100 / that = 105840.0025..., nearest float (2^-7 apart) 105840.0.
    EXPECT_EQ(SamPerMeas(100.0f, 44100), 105840U);
    // A factor 0.25 / 60 rounded beforehand is 0x1.111112p-8, above 1/240 by 1 part in 2^24.9: with
    // 105 BPM it gives 0.437500030... and hence 100799.99..., one sample less than the steps give.
    EXPECT_EQ(SamPerMeas(105.0f, 44100), 100800U); // 26.25 / 60 = 0.4375 exactly
}

TEST(TempoTest, SamplesPerMeasureBeyondTheUnsignedRangeAreHeldToIt) {
    // A rate of 2^32 - 1 becomes the float 2^32; 120 BPM is 0.5 measures per second.
    EXPECT_EQ(SamPerMeas(120.0f, 4294967295U), 4294967295U);
    // 480 BPM is 2 measures per second: 2^32 / 2 = 2^31 needs all 32 bits.
    EXPECT_EQ(SamPerMeas(480.0f, 4294967295U), 2147483648U);
    EXPECT_EQ(SamPerMeas(-120.0f, 44100), 0U);
    EXPECT_EQ(SamPerMeas(std::numeric_limits<float>::quiet_NaN(), 44100), 0U);
    EXPECT_EQ(SamPerMeas(std::numeric_limits<float>::infinity(), 44100), 0U);
}

} // namespace
