// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/ReviewReport.h"

#include "song/SongCandidates.h"

#include <algorithm>

namespace {

constexpr float kCloseShare = 0.5f; // Fixed: of the reported reading's score; told in the help.

/// Score of the reported tempo among the readings; 0 when it isn't there.
float ReportedScore(CTempoCandidates const& candidates) {
    for (CTempoCandidate const& reading : candidates.m_vCandidates) {
        if (reading.m_nTimes == reading.m_nOver && reading.m_nTimes != 0) {
            return reading.m_fScore;
        }
    }
    return 0.0f;
}

} // namespace

bool CReviewReport::Add(CReportRow const& row) {
    CTempoCandidate const* const other = OtherReading(row.m_candidates);
    float const reported = ReportedScore(row.m_candidates);
    if (other != nullptr && other->m_fScore >= kCloseShare * reported) {
        m_vRows.push_back({other->m_fScore - reported, row});
    }
    return true;
}

bool CReviewReport::End() {
    std::ranges::stable_sort(m_vRows, std::ranges::greater(), &CDoubtfulRow::m_fDoubt);
    bool isWritten = true;
    for (CDoubtfulRow const& doubtful : m_vRows) {
        isWritten = isWritten && m_pReport->Add(doubtful.m_row);
    }
    return m_pReport->End() && isWritten;
}
