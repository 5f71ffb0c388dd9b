// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/RowFilter.h"

#include <QWidget>
#include <vector>

class QButtonGroup;
class QToolButton;

/// A line of filters with their counts; one of them is on. Alt+1, Alt+2 ... switch to them from
/// anywhere in the window.
/// Thread: main.
class CChipsLine : public QWidget {
    Q_OBJECT

public:
    explicit CChipsLine(QWidget* parent = nullptr);

    void setCounts(CRowCounts const& counts);

    [[nodiscard]] ERowFilter filter() const;

    /// Switches to `filter` as a click on its chip does.
    void choose(ERowFilter filter);

signals:
    void filterChosen(ERowFilter filter);

private:
    QButtonGroup* m_pGroup;
    std::vector<QToolButton*> m_vChips; // In the order of `ERowFilter`.
};
