// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/signal/IIRFilt.h"
#include "base/EngineRate.h"

#include "engine/kernels/Kernels.h"
#include "engine/signal/IIRSection.h"
#include "support/ClickTrack.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <vector>

namespace {

/// The filter of the note detector: three low-passes at 120 Hz, damping 1.25.
CIIRFilt BassFilter(int sections = 3) {
    CIIRFilt filter;
    filter.Init(kEngineRateHz);
    filter.SetSectionCount(sections);
    for (int i = 0; i < sections; ++i) {
        filter.SetSection(i, CIIRFilt::kLowPass, 120.0f, 1.25f);
    }
    filter.setfilt();
    return filter;
}

/// One section at a quarter of the rate, where the prewarped frequency tan(pi / 4) is 1 and every
/// coefficient follows by hand.
CIIRFilt QuarterRateFilter(int type, float damping) {
    CIIRFilt filter;
    filter.Init(kEngineRateHz);
    filter.SetSectionCount(1);
    filter.SetSection(0, type, 11025.0f, damping);
    filter.setfilt();
    return filter;
}

std::vector<float> Noise(std::size_t count, float amplitude = 0.9f) {
    std::vector<float> samples = MakeNoise(1.0, amplitude, 77);
    samples.resize(count);
    return samples;
}

bool SameBits(std::vector<float> const& a, std::vector<float> const& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

std::vector<float> Filtered(CIIRFilt& filter, std::vector<float> x) {
    filter.fl(x.data(), 0, static_cast<std::int32_t>(x.size()), 1);
    return x;
}

} // namespace

TEST(IIRFiltTest, BassSectionHasTheseCoefficients) {
    CIIRFilt const filter = BassFilter();
    ASSERT_TRUE(filter.IsDesigned());
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(filter.GetNumerator(i)[0], 7.23033736e-05f);
        EXPECT_EQ(filter.GetNumerator(i)[1], 0.000144606747f);
        EXPECT_EQ(filter.GetNumerator(i)[2], 7.23033736e-05f);
        EXPECT_EQ(filter.GetDenominator(i)[0], -1.97856641f);
        EXPECT_EQ(filter.GetDenominator(i)[1], 0.97885561f);
    }
}

TEST(IIRFiltTest, InitMakesRoomForThirtyTwoSections) {
    CIIRFilt filter;
    EXPECT_EQ(filter.GetSectionCount(), 0);
    EXPECT_FALSE(filter.IsDesigned());
    filter.Init(kEngineRateHz);
    EXPECT_EQ(filter.GetSectionCount(), 32);
    filter.SetSectionCount(33);
    EXPECT_EQ(filter.GetSectionCount(), 32);
    filter.SetSectionCount(-1);
    EXPECT_EQ(filter.GetSectionCount(), 0);
}

TEST(IIRFiltTest, FiltersNothingBeforeInit) {
    CIIRFilt filter;
    std::vector<float> const input = Noise(16);
    std::vector<float> x = input;
    filter.SetSection(0, CIIRFilt::kLowPass, 120.0f, 1.25f);
    filter.setfilt();
    filter.fl(x.data(), 0, 16, 1);
    filter.flt(x.data(), 0, 16);
    filter.fspcflt(x.data(), 16, 0);
    filter.clearpasts();
    EXPECT_TRUE(SameBits(x, input));
    EXPECT_FALSE(filter.IsDesigned());
}

TEST(IIRFiltTest, SecondInitDropsDesignAndState) {
    CIIRFilt filter = BassFilter();
    std::vector<float> x = Noise(100);
    filter.fl(x.data(), 0, 100, 1);
    filter.Init(kEngineRateHz);
    EXPECT_FALSE(filter.IsDesigned());
    EXPECT_EQ(filter.GetSectionCount(), 32);
    EXPECT_EQ(filter.GetNumerator(0)[0], 0.0f);
    // Designed anew it starts from rest: 0 in, 0 out.
    filter.SetSectionCount(1);
    filter.SetSection(0, CIIRFilt::kLowPass, 120.0f, 1.25f);
    filter.setfilt();
    EXPECT_EQ(Filtered(filter, {0.0f, 0.0f}), (std::vector<float>{0.0f, 0.0f}));
}

TEST(IIRFiltTest, LowPassAtAQuarterOfTheRate) {
    // N = 1, D = 1 + 2 s + s^2 = (1 + s)^2, and 1 + s = 2 / (1 + z^-1): H = (1 + z^-1)^2 / 4.
    CIIRFilt filter = QuarterRateFilter(CIIRFilt::kLowPass, 2.0f);
    EXPECT_EQ(Filtered(filter, {1.0f, 0.0f, 0.0f, 0.0f}),
              (std::vector<float>{0.25f, 0.5f, 0.25f, 0.0f}));
}

