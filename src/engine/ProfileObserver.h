// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

class CPfImpactPoints;
class CPfPcmThumbnail;

/// Hears what the stages of a run hand on, in the order of the calls below. What is passed belongs
/// to the run and is valid during the call only. A call that its run never reaches is left out, and
/// one that is not overridden does nothing.
/// Thread: the run's worker.
class IProfileObserver {
public:
    /// Bass notes: how many the pass found, and how many the pruning kept.
    virtual void OnNotes(std::int32_t /*found*/, std::int32_t /*kept*/) {}

    /// The spectral energy and the bass envelope of the finished pass.
    virtual void OnThumbnails(CPfPcmThumbnail const& /*energy*/, CPfPcmThumbnail const& /*bass*/) {}

    /// The onsets in the peak-held energy, and the tempo of their intervals.
    virtual void OnImpactPoints(CPfImpactPoints const& /*points*/) {}
    virtual void OnBaseBpm(float /*bpm*/) {}

    /// The onsets in the smoothed bass, and the tempo after the octave fold.
    virtual void OnClassicPoints(CPfImpactPoints const& /*points*/) {}
    virtual void OnFoldedBpm(float /*bpm*/) {}

    /// The tempo after the rule for short clips, which the beat grid starts from.
    virtual void OnShortClipBpm(float /*bpm*/) {}

    /// The beat grid.
    virtual void OnBeats(CPfImpactPoints const& /*beats*/) {}

    /// The run's end. It needs its envelopes no more, so that they may be moved away.
    virtual void OnDone(CPfPcmThumbnail& /*energy*/, CPfPcmThumbnail& /*bass*/) {}

protected:
    IProfileObserver() = default;
    IProfileObserver(IProfileObserver const&) = default;
    IProfileObserver& operator=(IProfileObserver const&) = default;
    ~IProfileObserver() = default;
};
