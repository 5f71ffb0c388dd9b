// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QWidget>

class QLabel;

/// A line below the table that says what is wrong with the selected row. It has the window's whole
/// width, wraps where that isn't enough, and is gone when nothing is wrong.
/// Thread: main.
class CReasonLine : public QWidget {
    Q_OBJECT

public:
    explicit CReasonLine(QWidget* parent = nullptr);

    /// Empty: nothing is wrong.
    void setReason(QString const& reason);

private:
    QLabel* m_pText;
};
