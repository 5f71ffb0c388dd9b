// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/ProfileTrace.h"

#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/PcmThumbnail.h"

namespace {

std::vector<std::int64_t> PositionsOf(CPfImpactPoints const& points) {
    auto const positions = points.Points();
    return {positions.begin(), positions.end()};
}

std::vector<float> ElementsOf(CPfPcmThumbnail const& thumbnail) {
    auto const elements = thumbnail.Elements();
    return {elements.begin(), elements.end()};
}

} // namespace

void CProfileTrace::OnNotes(std::int32_t found, std::int32_t kept) {
    m_nNotesFound = found;
    m_nNotesKept = kept;
}

void CProfileTrace::OnThumbnails(CPfPcmThumbnail const& energy, CPfPcmThumbnail const& bass) {
    m_vEnergy = ElementsOf(energy);
    m_vBass = ElementsOf(bass);
}

void CProfileTrace::OnImpactPoints(CPfImpactPoints const& points) {
    m_vImpactPoints = PositionsOf(points);
}

void CProfileTrace::OnClassicPoints(CPfImpactPoints const& points) {
    m_vClassicPoints = PositionsOf(points);
}

void CProfileTrace::OnBeats(CPfImpactPoints const& beats) {
    m_vBeats = PositionsOf(beats);
}
