// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/BeatListener.h"

#include <cstdint>
#include <vector>

/// What the beats of a song are found from.
/// Units: positions in samples at 44100 Hz.
struct CBeatSource {
    CBeatCurves m_curves;
    std::vector<std::int64_t> m_vPoints; // the engine's grid of half beats, ascending
    std::vector<std::int64_t> m_vMarks;  // the measure marks that the engine set
    float m_fBpm = 0.0f;                 // the engine's tempo; 0 for none
    double m_dSeconds = 0.0;             // how long the song lasts
};

/// One half beat of a song.
struct CBeatTime {
    double m_dSeconds = 0.0;   // from the first sample
    std::uint8_t m_nPlace = 0; // among the beats of its measure: 1 for a downbeat, 0 between beats
    bool m_bMarked = false;    // the engine set a measure mark here

    bool operator==(CBeatTime const&) const = default;
};

/// A second opinion about the engine's grid: where its beats lie to the millisecond, which of its
/// points are beats, and which of these downbeats. A plain value.
struct CBeatTimes {
    std::vector<CBeatTime> m_vHalfBeats; // from the start to the end; none without a grid
    std::uint8_t m_nBeatsPerMeasure = 0; // 3 or 4; 0 without a grid
    bool m_bSteady = false;              // one tempo throughout: all beats are equally far apart
    float m_fBeatConfidence = 0.0f; // 0 to 1: that the beats are, rather than the points between
    float m_fDownbeatConfidence = 0.0f; // 0 to 1: that measures begin where they do

    bool operator==(CBeatTimes const&) const = default;

    /// Seconds of the beats, and of those that begin a measure.
    [[nodiscard]] std::vector<double> Beats() const;
    [[nodiscard]] std::vector<double> Downbeats() const;
};

/// The same source gives the same times, bit for bit. The engine's points and marks stay as they
/// are.
[[nodiscard]] CBeatTimes FindBeatTimes(CBeatSource const& source);
