// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/signal/IIRLanes.h"

#include <cstdint>
#include <span>

/// All bits that are set in any of the samples: cheap to gather, and it tells how large the largest
/// can be.
[[nodiscard]] std::uint32_t GatherBits(std::span<float const> samples);

/// True when samples and states with these bits lead into the range of subnormal numbers, where
/// `FilterQuiet` is many times as quick as the other loops.
[[nodiscard]] bool IsQuiet(std::uint32_t sampleBits, CThreeStates const& states);

/// The bits of `FilterLanePlain`, without ever computing with a subnormal float, which costs
/// processors a hundred cycles and more: such numbers are whole multiples of 2^-149 and computed in
/// double. A state that silence no longer changes gives the same output for as long as it lasts.
/// Right for samples of any size, quick for quiet ones.
/// Thread: worker.
void FilterQuiet(CIIRSection const& section, CIIRLane const& lane, std::int32_t count);
