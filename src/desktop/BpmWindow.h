// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/PictureSource.h"
#include "app/Wishes.h"
#include "base/CString.h"
#include "desktop/FileTableModel.h"
#include "desktop/Settings.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QStringList>
#include <QTimer>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

class BPMController;
class CChipsLine;
class CColumnsMenu;
class CCorrector;
class CFileTableView;
class CNoticeBar;
class CReasonLine;
class CSongPane;
class CStatusLine;
class QAction;
class QMenu;
class QSplitter;
class QToolBar;
struct CExportRow;
struct CTempoFix;
struct CUndoReport;

/// The main window over the controller: toolbar and picture, notices, filters, the table, what is
/// wrong with the selected row, the pane with its song, and the status bar. It refuses to close
/// while an analysis runs. Thread: main, but for `setCanClose`.
class BpmWindow : public QMainWindow {
    Q_OBJECT

public:
    /// Takes over what `settings` remember, and tells the controller.
    explicit BpmWindow(BPMController& controller, CSettings settings = {});
    ~BpmWindow() override;

    /// Thread: any.
    void setCanClose(bool canClose) { m_bCanClose = canClose; }

    /// From now on the window closes whatever runs: the program is ending and will wait for the
    /// running file itself.
    void letClose() {
        m_bCanClose = true;
        m_bEnding = true;
    }

    /// Shows the pane with the selected song as the user left it; the first time, when the screen
    /// has room for it. The window gets the size that the user gave it.
    void openPaneAtStart();

    /// Adds files and folders, then analyses, and tells what came of it; returns at once.
    void addPaths(std::vector<std::string> const& paths);

    /// Shows rows that the list has gained, `limit` at the most; true when more are waiting.
    bool takeAddedRows(std::size_t limit);
    void reloadRow(std::size_t row);
    void reloadAll();
    void showStatus();
    void openHomePage();

    /// Waits until every correction is written; none is taken any more.
    void endCorrections();

signals:
    /// A long run is over, and the window isn't the one in front.
    void noteWanted(QString const& title, QString const& text);

    /// The user wants the program to end, whether or not a file is being analysed.
    void quitRequested();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// An addition that is under way: what the list had before it.
    struct CAddition {
        QStringList m_vNames;    // Of what is added; empty when nothing is.
        std::size_t m_nRows = 0; // With those that had come back.
        std::size_t m_nKnown = 0;
        std::size_t m_nUnreadFolders = 0;
    };

    /// A run that is under way: what had come of files before it.
    struct CRun {
        bool m_bRunning = false;
        QElapsedTimer m_time;
        std::size_t m_nHeard = 0;
        std::size_t m_nStored = 0;
        std::size_t m_nProblems = 0;
    };

    /// Rows that were hidden together.
    struct CHideStep {
        std::vector<std::size_t> m_vRows;
        std::int64_t m_nTime = 0; // nanoseconds since the epoch
    };

    struct CCorrectionAction {
        QAction* m_pAction = nullptr;
        char const* m_pWord = nullptr; // Of `TempoFixOf`.
        QString m_sTip;
    };

