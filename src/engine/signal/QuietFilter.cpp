// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// FilterQuiet
//   FillWhenFixed   silence that leaves the states as they are: one output for all of it
//   RunSection      up to 64 samples, loud ones apart from quiet ones, section by section, each in
//                   its own way by the size of what goes in:
//     RunTiny       every number a multiple of 2^-149 below 2^-127: sums are exact, products are
//                   rounded to that grid
//     RunSmall      states that are floats as others are, but subnormal outputs: these on the grid
//                   of a float of any size
// The product of two floats is exact in double. Adding 1.5 * 2^52 grid steps and taking them off
// again rounds to the grid, to even where it lies between; only the sign of a zero gets lost.

#include "engine/signal/QuietFilter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <span>

namespace {

constexpr std::int32_t kBlock = 64;              // Tuned: BM_QuietFilter; samples judged at once.
constexpr std::uint32_t kMagnitude = 0x7FFFFFFF; // Standard: IEEE 754, all but the sign.

// Derived: sizes of a float as its bits, which are in the same order; 127 + n stands for 2^n.
constexpr std::uint32_t kTinyBits = 0x00400000;      // 2^-127
constexpr std::uint32_t kSmallBits = 16U << 23U;     // 2^-111: below it products get subnormal
constexpr std::uint32_t kNearSmallBits = 25U << 23U; // 2^-102: 512 samples of decay above it

constexpr double kTiny = 0x1.0p-127;
constexpr double kGridBias = 0x1.8p-97;  // Derived: 1.5 * 2^52 steps of 2^-149.
constexpr double kFloatBias = 0x1.8p+29; // Derived: 1.5 * 2^52 steps of 2^-23, for 1 <= x < 2.
constexpr double kSmallestNormal = 0x1.0p-126;
constexpr double kGridStep = 0x1.0p-149;

/// Size of the largest sample, as its bits.
std::uint32_t LargestOf(std::span<float const> samples) {
    std::uint32_t largest = 0;
    for (float const sample : samples) {
        largest = std::max(largest, std::bit_cast<std::uint32_t>(sample) & kMagnitude);
    }
    return largest;
}

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

/// Back again; `value` is one that a float can hold, or no number.
float Narrow(double value) {
    double const magnitude = std::abs(value);
    if (!(magnitude < kSmallestNormal)) {
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
        double const y = Output(w0, w1, w2);
        w2 = w1;
        w1 = w0;
        return y;
    }

    [[nodiscard]] double Output(double w0, double w1, double w2) const {
        double const outer =
            Rounding::Sum(Rounding::Product(m_dB2, w2) + Rounding::Product(m_dB0, w0));
        return Rounding::Sum(outer + Rounding::Product(m_dB1, w1));
    }
};

/// A block on its way through the sections, and what one of them remembers.
using CBlock = std::span<float>;
using CStates = std::span<float, 2>;

/// Runs a block that begins below 2^-127. Returns: false, nothing changed, when it doesn't stay
/// there.
bool RunTiny(CIIRSection const& narrow, CBlock block, CStates states) {
    CWideSection<CTinyRounding> const section(narrow);
    std::array<float, kBlock> out;
    double w1 = Widen(states[0]);
    double w2 = Widen(states[1]);
    double largest = 0.0;
    for (std::size_t i = 0; i < block.size(); ++i) {
        out[i] = Narrow(section.Run(Widen(block[i]), w1, w2));
        largest = std::max(largest, std::abs(w1));
    }
    if (largest >= kTiny) {
        return false;
    }
    std::copy_n(out.begin(), block.size(), block.begin());
    states[0] = Narrow(w1);
    states[1] = Narrow(w2);
    return true;
}

/// Runs a block whose states are hardly ever subnormal, but whose outputs are.
void RunSmall(CIIRSection const& narrow, CBlock block, CStates states) {
    CWideSection<CSmallRounding> const section(narrow);
    float w1 = states[0];
    float w2 = states[1];
    for (float& sample : block) {
        float const w0 = sample - (narrow.m_fA1 * w1 + narrow.m_fA2 * w2);
        sample = Narrow(section.Output(static_cast<double>(w0), static_cast<double>(w1),
                                       static_cast<double>(w2)));
        w2 = w1;
        w1 = w0;
    }
    states[0] = w1;
    states[1] = w2;
}

void RunSection(CIIRSection const& section, CBlock block, CStates states) {
    std::uint32_t const largest = std::max(LargestOf(block), LargestOf(states));
    if (largest < kTinyBits && RunTiny(section, block, states)) {
        return;
    }
    if (largest < kSmallBits) {
        RunSmall(section, block, states);
        return;
    }
    for (float& sample : block) {
        sample = section.Run(sample, states[0], states[1]);
    }
}

/// Fills the block when silence leaves the states as they are. Returns: whether it does.
bool FillWhenFixed(CIIRSection const& narrow, CIIRLane const& lane, std::int32_t count) {
    CWideSection<CSmallRounding> const section(narrow);
    double output = 0.0;
    for (std::size_t i = 0; i < lane.m_pState->size(); i += 2) {
        std::array<float, 2> const before{(*lane.m_pState)[i], (*lane.m_pState)[i + 1]};
        double w1 = Widen(before[0]);
        double w2 = Widen(before[1]);
        output = section.Run(output, w1, w2);
        using Bits = std::array<std::uint32_t, 2>;
        if (std::bit_cast<Bits>(before) !=
            std::bit_cast<Bits>(std::array<float, 2>{Narrow(w1), Narrow(w2)})) {
            return false;
        }
    }
    std::fill_n(lane.m_pOut, count, Narrow(output));
    return true;
}

void FilterBlock(CIIRSection const& section, CIIRLane const& lane, std::int32_t count) {
    CBlock const block{lane.m_pOut, static_cast<std::size_t>(count)};
    std::copy_n(lane.m_pIn, count, lane.m_pOut);
    std::span<float, 6> const states(*lane.m_pState);
    RunSection(section, block, states.subspan<0, 2>());
    RunSection(section, block, states.subspan<2, 2>());
    RunSection(section, block, states.subspan<4, 2>());
}

/// Samples at the beginning that keep below `bits`.
std::int32_t CountBelow(std::uint32_t bits, float const* samples, std::int32_t count) {
    auto const end = std::find_if(samples, samples + count, [bits](float sample) {
        return (std::bit_cast<std::uint32_t>(sample) & kMagnitude) >= bits;
    });
    return static_cast<std::int32_t>(end - samples);
}

/// Zeros at the beginning, those below zero left out.
std::int32_t CountSilent(float const* samples, std::int32_t count) {
    auto const end = std::find_if(samples, samples + count, [](float sample) {
        return std::bit_cast<std::uint32_t>(sample) != 0;
    });
    return static_cast<std::int32_t>(end - samples);
}

} // namespace

bool IsQuiet(CThreeStates const& states) {
    // The first section gets small long before the last, which still hears it.
    std::span<float const, 6> const all(states);
    return LargestOf(all.subspan<0, 2>()) < kNearSmallBits ||
           LargestOf(all.subspan<2, 2>()) < kNearSmallBits ||
           LargestOf(all.subspan<4, 2>()) < kNearSmallBits;
}

void FilterQuiet(CIIRSection const& section, CIIRLane const& lane, std::int32_t count) {
    std::int32_t silentEnd = 0;
    for (std::int32_t i = 0; i < count;) {
        CIIRLane const rest{lane.m_pIn + i, lane.m_pOut + i, lane.m_pState};
        if (i >= silentEnd) {
            silentEnd = i + CountSilent(rest.m_pIn, count - i);
        }
        if (i < silentEnd && FillWhenFixed(section, rest, silentEnd - i)) {
            i = silentEnd;
            continue;
        }
        std::int32_t const block = std::min(kBlock, count - i);
        std::int32_t const quiet = CountBelow(kSmallBits, rest.m_pIn, block);
        FilterBlock(section, rest, quiet > 0 ? quiet : block);
        i += quiet > 0 ? quiet : block;
    }
}
