// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Order of the notes heard (AddDetection) and the pruning of those near stronger ones, before
// (Thin) and at the end (RemoveSimilarItems).

#include "engine/notes/NoteMap.h"

#include <cmath>
#include <limits>
#include <set>
#include <utility>

namespace {

/// a + b, held to the range of the type.
std::int64_t SaturatingSum(std::int64_t a, std::int64_t b) {
    constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
    if (b > 0 && a > kHighest - b) {
        return kHighest;
    }
    if (b < 0 && a < kLowest - b) {
        return kLowest;
    }
    return a + b;
}

/// -a, held to the range of the type.
std::int64_t SaturatingNegation(std::int64_t a) {
    return a == std::numeric_limits<std::int64_t>::min() ? std::numeric_limits<std::int64_t>::max()
                                                         : -a;
}

/// True when a kept time lies within [time - window, time + window].
bool IsNearKept(std::set<std::int64_t> const& kept, std::int64_t time, std::int64_t window) {
    auto const nearest = kept.lower_bound(SaturatingSum(time, SaturatingNegation(window)));
    return nearest != kept.end() && *nearest <= SaturatingSum(time, window);
}

} // namespace

CStatus CPfNoteMap::AddDetection(std::uint32_t note, std::int64_t time, float strength) {
    CPfNoteDetection const detection(note, time, static_cast<double>(strength));
    m_bOrdered = m_bOrdered && !std::isnan(strength);
    if (m_items.GetCount() == 0 || strength < m_fSmallest) {
        m_items.Append(detection);
        m_fSmallest = strength;
        return kStatusOk;
    }
    m_items.InsertAt(PlaceOf(strength), detection);
    return kStatusOk;
}

// Deliberate: the bisection leaves out the first item and takes NaN for "not weaker". Ties are
// constant, and this order decides which notes outlive the pruning.
std::uint32_t CPfNoteMap::PlaceOf(float strength) {
    auto const goesBehind = [strength](CPfNoteDetection const& item) {
        return strength < item.m_fStrength;
    };
    if (m_nThinned == 0 || goesBehind(m_items.At(m_nStrongest - 1))) {
        return m_items.Bisect(goesBehind);
    }
    // Its place is among the strongest, where only the way there tells what comes of it when there
    // are notes without strength. It is the way through all notes, those dropped included.
    std::uint32_t low = 0;
    std::uint32_t high = GetHeardCount() - 1;
    while (high - low > 1) {
        std::uint32_t const middle = low + (high - low) / 2;
        bool const isBehind = middle < m_nStrongest && goesBehind(m_items.At(middle));
        (isBehind ? low : high) = middle;
    }
    return high;
}

void CPfNoteMap::Thin(std::int64_t window, std::int64_t horizon, std::uint32_t strongest) {
    if (!m_bOrdered || m_items.GetCount() <= strongest) {
        return;
    }
    std::uint32_t const count = m_items.GetCount();
    std::set<std::int64_t> kept;   // times of those that nothing can remove any more
    std::set<std::int64_t> unsure; // of those that may be removed, or not
    std::uint32_t rank = 0;
    m_items.KeepIf([&](CPfNoteDetection const& item) {
        // One at the same time as one before it shares its fate, or is removed by it.
        bool const isRemoved =
            unsure.contains(item.m_nTime) || IsNearKept(kept, item.m_nTime, window);
        bool const isSure = rank == 0 || (SaturatingSum(item.m_nTime, window) < horizon &&
                                          !IsNearKept(unsure, item.m_nTime, window));
        if (!isRemoved) {
            (isSure ? kept : unsure).insert(item.m_nTime);
        }
        ++rank;
        return !isRemoved || rank <= strongest || rank == count;
    });
    m_nThinned += count - m_items.GetCount();
    m_nStrongest = strongest;
}

CStatus CPfNoteMap::RemoveSimilarItems(std::int64_t window) {
    std::set<std::int64_t> keptTimes;
    m_items.KeepIf([&](CPfNoteDetection const& item) {
        bool const isKept = !IsNearKept(keptTimes, item.m_nTime, window);
        if (isKept) {
            keptTimes.insert(item.m_nTime);
        }
        return isKept;
    });
    m_nThinned = 0;
    return kStatusOk;
}

CStatus CPfNoteMap::EnumItems(std::int32_t i, CPfNoteDetection** item) {
    if (i < 0 || static_cast<std::uint32_t>(i) >= m_items.GetCount()) {
        return kStatusNothing;
    }
    *item = &m_items.At(static_cast<std::uint32_t>(i));
    return kStatusOk;
}
