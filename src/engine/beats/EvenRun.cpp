// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/beats/EvenRun.h"

#include "base/Rounding.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr double kTolerance = 0.02; // Fixed: of a step.

// Derived: samples by which the limits are drawn in. Both the even place and the tolerance are
// truncated, which makes two at the most; the rest is more than the arithmetic can be off.
constexpr double kMargin = 4.0;

} // namespace

bool IsRangeLinear(CPfImpactPoints const& points, std::int32_t i, std::int32_t j) {
    auto const positions = points.Points();
    auto const exists = [&positions](std::int32_t k) {
        return k >= 0 && static_cast<std::size_t>(k) < positions.size();
    };
    if (i == j || !exists(i) || !exists(j)) {
        return false;
    }
    auto const at = [&positions](std::int32_t k) { return positions[static_cast<std::size_t>(k)]; };
    double const step = static_cast<double>(at(j) - at(i)) / static_cast<double>(j - i);
    std::int64_t const tolerance = TruncateToInt64(step * kTolerance);
    for (std::int32_t m = i + 1; m < j; ++m) {
        std::int64_t const even = at(i) + TruncateToInt64(step * static_cast<double>(m - i));
        if (std::abs(at(m) - even) > tolerance) {
            return false;
        }
    }
    return true;
}

CPfEvenRun::CPfEvenRun(CPfImpactPoints const& points, std::int32_t anchor)
    : m_pPoints(&points), m_positions(points.Points()), m_nAnchor(anchor) {
}

// A point n steps from the anchor at a distance d is off by |d - n s| at a spacing of s, which
// stays below 0.02 s for d / (n + 0.02) < s < d / (n - 0.02).
bool CPfEvenRun::ReachesTo(std::int32_t end) {
    std::int32_t const side = end < m_nAnchor ? -1 : 1;
    auto const distance = [this, side](std::int32_t steps) {
        std::int32_t const place = m_nAnchor + side * steps;
        auto const anchor = m_positions[static_cast<std::size_t>(m_nAnchor)];
        auto const point = m_positions[static_cast<std::size_t>(place)];
        return static_cast<double>(side < 0 ? anchor - point : point - anchor);
    };
    std::int32_t const steps = std::abs(end - m_nAnchor);
    while (m_nSeen + 1 < steps) {
        ++m_nSeen;
        double const way = distance(m_nSeen);
        m_dLeastSpacing = std::max(m_dLeastSpacing, (way + kMargin) / (m_nSeen + kTolerance));
        m_dMostSpacing = std::min(m_dMostSpacing, (way - kMargin) / (m_nSeen - kTolerance));
    }
    double const spacing = distance(steps) / steps;
    if (steps > 0 && m_dLeastSpacing <= spacing && spacing <= m_dMostSpacing) {
        return true;
    }
    return IsRangeLinear(*m_pPoints, std::min(end, m_nAnchor), std::max(end, m_nAnchor));
}
