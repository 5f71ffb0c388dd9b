// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/envelope/ImpactPoints.h"

#include "engine/envelope/Tempo.h"

#include <algorithm>
#include <optional>

namespace {

constexpr std::uint32_t kSmallestGappedCount = 14;    // Fixed: shorter arrays start with gap 1.
constexpr std::uint32_t kLargestGap = 3280;           // Derived: (3^8 - 1) / 2.
constexpr std::uint32_t kLargestGapCount = 29'525;    // Derived: 9 * kLargestGap + 5.
constexpr std::int64_t kNoPoint = 0x3FFFFFFFFFFFFFFF; // Fixed: a point this far is never nearest.

// Fixed: what the filter takes for the value before the first one.
constexpr std::int64_t kNoPrevious = -0x7FFFFFFFFFFFFFFF;

/// |a - b|, also where the difference needs 64 bits without sign.
std::uint64_t Distance(std::int64_t a, std::int64_t b) {
    auto const from = static_cast<std::uint64_t>(std::min(a, b));
    return static_cast<std::uint64_t>(std::max(a, b)) - from;
}

bool EnumPositions(std::span<std::int64_t const> positions, std::int32_t i,
                   std::int64_t* position) {
    if (i < 0 || static_cast<std::size_t>(i) >= positions.size()) {
        return false;
    }
    *position = positions[static_cast<std::size_t>(i)];
    return true;
}

/// One pass of the shell sort: values `gap` apart are in order afterwards.
void InsertionSort(std::span<std::int64_t> values, std::size_t gap) {
    for (std::size_t i = gap; i < values.size(); ++i) {
        std::int64_t const value = values[i];
        std::size_t hole = i;
        while (hole >= gap && values[hole - gap] > value) {
            values[hole] = values[hole - gap];
            hole -= gap;
        }
        values[hole] = value;
    }
}

/// Index of the first of the values nearest to `position`, looked for one by one.
std::optional<std::size_t> NearestOfAny(std::span<std::int64_t const> values,
                                        std::int64_t position) {
    std::optional<std::size_t> best;
    // Deliberate: the search starts from a far position of no point, which a point must beat.
    std::uint64_t nearest = Distance(kNoPoint, position);
    for (std::size_t i = 0; i < values.size(); ++i) {
        std::uint64_t const distance = Distance(values[i], position);
        if (distance < nearest) {
            nearest = distance;
            best = i;
        }
    }
    return best;
}

/// The same for ascending values: the nearest one stands beside the place of `position`.
std::optional<std::size_t> NearestOfAscending(std::span<std::int64_t const> values,
                                              std::int64_t position) {
    auto const above = std::ranges::lower_bound(values, position);
    auto const last = above == values.end() ? above : above + 1;
    auto first = above;
    if (above != values.begin()) {
        first = std::ranges::lower_bound(values.begin(), above, *(above - 1));
    }
    auto const found = NearestOfAny({first, last}, position);
    if (!found) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(first - values.begin()) + *found;
}

} // namespace

std::uint32_t CalcSortStepSize(std::uint32_t n) {
    if (n < kSmallestGappedCount) {
        return 1;
    }
    // Deliberate: the gap stops growing here, however long the array.
    if (n >= kLargestGapCount) {
        return kLargestGap;
    }
    std::uint32_t h = 0;
    while (h < n) {
        h = 3 * h + 1;
    }
    return h / 9;
}

bool Sort(CVectorArray<std::int64_t>* values) {
    std::span<std::int64_t> const all(values->GetData(), values->GetCount());
    if (all.empty()) {
        return false;
    }
    for (std::size_t gap = CalcSortStepSize(static_cast<std::uint32_t>(all.size())); gap > 0;
         gap /= 3) {
        InsertionSort(all, gap);
    }
    return true;
}

void CPfImpactPoints::Add(std::int64_t position) {
    std::span<std::int64_t const> const points = Points();
    m_bAscending = m_bAscending && (points.empty() || points.back() <= position);
    m_vPoints.Add(position);
}

void CPfImpactPoints::AddMeasStartMark(std::int64_t position) {
    m_vMeasStartMarks.Add(position);
}

bool CPfImpactPoints::EnumPoints(std::int32_t i, std::int64_t* position) const {
    return EnumPositions(Points(), i, position);
}

bool CPfImpactPoints::EnumMeasStartMarks(std::int32_t i, std::int64_t* position) const {
    return EnumPositions(MeasStartMarks(), i, position);
}

std::int32_t CPfImpactPoints::GetUpperBound() const {
    return static_cast<std::int32_t>(Points().size()) - 1;
}

void CPfImpactPoints::RemoveAll() {
    m_vPoints.RemoveAll();
    m_bAscending = true;
}

bool CPfImpactPoints::GetClosestPointIndex(std::int64_t position, std::int32_t* index) const {
    auto const found =
        m_bAscending ? NearestOfAscending(Points(), position) : NearestOfAny(Points(), position);
    if (!found) {
        return false;
    }
    *index = static_cast<std::int32_t>(*found);
    return true;
}

void CPfImpactPoints::Sort() {
    ::Sort(&m_vPoints);
    ::Sort(&m_vMeasStartMarks);
    m_bAscending = true;
}

void CPfImpactPoints::SortAndFilterDupes() {
    Sort();
    CVectorArray<std::int64_t> kept;
    // Deliberate: the first value is compared as well, so the one value kNoPrevious never survives.
    std::int64_t previous = kNoPrevious;
    for (std::int64_t const position : Points()) {
        if (position != previous) {
            kept.Add(position);
            previous = position;
        }
    }
    m_vPoints = kept;
}

std::uint32_t CPfImpactPoints::SamPerMeas(float bpm) const {
    return ::SamPerMeas(bpm, m_nSampleRate);
}

void CPfImpactPoints::Append(CPfImpactPoints const& other) {
    Append(other.m_vPoints);
}

void CPfImpactPoints::Append(CVectorArray<std::int64_t> const& positions) {
    m_bAscending = m_bAscending && positions.IsEmpty();
    m_vPoints.Append(positions);
}

std::span<std::int64_t const> CPfImpactPoints::Points() const {
    return {m_vPoints.GetData(), m_vPoints.GetCount()};
}

std::span<std::int64_t const> CPfImpactPoints::MeasStartMarks() const {
    return {m_vMeasStartMarks.GetData(), m_vMeasStartMarks.GetCount()};
}
