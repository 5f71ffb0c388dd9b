// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/envelope/ImpactPoints.h"
#include "base/EngineRate.h"

#include <algorithm>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <random>
#include <vector>

using testing::ElementsAre;

namespace {

constexpr std::int64_t kLength = 1'000'000;

CPfImpactPoints PointsOf(std::initializer_list<std::int64_t> positions) {
    CPfImpactPoints points(kEngineRateHz, kLength);
    for (std::int64_t const position : positions) {
        points.Add(position);
    }
    return points;
}

CVectorArray<std::int64_t> RandomValues(std::size_t count) {
    std::mt19937_64 random(count);
    CVectorArray<std::int64_t> values;
    for (std::size_t i = 0; i < count; ++i) {
        values.Add(static_cast<std::int64_t>(random()));
    }
    return values;
}

} // namespace

TEST(ImpactPointsTest, StartsEmptyWithRateAndLength) {
    CPfImpactPoints const points(kEngineRateHz, kLength);
    EXPECT_EQ(points.GetUpperBound(), -1);
    EXPECT_EQ(points.GetSampleRate(), kEngineRateHz);
    EXPECT_EQ(points.GetSampleCount(), kLength);
    EXPECT_EQ(points.GetResolution(), 0U);
}

TEST(ImpactPointsTest, EnumeratesInsideTheListOnly) {
    CPfImpactPoints points = PointsOf({30, 10});
    points.AddMeasStartMark(7);
    std::int64_t position = -1;
    EXPECT_FALSE(points.EnumPoints(-1, &position));
    EXPECT_FALSE(points.EnumPoints(2, &position));
    EXPECT_FALSE(points.EnumMeasStartMarks(-1, &position));
    EXPECT_FALSE(points.EnumMeasStartMarks(1, &position));
    EXPECT_EQ(position, -1);
    EXPECT_TRUE(points.EnumPoints(1, &position));
    EXPECT_EQ(position, 10);
    EXPECT_TRUE(points.EnumMeasStartMarks(0, &position));
    EXPECT_EQ(position, 7);
    EXPECT_EQ(points.GetUpperBound(), 1);
}

TEST(ImpactPointsTest, RemoveAllLeavesTheMarks) {
    CPfImpactPoints points = PointsOf({30, 10});
    points.AddMeasStartMark(7);
    points.RemoveAll();
    EXPECT_EQ(points.GetUpperBound(), -1);
    EXPECT_THAT(points.MeasStartMarks(), ElementsAre(7));
}

TEST(ImpactPointsTest, ClosestPointOfEquallyDistantOnesIsTheFirstStored) {
    std::int32_t index = -1;
    EXPECT_TRUE(PointsOf({20, 10}).GetClosestPointIndex(15, &index)); // not in ascending order
    EXPECT_EQ(index, 0);
    EXPECT_TRUE(PointsOf({10, 20}).GetClosestPointIndex(15, &index));
    EXPECT_EQ(index, 0);
    EXPECT_TRUE(PointsOf({10, 20, 20, 20}).GetClosestPointIndex(21, &index));
    EXPECT_EQ(index, 1);
    EXPECT_TRUE(PointsOf({10, 10, 20}).GetClosestPointIndex(15, &index));
    EXPECT_EQ(index, 0);
}

TEST(ImpactPointsTest, ClosestPointOfAnEmptyListIsNone) {
    std::int32_t index = 5;
    EXPECT_FALSE(PointsOf({}).GetClosestPointIndex(15, &index));
    EXPECT_EQ(index, 5);
}

TEST(ImpactPointsTest, PinsClosestPointMustBeatTheFarEnd) {
    // |2^62 - 1 - 0| = 2^62 - 1 is not smaller than itself; one sample nearer is.
    constexpr std::int64_t kFarEnd = 0x3FFFFFFFFFFFFFFF;
    std::int32_t index = 5;
    EXPECT_FALSE(PointsOf({kFarEnd}).GetClosestPointIndex(0, &index));
    EXPECT_EQ(index, 5);
    EXPECT_TRUE(PointsOf({kFarEnd - 1}).GetClosestPointIndex(0, &index));
    EXPECT_EQ(index, 0);
}

TEST(ImpactPointsTest, ClosestPointIsTheSameForAnyOrderOfSearch) {
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::int64_t> values(random() % 12 + 1);
        std::ranges::generate(values, [&] { return static_cast<std::int64_t>(random() % 30); });
        std::ranges::sort(values);
        CPfImpactPoints ascending(kEngineRateHz, kLength);
        for (std::int64_t const value : values) {
            ascending.Add(value);
        }
        // A last point that is out of order and too far away to win forces the plain search.
        CPfImpactPoints plain = ascending;
        plain.Add(-1000);
        for (std::int64_t position = -3; position < 34; ++position) {
            std::int32_t expected = -1;
            std::int32_t index = -2;
            ASSERT_TRUE(plain.GetClosestPointIndex(position, &expected));
            ASSERT_TRUE(ascending.GetClosestPointIndex(position, &index));
            ASSERT_EQ(index, expected) << position;
        }
    }
}

