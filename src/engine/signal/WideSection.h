// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/signal/IIRSection.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

// Floats in double, without the processor's detour for subnormal ones. The product of two floats is
// exact in double. Adding 1.5 * 2^52 grid steps and taking them off again rounds to the grid, to
// even where it lies between; only the sign of a zero gets lost.

constexpr std::uint32_t kMagnitude = 0x7FFFFFFF; // Standard: IEEE 754, all but the sign.
constexpr double kGridStep = 0x1.0p-149;
constexpr double kGridBias = 0x1.8p-97;  // Derived: 1.5 * 2^52 steps of 2^-149.
constexpr double kFloatBias = 0x1.8p+29; // Derived: 1.5 * 2^52 steps of 2^-23, for 1 <= x < 2.
constexpr double kSmallestNormal = 0x1.0p-126;

/// A float below 2^-126, which is a whole number of steps.
inline double WidenTiny(float value) {
    auto const bits = std::bit_cast<std::uint32_t>(value);
    double const size =
        static_cast<double>(static_cast<std::int32_t>(bits & kMagnitude)) * kGridStep;
    std::uint64_t const sign = std::uint64_t{bits & ~kMagnitude} << 32U;
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(size) | sign);
}

/// A float of any size.
inline double Widen(float value) {
    std::uint32_t const magnitude = std::bit_cast<std::uint32_t>(value) & kMagnitude;
    if (magnitude >= std::bit_cast<std::uint32_t>(std::numeric_limits<float>::min())) {
        return static_cast<double>(value);
    }
    return WidenTiny(value);
}

/// Back again, below 2^-125. In steps it is a whole number, that a float holds as well, with the
/// sign of a zero.
inline float NarrowTiny(double value) {
    auto const steps = static_cast<float>(value / kGridStep);
    auto const size = static_cast<std::uint32_t>(static_cast<std::int32_t>(std::abs(steps)));
    return std::bit_cast<float>(size | (std::bit_cast<std::uint32_t>(steps) & ~kMagnitude));
}

/// Of any size; `value` is one that a float can hold, or no number.
inline float Narrow(double value) {
    return std::abs(value) < kSmallestNormal ? NarrowTiny(value) : static_cast<float>(value);
}

/// Rounds as a float is.
inline double RoundAsFloat(double sum) {
    // The power of two at or below the number, by leaving nothing but the exponent.
    constexpr std::uint64_t kExponent = 0x7FF0000000000000;
    auto const power = std::bit_cast<double>(std::bit_cast<std::uint64_t>(sum) & kExponent);
    double const bias = std::max(power * kFloatBias, kGridBias);
    return std::copysign((sum + bias) - bias, sum);
}

/// A section in double, in the order of operations of `CIIRSection::Run`, each rounded as there.
struct CWideSection {
    double m_dB0, m_dB1, m_dB2, m_dA1, m_dA2;

    explicit CWideSection(CIIRSection const& section)
        : m_dB0(static_cast<double>(section.m_fB0)),
          m_dB1(static_cast<double>(section.m_fB1)),
          m_dB2(static_cast<double>(section.m_fB2)),
          m_dA1(static_cast<double>(section.m_fA1)),
          m_dA2(static_cast<double>(section.m_fA2)) {}

    [[nodiscard]] double State(double x, double w1, double w2) const {
        return RoundAsFloat(x - RoundAsFloat(RoundAsFloat(m_dA1 * w1) + RoundAsFloat(m_dA2 * w2)));
    }

    [[nodiscard]] double Output(double w0, double w1, double w2) const {
        double const outer = RoundAsFloat(RoundAsFloat(m_dB2 * w2) + RoundAsFloat(m_dB0 * w0));
        return RoundAsFloat(outer + RoundAsFloat(m_dB1 * w1));
    }

    /// `State` where all of it keeps below 2^-125, so that sums are exact; but for the sign of a
    /// zero. Their order is free: what is known of the sample before last comes first, and the last
    /// one waits for a product and two sums.
    [[nodiscard]] double TinyState(double x, double w1, double w2) const {
        double const older = (x + kGridBias) - (m_dA2 * w2 + kGridBias);
        return (older + kGridBias) - (m_dA1 * w1 + kGridBias);
    }

    /// `Output` where all of it keeps below 2^-125. A sum of three is a zero below zero where each
    /// of them is below zero.
    [[nodiscard]] double TinyOutput(double w0, double w1, double w2) const {
        double const newest = m_dB0 * w0;
        double const middle = m_dB1 * w1;
        double const oldest = m_dB2 * w2;
        double const sum =
            (((newest + kGridBias) - kGridBias) + ((oldest + kGridBias) - kGridBias)) +
            ((middle + kGridBias) - kGridBias);
        std::uint64_t const signs = std::bit_cast<std::uint64_t>(newest) &
                                    std::bit_cast<std::uint64_t>(middle) &
                                    std::bit_cast<std::uint64_t>(oldest) & kSign;
        return std::bit_cast<double>(std::bit_cast<std::uint64_t>(sum) | signs);
    }

    static constexpr std::uint64_t kSign = std::uint64_t{1} << 63U;
};
