// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The grid's gaps and ends, and the arithmetic of steps.

#include "engine/beats/BeatBuilder.h"

#include "base/Rounding.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr float kLeastInterval = 1.0f;   // Fixed: a step shorter than one sample adds nothing.
constexpr float kPllPhaseBand = 0.02f;   // Fixed: phase per step beyond which a point is passed.
constexpr float kPllDeadBand = 0.00025f; // Fixed: phase per step that is not corrected.

/// interval * m in single precision, truncated.
std::int64_t StepsAway(float interval, std::int64_t m) {
    return TruncateTo<std::int64_t>(interval * static_cast<float>(m));
}

/// Samples from `from` to `to`, held to 63 bits, where the steps away are held to as well; none
/// when `from` is not before `to`.
std::int64_t RoomBetween(std::int64_t from, std::int64_t to) {
    if (from >= to) {
        return 0;
    }
    std::uint64_t const room = static_cast<std::uint64_t>(to) - static_cast<std::uint64_t>(from);
    constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(std::min(room, kMost));
}

} // namespace

bool CPfBeatBuilder::InterpolatePoints(float interval, CPfImpactPoints* points) {
    points->Sort();
    if (!(interval >= kLeastInterval)) {
        return true;
    }
    CVectorArray<std::int64_t> filled;
    auto const positions = points->Points();
    for (std::size_t i = 1; i < positions.size(); ++i) {
        std::int64_t const distance = positions[i] - positions[i - 1];
        std::uint32_t const steps = IntervalCount(distance, interval);
        // Deliberate: a gap is filled at its own spacing, not at the nominal interval.
        double const spacing = static_cast<double>(distance) / static_cast<double>(steps);
        for (std::uint32_t m = 1; m < steps; ++m) {
            filled.Add(positions[i - 1] + TruncateToInt64(spacing * static_cast<double>(m)));
        }
    }
    points->Append(filled);
    points->Sort();
    return true;
}

bool CPfBeatBuilder::ExtrapolatePoints(float interval, std::int64_t sampleCount,
                                       CPfImpactPoints* points) {
    points->Sort();
    auto const positions = points->Points();
    if (positions.empty() || !(interval >= kLeastInterval)) {
        return true;
    }
    std::int64_t const first = positions.front();
    std::int64_t const last = positions.back();
    CVectorArray<std::int64_t> added;
    for (std::int64_t m = 1; StepsAway(interval, m) < RoomBetween(-1, first); ++m) {
        added.Add(first - StepsAway(interval, m));
    }
    for (std::int64_t m = 1; StepsAway(interval, m) < RoomBetween(last, sampleCount); ++m) {
        added.Add(last + StepsAway(interval, m));
    }
    points->Append(added);
    points->Sort();
    return true;
}

bool CPfBeatBuilder::RemoveLowConfidencePoints(CPfPcmThumbnail const* envelope, float keepFraction,
                                               CPfImpactPoints* points) {
    std::vector<CPfImpactPoint> ranked;
    for (std::int64_t const position : points->Points()) {
        ranked.push_back({position, CalcPointConfidence(envelope, position)});
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](CPfImpactPoint const& a, CPfImpactPoint const& b) {
                         return a.m_fConfidence > b.m_fConfidence;
                     });
    std::size_t const kept = std::min<std::size_t>(
        TruncateTo<std::uint32_t>(static_cast<float>(ranked.size()) * keepFraction), ranked.size());
    points->RemoveAll();
    for (std::size_t i = 0; i < kept; ++i) {
        points->Add(ranked[i].m_nPosition);
    }
    points->Sort();
    return true;
}

bool CPfBeatBuilder::BuildGridPll(CPfImpactPoints const* in, float interval,
                                  CPfImpactPoints* out) const {
    auto const positions = in->Points();
    if (positions.empty()) {
        return true;
    }
    std::int64_t grid = positions.front();
    for (std::int64_t const position : positions) {
        if (IsCancelled()) {
            return false;
        }
        std::int64_t const distance = position - grid;
        if (distance <= 0) {
            continue;
        }
        auto const steps = static_cast<float>(IntervalCount(distance, interval));
        float const phase = PhaseOffset(distance, interval);
        if (!(steps > 0.0f && -kPllPhaseBand * steps < phase && phase < kPllPhaseBand * steps)) {
            continue;
        }
        float corrected = steps;
        if (std::abs(phase) >= kPllDeadBand * steps) {
            corrected += phase / std::sqrt(std::abs(phase) / (kPllDeadBand * steps));
        }
        std::int64_t const step =
            TruncateTo<std::int64_t>(static_cast<float>(distance) / corrected);
        while (step > 0 && position - step > grid) {
            grid += step;
            out->Add(grid);
        }
    }
    return true;
}

float CPfBeatBuilder::GetBoundedValue(float value, float lo, float hi) {
    if (value < lo) {
        return lo;
    }
    return value > hi ? hi : value;
}

void CPfBeatBuilder::DownsampleByHalf(std::int8_t keepFirst, CPfImpactPoints* points) {
    CVectorArray<std::int64_t> kept;
    auto const positions = points->Points();
    for (std::size_t i = keepFirst != 0 ? 0 : 1; i < positions.size(); i += 2) {
        kept.Add(positions[i]);
    }
    points->RemoveAll();
    points->Append(kept);
}
