// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The window with its table, and what every state needs.

#include "desktop/pictures/Sitting.h"

#include "desktop/ColumnsMenu.h"
#include "desktop/FileTableView.h"
#include "desktop/NoticeBar.h"
#include "desktop/SongPane.h"

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QUrl>
#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

constexpr int kPatienceMs = 60'000; // Fixed: for all songs.
constexpr int kStartMs = 3000;      // Fixed: until the first of them is heard.
constexpr int kSettleMs = 15'000;   // Fixed: until the pane shows its song.
constexpr int kDialogMs = 500;      // Fixed: until a dialog is open.
constexpr int kUnderWay = 20;       // Fixed: percent, of a run that is shown.
constexpr int kCalmMs = 250;        // Fixed: until what moves in the window has come to rest.
constexpr int kWidth = 760;         // Fixed: of the window, in pixels, as at the first start.
constexpr int kHeight = 620;        // Fixed: likewise.
constexpr int kLowHeight = 400;     // Fixed: of the window without its pane.
constexpr int kWideWidth = 980;     // Fixed: of the window with more columns.
constexpr int kSongRow = 3;         // Fixed: whose song is shown; the last one of fewer.

} // namespace

CSitting::CSitting(QString folder) : m_sFolder(std::move(folder)) {
    m_controller.awakeFromNib();
    m_view.setWindow(&m_window);
    m_window.resize(kWidth, kLowHeight);
    m_window.show();
    QCursor::setPos(m_window.mapToGlobal(m_window.rect().bottomRight())); // over no control
    (void)QTest::qWaitForWindowActive(&m_window);
}

CSitting::~CSitting() {
    m_controller.applicationWillTerminate();
    m_view.setWindow(nullptr);
}

void CSitting::DrawEmpty() {
    Draw(m_window, "empty");
}

void CSitting::DrawDrag(std::string const& path) {
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    QDragEnterEvent enter(m_window.rect().center(), Qt::CopyAction, &files, Qt::LeftButton,
                          Qt::NoModifier);
    QApplication::sendEvent(&m_window, &enter);
    Draw(m_window, "drag");
    QDragLeaveEvent leave;
    QApplication::sendEvent(&m_window, &leave);
}

void CSitting::Run(std::vector<std::string> const& songs) {
    m_window.addPaths(songs);
    auto* progress = m_window.findChild<QProgressBar*>();
    if (!QTest::qWaitFor([this] { return m_controller.status().m_bRunning; }, kStartMs)) {
        return; // all have their tempo
    }
    auto const isUnderWay = [this, progress] {
        return progress->value() >= kUnderWay || !m_controller.status().m_bRunning;
    };
    (void)QTest::qWaitFor(isUnderWay, kPatienceMs);
    DrawNow(m_window, "running");
    if (!m_window.close()) {
        DrawNow(m_window, "notice");
    }
    WaitForEnd();
    Draw(m_window, "ended");
}

void CSitting::ShutPane() {
    Act("actionPane");
    m_window.resize(kWidth, kLowHeight);
}

void CSitting::OpenPane() {
    m_window.resize(kWidth, kHeight);
    Act("actionPane");
}

void CSitting::Look(char const* state) {
    OpenPane();
    Settle([this] { Choose(0, 0); });
    QTest::qWait(kCalmMs);
    Choose(std::min(kSongRow, Table()->model()->rowCount() - 1), 0);
    DrawNow(m_window, "reading");
    ChooseSong();
    Table()->setFocus();
    Draw(m_window, state);
}

void CSitting::DrawFilters() {
    auto* query = m_window.findChild<QLineEdit*>("query");
    query->setText("120-175");
    query->setFocus();
    Draw(m_window, "filter");
    query->clear();
    DrawChip("chipProblems", "problems");
}

void CSitting::DrawChip(char const* chip, char const* state) {
    ClickChip(chip);
    Choose(0, 0);
    Table()->setFocus();
    Draw(m_window, state);
    ClickChip("chipAll");
}

void CSitting::DrawColumns() {
    OpenPane();
    auto* menu = m_window.findChild<CColumnsMenu*>();
    for (char const* const column : {"column3", "column4", "column5", "column6", "column9"}) {
        menu->findChild<QAction*>(column)->trigger();
    }
    m_window.resize(kWideWidth, kHeight);
    ChooseSong();
    Draw(m_window, "columns");
    m_window.resize(kWidth, kHeight);
    menu->findChild<QAction*>("columnsAsAtFirst")->trigger();
}

