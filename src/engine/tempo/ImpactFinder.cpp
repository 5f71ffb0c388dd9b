// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// Both detectors are one scan from the end to the start (CImpactScan) with a test of their own; the
// searches (SearchThreshold) run a detector with ever lower thresholds, those over a whole
// thumbnail with CImpactScans, which leaves out what a threshold can't find.

#include "engine/tempo/ImpactFinder.h"

#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/Tempo.h"
#include "engine/tempo/ImpactScan.h"

#include <algorithm>
#include <limits>
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
constexpr float kLeastDivisor = 0x1.0p-100f;  // Fixed: products with smaller ones may be subnormal.
constexpr float kAboveRounding = 1.0f + 0x1.0p-20f; // Derived: well above 1 + 2^-23, twice.

/// Scans elements high down to low; `resting` elements are passed over at the beginning.
template <typename Test>
std::int32_t ScanOnce(Test const& test, std::span<float const> elements, float threshold,
                      CImpactScan scan, std::int32_t low, std::int32_t high,
                      CPfImpactPoints* points) {
    auto const last = static_cast<std::int64_t>(elements.size()) - 1;
    std::int32_t found = 0;
    for (std::int32_t i = high; i >= std::max(low, 0) && i <= last; --i) {
        if (scan.MoveTo(i) && test.Fires(i, scan.GetPeak(), threshold)) {
            points->Add(test.Position(i, scan.GetPeak()));
            ++found;
            scan.RestAt(i);
        }
    }
    return found;
}

/// What both tests look at.
struct CThumbnailTest {
    std::span<float const> m_elements;
    std::int64_t m_nPerElement;

    explicit CThumbnailTest(CPfPcmThumbnail const& thumbnail)
        : m_elements(thumbnail.Elements()), m_nPerElement(thumbnail.GetSamplesPerElement()) {}
};

/// A rise towards the peak that is steeper than the threshold, per element; found at its foot.
struct CSlopeTest : CThumbnailTest {
    using CThumbnailTest::CThumbnailTest;

    [[nodiscard]] float Most(std::int32_t i, std::int32_t peak) const {
        if (peak == i) {
            return -std::numeric_limits<float>::infinity();
        }
        float const rise =
            m_elements[static_cast<std::size_t>(peak)] - m_elements[static_cast<std::size_t>(i)];
        return rise / static_cast<float>(peak - i);
    }
    [[nodiscard]] bool Fires(std::int32_t i, std::int32_t peak, float threshold) const {
        return Most(i, peak) > threshold;
    }
    [[nodiscard]] std::int64_t Position(std::int32_t i, std::int32_t /*peak*/) const {
        return i * m_nPerElement;
    }
};

/// A peak above the threshold times the element; found at the peak.
struct CRatioTest : CThumbnailTest {
    using CThumbnailTest::CThumbnailTest;

    /// Of thresholds from 1 on. Both the quotient here and the product there are rounded by less
    /// than 2^-23 of themselves.
    [[nodiscard]] float Most(std::int32_t i, std::int32_t peak) const {
        float const high = m_elements[static_cast<std::size_t>(peak)];
        float const low = m_elements[static_cast<std::size_t>(i)];
        if (low >= kLeastDivisor) {
            return high / low * kAboveRounding;
        }
        constexpr float kAny = std::numeric_limits<float>::infinity();
        return high > 0.0f || low < 0.0f ? kAny : -kAny;
    }
    [[nodiscard]] bool Fires(std::int32_t i, std::int32_t peak, float threshold) const {
        return m_elements[static_cast<std::size_t>(peak)] >
               threshold * m_elements[static_cast<std::size_t>(i)];
    }
    [[nodiscard]] std::int64_t Position(std::int32_t /*i*/, std::int32_t peak) const {
        return peak * m_nPerElement;
    }
};

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

/// The search over a whole thumbnail with one threshold; the points of its last try stand, sorted.
template <typename Test>
std::int32_t SearchWhole(CPfPcmThumbnail const& thumbnail, std::uint16_t pointsPerMeasure,
                         float threshold, int tries, CCancelFlag const* cancel,
                         CPfImpactPoints* points) {
    std::uint32_t const samplesPerMeasure = thumbnail.SamPerMeas(kSlowestTempoBpm);
    if (samplesPerMeasure == 0) {
        return 0;
    }
    CImpactScans<Test> const scans(Test(thumbnail), thumbnail.Elements(), kHoldElements);
    std::int32_t const found = SearchThreshold(
        TargetCount(thumbnail.GetSampleCount(), samplesPerMeasure, pointsPerMeasure), threshold,
        tries, cancel, points, [&](float lowered) { return scans.Find(lowered, points); });
    points->Sort();
    return found;
}

} // namespace

std::int32_t CPfImpactFinder::FindImpactPoints(CPfPcmThumbnail const* thumbnail, float threshold,
                                               std::uint32_t hold, CPfImpactPoints* points) {
    auto const elements = thumbnail->Elements();
    std::int32_t const high = thumbnail->GetCount() - 1;
    return ScanOnce(CSlopeTest(*thumbnail), elements, threshold, {elements, hold, high}, 0, high,
                    points);
}

// Deliberate: unlike the scan of the whole thumbnail, a range starts as if after a detection, so
// its first two elements are never tested.
std::int32_t CPfImpactFinder::FindImpactPointsRange(CPfPcmThumbnail const* thumbnail,
                                                    float threshold, std::uint32_t hold,
                                                    std::int32_t low, std::int32_t high,
                                                    CPfImpactPoints* points) {
    auto const elements = thumbnail->Elements();
    return ScanOnce(CSlopeTest(*thumbnail), elements, threshold,
                    {elements, hold, high, kRangeStartHold}, low, high, points);
}

std::int32_t CPfImpactFinder::FindImpactPointsClassic(CPfPcmThumbnail const* thumbnail, float ratio,
                                                      std::uint32_t hold, CPfImpactPoints* points) {
    auto const elements = thumbnail->Elements();
    std::int32_t const high = thumbnail->GetCount() - 1;
    return ScanOnce(CRatioTest(*thumbnail), elements, ratio, {elements, hold, high}, 0, high,
                    points);
}

std::int32_t CPfImpactFinder::BuildImpactPoints(CPfPcmThumbnail const* thumbnail,
                                                std::uint16_t pointsPerMeasure,
                                                CPfImpactPoints* points) const {
    return SearchWhole<CSlopeTest>(*thumbnail, pointsPerMeasure, kFirstSlope, kSlopeTries,
                                   m_pCancel, points);
}

std::int32_t CPfImpactFinder::BuildImpactPointsClassic(CPfPcmThumbnail const* thumbnail,
                                                       std::uint16_t pointsPerMeasure,
                                                       CPfImpactPoints* points) const {
    return SearchWhole<CRatioTest>(*thumbnail, pointsPerMeasure, kFirstRatio, kRatioTries,
                                   m_pCancel, points);
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
