// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

/// Frees samples and the address space that is reserved for them.
struct CFreeSamples {
    void operator()(float* samples) const noexcept;

    std::size_t m_nReservedBytes = 0;
};

/// Mono samples as floats; null when there are none.
using CSamplePtr = std::unique_ptr<float[], CFreeSamples>;

/// Gives the memory of the first `count` samples back to the system, except for less than a large
/// page at the end. They must not be read again.
void GiveBackSamples(CSamplePtr const& samples, std::size_t count) noexcept;

/// Grows a float buffer from 16-bit samples, always in its place, so that it costs four bytes a
/// sample and never a second copy.
/// Thread: one thread at a time.
class CSampleBuffer {
public:
    /// Appends every sample as sample / 32767, one single-precision division each: -32768 comes
    /// out just below -1. What lies past the largest count of 32 signed bits is dropped.
    /// Returns: false when there is no memory; what was there stays.
    bool Append(std::span<std::int16_t const> pcm);

    /// Cuts the buffer to `count` samples, or fills it up with zeros; 0 gives the memory back.
    /// Returns: false when there is no memory; the buffer is then unchanged.
    bool SetCount(std::int32_t count);

    [[nodiscard]] std::int32_t GetCount() const { return m_nCount; }

    /// Hands the samples over and leaves the buffer empty.
    CSamplePtr Release();

private:
    bool Reserve(std::size_t count);

    CSamplePtr m_pSamples;
    std::int32_t m_nCount = 0;
    std::size_t m_nCapacity = 0; // samples that may be written
};
