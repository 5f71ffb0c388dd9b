// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/envelope/ImpactPoints.h"

#include <cstdint>
#include <limits>
#include <span>

/// True when every point strictly between i and j lies within 2 % of a step from its even place;
/// false for i = j and for points that don't exist.
[[nodiscard]] bool IsRangeLinear(CPfImpactPoints const& points, std::int32_t i, std::int32_t j);

/// A growing run of grid points from an anchor on, forwards or backwards, of which it is asked
/// again and again whether it is evenly spaced. Every point on the way limits the spacings at which
/// it still lies near its even place; a spacing well inside the limits of all needs no look at the
/// points. The answers are those of `IsRangeLinear`.
/// Thread: worker. The points must outlive it, unchanged, in ascending order.
class CPfEvenRun {
public:
    CPfEvenRun(CPfImpactPoints const& points, std::int32_t anchor);

    /// True when all points strictly between the anchor and `end` lie within 2 % of a step from
    /// their even places. From call to call `end` must move away from the anchor, on one side.
    bool ReachesTo(std::int32_t end);

private:
    CPfImpactPoints const* m_pPoints;
    std::span<std::int64_t const> m_positions;
    std::int32_t m_nAnchor;
    std::int32_t m_nSeen = 0;     // points on the way that have set their limits
    double m_dLeastSpacing = 0.0; // samples; no point lies too far out for this or more
    double m_dMostSpacing =
        std::numeric_limits<double>::infinity(); // nor too near for this or less
};