TEST(IIRFiltTest, HighPassAtAQuarterOfTheRate) {
    // N = s^2 over (1 + s)^2: H = (1 - z^-1)^2 / 4.
    CIIRFilt filter = QuarterRateFilter(CIIRFilt::kHighPass, 2.0f);
    EXPECT_EQ(Filtered(filter, {1.0f, 0.0f, 0.0f, 0.0f}),
              (std::vector<float>{0.25f, -0.5f, 0.25f, 0.0f}));
}

TEST(IIRFiltTest, FirstOrderTypesHaveNoSecondPower) {
    // 1 / (1 + s) = (1 + z^-1) / 2 and s / (1 + s) = (1 - z^-1) / 2; the damping plays no part.
    CIIRFilt low = QuarterRateFilter(CIIRFilt::kFirstOrderLowPass, 0.3f);
    EXPECT_EQ(Filtered(low, {1.0f, 0.0f, 0.0f}), (std::vector<float>{0.5f, 0.5f, 0.0f}));
    EXPECT_EQ(low.GetNumerator(0)[2], 0.0f);
    EXPECT_EQ(low.GetDenominator(0)[1], 0.0f);
    CIIRFilt high = QuarterRateFilter(CIIRFilt::kFirstOrderHighPass, 0.3f);
    EXPECT_EQ(Filtered(high, {1.0f, 0.0f, 0.0f}), (std::vector<float>{0.5f, -0.5f, 0.0f}));
    EXPECT_EQ(high.GetNumerator(0)[2], 0.0f);
    EXPECT_EQ(high.GetDenominator(0)[1], 0.0f);
}

TEST(IIRFiltTest, UnlistedTypesAreLowPasses) {
    for (int const type : {-1, 13, 99}) {
        CIIRFilt filter = QuarterRateFilter(type, 2.0f);
        EXPECT_EQ(filter.GetNumerator(0)[1], 0.5f) << type;
    }
}

TEST(IIRFiltTest, MappingLowersTheOrderToTheHighestPowerPresent) {
    std::array<float, 3> const num{3.0f, 0.0f, 0.0f};
    std::array<float, 3> const den{4.0f, 0.0f, 0.0f};
    std::array<float, 3> b{9.0f, 9.0f, 9.0f};
    std::array<float, 2> a{9.0f, 9.0f};
    std::int32_t order = 2;
    std::int32_t error = 1;
    CIIRFilt::spbiln(num.data(), den.data(), &order, b.data(), a.data(), nullptr, &error);
    EXPECT_EQ(order, 0);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(b, (std::array<float, 3>{0.75f, 0.0f, 0.0f}));
    EXPECT_EQ(a, (std::array<float, 2>{0.0f, 0.0f}));
}

TEST(IIRFiltTest, SectionWithoutDenominatorIsAnError) {
    // At 0 Hz the prewarped frequency is 0 and so is every coefficient of a first-order section.
    CIIRFilt filter;
    filter.Init(kEngineRateHz);
    filter.SetSectionCount(1);
    filter.SetSection(0, CIIRFilt::kFirstOrderLowPass, 0.0f, 1.0f);
    filter.setfilt();
    EXPECT_TRUE(filter.HasMappingError());
    EXPECT_FALSE(filter.IsDesigned());
    EXPECT_EQ(filter.GetNumerator(0)[0], 0.0f);
    float sample = 1.0f;
    filter.fl(&sample, 0, 1, 1);
    EXPECT_FALSE(filter.HasMappingError());
}

TEST(IIRFiltTest, FilteringClearsTheMappingError) {
    for (int routine = 0; routine < 3; ++routine) {
        CIIRFilt filter;
        filter.Init(kEngineRateHz);
        filter.SetSectionCount(3);
        for (int i = 0; i < 3; ++i) {
            filter.SetSection(i, CIIRFilt::kFirstOrderLowPass, 0.0f, 1.0f);
        }
        filter.setfilt();
        ASSERT_TRUE(filter.HasMappingError());
        float sample = 1.0f;
        if (routine == 0) {
            filter.fl(&sample, 0, 1, 1);
        } else if (routine == 1) {
            filter.flt(&sample, 0, 1);
        } else {
            filter.fspcflt(&sample, 1, 0);
        }
        EXPECT_FALSE(filter.HasMappingError()) << routine;
    }
}

