// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"

#include <cstdint>

class CPfImpactPoints;
class CPfPcmThumbnail;

/// Finds onsets in a thumbnail: a scan from the end to the start looks for steep rises, and a
/// search lowers the threshold until there are enough of them for the length of the audio.
/// Thread: worker; the cancel flag, which may be null and must outlive the finder, is polled before
/// each scan of a search.
class CPfImpactFinder {
public:
    explicit CPfImpactFinder(CCancelFlag const* cancel) : m_pCancel(cancel) {}

    /// Slope detector: adds the foot of every rise that is steeper than `threshold` per element
    /// towards the peak remembered, at most `hold` elements ahead. After each, `hold` elements are
    /// passed over. Returns: the points added.
    static std::int32_t FindImpactPoints(CPfPcmThumbnail const* thumbnail, float threshold,
                                         std::uint32_t hold, CPfImpactPoints* points);

    /// The same over elements high down to low; the first two are never tested.
    static std::int32_t FindImpactPointsRange(CPfPcmThumbnail const* thumbnail, float threshold,
                                              std::uint32_t hold, std::int32_t low,
                                              std::int32_t high, CPfImpactPoints* points);

    /// Ratio detector: adds the peak where it exceeds `ratio` times the element under test.
    static std::int32_t FindImpactPointsClassic(CPfPcmThumbnail const* thumbnail, float ratio,
                                                std::uint32_t hold, CPfImpactPoints* points);

    /// Lowers the threshold until the detector finds `pointsPerMeasure` points for every measure at
    /// 82 BPM, or the tries run out; the points of the last try stand, sorted.
    /// Returns: their number; 0, `points` unchanged, when a measure has no samples.
    std::int32_t BuildImpactPoints(CPfPcmThumbnail const* thumbnail, std::uint16_t pointsPerMeasure,
                                   CPfImpactPoints* points) const;
    std::int32_t BuildImpactPointsClassic(CPfPcmThumbnail const* thumbnail,
                                          std::uint16_t pointsPerMeasure,
                                          CPfImpactPoints* points) const;

    /// The slope search in segments of ten seconds, each with a threshold of its own.
    /// Returns: the number of points, which are sorted and without duplicates.
    std::int32_t BuildImpactPointsRange(CPfPcmThumbnail const* thumbnail,
                                        std::uint16_t pointsPerMeasure,
                                        CPfImpactPoints* points) const;

private:
    CCancelFlag const* m_pCancel;
};
