// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// SearchNotes        looks for crossings, a register of samples at a time
//   TestCrossing
//     TestWide       rates a note that nothing speaks against; where the order of its sum could
//                    tell, the plain test sums again
//       Repeats      compares a few stretches along the period first, then all of it, and sums the
//                    differences by the way
// The order of the comparisons that decide whether a note fails is free; that of the sums is not.

#include "engine/notes/NoteSearch.h"

#include "base/EngineRate.h"
#include "base/TimeUtil.h"
#include "engine/kernels/Targets.h"
#include "engine/notes/NoteMap.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/notes/NoteSearchLanes.cpp"
#include <hwy/foreach_target.h>

#include "engine/kernels/Lanes.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

// What is compared, all in one direction, takes the widest registers there are.
using CWideTag = hn::CappedTag<float, 16>;
using CWide = hn::Vec<CWideTag>;
constexpr CWideTag kWide;
constexpr auto kWidth = static_cast<std::int32_t>(hn::MaxLanes(CWideTag()));

// Tuned: BM_NoteSearchSong; where along the period notes fail most often, in 32nds.
constexpr std::int32_t kProbes[] = {8, 28, 17, 3, 23, 12};
constexpr std::int32_t kProbeScale = 32;

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

/// True when the samples of one period, all but the last, are within `limit` of their repetitions.
/// `sum` is then that of all differences, in some order.
HWY_INLINE bool Repeats(float const* samples, std::int32_t period, float limit, float* sum) {
    CWide const limits = hn::Set(kWide, limit);
    CWide sums[] = {hn::Zero(kWide), hn::Zero(kWide)};
    for (std::int32_t const probe : kProbes) {
        CWide unused = hn::Zero(kWide);
        float const* const at = samples + (period - kWidth) * probe / kProbeScale;
        if (!hn::AllFalse(kWide, hn::Gt(Compare(at, period, unused), limits))) {
            return false;
        }
    }
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

/// The strength of a note whose differences, but for those of the last sample, have this sum.
float StrengthOf(CNoteSearch const& search, std::int32_t i, std::int32_t period, float limit,
                 float sum) {
    float const* const last = search.m_pSamples + i + period;
    std::int32_t count = kNoteRepetitions * period;
    for (std::ptrdiff_t m = 1; m <= kNoteRepetitions; ++m) {
        float const difference = std::abs(*last - last[m * period]);
        sum += difference;
        ++count;
        if (difference > limit) {
            break;
        }
    }
    return GetNoteStrength(sum, count);
}

/// `TestNote` for a note that has room for all its repetitions. Sums of n summands of one sign,
/// however ordered, lie within n 2^-24 of the exact one, and strengths fall as sums rise, through
/// every rounding. Where the lowest and the highest agree, all do.
HWY_INLINE bool TestWide(CNoteSearch const& search, std::int32_t i, std::int32_t period,
                         float limit, float* strength) {
    float sum = 0.0f;
    if (!Repeats(search.m_pSamples + i, period, limit, &sum)) {
        return false;
    }
    // Derived: twice n 2^-24, and a tenth more for squares and for what is rounded here.
    double const slack = 2.2 * kNoteRepetitions * period * 0x1.0p-24;
    float const lowest = static_cast<float>(static_cast<double>(sum) * (1.0 - slack));
    float const highest = static_cast<float>(static_cast<double>(sum) * (1.0 + slack));
    *strength = StrengthOf(search, i, period, limit, lowest);
    // An infinite sum says nothing of another order.
    return (std::isfinite(highest) && *strength == StrengthOf(search, i, period, limit, highest)) ||
           TestNote(search, i, period, limit, strength);
}

/// Tests every note at crossing i.
void TestCrossing(CNoteSearch const& search, std::int32_t i, CPfNoteMap* map) {
    float const peak = FindNotePeak(search, i);
    if (peak < kQuietestNotePeak) {
        return;
    }
    float const limit = kAllowedNoteDifference * peak;
    // Near the end not every note has all its repetitions; the plain test knows how to stop.
    std::int32_t const reach = (kNoteRepetitions + 1) * search.m_vPeriods.front() + kWidth;
    bool const hasRoom = i + reach <= search.m_nLast;
    std::int64_t const time = SamplePosToTime(search.m_nBasePos + i, kEngineRateHz);
    for (std::size_t note = 0; note < search.m_vPeriods.size(); ++note) {
        std::int32_t const period = search.m_vPeriods[note];
        float strength = 0.0f;
        if (hasRoom ? TestWide(search, i, period, limit, &strength)
                    : TestNote(search, i, period, limit, &strength)) {
            map->AddDetection(static_cast<std::uint32_t>(note), time, strength);
        }
    }
}

void SearchLanes(CNoteSearch const& search, CPfNoteMap* map) {
    float const* const samples = search.m_pSamples;
    std::int32_t const scanEnd = search.GetScanEnd();
    std::int32_t i = 1;
    while (i + kWidth <= scanEnd) {
        auto const isBelow = hn::Lt(hn::LoadU(kWide, samples + i - 1), hn::Zero(kWide));
        auto const isAbove = hn::Ge(hn::LoadU(kWide, samples + i), hn::Zero(kWide));
        std::ptrdiff_t const first = hn::FindFirstTrue(kWide, hn::And(isBelow, isAbove));
        if (first < 0) {
            i += kWidth;
            continue;
        }
        i += static_cast<std::int32_t>(first);
        TestCrossing(search, i++, map);
    }
    for (; i < scanEnd; ++i) {
        if (IsUpwardCrossing(samples, i)) {
            TestCrossing(search, i, map);
        }
    }
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
