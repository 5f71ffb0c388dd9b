// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/FileTableModel.h"

#include <QMainWindow>
#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

class BPMController;
class CFileTableView;
class CStatusLine;
class QAction;

/// The main window: table, toolbar, picture and status bar over the controller. It refuses to
/// close while an analysis runs.
/// Thread: main, but for `setCanClose`.
class BpmWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit BpmWindow(BPMController& controller, QWidget* parent = nullptr);

    /// Thread: any.
    void setCanClose(bool canClose) { m_bCanClose = canClose; }

    /// From now on the window closes whatever runs: the program is ending and will wait for the
    /// running file itself.
    void letClose() {
        m_bCanClose = true;
        m_bEnding = true;
    }

    /// Shows rows that the list has gained, `limit` at the most; true when more are waiting.
    bool takeAddedRows(std::size_t limit);
    void reloadRow(std::size_t row);
    void reloadAll();
    void showStatus();
    void openHomePage();

signals:
    /// The user wants the program to end, whether or not a file is being analysed.
    void quitRequested();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void setUpActions();
    void setUpToolbar();
    void setUpTable();
    QAction* makeAction(QString const& name, QString const& text, QString const& tip,
                        QList<QKeySequence> const& keys);
    void openFile();
    void showProblem();
    void showUnreadFolder(CBatchStatus const& status);
    [[nodiscard]] QString problemOf(std::size_t row) const;

    BPMController& m_controller;
    CFileTableModel m_model;
    CFileTableView* m_pTable = nullptr;
    CStatusLine* m_pStatusLine = nullptr;
    QAction* m_pAdd = nullptr;
    QAction* m_pAnalyze = nullptr;
    QAction* m_pRescan = nullptr;
    QAction* m_pStop = nullptr;
    QAction* m_pHelp = nullptr;
    QAction* m_pCopy = nullptr;
    QAction* m_pQuit = nullptr;
    std::size_t m_nUnreadFolders = 0; // Told so far.
    std::atomic<bool> m_bCanClose{true};
    bool m_bToldToStay = false; // Why it doesn't close stands in the status bar.
    bool m_bEnding = false;
};
