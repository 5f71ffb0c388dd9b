// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The envelope shapers of CPcmThumbnailBuilder, each in place over one thumbnail, or into a copy.

#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/ThumbnailBuilder.h"

#include <algorithm>
#include <memory>
#include <new>
#include <span>

namespace {

constexpr std::size_t kSmoothingWindow = 9; // Fixed: 52 ms at 256 samples per element.

// Deliberate: the window's leading edge starts one element late, so that element 9 is never added
// (but subtracted on the tenth slide); the tempo fold is tuned on this shape.
constexpr std::size_t kFirstEntering = 10;

constexpr float kHoldBpm = 164.0f; // Fixed: upper edge of the tempo band.
constexpr unsigned kHoldShift = 4; // Fixed: a sixteenth of a measure.

float SumOf(std::span<float const> elements) {
    float sum = 0.0f;
    for (float const value : elements) {
        sum += value;
    }
    return sum;
}

/// Writes the hood of element `peak` onto the elements behind it that lie below it.
void ApplyHood(std::span<float> elements, std::size_t peak, std::uint32_t length) {
    float const p = elements[peak];
    float hood = p;
    for (std::size_t k = 1; peak + k < elements.size() && elements[peak + k] < hood; ++k) {
        elements[peak + k] = hood;
        float const r = static_cast<float>(k) / static_cast<float>(length);
        hood = p - p * (r * r * r * r);
    }
}

} // namespace

/// Writes the moving average of `elements` to as many of `smooth`. Returns: false when cancelled.
bool CPcmThumbnailBuilder::Smooth(std::span<float const> elements, std::span<float> smooth) const {
    std::size_t const count = elements.size();
    std::size_t const window = std::min(kSmoothingWindow, count);
    auto const divisor = static_cast<float>(window);
    float sum = SumOf(elements.first(window));
    std::size_t leaving = 0;
    std::size_t entering = kFirstEntering;
    std::size_t written = 0;
    for (; written < count && !IsCancelled(); ++written) {
        smooth[written] = sum / divisor;
        std::size_t const k = written + 1;
        if (k > window / 2 && k + window / 2 + 1 < count) {
            sum = sum - elements[leaving] + elements[entering];
            ++leaving;
            ++entering;
        }
    }
    return written == count && !IsCancelled();
}

bool CPcmThumbnailBuilder::SmoothThumbnail(CPfPcmThumbnail* thumb) {
    std::span<float> const elements = thumb->Elements();
    std::unique_ptr<float[]> const smooth(new (std::nothrow) float[elements.size()]());
    if (smooth == nullptr) {
        return !IsCancelled();
    }
    if (!Smooth(elements, {smooth.get(), elements.size()})) {
        return false;
    }
    std::copy_n(smooth.get(), elements.size(), elements.begin());
    return true;
}

bool CPcmThumbnailBuilder::BuildSmoothThumbnail(CPfPcmThumbnail const& source,
                                                CPfPcmThumbnail* target) const {
    *target = source;
    return target->GetCount() == source.GetCount() && Smooth(source.Elements(), target->Elements());
}

bool CPcmThumbnailBuilder::PeakHoldThumbnail(CPfPcmThumbnail* thumb) {
    std::uint32_t const length = thumb->GetElePerMeas(kHoldBpm) >> kHoldShift;
    if (length == 0) {
        return false;
    }
    auto const steps = static_cast<float>(length);
    float level = thumb->GetMinValue();
    float decay = 0.0f;
    for (float& element : thumb->Elements()) {
        if (element <= level) {
            element = level;
        } else {
            decay = element / steps;
            level = element;
        }
        level -= decay;
    }
    return !IsCancelled();
}

bool CPcmThumbnailBuilder::ApplyPeakHoods(CPfPcmThumbnail* thumb, std::uint16_t divisor) {
    if (IsCancelled() || divisor == 0) {
        return false;
    }
    std::uint32_t const length = thumb->GetElePerMeas(0.0f) / divisor;
    if (length == 0) {
        return false;
    }
    std::span<float> const elements = thumb->Elements();
    for (std::size_t i = elements.size(); i > 0; --i) {
        ApplyHood(elements, i - 1, length);
        if (IsCancelled()) {
            return false;
        }
    }
    return !IsCancelled();
}

bool CPcmThumbnailBuilder::BuildSlopeThumbnail(CPfPcmThumbnail const* source,
                                               CPfPcmThumbnail* target) {
    for (std::int32_t i = 1; i < source->GetCount(); ++i) {
        target->SetAt(i - 1, source->GetAt(i) - source->GetAt(i - 1));
    }
    return true;
}
