// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/envelope/PcmThumbnail.h"

#include "engine/envelope/ImpactPoints.h"
#include "support/FailingAllocation.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <utility>

namespace {

/// A thumbnail of `values`, one sample per element.
CPfPcmThumbnail ThumbnailOf(std::initializer_list<float> values, std::uint32_t rate = 44100) {
    CPfPcmThumbnail thumb;
    EXPECT_TRUE(thumb.Initialize(static_cast<std::int64_t>(values.size()), rate, 1));
    std::int32_t i = 0;
    for (float const value : values) {
        thumb.SetAt(i++, value);
    }
    return thumb;
}

/// At a rate of 3 samples per second 60 BPM gives 3 / (15 / 60) = 12 samples per measure; 240 BPM
/// gives 3 / (60 / 60) = 3.
constexpr std::uint32_t kSlowRate = 3;
constexpr float kThreeSamplesPerMeasureBpm = 240.0f;

} // namespace

TEST(PcmThumbnailTest, StartsEmpty) {
    CPfPcmThumbnail thumb;
    float* data = nullptr;
    std::uint32_t count = 7;
    EXPECT_EQ(thumb.GetCount(), 0);
    EXPECT_EQ(thumb.GetSampleCount(), 0);
    EXPECT_EQ(thumb.GetSampleRate(), 1U);
    EXPECT_EQ(thumb.GetSamplesPerElement(), 1U);
    EXPECT_EQ(thumb.GetMaxRunningMeasAvg(), 0.0f);
    EXPECT_EQ(thumb.GetElePerMeas(0.0f), 0U);
    EXPECT_EQ(thumb.GetMaxValue(), 0.0f);
    EXPECT_EQ(thumb.GetMinValue(), 0.0f);
    EXPECT_EQ(thumb.GetMaxRangeValue(-3, 5), 0.0f);
    EXPECT_FALSE(thumb.GetData(&data, &count));
    EXPECT_EQ(count, 7U);
}

TEST(PcmThumbnailTest, InitializeMakesWholeElementsOfZero) {
    CPfPcmThumbnail thumb;
    ASSERT_TRUE(thumb.Initialize(1000, 44100, 256)); // 1000 / 256 = 3.9
    EXPECT_EQ(thumb.GetCount(), 3);
    EXPECT_EQ(thumb.GetSampleCount(), 1000);
    for (std::int32_t i = 0; i < 3; ++i) {
        float value = 1.0f;
        EXPECT_TRUE(thumb.EnumElements(i, &value));
        EXPECT_EQ(value, 0.0f);
    }
}

TEST(PcmThumbnailTest, AZeroRateKeepsTheRate) {
    CPfPcmThumbnail thumb;
    ASSERT_TRUE(thumb.Initialize(1000, 44100, 256));
    thumb.SetAt(0, 1.0f);
    ASSERT_TRUE(thumb.Initialize(600, 0, 100));
    EXPECT_EQ(thumb.GetSampleRate(), 44100U);
    EXPECT_EQ(thumb.GetSamplesPerElement(), 100U);
    EXPECT_EQ(thumb.GetCount(), 6);
    EXPECT_EQ(thumb.GetAt(0), 0.0f);
}

TEST(PcmThumbnailTest, ZeroSamplesPerElementKeepsThemAndHasNoElements) {
    CPfPcmThumbnail thumb;
    ASSERT_TRUE(thumb.Initialize(1000, 44100, 256));
    EXPECT_FALSE(thumb.Initialize(2000, 22050, 0));
    EXPECT_EQ(thumb.GetSamplesPerElement(), 256U);
    EXPECT_EQ(thumb.GetSampleRate(), 22050U);
    EXPECT_EQ(thumb.GetSampleCount(), 2000);
    EXPECT_EQ(thumb.GetCount(), 0);
}

TEST(PcmThumbnailTest, FewerSamplesThanAnElementIsNoFailure) {
    CPfPcmThumbnail thumb;
    EXPECT_TRUE(thumb.Initialize(255, 44100, 256));
    EXPECT_EQ(thumb.GetCount(), 0);
    EXPECT_EQ(thumb.GetMaxValue(), 0.0f);
}

TEST(PcmThumbnailTest, RefusesCountsThatNoArrayCanHave) {
    CPfPcmThumbnail thumb;
    ASSERT_TRUE(thumb.Initialize(1000, 44100, 256));
    EXPECT_FALSE(thumb.Initialize(-256, 44100, 256));
    EXPECT_EQ(thumb.GetCount(), 0);
    EXPECT_FALSE(thumb.Initialize(std::numeric_limits<std::int64_t>::max(), 44100, 1));
    EXPECT_EQ(thumb.GetCount(), 0);
}

