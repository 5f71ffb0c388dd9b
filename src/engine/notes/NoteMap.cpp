// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Order of the notes heard (AddDetection) and the pruning of those near stronger ones.

#include "engine/notes/NoteMap.h"

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
    if (m_items.GetCount() == 0 || strength < m_fSmallest) {
        m_items.Append(detection);
        m_fSmallest = strength;
        return kStatusOk;
    }
    // Deliberate: the bisection leaves out the first item and takes NaN for "not weaker". Ties are
    // constant, and this order decides which notes outlive the pruning.
    std::uint32_t const place = m_items.Bisect(
        [strength](CPfNoteDetection const& item) { return strength < item.m_fStrength; });
    m_items.InsertAt(place, detection);
    return kStatusOk;
}

CStatus CPfNoteMap::RemoveSimilarItems(std::int64_t window) {
    CItems kept;
    std::set<std::int64_t> keptTimes;
    m_items.ForEach([&](CPfNoteDetection const& item) {
        if (!IsNearKept(keptTimes, item.m_nTime, window)) {
            keptTimes.insert(item.m_nTime);
            kept.Append(item);
        }
    });
    m_items = std::move(kept);
    return kStatusOk;
}

CStatus CPfNoteMap::EnumItems(std::int32_t i, CPfNoteDetection** item) {
    if (i < 0 || static_cast<std::uint32_t>(i) >= m_items.GetCount()) {
        return kStatusNothing;
    }
    *item = &m_items.At(static_cast<std::uint32_t>(i));
    return kStatusOk;
}
