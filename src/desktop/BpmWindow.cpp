// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/BpmWindow.h"

#include "app/BPMController.h"
#include "desktop/FileTableView.h"
#include "desktop/Glyphs.h"
#include "desktop/ImageClickView.h"
#include "desktop/OpenPanel.h"
#include "desktop/Paths.h"
#include "desktop/StatusLine.h"
#include "desktop/Texts.h"
#include "platform/HomePage.h"

#include <QAction>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDropEvent>
#include <QMimeData>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>
#include <utility>

namespace {

constexpr QSize kFirstSize(760, 460);    // Fixed: pixels; some fifteen rows.
constexpr QSize kSmallestSize(420, 220); // Fixed: pixels; the toolbar still fits.
constexpr int kToolIconPixels = 20;      // Fixed: side of the toolbar's icons.

} // namespace

BpmWindow::BpmWindow(BPMController& controller, QWidget* parent)
    : QMainWindow(parent), m_controller(controller), m_model(controller) {
    setObjectName("mainWindow");
    setWindowTitle(tr("Tactus"));
    setAccessibleName(windowTitle());
    setWindowIcon(ProductIcon());
    setMinimumSize(kSmallestSize);
    resize(kFirstSize.boundedTo(screen()->availableSize()));
    setAcceptDrops(true);
    setUpTable();
    setUpActions();
    setUpToolbar();
    m_pStatusLine = new CStatusLine(this);
    setStatusBar(m_pStatusLine);
    showStatus();
    m_pTable->setFocus();
}

void BpmWindow::setUpTable() {
    m_pTable = new CFileTableView(m_model, this);
    m_pTable->setObjectName("fileTable");
    m_pTable->setAccessibleName(tr("Files"));
    m_pTable->setContextMenuPolicy(Qt::ActionsContextMenu);
    setCentralWidget(m_pTable);
    connect(m_pTable->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &BpmWindow::showProblem);
}

QAction* BpmWindow::makeAction(QString const& name, QString const& text, QString const& tip,
                               QList<QKeySequence> const& keys) {
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcuts(keys);
    QString const key =
        keys.isEmpty() ? QString() : keys.first().toString(QKeySequence::NativeText);
    action->setToolTip(key.isEmpty() ? tip : QString("%1 (%2)").arg(tip, key));
    addAction(action);
    return action;
}

void BpmWindow::setUpActions() {
    m_pAdd = makeAction("actionAdd", tr("Add"), tr("Add files and folders"), {QKeySequence::Open});
    m_pAnalyze = makeAction("actionAnalyze", tr("Analyze"), tr("Analyze the files without a tempo"),
                            {QKeySequence(Qt::Key_F5)});
    m_pRescan = makeAction("actionRescan", tr("Rescan"), tr("Analyze all files again"),
                           {QKeySequence(Qt::SHIFT | Qt::Key_F5)});
    m_pStop =
        makeAction("actionStop", tr("Stop"), tr("Stop analyzing"), {QKeySequence(Qt::Key_Escape)});
    m_pHelp =
        makeAction("actionHelp", tr("Help"), tr("Open the guide"), {QKeySequence(Qt::Key_F1)});
    m_pCopy =
        makeAction("actionCopy", tr("Copy"), tr("Copy the selected rows"), {QKeySequence::Copy});
    m_pQuit = makeAction("actionQuit", tr("Quit"), tr("Quit Tactus"),
                         {QKeySequence(Qt::CTRL | Qt::Key_Q)});
    connect(m_pAdd, &QAction::triggered, this, &BpmWindow::openFile);
    connect(m_pAnalyze, &QAction::triggered, this, [this] { m_controller.analyze(); });
    connect(m_pRescan, &QAction::triggered, this, [this] { m_controller.reScan(); });
    connect(m_pStop, &QAction::triggered, this, [this] { m_controller.stop(); });
    connect(m_pHelp, &QAction::triggered, this, [this] { m_controller.onHelp(); });
    connect(m_pCopy, &QAction::triggered, m_pTable, &CFileTableView::copySelection);
    connect(m_pQuit, &QAction::triggered, this, &BpmWindow::quitRequested);
    auto* selectAll = new QAction(tr("Select all"), this);
    selectAll->setShortcut(QKeySequence::SelectAll);
    connect(selectAll, &QAction::triggered, m_pTable, &QAbstractItemView::selectAll);
    m_pTable->addActions({m_pCopy, selectAll});
}

