// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/PlainMath.h"

#include "base/Rounding.h"

#include <cmath>

namespace {

constexpr float kLargestExponent = 126.0f;    // Derived: 2^126 and 2^-126 are normal floats.
constexpr double kLn2 = 0.693147180559945309; // Standard: ISO 80000-2, natural logarithm of 2.
constexpr int kSeriesTerms = 9;               // Derived: the tenth is below 2e-10 for |x| < 0.5.
constexpr int kAreaTerms = 8;                 // Derived: the ninth is below 1e-14 for m near 1.

constexpr double kTurnRadians = 6.28318530717958648; // Standard: ISO 80000-2, a turn in radians.
constexpr int kCosineTerms = 9; // Derived: the tenth is below 1e-15 for |x| <= pi/2.

/// Cosine of an angle of at most a quarter turn, by Taylor's series in Horner's order.
double CosineOfQuarter(double turns) {
    double const square = turns * kTurnRadians * (turns * kTurnRadians);
    double sum = 1.0;
    for (int n = kCosineTerms; n > 0; --n) {
        sum = 1.0 - sum * square / static_cast<double>(2 * n * (2 * n - 1));
    }
    return sum;
}

} // namespace

float PlainExp2(float x) {
    if (x < -kLargestExponent) {
        return 0.0f;
    }
    float const held = x <= kLargestExponent ? x : kLargestExponent;
    double const whole = std::floor(static_cast<double>(held) + 0.5);
    double const rest = (static_cast<double>(held) - whole) * kLn2;
    // Taylor series of exp, by Horner's rule.
    double sum = 1.0;
    for (int n = kSeriesTerms; n > 0; --n) {
        sum = 1.0 + sum * rest / static_cast<double>(n);
    }
    return static_cast<float>(std::ldexp(sum, TruncateToInt32(whole)));
}

float PlainLog2(float x) {
    float const smallest = std::ldexp(1.0f, -126);
    if (!(x > smallest)) {
        return -kLargestExponent;
    }
    if (x > std::ldexp(1.0f, 127)) {
        return 127.0f;
    }
    int exponent = 0;
    double mantissa = std::frexp(static_cast<double>(x), &exponent); // [0.5, 1)
    if (mantissa < 0.70710678) {
        mantissa *= 2.0;
        --exponent;
    }
    // ln m = 2 artanh((m - 1) / (m + 1))
    double const t = (mantissa - 1.0) / (mantissa + 1.0);
    double sum = 0.0;
    for (int n = kAreaTerms; n >= 0; --n) {
        sum = sum * t * t + 1.0 / static_cast<double>(2 * n + 1);
    }
    return static_cast<float>(static_cast<double>(exponent) + 2.0 * t * sum / kLn2);
}

double PlainCosTurns(double turns) {
    double const positive = turns < 0.0 ? -turns : turns;
    double const half = positive > 0.5 ? 1.0 - positive : positive; // the cosine is even
    return half > 0.25 ? -CosineOfQuarter(0.5 - half) : CosineOfQuarter(half);
}
