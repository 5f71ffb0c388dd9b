// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// MakeOnsetCurve
//   Loudness      root of the largest of four elements
//   Rises         what a frame has more than the two before it
//   StandOut      less the mean of the neighbourhood
//   CountOnsets   frames that stand out
//   Blur          1:2:1, so that a player's timing doesn't tear a beat apart
//   Centre        mean 0

#include "song/OnsetCurve.h"

#include "engine/envelope/PcmThumbnail.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace {

constexpr std::size_t kElementsPerFrame = 4;   // Tuned: tempo_model, finer frames give no more.
constexpr float kMostCurveSeconds = 96.0f;     // Tuned: TempoBench; the cost.
constexpr float kNeighbourhoodSeconds = 0.75f; // Tuned: tempo_model; either side.
constexpr float kOnsetHeight = 1.5f;           // Tuned: tempo_model; times the mean.
constexpr std::size_t kLanes = 8;              // Fixed: partial sums, part of the result.

/// Square roots of the largest element of each frame, relative to the largest of all.
std::vector<float> Loudness(std::span<float const> elements) {
    std::vector<float> frames(elements.size() / kElementsPerFrame, 0.0f);
    float largest = 0.0f;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        for (std::size_t j = 0; j < kElementsPerFrame; ++j) {
            float const value = elements[i * kElementsPerFrame + j];
            if (std::isfinite(value)) {
                frames[i] = std::max(frames[i], value);
            }
        }
        largest = std::max(largest, frames[i]);
    }
    for (float& frame : frames) {
        frame = largest > 0.0f ? std::sqrt(frame / largest) : 0.0f;
    }
    return frames;
}

/// What frame n has more than the larger one of the two before it; 0 for the first two.
std::vector<float> Rises(std::vector<float> const& loudness) {
    std::vector<float> rises(loudness.size(), 0.0f);
    for (std::size_t n = 2; n < loudness.size(); ++n) {
        rises[n] = std::max(0.0f, loudness[n] - std::max(loudness[n - 1], loudness[n - 2]));
    }
    return rises;
}

/// Values less the mean of up to `reach` of them on either side, where that is above 0.
std::vector<float> StandOut(std::vector<float> const& values, std::size_t reach) {
    std::vector<double> sums(values.size() + 1, 0.0);
    for (std::size_t i = 0; i < values.size(); ++i) {
        sums[i + 1] = sums[i] + static_cast<double>(values[i]);
    }
    std::vector<float> out(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        std::size_t const first = i - std::min(i, reach);
        std::size_t const end = std::min(values.size(), i + reach + 1);
        auto const mean =
            static_cast<float>((sums[end] - sums[first]) / static_cast<double>(end - first));
        out[i] = std::max(0.0f, values[i] - mean);
    }
    return out;
}

float Mean(std::vector<float> const& values) {
    double sum = 0.0;
    for (float const value : values) {
        sum += static_cast<double>(value);
    }
    return values.empty() ? 0.0f : static_cast<float>(sum / static_cast<double>(values.size()));
}

std::size_t CountOnsets(std::vector<float> const& values, float height) {
    std::size_t count = 0;
    for (std::size_t i = 1; i + 1 < values.size(); ++i) {
        count += values[i] > height && values[i] > values[i - 1] && values[i] >= values[i + 1];
    }
    return count;
}

std::vector<float> Blur(std::vector<float> const& values) {
    std::vector<float> out(values.size(), 0.0f);
    for (std::size_t i = 1; i + 1 < values.size(); ++i) {
        out[i] = 0.25f * values[i - 1] + 0.5f * values[i] + 0.25f * values[i + 1];
    }
    return out;
}

/// Sum of the products, in `kLanes` partial sums. `b` is at least as long as `a`.
float Dot(std::span<float const> a, std::span<float const> b) {
    std::array<float, kLanes> sums{};
    std::size_t const even = a.size() - a.size() % kLanes;
    for (std::size_t i = 0; i < even; i += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            sums[lane] += a[i + lane] * b[i + lane];
        }
    }
    for (std::size_t i = even; i < a.size(); ++i) {
        sums[0] += a[i] * b[i];
    }
    float sum = 0.0f;
    for (float const lane : sums) {
        sum += lane;
    }
    return sum;
}

/// Values [first, end) times those `lag` later, as far as there are any.
float LaggedDot(std::vector<float> const& a, std::vector<float> const& b, std::size_t first,
                std::size_t end, std::size_t lag) {
    std::size_t const last = std::min(end, b.size() - std::min(b.size(), lag));
    if (first >= last) {
        return 0.0f;
    }
    return Dot(std::span(a).subspan(first, last - first), std::span(b).subspan(first + lag));
}

