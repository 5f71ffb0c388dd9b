// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// SearchNotesLanes   looks for crossings, eight samples at a time
//   TestCrossing     holds the notes that nothing speaks against: Repeats compares a few stretches
//                    along the period first, then all of it
//   Flush            forms the ordered sums of eight notes at a time, one in each lane
//                    (SumPeriods), and hands the notes to the map
// The order of the comparisons that decide whether a note fails is free; that of the sums is not,
// and only notes that are found have one.

#include "engine/notes/NoteSearchLanes.h"

#if defined(__x86_64__)

#include "base/TimeUtil.h"
#include "engine/envelope/Tempo.h"
#include "engine/notes/NoteMap.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <immintrin.h>
#include <limits>

#define TACTUS_AVX2 __attribute__((target("avx2")))

namespace {

constexpr std::int32_t kLanes = 8;
constexpr std::size_t kNotesHeld = 256; // Tuned: BM_NoteSearchBass; enough to find eight alike.

// Tuned: BM_NoteSearchSong; where along the period notes fail most often, in 32nds.
constexpr std::array<std::int32_t, 6> kProbes = {8, 28, 17, 3, 23, 12};
constexpr std::int32_t kProbeScale = 32;

/// A note at a crossing. Its strength may still have to be summed.
struct CFoundNote {
    std::int32_t m_nCrossing;
    std::int32_t m_nNote;
    std::int32_t m_nPeriod;
    float m_fLimit;
    float m_fStrength;
    bool m_bSummed;
};

/// Eight notes whose sums are formed side by side.
using CSumGroup = std::array<CFoundNote*, kLanes>;

/// Per lane all bits when the sample is further than `limit` from one of its repetitions.
TACTUS_AVX2 inline __m256 Fails(float const* samples, std::int32_t period, __m256 limit) {
    // The largest and the smallest repetition are the furthest, and rounding keeps that order. A
    // repetition that is NaN fails no comparison: the instructions give their second operand then.
    __m256 largest = _mm256_set1_ps(-std::numeric_limits<float>::infinity());
    __m256 smallest = _mm256_set1_ps(std::numeric_limits<float>::infinity());
    for (std::ptrdiff_t m = 1; m <= kNoteRepetitions; ++m) {
        __m256 const repetition = _mm256_loadu_ps(samples + m * period);
        largest = _mm256_max_ps(repetition, largest);
        smallest = _mm256_min_ps(repetition, smallest);
    }
    __m256 const sample = _mm256_loadu_ps(samples);
    return _mm256_or_ps(_mm256_cmp_ps(_mm256_sub_ps(largest, sample), limit, _CMP_GT_OQ),
                        _mm256_cmp_ps(_mm256_sub_ps(sample, smallest), limit, _CMP_GT_OQ));
}

/// True when the samples of one period, all but the last, are within `limit` of their repetitions.
TACTUS_AVX2 inline bool Repeats(float const* samples, std::int32_t period, float limit) {
    __m256 const limits = _mm256_set1_ps(limit);
    std::int32_t const lastStart = period - kLanes;
    for (std::int32_t const probe : kProbes) {
        __m256 const fails = Fails(samples + lastStart * probe / kProbeScale, period, limits);
        if (_mm256_movemask_ps(fails) != 0) {
            return false;
        }
    }
    std::int32_t k = 0;
    for (; k < lastStart - kLanes; k += 2 * kLanes) {
        __m256 const fails = _mm256_or_ps(Fails(samples + k, period, limits),
                                          Fails(samples + k + kLanes, period, limits));
        if (_mm256_movemask_ps(fails) != 0) {
            return false;
        }
    }
    __m256 const fails = _mm256_or_ps(Fails(samples + std::min(k, lastStart), period, limits),
                                      Fails(samples + lastStart, period, limits));
    return _mm256_movemask_ps(fails) == 0;
}

/// Where the eight notes of a group stand.
struct CSumLanes {
    std::array<float const*, kLanes> m_pStarts;
    std::array<std::int32_t, kLanes> m_nPeriods;
};

/// Differences of four samples k .. k + 3 from their m-th repetitions: columns[i] holds those of
/// sample k + i, a lane for each note.
TACTUS_AVX2 inline void DifferenceColumns(CSumLanes const& lanes, std::int32_t k, std::ptrdiff_t m,
                                          __m256* columns) {
    __m256 rows[4]; // four samples of note i, four of note i + 4
    for (std::size_t i = 0; i < 4; ++i) {
        float const* const low = lanes.m_pStarts[i] + k;
        float const* const high = lanes.m_pStarts[i + 4] + k;
        __m256 const sample = _mm256_loadu2_m128(high, low);
        __m256 const repetition =
            _mm256_loadu2_m128(high + m * lanes.m_nPeriods[i + 4], low + m * lanes.m_nPeriods[i]);
        rows[i] = _mm256_andnot_ps(_mm256_set1_ps(-0.0f), _mm256_sub_ps(sample, repetition));
    }
    __m256 const low01 = _mm256_unpacklo_ps(rows[0], rows[1]);
    __m256 const high01 = _mm256_unpackhi_ps(rows[0], rows[1]);
    __m256 const low23 = _mm256_unpacklo_ps(rows[2], rows[3]);
    __m256 const high23 = _mm256_unpackhi_ps(rows[2], rows[3]);
    columns[0] = _mm256_shuffle_ps(low01, low23, _MM_SHUFFLE(1, 0, 1, 0));
    columns[1] = _mm256_shuffle_ps(low01, low23, _MM_SHUFFLE(3, 2, 3, 2));
    columns[2] = _mm256_shuffle_ps(high01, high23, _MM_SHUFFLE(1, 0, 1, 0));
    columns[3] = _mm256_shuffle_ps(high01, high23, _MM_SHUFFLE(3, 2, 3, 2));
}

/// Adds the differences of samples k .. k + 3 to the sums: sample by sample, each with its
/// repetitions in order. A note whose bit is clear in masks[i] adds 0, which changes no sum.
TACTUS_AVX2 inline __m256 AddFourSamples(CSumLanes const& lanes, std::int32_t k,
                                         __m256 const* masks, __m256 sums) {
    __m256 columns[kNoteRepetitions][4];
    for (std::int32_t m = 0; m < kNoteRepetitions; ++m) {
        DifferenceColumns(lanes, k, m + 1, columns[m]);
    }
    for (std::size_t i = 0; i < 4; ++i) {
        for (auto const& column : columns) {
            sums = _mm256_add_ps(sums,
                                 masks != nullptr ? _mm256_and_ps(masks[i], column[i]) : column[i]);
        }
    }
    return sums;
}

/// Sums of the eight notes over their periods, all but the last sample.
TACTUS_AVX2 void SumPeriods(float const* samples, CSumGroup const& group, float* result) {
    CSumLanes lanes;
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
        lanes.m_pStarts[lane] = samples + group[lane]->m_nCrossing;
        lanes.m_nPeriods[lane] = group[lane]->m_nPeriod;
    }
    auto const [shortest, longest] = std::ranges::minmax(lanes.m_nPeriods);
    __m256 sums = _mm256_setzero_ps();
    std::int32_t k = 0;
    for (; k + 4 <= shortest; k += 4) {
        sums = AddFourSamples(lanes, k, nullptr, sums);
    }
    __m256i const ends =
        _mm256_loadu_si256(reinterpret_cast<__m256i const*>(lanes.m_nPeriods.data()));
    for (; k < longest; k += 4) {
        __m256 masks[4];
        for (std::int32_t i = 0; i < 4; ++i) {
            masks[i] = _mm256_castsi256_ps(_mm256_cmpgt_epi32(ends, _mm256_set1_epi32(k + i)));
        }
        sums = AddFourSamples(lanes, k, masks, sums);
    }
    _mm256_storeu_ps(result, sums);
}

