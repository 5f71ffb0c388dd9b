// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Rows on their way out of the window, as they are shown.

#include "desktop/BpmWindow.h"

#include "app/BPMController.h"
#include "app/Batch.h"
#include "desktop/ExportDialog.h"
#include "desktop/FileTableView.h"
#include "desktop/NoticeBar.h"
#include "desktop/Texts.h"

#include <utility>

CExportRow BpmWindow::exportRow(std::size_t id) const {
    auto const text = [this, id](int column) {
        return CString(m_controller.objectValueForTableColumn(column, id)).ToUtf8();
    };
    CRowState const state = m_controller.rowState(id);
    CExportRow row;
    row.m_sPath = CString(state.m_sPath).ToPath();
    row.m_sTitle = text(CFileTableModel::kTitleColumn);
    row.m_sArtist = text(CFileTableModel::kArtistColumn);
    row.m_sTempo = state.m_bDone ? text(CFileTableModel::kTempoColumn) : std::string();
    row.m_bFromTag = state.m_bFromTag || state.m_bByHand;
    row.m_outcome = state.m_outcome;
    row.m_sMessage = ProblemText(state).toStdString();
    return row;
}

// Rows in the order shown: all that the filter lets through, or those that are selected.
void BpmWindow::exportRows() {
    std::vector<CExportRow> all;
    for (int row = 0; row < m_model.rowCount(); ++row) {
        all.push_back(exportRow(m_model.idAt(row)));
    }
    std::vector<CExportRow> selected;
    for (std::size_t const id : m_pTable->selectedIds()) {
        selected.push_back(exportRow(id));
    }
    CExportDialog dialog(std::move(all), std::move(selected), m_controller.batch().Store(), this);
    if (dialog.exec() == QDialog::Accepted) {
        m_pNotices->post({ENotice::Exported, dialog.summary(), {{tr("Close"), {}}}});
    }
}
