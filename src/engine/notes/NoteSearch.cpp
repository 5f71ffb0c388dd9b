// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Plain search: for every upward crossing that is loud enough (FindNotePeak), for every note,
// compare each sample of one period with up to four repetitions (TestNote).

#include "engine/notes/NoteSearch.h"

#include "base/EngineRate.h"
#include "base/TimeUtil.h"
#include "engine/notes/NoteMap.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr float kStrengthScale = 0x1.0p-16f; // Fixed: made for 16-bit sample values.

/// Compares sample j with its repetitions, adding each difference to `sum` up to and including the
/// first above `limit`. Returns: false when there was such a one.
bool CompareRepetitions(CNoteSearch const& search, std::int32_t j, std::int32_t period, float limit,
                        float* sum, std::int32_t* count) {
    std::int32_t const stop = std::min(j + kNoteRepetitions * period, search.m_nLast);
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

} // namespace

float FindNotePeak(CNoteSearch const& search, std::int32_t i) {
    // Eight maxima at a time, so that none waits for another; the largest of all doesn't depend on
    // the order.
    std::int32_t const end = std::min(i + search.m_vPeriods.front(), search.m_nLast);
    std::array<float, 8> peaks{};
    constexpr std::int32_t kStride = peaks.size() * kNotePeakStep;
    std::int32_t k = i;
    for (; k + kStride - kNotePeakStep < end; k += kStride) {
        float const* const samples = search.m_pSamples + k;
        for (std::size_t lane = 0; lane < peaks.size(); ++lane) {
            peaks[lane] = std::max(peaks[lane], samples[lane * kNotePeakStep]);
        }
    }
    for (; k < end; k += kNotePeakStep) {
        peaks[0] = std::max(peaks[0], search.m_pSamples[k]);
    }
    return *std::ranges::max_element(peaks);
}

float GetNoteStrength(float sum, std::int32_t count) {
    // Deliberate: without a single comparison, at the stream's very end, this is 0 / 0 and the note
    // has no strength (NaN); the map has a place for it.
    return 1.0f - sum / static_cast<float>(count) * kStrengthScale;
}

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
    *strength = GetNoteStrength(sum, count);
    return true;
}

void SearchNotesPlain(CNoteSearch const& search, CPfNoteMap* map) {
    std::int32_t const scanEnd = search.GetScanEnd();
    for (std::int32_t i = 1; i < scanEnd; ++i) {
        if (!IsUpwardCrossing(search.m_pSamples, i)) {
            continue;
        }
        float const peak = FindNotePeak(search, i);
        if (peak < kQuietestNotePeak) {
            continue;
        }
        std::int64_t const time = SamplePosToTime(search.m_nBasePos + i, kEngineRateHz);
        for (std::size_t note = 0; note < search.m_vPeriods.size(); ++note) {
            float strength = 0.0f;
            if (TestNote(search, i, search.m_vPeriods[note], kAllowedNoteDifference * peak,
                         &strength)) {
                map->AddDetection(static_cast<std::uint32_t>(note), time, strength);
            }
        }
    }
}
