// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/BeatGrid.h"

#include "base/EngineRate.h"
#include "song/BeatTimes.h"

#include <algorithm>
#include <cmath>

namespace {

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

CBeatGrid::CBeatGrid(CBeatTimes const& heard, std::int64_t end) {
    std::int32_t measure = 0;
    for (CBeatTime const& time : heard.m_vHalfBeats) {
        std::int64_t const sample = std::llround(time.m_dSeconds * double{kEngineRateHz});
        if (time.m_nPlace == 0 || sample < 0 || sample >= end) {
            continue;
        }
        measure += static_cast<std::int32_t>(time.m_nPlace == 1);
        m_vBeats.push_back({sample, measure, time.m_nPlace});
        if (time.m_nPlace == 1) {
            m_vMeasures.push_back(m_vBeats.back());
        }
    }
    m_nBeatsPerMeasure = m_vBeats.empty() ? 0 : heard.m_nBeatsPerMeasure;
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
