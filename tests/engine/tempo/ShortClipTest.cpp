// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/ProfileBuilder.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace {

/// What the rule makes of `bpm` for a clip of `count` samples.
float ShortClipBpm(std::int64_t count, std::uint32_t rate = 44100, float bpm = 7.0f) {
    CProfileBuilder::ShortClipBpmUpdate(count, rate, &bpm);
    return bpm;
}

} // namespace

TEST(ShortClipTest, SlowMeasuresAreDoubledIntoTheBand) {
    EXPECT_EQ(ShortClipBpm(441000), 96.0f);     // 10 s: 24, 48, 96
    EXPECT_EQ(ShortClipBpm(44100 * 4), 120.0f); // 4 s: 60, 120
    EXPECT_EQ(ShortClipBpm(44100 * 20), 96.0f); // 20 s: 12, 24, 48, 96
}

TEST(ShortClipTest, FastMeasuresAreHalvedIntoTheBand) {
    EXPECT_EQ(ShortClipBpm(44100), 120.0f); // 1 s: 240, 120
    EXPECT_EQ(ShortClipBpm(11025), 120.0f); // 0.25 s: 960, 480, 240, 120
    EXPECT_EQ(ShortClipBpm(88200), 120.0f); // 2 s: 120 as it stands
}

TEST(ShortClipTest, HalfAMinuteIsLeftAlone) {
    EXPECT_EQ(ShortClipBpm(44100 * 30), 7.0f);
    // One sample less: 240 / 29.99997... = 8.0000060..., 16 times that is 128.0000967..., and
    // floats near 128 lie 2^-16 = 0.0000153 apart: 6.34 steps above 128, rounded to 6.
    EXPECT_EQ(ShortClipBpm(44100 * 30 - 1), 128.0f + 6.0f / 65536.0f);
}

TEST(ShortClipTest, AnEmptyClipHasNoTempo) {
    EXPECT_EQ(ShortClipBpm(0), 0.0f);
}

TEST(ShortClipTest, ARateOfZeroIsLeftAlone) {
    EXPECT_EQ(ShortClipBpm(0, 0), 7.0f);
    EXPECT_EQ(ShortClipBpm(-1, 0), 7.0f);
}

TEST(ShortClipTest, TheEdgesOfTheBand) {
    // 240 / (count / rate) at a rate of 41: 120 samples give exactly 82.
    EXPECT_EQ(ShortClipBpm(120, 41), 82.0f);
    // One sample more: 81.32... doubled to 162.64...
    EXPECT_EQ(ShortClipBpm(121, 41), static_cast<float>(2.0 * 240.0 / (121.0 / 41.0)));
}

TEST(ShortClipTest, PinsUpperEdgeIsTheFloat164Point01) {
    // 164.01f is 164.0099945068359375, a little below 164.01. A clip of 24000 samples at a rate of
    // 16401 would be 164.01 exactly, which is above the edge and is halved.
    EXPECT_EQ(ShortClipBpm(24000, 16401), 82.005f);
    // 164.009 lies below and stays; 164.005 shows that 164 is not the edge.
    EXPECT_EQ(ShortClipBpm(240000, 164009), 164.009f);
}

TEST(ShortClipTest, ANegativeLengthEndsAtTheSlowEdge) {
    EXPECT_EQ(ShortClipBpm(-44100), 82.0f); // -240 never reaches the band by doubling
}

TEST(ShortClipTest, AMeasureOfOneSampleComesDownIntoTheBand) {
    // One sample at 143,165,576 Hz: 240 * 143165576 = 3.4e10, 28 halvings.
    EXPECT_EQ(ShortClipBpm(1, 143165576), static_cast<float>(240.0 * 143165576.0 / 268435456.0));
}

TEST(ShortClipTest, TheLimitIsA32BitProduct) {
    // 143,165,577 * 30 = 2^32 + 14: clips of 14 samples and more are not short at that rate.
    EXPECT_EQ(ShortClipBpm(14, 143165577), 7.0f);
    EXPECT_NE(ShortClipBpm(13, 143165577), 7.0f);
}
