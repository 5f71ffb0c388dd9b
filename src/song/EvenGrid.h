// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <optional>
#include <span>

/// A grid of one tempo throughout.
/// Units: seconds.
struct CEvenGrid {
    double m_dFirst = 0.0; // the first half beat from the start on
    double m_dStep = 0.0;
};

/// The even grid that meets most of what sets in, of all whose step is within 2 % of `step`, to a
/// few milliseconds at both ends of the song. `rises` are those of `AttackRises`. Nothing for a
/// song that is silent, shorter than 16 steps or longer than a quarter of an hour.
[[nodiscard]] std::optional<CEvenGrid> FindEvenGrid(std::span<std::uint8_t const> rises,
                                                    double step);
