// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/BeatGridFit.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace {

constexpr double kHopSeconds = 32.0 / 44100.0;

/// A grid as the engine has it, and what sets in at the strokes: moments in seconds by number.
struct CStrokes {
    CStrokes(int count, std::function<double(int)> const& stroke,
             std::function<double(int)> const& point)
        : m_vRises(static_cast<std::size_t>(stroke(count) / kHopSeconds) + 1000, 0) {
        for (int i = 0; i < count; ++i) {
            m_vStrokes.push_back(stroke(i));
            m_vPoints.push_back(static_cast<std::int64_t>(point(i) * 44100.0));
            m_vRises[static_cast<std::size_t>(stroke(i) / kHopSeconds)] = 30;
        }
    }

    [[nodiscard]] CFittedGrid Fit() const { return FitGrid(m_vPoints, m_vRises); }

    /// The largest distance of a fitted half beat from its stroke.
    [[nodiscard]] double WorstError(CFittedGrid const& grid) const {
        double worst = 0.0;
        for (std::size_t i = 0; i < m_vStrokes.size(); ++i) {
            worst = std::max(worst, std::abs(grid.m_vSeconds.at(i) - m_vStrokes[i]));
        }
        return worst;
    }

    std::vector<double> m_vStrokes;
    std::vector<std::int64_t> m_vPoints;
    std::vector<std::uint8_t> m_vRises;
};

double Even(int i) {
    return 1.0 + 0.2517 * i;
}

} // namespace

TEST(BeatGridFitTest, ARiseIsAboveAllOfTheLastTwelveSteps) {
    std::vector<std::uint8_t> levels(40, 50);
    levels[20] = 60;
    levels[21] = 65;
    levels[31] = 63; // the 60 lies eleven steps back, the 65 ten
    levels[34] = 63; // the 65 lies thirteen steps back, the 63 three
    levels[39] = 99;
    std::vector<std::uint8_t> const rises = AttackRises(levels);
    EXPECT_EQ(rises[20], 10);
    EXPECT_EQ(rises[21], 5);
    EXPECT_EQ(rises[31], 0);
    EXPECT_EQ(rises[34], 0);
    EXPECT_EQ(rises[39], 30); // of 36, held to 30
    EXPECT_EQ(rises[22], 0);
}

TEST(BeatGridFitTest, WhatIsFarBelowTheLoudestDoesNotRise) {
    std::vector<std::uint8_t> levels(40, 0);
    levels[20] = 50; // 53 dB below 200 is level 60
    levels[30] = 70;
    levels[39] = 200;
    std::vector<std::uint8_t> const rises = AttackRises(levels);
    EXPECT_EQ(rises[20], 0);
    EXPECT_EQ(rises[30], 10);
}

TEST(BeatGridFitTest, TheGridComesToLieOnTheStrokes) {
    // The engine's points lie 8 ms before hard strokes, and on multiples of 256 samples.
    CStrokes const strokes(400, Even, [](int i) {
        return std::floor((Even(i) - 0.008) * 44100.0 / 256.0) * 256.0 / 44100.0;
    });
    CFittedGrid const grid = strokes.Fit();
    ASSERT_EQ(grid.m_vSeconds.size(), 400U);
    EXPECT_TRUE(grid.m_bSteady);
    EXPECT_LT(strokes.WorstError(grid), 0.0004); // half a step
}

TEST(BeatGridFitTest, ALongSongDoesNotDriftOff) {
    // 40 minutes, on a grid that is too fast by 20 ms in all.
    CStrokes const strokes(9600, Even, [](int i) { return Even(i) + 0.010 - 0.020 * i / 9600.0; });
    CFittedGrid const grid = strokes.Fit();
    EXPECT_TRUE(grid.m_bSteady);
    EXPECT_LT(strokes.WorstError(grid), 0.0004);
}

TEST(BeatGridFitTest, ASingleLateStrokeMovesNoBeat) {
    CStrokes const strokes(
        200, [](int i) { return Even(i) + (i == 100 ? 0.008 : 0.0); },
        [](int i) { return Even(i) - 0.005; });
    CFittedGrid const grid = strokes.Fit();
    EXPECT_TRUE(grid.m_bSteady);
    // 8 ms, shared by 200 strokes, and half a step.
    EXPECT_NEAR(grid.m_vSeconds[100], Even(100), 0.0005);
}

TEST(BeatGridFitTest, AWanderingTempoIsFollowed) {
    auto const wander = [](int i) {
        return Even(i) + 0.3 * std::sin(2.0 * std::numbers::pi * i / 200.0);
    };
    CStrokes const strokes(600, wander, [&](int i) { return wander(i) - 0.008; });
    CFittedGrid const grid = strokes.Fit();
    EXPECT_FALSE(grid.m_bSteady);
    EXPECT_LT(strokes.WorstError(grid), 0.012); // it may cut corners of two measures
    double sum = 0.0;
    for (std::size_t i = 0; i < 600; ++i) {
        sum += std::abs(grid.m_vSeconds[i] - strokes.m_vStrokes[i]);
    }
    EXPECT_LT(sum / 600.0, 0.003);
}

TEST(BeatGridFitTest, MissingPointsAreFilledIn) {
    CStrokes strokes(100, Even, [](int i) { return Even(i) - 0.008; });
    strokes.m_vPoints.erase(strokes.m_vPoints.begin() + 40, strokes.m_vPoints.begin() + 43);
    CFittedGrid const grid = strokes.Fit();
    ASSERT_EQ(grid.m_vSeconds.size(), 100U);
    EXPECT_LT(strokes.WorstError(grid), 0.0004);
}

TEST(BeatGridFitTest, WithoutStrokesTheGridStaysEven) {
    CStrokes strokes(100, Even, Even);
    strokes.m_vRises.assign(strokes.m_vRises.size(), 0);
    CFittedGrid const grid = strokes.Fit();
    ASSERT_EQ(grid.m_vSeconds.size(), 100U);
    EXPECT_NEAR(grid.m_dStepSeconds, 0.2517, 0.0001);
}

TEST(BeatGridFitTest, TooFewPointsAndTooCloseOnesAreNoGrid) {
    std::vector<std::uint8_t> const rises(5000, 1);
    EXPECT_TRUE(FitGrid({}, rises).m_vSeconds.empty());
    EXPECT_TRUE(FitGrid(std::vector<std::int64_t>{1000}, rises).m_vSeconds.empty());
    // 2204 samples are less than a twentieth of a second.
    EXPECT_TRUE(FitGrid(std::vector<std::int64_t>{0, 2204, 4408}, rises).m_vSeconds.empty());
    EXPECT_EQ(FitGrid(std::vector<std::int64_t>{0, 2206, 4412}, rises).m_vSeconds.size(), 3U);
}

TEST(BeatGridFitTest, WithoutSoundTheGridStays) {
    CFittedGrid const grid = FitGrid(std::vector<std::int64_t>{0, 22050, 44100}, {});
    ASSERT_EQ(grid.m_vSeconds.size(), 3U);
    EXPECT_NEAR(grid.m_dStepSeconds, 0.5, 1e-9);
}
