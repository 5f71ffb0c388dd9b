// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/Resampler.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <vector>

namespace {

std::vector<float> ToneAt(std::uint32_t rate, double seconds) {
    std::vector<float> samples(static_cast<std::size_t>(rate * seconds));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        double const turns = 100.0 * static_cast<double>(i) / rate;
        samples[i] = static_cast<float>(0.5 * std::sin(2.0 * std::numbers::pi * turns));
    }
    return samples;
}

} // namespace

TEST(ResamplerTest, AToneStaysTheSameToneAtEveryRate) {
    std::vector<float> const expected = ToneAt(44100, 2.0);
    for (std::uint32_t const rate : {8000U, 22050U, 44100U, 48000U, 96000U, 192000U}) {
        CDecodedAudio audio;
        ASSERT_EQ(Resample(ToneAt(rate, 2.0), rate, audio), EDecodeProblem::None);
        ASSERT_NEAR(audio.m_nCount, 88200, 4) << rate;
        double worst = 0.0;
        for (std::size_t i = 1000; i < 87000; ++i) { // the filter swings in and out at the ends
            worst = std::max(worst, std::abs(static_cast<double>(audio.Samples()[i]) -
                                             static_cast<double>(expected[i])));
        }
        EXPECT_LT(worst, 0.002) << rate;
    }
}

TEST(ResamplerTest, SamplesAt44100AreRoundedTo16Bits) {
    CDecodedAudio audio;
    ASSERT_EQ(Resample(std::vector<float>{0.5f, -0.25f, 1.0f}, 44100, audio), EDecodeProblem::None);
    ASSERT_EQ(audio.m_nCount, 3);
    EXPECT_FLOAT_EQ(audio.Samples()[0], 16384.0f / 32767.0f);
    EXPECT_FLOAT_EQ(audio.Samples()[1], -8192.0f / 32767.0f);
    EXPECT_FLOAT_EQ(audio.Samples()[2], 1.0f);
}

TEST(ResamplerTest, AbsurdRatesAreRefused) {
    std::vector<float> const samples(100);
    CDecodedAudio audio;
    for (std::uint32_t const rate :
         {0U, 999U, 1'000'001U, std::numeric_limits<std::uint32_t>::max()}) {
        EXPECT_EQ(Resample(samples, rate, audio), EDecodeProblem::BadRate) << rate;
    }
    EXPECT_EQ(audio.m_nCount, 0);
}

TEST(ResamplerTest, NothingStaysNothing) {
    CDecodedAudio audio;
    EXPECT_EQ(Resample({}, 48000, audio), EDecodeProblem::None);
    EXPECT_EQ(audio.m_nCount, 0);
}
