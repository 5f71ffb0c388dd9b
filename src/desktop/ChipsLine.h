// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/RowFilter.h"

#include <QWidget>
#include <vector>

class QButtonGroup;
class QLineEdit;
class QToolButton;

/// A line of filters with their counts, one of which is on, and a field for a query. Alt+1, Alt+2
/// ... switch to the filters from anywhere in the window; Esc in the field empties and leaves it.
/// The field is there while the line has room for it, or somebody uses it.
/// Thread: main.
class CChipsLine : public QWidget {
    Q_OBJECT

public:
    explicit CChipsLine(QWidget* parent = nullptr);

    void setCounts(CRowCounts const& counts);

    [[nodiscard]] ERowFilter filter() const;

    /// Switches to `filter` as a click on its chip does.
    void choose(ERowFilter filter);

    /// Gives the keyboard to the field.
    void focusQuery();

signals:
    void filterChosen(ERowFilter filter);
    void queryChanged(QString const& text);

    /// The keyboard is to go back to the table.
    void queryLeft();

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void setUpQuery();
    void tintHint();
    void makeRoom();

    QLineEdit* m_pQuery = nullptr;
    QButtonGroup* m_pGroup;
    std::vector<QToolButton*> m_vChips; // In the order of `ERowFilter`.
};
