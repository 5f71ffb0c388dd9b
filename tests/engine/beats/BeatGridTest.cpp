// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/EngineRate.h"
#include "engine/beats/BeatBuilder.h"

#include "support/Envelope.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

using Positions = std::vector<std::int64_t>;

CPfImpactPoints PointsAt(Positions const& positions) {
    CPfImpactPoints points(kEngineRateHz, 0);
    for (std::int64_t const position : positions) {
        points.Add(position);
    }
    return points;
}

Positions ToList(CPfImpactPoints const& points) {
    return {points.Points().begin(), points.Points().end()};
}

Positions Interpolated(float interval, Positions const& positions) {
    CPfImpactPoints points = PointsAt(positions);
    EXPECT_TRUE(CPfBeatBuilder::InterpolatePoints(interval, &points));
    return ToList(points);
}

Positions Extrapolated(float interval, std::int64_t sampleCount, Positions const& positions) {
    CPfImpactPoints points = PointsAt(positions);
    EXPECT_TRUE(CPfBeatBuilder::ExtrapolatePoints(interval, sampleCount, &points));
    return ToList(points);
}

Positions Pll(float interval, Positions const& positions) {
    CPfImpactPoints const in = PointsAt(positions);
    CCancelFlag const cancel;
    CPfImpactPoints out(kEngineRateHz, 0);
    EXPECT_TRUE(CPfBeatBuilder(&cancel).BuildGridPll(&in, interval, &out));
    return ToList(out);
}

/// PointsAt 100, 200 ... 500, whose confidences are 1, 2, 3, 2, 1: pulses ten elements apart.
Positions KeptByConfidence(float fraction) {
    std::vector<float> elements(70, 0.0f);
    elements[10] = elements[50] = 1.0f;
    elements[20] = elements[40] = 2.0f;
    elements[30] = 3.0f;
    CPfPcmThumbnail const envelope = MakeEnvelope(elements, kEngineRateHz, 10);
    CPfImpactPoints points = PointsAt({500, 400, 300, 200, 100});
    EXPECT_TRUE(CPfBeatBuilder::RemoveLowConfidencePoints(&envelope, fraction, &points));
    return ToList(points);
}

} // namespace

TEST(BeatGridTest, GapsAreFilledEvenly) {
    EXPECT_THAT(Interpolated(1000.0f, {3000, 0}), ElementsAre(0, 1000, 2000, 3000));
    EXPECT_THAT(Interpolated(1000.0f, {0, 1499}), ElementsAre(0, 1499));
    EXPECT_THAT(Interpolated(1000.0f, {0, 1500}), ElementsAre(0, 750, 1500)); // halves up
    EXPECT_THAT(Interpolated(1000.0f, {0, 0, 900}), ElementsAre(0, 0, 900));
}

TEST(BeatGridTest, PinsGapsAreFilledAtTheirOwnSpacing) {
    // 3100 are three steps of 1033.33; twice that is 2066.67.
    EXPECT_THAT(Interpolated(1000.0f, {0, 3100, 5100}),
                ElementsAre(0, 1033, 2066, 3100, 4100, 5100));
}

TEST(BeatGridTest, BothEndsAreContinued) {
    EXPECT_THAT(Extrapolated(1000.0f, 6000, {3500, 2500}),
                ElementsAre(500, 1500, 2500, 3500, 4500, 5500));
    // The stream begins at 0 and ends before its sample count.
    EXPECT_THAT(Extrapolated(1000.0f, 3000, {1000}), ElementsAre(0, 1000, 2000));
    EXPECT_THAT(Extrapolated(1000.0f, 3001, {1000}), ElementsAre(0, 1000, 2000, 3000));
}

TEST(BeatGridTest, StepsAreMultipliedNotAddedUp) {
    // 1000.7 * 1, 2 and 3, each truncated.
    EXPECT_THAT(Extrapolated(1000.7f, 3500, {0}), ElementsAre(0, 1000, 2001, 3002));
    EXPECT_THAT(Extrapolated(1000.7f, 3500, {3499}), ElementsAre(497, 1498, 2499, 3499));
}

TEST(BeatGridTest, StepsAreMultipliedInSinglePrecision) {
    // 3 * 8388609.0 is 25165827, which lies half-way between two floats and goes to the even one.
    EXPECT_THAT(Extrapolated(8'388'609.0f, 26'000'000, {0}),
                ElementsAre(0, 8'388'609, 16'777'218, 25'165'828));
}