TEST(ImpactPointsTest, SortOrdersPointsAndMarks) {
    CPfImpactPoints points = PointsOf({5, 3, 5, 3});
    points.AddMeasStartMark(9);
    points.AddMeasStartMark(2);
    points.Sort();
    EXPECT_THAT(points.Points(), ElementsAre(3, 3, 5, 5));
    EXPECT_THAT(points.MeasStartMarks(), ElementsAre(2, 9));
}

TEST(ImpactPointsTest, SortAndFilterDupesKeepsDuplicateMarks) {
    CPfImpactPoints points = PointsOf({5, 3, 5, 3});
    for (std::int64_t const mark : {9, 2, 9}) {
        points.AddMeasStartMark(mark);
    }
    points.SortAndFilterDupes();
    EXPECT_THAT(points.Points(), ElementsAre(3, 5));
    EXPECT_THAT(points.MeasStartMarks(), ElementsAre(2, 9, 9));
}

TEST(ImpactPointsTest, PinsFilterDropsTheLowestPositionButOne) {
    constexpr std::int64_t kLowest = INT64_MIN;
    CPfImpactPoints points = PointsOf({kLowest + 1, kLowest + 1, 4});
    points.SortAndFilterDupes();
    EXPECT_THAT(points.Points(), ElementsAre(4));
    points = PointsOf({kLowest, kLowest + 1, 4}); // here it isn't the first, so it stays
    points.SortAndFilterDupes();
    EXPECT_THAT(points.Points(), ElementsAre(kLowest, kLowest + 1, 4));
}

TEST(ImpactPointsTest, SortStepIsTheLargestTripleThatFitsANinth) {
    EXPECT_EQ(CalcSortStepSize(0), 1U);
    EXPECT_EQ(CalcSortStepSize(13), 1U);
    EXPECT_EQ(CalcSortStepSize(14), 4U);  // 40 / 9
    EXPECT_EQ(CalcSortStepSize(40), 4U);  // 40 / 9
    EXPECT_EQ(CalcSortStepSize(41), 13U); // 121 / 9
    EXPECT_EQ(CalcSortStepSize(29'524), 3280U);
    EXPECT_EQ(CalcSortStepSize(29'525), 3280U);
    EXPECT_EQ(CalcSortStepSize(30'000), 3280U);
}

TEST(ImpactPointsTest, PinsSortStepStopsGrowing) {
    EXPECT_EQ(CalcSortStepSize(100'000), 3280U);
    EXPECT_EQ(CalcSortStepSize(0xFFFFFFFF), 3280U);
}

TEST(ImpactPointsTest, SortSortsAnyNumberOfValues) {
    for (std::size_t const count : {1U, 2U, 13U, 14U, 41U, 1000U, 30'000U}) {
        CVectorArray<std::int64_t> values = RandomValues(count);
        std::vector<std::int64_t> expected(values.begin(), values.end());
        std::ranges::sort(expected);
        EXPECT_TRUE(Sort(&values));
        EXPECT_TRUE(std::ranges::equal(values, expected)) << count;
    }
}

TEST(ImpactPointsTest, SortOfAnEmptyArrayIsFalse) {
    CVectorArray<std::int64_t> values;
    EXPECT_FALSE(Sort(&values));
}

TEST(ImpactPointsTest, AppendTakesPointsOnly) {
    CPfImpactPoints points = PointsOf({1});
    CPfImpactPoints other = PointsOf({3, 2});
    other.AddMeasStartMark(9);
    points.Append(other);
    EXPECT_THAT(points.Points(), ElementsAre(1, 3, 2));
    EXPECT_TRUE(points.MeasStartMarks().empty());
    points.Append(points);
    EXPECT_THAT(points.Points(), ElementsAre(1, 3, 2, 1, 3, 2));
    std::int32_t index = -1; // the appended values are out of order: 2 is found all the same
    EXPECT_TRUE(points.GetClosestPointIndex(2, &index));
    EXPECT_EQ(index, 2);
}

TEST(ImpactPointsTest, AssignmentCopiesEverything) {
    CPfImpactPoints source = PointsOf({4, 2});
    source.AddMeasStartMark(4);
    source.SetResolution(8);
    CPfImpactPoints target(8000, 5);
    target.Add(1);
    target.AddMeasStartMark(1);
    target = source;
    EXPECT_THAT(target.Points(), ElementsAre(4, 2));
    EXPECT_THAT(target.MeasStartMarks(), ElementsAre(4));
    EXPECT_EQ(target.GetSampleRate(), kEngineRateHz);
    EXPECT_EQ(target.GetSampleCount(), kLength);
    EXPECT_EQ(target.GetResolution(), 8U);
}

TEST(ImpactPointsTest, MeasureIsFourBeatsAtTheListsRate) {
    EXPECT_EQ(PointsOf({}).SamPerMeas(120.0f), 88'200U); // 44100 / ((120 * 0.25) / 60)
    EXPECT_EQ(PointsOf({}).SamPerMeas(0.0f), 0U);
}
