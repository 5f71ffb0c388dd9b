// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Every expected value is the plain loop's, which computes subnormal numbers as the processor does.

#include "engine/signal/QuietFilter.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace {

// Three of them are the note search's low-pass: 120 Hz, damping 1.25, at 44100 Hz.
constexpr CIIRSection kQuietSection{7.23033736e-05f, 0.000144606747f, 7.23033736e-05f, -1.97856641f,
                                    0.97885561f};

std::vector<std::uint32_t> BitsOf(std::vector<float> const& samples, CThreeStates const& states) {
    std::vector<std::uint32_t> bits;
    for (float const sample : samples) {
        bits.push_back(std::bit_cast<std::uint32_t>(sample));
    }
    for (float const state : states) {
        bits.push_back(std::bit_cast<std::uint32_t>(state));
    }
    return bits;
}

/// Both ways from the same states: outputs and states must agree bit for bit.
void ExpectSame(std::vector<float> const& stream, CThreeStates const& states,
                std::string const& what, CIIRSection const& section = kQuietSection) {
    auto const count = static_cast<std::int32_t>(stream.size());
    std::vector<float> plain(stream.size());
    std::vector<float> quiet(stream.size());
    CThreeStates plainStates = states;
    CThreeStates quietStates = states;
    FilterLanePlain(section, {stream.data(), plain.data(), &plainStates}, count);
    FilterQuiet(section, {stream.data(), quiet.data(), &quietStates}, count);
    EXPECT_EQ(BitsOf(quiet, quietStates), BitsOf(plain, plainStates)) << what;
}

class CRandom {
public:
    explicit CRandom(std::uint32_t seed) : m_engine(seed) {}

    /// A number of either sign with an exponent from `least` to `most`; below 2^-149 it is a zero.
    float Number(int least, int most) {
        double const mantissa = 1.0 + static_cast<double>(m_engine() >> 8U) * 0x1.0p-24;
        int const exponent =
            least + static_cast<int>(m_engine() % static_cast<unsigned>(most - least + 1));
        double const sign = (m_engine() & 0x10000U) != 0 ? -1.0 : 1.0;
        return static_cast<float>(sign * std::ldexp(mantissa, exponent));
    }

    CThreeStates States(int least, int most) {
        CThreeStates states;
        std::ranges::generate(states, [&] { return Number(least, most); });
        return states;
    }

private:
    std::mt19937 m_engine;
};

} // namespace

TEST(QuietFilterTest, ANumberOfAnySizeKeepsTheBits) {
    CRandom random(1);
    for (int most = -149; most <= 0; ++most) {
        for (int trial = 0; trial < 4; ++trial) {
            std::vector<float> stream(200);
            std::ranges::generate(stream,
                                  [&] { return random.Number(most - 12, most - 12 + trial * 4); });
            ExpectSame(stream, random.States(most - trial * 10, most), std::to_string(most));
        }
    }
}

TEST(QuietFilterTest, DecayIntoSilenceKeepsTheBits) {
    CRandom random(2);
    std::vector<float> const silence(20'000);
    for (int trial = 0; trial < 12; ++trial) {
        ExpectSame(silence, random.States(-8 * trial - 20, -8 * trial), std::to_string(trial));
    }
}

TEST(QuietFilterTest, ZerosKeepTheirSigns) {
    std::vector<float> const zeros(300, 0.0f);
    std::vector<float> const negative(300, -0.0f);
    std::vector<float> mixed(300, 0.0f);
    for (std::size_t i = 0; i < mixed.size(); i += 3) {
        mixed[i] = -0.0f;
    }
    float const least = std::numeric_limits<float>::denorm_min();
    for (unsigned pattern = 0; pattern < 729; ++pattern) {
        CThreeStates states;
        unsigned rest = pattern;
        for (float& state : states) {
            state = std::array{0.0f, -0.0f, -3.0f * least}[rest % 3];
            rest /= 3;
        }
        ExpectSame(zeros, states, "zeros " + std::to_string(pattern));
        ExpectSame(negative, states, "negative " + std::to_string(pattern));
        ExpectSame(mixed, states, "mixed " + std::to_string(pattern));
    }
}

TEST(QuietFilterTest, StatesAtRestStayAsTheyAre) {
    // Fed with silence for long enough, the low-pass repeats one output for ever.
    std::vector<float> const silence(40'000);
    std::vector<float> out(silence.size());
    CThreeStates states = CRandom(3).States(-3, 0);
    FilterQuiet(kQuietSection, {silence.data(), out.data(), &states}, 40'000);
    CThreeStates const rest = states;
    FilterLanePlain(kQuietSection, {silence.data(), out.data(), &states}, 1);
    EXPECT_EQ(BitsOf({}, states), BitsOf({}, rest));
    EXPECT_NE(states[0], 0.0f); // it rests beside zero, not on it
    ExpectSame(std::vector<float>(5'000), rest, "at rest");
    std::vector<float> stroke(5'000);
    stroke[77] = 0x1.0p-140f;
    ExpectSame(stroke, rest, "woken");
}

TEST(QuietFilterTest, StatesThatAreNoNumberStaySo) {
    CThreeStates states{};
    states[4] = std::numeric_limits<float>::quiet_NaN();
    states[5] = states[4];
    ExpectSame(std::vector<float>(1000, 0.0f), states, "silence behind an infinite sample");
}

TEST(QuietFilterTest, OtherSectionsKeepTheBits) {
    // 40 Hz and 1000 Hz by the same formulas, w = tan(pi f / 44100), b0 = w^2 / (1 + 1.25 w + w^2).
    for (double const hertz : {40.0, 1000.0}) {
        double const w = std::tan(3.14159265358979 * hertz / 44100.0);
        double const scale = 1.0 + 1.25 * w + w * w;
        auto const b0 = static_cast<float>(w * w / scale);
        CIIRSection const section{b0, 2.0f * b0, b0,
                                  static_cast<float>((2.0 * w * w - 2.0) / scale),
                                  static_cast<float>((1.0 - 1.25 * w + w * w) / scale)};
        CRandom random(4);
        ExpectSame(std::vector<float>(9'000), random.States(-110, -90), std::to_string(hertz),
                   section);
    }
}

TEST(QuietFilterTest, SmallStatesAreQuiet) {
    EXPECT_TRUE(IsQuiet({}));
    EXPECT_TRUE(IsQuiet({0x1.fp-103f, -0.0f, 1.0f, 1.0f, 1.0f, 1.0f})); // one section is enough
    EXPECT_TRUE(IsQuiet({1.0f, 1.0f, 1.0f, 1.0f, 0x1.fp-103f, -0x1.8p-104f}));
    EXPECT_FALSE(IsQuiet({0.0f, 0x1.0p-102f, -0x1.0p-102f, 0.0f, 0.0f, -0x1.0p-102f}));
    float const nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(IsQuiet({nan, 0.0f, nan, 0.0f, nan, 0.0f}));
}

TEST(QuietFilterTest, SoundBetweenSilencesKeepsTheBits) {
    // Loud, quiet and silent stretches of lengths that fall on no block.
    CRandom random(5);
    for (int trial = 0; trial < 20; ++trial) {
        std::vector<float> stream(6'000);
        for (std::size_t i = 0; i < stream.size(); ++i) {
            std::size_t const part = i / static_cast<std::size_t>(97 + 131 * trial) % 4;
            stream[i] = part == 0   ? random.Number(-12, 0)
                        : part == 1 ? random.Number(-149, -112)
                                    : 0.0f;
        }
        ExpectSame(stream, random.States(-140, -105), std::to_string(trial));
    }
}
