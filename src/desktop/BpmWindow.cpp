// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/BpmWindow.h"

#include "app/BPMController.h"
#include "app/Corrector.h"
#include "desktop/ChipsLine.h"
#include "desktop/FileTableView.h"
#include "desktop/Glyphs.h"
#include "desktop/NoticeBar.h"
#include "desktop/OpenPanel.h"
#include "desktop/Paths.h"
#include "desktop/ReasonLine.h"
#include "desktop/StatusLine.h"
#include "desktop/StatusTexts.h"
#include "desktop/Texts.h"
#include "platform/HomePage.h"

#include <QAction>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace {

constexpr QSize kFirstWindowSize(760, 460); // Fixed: pixels; some fifteen rows.

} // namespace

BpmWindow::BpmWindow(BPMController& controller, CSettings settings)
    : m_controller(controller),
      m_settings(settings),
      m_model(controller),
      m_pCorrector(std::make_unique<CCorrector>(controller)) {
    setObjectName("mainWindow");
    setWindowTitle(tr("Tactus"));
    setAccessibleName(windowTitle());
    setWindowIcon(ProductIcon());
    resize(kFirstWindowSize.boundedTo(screen()->availableSize()));
    setAcceptDrops(true);
    setUpCentre();
    fitSmallestSize();
    setUpActions();
    setUpCorrections();
    setUpMoreActions();
    setUpPaneActions();
    setUpToolbar();
    m_pStatusLine = new CStatusLine(this);
    setStatusBar(m_pStatusLine);
    m_pStatusLine->setUndo(*m_pUndo);
    connectAll();
    setUpColumns();
    showCorrections();
    m_pCorrector->Refresh();
    applyWishes(m_settings.Wishes());
    showCounts();
    showStatus();
    m_pTable->setFocus();
}

BpmWindow::~BpmWindow() = default;

void BpmWindow::setUpCentre() {
    auto* centre = new QWidget(this);
    m_pNotices = new CNoticeBar(centre);
    m_pChips = new CChipsLine(centre);
    auto* splitter = new QSplitter(Qt::Vertical, centre);
    auto* upper = new QWidget(splitter);
    m_pTable = new CFileTableView(m_model, upper);
    m_pTable->setObjectName("fileTable");
    m_pTable->setAccessibleName(tr("Files"));
    m_pTable->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_pReason = new CReasonLine(upper);
    auto* table = new QVBoxLayout(upper);
    table->setContentsMargins(0, 0, 0, 0);
    table->setSpacing(0);
    table->addWidget(m_pTable, 1);
    table->addWidget(m_pReason);
    setUpPane(*splitter);
    auto* layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_pNotices);
    layout->addWidget(m_pChips);
    layout->addWidget(splitter, 1);
    setCentralWidget(centre);
}

void BpmWindow::connectAll() {
    connect(m_pChips, &CChipsLine::filterChosen, &m_model, &CFileTableModel::setFilter);
    connect(m_pChips, &CChipsLine::queryChanged, &m_model, &CFileTableModel::setQuery);
    connect(m_pChips, &CChipsLine::queryLeft, m_pTable, [this] { m_pTable->setFocus(); });
    connect(&m_model, &CFileTableModel::countsChanged, this, &BpmWindow::showCounts);
    connect(&m_model, &QAbstractItemModel::modelReset, this, &BpmWindow::showReason);
    connect(m_pTable, &CFileTableView::addRequested, this, &BpmWindow::openFile);
    connect(m_pTable, &CFileTableView::onlyLookRequested, this, &BpmWindow::onlyLook);
    connect(m_pTable->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &BpmWindow::showReason);
    connect(m_pTable->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &BpmWindow::showReason);
    connect(m_pNotices, &CNoticeBar::focusLeft, m_pTable, [this] { m_pTable->setFocus(); });
}

void BpmWindow::openFile() {
    COpenPanel panel({[this](std::string const& path) {
                          return m_controller.panelShouldShowFilename(CString::FromPath(path));
                      },
                      [this](std::string const& path) {
                          return m_controller.panelCanChooseFilename(CString::FromPath(path));
                      },
                      m_wishes.m_bOtherKinds},
                     this);
    if (panel.exec() == QDialog::Accepted) {
        addPaths(panel.chosenPaths());
    }
}

