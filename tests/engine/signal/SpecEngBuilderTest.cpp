// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/signal/SpecEngBuilder.h"

#include "engine/kernels/Kernels.h"
#include "support/ClickTrack.h"

#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <initializer_list>
#include <numbers>
#include <vector>

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;

/// Bin k of the plain transform of `x`, in double precision.
std::complex<double> PlainBin(std::vector<float> const& x, std::size_t k) {
    std::complex<double> sum = 0.0;
    auto const n = static_cast<double>(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        double const angle = -kTwoPi * static_cast<double>(k * i % x.size()) / n;
        sum += static_cast<double>(x[i]) * std::polar(1.0, angle);
    }
    return sum;
}

std::complex<double> BinOf(CPfSpecEngBuilder const& builder, std::vector<float> const& data,
                           std::size_t k) {
    auto const at = static_cast<std::size_t>(builder.GetBinIndex(static_cast<std::int32_t>(k)));
    return {static_cast<double>(data[at]), static_cast<double>(data[at + 1])};
}

std::vector<float> SeededNoise(std::size_t count, std::uint32_t seed) {
    std::vector<float> samples = MakeNoise(1.0, 1.0f, seed);
    samples.resize(count);
    return samples;
}

float EnergyOf(std::vector<float> const& frame) {
    CPfSpecEngBuilder builder(static_cast<std::uint16_t>(frame.size()));
    return builder.GetSpecEnergy(frame.data());
}

} // namespace

TEST(SpecEngBuilderTest, RealFftIsTheScaledPlainTransform) {
    for (std::size_t const length : {4U, 8U, 16U, 64U, 256U, 1024U}) {
        std::vector<float> const input = SeededNoise(length, static_cast<std::uint32_t>(length));
        std::vector<float> output = input;
        auto const frameLength = static_cast<std::uint16_t>(length);
        CPfSpecEngBuilder const builder(frameLength);
        builder.RealFFT(output.data(), frameLength);
        double const scale = 2.0 / static_cast<double>(length);
        for (std::size_t k = 1; k < length / 2; ++k) {
            // Single precision: at most one rounding of 2^-24 per stage and operation of values
            // up to 2, with ten stages at the most.
            std::complex<double> const expected = PlainBin(input, k) * scale;
            EXPECT_NEAR(std::abs(BinOf(builder, output, k) - expected), 0.0, 4e-6)
                << "bin " << k << " of " << length;
        }
    }
}

TEST(SpecEngBuilderTest, BinZeroHoldsDcAndNyquistTogether) {
    std::vector<float> const input = SeededNoise(256, 3);
    std::vector<float> output = input;
    CPfSpecEngBuilder const builder(256);
    builder.RealFFT(output.data(), 256);
    // The even samples are the real parts and the odd ones the imaginary parts of the complex
    // points, whose bin 0 is never split: its two parts, the sums of both halves, are added up.
    std::vector<float> even;
    std::vector<float> odd;
    for (std::size_t i = 0; i < input.size(); i += 2) {
        even.push_back(input[i]);
        odd.push_back(input[i + 1]);
    }
    double const expected = (PlainBin(even, 0).real() + PlainBin(odd, 0).real()) * 2.0 / 256.0;
    EXPECT_NEAR(static_cast<double>(output[0]), expected, 4e-6);
    EXPECT_EQ(output[1], 0.0f);
}

TEST(SpecEngBuilderTest, FourPointTransformByHand) {
    // x = 1, 2, 3, 4: z = 1 + 2i, 3 + 4i. Stage: sum (4 + 6i) / 2 = 2 + 3i, difference
    // (1 + 2i - 3 - 4i) / 2 = -1 - i. Bin 0: 2 + 3 = 5. The plain bin 1 is -2 + 2i, times 2 / 4:
    // -1 + i.
    std::vector<float> x{1.0f, 2.0f, 3.0f, 4.0f};
    CPfSpecEngBuilder const builder(4);
    builder.RealFFT(x.data(), 4);
    EXPECT_EQ(x[0], 5.0f);
    EXPECT_EQ(x[1], 0.0f);
    EXPECT_NEAR(static_cast<double>(x[2]), -1.0, 1e-6); // the twiddle cos(pi / 2) is not quite 0
    EXPECT_NEAR(static_cast<double>(x[3]), 1.0, 1e-6);
}

TEST(SpecEngBuilderTest, TheMiddlePairIsItsOwnPartner) {
    // N = 4 has no other. rm = im = 0, rp = 2 re, ip = 2 im; with (c, d) = (-1, -e), e tiny:
    // q1 = e * 2 im, q2 = -2 im. In turn re = (2 re + q1) / 2, re -= q1, im = q2 / 2 = -im, im -=
    // 0.
    std::vector<float> x{1.0f, 2.0f, 3.0f, 8.0f}; // z difference / 2: -1 - 3i
    CPfSpecEngBuilder const builder(4);
    builder.RealFFT(x.data(), 4);
    EXPECT_NEAR(static_cast<double>(x[2]), -1.0, 1e-6);
    EXPECT_NEAR(static_cast<double>(x[3]), 3.0, 1e-6);
}

TEST(SpecEngBuilderTest, BinsStandBitReversed) {
    CPfSpecEngBuilder const builder(16); // 8 complex points, float indices are doubled
    std::vector<std::int32_t> const expected{0, 8, 4, 12, 2, 10, 6, 14};
    for (std::int32_t k = 0; k < 8; ++k) {
        EXPECT_EQ(builder.GetBinIndex(k), expected[static_cast<std::size_t>(k)]);
    }
}

