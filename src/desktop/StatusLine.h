// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BpmView.h"

#include <QStatusBar>
#include <QString>
#include <QTimer>

class CElidedLabel;
class QProgressBar;

/// The status bar: what is going on, a message, and the overall progress while there is any.
/// Thread: main.
class CStatusLine : public QStatusBar {
    Q_OBJECT

public:
    explicit CStatusLine(QWidget* parent = nullptr);

    void setStatus(CBatchStatus const& status);

    /// The message that stands until the next one; empty clears it.
    void setProblem(QString const& text);

    /// A message for some seconds; the standing one returns afterwards.
    void setNotice(QString const& text);

    /// Ends the message of `setNotice` before its time.
    void dropNotice();

private:
    void showStanding();

    CElidedLabel* m_pActivity;
    CElidedLabel* m_pMessage;
    QProgressBar* m_pProgress;
    QTimer m_noticeTimer;
    QString m_sProblem;
};
