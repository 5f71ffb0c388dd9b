// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"
#include "base/Rounding.h"
#include "engine/beats/BeatGraph.h"
#include "engine/beats/BeatPattern.h"
#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/PcmThumbnail.h"

#include <cmath>
#include <cstdint>
#include <map>
#include <vector>

/// Turns a rough tempo into a grid of beat positions, eight points to the measure of four beats,
/// puts the measures on it and weighs the steps of a measure. It keeps nothing between calls but
/// the run's cancel flag, which must outlive it.
/// Units: positions in samples, intervals in samples per grid step (half a beat).
/// Thread: worker.
class CPfBeatBuilder {
public:
    using Nodes = std::vector<CPfBeatPoint>;
    using Chains = std::map<std::uint32_t, CPfBeatPointChain>;

    explicit CPfBeatBuilder(CCancelFlag const* cancel) : m_pCancel(cancel) {}

    /// The beat grid: onsets are found in `onsets` and scored on `envelope`; `bpm` is read as the
    /// rough tempo and refined. `out` receives the grid, sorted, without duplicates, resolution 8.
    /// A tempo of 0 leaves `bpm` alone and makes the onsets themselves the grid.
    /// Returns: true; a cancelled run gives whatever stands by then.
    bool BuildBeatPointsAlt(CPfPcmThumbnail const* envelope, CPfPcmThumbnail const* onsets,
                            float* bpm, CPfImpactPoints* out) const;

    /// Its two halves, so that `onsets` can go before the second: the onsets that a grid is looked
    /// for among, and that grid, which has the rate and the length of `candidates`.
    [[nodiscard]] CPfImpactPoints FindCandidates(CPfPcmThumbnail const& onsets) const;
    void BuildGrid(CPfPcmThumbnail const& envelope, CPfImpactPoints const& candidates, float* bpm,
                   CPfImpactPoints* out) const;

    /// Links candidates that lie whole steps apart into chains and hands out the members of the
    /// best long ones that don't overlap, and the step measured from the best of them.
    /// Returns: false on cancel, the outputs then untouched.
    bool ClusterFilterPoints(CPfPcmThumbnail const* envelope, float interval,
                             CPfImpactPoints const* in, CPfImpactPoints* out,
                             float* intervalOut) const;

    /// Rise of the envelope across a position: the sum over eight elements from it on less the sum
    /// over the eight before. Indices past either end mean the element there.
    static float CalcPointConfidence(CPfPcmThumbnail const* envelope, std::int64_t position);

    /// Drops every node that has one of strictly higher confidence within 0.45 steps.
    static bool ProximityConfFilter(float interval, Nodes* nodes);

    /// Quality of a link: how whole the number of steps between the nodes is, times a score that
    /// falls with their distance, times both confidences. 0 to 1; 0 beyond 31 steps.
    static float CalcConQuality(Nodes const& nodes, float interval, std::int32_t i, std::int32_t j);

    /// The best `most` of the connections of quality above 0 between nodes up to 32 steps apart:
    /// by descending quality, then by first and second node. Of these, those behind `last`, which
    /// may be null. `nodes` must be in position order and numbered 0, 1, 2 ..., `most` above 0.
    static std::vector<CPfBeatConnection> BestConnections(Nodes const& nodes, float step,
                                                          CPfBeatConnection const* last,
                                                          std::size_t most);

    /// Sorts by descending quality; equals keep their order. Qualities must be above 0.
    static void RankConnections(std::vector<CPfBeatConnection>* connections);

    /// Fraction of the active nodes that are in a chain; 0 when none is active.
    static float CalcCoverage(Nodes const& nodes);

    /// Refills the chain under `chainId`, if there is one, with its active nodes.
    static void RebuildChain(std::uint32_t chainId, Nodes const& nodes, Chains* chains);

    /// Average of the distances that come to one, two or three steps, each within 5 % of the
    /// estimate; the estimate itself when there are none. `positions` must ascend.
    static float AverageInterval(float estimate, std::vector<std::int64_t> const& positions);

    /// Fills the gaps of the sorted points evenly, at each gap's own spacing. An interval below 1
    /// adds nothing. Returns: true.
    static bool InterpolatePoints(float interval, CPfImpactPoints* points);

    /// Continues the points to both ends of the stream: down to 0, up to below `sampleCount`. An
    /// interval below 1 adds nothing. Returns: true.
    static bool ExtrapolatePoints(float interval, std::int64_t sampleCount,
                                  CPfImpactPoints* points);

    /// Keeps the first count * `keepFraction` (truncated) points by descending confidence; equal
    /// ones in their order. Returns: true.
    static bool RemoveLowConfidencePoints(CPfPcmThumbnail const* envelope, float keepFraction,
                                          CPfImpactPoints* points);

    /// Phase-locked grid: follows the input from its first point on, each new step corrected by
    /// the phase at which the next point comes. Returns: false on cancel.
    bool BuildGridPll(CPfImpactPoints const* in, float interval, CPfImpactPoints* out) const;

    /// Distance from the nearest whole step, -0.5 to 0.5 steps, and its absolute value.
    static float PhaseOffset(std::int64_t distance, float interval) {
        float const steps = static_cast<float>(distance) / interval;
        return steps - std::trunc(steps >= 0.0f ? steps + 0.5f : steps - 0.5f);
    }
    static float AbsPhaseOffset(std::int64_t distance, float interval) {
        return std::abs(PhaseOffset(distance, interval));
    }

    /// Whole steps in a distance, halves up.
    static std::uint32_t IntervalCount(std::int64_t distance, float interval) {
        return RoundHalfUpToUint32(static_cast<double>(distance) / static_cast<double>(interval));
    }

    /// `value` held to lo..hi.
    static float GetBoundedValue(float value, float lo, float hi);

    /// Keeps every second point, from the first on when `keepFirst` is not 0, else from the second.
    static void DownsampleByHalf(std::int8_t keepFirst, CPfImpactPoints* points);

    /// Decides which grid point is the first downbeat and adds a measure-start mark there: attacks
    /// in `attacks` (peak-held, tempo applied) vote for a phase, the energy of `envelope` weighs.
    /// Returns: false when the resolution is 0.
    static bool BuildMeasStartMarks(CPfPcmThumbnail const* envelope, CPfPcmThumbnail const* attacks,
                                    CPfImpactPoints* points);

    /// Adds marks where the grid stops being evenly spaced, and for the first and last measure.
    /// Returns: false when the resolution is 0.
    static bool BuildExtMeasStartMarks(CPfImpactPoints* points);

    /// One weight, 0 to 1, for each grid step of a measure. Returns: false when the resolution is
    /// 0.
    static bool BuildBeatPattern(CPfPcmThumbnail const* envelope, CPfImpactPoints const* points,
                                 CPfBeatPattern* pattern);

    /// True when every point strictly between i and j lies within 2 % of a step from its even
    /// place; false for i = j and for points that don't exist.
    static bool IsRangeLinear(CPfImpactPoints const* points, std::int32_t i, std::int32_t j);

private:
    [[nodiscard]] bool IsCancelled() const { return m_pCancel != nullptr && m_pCancel->IsSet(); }

    CCancelFlag const* m_pCancel;
};