/// Divides sums of products by their number, as the lag leaves it, and by the mean square.
CLagTable Normalised(std::vector<float> sums, std::size_t count, float square) {
    for (std::size_t lag = 0; lag < sums.size(); ++lag) {
        float const products = lag < count ? static_cast<float>(count - lag) : 0.0f;
        sums[lag] = products > 0.0f && square > 0.0f
                        ? sums[lag] / square * (static_cast<float>(count) / products)
                        : 0.0f;
    }
    return CLagTable(std::move(sums));
}

} // namespace

COnsetCurve MakeOnsetCurve(CPfPcmThumbnail const& envelope) {
    COnsetCurve curve;
    float const elementSeconds = static_cast<float>(envelope.GetSamplesPerElement()) /
                                 static_cast<float>(std::max(1U, envelope.GetSampleRate()));
    curve.m_fFrameSeconds = elementSeconds * static_cast<float>(kElementsPerFrame);
    std::span<float const> elements = envelope.Elements();
    auto const most = static_cast<std::size_t>(kMostCurveSeconds / elementSeconds);
    if (elements.size() > most) {
        elements = elements.subspan((elements.size() - most) / 2, most);
    }
    auto const reach = static_cast<std::size_t>(kNeighbourhoodSeconds / curve.m_fFrameSeconds);
    std::vector<float> const standing = StandOut(Rises(Loudness(elements)), reach);
    float const mean = Mean(standing);
    if (!(mean > 0.0f)) {
        return curve;
    }
    auto const seconds = static_cast<float>(standing.size()) * curve.m_fFrameSeconds;
    curve.m_fOnsetsPerSecond =
        static_cast<float>(CountOnsets(standing, mean * kOnsetHeight)) / seconds;
    curve.m_vValues = Blur(standing);
    float const square = Dot(curve.m_vValues, curve.m_vValues);
    curve.m_fPeakiness = std::sqrt(square / static_cast<float>(standing.size())) / mean;
    float const centre = Mean(curve.m_vValues);
    for (float& value : curve.m_vValues) {
        value -= centre;
    }
    return curve;
}

float CLagTable::At(float lag) const {
    if (!(lag >= 0.0f) || lag >= static_cast<float>(m_vValues.size())) {
        return 0.0f;
    }
    auto const whole = static_cast<std::size_t>(lag);
    if (whole + 1 >= m_vValues.size()) {
        return 0.0f;
    }
    float const part = lag - static_cast<float>(whole);
    return m_vValues[whole] + part * (m_vValues[whole + 1] - m_vValues[whole]);
}

CSelfLikeness CompareWithItself(COnsetCurve const& curve, std::size_t lags) {
    std::size_t const count = curve.m_vValues.size();
    std::vector<std::vector<float>> parts(kCurveParts, std::vector<float>(lags));
    std::vector<float> whole(lags);
    for (std::size_t part = 0; part < kCurveParts; ++part) {
        std::size_t const first = count * part / kCurveParts;
        std::size_t const end = count * (part + 1) / kCurveParts;
        for (std::size_t lag = 0; lag < lags; ++lag) {
            parts[part][lag] = LaggedDot(curve.m_vValues, curve.m_vValues, first, end, lag);
            whole[lag] += parts[part][lag];
        }
    }
    CSelfLikeness likeness;
    for (std::vector<float>& part : parts) {
        float const square = lags > 0 ? part[0] : 0.0f;
        for (float& value : part) {
            value = square > 0.0f ? value / square : 0.0f;
        }
        likeness.m_vParts.emplace_back(std::move(part));
    }
    float const square = lags > 0 ? whole[0] : 0.0f;
    likeness.m_whole = Normalised(std::move(whole), count, square);
    return likeness;
}

CLagTable Compare(COnsetCurve const& a, COnsetCurve const& b, std::size_t lags) {
    std::size_t const count = a.m_vValues.size();
    if (count != b.m_vValues.size()) {
        return {};
    }
    std::vector<float> sums(lags);
    for (std::size_t lag = 0; lag < lags; ++lag) {
        sums[lag] = 0.5f * (LaggedDot(a.m_vValues, b.m_vValues, 0, count, lag) +
                            LaggedDot(b.m_vValues, a.m_vValues, 0, count, lag));
    }
    float const square = std::sqrt(Dot(a.m_vValues, a.m_vValues) * Dot(b.m_vValues, b.m_vValues));
    return Normalised(std::move(sums), count, square);
}