TEST(IIRFiltTest, BlockAndSampleOrderGiveTheSameBits) {
    std::vector<float> const input = Noise(20000);
    for (int const sections : {1, 2, 3, 4, 5}) {
        CIIRFilt whole = BassFilter(sections);
        CIIRFilt plain = BassFilter(sections);
        CIIRFilt bySample = BassFilter(sections);
        std::vector<float> a = input;
        std::vector<float> b = input;
        std::vector<float> c = input;
        whole.fl(a.data(), 0, 20000, 1);
        plain.flPlain(b.data(), 0, 20000, 1);
        bySample.flt(c.data(), 0, 20000);
        EXPECT_TRUE(SameBits(a, b)) << sections;
        EXPECT_TRUE(SameBits(a, c)) << sections;
    }
}

TEST(IIRFiltTest, BlocksOfAnyLengthContinueEachOther) {
    std::vector<float> const input = Noise(5000);
    CIIRFilt whole = BassFilter();
    std::vector<float> const expected = Filtered(whole, input);
    CIIRFilt pieces = BassFilter();
    std::vector<float> x = input;
    std::int32_t length = 1;
    // 1, 2, 3 ... samples, by the three interchangeable routines in turn.
    for (std::int32_t start = 0; start < 5000; start += length, ++length) {
        std::int32_t const count = std::min(length, 5000 - start);
        if (length % 3 == 0) {
            pieces.fl(&x[static_cast<std::size_t>(start)], 0, count, 1);
        } else if (length % 3 == 1) {
            pieces.flPlain(&x[static_cast<std::size_t>(start)], 0, count, 1);
        } else {
            pieces.flt(&x[static_cast<std::size_t>(start)], 0, count);
        }
    }
    EXPECT_TRUE(SameBits(x, expected));
}

TEST(IIRFiltTest, ThreeSectionsAtOnceKeepTheBits) {
    // Sections of different kinds, so that no lane can stand in for another; every length around
    // the edges of the loop, each block going on from the state of the one before.
    CThreeSections const sections{CIIRSection{0.3f, -0.2f, 0.1f, -1.2f, 0.5f},
                                  CIIRSection{0.5f, 0.25f, -0.4f, 0.7f, 0.3f},
                                  CIIRSection{-0.6f, 0.1f, 0.2f, -0.4f, -0.2f}};
    std::vector<float> const input = Noise(3000);
    for (CKernelTarget const& target : GetKernelTargets()) {
        CForceKernels const forced(target);
        std::vector<float> lanes = input;
        std::vector<float> plain = input;
        std::vector<float> lanesState(9, 0.125f);
        std::vector<float> plainState = lanesState;
        std::size_t pos = 0;
        for (std::int32_t count = 1; count <= 70; ++count) {
            FilterThree(sections, &lanes[pos], lanesState.data(), count);
            for (std::size_t i = 0; i < 3; ++i) {
                FilterOne(sections[i], &plain[pos], &plainState[3 * i], count, 1);
            }
            ASSERT_TRUE(SameBits(lanesState, plainState)) << count << target.m_pName;
            pos += static_cast<std::size_t>(count);
        }
        EXPECT_TRUE(SameBits(lanes, plain)) << target.m_pName;
    }
}

TEST(IIRFiltTest, DecayIntoDenormalsKeepsTheBits) {
    // An impulse followed by two seconds of silence; nothing is flushed to zero on either way.
    std::vector<float> input(2 * kEngineRateHz, 0.0f);
    input[0] = 1.0e-30f;
    CIIRFilt quick = BassFilter();
    CIIRFilt plain = BassFilter();
    std::vector<float> a = Filtered(quick, input);
    std::vector<float> b = input;
    plain.flPlain(b.data(), 0, 2 * kEngineRateHz, 1);
    EXPECT_TRUE(SameBits(a, b));
    EXPECT_TRUE(std::ranges::any_of(
        a, [](float v) { return v != 0.0f && std::abs(v) < std::numeric_limits<float>::min(); }));
}

