// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/ProfileObserver.h"

#include <cstdint>
#include <optional>
#include <vector>

/// Keeps what the stages of one run hand on. What a run never reached stays empty.
class CProfileTrace final : public IProfileObserver {
public:
    void OnNotes(std::int32_t found, std::int32_t kept) override;
    void OnThumbnails(CPfPcmThumbnail const& energy, CPfPcmThumbnail const& bass) override;
    void OnImpactPoints(CPfImpactPoints const& points) override;
    void OnBaseBpm(float bpm) override { m_baseBpm = bpm; }
    void OnClassicPoints(CPfImpactPoints const& points) override;
    void OnFoldedBpm(float bpm) override { m_foldedBpm = bpm; }
    void OnShortClipBpm(float bpm) override { m_shortClipBpm = bpm; }
    void OnBeats(CPfImpactPoints const& beats) override;

    std::optional<float> m_baseBpm;
    std::optional<float> m_foldedBpm;
    std::optional<float> m_shortClipBpm;
    std::vector<std::int64_t> m_vBeats;
    std::vector<std::int64_t> m_vImpactPoints;
    std::vector<std::int64_t> m_vClassicPoints;
    std::vector<float> m_vEnergy;
    std::vector<float> m_vBass;
    std::int32_t m_nNotesFound = 0;
    std::int32_t m_nNotesKept = 0;
};
