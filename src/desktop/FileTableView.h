// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/ColumnLayout.h"
#include "desktop/MoreColumns.h"

#include <QTableView>
#include <QTimer>
#include <cstddef>
#include <map>
#include <vector>

class CEmptyHint;
class CFileTableModel;
class QMenu;
struct CWishes;

/// The table of files: whole rows are selected, columns sort and resize, and a drop that would be
/// taken is announced by a frame. Columns can be added and moved, but for the title. An empty table
/// says what the program does and how to begin. Thread: main.
class CFileTableView : public QTableView {
    Q_OBJECT

public:
    explicit CFileTableView(CFileTableModel& model, QWidget* parent = nullptr);

    /// Copies the selected rows to the clipboard in the order shown, one line a row, the texts
    /// separated by tabs. Without a selection the clipboard stays as it is.
    void copySelection() const;

    /// The list's numbers of the selected rows, in the order shown.
    [[nodiscard]] std::vector<std::size_t> selectedIds() const;

    /// Other rows are shown, and what was selected comes back in a moment.
    [[nodiscard]] bool isRestoring() const { return m_bRestoring; }

    /// Lets the tempo of the current row be typed.
    void editTempo();

    /// Shows or hides the frame that announces a drop.
    void setDropTarget(bool isTarget);

    /// Sorts as a click on the column's head does: upwards, downwards, then as added. A column that
    /// isn't there sorts nothing.
    void sortByNext(int column);

    /// Columns go by their numbers.
    [[nodiscard]] bool hasColumn(int column) const;
    void showColumn(EMoreColumn column, bool isWanted);

    [[nodiscard]] CColumnLayout columnLayout() const;
    void setColumnLayout(CColumnLayout const& layout);

    /// The menu of the table's head, which must outlive the table.
    void setHeaderMenu(QMenu& menu);

    /// The empty table says what is found and written.
    void setWishes(CWishes const& wishes);

    /// Says that a file is being read: the stripe in its row moves.
    void setReading(bool isReading);

signals:
    /// Columns came, went or moved.
    void columnsChanged();

    /// The button of the empty table was pressed.
    void addRequested();

    /// So was its other one: nothing is to be written.
    void onlyLookRequested();

    /// A tempo was typed for this row of the list.
    void tempoTyped(std::size_t id, double bpm);

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void setHeights();
    void setUpHeader();
    void paintFocus();
    void paintDropFrame();
    void setColors();
    void keepPlaces();
    void restorePlaces();
    void onRowsChanged();
    void onSectionResized(int section, int oldWidth, int newWidth);
    void keepWidth(int section);
    void fitColumns();
    [[nodiscard]] int firstWidth(int column) const;
    void removeColumn(EMoreColumn column);
    void moveStripes();

    CFileTableModel& m_model;
    CEmptyHint* m_pHint = nullptr;
    QTimer m_stripeTimer;
    std::vector<std::size_t> m_vSelectedIds; // While the model is reset.
    std::size_t m_nCurrentId = 0;            // Likewise.
    int m_nFirstSelectedRow = -1;            // Likewise; -1 when there is none.
    bool m_bRestoring = false;
    int m_nCurrentRow = -1;      // Likewise; -1 when there is none.
    double m_fTitleShare = 0.0;  // Of the room that title and artist have together.
    std::map<int, int> m_widths; // By column; those that the user chose.
    bool m_bDropTarget = false;
    bool m_bFitting = false;
};
