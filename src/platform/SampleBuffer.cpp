// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/SampleBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace {

constexpr float kFullScale = 32767.0f;            // Fixed: the sample value that becomes 1.
constexpr std::size_t kFirstCapacity = 1'048'576; // Tuned: 4 MiB, from there on the system maps.
constexpr std::size_t kLargestCount = std::numeric_limits<std::int32_t>::max();

} // namespace

void CFreeMemory::operator()(void* memory) const noexcept {
    std::free(memory);
}

bool CSampleBuffer::Reserve(std::size_t count) {
    // Pages that nobody has written cost nothing, and blocks of this size move by remapping.
    void* const grown = std::realloc(m_pSamples.get(), count * sizeof(float));
    if (grown == nullptr) {
        return false;
    }
    (void)m_pSamples.release();
    m_pSamples.reset(static_cast<float*>(grown));
    m_nCapacity = count;
    return true;
}

bool CSampleBuffer::Append(std::span<std::int16_t const> pcm) {
    auto const held = static_cast<std::size_t>(m_nCount);
    std::size_t const added = std::min(pcm.size(), kLargestCount - held);
    if (held + added > m_nCapacity &&
        !Reserve(std::max({kFirstCapacity, held + added, m_nCapacity + m_nCapacity / 2}))) {
        return false;
    }
    float* const samples = m_pSamples.get() + held;
    for (std::size_t i = 0; i < added; ++i) {
        samples[i] = static_cast<float>(pcm[i]) / kFullScale;
    }
    m_nCount = static_cast<std::int32_t>(held + added);
    return true;
}

bool CSampleBuffer::SetCount(std::int32_t count) {
    if (count <= 0) {
        m_pSamples.reset();
        m_nCount = 0;
        m_nCapacity = 0;
        return true;
    }
    auto const wanted = static_cast<std::size_t>(count);
    if (wanted != m_nCapacity && !Reserve(wanted)) {
        return false;
    }
    if (count > m_nCount) {
        std::fill(m_pSamples.get() + m_nCount, m_pSamples.get() + count, 0.0f);
    }
    m_nCount = count;
    return true;
}

CSamplePtr CSampleBuffer::Release() {
    m_nCount = 0;
    m_nCapacity = 0;
    return std::move(m_pSamples);
}
