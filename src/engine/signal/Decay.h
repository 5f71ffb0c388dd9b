// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/signal/IIRLanes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// How three sections came to rest in silence the last time, sample by sample. A sequencer repeats
/// its sounds to the bit, and whatever has the same states before the same silence goes the same
/// way.
/// Thread: one thread at a time.
class CDecay {
public:
    /// The place whose samples follow these states, bit for bit; nothing when they are not in it.
    [[nodiscard]] std::optional<std::size_t> Find(CThreeStates const& states) const;

    /// Lets `count` samples of silence pass as they did from `place` on: outputs and states.
    /// Returns: false, with nothing changed, when fewer are known or the lane's states aren't those
    /// of the place, which belongs to a decay that was forgotten.
    [[nodiscard]] bool Replay(std::size_t place, CIIRLane const& lane, std::int32_t count) const;

    /// Forgets everything; what is known next will follow these states.
    void Start(CThreeStates const& states);

    /// True when it can go on with what follows these states: they are its last, and there is room.
    [[nodiscard]] bool Continues(CThreeStates const& states) const;

    /// Makes room for `count` further samples, to be filled by those who know them.
    void Extend(std::int32_t count);

    /// The outputs of the samples that were added last, and one section's states behind each of
    /// them.
    [[nodiscard]] std::span<float> NewOutputs() { return std::span(m_vOut).last(m_nNew); }
    [[nodiscard]] std::span<float> NewStates(std::size_t section) {
        return std::span(m_vW[section]).last(m_nNew);
    }

private:
    [[nodiscard]] CThreeStates StatesAt(std::size_t place) const;
    [[nodiscard]] bool HasStates(std::size_t place, CThreeStates const& states) const;

    std::vector<float> m_vOut;
    std::array<std::vector<float>, 3> m_vW; // a section's states: w2, w1, and one for each sample
    std::size_t m_nNew = 0;                 // samples added last
};
