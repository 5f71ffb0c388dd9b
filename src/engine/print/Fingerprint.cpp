// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Captures, extremes and comparisons of one print. Byte forms: FingerprintFormat.cpp; the stream's
// side: FingerprintBuilder.cpp.

#include "engine/print/Fingerprint.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::uint32_t kSamplesPerValue = 4; // Fixed: a print keeps every fourth sample.
constexpr float kMaxAverageRatio = 1.333f;    // Fixed: prints further apart are never alike.
constexpr std::int64_t kMaxLag = 344;         // Fixed: in values.
constexpr float kAlikeDistance = 0.225f;      // Fixed: mean distance over mean value.
constexpr float kMinContrast = 2.0f;          // Fixed: average distance over the best.
constexpr float kMaxDeviation = 0.5f;         // Fixed: of the print's range, for one value.
constexpr float kMaxMeanDeviation = 0.06f;    // Fixed: of the print's range, over all values.

/// Mean distance of two prints at every lag, relative to `mean`.
struct CLagScan {
    float m_fBest;
    float m_fTotal = 0.0f;
    std::int32_t m_nLags = 0;
    bool m_bCandidate = false;

    void Add(float distance) {
        m_fTotal += distance;
        ++m_nLags;
        m_fBest = distance < m_fBest ? distance : m_fBest;
        m_bCandidate = m_bCandidate || distance < kAlikeDistance;
    }
};

/// Sum of |a[i] - b[i]| over [0, n), in order.
float SumOfDistances(float const* a, float const* b, std::int64_t n) {
    float sum = 0.0f;
    for (std::int64_t i = 0; i < n; ++i) {
        sum += std::abs(a[i] - b[i]);
    }
    return sum;
}

/// Mean |values[i] - data[4 i]|; false when one of them exceeds `limit`.
bool MeanDeviation(std::vector<float> const& values, float const* data, float limit, float* mean) {
    float sum = 0.0f;
    for (float const value : values) {
        float const deviation = std::abs(value - *data);
        if (deviation > limit) {
            return false;
        }
        sum += deviation;
        data += kSamplesPerValue;
    }
    *mean = sum / static_cast<float>(values.size());
    return true;
}

} // namespace

void CFingerprint::CaptureRawPrint(float const* data, std::uint32_t n) {
    m_nTime = 0;
    m_vValues.assign(data, data + n);
    BuildMinMax();
}

void CFingerprint::CapturePrint(float const* data, std::uint32_t n, std::int64_t time, float min,
                                float max) {
    m_fMin = min;
    m_fMax = max;
    m_nTime = time;
    m_vValues.clear();
    m_vValues.reserve(n / kSamplesPerValue + 1);
    for (std::size_t i = 0; i < n; i += kSamplesPerValue) {
        m_vValues.push_back(data[i]);
    }
}

void CFingerprint::BuildMinMax() {
    // Deliberate: both start from 0, not from the first value, so that a print which never crosses
    // zero keeps 0 as one of its extremes.
    m_fMin = 0.0f;
    m_fMax = 0.0f;
    for (float const value : m_vValues) {
        m_fMin = std::min(m_fMin, value);
        m_fMax = std::max(m_fMax, value);
    }
}

float CFingerprint::GetAvgValue() const {
    if (m_vValues.empty()) {
        return 0.0f;
    }
    float sum = 0.0f;
    for (float const value : m_vValues) {
        sum += value;
    }
    return sum / static_cast<float>(m_vValues.size());
}

bool CFingerprint::IsPrintSmaller(float min, float max) const {
    return m_fMax - m_fMin < max - min;
}

bool CFingerprint::IsMatching(CFingerprint const* other, float* avgThis, float* avgOther) const {
    float const a = GetAvgValue();
    float const b = other->GetAvgValue();
    if (std::min(a, b) * kMaxAverageRatio < std::max(a, b)) {
        *avgThis = 0.0f;
        *avgOther = 0.0f;
        return false;
    }
    *avgThis = a;
    *avgOther = b;
    float const mean = (a + b) * 0.5f;
    // Deliberate: this print's minimum is taken twice and the other's never; the sum is no more
    // than an upper start for the search of the smallest distance.
    CLagScan scan{((m_fMax - m_fMin) + other->m_fMax) - m_fMin};
    auto const n = static_cast<std::int64_t>(std::min(m_vValues.size(), other->m_vValues.size()));
    if (n < 1) {
        return false;
    }
    for (std::int64_t lag = -kMaxLag; lag <= kMaxLag; ++lag) {
        std::int64_t const overlap = n - std::abs(lag);
        if (overlap > 0 && mean > 0.0f) {
            float const sum =
                SumOfDistances(m_vValues.data() + std::max<std::int64_t>(lag, 0),
                               other->m_vValues.data() + std::max<std::int64_t>(-lag, 0), overlap);
            scan.Add(sum / static_cast<float>(overlap) / mean);
        }
    }
    if (!scan.m_bCandidate) {
        return false;
    }
    float const average = scan.m_fTotal / static_cast<float>(scan.m_nLags);
    if (scan.m_fBest > 0.0f) {
        return average / scan.m_fBest >= kMinContrast;
    }
    return scan.m_fBest == 0.0f && average > 0.0f;
}

bool CFingerprint::DoesPrintMatch(float const* data, std::uint32_t count, std::int32_t from,
                                  std::int32_t to, std::int32_t* pos) const {
    auto const span = static_cast<std::int64_t>(m_vValues.size()) * kSamplesPerValue;
    if (m_vValues.empty() || span > count) {
        return false;
    }
    float const range = m_fMax - m_fMin;
    float best = range;
    bool found = false;
    std::int64_t const start = std::max(from, 0);
    // The last value is read at 4 (n - 1), three samples before the end of the span.
    std::int64_t const end = std::min<std::int64_t>(to, count - (span - kSamplesPerValue) - 1);
    for (std::int64_t p = start; p <= end; ++p) {
        float mean = 0.0f;
        if (MeanDeviation(m_vValues, data + p, range * kMaxDeviation, &mean) &&
            mean < range * kMaxMeanDeviation && mean < best) {
            best = mean;
            *pos = static_cast<std::int32_t>(p);
            found = true;
        }
    }
    return found;
}