TEST(BeatGridTest, NoPointsStayNone) {
    EXPECT_THAT(Interpolated(1000.0f, {}), IsEmpty());
    EXPECT_THAT(Extrapolated(1000.0f, 6000, {}), IsEmpty());
}

TEST(BeatGridTest, IntervalsBelowOneSampleAddNothing) {
    for (float const interval : {0.0f, 0.99f, -1000.0f, kNaN, -kInfinity}) {
        EXPECT_THAT(Interpolated(interval, {3000, 0}), ElementsAre(0, 3000)) << interval;
        EXPECT_THAT(Extrapolated(interval, 6000, {3000}), ElementsAre(3000)) << interval;
    }
    EXPECT_THAT(Interpolated(kInfinity, {0, 3000}), ElementsAre(0, 3000));
    EXPECT_THAT(Extrapolated(kInfinity, 6000, {3000}), ElementsAre(3000));
}

TEST(BeatGridTest, PointsOutsideTheStreamAreContinuedInsideOnly) {
    EXPECT_THAT(Extrapolated(4.0f, 10, {-5}), ElementsAre(-5, -1, 3, 7));
    EXPECT_THAT(Extrapolated(4.0f, 10, {12}), ElementsAre(0, 4, 8, 12));
    EXPECT_EQ(Extrapolated(1e18f, 0, {INT64_MAX}).size(), 10U);
    // No further than 2^63 - 1 samples, nine steps of 1e18, though the room is twice that.
    EXPECT_EQ(Extrapolated(1e18f, INT64_MAX, {INT64_MIN}).size(), 10U);
}

TEST(BeatGridTest, ConfidentPointsAreKept) {
    EXPECT_THAT(KeptByConfidence(0.2f), ElementsAre(300));
    EXPECT_THAT(KeptByConfidence(0.7f), ElementsAre(200, 300, 400)); // 3.5 points
    EXPECT_THAT(KeptByConfidence(1.0f), ElementsAre(100, 200, 300, 400, 500));
}

TEST(BeatGridTest, OfEquallyConfidentPointsTheFirstStoredAreKept) {
    EXPECT_THAT(KeptByConfidence(0.4f), ElementsAre(300, 400)); // 400 is stored before 200
}

TEST(BeatGridTest, OddFractionsKeepNoneOrAll) {
    EXPECT_THAT(KeptByConfidence(0.0f), IsEmpty());
    EXPECT_THAT(KeptByConfidence(-1.0f), IsEmpty());
    EXPECT_THAT(KeptByConfidence(kNaN), IsEmpty());
    EXPECT_EQ(KeptByConfidence(2.0f).size(), 5U);
    EXPECT_EQ(KeptByConfidence(kInfinity).size(), 5U);
}

TEST(BeatGridTest, LockedGridFollowsOneStepBehind) {
    // At 2000 the grid is two steps back and advances while it stays a whole step behind.
    EXPECT_THAT(Pll(1000.0f, {0, 1000, 2000, 3000}), ElementsAre(1000, 2000));
    EXPECT_THAT(Pll(1000.0f, {0}), IsEmpty());
    EXPECT_THAT(Pll(1000.0f, {}), IsEmpty());
}