/// The search of one stretch, and the notes that wait for their sums.
class CLaneSearch {
public:
    CLaneSearch(CNoteSearch const& search, CPfNoteMap* map) : m_search(search), m_pMap(map) {}

    /// Tests every note at a crossing.
    void TestCrossing(std::int32_t i);

    /// Hands the notes held over to the map, in the order in which they were found.
    void Flush();

private:
    [[nodiscard]] float FindPeak(std::int32_t i) const;
    void Hold(CFoundNote const& note);
    void SumAll();
    void SumGroup(CSumGroup const& group);
    void FinishSum(CFoundNote& note, float sum) const;

    CNoteSearch const& m_search;
    CPfNoteMap* m_pMap;
    std::array<CFoundNote, kNotesHeld> m_notes;
    std::size_t m_nHeld = 0;
};

float CLaneSearch::FindPeak(std::int32_t i) const {
    // Four maxima at a time; the largest of all doesn't depend on the order.
    std::int32_t const end = std::min(i + m_search.m_vPeriods.front(), m_search.m_nLast);
    float const* const samples = m_search.m_pSamples;
    std::array<float, 4> peaks{};
    std::int32_t k = i;
    for (; k + 3 * kNotePeakStep < end; k += 4 * kNotePeakStep) {
        for (std::int32_t lane = 0; lane < 4; ++lane) {
            float& peak = peaks[static_cast<std::size_t>(lane)];
            peak = std::max(peak, samples[k + lane * kNotePeakStep]);
        }
    }
    for (; k < end; k += kNotePeakStep) {
        peaks[0] = std::max(peaks[0], samples[k]);
    }
    return std::max(std::max(peaks[0], peaks[1]), std::max(peaks[2], peaks[3]));
}

