// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/PcmReader.h"
#include "engine/ProfileBuilder.h"
#include "engine/ProfileObserver.h"
#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/PcmThumbnail.h"

#include <cstdint>
#include <vector>

/// One whole run over `samples`, its record and what its stages handed on.
class CProfiledTrack final : public IProfileObserver {
public:
    using Positions = std::vector<std::int64_t>;

    explicit CProfiledTrack(std::vector<float> const& samples) {
        CPcmReader reader(samples.data(), static_cast<std::int32_t>(samples.size()));
        CProfiler profiler(nullptr);
        CProfileBuilder builder;
        builder.SetObserver(this);
        (void)builder.BuildProfile(&profiler, &reader, &m_results, nullptr, nullptr);
    }

    void OnNotes(std::int32_t found, std::int32_t kept) override {
        m_nNotesFound = found;
        m_nNotesKept = kept;
    }
    void OnThumbnails(CPfPcmThumbnail const& energy, CPfPcmThumbnail const& bass) override {
        m_energy = energy;
        m_bass = bass;
    }
    void OnImpactPoints(CPfImpactPoints const& points) override { m_vOnsets = ListOf(points); }
    void OnBaseBpm(float bpm) override { m_fBaseBpm = bpm; }
    void OnClassicPoints(CPfImpactPoints const& points) override { m_vClassic = ListOf(points); }
    void OnFoldedBpm(float bpm) override { m_fFoldedBpm = bpm; }
    void OnShortClipBpm(float bpm) override { m_fShortClipBpm = bpm; }
    void OnBeats(CPfImpactPoints const& beats) override { m_vBeats = ListOf(beats); }

    CProfileResults m_results;
    CPfPcmThumbnail m_energy;
    CPfPcmThumbnail m_bass;
    std::int32_t m_nNotesFound = -1; // -1: never told
    std::int32_t m_nNotesKept = -1;
    float m_fBaseBpm = -1.0f;
    float m_fFoldedBpm = -1.0f;
    float m_fShortClipBpm = -1.0f;
    Positions m_vOnsets;
    Positions m_vClassic;
    Positions m_vBeats;

private:
    static Positions ListOf(CPfImpactPoints const& points) {
        return {points.Points().begin(), points.Points().end()};
    }
};
