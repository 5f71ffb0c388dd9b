// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <span>

class CPfNoteMap;

/// What the search of one stretch works on.
struct CNoteSearch {
    float const* m_pSamples;
    std::int32_t m_nScanCount;                // crossings 1 .. scan count - 1 are looked at
    std::int32_t m_nLast;                     // index of the last sample
    std::int64_t m_nBasePos;                  // stream position of sample 0
    std::span<std::int32_t const> m_vPeriods; // in samples, from the lowest note up
};

/// Adds the notes of the stretch to `map`, crossing by crossing and from the lowest note up.
/// Thread: worker.
void SearchNotesPlain(CNoteSearch const& search, CPfNoteMap* map);
