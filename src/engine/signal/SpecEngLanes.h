// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

/// Tables of one frame length, as `CPfSpecEngBuilder` holds them.
struct CPfSpecEngTables {
    std::size_t m_nFrameLength;         // N, a power of two
    std::int32_t const* m_pBitReversal; // N/2 float indices
    float const* m_pTwiddles;           // N/2 pairs
    float const* m_pWindow;             // N
};

constexpr std::size_t kSpecEngLanes = 8; // Fixed: frames side by side, one to each float of AVX.

/// Energies of `kSpecEngLanes` consecutive frames, each in a lane of its own, so that every frame
/// sees the very operations of the plain transform in their order: the bits are the same.
/// Shape: `frames` holds 8 * N samples, `work` room for as many and is aligned to 32 bytes,
/// `energies` takes 8. N is a multiple of 8.
/// Needs AVX2: ask `UseAvx2` first. Not built for other processors than x86-64.
void SpecEnergyLanes(CPfSpecEngTables const& tables, float const* frames, float* work,
                     float* energies);
