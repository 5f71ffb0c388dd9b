// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// FilterQuiet takes 64 samples at a time and chooses by the size of what goes in:
//   FillWhenFixed    silence that leaves the states as they are: one output for all
//   RunTiny          every number a multiple of 2^-149 below 2^-127: sums are exact, products are
//                    rounded to that grid
//   RunSmall         the grid of a float of any size
//   FilterLanePlain  nothing near the subnormal numbers
// The product of two floats is exact in double. Adding 1.5 * 2^52 grid steps and taking them off
// again rounds to the grid, to even where it lies between; only the sign of a zero gets lost.

#include "engine/signal/QuietFilter.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace {

constexpr std::int32_t kBlock = 64;              // Tuned: BM_QuietFilter; samples judged at once.
constexpr std::uint32_t kMagnitude = 0x7FFFFFFF; // Standard: IEEE 754, all but the sign.
constexpr std::uint32_t kSilentBits = 0;         // Derived: +0 alone.

// Derived: exponents of a float, 127 + n for 2^n, in its bits. A bound on the bits gathered holds
// for each number, since it is a power of two.
constexpr std::uint32_t kTinyBits = 0x00400000;  // below 2^-127
constexpr std::uint32_t kSmallBits = 16U << 23U; // below 2^-111: products with b0 get subnormal
constexpr std::uint32_t kNearSmallBits = 32U
                                         << 23U; // below 2^-95: may get there within 512 samples

constexpr double kTiny = 0x1.0p-127;
constexpr double kGridBias = 0x1.8p-97;  // Derived: 1.5 * 2^52 steps of 2^-149.
constexpr double kFloatBias = 0x1.8p+29; // Derived: 1.5 * 2^52 steps of 2^-23, for 1 <= x < 2.
constexpr double kSmallestNormal = 0x1.0p-126;
constexpr double kGridStep = 0x1.0p-149;

/// A float without the processor's detour for subnormal ones.
double Widen(float value) {
    auto const bits = std::bit_cast<std::uint32_t>(value);
    std::uint32_t const magnitude = bits & kMagnitude;
    if (magnitude >= std::bit_cast<std::uint32_t>(std::numeric_limits<float>::min())) {
        return static_cast<double>(value);
    }
    return std::copysign(static_cast<double>(magnitude) * kGridStep,
                         (bits >> 31U) != 0 ? -1.0 : 1.0);
}

/// Back again; `value` is one that a float can hold.
float Narrow(double value) {
    double const magnitude = std::abs(value);
    if (magnitude >= kSmallestNormal) {
        return static_cast<float>(value);
    }
    auto const steps = static_cast<std::uint32_t>(static_cast<std::int32_t>(magnitude / kGridStep));
    return std::bit_cast<float>(steps | (std::signbit(value) ? ~kMagnitude : 0U));
}

/// Rounds to multiples of 2^-149, as a float below 2^-125 is.
struct CTinyRounding {
    static double Product(double a, double b) {
        double const product = a * b;
        return std::copysign((product + kGridBias) - kGridBias, product);
    }
    static double Sum(double sum) { return sum; }
};

/// Rounds as a float of any size is.
struct CSmallRounding {
    static double Product(double a, double b) { return Sum(a * b); }

    static double Sum(double sum) {
        // The power of two at or below the number, by leaving nothing but the exponent.
        constexpr std::uint64_t kExponent = 0x7FF0000000000000;
        auto const power = std::bit_cast<double>(std::bit_cast<std::uint64_t>(sum) & kExponent);
        double const bias = std::max(power * kFloatBias, kGridBias);
        return std::copysign((sum + bias) - bias, sum);
    }
};

/// A section in double, in the order of operations of `CIIRSection::Run`.
template <typename Rounding>
struct CWideSection {
    double m_dB0, m_dB1, m_dB2, m_dA1, m_dA2;

    explicit CWideSection(CIIRSection const& section)
        : m_dB0(static_cast<double>(section.m_fB0)),
          m_dB1(static_cast<double>(section.m_fB1)),
          m_dB2(static_cast<double>(section.m_fB2)),
          m_dA1(static_cast<double>(section.m_fA1)),
          m_dA2(static_cast<double>(section.m_fA2)) {}

