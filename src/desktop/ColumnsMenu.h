// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>

class CFileTableView;

/// Which columns a table has, to be ticked.
/// Thread: main.
class CColumnsMenu : public QMenu {
    Q_OBJECT

public:
    /// `table` must outlive it.
    explicit CColumnsMenu(CFileTableView& table, QWidget* parent = nullptr);

private:
    void showTicks();

    CFileTableView& m_table;
};
