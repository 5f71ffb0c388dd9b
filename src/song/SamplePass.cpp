// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SamplePass.h"

#include <algorithm>

namespace {

constexpr std::size_t kStepSamples = std::size_t{1} << 20U; // Tuned: 4 MiB, so hardly a call.

} // namespace

CStatus CSamplePass::LoadPcm(std::uint8_t* dest, std::int64_t byteOffset, std::uint32_t byteCount) {
    auto const whole = static_cast<std::int64_t>(sizeof(float)) * m_audio.m_nCount;
    auto const before = static_cast<std::size_t>(std::clamp<std::int64_t>(byteOffset, 0, whole));
    if (before / sizeof(float) >= m_nGivenBack + kStepSamples) {
        m_nGivenBack = before / sizeof(float);
        GiveBackSamples(m_audio.m_pSamples, m_nGivenBack);
    }
    return m_reader.LoadPcm(dest, byteOffset, byteCount);
}
