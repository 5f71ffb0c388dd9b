// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Every sample as sample / 32767, with the bits of a single-precision division: -32768 comes out
/// just below -1. Shape: as many in `samples`.
void WidenPcm(std::span<std::int16_t const> pcm, float* samples);

/// Samples between the decoder that makes them and the reader that takes them, oldest first. It
/// holds what was not taken yet, and no more.
/// Thread: one thread at a time.
class CSampleQueue {
public:
    void Append(std::span<std::int16_t const> pcm);

    /// Moves the oldest samples to `dest`, as they are or widened. Returns: how many; fewer than
    /// asked for when that is all.
    std::size_t Take(std::span<std::int16_t> dest);
    std::size_t Take(std::span<float> dest);

    [[nodiscard]] std::size_t GetCount() const { return m_vSamples.size() - m_nTaken; }

    /// Samples appended since the queue was made or cleared.
    [[nodiscard]] std::int64_t GetTotal() const { return m_nTotal; }

    /// Drops what it holds; the total stays.
    void Drop();

    /// As if it were new.
    void Clear();

private:
    std::span<std::int16_t const> TakeOldest(std::size_t count);

    std::vector<std::int16_t> m_vSamples;
    std::size_t m_nTaken = 0; // at the front of m_vSamples
    std::int64_t m_nTotal = 0;
};
