// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Address space for the longest file is reserved at the beginning, and opened step by step. Neither
// is memory: that comes page by page with the first sample written to each.

#include "platform/SampleBuffer.h"

#include <algorithm>
#include <limits>
#include <sys/mman.h>
#include <utility>

namespace {

constexpr float kFullScale = 32767.0f; // Fixed: the sample value that becomes 1.
constexpr std::size_t kLargestCount = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t kLargePageBytes = std::size_t{2} << 20U; // Standard: of x86-64 and aarch64.
constexpr std::size_t kStepBytes = std::size_t{64} << 20U;     // Tuned: six minutes of sound.
constexpr std::size_t kSpaceBytes = (kLargestCount + 1) * sizeof(float); // Derived: 8 GiB.

/// Address space of the largest size that can be had; null when there is none.
CSamplePtr ReserveSpace() {
    for (std::size_t bytes = kSpaceBytes; bytes >= kStepBytes; bytes /= 2) {
        void* const space =
            mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (space == MAP_FAILED) {
            continue;
        }
#if defined(MADV_HUGEPAGE)
        // One fault for 2 MiB in place of 512. Not for more than a song: in a virtual machine whose
        // host takes free large pages away, many of them cost more than they save.
        (void)madvise(space, kStepBytes, MADV_HUGEPAGE);
#endif
        return CSamplePtr(static_cast<float*>(space), {bytes});
    }
    return nullptr;
}

} // namespace

void CFreeSamples::operator()(float* samples) const noexcept {
    (void)munmap(samples, m_nReservedBytes);
}

void GiveBackSamples(CSamplePtr const& samples, std::size_t count) noexcept {
    std::size_t const bytes = count * sizeof(float) / kLargePageBytes * kLargePageBytes;
    if (samples != nullptr && bytes > 0) {
        (void)madvise(samples.get(), bytes, MADV_DONTNEED);
    }
}

/// Makes room for at least `count` samples.
bool CSampleBuffer::Reserve(std::size_t count) {
    CSamplePtr fresh = m_pSamples == nullptr ? ReserveSpace() : nullptr;
    CSamplePtr& space = m_pSamples == nullptr ? fresh : m_pSamples;
    std::size_t const steps = (count * sizeof(float) + kStepBytes - 1) / kStepBytes;
    std::size_t const bytes = steps * kStepBytes;
    if (space == nullptr || bytes > space.get_deleter().m_nReservedBytes ||
        mprotect(space.get(), bytes, PROT_READ | PROT_WRITE) != 0) {
        return false;
    }
    if (fresh != nullptr) {
        m_pSamples = std::move(fresh);
    }
    m_nCapacity = bytes / sizeof(float);
    return true;
}

bool CSampleBuffer::Append(std::span<std::int16_t const> pcm) {
    auto const held = static_cast<std::size_t>(m_nCount);
    std::size_t const added = std::min(pcm.size(), kLargestCount - held);
    if (held + added > m_nCapacity && !Reserve(held + added)) {
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
    if (wanted > m_nCapacity && !Reserve(wanted)) {
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
