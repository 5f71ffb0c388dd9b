// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Wishes.h"

#include <QWidget>

class QLabel;
class QPushButton;

/// What stands in an empty table: what the program does, that it writes, and how to begin.
/// Thread: main.
class CEmptyHint : public QWidget {
    Q_OBJECT

public:
    explicit CEmptyHint(QWidget* parent);

    /// Letters that are legible on the table's ground, whatever the palette leaves unset.
    void setColors(QPalette const& palette);

    /// Says whether the list has rows that a filter keeps away.
    void setFiltered(bool isFiltered);

    /// What is found and written depends on them.
    void setWishes(CWishes const& wishes);

    /// All of it as one text, for a screen reader.
    [[nodiscard]] QString text() const;

signals:
    void addRequested();
    void onlyLookRequested();

private:
    void showTexts();

    QLabel* m_pTitle;
    QLabel* m_pWay;
    QLabel* m_pKinds;
    QPushButton* m_pAdd;
    QPushButton* m_pOnlyLook;
    CWishes m_wishes;
    bool m_bFiltered = false;
};
