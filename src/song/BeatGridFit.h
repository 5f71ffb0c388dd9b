// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/BeatListener.h"

#include <cstdint>
#include <span>
#include <vector>

/// The engine's grid of half beats, laid on the attacks of the sound: as a whole, or, where the
/// tempo wanders, stretch by stretch; a single beat never moves on its own.
/// Units: seconds.
struct CFittedGrid {
    std::vector<double> m_vSeconds; // of each half beat, ascending; none without a grid
    double m_dStepSeconds = 0.0;    // mean distance
    bool m_bSteady = false;         // all on one line: the tempo is one and the same throughout
};

/// Lays `points`, positions in samples at 44100 Hz that ascend, on the rises (AttackRises). Where
/// an even grid of about the engine's tempo meets more than the engine's, or lies elsewhere and the
/// `bands` rise more on it, or where there are less than two points, the grid is that even one;
/// `bpm` is the tempo in beats a minute, or 0. Half beats closer than a twentieth of a second make
/// no grid.
[[nodiscard]] CFittedGrid FitGrid(std::span<std::int64_t const> points, double bpm,
                                  std::span<std::uint8_t const> rises, CBandRows const& bands);
