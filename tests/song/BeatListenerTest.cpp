// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/BeatListener.h"

#include "support/ClickTrack.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {

CBeatCurves CurvesOf(std::vector<float> const& samples) {
    CBeatListener listener;
    listener.Add(samples);
    return listener.Take();
}

/// Index of the loudest of the last row.
template <typename Rows>
std::ptrdiff_t LoudestOf(Rows const& rows) {
    auto const& row = rows.back();
    return std::max_element(row.begin(), row.end()) - row.begin();
}

} // namespace

TEST(BeatListenerTest, BlocksDoNotShow) {
    std::vector<float> const noise = MakeNoise(1.0, 0.5f);
    CBeatCurves const whole = CurvesOf(noise);
    CBeatListener listener;
    std::size_t const lengths[] = {1, 31, 32, 33, 1000, 5};
    std::size_t at = 0;
    for (std::size_t i = 0; at < noise.size(); ++i) {
        std::size_t const length = std::min(lengths[i % 6], noise.size() - at);
        listener.Add(std::span(noise).subspan(at, length));
        at += length;
    }
    CBeatCurves const parts = listener.Take();
    EXPECT_EQ(parts.m_vAttack, whole.m_vAttack);
    EXPECT_EQ(parts.m_vBands, whole.m_vBands);
    EXPECT_EQ(parts.m_vPitches, whole.m_vPitches);
}

TEST(BeatListenerTest, ALastPartOfAStepIsLeftOut) {
    // 4200 = 131 x 32 + 8 = 16 x 256 + 104 = 4096 + 104
    CBeatCurves const curves = CurvesOf(std::vector<float>(4200, 0.1f));
    EXPECT_EQ(curves.m_vAttack.size(), 131U);
    EXPECT_EQ(curves.m_vBands.size(), 16U);
    EXPECT_EQ(curves.m_vPitches.size(), 1U);
}

TEST(BeatListenerTest, TwiceTheHeightIsTwoOctavesOfEnergy) {
    std::vector<float> samples = MakeNoise(0.1, 0.25f);
    std::vector<std::uint8_t> const quiet = CurvesOf(samples).m_vAttack;
    std::ranges::for_each(samples, [](float& sample) { sample *= 2.0f; });
    std::vector<std::uint8_t> const loud = CurvesOf(samples).m_vAttack;
    for (std::size_t i = 0; i < quiet.size(); ++i) {
        EXPECT_EQ(loud[i], quiet[i] + 16) << i; // eight steps an octave
    }
}

TEST(BeatListenerTest, SilenceHasLevelZero) {
    CBeatCurves const curves = CurvesOf(MakeSilence(0.2));
    EXPECT_EQ(*std::ranges::max_element(curves.m_vAttack), 0);
    for (auto const& bands : curves.m_vBands) {
        EXPECT_EQ(*std::ranges::max_element(bands), 0);
    }
}

TEST(BeatListenerTest, WhatIsNotFiniteIsSilence) {
    std::vector<float> samples(8192, 0.0f);
    samples[100] = std::numeric_limits<float>::quiet_NaN();
    samples[200] = std::numeric_limits<float>::infinity();
    CBeatCurves const curves = CurvesOf(samples);
    CBeatCurves const silence = CurvesOf(std::vector<float>(8192, 0.0f));
    EXPECT_EQ(curves.m_vAttack, silence.m_vAttack);
    EXPECT_EQ(curves.m_vPitches, silence.m_vPitches);
}

TEST(BeatListenerTest, AToneIsInItsBand) {
    // The edges are 120, 500, 2500 and 6000 Hz.
    EXPECT_EQ(LoudestOf(CurvesOf(MakeSine(60.0, 0.5, 0.5f)).m_vBands), 0);
    EXPECT_EQ(LoudestOf(CurvesOf(MakeSine(260.0, 0.5, 0.5f)).m_vBands), 1);
    EXPECT_EQ(LoudestOf(CurvesOf(MakeSine(1200.0, 0.5, 0.5f)).m_vBands), 2);
    EXPECT_EQ(LoudestOf(CurvesOf(MakeSine(12000.0, 0.5, 0.5f)).m_vBands), 3);
}

TEST(BeatListenerTest, ANoteHasItsPitch) {
    // A1 is 55 Hz; A3 lies 24 semitones above, C5 (523.25 Hz) 39.
    EXPECT_EQ(LoudestOf(CurvesOf(MakeSine(55.0, 1.0, 0.5f)).m_vPitches), 0);
    EXPECT_EQ(LoudestOf(CurvesOf(MakeSine(220.0, 1.0, 0.5f)).m_vPitches), 24);
    EXPECT_EQ(LoudestOf(CurvesOf(MakeSine(523.25, 1.0, 0.5f)).m_vPitches), 39);
}

TEST(BeatListenerTest, WhatRingsOutEndsInSilence) {
    std::vector<float> samples = MakeNoise(0.5, 0.5f);
    samples.resize(samples.size() + 5 * 44100, 0.0f);
    CBeatCurves const curves = CurvesOf(samples);
    EXPECT_EQ(curves.m_vBands.back()[0], 0);
    EXPECT_EQ(*std::ranges::max_element(curves.m_vPitches.back()), 0);
}

TEST(BeatListenerTest, AMinuteTakesLessThan160Kilobytes) {
    CBeatCurves const curves = CurvesOf(MakeSilence(60.0));
    std::size_t const bytes = curves.m_vAttack.size() + curves.m_vBands.size() * kBeatBands +
                              curves.m_vPitches.size() * kBeatPitches;
    EXPECT_LT(bytes, 160'000U);
}
