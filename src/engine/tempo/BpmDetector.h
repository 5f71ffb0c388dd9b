// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"

#include <cstdint>
#include <vector>

class CPfImpactPoints;

/// Turns onsets into a tempo. Thread: worker; the cancel flag may be null.
class CPfBpmDetector {
public:
    explicit CPfBpmDetector(CCancelFlag const* cancel) : m_pCancel(cancel) {}

    /// The candidate from 82.0 to 163.9 BPM in steps of 0.1 at which most of the first 512 points
    /// strictly inside (start, start + length) share a phase of its period, which is one measure
    /// over `divisions`. A tie goes to the slower tempo.
    /// Returns: 0 for fewer than two points inside, or when nothing scores.
    float DetectBpmWindow(CPfImpactPoints const* points, std::int64_t start, std::int64_t length,
                          std::uint16_t divisions) const;

    /// Median over nine windows of 20 s, each at four and at eight periods to the measure; the
    /// upper one of an even number. 0 when no window has a tempo, or when cancelled.
    float DetectBaseBpm(CPfImpactPoints const* points) const;

    /// Twice the tempo when it is at most 100 and more than 53 % of the intervals between
    /// consecutive points are half a beat long, within a fifth; else the tempo.
    static float FoldUpBpm(CPfImpactPoints const* points, float bpm);

    /// Element n / 2 of the n tempos in ascending order; 0 when there are none.
    [[nodiscard]] static float UpperMedian(std::vector<float> tempos);

private:
    [[nodiscard]] bool IsCancelled() const { return m_pCancel != nullptr && m_pCancel->IsSet(); }

    CCancelFlag const* m_pCancel;
};