void BpmWindow::addPaths(std::vector<std::string> const& paths) {
    std::vector<CString> listed = AsListPaths(paths);
    beginAddition(listed);
    m_controller.openFile(std::move(listed));
}

void BpmWindow::beginAddition(std::vector<CString> const& paths) {
    if (paths.empty()) {
        return;
    }
    m_bCloseWhenIdle = false;
    if (m_addition.m_vNames.isEmpty()) {
        CBatchStatus const status = m_controller.status();
        m_addition = {
            {}, status.m_nRows + status.m_nReturned, status.m_nKnown, status.m_nUnreadFolders};
    }
    for (CString const& path : paths) {
        m_addition.m_vNames << FileNameOf(ReadableText(std::u16string(path.Units())));
    }
}

// Of a folder that can't be read, and of files that were left out, other notices tell.
void BpmWindow::endAddition(CBatchStatus const& status) {
    if (m_addition.m_vNames.isEmpty() || status.m_bAdding) {
        return;
    }
    CAddition const before = std::exchange(m_addition, {});
    std::size_t const added = status.m_nRows + status.m_nReturned - before.m_nRows;
    std::size_t const known = status.m_nKnown - before.m_nKnown;
    bool const isTold =
        (status.m_nUnreadFolders > before.m_nUnreadFolders || status.m_nLeftOut > 0) &&
        added + known == 0;
    QString const text = AddedText(added, known, before.m_vNames, m_wishes);
    if (text.isEmpty() || isTold) {
        m_pNotices->withdraw(ENotice::Added);
    } else {
        m_pNotices->post({ENotice::Added, text, {{tr("Close"), {}}}});
    }
    tellLeftOut();
}

void BpmWindow::analyzeAgain() {
    std::size_t const replaced = m_controller.countForeignTempos();
    if (replaced == 0 || askBeforeReplacing(replaced)) {
        m_bCloseWhenIdle = false;
        m_controller.reScan();
    }
}

bool BpmWindow::askBeforeReplacing(std::size_t count) {
    QMessageBox question(this);
    question.setObjectName("askBeforeReplacing");
    question.setIcon(QMessageBox::Warning);
    question.setWindowTitle(tr("Analyze again"));
    question.setTextFormat(Qt::PlainText);
    question.setText(
        tr("%Ln tempo(s) came with the files. Replace them?", nullptr, static_cast<int>(count)));
    QString const origin = tr("Tactus did not find them; they may have been set by hand.");
    question.setInformativeText(
        m_wishes.m_bOnlyLook ? origin
                             : origin + ' ' + tr("MP3 files get the new tempo in their tags."));
    QPushButton* replace = question.addButton(tr("Analyze all again"), QMessageBox::AcceptRole);
    question.setDefaultButton(question.addButton(tr("Cancel"), QMessageBox::RejectRole));
    question.exec();
    return question.clickedButton() == replace;
}

void BpmWindow::stop() {
    m_addition = {};
    m_controller.stop();
}

void BpmWindow::stopAndClose() {
    stop();
    m_bCloseWhenIdle = true;
    showStatus();
}

void BpmWindow::openHomePage() {
    QString const page = QString::fromStdString(HomePage());
    if (!QDesktopServices::openUrl(QUrl(page))) {
        m_pNotices->post({ENotice::HomePage,
                          tr("No program could be found to open %1.").arg(Isolated(page)),
                          {{tr("Close"), {}}}});
    }
}

void BpmWindow::showHidden(CBatchStatus const& status) {
    m_pBringBack->setEnabled(status.m_nHidden > 0);
    if (status.m_nHidden > m_nHidden) {
        m_pNotices->post({ENotice::Hidden,
                          HiddenText(status.m_nHidden),
                          {{tr("Bring back"), [this] { bringBack(); }}, {tr("Close"), {}}}});
    } else if (status.m_nHidden < m_nHidden) {
        m_pNotices->withdraw(ENotice::Hidden);
    }
    m_nHidden = status.m_nHidden;
}

