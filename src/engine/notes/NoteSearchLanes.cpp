// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// SearchNotes        looks for crossings, a register of samples at a time
//   TestCrossing     holds the notes that nothing speaks against: Repeats compares a few stretches
//                    along the period first, then all of it, and sums the differences by the way
//     RateLoosely    the strength, when every sum that the order could give has the same one
//   Flush            forms the ordered sums of the other notes, several at a time, one in each lane
//                    (SumPeriods), and hands the notes to the map
// The order of the comparisons that decide whether a note fails is free; that of the sums is not,
// and only notes that are found have one.

#include "engine/notes/NoteSearch.h"

#include "base/EngineRate.h"
#include "base/TimeUtil.h"
#include "engine/kernels/Targets.h"
#include "engine/notes/NoteMap.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/notes/NoteSearchLanes.cpp"
#include <hwy/foreach_target.h>

#include "engine/kernels/Lanes.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

constexpr CLaneTag kTag;

// What is compared, all in one direction, takes the widest registers there are.
using CWideTag = hn::CappedTag<float, 16>;
using CWide = hn::Vec<CWideTag>;
constexpr CWideTag kWide;
constexpr auto kWidth = static_cast<std::int32_t>(hn::MaxLanes(CWideTag()));

constexpr std::size_t kNotesHeld = 256; // Tuned: BM_NoteSearchBass; enough to fill groups alike.

// Tuned: BM_NoteSearchSong; where along the period notes fail most often, in 32nds.
constexpr std::int32_t kProbes[] = {8, 28, 17, 3, 23, 12};
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

/// Notes whose sums are formed side by side.
using CSumGroup = CFoundNote* [kLanes];

/// The largest difference between each sample and its repetitions, all of which are added to
/// `sums`. A difference that is NaN is larger than nothing.
HWY_INLINE CWide Compare(float const* samples, std::int32_t period, CWide& sums) {
    CWide const sample = hn::LoadU(kWide, samples);
    CWide largest = hn::Zero(kWide);
    for (std::ptrdiff_t m = 1; m <= kNoteRepetitions; ++m) {
        CWide const difference = hn::Abs(sample - hn::LoadU(kWide, samples + m * period));
        largest = LargerOf(difference, largest);
        sums = sums + difference;
    }
    return largest;
}

/// True when a few stretches along the period are within `limits` of their repetitions.
HWY_INLINE bool PassesProbes(float const* samples, std::int32_t period, CWide limits) {
    for (std::int32_t const probe : kProbes) {
        CWide unused = hn::Zero(kWide);
        float const* const at = samples + (period - kWidth) * probe / kProbeScale;
        if (!hn::AllFalse(kWide, hn::Gt(Compare(at, period, unused), limits))) {
            return false;
        }
    }
    return true;
}

/// True when the samples of one period, all but the last, are within `limit` of their repetitions.
/// `sum` is then that of all differences, in some order.
HWY_INLINE bool Repeats(float const* samples, std::int32_t period, float limit, float* sum) {
    CWide const limits = hn::Set(kWide, limit);
    if (!PassesProbes(samples, period, limits)) {
        return false;
    }
    CWide sums[] = {hn::Zero(kWide), hn::Zero(kWide)};
    std::int32_t k = 0;
    for (; k + 2 * kWidth <= period; k += 2 * kWidth) {
        CWide const first = Compare(samples + k, period, sums[0]);
        CWide const second = Compare(samples + k + kWidth, period, sums[1]);
        if (!hn::AllFalse(kWide, hn::Gt(LargerOf(first, second), limits))) {
            return false;
        }
    }
    // What is left, by two registers that overlap what was there before.
    for (std::int32_t const end : {period, period - kWidth}) {
        CWide rest = hn::Zero(kWide);
        std::int32_t const start = end - kWidth;
        if (!hn::AllFalse(kWide, hn::Gt(Compare(samples + start, period, rest), limits))) {
            return false;
        }
        auto const isDone =
            hn::FirstN(kWide, static_cast<std::size_t>(std::clamp(k - start, 0, kWidth)));
        sums[0] = sums[0] + hn::IfThenZeroElse(isDone, rest);
    }
    *sum = hn::GetLane(hn::SumOfLanes(kWide, sums[0] + sums[1]));
    return true;
}

