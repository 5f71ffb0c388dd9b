// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// Both detectors are one scan from the end to the start (Scan) with a test of their own; the
// searches (SearchThreshold) run a detector with ever lower thresholds.

#include "engine/tempo/ImpactFinder.h"

#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/Tempo.h"

#include <algorithm>
#include <span>

namespace {

constexpr std::uint32_t kHoldElements = 4;    // Fixed: elements passed over after a detection.
constexpr float kFirstSlope = 2.44140625f;    // Fixed: first threshold of the slope search.
constexpr float kFirstRatio = 30.0f;          // Fixed: first threshold of the ratio search.
constexpr float kThresholdStep = 1.2f;        // Fixed: each try divides the threshold by it.
constexpr int kSlopeTries = 62;               // Fixed: scans of one slope search at most.
constexpr int kRatioTries = 19;               // Fixed: scans of one ratio search at most.
constexpr std::uint32_t kSegmentSeconds = 10; // Fixed: length of a segment.
constexpr std::uint32_t kRangeStartHold = 2;  // Fixed: elements a range leaves untested.

/// Index of the first of the largest elements in [first, end); `first` when that is empty.
std::int32_t FirstMaximum(std::span<float const> elements, std::int32_t first, std::int32_t end) {
    std::int32_t best = first;
    for (std::int32_t i = first + 1; i < end; ++i) {
        if (elements[static_cast<std::size_t>(best)] < elements[static_cast<std::size_t>(i)]) {
            best = i;
        }
    }
    return best;
}

/// Scans elements high down to low. `test(i, peak)` adds a point and says whether it did; the next
/// `hold` elements are then passed over. `resting` elements are passed over at the beginning.
template <typename Test>
std::int32_t Scan(std::span<float const> elements, std::int32_t low, std::int32_t high,
                  std::uint32_t hold, std::uint32_t resting, Test test) {
    auto const last = static_cast<std::int64_t>(elements.size()) - 1;
    std::int32_t peak = high;
    std::int32_t found = 0;
    for (std::int32_t i = high; i >= std::max(low, 0) && i <= last; --i) {
        if (resting > 0) {
            peak = i;
            --resting;
            continue;
        }
        if (elements[static_cast<std::size_t>(peak)] < elements[static_cast<std::size_t>(i)]) {
            peak = i;
        }
        auto const bound =
            static_cast<std::int32_t>(std::min<std::int64_t>(std::int64_t{i} + hold, last));
        if (peak > bound) {
            // Deliberate: the bound itself is left out, so a remembered peak that falls out of
            // sight gives way to one at most hold - 1 elements ahead.
            peak = FirstMaximum(elements, i, bound);
        }
        if (test(i, peak)) {
            ++found;
            peak = i;
            resting = hold;
        }
    }
    return found;
}

std::int32_t ScanSlopes(CPfPcmThumbnail const& thumbnail, float threshold, std::uint32_t hold,
                        std::uint32_t resting, std::int32_t low, std::int32_t high,
                        CPfImpactPoints* points) {
    auto const elements = thumbnail.Elements();
    return Scan(elements, low, high, hold, resting, [&](std::int32_t i, std::int32_t peak) {
        if (peak == i) {
            return false;
        }
        float const rise =
            elements[static_cast<std::size_t>(peak)] - elements[static_cast<std::size_t>(i)];
        if (!(rise / static_cast<float>(peak - i) > threshold)) {
            return false;
        }
        points->Add(std::int64_t{i} * thumbnail.GetSamplesPerElement()); // the foot of the rise
        return true;
    });
}

/// Runs `detect(threshold)` on emptied points until it finds `target` or the tries run out.
/// A target of 0 runs it not even once and leaves the points as they are.
template <typename Detect>
std::int32_t SearchThreshold(std::uint32_t target, float threshold, int tries,
                             CCancelFlag const* cancel, CPfImpactPoints* points, Detect detect) {
    std::int32_t found = 0;
    while (static_cast<std::uint32_t>(found) < target && tries-- > 0) {
        if (cancel != nullptr && cancel->IsSet()) {
            break;
        }
        points->RemoveAll();
        found = detect(threshold);
        threshold /= kThresholdStep;
    }
    return found;
}

std::uint32_t TargetCount(std::int64_t samples, std::uint32_t samplesPerMeasure,
                          std::uint16_t pointsPerMeasure) {
    return static_cast<std::uint32_t>(samples / samplesPerMeasure) * pointsPerMeasure;
}

using DetectProc = std::int32_t (*)(CPfPcmThumbnail const* thumbnail, float threshold,
                                    std::uint32_t hold, CPfImpactPoints* points);

/// The search over a whole thumbnail with one threshold; the points of its last try stand, sorted.
std::int32_t SearchWhole(CPfPcmThumbnail const* thumbnail, std::uint16_t pointsPerMeasure,
                         float threshold, int tries, CCancelFlag const* cancel,
                         CPfImpactPoints* points, DetectProc detect) {
    std::uint32_t const samplesPerMeasure = thumbnail->SamPerMeas(kSlowestTempoBpm);
    if (samplesPerMeasure == 0) {
        return 0;
    }
    std::int32_t const found = SearchThreshold(
        TargetCount(thumbnail->GetSampleCount(), samplesPerMeasure, pointsPerMeasure), threshold,
        tries, cancel, points,
        [&](float lowered) { return detect(thumbnail, lowered, kHoldElements, points); });
    points->Sort();
    return found;
}

} // namespace