TEST(BeatGridTest, LockedGridCorrectsItsStepByThePhase) {
    // 2.01 steps: the phase 0.01 is beyond 2 * 0.00025, so the count becomes
    // 2 + 0.01 / sqrt(0.01 / 0.0005) = 2.002236 and the step 2010 / 2.002236 = 1003.9.
    EXPECT_THAT(Pll(1000.0f, {0, 2010}), ElementsAre(1003, 2006));
    // 2.0004 steps: within the dead band, so the step is 20004 / 2.
    EXPECT_THAT(Pll(10'000.0f, {0, 20'004}), ElementsAre(10'002));
}

TEST(BeatGridTest, LockedGridPassesOverPointsOutOfPhase) {
    // 2.3 steps are off by 0.3, more than 2 * 0.02; 4 steps are locked again.
    EXPECT_THAT(Pll(1000.0f, {0, 2300, 4000}), ElementsAre(1000, 2000, 3000));
}

TEST(BeatGridTest, LockedGridNeedsStepsOfASample) {
    for (float const interval : {0.0f, 0.25f, -1000.0f, kNaN, kInfinity}) {
        EXPECT_THAT(Pll(interval, {0, 1, 2}), IsEmpty()) << interval;
    }
}

TEST(BeatGridTest, CancelledLockedGridFails) {
    CCancelFlag cancel;
    cancel.Set();
    CPfImpactPoints const in = PointsAt({0, 1000, 2000});
    CPfImpactPoints out(kEngineRateHz, 0);
    EXPECT_FALSE(CPfBeatBuilder(&cancel).BuildGridPll(&in, 1000.0f, &out));
    EXPECT_THAT(ToList(out), IsEmpty());
}

TEST(BeatGridTest, PhaseIsTheDistanceFromTheNearestStep) {
    EXPECT_EQ(CPfBeatBuilder::PhaseOffset(1250, 1000.0f), 0.25f);
    EXPECT_EQ(CPfBeatBuilder::PhaseOffset(1750, 1000.0f), -0.25f);
    EXPECT_EQ(CPfBeatBuilder::PhaseOffset(1500, 1000.0f), -0.5f); // halves away from 0
    EXPECT_EQ(CPfBeatBuilder::PhaseOffset(-1250, 1000.0f), -0.25f);
    EXPECT_EQ(CPfBeatBuilder::PhaseOffset(-1500, 1000.0f), 0.5f);
    EXPECT_EQ(CPfBeatBuilder::AbsPhaseOffset(1750, 1000.0f), 0.25f);
    EXPECT_EQ(CPfBeatBuilder::AbsPhaseOffset(1250, 1000.0f), 0.25f);
}

TEST(BeatGridTest, StepsAreCountedHalvesUp) {
    EXPECT_EQ(CPfBeatBuilder::IntervalCount(1499, 1000.0f), 1U);
    EXPECT_EQ(CPfBeatBuilder::IntervalCount(1500, 1000.0f), 2U);
    EXPECT_EQ(CPfBeatBuilder::IntervalCount(0, 1000.0f), 0U);
    EXPECT_EQ(CPfBeatBuilder::IntervalCount(-600, 1000.0f), 0U);
    // What can't be counted is held to the range of the count.
    EXPECT_EQ(CPfBeatBuilder::IntervalCount(-5000, 1000.0f), 0U);
    EXPECT_EQ(CPfBeatBuilder::IntervalCount(1, 0.0f), 0xFFFFFFFFU);
    EXPECT_EQ(CPfBeatBuilder::IntervalCount(0, 0.0f), 0U);
    EXPECT_EQ(CPfBeatBuilder::IntervalCount(1000, kNaN), 0U);
    EXPECT_EQ(CPfBeatBuilder::IntervalCount(1000, kInfinity), 0U);
}

TEST(BeatGridTest, ValuesAreHeldToTheirBounds) {
    EXPECT_EQ(CPfBeatBuilder::GetBoundedValue(-1.0f, 0.0f, 2.0f), 0.0f);
    EXPECT_EQ(CPfBeatBuilder::GetBoundedValue(0.5f, 0.0f, 2.0f), 0.5f);
    EXPECT_EQ(CPfBeatBuilder::GetBoundedValue(3.0f, 0.0f, 2.0f), 2.0f);
    EXPECT_EQ(CPfBeatBuilder::GetBoundedValue(-1.0f, 0.0f, -2.0f), 0.0f); // the lower one first
}

TEST(BeatGridTest, EverySecondPointIsKept) {
    CPfImpactPoints fromFirst = PointsAt({50, 10, 40, 20, 30});
    CPfBeatBuilder::DownsampleByHalf(1, &fromFirst);
    EXPECT_THAT(ToList(fromFirst), ElementsAre(50, 40, 30));
    CPfImpactPoints fromSecond = PointsAt({50, 10, 40, 20, 30});
    CPfBeatBuilder::DownsampleByHalf(0, &fromSecond);
    EXPECT_THAT(ToList(fromSecond), ElementsAre(10, 20));
    CPfImpactPoints none = PointsAt({});
    CPfBeatBuilder::DownsampleByHalf(-1, &none);
    EXPECT_THAT(ToList(none), IsEmpty());
}