void BpmWindow::setUpToolbar() {
    auto* toolbar = new QToolBar(tr("Toolbar"), this);
    toolbar->setObjectName("toolbar");
    toolbar->setAccessibleName(tr("Toolbar"));
    toolbar->setMovable(false);
    toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
    toolbar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    toolbar->setIconSize({kToolIconPixels, kToolIconPixels});
    std::array<QAction*, 5> const actions{m_pAdd, m_pAnalyze, m_pRescan, m_pStop, m_pHelp};
    auto const icons = ActionIcons();
    for (std::size_t i = 0; i < actions.size(); ++i) {
        actions[i]->setIcon(icons[i]);
        toolbar->addAction(actions[i]);
        QWidget* button = toolbar->widgetForAction(actions[i]);
        button->setAccessibleName(actions[i]->text());
        button->setFocusPolicy(Qt::TabFocus);
    }
    toolbar->insertSeparator(m_pAnalyze);
    toolbar->insertSeparator(m_pHelp);
    auto* room = new QWidget(toolbar);
    room->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    toolbar->addWidget(room);
    auto* picture = new QxImageClickView(toolbar);
    picture->setObjectName("imageView");
    picture->setAccessibleName(tr("Tactus home page"));
    picture->setToolTip(tr("Open the home page"));
    connect(picture, &QxImageClickView::clicked, this, [this] { m_controller.onHelp(); });
    toolbar->addWidget(picture);
    addToolBar(toolbar);
}

void BpmWindow::openFile() {
    COpenPanel panel({[this](std::string const& path) {
                          return m_controller.panelShouldShowFilename(CString::FromPath(path));
                      },
                      [this](std::string const& path) {
                          return m_controller.panelCanChooseFilename(CString::FromPath(path));
                      }},
                     this);
    if (panel.exec() == QDialog::Accepted) {
        m_controller.openFile(AsListPaths(panel.chosenPaths()));
    }
}

void BpmWindow::openHomePage() {
    QString const page = QString::fromStdString(HomePage());
    if (!QDesktopServices::openUrl(QUrl(page))) {
        m_pStatusLine->setNotice(tr("No program could be found to open %1.").arg(page));
    }
}

bool BpmWindow::takeAddedRows(std::size_t limit) {
    return m_model.takeAddedRows(limit);
}

void BpmWindow::reloadRow(std::size_t row) {
    m_model.reloadRow(row);
}

void BpmWindow::reloadAll() {
    m_model.reloadAll();
}

void BpmWindow::showStatus() {
    CBatchStatus const status = m_controller.status();
    m_pStatusLine->setStatus(status);
    bool const isIdle = !status.m_bRunning;
    m_pAnalyze->setEnabled(isIdle && status.m_nUndone > 0);
    m_pRescan->setEnabled(status.m_nRows > 0);
    m_pStop->setEnabled((status.m_bRunning || status.m_bAdding) && !status.m_bStopping);
    if (isIdle && std::exchange(m_bToldToStay, false)) {
        m_pStatusLine->dropNotice();
    }
    showUnreadFolder(status);
    showProblem();
}

void BpmWindow::showUnreadFolder(CBatchStatus const& status) {
    if (status.m_nUnreadFolders > m_nUnreadFolders) {
        m_nUnreadFolders = status.m_nUnreadFolders;
        m_pStatusLine->setNotice(
            tr("The folder %1 could not be read.").arg(ReadableText(status.m_sUnreadFolder)));
    }
}

QString BpmWindow::problemOf(std::size_t row) const {
    CRowState const state = m_controller.rowState(row);
    if (!HasProblem(state)) {
        return {};
    }
    return FileNameOf(ReadableText(state.m_sPath)) + ": " + ProblemText(state);
}

// The current row's problem comes first, then the latest one of all.
void BpmWindow::showProblem() {
    QModelIndex const current = m_pTable->currentIndex();
    QString text = current.isValid() ? problemOf(m_model.idAt(current.row())) : QString();
    CBatchStatus const status = m_controller.status();
    if (text.isEmpty() && status.m_nProblems > 0) {
        text = problemOf(status.m_nProblemRow);
    }
    m_pStatusLine->setProblem(text);
}

void BpmWindow::closeEvent(QCloseEvent* event) {
    if (m_bCanClose || m_bEnding) {
        event->accept();
        return;
    }
    event->ignore();
    m_bToldToStay = true;
    m_pStatusLine->setNotice(tr("The window can't close while analyzing. Escape stops."));
}

void BpmWindow::dragEnterEvent(QDragEnterEvent* event) {
    dragMoveEvent(event);
}

void BpmWindow::dragMoveEvent(QDragMoveEvent* event) {
    bool const offersFiles = event->mimeData()->hasUrls();
    CDropAnswer const answer = m_controller.validateDrop(offersFiles, 0);
    bool const isTaken = answer.m_operation == EDropOperation::Copy;
    m_pTable->setDropTarget(isTaken);
    if (isTaken) {
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
    m_controller.acceptDrop(AsListPaths(LocalPaths(*event->mimeData())));
    event->setDropAction(Qt::CopyAction);
    event->accept();
}