    void setUpActions();
    void setUpMoreActions();
    void setUpToolbar();
    void setUpMenu(QToolBar& toolbar);
    void setUpCentre();
    void setUpPane(QSplitter& splitter);
    void setUpPaneActions();
    void setUpCorrections();
    QMenu* makeCorrectionMenu();
    QWidget* makeCorrectionButtons();
    void addCorrection(QString const& name, char const* word, QKeySequence const& key);
    void connectAll();
    QAction* makeAction(QString const& name, QString const& text, QString const& tip,
                        QList<QKeySequence> const& keys);
    void openFile();
    void analyzeAgain();
    [[nodiscard]] bool askBeforeReplacing(std::size_t count);
    void stop();
    void stopAndClose();
    void hideRows();
    void bringBack();
    void correct(std::vector<std::size_t> const& rows, CTempoFix const& fix);
    void showCorrections();
    void takeNextReading();
    void showSteps();
    [[nodiscard]] bool isHidingLatest(std::optional<std::int64_t> latestStep);
    void undo();
    void redo();
    void tellStep(CUndoReport const& report);
    void showHidden(CBatchStatus const& status);
    void applyWishes(CWishes const& wishes);
    void onlyLook();
    void openPreferences();
    void keepLayout();
    void setUpColumns();
    void showSortKeys();
    void tellLeftOut();
    void addLeftOut();
    void beginAddition(std::vector<CString> const& paths);
    void endAddition(CBatchStatus const& status);
    void showCounts();
    void showReason();
    void showPane(bool isOpen);
    void fitSmallestSize();
    void switchPane();
    void showSong();
    void showUnreadFolders(CBatchStatus const& status);
    void listUnreadFolders();
    void followRun(CBatchStatus const& status);
    void endRun(CBatchStatus const& status, qint64 milliseconds);
    void showKeys();
    [[nodiscard]] CExportRow exportRow(std::size_t id) const;
    void exportRows();
    void endClosing();

    BPMController& m_controller;
    CSettings m_settings;
    CWishes m_wishes;
    CFileTableModel m_model;
    CHeardPictures m_pictures;
    CFileTableView* m_pTable = nullptr;
    CNoticeBar* m_pNotices = nullptr;
    CChipsLine* m_pChips = nullptr;
    CReasonLine* m_pReason = nullptr;
    CStatusLine* m_pStatusLine = nullptr;
    CSongPane* m_pPane = nullptr;
    CColumnsMenu* m_pColumns = nullptr;
    QAction* m_pAdd = nullptr;
    QAction* m_pAnalyze = nullptr;
    QAction* m_pRescan = nullptr;
    QAction* m_pStop = nullptr;
    QAction* m_pHelp = nullptr;
    QAction* m_pCopy = nullptr;
    QAction* m_pSelectAll = nullptr;
    QAction* m_pHide = nullptr;
    QAction* m_pBringBack = nullptr;
    QAction* m_pClose = nullptr;
    QAction* m_pMenu = nullptr;
    QAction* m_pPreferences = nullptr;
    QAction* m_pKeys = nullptr;
    QAction* m_pExport = nullptr;
    QAction* m_pQuit = nullptr;
    QAction* m_pTogglePane = nullptr;
    QAction* m_pSwitchPane = nullptr;
    QAction* m_pType = nullptr;
    QAction* m_pNextReading = nullptr;
    QAction* m_pCorrectionRoom = nullptr; // Of the buttons in the toolbar.
    int m_nWidthForCorrections = 0;       // Of the window, so that they don't push others out.
    QAction* m_pUndo = nullptr;
    QAction* m_pRedo = nullptr;
    std::vector<CCorrectionAction> m_vCorrections;
    QTimer m_correctionTimer;
    QSize m_sizeAtStart;
    QString m_sColumnsAtStart;
    std::vector<QAction*> m_vSorts; // By column.
    CRun m_run;
    CAddition m_addition;
    std::set<CString> m_vLeftOut;        // Files of other kinds that the notice tells of.
    std::size_t m_nUnreadFolders = 0;    // Told so far.
    std::size_t m_nReadFolders = 0;      // Of those, in notices that were read.
    std::size_t m_nHidden = 0;           // Rows that the last notice told of.
    std::vector<CHideStep> m_vHideSteps; // The latest comes last.
    QString m_sStep;                     // The step that is being taken back or done again.
    std::int64_t m_nStart = 0;           // nanoseconds since the epoch
    std::atomic<bool> m_bCanClose{true};
    bool m_bCloseWhenIdle = false; // The user has chosen to stop and close.
    bool m_bDragIsTaken = false;   // The drag over the window has files.
    bool m_bEnding = false;
    std::unique_ptr<CCorrector> m_pCorrector;
};
