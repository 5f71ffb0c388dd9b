// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Status.h"

#include <cstdint>

/// Owned raw block of bytes from the system heap.
/// Thread: one thread at a time.
class CMemBuffer {
public:
    CMemBuffer() = default;
    CMemBuffer(CMemBuffer const&) = delete;
    CMemBuffer& operator=(CMemBuffer const&) = delete;
    virtual ~CMemBuffer() { FreeMem(); }

    /// Drops the block held and takes one of `size` bytes, which are not cleared.
    /// Returns: the block; null, with nothing held, when there is no memory.
    std::uint8_t* AllocMem(std::uint32_t size);

    void FreeMem();

    /// The block and its size; null and 0 when there is none.
    std::uint8_t* GetMem(std::uint32_t* size);

    /// With a null `dest` stores the size held in `*size`. Otherwise copies the block when `*size`
    /// bytes can take it and stores the number copied.
    /// Returns: `kStatusFailure`, nothing changed, when the room is too small.
    CStatus CopyTo(std::uint8_t* dest, std::uint32_t* size) const;

    /// Copies `size` bytes to the start of the block, which grows when it is too small and never
    /// shrinks: bytes past `size` and the size held stay.
    /// Returns: `kStatusFailure` when there is no block to copy to.
    CStatus CopyFrom(std::uint8_t const* source, std::uint32_t size);

private:
    std::uint8_t* m_pMem = nullptr;
    std::uint32_t m_nSize = 0;
};
