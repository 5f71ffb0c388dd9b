// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/BeatGrid.h"

#include "engine/envelope/ImpactPoints.h"

#include <algorithm>

namespace {

constexpr std::int32_t kBeatsPerMeasure = 4; // Fixed: the engine knows no other metre.

std::optional<CBeat> StepIn(std::vector<CBeat> const& beats, std::int64_t sample,
                            std::int32_t count) {
    auto const isBefore = [](CBeat const& beat, std::int64_t place) {
        return beat.m_nSample < place;
    };
    auto const isAfter = [](std::int64_t place, CBeat const& beat) {
        return place < beat.m_nSample;
    };
    if (count > 0) {
        auto const next = std::upper_bound(beats.begin(), beats.end(), sample, isAfter);
        auto const left = static_cast<std::int64_t>(beats.end() - next);
        return left == 0 ? std::nullopt
                         : std::optional(next[std::min<std::int64_t>(count, left) - 1]);
    }
    auto const here = std::lower_bound(beats.begin(), beats.end(), sample, isBefore);
    auto const left = static_cast<std::int64_t>(here - beats.begin());
    return left == 0 || count == 0
               ? std::nullopt
               : std::optional(*(here - std::min<std::int64_t>(-std::int64_t{count}, left)));
}

} // namespace

CBeatGrid::CBeatGrid(CPfImpactPoints const& grid, std::int64_t end) {
    std::int64_t const step = grid.GetResolution() / kBeatsPerMeasure;
    if (step == 0 || grid.GetResolution() % kBeatsPerMeasure != 0) {
        return;
    }
    std::int64_t mark = 0;
    std::int32_t downbeat = 0;
    if (grid.EnumMeasStartMarks(0, &mark)) {
        (void)grid.GetClosestPointIndex(mark, &downbeat);
    }
    auto const points = grid.Points();
    std::int64_t const resolution = grid.GetResolution();
    std::int64_t place = (resolution - downbeat % resolution) % resolution; // within its measure
    std::int32_t measure = 0;
    for (std::int64_t const point : points) {
        std::int64_t const phase = place++ % resolution;
        if (point < 0 || point >= end || phase % step != 0) {
            continue;
        }
        measure += static_cast<std::int32_t>(phase == 0);
        m_vBeats.push_back({point, measure, static_cast<std::int32_t>(phase / step) + 1});
        if (phase == 0) {
            m_vMeasures.push_back(m_vBeats.back());
        }
    }
}

std::optional<CBeat> CBeatGrid::At(std::int64_t sample) const {
    auto const next = std::upper_bound(
        m_vBeats.begin(), m_vBeats.end(), sample,
        [](std::int64_t place, CBeat const& beat) { return place < beat.m_nSample; });
    return next == m_vBeats.begin() ? std::nullopt : std::optional(*(next - 1));
}

std::optional<CBeat> CBeatGrid::Step(std::int64_t sample, std::int32_t beats) const {
    return StepIn(m_vBeats, sample, beats);
}

std::optional<CBeat> CBeatGrid::StepMeasures(std::int64_t sample, std::int32_t measures) const {
    return StepIn(m_vMeasures, sample, measures);
}