TEST(PcmThumbnailTest, OutsideReadsAreZeroAndWritesAreDropped) {
    CPfPcmThumbnail thumb = ThumbnailOf({1.0f, 2.0f, 3.0f});
    thumb.SetAt(-1, 9.0f);
    thumb.SetAt(3, 9.0f);
    EXPECT_EQ(thumb.GetAt(-1), 0.0f);
    EXPECT_EQ(thumb.GetAt(3), 0.0f);
    EXPECT_EQ(thumb.GetAt(0), 1.0f);
    EXPECT_EQ(thumb.GetAt(2), 3.0f);
    float value = 5.0f;
    EXPECT_FALSE(thumb.EnumElements(3, &value));
    EXPECT_FALSE(thumb.EnumElements(-1, &value));
    EXPECT_EQ(value, 5.0f);
    EXPECT_TRUE(thumb.EnumElements(2, &value));
    EXPECT_EQ(value, 3.0f);
}

TEST(PcmThumbnailTest, GetDataHandsOutTheArrayItself) {
    CPfPcmThumbnail thumb = ThumbnailOf({1.0f, 2.0f});
    float* data = nullptr;
    std::uint32_t count = 0;
    ASSERT_TRUE(thumb.GetData(&data, &count));
    ASSERT_EQ(count, 2U);
    data[1] = 4.0f;
    EXPECT_EQ(thumb.GetAt(1), 4.0f);
}

TEST(PcmThumbnailTest, MaximumAndMinimumStartFromElementZero) {
    CPfPcmThumbnail const below = ThumbnailOf({-2.0f, -1.0f, -3.0f});
    EXPECT_EQ(below.GetMaxValue(), -1.0f);
    EXPECT_EQ(below.GetMinValue(), -3.0f);
    CPfPcmThumbnail const above = ThumbnailOf({2.0f, 5.0f, 4.0f});
    EXPECT_EQ(above.GetMaxValue(), 5.0f);
    EXPECT_EQ(above.GetMinValue(), 2.0f);
}

TEST(PcmThumbnailTest, TiesKeepTheCurrentValue) {
    CPfPcmThumbnail const zeros = ThumbnailOf({-0.0f, 0.0f});
    EXPECT_TRUE(std::signbit(zeros.GetMaxValue()));
    EXPECT_TRUE(std::signbit(zeros.GetMinValue()));
}

TEST(PcmThumbnailTest, RangeMaximumIncludesBothEnds) {
    CPfPcmThumbnail const thumb = ThumbnailOf({9.0f, 1.0f, 3.0f, 2.0f, 8.0f});
    EXPECT_EQ(thumb.GetMaxRangeValue(1, 3), 3.0f);
    EXPECT_EQ(thumb.GetMaxRangeValue(0, 1), 9.0f);
    EXPECT_EQ(thumb.GetMaxRangeValue(3, 99), 8.0f); // held to the last element
    EXPECT_EQ(thumb.GetMaxRangeValue(5, 9), 0.0f);  // first is past the end
    EXPECT_EQ(thumb.GetMaxRangeValue(3, 1), 2.0f);  // element first alone
    EXPECT_EQ(thumb.GetMaxRangeValue(-4, 1), 9.0f);
}

TEST(PcmThumbnailTest, SamplesPerMeasureAreThoseAtItsOwnRate) {
    CPfPcmThumbnail thumb;
    ASSERT_TRUE(thumb.Initialize(10, 22050, 1));
    EXPECT_EQ(thumb.SamPerMeas(120.0f), 44100U);
}

TEST(PcmThumbnailTest, ElementsPerMeasureAtZeroBpmAreThoseStored) {
    CPfPcmThumbnail thumb;
    ASSERT_TRUE(thumb.Initialize(100000, 44100, 256));
    EXPECT_EQ(thumb.GetElePerMeas(0.0f), 0U);
    EXPECT_EQ(thumb.GetElePerMeas(120.0f), 344U); // 88200 / 256 = 344.5
    EXPECT_EQ(thumb.GetElePerMeas(0.0f), 0U);
    thumb.ApplyBpm(60.0f);
    EXPECT_EQ(thumb.GetElePerMeas(0.0f), 689U); // 176400 / 256 = 689.06
    thumb.ApplyBpm(120.0f);
    EXPECT_EQ(thumb.GetElePerMeas(0.0f), 344U);
}

TEST(PcmThumbnailTest, RunningAverageDividesByTheMeasureWhileTheWindowFills) {
    // Three elements per measure. Sums: 3, 6; the third never comes.
    CPfPcmThumbnail const thumb = ThumbnailOf({3.0f, 3.0f}, kSlowRate);
    EXPECT_EQ(thumb.CalcMaxRunningMeasAvg(kThreeSamplesPerMeasureBpm), 2.0f);
}

