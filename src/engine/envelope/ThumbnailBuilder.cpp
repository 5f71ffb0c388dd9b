// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Sizes and peak envelopes. The envelope shapers are in ThumbnailShapes.cpp, the pass over the
// audio is in ../SpectralPass.cpp.

#include "engine/envelope/ThumbnailBuilder.h"

#include "base/EngineRate.h"
#include "base/Rounding.h"
#include "engine/PcmReader.h"
#include "engine/envelope/PcmThumbnail.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

namespace {

// The compilers' own vectors, on every processor: a call into a kernel would cost more than it
// saves.
using CFour = float __attribute__((vector_size(16)));
using CFourBits = std::int32_t __attribute__((vector_size(16)));
constexpr std::int32_t kMagnitude = 0x7FFFFFFF; // Standard: IEEE 754, all but the sign.
constexpr std::size_t kFours = 4; // Derived: each takes four cycles, one begins in each.

/// The larger of each two; `b` where there is no order.
CFour LargerOf(CFour a, CFour b) {
    return a > b ? a : b;
}

CFour MagnitudesOf(float const* samples) {
    CFour four;
    std::memcpy(&four, samples, sizeof four);
    return reinterpret_cast<CFour>(reinterpret_cast<CFourBits>(four) & kMagnitude);
}

/// a * b / c with a product that wraps at 64 bits.
std::int64_t ScaleWrapped(std::int64_t a, std::uint32_t b, std::uint32_t c) {
    auto const product = static_cast<std::uint64_t>(a) * b;
    return static_cast<std::int64_t>(product) / std::int64_t{c};
}

} // namespace

CPcmThumbnailBuilder::CPcmThumbnailBuilder(CCancelFlag const* cancel, double sampleRate)
    : m_pCancel(cancel), m_dSampleRate(sampleRate) {
}

bool CPcmThumbnailBuilder::InitThumbnail(IPcmReader* reader, std::uint16_t samplesPerElement,
                                         CPfPcmThumbnail* thumb) {
    std::int64_t sampleCount = 0;
    std::uint32_t rate = 1;
    (void)reader->GetSampleCount(&sampleCount);
    (void)reader->GetSampleRate(&rate);
    if (rate == 0 || samplesPerElement == 0) {
        return false;
    }
    (void)thumb->Initialize(ScaleWrapped(sampleCount, kEngineRateHz, rate), kEngineRateHz,
                            samplesPerElement);
    return true;
}

bool CPcmThumbnailBuilder::BuildPcmThumbnailRange(float const* pcm, std::int32_t n,
                                                  std::int64_t startSample,
                                                  CPfPcmThumbnail* thumb) {
    std::int32_t const group = thumb->GetSamplesPerElement();
    for (std::int32_t i = 0; n - i >= group; i += group) {
        std::int64_t const index = (startSample + i) / group;
        if (index >= 0 && index <= std::numeric_limits<std::int32_t>::max()) {
            thumb->SetAt(static_cast<std::int32_t>(index),
                         GetMaxValue(pcm + i, static_cast<std::uint32_t>(group)));
        }
    }
    return true;
}

float CPcmThumbnailBuilder::GetMaxValue(float const* samples, std::uint32_t n) {
    // Sixteen maxima side by side, so that none waits for the one before it. No comparison with NaN
    // is true, so it is passed over, and the largest of all doesn't depend on the order.
    std::array<CFour, kFours> largest{};
    std::size_t i = 0;
    for (; n - i >= 4 * kFours; i += 4 * kFours) {
        for (std::size_t k = 0; k < kFours; ++k) {
            largest[k] = LargerOf(MagnitudesOf(samples + i + 4 * k), largest[k]);
        }
    }
    CFour const four = LargerOf(LargerOf(largest[0], largest[1]), LargerOf(largest[2], largest[3]));
    float result = std::max({four[0], four[1], four[2], four[3]});
    for (; i < n; ++i) {
        result = std::max(result, std::abs(samples[i]));
    }
    return result;
}

bool CPcmThumbnailBuilder::IsCancelled() const {
    return m_pCancel != nullptr && m_pCancel->IsSet();
}

std::uint32_t CPcmThumbnailBuilder::WorkingRate() const {
    return TruncateTo<std::uint32_t>(m_dSampleRate);
}
