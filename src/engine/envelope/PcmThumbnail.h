// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

class CPfImpactPoints;

/// The engine's envelope: an owned array of floats, each of which stands for the same number of
/// consecutive samples, with the rate and the length of the audio that it describes. Element i
/// covers the samples from i times samples per element on; there is no start offset.
/// Reads outside the array give 0, writes outside are dropped.
/// Thread: one thread at a time.
class CPfPcmThumbnail {
public:
    CPfPcmThumbnail() = default;
    CPfPcmThumbnail(CPfPcmThumbnail const& other);
    CPfPcmThumbnail& operator=(CPfPcmThumbnail const& other);
    CPfPcmThumbnail(CPfPcmThumbnail&& other) noexcept;
    CPfPcmThumbnail& operator=(CPfPcmThumbnail&& other) noexcept;
    virtual ~CPfPcmThumbnail() = default;

    /// Drops the elements and makes sampleCount / samplesPerElement (truncated) new ones, all 0.
    /// A zero rate or zero samples per element keeps that stored value; the measure fields stay.
    /// Returns: false, and no elements, when they can't be had: no memory, a negative or
    /// unaddressable count, or zero samples per element.
    bool Initialize(std::int64_t sampleCount, std::uint32_t sampleRate,
                    std::uint16_t samplesPerElement);

    /// True when the last `Initialize`, or the last copy, failed for want of memory alone.
    [[nodiscard]] bool LacksMemory() const { return m_bLacksMemory; }

    /// Element i, or 0 outside [0, count).
    [[nodiscard]] float GetAt(std::int32_t i) const {
        return IsInside(i) ? m_pElements[static_cast<std::size_t>(i)] : 0.0f;
    }

    void SetAt(std::int32_t i, float value) {
        if (IsInside(i)) {
            m_pElements[static_cast<std::size_t>(i)] = value;
        }
    }

    /// True and the element for 0 <= i < count; else false, `out` untouched.
    bool EnumElements(std::int32_t i, float* out) const {
        if (!IsInside(i)) {
            return false;
        }
        *out = m_pElements[static_cast<std::size_t>(i)];
        return true;
    }

    /// Hands out the array, which stays the thumbnail's. False when there is none.
    bool GetData(float** data, std::uint32_t* count);

    /// The elements as a range, empty when there are none.
    [[nodiscard]] std::span<float> Elements() { return {m_pElements.get(), Size()}; }
    [[nodiscard]] std::span<float const> Elements() const { return {m_pElements.get(), Size()}; }

    /// The largest and the smallest element; 0 without elements.
    [[nodiscard]] float GetMaxValue() const;
    [[nodiscard]] float GetMinValue() const;

    /// The largest of elements first..last, both included. A `last` past the end means the last
    /// element, a negative `first` element 0. Element `first` alone when last < first.
    /// Returns: 0 when first >= count.
    [[nodiscard]] float GetMaxRangeValue(std::int32_t first, std::int32_t last) const;

    /// Sum of the elements from point a to point b, both included, over their distance in
    /// elements, which is one less than their number. Infinity or NaN when both points fall on the
    /// same element. A missing point a means element 0, a missing b the last element.
    [[nodiscard]] float GetAvgValueBetwImpPts(CPfImpactPoints const* points, std::int32_t a,
                                              std::int32_t b) const;

    /// Samples per measure at this thumbnail's rate.
    [[nodiscard]] std::uint32_t SamPerMeas(float bpm) const;

    /// Whole elements per measure; for a `bpm` of exactly 0 what the last `ApplyBpm` stored.
    [[nodiscard]] std::uint32_t GetElePerMeas(float bpm) const;

    /// Loudest average over a running window of one measure; once the window slides it holds
    /// element 0 besides. The divisor is always the measure, also while the window fills.
    /// Returns: at least 0; 0 when a measure has no whole element.
    [[nodiscard]] float CalcMaxRunningMeasAvg(float bpm) const;

    /// Stores the loudest running average and the elements per measure at `bpm`.
    void ApplyBpm(float bpm);

    [[nodiscard]] std::int32_t GetCount() const { return m_nCount; }
    [[nodiscard]] std::int64_t GetSampleCount() const { return m_nSampleCount; }
    [[nodiscard]] std::uint32_t GetSampleRate() const { return m_nSampleRate; }
    [[nodiscard]] std::uint16_t GetSamplesPerElement() const { return m_nSamplesPerElement; }
    [[nodiscard]] float GetMaxRunningMeasAvg() const { return m_fMaxRunningMeasAvg; }

private:
    struct CFreeElements {
        void operator()(float* elements) const noexcept { std::free(elements); }
    };

    [[nodiscard]] bool IsInside(std::int32_t i) const { return i >= 0 && i < m_nCount; }
    [[nodiscard]] std::size_t Size() const { return static_cast<std::size_t>(m_nCount); }

    std::unique_ptr<float[], CFreeElements> m_pElements;
    std::int32_t m_nCount = 0;
    bool m_bLacksMemory = false;
    std::int64_t m_nSampleCount = 0;
    std::uint32_t m_nSampleRate = 1;
    std::uint16_t m_nSamplesPerElement = 1;
    float m_fMaxRunningMeasAvg = 0.0f;
    std::uint32_t m_nElePerMeas = 0;
};
