// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/ToneSpectrum.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <numbers>

namespace {

constexpr double kToneRate = 44100.0;

std::vector<float> Noise() {
    std::vector<float> samples(kToneFrameSamples);
    std::uint32_t state = 5; // Numerical Recipes' 32-bit generator
    for (float& sample : samples) {
        state = state * 1664525U + 1013904223U;
        sample = static_cast<float>(state >> 8U) / 16777216.0f - 0.5f;
    }
    return samples;
}

/// Halves the rate behind the binomial filter of these weights, in double precision.
std::vector<double> Halved(std::vector<double> const& in, std::vector<double> const& weights) {
    std::vector<double> out(in.size() / 2);
    for (std::size_t i = 0; 2 * i + weights.size() <= in.size(); ++i) {
        for (std::size_t j = 0; j < weights.size(); ++j) {
            out[i] += in[2 * i + j] * weights[j];
        }
    }
    return out;
}

/// The same magnitude by the definition of the Fourier transform, in double precision.
double ByDefinition(std::vector<double> const& tones, std::size_t bin) {
    auto const count = static_cast<double>(tones.size());
    double re = 0.0;
    double im = 0.0;
    for (std::size_t i = 0; i < tones.size(); ++i) {
        double const turn = 2.0 * std::numbers::pi * static_cast<double>(i) / count;
        double const windowed = tones[i] * (0.5 - 0.5 * std::cos(turn));
        double const angle =
            2.0 * std::numbers::pi * static_cast<double>(i * bin % tones.size()) / count;
        re += windowed * std::cos(angle);
        im -= windowed * std::sin(angle);
    }
    return 2.0 * std::hypot(re, im);
}

} // namespace

TEST(ToneSpectrumTest, IsTheFourierTransformOfTheDecimatedFrame) {
    std::vector<float> const samples = Noise();
    std::vector<double> tones(samples.begin(), samples.end());
    tones = Halved(tones, {1, 2, 1});
    tones = Halved(tones, {1, 4, 6, 4, 1});
    tones = Halved(tones, {1, 6, 15, 20, 15, 6, 1});
    CToneSpectrum spectrum;
    CToneMagnitudes magnitudes;
    EXPECT_EQ(spectrum.Take(samples), kToneFrameSamples);
    spectrum.Analyze(&magnitudes);
    for (std::size_t const bin : {1U, 2U, 41U, 327U, 512U, 900U, 1310U, 1343U}) {
        // Single precision over twelve steps, against the noise's own size of some 1e5.
        EXPECT_NEAR(static_cast<double>(magnitudes[bin]), ByDefinition(tones, bin), 0.5) << bin;
    }
}

TEST(ToneSpectrumTest, WhatLiesAboveTheBandStaysOut) {
    // 3,752 Hz comes back as 1,760 after the last halving, 9,265 after the second, 20,290 after the
    // first; the filters take 38, 48 and 36 dB off there.
    CToneSpectrum spectrum;
    CToneMagnitudes magnitudes;
    auto const loudest = [&](double hertz) {
        std::vector<float> samples(kToneFrameSamples);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i] = static_cast<float>(
                std::sin(2.0 * std::numbers::pi * hertz * static_cast<double>(i) / kToneRate));
        }
        EXPECT_EQ(spectrum.Take(samples), kToneFrameSamples);
        spectrum.Analyze(&magnitudes);
        float highest = 0.0f;
        for (std::size_t bin = 41; bin < 1309; ++bin) {
            highest = std::max(highest, magnitudes[bin]);
        }
        return highest;
    };
    float const inside = loudest(440.0);
    for (double const hertz : {3752.0, 4500.0, 9265.0, 12000.0, 20290.0}) {
        EXPECT_LT(loudest(hertz), inside * 0.0178f) << hertz; // 35 dB
    }
}

TEST(ToneSpectrumTest, BlocksOfOneToSevenSamplesGiveTheSameBits) {
    std::vector<float> const samples = Noise();
    CToneSpectrum spectrum;
    CToneMagnitudes expected;
    EXPECT_EQ(spectrum.Take(samples), kToneFrameSamples);
    spectrum.Analyze(&expected);
    for (std::size_t size = 1; size <= 7; ++size) {
        CToneMagnitudes magnitudes;
        for (std::span<float const> rest = samples; !rest.empty();) {
            rest = rest.subspan(spectrum.Take(rest.first(std::min(size, rest.size()))));
        }
        spectrum.Analyze(&magnitudes);
        EXPECT_EQ(magnitudes, expected) << size;
    }
}

TEST(ToneSpectrumTest, TakesNoMoreThanAFrame) {
    std::vector<float> const samples(kToneFrameSamples + 100);
    CToneSpectrum spectrum;
    EXPECT_EQ(spectrum.Take(std::span(samples).first(1000)), 1000U);
    EXPECT_EQ(spectrum.Take(samples), kToneFrameSamples - 1000);
    EXPECT_EQ(spectrum.Taken(), kToneFrameSamples);
    EXPECT_EQ(spectrum.Take(samples), 0U);
}
