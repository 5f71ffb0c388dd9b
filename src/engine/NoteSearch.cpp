// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Plain search: for every upward crossing that is loud enough (PeakBehind), for every note, compare
// each sample of one period with up to four repetitions (TestNote).

#include "engine/NoteSearch.h"

#include "base/TimeUtil.h"
#include "engine/NoteDetector.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::uint32_t kSampleRate = 44100; // Fixed: rate of the note detector.
constexpr std::int32_t kPeakStep = 8;        // Fixed: every eighth sample is looked at.
constexpr float kQuietestPeak = 0.01f;       // Fixed: quieter crossings are skipped.
constexpr float kAllowedDifference = 0.6f;   // Fixed: of the peak, between repetitions.
constexpr std::int32_t kRepetitions = 4;     // Fixed: periods compared with the first.
constexpr float kStrengthScale = 0x1.0p-16f; // Fixed: made for 16-bit sample values.

bool IsUpwardCrossing(float const* samples, std::int32_t i) {
    return samples[i - 1] < 0.0f && samples[i] >= 0.0f;
}

/// Largest of every eighth sample of the longest period from i on; at least 0.
float PeakBehind(CNoteSearch const& search, std::int32_t i) {
    std::int32_t const end = std::min(i + search.m_vPeriods.front(), search.m_nLast);
    float peak = 0.0f;
    for (std::int32_t k = i; k < end; k += kPeakStep) {
        peak = std::max(peak, search.m_pSamples[k]);
    }
    return peak;
}

/// Compares sample j with its repetitions, adding each difference to `sum` up to and including the
/// first above `limit`. Returns: false when there was such a one.
bool CompareRepetitions(CNoteSearch const& search, std::int32_t j, std::int32_t period, float limit,
                        float* sum, std::int32_t* count) {
    std::int32_t const stop = std::min(j + kRepetitions * period, search.m_nLast);
    for (std::int32_t k = j + period; k <= stop; k += period) {
        float const difference = std::abs(search.m_pSamples[j] - search.m_pSamples[k]);
        *sum += difference;
        ++*count;
        if (difference > limit) {
            return false;
        }
    }
    return true;
}

/// True when the stretch behind crossing i repeats at `period`.
bool TestNote(CNoteSearch const& search, std::int32_t i, std::int32_t period, float limit,
              float* strength) {
    std::int32_t const end = std::min(i + period, search.m_nLast);
    float sum = 0.0f;
    std::int32_t count = 0;
    for (std::int32_t j = i; j < end; ++j) {
        if (!CompareRepetitions(search, j, period, limit, &sum, &count)) {
            return false;
        }
    }
    // Deliberate: the last sample is compared and counted like the others, but a difference above
    // the limit no longer tells against the note.
    CompareRepetitions(search, end, period, limit, &sum, &count);
    // Deliberate: without a single comparison, at the stream's very end, this is 0 / 0 and the note
    // has no strength (NaN); the map has a place for it.
    *strength = 1.0f - sum / static_cast<float>(count) * kStrengthScale;
    return true;
}

} // namespace

void SearchNotesPlain(CNoteSearch const& search, CPfNoteMap* map) {
    std::int32_t const scanEnd = std::min(search.m_nScanCount, search.m_nLast + 1);
    for (std::int32_t i = 1; i < scanEnd; ++i) {
        if (!IsUpwardCrossing(search.m_pSamples, i)) {
            continue;
        }
        float const peak = PeakBehind(search, i);
        if (peak < kQuietestPeak) {
            continue;
        }
        std::int64_t const time = SamplePosToTime(search.m_nBasePos + i, kSampleRate);
        for (std::size_t note = 0; note < search.m_vPeriods.size(); ++note) {
            float strength = 0.0f;
            if (TestNote(search, i, search.m_vPeriods[note], kAllowedDifference * peak,
                         &strength)) {
                map->AddDetection(static_cast<std::uint32_t>(note), time, strength);
            }
        }
    }
}