/// Where the notes of a group stand: the crossing of each, and its repetitions.
struct CSumLanes {
    float const* m_pStarts[kNoteRepetitions + 1][kLanes];
    alignas(32) std::int32_t m_nPeriods[kLanes];

    CSumLanes(float const* samples, CSumGroup const& group) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            std::ptrdiff_t const period = m_nPeriods[lane] = group[lane]->m_nPeriod;
            for (std::ptrdiff_t m = 0; m <= kNoteRepetitions; ++m) {
                m_pStarts[m][lane] = samples + group[lane]->m_nCrossing + m * period;
            }
        }
    }
};

/// Adds the differences of samples k .. k + 3 to the sums: sample by sample, each with its
/// repetitions in order. With `ends`, a note whose end is reached adds 0, which changes no sum.
template <bool kHasEnds>
HWY_INLINE CLanes AddFourSamples(CSumLanes const& lanes, std::int32_t k, CLanes sums) {
    CLanes samples[kBlock];
    CLanes columns[kNoteRepetitions][kBlock];
    LoadRows(lanes.m_pStarts[0], k, samples);
    for (std::size_t m = 0; m < kNoteRepetitions; ++m) {
        LoadRows(lanes.m_pStarts[m + 1], k, columns[m]);
        for (std::size_t i = 0; i < kBlock; ++i) {
            columns[m][i] = hn::Abs(samples[i] - columns[m][i]);
        }
        TurnRows(columns[m]);
    }
    constexpr hn::RebindToSigned<CLaneTag> kWhole;
    for (std::size_t i = 0; i < kBlock; ++i) {
        for (CLanes const* const column : columns) {
            if constexpr (kHasEnds) {
                auto const goesOn = hn::Gt(hn::Load(kWhole, lanes.m_nPeriods),
                                           hn::Set(kWhole, k + static_cast<std::int32_t>(i)));
                sums = sums + hn::IfThenElseZero(hn::RebindMask(kTag, goesOn), column[i]);
            } else {
                sums = sums + column[i];
            }
        }
    }
    return sums;
}

/// Sums of the notes of a group over their periods, all but the last sample.
HWY_INLINE void SumPeriods(float const* samples, CSumGroup const& group, float* result) {
    CSumLanes const lanes(samples, group);
    auto const [shortest, longest] =
        std::minmax_element(lanes.m_nPeriods, lanes.m_nPeriods + kLanes);
    CLanes sums = hn::Zero(kTag);
    std::int32_t k = 0;
    for (; k + 4 <= *shortest; k += 4) {
        sums = AddFourSamples<false>(lanes, k, sums);
    }
    for (; k < *longest; k += 4) {
        sums = AddFourSamples<true>(lanes, k, sums);
    }
    hn::StoreU(sums, kTag, result);
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
    void RateLoosely(CFoundNote& note, float sum) const;
    void Hold(CFoundNote const& note);
    void SumAll();
    [[nodiscard]] float StrengthOf(CFoundNote const& note, float sum) const;

    CNoteSearch const& m_search;
    CPfNoteMap* m_pMap;
    std::array<CFoundNote, kNotesHeld> m_notes;
    std::size_t m_nHeld = 0;
};

float CLaneSearch::FindPeak(std::int32_t i) const {
    // Eight maxima at a time, so that none waits for another; the largest of all doesn't depend on
    // the order.
    std::int32_t const end = std::min(i + m_search.m_vPeriods.front(), m_search.m_nLast);
    float const* const samples = m_search.m_pSamples;
    std::array<float, 8> peaks{};
    constexpr auto kPeaks = static_cast<std::int32_t>(peaks.size());
    std::int32_t k = i;
    for (; k + (kPeaks - 1) * kNotePeakStep < end; k += kPeaks * kNotePeakStep) {
        for (std::int32_t lane = 0; lane < kPeaks; ++lane) {
            float& peak = peaks[static_cast<std::size_t>(lane)];
            peak = std::max(peak, samples[k + lane * kNotePeakStep]);
        }
    }
    for (; k < end; k += kNotePeakStep) {
        peaks[0] = std::max(peaks[0], samples[k]);
    }
    return *std::ranges::max_element(peaks);
}

