// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/ToneChroma.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace {

/// What one frame of pure tones of these frequencies leaves.
CToneChroma Heard(std::vector<double> const& frequencies) {
    std::vector<float> samples(kToneFrameSamples);
    for (double const hertz : frequencies) {
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i] += static_cast<float>(
                0.2 * std::sin(2.0 * std::numbers::pi * hertz * static_cast<double>(i) / 44100.0));
        }
    }
    CToneSpectrum spectrum;
    CToneMagnitudes magnitudes;
    EXPECT_EQ(spectrum.Take(samples), kToneFrameSamples);
    spectrum.Analyze(&magnitudes);
    CToneChroma chroma;
    chroma.Add(magnitudes);
    return chroma;
}

} // namespace

TEST(ToneChromaTest, ATonesShareIsItsOwnPitchClass) {
    // C4, E4 and G4 of equal temperament: pitch classes 0, 4 and 7, all in the middle register.
    CToneShares const shares = Heard({261.626, 329.628, 391.995}).Shares();
    for (std::size_t i = 0; i < kToneClasses; ++i) {
        if (i == 0 || i == 4 || i == 7) {
            // Equal tones; the filters' fall and the floor make a tenth of difference.
            EXPECT_NEAR(shares.m_middle[i], 1.0f / 3, 0.04f) << i;
        } else {
            EXPECT_EQ(shares.m_middle[i], 0.0f) << i;
        }
        EXPECT_EQ(shares.m_low[i], 0.0f);
        EXPECT_EQ(shares.m_high[i], 0.0f);
    }
    EXPECT_EQ(shares.m_bass[0], 1.0f);
    EXPECT_EQ(shares.m_triads[0], 1.0f);
}

TEST(ToneChromaTest, RegistersMeetAt220And880Hertz) {
    // A1 and G#3 are low, A3 and G#5 in the middle, A5 and A6 high.
    CToneShares const shares = Heard({55.0, 207.652, 220.0, 830.609, 880.0, 1760.0}).Shares();
    EXPECT_GT(shares.m_low[9], 0.0f);
    EXPECT_GT(shares.m_low[8], 0.0f);
    EXPECT_GT(shares.m_middle[9], 0.0f);
    EXPECT_GT(shares.m_middle[8], 0.0f);
    EXPECT_EQ(shares.m_high[9], 1.0f);
    EXPECT_EQ(shares.m_high[8], 0.0f);
}

TEST(ToneChromaTest, AMinorTriadIsMinor) {
    CToneShares const shares = Heard({220.0, 261.626, 329.628}).Shares();
    EXPECT_EQ(shares.m_triads[12 + 9], 1.0f);
}

TEST(ToneChromaTest, TuningIsWithinTwoCents) {
    for (double const cents : {-48.0, -30.0, -7.0, 0.0, 12.0, 41.0}) {
        // Three tones far apart, so that none pulls another.
        double const factor = std::exp2(cents / 1200.0);
        CToneChroma const chroma = Heard({220.0 * factor, 440.0 * factor, 1174.659 * factor});
        EXPECT_NEAR(static_cast<double>(chroma.TuningCents()), cents, 2.0) << cents;
    }
}

TEST(ToneChromaTest, NothingIsHeardBelow80Decibels) {
    std::vector<float> samples(kToneFrameSamples);
    CToneSpectrum spectrum;
    CToneMagnitudes magnitudes;
    for (double const level : {3e-5, 1e-3}) { // -90 and -60 dB
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i] = static_cast<float>(level * std::sin(2.0 * std::numbers::pi * 440.0 *
                                                             static_cast<double>(i) / 44100.0));
        }
        EXPECT_EQ(spectrum.Take(samples), kToneFrameSamples);
        spectrum.Analyze(&magnitudes);
        CToneChroma chroma;
        chroma.Add(magnitudes);
        EXPECT_EQ(chroma.Frames(), level > 1e-4 ? 1 : 0) << level;
    }
}
