// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/EngineRate.h"
#include "song/BeatListener.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

/// How far a grid must move to meet most of what sets in. Units: grids in seconds, shifts in steps
/// of the rises (AttackRises).
constexpr double kRiseHopsPerSecond = kEngineRateHz / static_cast<double>(kAttackHopSamples);
constexpr std::int64_t kShiftHops = 56; // Fixed: 41 ms to either side.
constexpr std::size_t kShifts = 2 * kShiftHops + 1;

[[nodiscard]] inline std::int64_t RoundToWhole(double value) {
    return static_cast<std::int64_t>(std::floor(value + 0.5));
}

/// The step that the middle of a moment lies in.
[[nodiscard]] inline std::int64_t RiseHopAt(double seconds) {
    return RoundToWhole(seconds * kRiseHopsPerSecond - 0.5);
}

/// What sets in at each shift of a stretch's half beats.
using CShiftTable = std::vector<std::array<std::int64_t, kShifts>>;
[[nodiscard]] CShiftTable CollectRises(std::span<double const> grid,
                                       std::span<std::uint8_t const> rises);

/// A shift of the whole line, a turn at its ends, in steps, and what it then meets.
struct CLineShift {
    std::int64_t m_nShift = 0;
    std::int64_t m_nTurn = 0;
    std::int64_t m_nMet = -1;
};
[[nodiscard]] CLineShift FindLine(CShiftTable const& table);
void ShiftLine(CLineShift const& line, std::vector<double>& grid);

/// Shifts in steps, one for each stretch, and what they meet.
struct CPathShift {
    std::vector<double> m_vShifts;
    std::int64_t m_nMet = 0;
};
/// The path of shifts that meets most, by dynamic programming.
[[nodiscard]] CPathShift FindPath(CShiftTable const& table);

/// The shifts hold in the middle of their stretches; they run straight between them.
void ShiftAlong(CPathShift const& path, std::vector<double>& grid);
