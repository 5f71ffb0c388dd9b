// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/SampleQueue.h"

#include <algorithm>

namespace {

constexpr float kFullScale = 32767.0f; // Fixed: the sample value that becomes 1.

} // namespace

void CSampleQueue::Append(std::span<std::int16_t const> pcm) {
    m_vSamples.erase(m_vSamples.begin(),
                     m_vSamples.begin() + static_cast<std::ptrdiff_t>(m_nTaken));
    m_nTaken = 0;
    std::size_t const held = m_vSamples.size();
    m_vSamples.resize(held + pcm.size());
    float* const samples = m_vSamples.data() + held;
    for (std::size_t i = 0; i < pcm.size(); ++i) {
        samples[i] = static_cast<float>(pcm[i]) / kFullScale;
    }
    m_nTotal += static_cast<std::int64_t>(pcm.size());
}

std::size_t CSampleQueue::Take(std::span<float> dest) {
    std::size_t const count = std::min(dest.size(), GetCount());
    std::copy_n(m_vSamples.data() + m_nTaken, count, dest.data());
    m_nTaken += count;
    return count;
}

void CSampleQueue::Drop() {
    m_vSamples.clear();
    m_nTaken = 0;
}

void CSampleQueue::Clear() {
    Drop();
    m_nTotal = 0;
}
