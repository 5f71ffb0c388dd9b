// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

/// Truncates `value` toward zero. What the integer type cannot hold is held to its nearest end,
/// and NaN gives 0; both conversions would be undefined as a plain cast.
template <typename Integer, typename Real>
[[nodiscard]] constexpr Integer TruncateTo(Real value) noexcept {
    static_assert(std::is_integral_v<Integer> && std::is_floating_point_v<Real>);
    // One above the largest integer is a power of two, hence exact in every floating type.
    constexpr Real kPastEnd = static_cast<Real>(std::numeric_limits<Integer>::max() / 2 + 1) * 2;
    constexpr auto kLowest = static_cast<Real>(std::numeric_limits<Integer>::min());
    if (value >= kPastEnd) {
        return std::numeric_limits<Integer>::max();
    }
    if (value <= kLowest) {
        return std::numeric_limits<Integer>::min();
    }
    return value == value ? static_cast<Integer>(value) : Integer{0};
}
