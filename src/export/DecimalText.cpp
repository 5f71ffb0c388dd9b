// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/DecimalText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

std::string DecimalText(double value, int decimals) {
    constexpr std::size_t kRoomBytes = 384; // Derived: the largest double has 309 digits.
    std::array<char, kRoomBytes> text{};
    auto const [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                            std::chars_format::fixed, decimals);
    return error == std::errc() && std::isfinite(value) ? std::string(text.data(), end) : "0";
}
