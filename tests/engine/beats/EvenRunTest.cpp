// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/beats/EvenRun.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <utility>

namespace {

/// Grid points with steps of 5000, each off by up to `jitter` samples; a tolerance of 100.
CPfImpactPoints Grid(std::int32_t count, std::int64_t jitter, std::uint32_t seed) {
    std::mt19937 random(seed);
    CPfImpactPoints points(44100, 0);
    for (std::int32_t i = 0; i < count; ++i) {
        auto const off = static_cast<std::int64_t>(random()) % (2 * jitter + 1) - jitter;
        points.Add(10'000 + i * std::int64_t{5000} + off);
    }
    return points;
}

} // namespace

TEST(EvenRunTest, AnswersForwardsLikeTheRangeTest) {
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        CPfImpactPoints const points = Grid(60, 1 + seed % 70, seed);
        std::int32_t const anchor = static_cast<std::int32_t>(seed % 10);
        CPfEvenRun run(points, anchor);
        for (std::int32_t end = anchor; end < 60; end += 1 + static_cast<std::int32_t>(seed % 8)) {
            ASSERT_EQ(run.ReachesTo(end), IsRangeLinear(points, anchor, end)) << seed << " " << end;
        }
    }
}

TEST(EvenRunTest, AnswersBackwardsLikeTheRangeTest) {
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        CPfImpactPoints const points = Grid(60, 1 + seed % 70, seed);
        std::int32_t const anchor = 50 + static_cast<std::int32_t>(seed % 10);
        CPfEvenRun run(points, anchor);
        for (std::int32_t end = anchor; end >= 0; end -= 1 + static_cast<std::int32_t>(seed % 8)) {
            ASSERT_EQ(run.ReachesTo(end), IsRangeLinear(points, end, anchor)) << seed << " " << end;
        }
    }
}

TEST(EvenRunTest, APointOffByTheToleranceIsStillEven) {
    // Steps of 5000, tolerance 100. The spacing of 0, 5100, 10000 is 5000 and 5100 is off by 100.
    for (auto const& [middle, even] :
         {std::pair{5100, true}, {5101, false}, {4900, true}, {4899, false}}) {
        CPfImpactPoints points(44100, 0);
        for (std::int64_t const position : {0, middle, 10'000}) {
            points.Add(position);
        }
        EXPECT_EQ(CPfEvenRun(points, 0).ReachesTo(2), even) << middle;
        EXPECT_EQ(CPfEvenRun(points, 2).ReachesTo(0), even) << middle;
    }
}

TEST(EvenRunTest, ARunOfNoLengthIsNotEven) {
    CPfImpactPoints const points = Grid(3, 1, 1);
    EXPECT_FALSE(CPfEvenRun(points, 1).ReachesTo(1));
}