void CLaneSearch::TestCrossing(std::int32_t i) {
    float const peak = FindPeak(i);
    if (peak < kQuietestNotePeak) {
        return;
    }
    float const limit = kAllowedNoteDifference * peak;
    // Near the end not every note has all its repetitions; the plain test knows how to stop.
    std::int32_t const reach = (kNoteRepetitions + 1) * m_search.m_vPeriods.front() + kLanes;
    bool const hasRoom = i + reach <= m_search.m_nLast;
    auto const notes = static_cast<std::int32_t>(m_search.m_vPeriods.size());
    for (std::int32_t note = 0; note < notes; ++note) {
        std::int32_t const period = m_search.m_vPeriods[static_cast<std::size_t>(note)];
        CFoundNote found{i, note, period, limit, 0.0f, !hasRoom};
        if (hasRoom ? Repeats(m_search.m_pSamples + i, period, limit)
                    : TestNote(m_search, i, period, limit, &found.m_fStrength)) {
            Hold(found);
        }
    }
}

void CLaneSearch::Hold(CFoundNote const& note) {
    if (m_nHeld == kNotesHeld) {
        Flush();
    }
    m_notes[m_nHeld++] = note;
}

void CLaneSearch::Flush() {
    SumAll();
    for (std::size_t i = 0; i < m_nHeld; ++i) {
        CFoundNote const& note = m_notes[i];
        (void)m_pMap->AddDetection(
            static_cast<std::uint32_t>(note.m_nNote),
            SamplePosToTime(m_search.m_nBasePos + note.m_nCrossing, kEngineRateHz),
            note.m_fStrength);
    }
    m_nHeld = 0;
}

void CLaneSearch::SumAll() {
    std::array<CFoundNote*, kNotesHeld> waiting;
    std::size_t count = 0;
    for (std::size_t i = 0; i < m_nHeld; ++i) {
        if (!m_notes[i].m_bSummed) {
            waiting[count++] = &m_notes[i];
        }
    }
    // Notes of the same period side by side, so that the lanes end together.
    std::sort(waiting.begin(), waiting.begin() + static_cast<std::ptrdiff_t>(count),
              [](CFoundNote const* a, CFoundNote const* b) { return a->m_nPeriod < b->m_nPeriod; });
    for (std::size_t i = 0; i < count; i += kLanes) {
        CSumGroup group;
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            group[lane] = waiting[std::min(i + lane, count - 1)];
        }
        SumGroup(group);
    }
}

void CLaneSearch::SumGroup(CSumGroup const& group) {
    alignas(32) std::array<float, kLanes> sums;
    SumPeriods(m_search.m_pSamples, group, sums.data());
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
        FinishSum(*group[lane], sums[lane]);
    }
}

void CLaneSearch::FinishSum(CFoundNote& note, float sum) const {
    float const* const last = m_search.m_pSamples + note.m_nCrossing + note.m_nPeriod;
    std::int32_t count = kNoteRepetitions * note.m_nPeriod;
    for (std::ptrdiff_t m = 1; m <= kNoteRepetitions; ++m) {
        float const difference = std::abs(*last - last[m * note.m_nPeriod]);
        sum += difference;
        ++count;
        if (difference > note.m_fLimit) {
            break;
        }
    }
    note.m_fStrength = GetNoteStrength(sum, count);
    note.m_bSummed = true;
}

} // namespace

TACTUS_AVX2 void SearchNotesLanes(CNoteSearch const& search, CPfNoteMap* map) {
    CLaneSearch lanes(search, map);
    __m256 const zero = _mm256_setzero_ps();
    std::int32_t const scanEnd = search.GetScanEnd();
    std::int32_t i = 1;
    for (; i + kLanes <= scanEnd; i += kLanes) {
        __m256 const below =
            _mm256_cmp_ps(_mm256_loadu_ps(search.m_pSamples + i - 1), zero, _CMP_LT_OQ);
        __m256 const above =
            _mm256_cmp_ps(_mm256_loadu_ps(search.m_pSamples + i), zero, _CMP_GE_OQ);
        auto crossings =
            static_cast<std::uint32_t>(_mm256_movemask_ps(_mm256_and_ps(below, above)));
        for (; crossings != 0; crossings &= crossings - 1) {
            lanes.TestCrossing(i + std::countr_zero(crossings));
        }
    }
    for (; i < scanEnd; ++i) {
        if (IsUpwardCrossing(search.m_pSamples, i)) {
            lanes.TestCrossing(i);
        }
    }
    lanes.Flush();
}

#endif
