// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/Rounding.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(RoundingTest, TruncatesTowardZero) {
    EXPECT_EQ(TruncateToInt32(2.99), 2);
    EXPECT_EQ(TruncateToInt32(-2.99), -2);
    EXPECT_EQ(TruncateToUint32(-0.99), 0U);
    EXPECT_EQ(TruncateToInt64(-0.5), 0);
    EXPECT_EQ(TruncateTo<std::int64_t>(1.0e15f), 999'999'986'991'104); // the float's own value
}

TEST(RoundingTest, HoldsValuesUpToTheEnds) {
    EXPECT_EQ(TruncateToInt32(2147483647.9), 2'147'483'647);
    EXPECT_EQ(TruncateToInt32(-2147483648.9), -2'147'483'647 - 1);
    EXPECT_EQ(TruncateToUint32(4294967295.9), 4'294'967'295U);
    // The largest double below 2^63 is 2^63 - 1024, the largest float 2^63 - 2^39.
    EXPECT_EQ(TruncateToInt64(9223372036854774784.0), 9'223'372'036'854'774'784);
    EXPECT_EQ(TruncateTo<std::int64_t>(9223371487098961920.0f), 9'223'371'487'098'961'920);
}

TEST(RoundingTest, KeepsTheNearestEndPastTheRange) {
    EXPECT_EQ(TruncateToInt32(2147483648.0), 2'147'483'647);
    EXPECT_EQ(TruncateToInt32(-1.0e10), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(TruncateToUint32(4294967296.0), 4'294'967'295U);
    EXPECT_EQ(TruncateToUint32(-1.0), 0U);
    EXPECT_EQ(TruncateToInt64(9223372036854775808.0), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(TruncateToInt64(-1.0e19), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(TruncateTo<std::int32_t>(2147483648.0f), 2'147'483'647);
    EXPECT_EQ(TruncateTo<std::uint32_t>(4294967296.0f), 4'294'967'295U);
    EXPECT_EQ(TruncateTo<std::int64_t>(9223372036854775808.0f),
              std::numeric_limits<std::int64_t>::max());
}

TEST(RoundingTest, InfinitiesGiveTheEndsAndNotANumberGivesZero) {
    EXPECT_EQ(TruncateToInt32(kInfinity), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(TruncateToInt32(-kInfinity), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(TruncateToInt64(kInfinity), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(TruncateToInt64(-kInfinity), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(TruncateToUint32(kInfinity), std::numeric_limits<std::uint32_t>::max());
    EXPECT_EQ(TruncateToUint32(-kInfinity), 0U);
    EXPECT_EQ(TruncateToInt32(kNotANumber), 0);
    EXPECT_EQ(TruncateToInt64(kNotANumber), 0);
    EXPECT_EQ(TruncateToUint32(kNotANumber), 0U);
    EXPECT_EQ(TruncateTo<std::int64_t>(std::numeric_limits<float>::quiet_NaN()), 0);
}

TEST(RoundingTest, HalvesGoUp) {
    EXPECT_EQ(RoundHalfUpToUint32(2.5), 3U);
    EXPECT_EQ(RoundHalfUpToUint32(2.49), 2U);
    EXPECT_EQ(RoundHalfUpToUint32(0.0), 0U);
    EXPECT_EQ(RoundHalfUpToUint32(-0.5), 0U);
    EXPECT_EQ(RoundHalfUpToUint32(-9.0), 0U);
    EXPECT_EQ(RoundHalfUpToUint32(kNotANumber), 0U);
}
