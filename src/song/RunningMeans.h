// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Mean of a row of levels between any two moments, from running sums.
template <std::size_t Width>
class CRunningMeans {
public:
    using CRow = std::array<double, Width>;

    /// `levels` less `floor`, and no less than 0. Nothing is kept of them.
    template <typename Rows>
    CRunningMeans(Rows const& levels, std::array<int, Width> const& floor) {
        m_vSums.reserve(levels.size() + 1);
        m_vSums.emplace_back();
        for (auto const& row : levels) {
            auto& sums = m_vSums.emplace_back(m_vSums.back());
            for (std::size_t i = 0; i < Width; ++i) {
                sums[i] += static_cast<std::uint32_t>(std::max(0, row[i] - floor[i]));
            }
        }
    }

    /// From row `from` up to but without row `to`, both rounded; the nearest row where that is
    /// none.
    [[nodiscard]] CRow Between(double from, double to) const {
        std::size_t const count = m_vSums.size() - 1;
        std::size_t const first = Held(from, count > 0 ? count - 1 : 0);
        std::size_t const end = std::max(Held(to, count), std::min(first + 1, count));
        CRow means{};
        for (std::size_t i = 0; i < Width; ++i) {
            means[i] = static_cast<double>(m_vSums[end][i] - m_vSums[first][i]) /
                       static_cast<double>(std::max<std::size_t>(1, end - first));
        }
        return means;
    }

private:
    static std::size_t Held(double place, std::size_t last) {
        double const held = std::clamp(std::floor(place + 0.5), 0.0, static_cast<double>(last));
        return static_cast<std::size_t>(held);
    }

    std::vector<std::array<std::uint32_t, Width>> m_vSums;
};

/// The loudest of each column.
template <std::size_t Width>
[[nodiscard]] std::array<int, Width>
Loudest(std::vector<std::array<std::uint8_t, Width>> const& rows) {
    std::array<int, Width> loudest{};
    for (auto const& row : rows) {
        for (std::size_t i = 0; i < Width; ++i) {
            loudest[i] = std::max<int>(loudest[i], row[i]);
        }
    }
    return loudest;
}
