// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The window's lower part: the song of the selected row.

#include "desktop/BpmWindow.h"

#include "app/BPMController.h"
#include "app/Corrector.h"
#include "desktop/FileTableView.h"
#include "desktop/SongPane.h"

#include <QAction>
#include <QScreen>
#include <QSplitter>
#include <algorithm>

namespace {

constexpr QSize kSizeWithPane(760, 620); // Fixed: pixels; twelve rows and the pane.
constexpr QSize kSmallestSize(420, 220); // Fixed: pixels; the toolbar still fits, and two rows.

} // namespace

void BpmWindow::setUpPane(QSplitter& splitter) {
    m_pPane = new CSongPane(m_pictures, FindSoundOutput(), &splitter);
    splitter.addWidget(m_pPane);
    splitter.setStretchFactor(0, 1);
    splitter.setStretchFactor(1, 0);
    splitter.setChildrenCollapsible(false);
    m_pPane->hide();
    connect(m_pPane, &CSongPane::settled, this, &BpmWindow::fitSmallestSize);
}

// Nothing in the pane is squeezed: what is open keeps its room, as far as the screen has it. At its
// first size the window doesn't grow for a song of which there is more to tell.
void BpmWindow::fitSmallestSize() {
    QSize smallest = kSmallestSize;
    if (!m_pPane->isHidden()) {
        QSize const pane = m_pPane->minimumSizeHint();
        smallest = {std::max(smallest.width(), pane.width()), smallest.height() + pane.height()};
    }
    setMinimumSize(smallest.boundedTo(kSizeWithPane).boundedTo(screen()->availableSize()));
}

void BpmWindow::setUpPaneActions() {
    m_pTogglePane =
        makeAction("actionPane", tr("Show the song"),
                   tr("Show or hide the song of the selected row"), {QKeySequence(Qt::Key_F9)});
    m_pTogglePane->setCheckable(true);
    connect(m_pTogglePane, &QAction::triggered, this, [this](bool isOpen) {
        showPane(isOpen);
        m_settings.SetPaneOpen(isOpen);
    });
    m_pSwitchPane =
        makeAction("actionSwitch", tr("Table or song"),
                   tr("Go from the table to the song and back"), {QKeySequence(Qt::Key_F6)});
    connect(m_pSwitchPane, &QAction::triggered, this, &BpmWindow::switchPane);
    auto* open = new QAction(tr("Show the song"), m_pTable);
    open->setObjectName("actionOpenPane");
    open->setShortcuts({QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)});
    open->setShortcutContext(Qt::WidgetShortcut);
    connect(open, &QAction::triggered, this, [this] {
        if (!m_pTogglePane->isChecked()) {
            m_pTogglePane->trigger();
        }
    });
    m_pTable->addAction(open);
}

void BpmWindow::openPaneAtStart() {
    QSize const room = screen()->availableSize();
    bool const hasRoom =
        room.width() >= kSizeWithPane.width() && room.height() >= kSizeWithPane.height();
    if (m_settings.PaneOpen().value_or(hasRoom)) {
        resize(kSizeWithPane.boundedTo(room));
        showPane(true);
    }
    if (std::optional<QSize> const size = m_settings.WindowSize()) {
        resize(size->boundedTo(room));
    }
    m_sizeAtStart = size();
}

void BpmWindow::showPane(bool isOpen) {
    if (!isOpen && m_pPane->isAncestorOf(focusWidget())) {
        m_pTable->setFocus();
    }
    m_pTogglePane->setChecked(isOpen);
    m_pPane->setVisible(isOpen);
    fitSmallestSize();
    showSong();
}

void BpmWindow::switchPane() {
    bool const isInPane = m_pPane->isAncestorOf(focusWidget());
    if (isInPane || m_pPane->isHidden()) {
        m_pTable->setFocus();
    } else {
        m_pPane->takeFocus();
    }
}

// A pane that is shut hears nothing and keeps nothing.
// What is selected is known again when the table's rows are: a song that is still shown plays on.
void BpmWindow::showSong() {
    if (m_pTable->isRestoring()) {
        return;
    }
    QModelIndex const current = m_pTable->currentIndex();
    bool const isSelected =
        current.isValid() && m_pTable->selectionModel()->isRowSelected(current.row(), {});
    if (m_pPane->isHidden() || !isSelected) {
        m_pPane->setSong(std::nullopt);
        return;
    }
    std::size_t const id = m_model.idAt(current.row());
    m_pPane->setTempo(m_pCorrector->Tempo(id));
    CRowState const row = m_controller.rowState(id);
    std::u16string const tempo =
        m_controller.objectValueForTableColumn(CFileTableModel::kTempoColumn, id);
    m_pPane->setTagSigns({row.m_nPercent < 0 ? tempo : std::u16string(), row.m_bInFile,
                          row.m_bNotInFile, row.m_writeProblem});
    m_pPane->setSong(
        CPaneSong{CString(row.m_sPath).ToPath(),
                  current.siblingAtColumn(CFileTableModel::kTitleColumn).data().toString(),
                  current.siblingAtColumn(CFileTableModel::kArtistColumn).data().toString()});
}
