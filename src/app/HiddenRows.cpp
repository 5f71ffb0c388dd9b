// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Rows are never removed: others know them by their numbers. Hidden ones only don't count.

#include "app/BPMController.h"
#include "app/ControllerRow.h"

#include <algorithm>

// With the lock held.
bool BPMController::isToDo(CRow const& row) {
    return !row.m_file.IsDone() && !row.m_bHidden;
}

void BPMController::setHidden(std::vector<std::size_t> const& rows, bool isHidden) {
    {
        std::scoped_lock const guard(m_lock);
        for (std::size_t const row : rows) {
            if (row < m_vFiles.size() && m_vFiles[row]->m_bHidden != isHidden) {
                setRowHidden(row, isHidden);
            }
        }
    }
    m_view.reloadAll();
    m_view.statusChanged();
}

// With the lock held. A running row that is hidden is given up; the batch goes on behind it.
void BPMController::setRowHidden(std::size_t index, bool isHidden) {
    CRow& row = *m_vFiles[index];
    bool const isDone = row.m_file.IsDone();
    if (isHidden && index == m_nRunningRow && !isDone && !m_bRunCancelled) {
        m_bRunCancelled = true;
        m_pFileAnalyzer->Cancel();
        restoreRunningRow();
    }
    row.m_bHidden = isHidden;
    auto const count = [isHidden](std::size_t& number) {
        number = isHidden ? number - 1 : number + 1;
    };
    m_status.m_nHidden = isHidden ? m_status.m_nHidden + 1 : m_status.m_nHidden - 1;
    if (!isDone) {
        count(m_status.m_nUndone);
        if (m_status.m_nBatchFiles > 0) {
            count(m_status.m_nBatchFiles);
        }
    }
    if (!isHidden) {
        m_nFirstUndone = std::min(m_nFirstUndone, index);
    }
}

// With the lock held: whoever adds a hidden file again wants it back.
void BPMController::noteKnownRow(std::size_t index) {
    if (index == kNoRow || !m_vFiles[index]->m_bHidden) {
        ++m_status.m_nKnown;
        return;
    }
    setRowHidden(index, false);
    ++m_status.m_nReturned;
    m_view.reloadAll();
}
