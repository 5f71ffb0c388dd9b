// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>
#include <vector>

/// `value` in [-1, 1) in steps of 16 bits, cut to them; ties go to the even step, NaN to the
/// lowest.
template <typename T>
std::int16_t RoundToStep(T value) {
    using CBits = std::conditional_t<sizeof(T) == sizeof(float), std::int32_t, std::int64_t>;
    constexpr T kSteps = 32768;
    // Derived: 3 * 2^(digits - 2). What is added to it is left without a fraction, and from there
    // on one step is one in the bits; further out they still keep the order.
    constexpr T kWhole = T{3} * (std::uint64_t{1} << (std::numeric_limits<T>::digits - 2));
    constexpr auto kZero = std::bit_cast<CBits>(kWhole);
    constexpr auto kInfinite = std::bit_cast<CBits>(std::numeric_limits<T>::infinity());
    auto const bits = std::bit_cast<CBits>(value * kSteps + kWhole);
    CBits const inOrder = bits > kInfinite ? CBits{0} : bits; // NaN of either sign is lowest
    return static_cast<std::int16_t>(std::min(std::max(inOrder, kZero - 32768), kZero + 32767) -
                                     kZero);
}

/// Sums channels, each times its share, and rounds the sum to 16 bits, ties to the even step.
/// The decoding library could do both, but its sums are fused on some processors, and some round
/// ties up: a file would have other samples there. Units: samples in [-1, 1), which is cut to 16
/// bits; NaN becomes the lowest step. Shape: one share for each plane; planes[c][0, count), out[0,
/// count); `sum` is a work buffer.
template <typename T>
void MixToMono(T const* const* planes, std::span<T const> shares, std::size_t count,
               std::vector<T>& sum, std::int16_t* out) {
    if (shares.size() == 1 && shares[0] == T{1}) {
        for (std::size_t i = 0; i < count; ++i) {
            out[i] = RoundToStep(planes[0][i]);
        }
        return;
    }
    if (shares.size() == 2) {
        for (std::size_t i = 0; i < count; ++i) {
            out[i] = RoundToStep(planes[0][i] * shares[0] + planes[1][i] * shares[1]);
        }
        return;
    }
    sum.assign(count, T{0});
    for (std::size_t c = 0; c < shares.size(); ++c) {
        for (std::size_t i = 0; shares[c] != T{0} && i < count; ++i) {
            sum[i] += planes[c][i] * shares[c];
        }
    }
    std::transform(sum.begin(), sum.end(), out, RoundToStep<T>);
}
