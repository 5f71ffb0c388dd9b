// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/TempoMap.h"
#include "export/MadeSong.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {

std::vector<CBeatTime> BeatsAt(std::vector<double> const& seconds) {
    std::vector<CBeatTime> beats;
    for (double const at : seconds) {
        CBeatTime& beat = beats.emplace_back();
        beat.m_dSeconds = at;
        beat.m_nPlace = static_cast<std::uint8_t>((beats.size() - 1) % 4 + 1);
    }
    return beats;
}

/// The largest distance of a beat from where the steps put it.
double Furthest(std::vector<CBeatTime> const& beats, std::vector<CTempoStep> const& steps) {
    double furthest = 0.0;
    for (std::size_t i = 0; i < beats.size(); ++i) {
        auto const step = std::find_if(steps.rbegin(), steps.rend(),
                                       [&](CTempoStep const& s) { return s.m_nBeat <= i; });
        double const at =
            step->m_dSeconds + static_cast<double>(i - step->m_nBeat) * 60.0 / step->m_dBpm;
        furthest = std::max(furthest, std::abs(beats[i].m_dSeconds - at));
    }
    return furthest;
}

TEST(TempoMapTest, WholeBeatsAreThoseWithAPlace) {
    CTakenSong const song = MadeSong(120.0, 0.5, 3);
    auto const beats = WholeBeats(song.m_beats);
    ASSERT_EQ(beats.size(), 3U);
    EXPECT_EQ(beats[2].m_dSeconds, 1.5);
}

TEST(TempoMapTest, OneTempoIsOneStep) {
    auto const steps = MakeTempoMap(WholeBeats(MadeSong(120.0, 0.5, 100, 3).m_beats), 0.003, 0.01);
    ASSERT_EQ(steps.size(), 1U);
    EXPECT_EQ(steps[0].m_dSeconds, 0.5);
    EXPECT_NEAR(steps[0].m_dBpm, 120.0, 1e-9); // a multiple of 0.01 in binary
    EXPECT_EQ(steps[0].m_nPlace, 3);
}

TEST(TempoMapTest, TempoThatStepsHasAStepWhereItDoes) {
    // Four beats of half a second, then of a quarter.
    auto const steps =
        MakeTempoMap(BeatsAt({0.0, 0.5, 1.0, 1.5, 2.0, 2.25, 2.5, 2.75}), 0.003, 0.01);
    ASSERT_EQ(steps.size(), 2U);
    EXPECT_NEAR(steps[0].m_dBpm, 120.0, 1e-9);
    EXPECT_EQ(steps[1].m_nBeat, 4U);
    EXPECT_EQ(steps[1].m_dSeconds, 2.0);
    EXPECT_EQ(steps[1].m_nPlace, 1);
    EXPECT_NEAR(steps[1].m_dBpm, 240.0, 1e-9);
}

TEST(TempoMapTest, BeatsThatSpeedUpAreMetWithinTheTolerance) {
    std::vector<double> seconds = {0.2};
    for (int i = 0; i < 300; ++i) {
        seconds.push_back(seconds.back() + 0.5 - 0.0003 * i);
    }
    auto const beats = BeatsAt(seconds);
    for (double const tolerance : {0.0005, 0.003}) {
        auto const steps = MakeTempoMap(beats, tolerance, 0.01);
        EXPECT_LT(Furthest(beats, steps), tolerance + 1e-9);
        EXPECT_LT(steps.size(), beats.size() / 2);
    }
}

TEST(TempoMapTest, RoundedTempoIsCorrectedBeforeItAddsUp) {
    // 127.995 lies between two multiples: in five minutes 0.005 would add up to 12 ms.
    auto const beats = WholeBeats(MadeSong(127.995, 0.3, 640).m_beats);
    auto const steps = MakeTempoMap(beats, 0.003, 0.01);
    EXPECT_LT(Furthest(beats, steps), 0.003 + 1e-9);
    EXPECT_LE(steps.size(), 5U);
}

TEST(TempoMapTest, ThereIsNoneWithoutTwoAscendingBeats) {
    EXPECT_TRUE(MakeTempoMap({}, 0.003, 0.0).empty());
    EXPECT_TRUE(MakeTempoMap(BeatsAt({1.0}), 0.003, 0.0).empty());
    EXPECT_TRUE(MakeTempoMap(BeatsAt({1.0, 1.0}), 0.003, 0.0).empty());
    EXPECT_TRUE(MakeTempoMap(BeatsAt({1.0, 0.5}), 0.003, 0.0).empty());
}

} // namespace
