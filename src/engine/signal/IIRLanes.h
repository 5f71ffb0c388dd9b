// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/signal/IIRSection.h"

#include <array>
#include <bit>
#include <cstdint>
#include <span>

/// What three like sections remember: w1 and w2 of the first, of the second, of the third.
using CThreeStates = std::array<float, 6>;

/// True when they agree in every bit.
[[nodiscard]] constexpr bool AreSame(CThreeStates const& a, CThreeStates const& b) {
    using Bits = std::array<std::uint32_t, std::tuple_size_v<CThreeStates>>;
    return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b);
}

constexpr std::int32_t kMostLanes = 8;    // Fixed: the most that a register takes.
constexpr std::int32_t kLaneMultiple = 4; // Fixed: lanes run over multiples of four samples.

/// A stretch that waits to be filtered, and the state it is entered with, which moves on.
struct CIIRLane {
    float const* m_pIn;
    float* m_pOut;
    CThreeStates* m_pState;
};

/// Lanes that this machine runs side by side at the price of about one: 8, 4, or 1 without vectors.
[[nodiscard]] std::int32_t GetLaneCount();

/// Sends in[0, count) of every lane through three sections alike, side by side, into out[0, count).
/// Each lane sees the operations of `FilterLanePlain` in their order: the bits are the same.
/// Shape: at most `kMostLanes` lanes; `count` is a multiple of `kLaneMultiple`, or anything for one
/// lane alone; what a lane writes must not overlap what another reads or writes.
/// Thread: worker.
void FilterLanes(CIIRSection const& section, std::span<CIIRLane const> lanes, std::int32_t count);

/// One lane, sample by sample, for any count.
void FilterLanePlain(CIIRSection const& section, CIIRLane const& lane, std::int32_t count);