std::int32_t CPfImpactFinder::FindImpactPoints(CPfPcmThumbnail const* thumbnail, float threshold,
                                               std::uint32_t hold, CPfImpactPoints* points) {
    return ScanSlopes(*thumbnail, threshold, hold, 0, 0, thumbnail->GetCount() - 1, points);
}

// Deliberate: unlike the scan of the whole thumbnail, a range starts as if after a detection, so
// its first two elements are never tested.
std::int32_t CPfImpactFinder::FindImpactPointsRange(CPfPcmThumbnail const* thumbnail,
                                                    float threshold, std::uint32_t hold,
                                                    std::int32_t low, std::int32_t high,
                                                    CPfImpactPoints* points) {
    return ScanSlopes(*thumbnail, threshold, hold, kRangeStartHold, low, high, points);
}

std::int32_t CPfImpactFinder::FindImpactPointsClassic(CPfPcmThumbnail const* thumbnail, float ratio,
                                                      std::uint32_t hold, CPfImpactPoints* points) {
    auto const elements = thumbnail->Elements();
    auto const isImpact = [&](std::int32_t i, std::int32_t peak) {
        if (!(elements[static_cast<std::size_t>(peak)] >
              ratio * elements[static_cast<std::size_t>(i)])) {
            return false;
        }
        points->Add(std::int64_t{peak} * thumbnail->GetSamplesPerElement());
        return true;
    };
    return Scan(elements, 0, thumbnail->GetCount() - 1, hold, 0, isImpact);
}

std::int32_t CPfImpactFinder::BuildImpactPoints(CPfPcmThumbnail const* thumbnail,
                                                std::uint16_t pointsPerMeasure,
                                                CPfImpactPoints* points) const {
    return SearchWhole(thumbnail, pointsPerMeasure, kFirstSlope, kSlopeTries, m_pCancel, points,
                       FindImpactPoints);
}

std::int32_t CPfImpactFinder::BuildImpactPointsClassic(CPfPcmThumbnail const* thumbnail,
                                                       std::uint16_t pointsPerMeasure,
                                                       CPfImpactPoints* points) const {
    return SearchWhole(thumbnail, pointsPerMeasure, kFirstRatio, kRatioTries, m_pCancel, points,
                       FindImpactPointsClassic);
}

std::int32_t CPfImpactFinder::BuildImpactPointsRange(CPfPcmThumbnail const* thumbnail,
                                                     std::uint16_t pointsPerMeasure,
                                                     CPfImpactPoints* points) const {
    std::uint32_t const samplesPerMeasure = thumbnail->SamPerMeas(kSlowestTempoBpm);
    if (samplesPerMeasure == 0) {
        return 0;
    }
    points->RemoveAll();
    std::int64_t const count = thumbnail->GetCount();
    std::int64_t const length = std::max<std::int64_t>(
        thumbnail->GetSampleRate() * kSegmentSeconds / thumbnail->GetSamplesPerElement(), 1);
    for (std::int64_t start = 0; start < count; start += length) {
        std::int64_t const end = std::min(start + length, count - 1);
        CPfImpactPoints segment(thumbnail->GetSampleRate(), thumbnail->GetSampleCount());
        SearchThreshold(TargetCount((end - start) * thumbnail->GetSamplesPerElement(),
                                    samplesPerMeasure, pointsPerMeasure),
                        kFirstSlope, kSlopeTries, m_pCancel, &segment, [&](float threshold) {
                            return FindImpactPointsRange(thumbnail, threshold, kHoldElements,
                                                         static_cast<std::int32_t>(start),
                                                         static_cast<std::int32_t>(end), &segment);
                        });
        points->Append(segment);
    }
    points->SortAndFilterDupes();
    return points->GetUpperBound() + 1;
}
