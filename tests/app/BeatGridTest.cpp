// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/BeatGrid.h"

#include "engine/envelope/ImpactPoints.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

/// Half beats every 100 samples from `first` on, eight a measure, the downbeat at `mark`.
CPfImpactPoints Grid(std::int64_t first, int count, std::int64_t mark) {
    CPfImpactPoints grid(44100, 100'000);
    grid.SetResolution(8);
    for (int i = 0; i < count; ++i) {
        grid.Add(first + i * 100);
    }
    grid.AddMeasStartMark(mark);
    return grid;
}

} // namespace

TEST(BeatGridTest, EverySecondPointFromTheDownbeatOnIsABeat) {
    // Points 50, 150, 250 ... 1850; the downbeat is the fourth, 350.
    CBeatGrid const grid(Grid(50, 19, 350), 100'000);
    std::vector<CBeat> const expected{{150, 0, 4},  {350, 1, 1},  {550, 1, 2},
                                      {750, 1, 3},  {950, 1, 4},  {1150, 2, 1},
                                      {1350, 2, 2}, {1550, 2, 3}, {1750, 2, 4}};
    EXPECT_EQ(std::vector<CBeat>(grid.Beats().begin(), grid.Beats().end()), expected);
    EXPECT_EQ(grid.MeasureCount(), 2);
}

TEST(BeatGridTest, BeatsOutsideTheSongAreLeftOut) {
    CBeatGrid const grid(Grid(-300, 12, -300), 400); // beats at -300, -100, 100, 300, 500 ...
    ASSERT_EQ(grid.Beats().size(), 2U);
    EXPECT_EQ(grid.Beats()[0], (CBeat{100, 0, 3}));
    EXPECT_EQ(grid.Beats()[1], (CBeat{300, 0, 4}));
}

TEST(BeatGridTest, AGridWithoutResolutionHasNoBeats) {
    CPfImpactPoints points(44100, 1000);
    points.Add(10);
    CBeatGrid const grid(points, 1000);
    EXPECT_TRUE(grid.Beats().empty());
    EXPECT_EQ(grid.MeasureCount(), 0);
    EXPECT_EQ(grid.At(500), std::nullopt);
    EXPECT_EQ(grid.Step(500, 1), std::nullopt);
    EXPECT_EQ(grid.StepMeasures(500, -1), std::nullopt);
}

TEST(BeatGridTest, APlaceBelongsToTheBeatBeforeIt) {
    CBeatGrid const grid(Grid(50, 19, 350), 100'000);
    EXPECT_EQ(grid.At(149), std::nullopt);
    EXPECT_EQ(grid.At(150), (CBeat{150, 0, 4}));
    EXPECT_EQ(grid.At(549), (CBeat{350, 1, 1}));
    EXPECT_EQ(grid.At(1'000'000), (CBeat{1750, 2, 4}));
}

TEST(BeatGridTest, StepsGoFromBeatToBeatAndStayInTheSong) {
    CBeatGrid const grid(Grid(50, 19, 350), 100'000);
    EXPECT_EQ(grid.Step(350, 1)->m_nSample, 550);
    EXPECT_EQ(grid.Step(351, -1)->m_nSample, 350);
    EXPECT_EQ(grid.Step(350, -1)->m_nSample, 150);
    EXPECT_EQ(grid.Step(0, 3)->m_nSample, 550);
    EXPECT_EQ(grid.Step(0, 100)->m_nSample, 1750);
    EXPECT_EQ(grid.Step(5000, std::numeric_limits<std::int32_t>::min())->m_nSample, 150);
    EXPECT_EQ(grid.Step(1750, 1), std::nullopt);
    EXPECT_EQ(grid.Step(150, -1), std::nullopt);
    EXPECT_EQ(grid.StepMeasures(360, 1)->m_nSample, 1150);
    EXPECT_EQ(grid.StepMeasures(1150, -1)->m_nSample, 350);
}
