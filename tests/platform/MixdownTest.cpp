// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/Mixdown.h"

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {

/// Mixes planes of samples, given in steps of 16 bits.
template <typename T>
std::vector<std::int16_t> Mixed(std::vector<std::vector<T>> planes, std::vector<T> const& shares) {
    std::vector<T const*> pointers;
    for (std::vector<T>& plane : planes) {
        for (T& sample : plane) {
            sample /= T{32768};
        }
        pointers.push_back(plane.data());
    }
    std::vector<T> sum;
    std::vector<std::int16_t> out(planes.front().size());
    MixToMono<T>(pointers.data(), shares, out.size(), sum, out.data());
    return out;
}

using CSteps = std::vector<std::int16_t>;

} // namespace

TEST(MixdownTest, TiesGoToTheEvenStep) {
    EXPECT_EQ(Mixed<float>({{0.5f, 1.5f, 2.5f, -0.5f, -1.5f, -2.5f}}, {1.0f}),
              (CSteps{0, 2, 2, 0, -2, -2}));
    EXPECT_EQ(Mixed<double>({{0.5, 1.5, 2.5, -0.5, -1.5, -2.5}}, {1.0}),
              (CSteps{0, 2, 2, 0, -2, -2}));
}

TEST(MixdownTest, RoundsToTheNearestStep) {
    EXPECT_EQ(Mixed<float>({{0.49f, 0.51f, -0.51f, 32766.5f, 100.25f}}, {1.0f}),
              (CSteps{0, 1, -1, 32766, 100}));
    // In single precision the first would be a tie.
    EXPECT_EQ(Mixed<double>({{0.5 + 0x1.0p-40, -0.5 - 0x1.0p-40}}, {1.0}), (CSteps{1, -1}));
}

TEST(MixdownTest, CutsWhatDoesNotFit) {
    float const infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(Mixed<float>({{32768.0f, 32767.5f, -32768.5f, -40000.0f, 1e20f, infinity, -infinity}},
                           {1.0f}),
              (CSteps{32767, 32767, -32768, -32768, 32767, 32767, -32768}));
    float const none = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(Mixed<float>({{none, -none}}, {1.0f}), (CSteps{-32768, -32768}));
}

TEST(MixdownTest, EachChannelCountsWithItsShare) {
    EXPECT_EQ(Mixed<float>({{1.0f, 3.0f, 32767.0f}, {2.0f, -8.0f, 32767.0f}}, {0.5f, 0.5f}),
              (CSteps{2, -2, 32767})); // 1.5 and -2.5 are ties
    EXPECT_EQ(Mixed<float>({{100.0f}, {200.0f}, {400.0f}}, {0.5f, 0.25f, 0.125f}), (CSteps{150}));
}

TEST(MixdownTest, ASilentChannelMayHoldAnything) {
    EXPECT_EQ(Mixed<float>({{7.0f}, {1.0f}, {std::numeric_limits<float>::quiet_NaN()}},
                           {1.0f, 1.0f, 0.0f}),
              (CSteps{8}));
}
