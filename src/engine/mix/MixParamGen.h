// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"

#include <cstdint>

class CPfImpactPoints;
class CPfPcmThumbnail;
class CProfileResults;

/// Derives what a mix of two tracks needs: where the intro ends and the outro starts, the fade
/// points of the intro, and the sprockets: pairs of grid positions near either end between which
/// the track is loud enough to be mixed over. The thumbnails come with the tempo applied.
/// Units: positions in samples.
/// Thread: worker.
class CPfMixParamGen {
public:
    /// First element above a tenth of the loudest running measure average; 0 when there is none.
    static std::int64_t FindIntroEnd(CPfPcmThumbnail const* thumbnail);

    /// Quietest element of the last measure that is still loud (over half the loudest running
    /// average). Without one, or in less than a measure: the last sample; 0 when no tempo is set.
    static std::int64_t FindOutroStart(CPfPcmThumbnail const* thumbnail);

    /// `count` positions from `start` on at which a level, which falls with the loudness of each
    /// element but at most by |fallLimit| a second, passes 1, 2, ... times `levelStep`. What is not
    /// reached lies at the end of the thumbnail.
    /// Shape: `out` has room for `count` entries.
    /// Returns: false, nothing written, when a second has no whole element.
    static bool BuildIntroFadePoints(std::uint64_t* out, std::uint16_t count,
                                     std::int32_t levelStep, std::int32_t fallLimit,
                                     CPfPcmThumbnail const* thumbnail, std::int64_t start);

    /// Adds the intro and outro sprockets to `results`, from the grid and its measure marks where
    /// they give two pairs in order, else from onsets, whose search `cancel` stops.
    /// Returns: true.
    static bool BuildBeatMixSprockets(CPfPcmThumbnail const* thumbnail, CPfImpactPoints const* grid,
                                      std::uint16_t measures, CCancelFlag const* cancel,
                                      CProfileResults* results);

    /// Range of `measures` measures, as point indices, near `anchor`, moved towards the start (or
    /// the end) of the grid and then inwards while it is too quiet. In a short grid `start` may be
    /// negative.
    /// Returns: false, outputs untouched, when the grid is empty.
    static bool FindSuitableBeatRange(CPfImpactPoints const* grid, CPfPcmThumbnail const* thumbnail,
                                      std::uint16_t measures, std::int64_t anchor, bool fromEnd,
                                      std::int32_t* start, std::int32_t* end);

    /// Sprockets from pairs of onsets that lie `measures` measures apart within 0.5 %, or else from
    /// the intro's end and the outro's start alone. Reads the tempo of `results`. Returns: true.
    static bool BuildBeatMixSprocketsClassic(CPfPcmThumbnail const* thumbnail,
                                             CCancelFlag const* cancel, std::uint16_t measures,
                                             CProfileResults* results);
};