TEST(PcmThumbnailTest, PinsRunningAverageNeverDropsElementZero) {
    // Sums of i = 0..5: 90; 90; 90; 90 + 3 (four elements, nothing has left yet);
    // + 3 - element 1 = 96; + 3 - element 2 = 99. The largest is 99 / 3.
    CPfPcmThumbnail const loudStart = ThumbnailOf({90.0f, 0.0f, 0.0f, 3.0f, 3.0f, 3.0f}, kSlowRate);
    EXPECT_EQ(loudStart.CalcMaxRunningMeasAvg(kThreeSamplesPerMeasureBpm), 33.0f);
    // The first subtraction is of element 1 at i = 4: 0 6 6 6 | 6 - 6 + 1 = 1 | 2 | 3.
    CPfPcmThumbnail const later =
        ThumbnailOf({0.0f, 6.0f, 0.0f, 0.0f, 1.0f, 1.0f, 1.0f}, kSlowRate);
    EXPECT_EQ(later.CalcMaxRunningMeasAvg(kThreeSamplesPerMeasureBpm), 2.0f);
}

TEST(PcmThumbnailTest, RunningAverageIsNeverNegative) {
    CPfPcmThumbnail const thumb = ThumbnailOf({-1.0f, -2.0f}, kSlowRate);
    EXPECT_EQ(thumb.CalcMaxRunningMeasAvg(kThreeSamplesPerMeasureBpm), 0.0f);
}

TEST(PcmThumbnailTest, RunningAverageSumsInDouble) {
    // In single precision 2^24 + 1 would be lost; (2^24 + 1 + 1) / 3 = 5592406 exactly.
    CPfPcmThumbnail const thumb = ThumbnailOf({16777216.0f, 1.0f, 1.0f}, kSlowRate);
    EXPECT_EQ(thumb.CalcMaxRunningMeasAvg(kThreeSamplesPerMeasureBpm), 5592406.0f);
}

TEST(PcmThumbnailTest, RunningAverageOfAMeasureWithoutElementsIsZero) {
    CPfPcmThumbnail thumb;
    ASSERT_TRUE(thumb.Initialize(40, kSlowRate, 4)); // 3 samples per measure, 4 per element
    thumb.SetAt(0, 1.0f);
    EXPECT_EQ(thumb.CalcMaxRunningMeasAvg(kThreeSamplesPerMeasureBpm), 0.0f);
    EXPECT_EQ(thumb.CalcMaxRunningMeasAvg(0.0f), 0.0f);
}

TEST(PcmThumbnailTest, ApplyBpmStoresBothMeasureFields) {
    CPfPcmThumbnail thumb = ThumbnailOf({3.0f, 3.0f, 6.0f}, kSlowRate);
    thumb.ApplyBpm(kThreeSamplesPerMeasureBpm);
    EXPECT_EQ(thumb.GetMaxRunningMeasAvg(), 4.0f);
    EXPECT_EQ(thumb.GetElePerMeas(0.0f), 3U);
}

TEST(PcmThumbnailTest, CopiesElementsAndMeasureFields) {
    CPfPcmThumbnail thumb = ThumbnailOf({3.0f, 3.0f, 6.0f}, kSlowRate);
    thumb.ApplyBpm(kThreeSamplesPerMeasureBpm);
    CPfPcmThumbnail copy(thumb);
    thumb.SetAt(0, 8.0f);
    EXPECT_EQ(copy.GetCount(), 3);
    EXPECT_EQ(copy.GetAt(0), 3.0f);
    EXPECT_EQ(copy.GetAt(2), 6.0f);
    EXPECT_EQ(copy.GetSampleRate(), kSlowRate);
    EXPECT_EQ(copy.GetMaxRunningMeasAvg(), 4.0f);
    EXPECT_EQ(copy.GetElePerMeas(0.0f), 3U);
    CPfPcmThumbnail const& self = copy;
    copy = self;
    EXPECT_EQ(copy.GetAt(2), 6.0f);
}

