// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

constexpr std::size_t kIIRStates = 3; // Fixed: w0, w1, w2 of a section; w0 is the newest again.
constexpr std::int32_t kThreeSections = 3; // Fixed: sections that have loops of their own.

/// One section of the z-plane, by value, so that a loop keeps it in registers.
struct CIIRSection {
    float m_fB0, m_fB1, m_fB2, m_fA1, m_fA2;

    /// Direct form II: takes x and the two past states, gives the output, shifts the states.
    float Run(float x, float& w1, float& w2) const {
        float const w0 = x - (m_fA1 * w1 + m_fA2 * w2);
        float const y = m_fB2 * w2 + m_fB0 * w0 + m_fB1 * w1;
        w2 = w1;
        w1 = w0;
        return y;
    }
};

using CThreeSections = std::array<CIIRSection, kThreeSections>;

/// Runs x[0], x[stride], ... through one section, in place.
/// Shape: `count` samples; state[0, kIIRStates) is read and written.
inline void FilterOne(CIIRSection const& section, float* x, float* state, std::int32_t count,
                      std::int32_t stride) {
    float w1 = state[1];
    float w2 = state[2];
    for (std::int32_t k = 0; k < count; ++k) {
        float& sample = x[static_cast<std::ptrdiff_t>(k) * stride];
        sample = section.Run(sample, w1, w2);
    }
    state[0] = state[1] = w1;
    state[2] = w2;
}

/// Runs x[0, count) through three sections, in place, with the bits of `FilterOne` for one section
/// after the other.
/// Shape: the states of the sections follow each other.
void FilterThree(CThreeSections const& sections, float* x, float* state, std::int32_t count);
