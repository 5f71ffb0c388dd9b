// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/BeatGridFit.h"

#include <algorithm>
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
        : m_vRises(static_cast<std::size_t>(stroke(count) / kHopSeconds) + 1000, 0),
          m_vBands(m_vRises.size() / 8, {40, 40, 40, 40}) {
        for (int i = 0; i < count; ++i) {
            m_vStrokes.push_back(stroke(i));
            m_vPoints.push_back(static_cast<std::int64_t>(point(i) * 44100.0));
            m_vRises[static_cast<std::size_t>(stroke(i) / kHopSeconds)] = 30;
            Strike(stroke(i));
        }
    }

    [[nodiscard]] CFittedGrid Fit() const { return FitGrid(m_vPoints, 0.0, m_vRises, m_vBands); }

    /// All bands rise by 40 levels for 23 ms.
    void Strike(double seconds) {
        auto const first = static_cast<std::size_t>(seconds / (8.0 * kHopSeconds));
        for (std::size_t i = first; i < first + 4; ++i) {
            m_vBands.at(i) = {80, 80, 80, 80};
        }
    }

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
    CBandRows m_vBands;
};

double Even(int i) {
    return 1.0 + 0.2517 * i;
}

} // namespace

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
    std::vector<std::uint8_t> const rises(5000, 0);
    EXPECT_TRUE(FitGrid({}, 0.0, rises, {}).m_vSeconds.empty());
    EXPECT_TRUE(FitGrid(std::vector<std::int64_t>{1000}, 0.0, rises, {}).m_vSeconds.empty());
    // 2204 samples are less than a twentieth of a second.
    EXPECT_TRUE(
        FitGrid(std::vector<std::int64_t>{0, 2204, 4408}, 0.0, rises, {}).m_vSeconds.empty());
    EXPECT_EQ(FitGrid(std::vector<std::int64_t>{0, 2206, 4412}, 0.0, rises, {}).m_vSeconds.size(),
              3U);
}

TEST(BeatGridFitTest, WithoutSoundTheGridStays) {
    CFittedGrid const grid = FitGrid(std::vector<std::int64_t>{0, 22050, 44100}, 0.0, {}, {});
    ASSERT_EQ(grid.m_vSeconds.size(), 3U);
    EXPECT_NEAR(grid.m_dStepSeconds, 0.5, 1e-9);
}

TEST(BeatGridFitTest, WithoutPointsTheTempoMakesAGrid) {
    // 0.2517 s are half a beat at 119.19 BPM; the tempo is known to one in a hundred.
    CStrokes strokes(200, Even, Even);
    strokes.m_vPoints.clear();
    CFittedGrid const grid = FitGrid({}, 120.2, strokes.m_vRises, strokes.m_vBands);
    ASSERT_GT(grid.m_vSeconds.size(), 200U); // from the start on
    EXPECT_TRUE(grid.m_bSteady);
    for (double const stroke : strokes.m_vStrokes) {
        double nearest = 1.0;
        for (double const moment : grid.m_vSeconds) {
            nearest = std::min(nearest, std::abs(moment - stroke));
        }
        EXPECT_LT(nearest, 0.0005);
    }
}

TEST(BeatGridFitTest, AGridThatLeavesTheStrokesIsMended) {
    // Too slow by one in 250: after 200 half beats it is off by nearly a whole one.
    CStrokes const strokes(200, Even, [](int i) { return Even(i) + 0.001 * i - 0.1; });
    CFittedGrid const grid = strokes.Fit();
    for (std::size_t i = 1; i + 1 < grid.m_vSeconds.size(); ++i) {
        double const steps = (grid.m_vSeconds[i] - Even(0)) / 0.2517;
        EXPECT_LT(std::abs(steps - std::round(steps)) * 0.2517, 0.0005) << i;
    }
}

TEST(BeatGridFitTest, AGridThatSlipsByAWholeBeatIsMended) {
    // Too slow by one in 60, as the engine can be with strings: hardly a point meets a stroke.
    CStrokes const strokes(200, Even, [](int i) { return Even(i) + 0.0042 * i - 0.4; });
    CFittedGrid const grid = strokes.Fit();
    EXPECT_TRUE(grid.m_bSteady);
    for (std::size_t i = 1; i + 1 < grid.m_vSeconds.size(); ++i) {
        double const steps = (grid.m_vSeconds[i] - Even(0)) / 0.2517;
        EXPECT_LT(std::abs(steps - std::round(steps)) * 0.2517, 0.0005) << i;
    }
}

TEST(BeatGridFitTest, AGridBetweenTheStrokesMovesToThem) {
    CStrokes const strokes(200, Even, [](int i) { return Even(i) + 0.12; });
    CFittedGrid const grid = strokes.Fit();
    double const steps = (grid.m_vSeconds.at(100) - Even(0)) / 0.2517;
    EXPECT_NEAR(steps, std::round(steps), 0.002);
}

TEST(BeatGridFitTest, AGridOnTheDrumsStaysThere) {
    // As of swung music: the treble sets in between the half beats, all bands rise on them.
    CStrokes strokes(200, Even, [](int i) { return Even(i) + 0.08; });
    std::ranges::fill(strokes.m_vBands, strokes.m_vBands.front());
    for (double const stroke : strokes.m_vStrokes) {
        strokes.Strike(stroke + 0.08);
    }
    CFittedGrid const grid = strokes.Fit();
    ASSERT_EQ(grid.m_vSeconds.size(), 200U);
    EXPECT_NEAR(grid.m_vSeconds[100], Even(100) + 0.08, 0.042);
}
