// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/BeatTimes.h"

#include <cstddef>
#include <vector>

/// From a beat on, one tempo.
struct CTempoStep {
    std::size_t m_nBeat = 0; // the first beat it holds for, from 0 among the whole beats
    double m_dSeconds = 0.0; // of that beat
    double m_dBpm = 0.0;     // up to the next step's beat
    int m_nPlace = 0;        // of that beat in its measure, from 1
};

/// The whole beats among the half beats.
[[nodiscard]] std::vector<CBeatTime> WholeBeats(CBeatTimes const& beats);

/// The fewest steps that each beat lies within `toleranceSeconds` of: one for a song with one
/// tempo. `leastBpm` is what tempos are whole multiples of, or 0 when they may be any. None for
/// fewer than two beats, and when beats don't ascend.
[[nodiscard]] std::vector<CTempoStep> MakeTempoMap(std::vector<CBeatTime> const& beats,
                                                   double toleranceSeconds, double leastBpm);
