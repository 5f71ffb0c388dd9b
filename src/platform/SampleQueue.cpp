// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/SampleQueue.h"

#include <algorithm>

namespace {

// Derived: 1 / 32767, where 32767 becomes 1, is 2^-15 (1 + 2^-15 + 2^-30 + ...). The first term of
// a sample is exact, the others together are rounded far below its last bit.
constexpr float kSampleStep = 0x1.0p-15f;
constexpr float kRestOfSampleStep = 0x1.0p-15f + 0x1.0p-30f;

} // namespace

void WidenPcm(std::span<std::int16_t const> pcm, float* samples) {
    for (std::size_t i = 0; i < pcm.size(); ++i) {
        // As if divided by 32767, bit for bit, in two thirds of the time.
        auto const sample = static_cast<float>(pcm[i]);
        samples[i] = (sample + sample * kRestOfSampleStep) * kSampleStep;
    }
}

void CSampleQueue::Append(std::span<std::int16_t const> pcm) {
    m_vSamples.erase(m_vSamples.begin(),
                     m_vSamples.begin() + static_cast<std::ptrdiff_t>(m_nTaken));
    m_nTaken = 0;
    m_vSamples.insert(m_vSamples.end(), pcm.begin(), pcm.end());
    m_nTotal += static_cast<std::int64_t>(pcm.size());
}

/// Takes the `count` oldest samples, or all.
std::span<std::int16_t const> CSampleQueue::TakeOldest(std::size_t count) {
    auto const taken =
        std::span<std::int16_t const>(m_vSamples).subspan(m_nTaken, std::min(count, GetCount()));
    m_nTaken += taken.size();
    return taken;
}

std::size_t CSampleQueue::Take(std::span<std::int16_t> dest) {
    auto const taken = TakeOldest(dest.size());
    std::ranges::copy(taken, dest.begin());
    return taken.size();
}

std::size_t CSampleQueue::Take(std::span<float> dest) {
    auto const taken = TakeOldest(dest.size());
    WidenPcm(taken, dest.data());
    return taken.size();
}

void CSampleQueue::Drop() {
    m_vSamples.clear();
    m_nTaken = 0;
}

void CSampleQueue::Clear() {
    Drop();
    m_nTotal = 0;
}
