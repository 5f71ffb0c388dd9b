// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/tempo/ImpactFinder.h"
#include "base/EngineRate.h"

#include "engine/envelope/ImpactPoints.h"
#include "support/Envelope.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::uint16_t kTenSamples = 10;
constexpr std::uint32_t kHold = 4;

CPfPcmThumbnail Envelope(std::vector<float> const& values) {
    return MakeEnvelope(values, kEngineRateHz, kTenSamples);
}

/// Elements 0, 1, 2 ... count - 1: a slope of 1 everywhere.
CPfPcmThumbnail Ramp(int count) {
    std::vector<float> values;
    for (int i = 0; i < count; ++i) {
        values.push_back(static_cast<float>(i));
    }
    return Envelope(values);
}

/// 0 up to element k, 1 behind it.
CPfPcmThumbnail StepAt(int k, int count) {
    std::vector<float> values(static_cast<std::size_t>(count), 0.0f);
    for (auto i = static_cast<std::size_t>(k) + 1; i < values.size(); ++i) {
        values[i] = 1.0f;
    }
    return Envelope(values);
}

std::vector<std::int64_t> Slopes(CPfPcmThumbnail const& thumb, float threshold) {
    CPfImpactPoints points(kEngineRateHz, thumb.GetSampleCount());
    std::int32_t const found = CPfImpactFinder::FindImpactPoints(&thumb, threshold, kHold, &points);
    EXPECT_EQ(found, points.GetUpperBound() + 1);
    return {points.Points().begin(), points.Points().end()};
}

std::vector<std::int64_t> Ratios(CPfPcmThumbnail const& thumb, float ratio) {
    CPfImpactPoints points(kEngineRateHz, thumb.GetSampleCount());
    std::int32_t const found =
        CPfImpactFinder::FindImpactPointsClassic(&thumb, ratio, kHold, &points);
    EXPECT_EQ(found, points.GetUpperBound() + 1);
    return {points.Points().begin(), points.Points().end()};
}

std::vector<std::int64_t> RangeSlopes(CPfPcmThumbnail const& thumb, std::int32_t low,
                                      std::int32_t high) {
    CPfImpactPoints points(kEngineRateHz, thumb.GetSampleCount());
    CPfImpactFinder::FindImpactPointsRange(&thumb, 0.5f, kHold, low, high, &points);
    return {points.Points().begin(), points.Points().end()};
}

} // namespace

TEST(ImpactFinderTest, ConstantValuesHaveNoOnsets) {
    CPfPcmThumbnail const constant = Envelope(std::vector<float>(40, 3.0f));
    EXPECT_THAT(Slopes(constant, 0.0f), IsEmpty());
    EXPECT_THAT(Ratios(constant, 1.0f), IsEmpty());
}

TEST(ImpactFinderTest, AnEmptyThumbnailHasNoOnsets) {
    EXPECT_THAT(Slopes(CPfPcmThumbnail(), 0.0f), IsEmpty());
    EXPECT_THAT(Ratios(CPfPcmThumbnail(), 1.0f), IsEmpty());
    EXPECT_THAT(RangeSlopes(CPfPcmThumbnail(), 0, 10), IsEmpty());
}

// On a plateau the remembered peak moves from the last element by five elements at a time, for it
// falls out of sight every fifth element and the first of the equal elements takes its place. At
// the foot k it is (last - k) mod 5 elements away. For 1 that is the neighbour; for 0 it has just
// gone out of sight, and of elements k .. k + 3 the first of the ones is the neighbour again.
TEST(ImpactFinderTest, StepIsFoundAtItsFootBelowTheSlopeThatTheLastPeakMakes) {
    struct CAlignment {
        int m_nLast;
        float m_fSlope;
    };
    constexpr int kFoot = 10;
    for (CAlignment const& at : {CAlignment{20, 1.0f}, CAlignment{21, 1.0f},
                                 CAlignment{22, 1.0f / 2.0f}, CAlignment{23, 1.0f / 3.0f}}) {
        CPfPcmThumbnail const step = StepAt(kFoot, at.m_nLast + 1);
        EXPECT_THAT(Slopes(step, at.m_fSlope * 0.99f), ElementsAre(kFoot * kTenSamples))
            << at.m_nLast;
        EXPECT_THAT(Slopes(step, at.m_fSlope), IsEmpty()) << at.m_nLast;
    }
}

TEST(ImpactFinderTest, StepMayBeFoundAnElementBeforeItsFoot) {
    // Element 14 is remembered: 1/4 at the foot. At element 9 it is out of sight; of elements 9 to
    // 12 the first of the ones is 11, and 1/2 is steeper than 0.3.
    EXPECT_THAT(Slopes(StepAt(10, 25), 0.24f), ElementsAre(10 * kTenSamples));
    EXPECT_THAT(Slopes(StepAt(10, 25), 0.3f), ElementsAre(9 * kTenSamples));
    EXPECT_THAT(Slopes(StepAt(10, 25), 0.5f), IsEmpty());
}

