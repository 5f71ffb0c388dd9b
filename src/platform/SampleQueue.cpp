// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/SampleQueue.h"

#include <algorithm>

namespace {

constexpr float kFullScale = 32767.0f; // Fixed: the sample value that becomes 1.

} // namespace

void WidenPcm(std::span<std::int16_t const> pcm, float* samples) {
    for (std::size_t i = 0; i < pcm.size(); ++i) {
        samples[i] = static_cast<float>(pcm[i]) / kFullScale;
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