TEST(SpecEngBuilderTest, MagnitudesAreThoseOfTheWindowedFrame) {
    std::vector<float> const frame = SeededNoise(256, 5);
    std::vector<float> windowed(256);
    for (std::size_t k = 0; k < 256; ++k) {
        double const window = 0.54 - 0.46 * std::cos(kTwoPi * static_cast<double>(k) / 256.0);
        windowed[k] = frame[k] * static_cast<float>(window);
    }
    std::vector<float> magnitudes(256, -1.0f);
    std::vector<float> const untouched = frame;
    CPfSpecEngBuilder builder(256);
    builder.DoFFTToMagnitude(frame.data(), 256, magnitudes.data());
    for (std::size_t k = 1; k < 128; ++k) {
        double const expected = std::abs(PlainBin(windowed, k)) * 2.0 / 256.0;
        EXPECT_NEAR(static_cast<double>(magnitudes[k]), expected, 4e-6) << k; // as above
    }
    EXPECT_EQ(magnitudes[128], -1.0f);
    EXPECT_EQ(frame, untouched);
}

TEST(SpecEngBuilderTest, SilenceHasNoEnergy) {
    EXPECT_EQ(EnergyOf(std::vector<float>(256, 0.0f)), 0.0f);
}

TEST(SpecEngBuilderTest, ConstantHasTheEnergyThatItsWindowLeaksIntoBinOne) {
    // The window of a constant 1 is 0.54 - 0.46 cos: half of 0.46 in bins 1 and -1, times N, times
    // 2 / N: 0.46 in bin 1, nothing above it. The other 126 bins hold rounding errors of some
    // 2^-25.
    EXPECT_NEAR(static_cast<double>(EnergyOf(std::vector<float>(256, 1.0f))), 0.46, 1e-5);
}

TEST(SpecEngBuilderTest, SineInABinHasTheEnergyOfItsThreeWindowedBins) {
    // A sine in bin 20 gives 0.54 there and 0.23 in each neighbour: 1.0 in all.
    std::vector<float> frame(256);
    for (std::size_t k = 0; k < 256; ++k) {
        frame[k] = static_cast<float>(std::sin(kTwoPi * 20.0 * static_cast<double>(k) / 256.0));
    }
    EXPECT_NEAR(static_cast<double>(EnergyOf(frame)), 1.0, 1e-5); // rounding errors of 124 bins
}

TEST(SpecEngBuilderTest, EnergyIsTheAscendingSumOfTheBinsAboveZero) {
    std::vector<float> const frame = SeededNoise(256, 9);
    std::vector<float> magnitudes(256);
    CPfSpecEngBuilder builder(256);
    builder.DoFFTToMagnitude(frame.data(), 256, magnitudes.data());
    float sum = magnitudes[1];
    for (std::size_t k = 2; k < 128; ++k) {
        sum = sum + magnitudes[k];
    }
    EXPECT_EQ(builder.GetSpecEnergy(frame.data()), sum);
}

TEST(SpecEngBuilderTest, AnyOtherFrameLengthHasNoEnergy) {
    for (std::size_t const length : {0U, 1U, 2U, 12U, 100U}) {
        EXPECT_FALSE(CPfSpecEngBuilder::IsFrameLength(static_cast<std::uint16_t>(length)));
        EXPECT_EQ(EnergyOf(std::vector<float>(length, 1.0f)), 0.0f) << length;
    }
    EXPECT_TRUE(CPfSpecEngBuilder::IsFrameLength(256));
}

TEST(SpecEngBuilderTest, EndsAndStartsAgain) {
    CPfSpecEngBuilder builder(256);
    std::vector<float> const frame = SeededNoise(512, 2);
    float const before = builder.GetSpecEnergy(frame.data());
    builder.EndFFT();
    EXPECT_EQ(builder.GetSpecEnergy(frame.data()), 0.0f);
    builder.InitializeFFT(512);
    EXPECT_GT(builder.GetSpecEnergy(frame.data()), 0.0f);
    builder.InitializeFFT(256);
    EXPECT_EQ(builder.GetSpecEnergy(frame.data()), before);
}

// Whole registers and a rest, against one frame at a time, bit for bit: the lanes do the same
// operations in the same order.
TEST(SpecEngBuilderTest, FramesSideBySideGiveTheBitsOfSingleFrames) {
    constexpr std::size_t kFrames = 19;
    for (std::uint16_t const length :
         std::initializer_list<std::uint16_t>{4, 8, 16, 64, 256, 1024}) {
        std::vector<float> frames(kFrames * length);
        std::uint32_t seed = 12345;
        for (float& sample : frames) {
            seed = seed * 1664525U + 1013904223U;
            sample = static_cast<float>(static_cast<std::int32_t>(seed)) / 2147483648.0f;
        }
        CPfSpecEngBuilder builder(length);
        std::vector<float> single(kFrames);
        for (std::size_t i = 0; i < kFrames; ++i) {
            single[i] = builder.GetSpecEnergy(frames.data() + i * length);
        }
        for (CKernelTarget const& target : GetKernelTargets()) {
            CForceKernels const forced(target);
            std::vector<float> together(kFrames);
            builder.GetSpecEnergies(frames.data(), kFrames, together.data());
            EXPECT_EQ(std::memcmp(together.data(), single.data(), kFrames * sizeof(float)), 0)
                << length << target.m_pName;
        }
    }
}
