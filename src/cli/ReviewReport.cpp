// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/ReviewReport.h"

#include "song/SongCandidates.h"

#include <algorithm>

bool CReviewReport::Add(CReportRow const& row) {
    if (std::optional<float> const doubt = DoubtIn(row.m_candidates)) {
        m_vRows.push_back({*doubt, row});
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
