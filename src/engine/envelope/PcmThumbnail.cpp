// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/envelope/PcmThumbnail.h"

#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/Tempo.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace {

/// The larger value; the current one on a tie.
float Larger(float current, float candidate) {
    return current - candidate >= 0.0f ? current : candidate;
}

/// The smaller value; the current one on a tie.
float Smaller(float current, float candidate) {
    return current - candidate > 0.0f ? candidate : current;
}

} // namespace

CPfPcmThumbnail::CPfPcmThumbnail(CPfPcmThumbnail const& other) {
    *this = other;
}

CPfPcmThumbnail& CPfPcmThumbnail::operator=(CPfPcmThumbnail const& other) {
    if (this == &other) {
        return *this;
    }
    bool const allocated =
        Initialize(other.m_nSampleCount, other.m_nSampleRate, other.m_nSamplesPerElement);
    if (allocated && m_nCount == other.m_nCount) {
        std::ranges::copy(other.Elements(), m_pElements.get());
        m_fMaxRunningMeasAvg = other.m_fMaxRunningMeasAvg;
        m_nElePerMeas = other.m_nElePerMeas;
    }
    return *this;
}

CPfPcmThumbnail::CPfPcmThumbnail(CPfPcmThumbnail&& other) noexcept {
    *this = std::move(other);
}

// What was moved from has no elements, and the rest as it was.
CPfPcmThumbnail& CPfPcmThumbnail::operator=(CPfPcmThumbnail&& other) noexcept {
    if (this == &other) {
        return *this;
    }
    m_pElements = std::move(other.m_pElements);
    m_nCount = std::exchange(other.m_nCount, 0);
    m_bLacksMemory = other.m_bLacksMemory;
    m_nSampleCount = other.m_nSampleCount;
    m_nSampleRate = other.m_nSampleRate;
    m_nSamplesPerElement = other.m_nSamplesPerElement;
    m_fMaxRunningMeasAvg = other.m_fMaxRunningMeasAvg;
    m_nElePerMeas = other.m_nElePerMeas;
    return *this;
}

bool CPfPcmThumbnail::Initialize(std::int64_t sampleCount, std::uint32_t sampleRate,
                                 std::uint16_t samplesPerElement) {
    m_nSampleCount = sampleCount;
    if (sampleRate != 0) {
        m_nSampleRate = sampleRate;
    }
    if (samplesPerElement != 0) {
        m_nSamplesPerElement = samplesPerElement;
    }
    m_pElements.reset();
    m_nCount = 0;
    m_bLacksMemory = false;
    if (samplesPerElement == 0) {
        return false;
    }
    std::int64_t const count = sampleCount / samplesPerElement;
    if (count < 0 || count > std::numeric_limits<std::int32_t>::max()) {
        return false;
    }
    // Zeros that the system need not write: their memory comes with the first value of each page.
    auto const room = static_cast<std::size_t>(std::max(count, std::int64_t{1}));
    m_pElements.reset(static_cast<float*>(std::calloc(room, sizeof(float))));
    if (m_pElements == nullptr) {
        m_bLacksMemory = true;
        return false;
    }
    m_nCount = static_cast<std::int32_t>(count);
    return true;
}

bool CPfPcmThumbnail::GetData(float** data, std::uint32_t* count) {
    if (m_pElements == nullptr) {
        return false;
    }
    *data = m_pElements.get();
    *count = static_cast<std::uint32_t>(m_nCount);
    return true;
}

float CPfPcmThumbnail::GetMaxValue() const {
    float result = GetAt(0);
    for (float const value : Elements()) {
        result = Larger(result, value);
    }
    return result;
}

float CPfPcmThumbnail::GetMinValue() const {
    float result = GetAt(0);
    for (float const value : Elements()) {
        result = Smaller(result, value);
    }
    return result;
}

float CPfPcmThumbnail::GetMaxRangeValue(std::int32_t first, std::int32_t last) const {
    std::int32_t const begin = std::max(first, 0);
    std::int32_t const end = std::min(last, m_nCount - 1);
    float result = GetAt(begin);
    for (std::int32_t i = begin + 1; i <= end; ++i) {
        result = Larger(result, m_pElements[static_cast<std::size_t>(i)]);
    }
    return result;
}

float CPfPcmThumbnail::GetAvgValueBetwImpPts(CPfImpactPoints const* points, std::int32_t a,
                                             std::int32_t b) const {
    std::int64_t first = 0;
    std::int64_t last = std::int64_t{m_nCount} - 1;
    std::int64_t position = 0;
    if (points->EnumPoints(a, &position)) {
        first = std::max<std::int64_t>(position / m_nSamplesPerElement, 0);
    }
    if (points->EnumPoints(b, &position)) {
        last = std::min(position / m_nSamplesPerElement, last);
    }
    float sum = 0.0f;
    for (std::int64_t i = first; i <= last; ++i) {
        sum += m_pElements[static_cast<std::size_t>(i)];
    }
    // Deliberate: the divisor is the distance, one less than the elements summed; it may be 0.
    return sum / static_cast<float>(last - first);
}

std::uint32_t CPfPcmThumbnail::SamPerMeas(float bpm) const {
    return ::SamPerMeas(bpm, m_nSampleRate);
}

std::uint32_t CPfPcmThumbnail::GetElePerMeas(float bpm) const {
    return bpm == 0.0f ? m_nElePerMeas : SamPerMeas(bpm) / m_nSamplesPerElement;
}

float CPfPcmThumbnail::CalcMaxRunningMeasAvg(float bpm) const {
    std::uint32_t const window = SamPerMeas(bpm) / m_nSamplesPerElement;
    if (window == 0) {
        return 0.0f;
    }
    std::span<float const> const elements = Elements();
    double sum = 0.0;
    float maximum = 0.0f;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        sum += static_cast<double>(elements[i]);
        // Deliberate: the first element to leave is element 1, so element 0 counts in every
        // window; mix points and measure marks are scaled by this maximum.
        if (i > window) {
            sum -= static_cast<double>(elements[i - window]);
        }
        maximum = Larger(maximum, static_cast<float>(sum / window));
    }
    return maximum;
}

void CPfPcmThumbnail::ApplyBpm(float bpm) {
    m_fMaxRunningMeasAvg = CalcMaxRunningMeasAvg(bpm);
    m_nElePerMeas = SamPerMeas(bpm) / m_nSamplesPerElement;
}
