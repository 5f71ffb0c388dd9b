// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

struct CBeatTimes;

/// One beat of a song.
struct CBeat {
    std::int64_t m_nSample = 0;  // from the song's start
    std::int32_t m_nMeasure = 0; // 1 for the first whole one, 0 for what comes before it
    std::int32_t m_nBeat = 0;    // from 1 on within its measure

    friend bool operator==(CBeat const&, CBeat const&) = default;
};

/// The beats of a song in ascending order, with the measures that they make. A plain value.
/// Units: samples at the engine's rate.
class CBeatGrid {
public:
    CBeatGrid() = default;

    /// The beats that were heard. Those outside [0, `end`) are left out.
    CBeatGrid(CBeatTimes const& heard, std::int64_t end);

    [[nodiscard]] std::span<CBeat const> Beats() const { return m_vBeats; }

    /// The last beat at or before `sample`; nothing before the first one.
    [[nodiscard]] std::optional<CBeat> At(std::int64_t sample) const;

    /// The `beats`-th beat after `sample`, or before it when negative; the first or the last one
    /// when there aren't as many. A beat at `sample` itself doesn't count. Nothing when the grid is
    /// empty or no beat lies on that side.
    [[nodiscard]] std::optional<CBeat> Step(std::int64_t sample, std::int32_t beats) const;

    /// The same with measure starts.
    [[nodiscard]] std::optional<CBeat> StepMeasures(std::int64_t sample,
                                                    std::int32_t measures) const;

    /// 3 or 4; 0 when the grid is empty.
    [[nodiscard]] std::int32_t BeatsPerMeasure() const { return m_nBeatsPerMeasure; }

    /// Number of the last measure that begins; 0 without any.
    [[nodiscard]] std::int32_t MeasureCount() const {
        return m_vBeats.empty() ? 0 : m_vBeats.back().m_nMeasure;
    }

private:
    std::vector<CBeat> m_vBeats;
    std::vector<CBeat> m_vMeasures; // of these, the first ones of measures
    std::int32_t m_nBeatsPerMeasure = 0;
};
