// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/RowQueue.h"

#include <utility>

void CRowQueue::Put(std::size_t index, CReportRow row) {
    std::size_t const place = index - m_nFirst;
    if (place >= m_vRows.size()) {
        m_vRows.resize(place + 1);
    }
    m_vRows[place] = std::move(row);
}

bool CRowQueue::HandOn(RowSink const& sink, bool skipsGaps) {
    while (!m_vRows.empty() && (m_vRows.front() || skipsGaps)) {
        std::optional<CReportRow> const row = std::move(m_vRows.front());
        m_vRows.pop_front();
        ++m_nFirst;
        if (row && !sink(*row)) {
            m_nFirst += m_vRows.size();
            m_vRows.clear();
            return false;
        }
    }
    return true;
}
