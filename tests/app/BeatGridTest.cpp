// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/BeatGrid.h"

#include "song/BeatTimes.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

/// Half beats every 100 samples from `first` on, eight a measure; `mark` is a downbeat.
CBeatTimes Times(std::int64_t first, int count, std::int64_t mark) {
    CBeatTimes times{.m_vHalfBeats = {}, .m_nBeatsPerMeasure = 4};
    for (int i = 0; i < count; ++i) {
        std::int64_t const sample = first + i * 100;
        std::int64_t const half = ((sample - mark) / 100 % 8 + 8) % 8;
        times.m_vHalfBeats.push_back(
            {.m_dSeconds = static_cast<double>(sample) / 44100.0,
             .m_nPlace = static_cast<std::uint8_t>(half % 2 == 0 ? half / 2 + 1 : 0)});
    }
    return times;
}

} // namespace

TEST(BeatGridTest, HalfBeatsBetweenTheBeatsAreLeftOut) {
    // Half beats 50, 150, 250 ... 1850; the downbeat is the fourth, 350.
    CBeatGrid const grid(Times(50, 19, 350), 100'000);
    std::vector<CBeat> const expected{{150, 0, 4},  {350, 1, 1},  {550, 1, 2},
                                      {750, 1, 3},  {950, 1, 4},  {1150, 2, 1},
                                      {1350, 2, 2}, {1550, 2, 3}, {1750, 2, 4}};
    EXPECT_EQ(std::vector<CBeat>(grid.Beats().begin(), grid.Beats().end()), expected);
    EXPECT_EQ(grid.MeasureCount(), 2);
}

TEST(BeatGridTest, BeatsOutsideTheSongAreLeftOut) {
    CBeatGrid const grid(Times(-300, 12, -300), 400); // beats at -300, -100, 100, 300, 500 ...
    ASSERT_EQ(grid.Beats().size(), 2U);
    EXPECT_EQ(grid.Beats()[0], (CBeat{100, 0, 3}));
    EXPECT_EQ(grid.Beats()[1], (CBeat{300, 0, 4}));
}

TEST(BeatGridTest, MeasuresOfThreeBeatsAreThatLong) {
    CBeatTimes times{.m_vHalfBeats = {}, .m_nBeatsPerMeasure = 3};
    for (int i = 0; i < 7; ++i) {
        times.m_vHalfBeats.push_back({.m_dSeconds = static_cast<double>(i),
                                      .m_nPlace = static_cast<std::uint8_t>(i % 3 + 1)});
    }
    CBeatGrid const grid(times, 44100 * 10);
    EXPECT_EQ(grid.BeatsPerMeasure(), 3);
    EXPECT_EQ(grid.MeasureCount(), 3);
    EXPECT_EQ(grid.StepMeasures(0, 1), (CBeat{3 * 44100, 2, 1}));
}

TEST(BeatGridTest, ASongWithoutBeatsHasAnEmptyGrid) {
    CBeatGrid const grid(CBeatTimes(), 1000);
    EXPECT_EQ(grid.BeatsPerMeasure(), 0);
    EXPECT_TRUE(grid.Beats().empty());
    EXPECT_EQ(grid.MeasureCount(), 0);
    EXPECT_EQ(grid.At(500), std::nullopt);
    EXPECT_EQ(grid.Step(500, 1), std::nullopt);
    EXPECT_EQ(grid.StepMeasures(500, -1), std::nullopt);
}

TEST(BeatGridTest, APlaceBelongsToTheBeatBeforeIt) {
    CBeatGrid const grid(Times(50, 19, 350), 100'000);
    EXPECT_EQ(grid.At(149), std::nullopt);
    EXPECT_EQ(grid.At(150), (CBeat{150, 0, 4}));
    EXPECT_EQ(grid.At(549), (CBeat{350, 1, 1}));
    EXPECT_EQ(grid.At(1'000'000), (CBeat{1750, 2, 4}));
}

TEST(BeatGridTest, StepsGoFromBeatToBeatAndStayInTheSong) {
    CBeatGrid const grid(Times(50, 19, 350), 100'000);
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