    double Run(double x, double& w1, double& w2) const {
        double const feedback =
            Rounding::Sum(Rounding::Product(m_dA1, w1) + Rounding::Product(m_dA2, w2));
        double const w0 = Rounding::Sum(x - feedback);
        double const outer =
            Rounding::Sum(Rounding::Product(m_dB2, w2) + Rounding::Product(m_dB0, w0));
        double const y = Rounding::Sum(outer + Rounding::Product(m_dB1, w1));
        w2 = w1;
        w1 = w0;
        return y;
    }
};

/// Runs one block. Returns: the largest inner value that came up.
template <typename Rounding>
double RunWide(CIIRSection const& narrow, CIIRLane const& lane, std::int32_t count) {
    CWideSection<Rounding> const section(narrow);
    std::array<double, 6> w;
    std::ranges::transform(*lane.m_pState, w.begin(), Widen);
    double largest = 0.0;
    for (std::int32_t i = 0; i < count; ++i) {
        double const first = section.Run(Widen(lane.m_pIn[i]), w[0], w[1]);
        double const second = section.Run(first, w[2], w[3]);
        lane.m_pOut[i] = Narrow(section.Run(second, w[4], w[5]));
        largest = std::max({largest, std::abs(w[0]), std::abs(w[2]), std::abs(w[4])});
    }
    std::ranges::transform(w, lane.m_pState->begin(), Narrow);
    return largest;
}

/// Fills the block when silence leaves the states as they are. Returns: whether it does.
bool FillWhenFixed(CIIRSection const& section, CIIRLane const& lane, std::int32_t count) {
    CThreeStates next = *lane.m_pState;
    float const silence = 0.0f;
    float output = 0.0f;
    RunWide<CSmallRounding>(section, {&silence, &output, &next}, 1);
    if (std::bit_cast<std::array<std::uint32_t, 6>>(next) !=
        std::bit_cast<std::array<std::uint32_t, 6>>(*lane.m_pState)) {
        return false;
    }
    std::fill_n(lane.m_pOut, count, output);
    return true;
}

/// Runs one block that begins below 2^-127. Returns: false, nothing changed but the output, when it
/// doesn't stay there.
bool RunTiny(CIIRSection const& section, CIIRLane const& lane, std::int32_t count) {
    CThreeStates states = *lane.m_pState;
    if (RunWide<CTinyRounding>(section, {lane.m_pIn, lane.m_pOut, &states}, count) >= kTiny) {
        return false;
    }
    *lane.m_pState = states;
    return true;
}

void FilterBlock(CIIRSection const& section, CIIRLane const& lane, std::int32_t count) {
    std::uint32_t const sampleBits = GatherBits({lane.m_pIn, static_cast<std::size_t>(count)});
    std::uint32_t const bits = (sampleBits | GatherBits(*lane.m_pState)) & kMagnitude;
    if (bits >= kSmallBits) {
        FilterLanePlain(section, lane, count);
    } else if (bits >= kTinyBits || !RunTiny(section, lane, count)) {
        RunWide<CSmallRounding>(section, lane, count);
    }
}

} // namespace

std::uint32_t GatherBits(std::span<float const> samples) {
    std::uint32_t bits = 0;
    for (float const sample : samples) {
        bits |= std::bit_cast<std::uint32_t>(sample);
    }
    return bits;
}

bool IsQuiet(std::uint32_t sampleBits, CThreeStates const& states) {
    return (sampleBits & kMagnitude) < kSmallBits &&
           (GatherBits(states) & kMagnitude) < kNearSmallBits;
}

void FilterQuiet(CIIRSection const& section, CIIRLane const& lane, std::int32_t count) {
    bool const isSilent = GatherBits({lane.m_pIn, static_cast<std::size_t>(count)}) == kSilentBits;
    for (std::int32_t i = 0; i < count; i += kBlock) {
        if (isSilent &&
            FillWhenFixed(section, {nullptr, lane.m_pOut + i, lane.m_pState}, count - i)) {
            return;
        }
        FilterBlock(section, {lane.m_pIn + i, lane.m_pOut + i, lane.m_pState},
                    std::min(kBlock, count - i));
    }
}
