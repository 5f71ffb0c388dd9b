// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Responses against the analytic ones. With the bilinear transform the response at frequency f is
// that of the prototype at s = j tan(pi f T), computed here in double from the prototype itself.

#include "base/EngineRate.h"
#include "engine/signal/IIRFilt.h"

#include <array>
#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace {

constexpr double kPeriod = 1.0 / kEngineRateHz;

using Polynomial = std::array<double, 3>; // s^0, s^1, s^2

struct CDesign {
    int m_nType;
    float m_fGain;
};

constexpr float kFrequency = 1000.0f;
constexpr float kDamping = 0.75f;

/// 10^(dB / 20).
double Amplitude(double decibels) {
    return std::pow(10.0, decibels / 20.0);
}

/// Numerator and denominator of each type, written out from its definition.
std::array<Polynomial, 2> Prototype(CDesign const& design) {
    double const w = std::tan(std::numbers::pi * static_cast<double>(kFrequency) * kPeriod);
    double const q = static_cast<double>(kDamping);
    double const g = static_cast<double>(design.m_fGain);
    Polynomial const plain{w * w, w * q, 1.0};
    switch (design.m_nType) {
    case 1:
        return {Polynomial{0, 0, 1}, plain};
    case 2:
        return {Polynomial{0, w * q, 0}, plain};
    case 3:
        return {Polynomial{w * w, 0, 1}, plain};
    case 4:
        return {plain, Polynomial{w * w * q / 2, w * q, q / 2}};
    case 5:
        return {Polynomial{w * w, w * q, -1}, plain};
    case 6:
        return {Polynomial{w * w, 0, -0.1}, plain};
    case 7:
        return {Polynomial{-0.1 * w * w, 0, 1}, plain};
    case 8:
        return {Polynomial{w * w, -w * q, 1}, plain};
    case 9: {
        Polynomial const scaled{w * w, Amplitude(std::abs(g)) * w * q, 1};
        return g < 0 ? std::array{plain, scaled} : std::array{scaled, plain};
    }
    case 10:
        return {Polynomial{w * w, 0, 0}, Polynomial{w * w, w, 0}};
    case 11:
        return {Polynomial{0, w, 0}, Polynomial{w * w, w, 0}};
    case 12: {
        double const a = Amplitude(std::abs(g) / 2.0);
        double const middle = q / std::sqrt(a) * w;
        Polynomial const scaledLow{w * w / a, middle, 1};
        Polynomial const scaledHigh{w * w, middle, 1 / a};
        return g < 0 ? std::array{scaledHigh, scaledLow} : std::array{scaledLow, scaledHigh};
    }
    default:
        return {Polynomial{w * w, 0, 0}, plain};
    }
}

std::complex<double> At(Polynomial const& p, std::complex<double> s) {
    return p[0] + p[1] * s + p[2] * s * s;
}

/// Largest relative error of one polynomial whose coefficients over z^-1 are held in single
/// precision and summed there: its terms are at most |p0| + |p1| + |p2| times 4, each wrong by a
/// few roundings, against the value at the frequency.
double RelativeError(Polynomial const& p, std::complex<double> s) {
    constexpr double kRoundings = 12.0 * 0x1.0p-24;
    double const terms = 4.0 * (std::abs(p[0]) + std::abs(p[1]) + std::abs(p[2]));
    // Multiplying out with (1 + z^-1)^2 scales the value by 4 / |1 + s|^2.
    return kRoundings * terms / (std::abs(At(p, s)) * 4.0 / std::norm(1.0 + s));
}

std::vector<CDesign> EveryType() {
    std::vector<CDesign> designs;
    for (int type = 0; type <= 13; ++type) {
        designs.push_back({type, 6.0f});
        if (type == 9 || type == 12) {
            designs.push_back({type, -9.0f});
            designs.push_back({type, 0.0f});
        }
    }
    return designs;
}

} // namespace

TEST(IIRFiltResponseTest, EveryTypeFollowsItsPrototypeAtTwentyFrequencies) {
    for (CDesign const& design : EveryType()) {
        CIIRFilt filter;
        filter.Init(kEngineRateHz);
        filter.SetSectionCount(1);
        filter.SetSection(0, design.m_nType, kFrequency, kDamping, design.m_fGain);
        filter.setfilt();
        ASSERT_TRUE(filter.IsDesigned());
        auto const [num, den] = Prototype(design);
        for (int i = 0; i < 20; ++i) {
            // 60 Hz to 17.7 kHz, 7 steps a decade and never 1000 Hz, where the stops have zeros.
            auto const frequency = static_cast<float>(60.0 * std::pow(10.0, i * 0.13));
            std::complex<double> const s(
                0.0, std::tan(std::numbers::pi * static_cast<double>(frequency) * kPeriod));
            double const expected = 20.0 * std::log10(std::abs(At(num, s) / At(den, s)));
            double const decibelsPerUnit = 20.0 / std::numbers::ln10;
            double const tolerance =
                decibelsPerUnit * (RelativeError(num, s) + RelativeError(den, s));
            ASSERT_LT(tolerance, 0.5) << "the bound says nothing";
            EXPECT_NEAR(static_cast<double>(filter.response(frequency)), expected, tolerance)
                << "type " << design.m_nType << " gain " << design.m_fGain << " at " << frequency;
        }
    }
}

TEST(IIRFiltResponseTest, BassFilterHasUnityGainAtZeroAndFallsSteeplyAbove) {
    CIIRFilt filter;
    filter.Init(kEngineRateHz);
    filter.SetSectionCount(3);
    for (int i = 0; i < 3; ++i) {
        filter.SetSection(i, CIIRFilt::kLowPass, 120.0f, 1.25f);
    }
    filter.setfilt();
    // 1 + a1 + a2 is 2.9e-4, a1 and a2 being wrong by 6e-8 and 3e-8 at the most: 0.003 dB for each
    // section.
    EXPECT_NEAR(filter.response(0.0f), 0.0f, 0.01f);
    // At twice the corner |1 - 4 + 2.5 j| = 3.905, cubed 59.55, 35.5 dB; the prewarping bends it
    // by less than 0.01 dB, and the rounding counts for less than at 0 Hz.
    EXPECT_NEAR(filter.response(240.0f), -35.5f, 0.05f);
    // At four times |1 - 16 + 5 j| = 15.81, cubed 3953, 71.9 dB.
    EXPECT_NEAR(filter.response(480.0f), -71.9f, 0.1f);
    EXPECT_LT(filter.response(2000.0f), -140.0f);
}

TEST(IIRFiltResponseTest, AllPassLetsEverythingThrough) {
    CIIRFilt filter;
    filter.Init(kEngineRateHz);
    filter.SetSectionCount(1);
    filter.SetSection(0, CIIRFilt::kAllPass, 5000.0f, 0.5f);
    filter.setfilt();
    for (float const frequency : {100.0f, 1000.0f, 5000.0f, 10000.0f, 20000.0f}) {
        // A few roundings of 2^-24 on values near 1.
        EXPECT_NEAR(filter.response(frequency), 0.0f, 1.0e-4f) << frequency;
    }
}
