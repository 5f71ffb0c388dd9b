// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class CPfPcmThumbnail;

/// How strongly something sets in, frame by frame: the rises of an envelope above their
/// neighbourhood, of mean 0. A plain value.
/// Units: frames of four elements, 23.2 ms at the engine's rate.
struct COnsetCurve {
    std::vector<float> m_vValues;
    float m_fFrameSeconds = 0.0f;
    float m_fOnsetsPerSecond = 0.0f; // frames that stand out from both neighbours and the mean
    float m_fPeakiness = 0.0f;       // root mean square over mean, before the mean is taken off
};

/// The curve of an envelope's middle part, at most `kMostCurveSeconds` of it. Elements that are
/// negative or not finite count as 0. No values for an envelope that is constant, silent or shorter
/// than two frames.
[[nodiscard]] COnsetCurve MakeOnsetCurve(CPfPcmThumbnail const& envelope);

/// What a curve, or two of them, have in common with themselves some frames later: 1 at lag 0 of a
/// curve with itself.
class CLagTable {
public:
    CLagTable() = default;
    explicit CLagTable(std::vector<float> values) : m_vValues(std::move(values)) {}

    /// Straight between whole lags; 0 outside.
    [[nodiscard]] float At(float lag) const;
    [[nodiscard]] std::vector<float> const& Values() const { return m_vValues; }

private:
    std::vector<float> m_vValues;
};

/// Parts that a curve is correlated in, so that they can be compared.
constexpr std::size_t kCurveParts = 8;

/// Autocorrelation of the curve at lags [0, lags), of the whole and of each part.
struct CSelfLikeness {
    CLagTable m_whole;
    std::vector<CLagTable> m_vParts;
};
[[nodiscard]] CSelfLikeness CompareWithItself(COnsetCurve const& curve, std::size_t lags);

/// Mean of the correlation of `a` with `b` later and with `b` sooner, at lags [0, lags), over the
/// product of their root mean squares. Empty when the curves differ in length.
[[nodiscard]] CLagTable Compare(COnsetCurve const& a, COnsetCurve const& b, std::size_t lags);
