// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

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

/// How strongly something sets in at each step of `levels` (CBeatCurves::m_vAttack), in steps of a
/// level: by how much it is louder than all of the last 9 ms.
[[nodiscard]] std::vector<std::uint8_t> AttackRises(std::span<std::uint8_t const> levels);

/// Lays `points`, positions in samples at 44100 Hz that ascend, on the rises. Less than two points,
/// and points closer than a twentieth of a second, make no grid.
[[nodiscard]] CFittedGrid FitGrid(std::span<std::int64_t const> points,
                                  std::span<std::uint8_t const> rises);