bool BpmWindow::takeAddedRows(std::size_t limit) {
    bool const areMoreWaiting = m_model.takeAddedRows(limit);
    m_pCorrector->LookAtNewRows();
    return areMoreWaiting;
}

void BpmWindow::reloadRow(std::size_t row) {
    m_model.reloadRow(row);
    QModelIndex const current = m_pTable->currentIndex();
    if (current.isValid() && m_model.idAt(current.row()) == row) {
        showSong();
    }
}

void BpmWindow::reloadAll() {
    m_model.reloadAll();
}

void BpmWindow::showStatus() {
    CBatchStatus const status = m_controller.status();
    m_pStatusLine->setStatus(status, m_model.counts().m_nProblems);
    m_pTable->setReading(status.m_bRunning && status.m_bReading);
    bool const isIdle = !status.m_bRunning;
    m_pAnalyze->setEnabled(isIdle && status.m_nUndone > 0);
    m_pRescan->setEnabled(status.m_nRows > status.m_nHidden);
    m_pExport->setEnabled(status.m_nRows > status.m_nHidden);
    m_pStop->setEnabled((status.m_bRunning || status.m_bAdding) && !status.m_bStopping);
    followRun(status);
    showUnreadFolders(status);
    showHidden(status);
    showSteps();
    endAddition(status);
    showReason();
    if (isIdle) {
        endClosing();
    }
}

// The window can close now: nobody needs to be told any more why it didn't.
void BpmWindow::endClosing() {
    m_pNotices->withdraw(ENotice::Closing);
    if (std::exchange(m_bCloseWhenIdle, false)) {
        close();
    }
}

void BpmWindow::showCounts() {
    m_pChips->setCounts(m_model.counts());
    m_pChips->setVisible(m_model.counts().m_nAll > 0);
    if (m_pStatusLine != nullptr) {
        m_pStatusLine->setStatus(m_controller.status(), m_model.counts().m_nProblems);
    }
}

void BpmWindow::showReason() {
    QModelIndex const current = m_pTable->currentIndex();
    bool const isSelected =
        current.isValid() && m_pTable->selectionModel()->isRowSelected(current.row(), {});
    m_pReason->setReason(isSelected ? current.data(CFileTableModel::kProblemRole).toString()
                                    : QString());
    showSong();
}

void BpmWindow::closeEvent(QCloseEvent* event) {
    if (m_bCanClose || m_bEnding) {
        keepLayout();
        event->accept();
        return;
    }
    event->ignore();
    m_pNotices->post(
        {ENotice::Closing,
         ClosingText(m_controller.status()),
         {{tr("&Stop and close"), [this] { stopAndClose(); }}, {tr("&Keep going"), {}}}});
    m_pNotices->focusLastButton();
}

// Looked at once a drag: it may hold thousands of addresses. One that names no file, such as that
// of a web page, is none of ours. A busy program may hand the addresses over at the drop only.
void BpmWindow::dragEnterEvent(QDragEnterEvent* event) {
    QMimeData const& dropped = *event->mimeData();
    bool const offersFiles =
        dropped.hasUrls() && (dropped.urls().isEmpty() || !LocalPaths(dropped).empty());
    CDropAnswer const answer = m_controller.validateDrop(offersFiles, 0);
    m_bDragIsTaken = answer.m_operation == EDropOperation::Copy;
    dragMoveEvent(event);
}

void BpmWindow::dragMoveEvent(QDragMoveEvent* event) {
    m_pTable->setDropTarget(m_bDragIsTaken);
    if (m_bDragIsTaken) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    } else {
        event->ignore();
    }
}

void BpmWindow::dragLeaveEvent(QDragLeaveEvent*) {
    m_pTable->setDropTarget(false);
}

void BpmWindow::dropEvent(QDropEvent* event) {
    m_pTable->setDropTarget(false);
    std::vector<CString> paths = AsListPaths(LocalPaths(*event->mimeData()));
    beginAddition(paths);
    m_controller.acceptDrop(std::move(paths));
    event->setDropAction(Qt::CopyAction);
    event->accept();
}
