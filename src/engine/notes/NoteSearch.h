// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <span>

class CPfNoteMap;

constexpr float kQuietestNotePeak = 0.01f;     // Fixed: quieter crossings are skipped.
constexpr float kAllowedNoteDifference = 0.6f; // Fixed: of the peak, between repetitions.
constexpr std::int32_t kNotePeakStep = 8;      // Fixed: the peak is one of every eighth sample.
constexpr std::int32_t kNoteRepetitions = 4;   // Fixed: periods compared with the first.

/// What the search of one stretch works on.
struct CNoteSearch {
    float const* m_pSamples;
    std::int32_t m_nScanCount;                // crossings 1 .. scan count - 1 are looked at
    std::int32_t m_nLast;                     // index of the last sample
    std::int64_t m_nBasePos;                  // stream position of sample 0
    std::span<std::int32_t const> m_vPeriods; // in samples, from the lowest note up

    /// End of the crossings to look at; never behind the last sample.
    [[nodiscard]] std::int32_t GetScanEnd() const {
        return m_nScanCount <= m_nLast ? m_nScanCount : m_nLast + 1;
    }
};

/// Adds the notes of the stretch to `map`, crossing by crossing and from the lowest note up.
/// Thread: worker.
void SearchNotes(CNoteSearch const& search, CPfNoteMap* map);

/// `SearchNotes` as a plain loop. Same notes, same bits.
void SearchNotesPlain(CNoteSearch const& search, CPfNoteMap* map);

/// True when sample i is the first at or above 0; reads sample i - 1 as well.
[[nodiscard]] inline bool IsUpwardCrossing(float const* samples, std::int32_t i) {
    return samples[i - 1] < 0.0f && samples[i] >= 0.0f;
}

/// Largest of every eighth sample behind crossing i, up to the longest period or the last sample;
/// at least 0.
[[nodiscard]] float FindNotePeak(CNoteSearch const& search, std::int32_t i);

/// True, and the strength, when the stretch behind crossing i repeats at `period` with no
/// difference above `limit`.
bool TestNote(CNoteSearch const& search, std::int32_t i, std::int32_t period, float limit,
              float* strength);

/// 1 less the mean difference, scaled; NaN without comparisons.
[[nodiscard]] float GetNoteStrength(float sum, std::int32_t count);