TEST(ImpactFinderTest, StepIsFoundAtTheRememberedPeakForAnyRatio) {
    for (float const ratio : {1.0f, 30.0f, 1e30f}) {
        EXPECT_THAT(Ratios(StepAt(10, 21), ratio), ElementsAre(11 * kTenSamples)); // last 20
        EXPECT_THAT(Ratios(StepAt(10, 22), ratio), ElementsAre(11 * kTenSamples)); // last 21
        EXPECT_THAT(Ratios(StepAt(10, 23), ratio), ElementsAre(12 * kTenSamples)); // last 22
    }
}

TEST(ImpactFinderTest, SkipsFourElementsAfterADetection) {
    // Elements 0 to 11, from 11 down: 10 is found; 9 to 6 are skipped; 5 is found; 4 to 1 are
    // skipped; 0 is found.
    EXPECT_THAT(Slopes(Ramp(12), 0.5f),
                ElementsAre(10 * kTenSamples, 5 * kTenSamples, 0 * kTenSamples));
}

TEST(ImpactFinderTest, RatioIsTestedAtThePeakItself) {
    // 1 > 0.5 * 1 holds at element 9, the last one, where peak and element under test are one. Then
    // 8 to 5 are skipped, the peak moves along to 5, and at element 4 it is 5 that is found.
    CPfPcmThumbnail const constant = Envelope(std::vector<float>(10, 1.0f));
    EXPECT_THAT(Ratios(constant, 0.5f), ElementsAre(9 * kTenSamples, 5 * kTenSamples));
}

TEST(ImpactFinderTest, WithoutHoldEveryFootCounts) {
    CPfPcmThumbnail const ramp = Ramp(5);
    CPfImpactPoints points(kEngineRateHz, 50);
    // No element ahead is in sight: each becomes its own peak, and nothing rises.
    EXPECT_EQ(CPfImpactFinder::FindImpactPoints(&ramp, 0.5f, 0, &points), 0);
    // One ahead is in sight: found at 3 and 1, each with one element skipped.
    EXPECT_EQ(CPfImpactFinder::FindImpactPoints(&ramp, 0.5f, 1, &points), 2);
    EXPECT_THAT(points.Points(), ElementsAre(3 * kTenSamples, 1 * kTenSamples));
}

TEST(ImpactFinderTest, PinsBoundOfTheLookAheadIsLeftOut) {
    // At element 4 the peak at 9 falls out of sight. The bound, element 8, would make 9 > 2 * 4.2;
    // without it the largest of elements 4 .. 7 is 8, and 8 > 2 * 4.2 is false.
    std::vector<float> values = {4.2f, 4.2f, 4.2f, 4.2f, 4.2f, 8.0f, 8.0f, 8.0f, 9.0f, 10.0f};
    EXPECT_THAT(Ratios(Envelope(values), 2.0f), IsEmpty());
    values[7] = 9.0f; // inside the look-ahead of element 4
    EXPECT_THAT(Ratios(Envelope(values), 2.0f), ElementsAre(7 * kTenSamples));
}

TEST(ImpactFinderTest, RangeIncludesBothEnds) {
    CPfPcmThumbnail const ramp = Ramp(12);
    EXPECT_THAT(RangeSlopes(ramp, 9, 11), ElementsAre(9 * kTenSamples));
    EXPECT_THAT(RangeSlopes(ramp, 10, 11), IsEmpty());
    EXPECT_THAT(RangeSlopes(ramp, -5, 8), ElementsAre(6 * kTenSamples, 1 * kTenSamples));
    EXPECT_THAT(RangeSlopes(ramp, 0, 12), IsEmpty()); // element 12 doesn't exist
}

TEST(ImpactFinderTest, PinsRangeStartsAsAfterADetection) {
    // Elements 11 and 10 are never tested, where the whole scan finds 10.
    EXPECT_THAT(RangeSlopes(Ramp(12), 0, 11), ElementsAre(9 * kTenSamples, 4 * kTenSamples));
}

TEST(ImpactFinderTest, PointsAreAppended) {
    CPfPcmThumbnail const ramp = Ramp(12);
    CPfImpactPoints points(kEngineRateHz, 120);
    points.Add(777);
    EXPECT_EQ(CPfImpactFinder::FindImpactPoints(&ramp, 0.5f, kHold, &points), 3);
    EXPECT_THAT(points.Points(), ElementsAre(777, 100, 50, 0));
}
