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

constexpr std::size_t kSpecEngLanes = 8; // Fixed: frames side by side at most.

/// Energies of consecutive frames, each in a lane of its own, so that every frame sees the very
/// operations of the plain transform in their order: the bits are the same.
/// Shape: reads frames[0, count * N); `work` has room for `kSpecEngLanes` * N and is aligned to 32
/// bytes; writes energies[0, count). N is a multiple of 4.
/// Returns: how many frames are done. The rest of them, and all where the processor has no lanes,
/// are left to the plain transform.
std::size_t SpecEnergyLanes(CPfSpecEngTables const& tables, float const* frames, std::size_t count,
                            float* work, float* energies);
