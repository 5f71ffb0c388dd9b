// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// What the window tells beside its table: how far a run is and what came of it, folders that could
// not be read, and the keys.

#include "desktop/BpmWindow.h"

#include "app/BPMController.h"
#include "app/Corrector.h"
#include "desktop/DesktopNote.h"
#include "desktop/ListDialog.h"
#include "desktop/NoticeBar.h"
#include "desktop/Numbers.h"
#include "desktop/StatusLine.h"
#include "desktop/StatusTexts.h"
#include "desktop/Texts.h"

#include <QAction>

namespace {

constexpr qint64 kLongRunMilliseconds = 10'000; // Fixed: somebody may have turned away meanwhile.

} // namespace

// A run may be over before the window has seen it begin.
void BpmWindow::followRun(CBatchStatus const& status) {
    if (status.m_bRunning && !m_run.m_bRunning) {
        m_run.m_bRunning = true;
        m_run.m_time.start();
        m_pStatusLine->setSummary({});
    }
    setWindowTitle(status.m_bRunning
                       ? tr("%1 – Tactus").arg(PercentText(OverallPercent(status)).trimmed())
                       : tr("Tactus"));
    if (status.m_bRunning || (!m_run.m_bRunning && status.m_nHeard == m_run.m_nHeard)) {
        return;
    }
    qint64 const milliseconds = m_run.m_time.isValid() ? m_run.m_time.elapsed() : 0;
    endRun(status, milliseconds);
    m_pCorrector->Refresh(); // what it has stored is a step now
    m_run = {};
    m_run.m_nHeard = status.m_nHeard;
    m_run.m_nStored = status.m_nStored;
    m_run.m_nProblems = status.m_nProblems;
}

void BpmWindow::endRun(CBatchStatus const& status, qint64 milliseconds) {
    CRunSummary const summary{status.m_nHeard - m_run.m_nHeard, status.m_nStored - m_run.m_nStored,
                              status.m_nProblems - m_run.m_nProblems, milliseconds};
    if (summary.m_nHeard == 0) {
        return;
    }
    m_pStatusLine->setSummary(SummaryText(summary));
    if (milliseconds >= kLongRunMilliseconds && !isActiveWindow() && !m_bEnding) {
        emit noteWanted(tr("Tactus is done"), SummaryText(summary));
    }
}

void BpmWindow::showUnreadFolders(CBatchStatus const& status) {
    if (status.m_nUnreadFolders == m_nUnreadFolders) {
        return;
    }
    m_nUnreadFolders = status.m_nUnreadFolders;
    m_pNotices->post(
        {ENotice::Folders,
         FoldersText(m_nUnreadFolders - m_nReadFolders, ReadableText(status.m_sUnreadFolder)),
         {{tr("Show"), [this] { listUnreadFolders(); }},
          {tr("Close"), [this] { m_nReadFolders = m_nUnreadFolders; }}}});
}

void BpmWindow::listUnreadFolders() {
    QList<QStringList> rows;
    std::vector<CString> const folders = m_controller.unreadFolders();
    for (std::size_t i = m_nReadFolders; i < folders.size(); ++i) {
        rows << QStringList{Isolated(ReadableText(std::u16string(folders[i].Units())))};
    }
    m_nReadFolders = m_nUnreadFolders;
    CListDialog dialog(tr("Folders that could not be read"), {tr("Folder")}, rows, this);
    dialog.exec();
}

// All that has a key, as the menus have it; then what the pane alone understands.
void BpmWindow::showKeys() {
    QList<QStringList> rows;
    for (QAction const* action : actions()) {
        QStringList keys;
        for (QKeySequence const& key : action->shortcuts()) {
            keys << ShortcutText(key);
        }
        if (!keys.isEmpty()) {
            rows << QStringList{keys.join(QStringLiteral(", ")), PlainActionText(*action)};
        }
    }
    auto const add = [&rows](QList<QKeySequence> const& keys, QString const& text) {
        QStringList names;
        for (QKeySequence const& key : keys) {
            names << ShortcutText(key);
        }
        rows << QStringList{names.join(QStringLiteral(", ")), text};
    };
    add({Qt::Key_Home, Qt::Key_End}, tr("First and last row"));
    add({Qt::Key_Return}, tr("Show the song"));
    add({Qt::ALT | Qt::Key_1, Qt::ALT | Qt::Key_2, Qt::ALT | Qt::Key_3, Qt::ALT | Qt::Key_4,
         Qt::ALT | Qt::Key_5},
        tr("Filters"));
    add({Qt::Key_Left, Qt::Key_Right}, tr("In the song: beat by beat"));
    add({Qt::CTRL | Qt::Key_Left, Qt::CTRL | Qt::Key_Right}, tr("In the song: measure by measure"));
    add({Qt::Key_Home, Qt::Key_End}, tr("In the song: to its start and end"));
    add({Qt::Key_Space}, tr("In the song: play and pause"));
    add({Qt::Key_T}, tr("In the song: tap the tempo"));
    add({Qt::Key_Return}, tr("In the song: take the tapped tempo"));
    CListDialog dialog(tr("Keys"), {tr("Key"), tr("Does")}, rows, this);
    dialog.addChoice(tr("Open the guide"));
    if (dialog.exec() == QDialog::Accepted) {
        m_controller.onHelp();
    }
}