void CLaneSearch::TestCrossing(std::int32_t i) {
    float const peak = FindPeak(i);
    if (peak < kQuietestNotePeak) {
        return;
    }
    float const limit = kAllowedNoteDifference * peak;
    // Near the end not every note has all its repetitions; the plain test knows how to stop.
    std::int32_t const reach = (kNoteRepetitions + 1) * m_search.m_vPeriods.front() + kWidth;
    bool const hasRoom = i + reach <= m_search.m_nLast;
    auto const notes = static_cast<std::int32_t>(m_search.m_vPeriods.size());
    for (std::int32_t note = 0; note < notes; ++note) {
        std::int32_t const period = m_search.m_vPeriods[static_cast<std::size_t>(note)];
        CFoundNote found{i, note, period, limit, 0.0f, !hasRoom};
        if (!hasRoom) {
            if (TestNote(m_search, i, period, limit, &found.m_fStrength)) {
                Hold(found);
            }
            continue;
        }
        float sum = 0.0f;
        if (Repeats(m_search.m_pSamples + i, period, limit, &sum)) {
            RateLoosely(found, sum);
            Hold(found);
        }
    }
}

/// `sum` has the right summands, but not in their order. Sums of n summands of one sign, however
/// ordered, lie within n 2^-24 of the exact one, and strengths fall as sums rise, through every
/// rounding. Where the lowest and the highest agree, all do.
void CLaneSearch::RateLoosely(CFoundNote& note, float sum) const {
    // Derived: twice n 2^-24, and a tenth more for squares and for what is rounded here.
    double const slack = 2.2 * kNoteRepetitions * note.m_nPeriod * 0x1.0p-24;
    float const lowest = static_cast<float>(static_cast<double>(sum) * (1.0 - slack));
    float const highest = static_cast<float>(static_cast<double>(sum) * (1.0 + slack));
    note.m_fStrength = StrengthOf(note, lowest);
    // An infinite sum says nothing of another order.
    note.m_bSummed = std::isfinite(highest) && note.m_fStrength == StrengthOf(note, highest);
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
        float sums[kLanes];
        SumPeriods(m_search.m_pSamples, group, sums);
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            group[lane]->m_fStrength = StrengthOf(*group[lane], sums[lane]);
            group[lane]->m_bSummed = true;
        }
    }
}

/// The strength of a note whose differences, but for those of the last sample, have this sum.
float CLaneSearch::StrengthOf(CFoundNote const& note, float sum) const {
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
    return GetNoteStrength(sum, count);
}

void SearchLanes(CNoteSearch const& search, CPfNoteMap* map) {
    CLaneSearch lanes(search, map);
    float const* const samples = search.m_pSamples;
    std::int32_t const scanEnd = search.GetScanEnd();
    std::int32_t i = 1;
    for (; i + kWidth <= scanEnd; i += kWidth) {
        auto const isBelow = hn::Lt(hn::LoadU(kWide, samples + i - 1), hn::Zero(kWide));
        auto const isAbove = hn::Ge(hn::LoadU(kWide, samples + i), hn::Zero(kWide));
        auto const isCrossing = hn::And(isBelow, isAbove);
        if (hn::AllFalse(kWide, isCrossing)) {
            continue;
        }
        std::array<std::uint8_t, 8> bits{}; // what is stored is at least a byte
        hn::StoreMaskBits(kWide, isCrossing, bits.data());
        std::uint32_t crossings = bits[0] | std::uint32_t{bits[1]} << 8U;
        for (; crossings != 0; crossings &= crossings - 1) {
            lanes.TestCrossing(i + std::countr_zero(crossings));
        }
    }
    for (; i < scanEnd; ++i) {
        if (IsUpwardCrossing(samples, i)) {
            lanes.TestCrossing(i);
        }
    }
    lanes.Flush();
}

#else

void SearchLanes(CNoteSearch const& search, CPfNoteMap* map) {
    SearchNotesPlain(search, map);
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(SearchLanes);

void SearchNotes(CNoteSearch const& search, CPfNoteMap* map) {
    HWY_DYNAMIC_DISPATCH(SearchLanes)(search, map);
}

#endif