TEST(PcmThumbnailTest, AMoveTakesTheElementsAlong) {
    CPfPcmThumbnail thumb = ThumbnailOf({3.0f, 3.0f, 6.0f}, kSlowRate);
    thumb.ApplyBpm(kThreeSamplesPerMeasureBpm);
    float const* const elements = thumb.Elements().data();
    CPfPcmThumbnail moved(std::move(thumb));
    EXPECT_EQ(moved.Elements().data(), elements);
    EXPECT_EQ(moved.GetCount(), 3);
    EXPECT_EQ(moved.GetSampleCount(), 3);
    EXPECT_EQ(moved.GetSampleRate(), kSlowRate);
    EXPECT_EQ(moved.GetMaxRunningMeasAvg(), 4.0f);
    EXPECT_EQ(moved.GetElePerMeas(0.0f), 3U);
    EXPECT_EQ(thumb.GetCount(), 0); // NOLINT(bugprone-use-after-move): what is left is said
    EXPECT_EQ(thumb.GetAt(0), 0.0f);
    CPfPcmThumbnail& self = moved;
    moved = std::move(self);
    EXPECT_EQ(moved.GetAt(2), 6.0f);
}

TEST(PcmThumbnailTest, AnAssignmentWithoutMemoryLeavesTheTargetEmpty) {
    CPfPcmThumbnail source = ThumbnailOf({3.0f, 3.0f, 6.0f}, kSlowRate);
    source.ApplyBpm(kThreeSamplesPerMeasureBpm);
    CPfPcmThumbnail target = ThumbnailOf({1.0f, 2.0f});
    {
        CFailingAllocation const noMemory;
        target = source;
    }
    EXPECT_EQ(target.GetCount(), 0);
    EXPECT_EQ(target.GetAt(0), 0.0f);
    EXPECT_EQ(target.GetMaxRunningMeasAvg(), 0.0f);
    EXPECT_EQ(target.GetElePerMeas(0.0f), 0U);
    EXPECT_EQ(target.GetSampleCount(), 3);
}

TEST(PcmThumbnailTest, PinsAverageBetweenPointsDividesByTheDistance) {
    // Points at samples 4 and 12, four samples per element: elements 1 to 3, 2 apart.
    CPfPcmThumbnail thumb;
    ASSERT_TRUE(thumb.Initialize(20, 44100, 4));
    thumb.SetAt(0, 100.0f);
    thumb.SetAt(1, 1.0f);
    thumb.SetAt(2, 2.0f);
    thumb.SetAt(3, 4.0f);
    thumb.SetAt(4, 100.0f);
    CPfImpactPoints points(44100, 20);
    points.Add(4);
    points.Add(12);
    points.Add(15); // in element 3 as well
    EXPECT_EQ(thumb.GetAvgValueBetwImpPts(&points, 0, 1), 3.5f);
    EXPECT_TRUE(std::isinf(thumb.GetAvgValueBetwImpPts(&points, 1, 2))); // 4 / 0
    thumb.SetAt(3, 0.0f);
    EXPECT_TRUE(std::isnan(thumb.GetAvgValueBetwImpPts(&points, 1, 2))); // 0 / 0
}

TEST(PcmThumbnailTest, AverageOfMissingPointsGoesToTheEnds) {
    CPfPcmThumbnail const thumb = ThumbnailOf({1.0f, 2.0f, 3.0f, 6.0f});
    CPfImpactPoints points(44100, 4);
    points.Add(1);
    points.Add(2);
    points.Add(9);
    points.Add(-5);
    EXPECT_EQ(thumb.GetAvgValueBetwImpPts(&points, 7, 1), 3.0f);  // 0..2: 6 / 2
    EXPECT_EQ(thumb.GetAvgValueBetwImpPts(&points, 0, 7), 5.5f);  // 1..3: 11 / 2
    EXPECT_EQ(thumb.GetAvgValueBetwImpPts(&points, -1, 7), 4.0f); // 0..3: 12 / 3
    EXPECT_EQ(thumb.GetAvgValueBetwImpPts(&points, 1, 2), 9.0f);  // 2..3, held to the end: 9 / 1
    EXPECT_EQ(thumb.GetAvgValueBetwImpPts(&points, 3, 1), 3.0f);  // from 0 on: 6 / 2
}

TEST(PcmThumbnailTest, AverageOfABackwardRangeIsZero) {
    CPfPcmThumbnail const thumb = ThumbnailOf({1.0f, 2.0f, 3.0f, 6.0f});
    CPfImpactPoints points(44100, 4);
    points.Add(3);
    points.Add(1);
    points.Add(-9);
    points.Add(50);
    EXPECT_EQ(thumb.GetAvgValueBetwImpPts(&points, 0, 1), 0.0f); // 0 / -2
    EXPECT_EQ(thumb.GetAvgValueBetwImpPts(&points, 0, 2), 0.0f); // 0 / -12
    EXPECT_EQ(thumb.GetAvgValueBetwImpPts(&points, 3, 0), 0.0f); // starts behind the end
    EXPECT_EQ(CPfPcmThumbnail().GetAvgValueBetwImpPts(&points, 7, 7), 0.0f); // 0 / -1
}
