// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

/// Truncates toward zero, with a result for every value: one outside the integer's range gives the
/// nearest end of the range, NaN gives 0. A plain cast would be undefined for those.
template <typename Integer, typename Real>
[[nodiscard]] constexpr Integer TruncateTo(Real value) noexcept {
    static_assert(std::is_integral_v<Integer> && std::is_floating_point_v<Real>);
    // One above the largest integer is a power of two, hence exact in every floating type.
    constexpr Integer kMiddle = std::numeric_limits<Integer>::max() / 2 + 1;
    constexpr Real kPastEnd = static_cast<Real>(kMiddle) * 2;
    constexpr auto kLowest = static_cast<Real>(std::numeric_limits<Integer>::min());
    if (value >= kPastEnd) {
        return std::numeric_limits<Integer>::max();
    }
    if (value <= kLowest) {
        return std::numeric_limits<Integer>::min();
    }
    return value == value ? static_cast<Integer>(value) : Integer{0};
}

/// The same by name. A float widens to double without a change of value.
[[nodiscard]] constexpr std::int32_t TruncateToInt32(double value) noexcept {
    return TruncateTo<std::int32_t>(value);
}
[[nodiscard]] constexpr std::int64_t TruncateToInt64(double value) noexcept {
    return TruncateTo<std::int64_t>(value);
}
[[nodiscard]] constexpr std::uint32_t TruncateToUint32(double value) noexcept {
    return TruncateTo<std::uint32_t>(value);
}

/// value + 0.5 in double, truncated to an unsigned count; meant for values from 0 on.
[[nodiscard]] constexpr std::uint32_t RoundHalfUpToUint32(double value) noexcept {
    return TruncateToUint32(value + 0.5);
}
