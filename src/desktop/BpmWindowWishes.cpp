// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// What a person wants otherwise than the list has it by itself, and what is remembered of that.

#include "desktop/BpmWindow.h"

#include "app/BPMController.h"
#include "app/Corrector.h"
#include "desktop/FileTableView.h"
#include "desktop/NoticeBar.h"
#include "desktop/PreferencesDialog.h"
#include "desktop/StatusLine.h"
#include "desktop/StatusTexts.h"

void BpmWindow::applyWishes(CWishes const& wishes) {
    m_wishes = wishes;
    m_controller.setWishes(wishes);
    m_pStatusLine->setOnlyLook(wishes.m_bOnlyLook);
    m_pTable->setWishes(wishes);
    m_pCorrector->Refresh();
}

// Until the window is closed; who wants it for good finds it among the preferences.
void BpmWindow::onlyLook() {
    CWishes wishes = m_wishes;
    wishes.m_bOnlyLook = true;
    applyWishes(wishes);
    openFile();
}

void BpmWindow::openPreferences() {
    CPreferencesDialog dialog({.m_wishes = m_wishes,
                               .m_bRemembersLayout = m_settings.RemembersLayout(),
                               .m_sStored = m_settings.Stored(),
                               .m_sFile = CSettings::FilePath()},
                              this);
    if (dialog.exec() == QDialog::Accepted) {
        m_settings.SetWishes(dialog.wishes());
        m_settings.SetRemembersLayout(dialog.remembersLayout());
        applyWishes(dialog.wishes());
    }
}

void BpmWindow::setUpColumns() {
    m_pTable->setColumnLayout(CColumnLayout::FromText(m_settings.Columns()));
    m_sColumnsAtStart = m_pTable->columnLayout().Text();
    connect(m_pTable, &CFileTableView::columnsChanged, this, &BpmWindow::showSortKeys);
    showSortKeys();
}

// The size and the columns that the window came with are nobody's wish.
void BpmWindow::keepLayout() {
    QString const columns = m_pTable->columnLayout().Text();
    if (columns != m_sColumnsAtStart) {
        m_settings.SetColumns(columns == CColumnLayout::Factory().Text() ? QString() : columns);
        m_sColumnsAtStart = columns;
    }
    if (m_sizeAtStart.isValid() && size() != m_sizeAtStart && !isMaximized() && !isFullScreen()) {
        m_settings.SetWindowSize(size());
        m_sizeAtStart = size();
    }
}

void BpmWindow::tellLeftOut() {
    std::vector<CString> const found = m_controller.takeLeftOut();
    if (found.empty()) {
        return;
    }
    m_vLeftOut.insert(found.begin(), found.end());
    m_pNotices->post({ENotice::OtherKinds,
                      LeftOutText(m_vLeftOut),
                      {{tr("Add them"), [this] { addLeftOut(); }},
                       {tr("Close"), [this] { m_vLeftOut.clear(); }}}});
}

// From now on such files come in by themselves.
void BpmWindow::addLeftOut() {
    CWishes kept = m_settings.Wishes();
    kept.m_bOtherKinds = true;
    m_settings.SetWishes(kept);
    CWishes wishes = m_wishes;
    wishes.m_bOtherKinds = true;
    applyWishes(wishes);
    std::vector<CString> files(m_vLeftOut.begin(), m_vLeftOut.end());
    m_vLeftOut.clear();
    beginAddition(files);
    m_controller.openFile(std::move(files));
}
