// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTableView>

class CFileTableModel;
class QLabel;

/// The table of files: whole rows are selected, columns sort and resize, an empty table says what
/// to do, and a drop that would be taken is announced by a frame.
/// Thread: main.
class CFileTableView : public QTableView {
    Q_OBJECT

public:
    explicit CFileTableView(CFileTableModel& model, QWidget* parent = nullptr);

    /// Copies the selected rows to the clipboard in the order shown, one line a row, the three
    /// texts separated by tabs. Without a selection the clipboard stays as it is.
    void copySelection() const;

    /// Shows or hides the frame that announces a drop.
    void setDropTarget(bool isTarget);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void setHeights();
    void setUpHeader();
    void paintFocus();
    void paintDropFrame();
    void setUpHint();
    void placeHint();
    void onRowsChanged();
    void onSectionResized(int section, int oldWidth, int newWidth);
    void fitTitle();

    CFileTableModel& m_model;
    QWidget* m_pHint = nullptr;
    QLabel* m_pHintTitle = nullptr;
    bool m_bDropTarget = false;
    bool m_bFitting = false;
};