void CSitting::DrawTyping() {
    Act("actionSort3");
    Choose(2, CFileTableModel::kTempoColumn);
    Act("actionType");
    Draw(m_window, "typing");
    QTest::keyClick(Table()->findChild<QLineEdit*>("tempoEditor"), Qt::Key_Escape);
    Act("actionSort3");
    Act("actionSort3"); // as added
}

void CSitting::DrawCorrections() {
    auto* undo = m_window.findChild<QToolButton*>("statusUndo");
    Choose(0, 0);
    Table()->selectionModel()->select(Table()->model()->index(1, 0),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
    Act("actionDouble");
    (void)QTest::qWaitFor([undo] { return undo->isVisible(); }, kStartMs);
    Draw(m_window, "corrected");
    Act("actionUndo");
    (void)QTest::qWaitFor([undo] { return !undo->isVisible(); }, kStartMs);
    Draw(m_window, "undone");
    Act("actionRedo");
    (void)QTest::qWaitFor([undo] { return undo->isVisible(); }, kStartMs);
    ClickChip("chipByHand");
    Draw(m_window, "hand");
    ClickChip("chipAll");
}

void CSitting::DrawHidden() {
    Choose(2, 0);
    Table()->selectionModel()->select(Table()->model()->index(4, 0),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
    int const rows = Table()->model()->rowCount();
    Act("actionHide");
    WaitForRows(rows - 2);
    Draw(m_window, "hidden");
    Act("actionBringBack");
    WaitForRows(rows);
}

void CSitting::DrawSmall() {
    m_window.resize(m_window.minimumSize());
    Draw(m_window, "small");
    m_window.resize(kWidth, kHeight);
}

CFileTableView* CSitting::Table() {
    return m_window.findChild<CFileTableView*>("fileTable");
}

CSongPane* CSitting::Pane() {
    return m_window.findChild<CSongPane*>();
}

void CSitting::Act(char const* name) {
    m_window.findChild<QAction*>(name)->trigger();
}

void CSitting::ClickChip(char const* name) {
    m_window.findChild<QToolButton*>(name)->click();
}

/// `use` gets the dialog that opens next, and leaves it.
void CSitting::UseDialog(Use use) {
    QTimer::singleShot(kDialogMs, &m_window, [use = std::move(use)] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
            use(*dialog);
        }
    });
}

/// This row alone, whatever key is held down.
void CSitting::Choose(int row, int column) {
    Table()->selectionModel()->setCurrentIndex(Table()->model()->index(row, column),
                                               QItemSelectionModel::ClearAndSelect |
                                                   QItemSelectionModel::Rows);
}

void CSitting::ChooseSong() {
    int const row = std::min(kSongRow, Table()->model()->rowCount() - 1);
    Settle([&] {
        Choose(0, 0);
        Choose(row, 0);
    });
}

/// Waits for the song that `change` has the pane show.
void CSitting::Settle(std::function<void()> const& change) {
    QSignalSpy settled(Pane(), &CSongPane::settled);
    change();
    (void)settled.wait(kSettleMs);
}

void CSitting::WaitForEnd() {
    auto* progress = m_window.findChild<QProgressBar*>();
    (void)QTest::qWaitFor([this] { return !m_controller.status().m_bRunning; }, kPatienceMs);
    (void)QTest::qWaitFor([progress] { return !progress->isVisible(); }, kPatienceMs);
}

void CSitting::WaitForRows(int rows) {
    (void)QTest::qWaitFor([&] { return Table()->model()->rowCount() == rows; }, kStartMs);
}

/// As it is now, but for what waits to be laid out.
void CSitting::DrawNow(QWidget& widget, char const* state) {
    QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    if (!widget.grab().save(m_sFolder + "/" + state + ".png")) {
        std::fprintf(stderr, "%s.png can't be written\n", state);
    }
}

void CSitting::Draw(QWidget& widget, char const* state) {
    widget.activateWindow(); // who closed a dialog returned to nothing
    QTest::qWait(kCalmMs);
    DrawNow(widget, state);
}
