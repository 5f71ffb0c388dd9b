// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/VectorArray.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// Start gap of the shell sort for n values: 1 up to 13 values, at most 3280.
[[nodiscard]] std::uint32_t CalcSortStepSize(std::uint32_t n);

/// Sorts the values ascending. Returns: false for an empty array.
bool Sort(CVectorArray<std::int64_t>* values);

/// List of sample positions (onsets, or the points of the beat grid) with a second list of
/// measure-start marks, the rate and the length of the audio that they lie in, and the resolution:
/// grid points per measure, 0 where there is no grid. Nothing is kept sorted on insertion.
/// Units: positions and the sample count in samples, the rate in samples per second.
/// Thread: one thread at a time.
class CPfImpactPoints {
public:
    CPfImpactPoints(std::uint32_t sampleRate, std::int64_t sampleCount)
        : m_nSampleRate(sampleRate), m_nSampleCount(sampleCount) {}

    void Add(std::int64_t position);
    void AddMeasStartMark(std::int64_t position);

    /// True and point i in stored order for 0 <= i < count; else false, `position` untouched.
    bool EnumPoints(std::int32_t i, std::int64_t* position) const;

    /// The same for the measure-start marks.
    bool EnumMeasStartMarks(std::int32_t i, std::int64_t* position) const;

    /// Number of points - 1; -1 when there are none.
    [[nodiscard]] std::int32_t GetUpperBound() const;

    /// Drops the points; the marks stay.
    void RemoveAll();

    /// Index of the point nearest to `position`; of several equally near ones the first stored.
    /// Returns: false, `index` untouched, when no point is nearer to `position` than 2^62 - 1 is;
    /// short of absurd positions that means: when there are no points.
    bool GetClosestPointIndex(std::int64_t position, std::int32_t* index) const;

    /// Sorts the points and the marks ascending.
    void Sort();

    /// Sorts both lists and keeps one of each value of the points; the marks keep duplicates.
    void SortAndFilterDupes();

    /// Samples per measure of four beats at this list's rate.
    [[nodiscard]] std::uint32_t SamPerMeas(float bpm) const;

    /// Adds the other's points (not its marks) or the array's values to the points.
    void Append(CPfImpactPoints const& other);
    void Append(CVectorArray<std::int64_t> const& positions);

    /// The points in stored order, valid until the list changes.
    [[nodiscard]] std::span<std::int64_t const> Points() const;

    /// The measure-start marks in stored order, valid until the list changes.
    [[nodiscard]] std::span<std::int64_t const> MeasStartMarks() const;

    [[nodiscard]] std::uint32_t GetSampleRate() const { return m_nSampleRate; }
    [[nodiscard]] std::int64_t GetSampleCount() const { return m_nSampleCount; }
    [[nodiscard]] std::uint16_t GetResolution() const { return m_nResolution; }
    void SetResolution(std::uint16_t pointsPerMeasure) { m_nResolution = pointsPerMeasure; }

private:
    CVectorArray<std::int64_t> m_vPoints;
    CVectorArray<std::int64_t> m_vMeasStartMarks;
    std::uint32_t m_nSampleRate;
    std::int64_t m_nSampleCount;
    std::uint16_t m_nResolution = 0;
    bool m_bAscending = true; // the points are known to be in ascending order
};
