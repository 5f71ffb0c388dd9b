// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BpmView.h"

#include <QStatusBar>
#include <cstddef>

class CElidedLabel;
class QAction;
class QLabel;
class QProgressBar;
class QToolButton;

/// The status bar: what is going on, and the overall progress while there is any.
/// Thread: main.
class CStatusLine : public QStatusBar {
    Q_OBJECT

public:
    explicit CStatusLine(QWidget* parent = nullptr);

    /// What came of the last run or step; empty for nothing.
    void setSummary(QString const& summary);

    /// Has a button for `undo`, which must outlive it; shown when it is wanted.
    void setUndo(QAction& undo);
    void showUndo(bool isWanted);

    /// Says, beside all else, that nothing is written.
    void setOnlyLook(bool isOnlyLook);

    /// `problems` counts the rows that have one.
    void setStatus(CBatchStatus const& status, std::size_t problems);

private:
    CElidedLabel* m_pActivity;
    CElidedLabel* m_pSummary;
    QProgressBar* m_pProgress;
    QToolButton* m_pUndo;
    QLabel* m_pOnlyLook;
};
