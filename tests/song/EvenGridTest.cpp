// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/EvenGrid.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr double kRiseSeconds = 32.0 / 44100.0;

/// Rises of 30 every `step` seconds from `first` on.
std::vector<std::uint8_t> RisesOf(double first, double step, double seconds) {
    std::vector<std::uint8_t> rises(static_cast<std::size_t>(seconds / kRiseSeconds), 0);
    for (double moment = first; moment < seconds; moment += step) {
        rises[static_cast<std::size_t>(moment / kRiseSeconds)] = 30;
    }
    return rises;
}

/// How far the grid is off the strokes after `seconds`.
double OffAt(CEvenGrid const& grid, double first, double step, double seconds) {
    double const stroke = first + step * std::round((seconds - first) / step);
    double const steps = (stroke - grid.m_dFirst) / grid.m_dStep;
    return std::abs(steps - std::round(steps)) * grid.m_dStep;
}

} // namespace

TEST(EvenGridTest, FindsAStepThatIsNotQuiteTheOneGiven) {
    auto const grid = FindEvenGrid(RisesOf(0.1, 0.2517, 50.0), 0.25);
    ASSERT_TRUE(grid.has_value());
    // To a bin of 2.9 ms and a drift of 6 ms at both ends.
    EXPECT_LT(OffAt(*grid, 0.1, 0.2517, 1.0), 0.009);
    EXPECT_LT(OffAt(*grid, 0.1, 0.2517, 49.0), 0.009);
}

TEST(EvenGridTest, HoldsTenMinutes) {
    auto const grid = FindEvenGrid(RisesOf(0.1, 0.2517, 600.0), 0.2509);
    ASSERT_TRUE(grid.has_value());
    EXPECT_LT(OffAt(*grid, 0.1, 0.2517, 1.0), 0.009);
    EXPECT_LT(OffAt(*grid, 0.1, 0.2517, 300.0), 0.009);
    EXPECT_LT(OffAt(*grid, 0.1, 0.2517, 599.0), 0.009);
}

TEST(EvenGridTest, SilenceHasNone) {
    EXPECT_FALSE(FindEvenGrid(std::vector<std::uint8_t>(100'000, 0), 0.25).has_value());
    EXPECT_FALSE(FindEvenGrid({}, 0.25).has_value());
}

TEST(EvenGridTest, AShortSongAndAnEndlessOneHaveNone) {
    EXPECT_FALSE(FindEvenGrid(RisesOf(0.0, 0.25, 3.9), 0.25).has_value());
    EXPECT_TRUE(FindEvenGrid(RisesOf(0.0, 0.25, 4.1), 0.25).has_value());
    EXPECT_FALSE(FindEvenGrid(RisesOf(0.0, 0.25, 901.0), 0.25).has_value());
    EXPECT_FALSE(FindEvenGrid(RisesOf(0.0, 0.25, 10.0), 0.0).has_value());
}
