// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// Intro, outro and fade points, each in one walk over the thumbnail. The sprockets are in
// MixSprockets.cpp.

#include "engine/mix/MixParamGen.h"

#include "engine/envelope/PcmThumbnail.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

// Fixed, all five: parts of the loudest running measure average, and the fall of the fade level
// for each unit above the threshold.
constexpr float kIntroLevel = 0.1f;
constexpr float kOutroLevel = 0.5f;
constexpr float kQuietLevel = 0.2f;
constexpr float kFadeLevel = 0.2f;
constexpr float kFadeScale = 131.072f;

std::int64_t ElementPosition(CPfPcmThumbnail const& thumbnail, std::int64_t element) {
    return element * thumbnail.GetSamplesPerElement();
}

/// Last element, seen from the end, from which a measure of elements is loud; -1 when there is
/// none.
std::int32_t FindLoudMeasure(CPfPcmThumbnail const& thumbnail, std::int32_t perMeasure) {
    float const level = kOutroLevel * thumbnail.GetMaxRunningMeasAvg();
    float sum = 0.0f;
    for (std::int32_t i = thumbnail.GetCount() - 1; i >= 0; --i) {
        sum += thumbnail.GetAt(i);
        if (i < thumbnail.GetCount() - perMeasure) {
            sum -= thumbnail.GetAt(i + perMeasure);
        }
        if (sum / static_cast<float>(perMeasure) > level) {
            return i;
        }
    }
    return -1;
}

/// Quietest of the elements first..first + count - 1, or the first one below a fifth of the
/// loudest running average.
std::int32_t FindQuietElement(CPfPcmThumbnail const& thumbnail, std::int32_t first,
                              std::int32_t count) {
    float const enough = kQuietLevel * thumbnail.GetMaxRunningMeasAvg();
    float quietest = thumbnail.GetMaxValue();
    std::int32_t place = first;
    std::int32_t const end = first + std::min(count, thumbnail.GetCount() - first);
    for (std::int32_t u = first; u < end; ++u) {
        float const value = thumbnail.GetAt(u);
        if (value < quietest) {
            place = u;
            quietest = value;
            if (value < enough) {
                break;
            }
        }
    }
    return place;
}

} // namespace

std::int64_t CPfMixParamGen::FindIntroEnd(CPfPcmThumbnail const* thumbnail) {
    float const level = kIntroLevel * thumbnail->GetMaxRunningMeasAvg();
    float value = 0.0f;
    for (std::int32_t i = 0; thumbnail->EnumElements(i, &value); ++i) {
        if (value > level) {
            return ElementPosition(*thumbnail, i);
        }
    }
    return 0;
}

std::int64_t CPfMixParamGen::FindOutroStart(CPfPcmThumbnail const* thumbnail) {
    std::uint32_t const perMeasure = thumbnail->GetElePerMeas(0.0f);
    if (perMeasure == 0) {
        return 0;
    }
    if (perMeasure < static_cast<std::uint32_t>(thumbnail->GetCount())) {
        auto const elements = static_cast<std::int32_t>(perMeasure);
        std::int32_t const loud = FindLoudMeasure(*thumbnail, elements);
        if (loud > 0) {
            return ElementPosition(*thumbnail, FindQuietElement(*thumbnail, loud, elements));
        }
    }
    return std::max<std::int64_t>(thumbnail->GetSampleCount() - 1, 0);
}

bool CPfMixParamGen::BuildIntroFadePoints(std::uint64_t* out, std::uint16_t count,
                                          std::int32_t levelStep, std::int32_t fallLimit,
                                          CPfPcmThumbnail const* thumbnail, std::int64_t start) {
    std::uint16_t const perElement = thumbnail->GetSamplesPerElement();
    std::uint32_t const perSecond = perElement == 0 ? 0 : thumbnail->GetSampleRate() / perElement;
    if (perSecond == 0 || count == 0) {
        return perSecond != 0;
    }
    float const threshold = kFadeLevel * thumbnail->GetMaxRunningMeasAvg();
    float const cap = std::abs(static_cast<float>(fallLimit)) / static_cast<float>(perSecond);
    auto const position = [thumbnail](std::int64_t element) {
        return static_cast<std::uint64_t>(ElementPosition(*thumbnail, element));
    };
    std::int64_t const first = start / perElement;
    out[0] = position(first);
    std::int32_t k = 1;
    float level = 0.0f;
    for (std::int64_t i = std::max<std::int64_t>(first, 0);
         first >= 0 && i < thumbnail->GetCount() && k < count; ++i) {
        float const value = thumbnail->GetAt(static_cast<std::int32_t>(i));
        if (value > threshold) {
            level -= std::min((value - threshold) * kFadeScale, cap);
        }
        if (level < static_cast<float>(std::int64_t{k} * levelStep)) {
            out[k] = position(i);
            ++k;
        }
    }
    std::fill(out + k, out + count, position(thumbnail->GetCount()));
    return true;
}
