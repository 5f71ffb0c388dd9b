// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// Connections of the beat graph: which pairs of nodes fit the step (VisitConnections), how well
// (CalcConQuality), and in which order they are linked, some at a time (BestConnections).

#include "engine/beats/BeatBuilder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <functional>
#include <utility>

namespace {

constexpr float kLeastCloseness = 0.8f;      // Fixed: closeness that scores 0.
constexpr float kFullCloseness = 0.98f;      // Fixed: closeness above which the score is 1.
constexpr float kClosenessRange = 0.18f;     // Derived: 0.98 - 0.8, as its own nearest float.
constexpr std::uint32_t kNearSteps = 8;      // Fixed: up to one measure a link loses nothing.
constexpr std::uint32_t kFarthestSteps = 32; // Fixed: four measures; the score falls to 0 there.
constexpr float kFallingSteps = 24.0f;       // Derived: 32 - 8.

// Derived: 1 - 0.8, and more than single precision can be off for up to 32 steps (4e-6).
constexpr double kSurelyUnfit = 0.2001;

constexpr std::uint32_t kDigitBits = 11; // Derived: three digits of 11 bits hold the 32 of a float.
constexpr std::uint32_t kDigits = 3;

/// Score of a distance of `steps` steps, both confidences left out.
float CalcFit(std::int64_t distance, float interval, std::uint32_t steps) {
    float const closeness = 1.0f - CPfBeatBuilder::AbsPhaseOffset(distance, interval);
    float phaseScore = 0.0f;
    if (closeness > kFullCloseness) {
        phaseScore = 1.0f;
    } else if (closeness > kLeastCloseness) {
        phaseScore = (closeness - kLeastCloseness) / kClosenessRange;
    }
    return steps <= kNearSteps
               ? phaseScore
               : phaseScore * (static_cast<float>(kFarthestSteps - steps) / kFallingSteps);
}

/// True where the distance is so far from whole steps that its quality can only be 0.
bool IsSurelyUnfit(std::int64_t distance, float interval, std::uint32_t steps) {
    double const exact = static_cast<double>(distance) / static_cast<double>(interval);
    return std::abs(exact - static_cast<double>(steps)) > kSurelyUnfit;
}

/// Calls `visit` with every connection of quality above 0, by first, then second node.
template <typename Visit>
void VisitConnections(CPfBeatBuilder::Nodes const& nodes, float step, Visit visit) {
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (nodes[i].m_fConfidence == 0.0f) {
            continue; // and so is the quality of all its connections
        }
        for (std::size_t j = i + 1; j < nodes.size(); ++j) {
            std::int64_t const distance = nodes[j].m_nPosition - nodes[i].m_nPosition;
            std::uint32_t const steps = CPfBeatBuilder::IntervalCount(distance, step);
            if (steps > kFarthestSteps) {
                break;
            }
            if (steps == 0 || IsSurelyUnfit(distance, step, steps)) {
                continue;
            }
            float const quality =
                CalcFit(distance, step, steps) * nodes[i].m_fConfidence * nodes[j].m_fConfidence;
            if (quality > 0.0f) {
                visit({static_cast<std::int32_t>(i), static_cast<std::int32_t>(j), quality});
            }
        }
    }
}

/// True when `a` ranks before `b`: by quality, then by first and second node.
bool RanksBefore(CPfBeatConnection const& a, CPfBeatConnection const& b) {
    return a.m_fQuality != b.m_fQuality
               ? a.m_fQuality > b.m_fQuality
               : std::pair(a.m_nFirst, a.m_nSecond) < std::pair(b.m_nFirst, b.m_nSecond);
}

/// Keeps the best `most` of connections that come by first, then second node, in that order.
/// Returns: the quality of the worst that is left, which no later one must only equal.
float KeepBest(std::size_t most, std::vector<CPfBeatConnection>* connections) {
    std::vector<float> qualities;
    qualities.reserve(connections->size());
    for (CPfBeatConnection const& connection : *connections) {
        qualities.push_back(connection.m_fQuality);
    }
    auto const worst = qualities.begin() + static_cast<std::ptrdiff_t>(most - 1);
    std::ranges::nth_element(qualities, worst, std::greater());
    float const least = *worst;
    auto room = most - static_cast<std::size_t>(std::ranges::count_if(
                           *connections, [least](auto const& c) { return c.m_fQuality > least; }));
    std::erase_if(*connections, [least, &room](CPfBeatConnection const& connection) {
        if (connection.m_fQuality != least) {
            return connection.m_fQuality < least;
        }
        bool const isLeftOut = room == 0;
        room -= isLeftOut ? 0 : 1;
        return isLeftOut;
    });
    return least;
}

/// One digit of the quality's bits, turned round so that the best quality comes first. The bits of
/// positive floats have the order of the floats.
std::uint32_t DigitOf(CPfBeatConnection const& connection, std::uint32_t digit) {
    std::uint32_t const bits = ~std::bit_cast<std::uint32_t>(connection.m_fQuality);
    return (bits >> (digit * kDigitBits)) & ((1U << kDigitBits) - 1U);
}

} // namespace

float CPfBeatBuilder::CalcConQuality(Nodes const& nodes, float interval, std::int32_t i,
                                     std::int32_t j) {
    CPfBeatPoint const& a = nodes[static_cast<std::size_t>(i)];
    CPfBeatPoint const& b = nodes[static_cast<std::size_t>(j)];
    std::int64_t const distance = std::abs(b.m_nPosition - a.m_nPosition);
    std::uint32_t const steps = IntervalCount(distance, interval);
    if (steps == 0 || steps > kFarthestSteps) {
        return 0.0f;
    }
    return CalcFit(distance, interval, steps) * a.m_fConfidence * b.m_fConfidence;
}

std::vector<CPfBeatConnection> CPfBeatBuilder::BestConnections(Nodes const& nodes, float step,
                                                               CPfBeatConnection const* last,
                                                               std::size_t most) {
    std::vector<CPfBeatConnection> best;
    float least = 0.0f;
    VisitConnections(nodes, step, [&](CPfBeatConnection const& connection) {
        if (connection.m_fQuality <= least ||
            (last != nullptr && !RanksBefore(*last, connection))) {
            return;
        }
        best.push_back(connection);
        if (best.size() == 2 * most) {
            least = KeepBest(most, &best);
        }
    });
    if (best.size() > most) {
        (void)KeepBest(most, &best);
    }
    RankConnections(&best);
    return best;
}

// A radix sort from the lowest digit to the highest: stable, and linear in a number of connections
// that goes into the hundreds of thousands.
void CPfBeatBuilder::RankConnections(std::vector<CPfBeatConnection>* connections) {
    std::vector<CPfBeatConnection> sorted(connections->size());
    for (std::uint32_t digit = 0; digit < kDigits; ++digit) {
        std::array<std::size_t, std::size_t{1} << kDigitBits> place{};
        for (CPfBeatConnection const& connection : *connections) {
            ++place[DigitOf(connection, digit)];
        }
        std::size_t next = 0;
        for (std::size_t& first : place) {
            next += std::exchange(first, next);
        }
        for (CPfBeatConnection const& connection : *connections) {
            sorted[place[DigitOf(connection, digit)]++] = connection;
        }
        connections->swap(sorted);
    }
}
