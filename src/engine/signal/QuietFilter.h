// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/signal/Decay.h"
#include "engine/signal/IIRLanes.h"

#include <cstdint>

/// True when a section's states are so small that the next 512 samples may lead into the range of
/// subnormal numbers, where `FilterQuiet` is many times as quick as the other loops.
[[nodiscard]] bool IsQuiet(CThreeStates const& states);

/// Zeros at the beginning, those below zero left out.
[[nodiscard]] std::int32_t CountSilent(float const* samples, std::int32_t count);

/// The bits of `FilterLanePlain`, without ever computing with a subnormal float, which costs
/// processors a hundred cycles and more: such numbers are whole multiples of 2^-149 and computed in
/// double. A state that silence no longer changes gives the same output for as long as it lasts.
/// Right for samples of any size, quick for quiet ones.
/// Shape: the section is stable, so that |a1| <= 2 and |a2| <= 1.
/// Thread: worker.
void FilterQuiet(CIIRSection const& section, CIIRLane const& lane, std::int32_t count);

/// The same where all that comes is silence. `decay`, if any, is told how the states come to rest;
/// it must continue the lane's states.
void FilterSilence(CIIRSection const& section, CIIRLane const& lane, std::int32_t count,
                   CDecay* decay = nullptr);