TEST(IIRFiltTest, DirectFormOneAgreesWithDirectFormTwo) {
    std::vector<float> const input = Noise(20000);
    CIIRFilt formTwo;
    formTwo.Init(kEngineRateHz);
    formTwo.SetSectionCount(3);
    for (int i = 0; i < 3; ++i) {
        formTwo.SetSection(i, i, 3000.0f, 1.0f); // low-pass, high-pass, band-pass
    }
    formTwo.setfilt();
    CIIRFilt formOne = formTwo;
    std::vector<float> const expected = Filtered(formTwo, input);
    std::vector<float> x = input;
    formOne.fspcflt(x.data(), 20000, 0);
    for (std::size_t i = 0; i < x.size(); ++i) {
        // The forms round at different places: some 15 roundings of 2^-24 a sample, of values up
        // to 10, remembered for the filter's few dozen samples.
        ASSERT_NEAR(x[i], expected[i], 1.0e-4f) << i;
    }
    EXPECT_GT(*std::ranges::max_element(expected), 0.01f);
}

TEST(IIRFiltTest, StrideTwoFiltersEveryOtherSample) {
    std::vector<float> const input = Noise(2000);
    std::vector<float> evens;
    for (std::size_t i = 0; i < input.size(); i += 2) {
        evens.push_back(input[i]);
    }
    CIIRFilt dense = BassFilter();
    std::vector<float> const expected = Filtered(dense, evens);
    CIIRFilt sparse = BassFilter();
    std::vector<float> x = input;
    sparse.fl(x.data(), 0, 1000, 2);
    for (std::size_t i = 0; i < 1000; ++i) {
        ASSERT_EQ(x[2 * i], expected[i]) << i;
        ASSERT_EQ(x[2 * i + 1], input[2 * i + 1]) << i;
    }
}

TEST(IIRFiltTest, ClearedPastsRepeatTheFirstOutput) {
    std::vector<float> const input = Noise(500);
    CIIRFilt filter = BassFilter();
    auto const run = [&](int routine) {
        std::vector<float> x = input;
        if (routine == 0) {
            filter.fl(x.data(), 3, 500, 1);
        } else if (routine == 1) {
            filter.flt(x.data(), 3, 500);
        } else {
            filter.fspcflt(x.data(), 500, 3);
        }
        return x;
    };
    for (int routine = 0; routine < 3; ++routine) {
        filter.clearpasts();
        std::vector<float> const first = run(routine);
        std::vector<float> const second = run(routine);
        filter.clearpasts();
        EXPECT_TRUE(SameBits(run(routine), first)) << routine;
        EXPECT_FALSE(SameBits(second, first)) << routine;
    }
}

TEST(IIRFiltTest, ChannelsHaveAStateEach) {
    std::vector<float> const input = Noise(300);
    CIIRFilt single = BassFilter();
    std::vector<float> const expected = Filtered(single, input);
    CIIRFilt filter = BassFilter();
    for (int channel = 0; channel < CIIRFilt::kMaxChannels; ++channel) {
        std::vector<float> x = input;
        filter.fl(x.data(), channel, 300, 1);
        EXPECT_TRUE(SameBits(x, expected)) << channel;
    }
    for (int const channel : {-1, 4}) {
        std::vector<float> x = input;
        filter.fl(x.data(), channel, 300, 1);
        filter.flt(x.data(), channel, 300);
        filter.fspcflt(x.data(), 300, channel);
        EXPECT_TRUE(SameBits(x, input)) << channel;
    }
}

TEST(IIRFiltTest, MeanIsSummedInSinglePrecision) {
    // 2^24 + 1 rounds back to 2^24, twice; the mean of the exact sum would be above 2^24 / 3.
    std::array<float, 3> const x{16777216.0f, 1.0f, 1.0f};
    EXPECT_EQ(CIIRFilt::mean(x.data(), 3), 16777216.0f / 3.0f);
    EXPECT_TRUE(std::isnan(CIIRFilt::mean(x.data(), 0)));
}

TEST(IIRFiltTest, ComplexHelpers) {
    CIIRComplex const product = complex_mpy({1.0f, 2.0f}, {3.0f, -4.0f}); // 3 - 4i + 6i + 8
    EXPECT_EQ(product.m_fRe, 11.0f);
    EXPECT_EQ(product.m_fIm, 2.0f);
    CIIRComplex const quotient = complex_div({11.0f, 2.0f}, {3.0f, -4.0f}); // the way back
    EXPECT_EQ(quotient.m_fRe, 1.0f);
    EXPECT_EQ(quotient.m_fIm, 2.0f);
    CIIRComplex const power = complex_exp({1.0f, std::numbers::pi_v<float>}); // -e
    // One rounding of the angle, 1.6e-7, times e; and a few of 2^-24 each.
    EXPECT_NEAR(power.m_fRe, -std::numbers::e_v<float>, 1.0e-6f);
    EXPECT_NEAR(power.m_fIm, 0.0f, 1.0e-6f);
}
