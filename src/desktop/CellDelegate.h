// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractItemView>
#include <QStyledItemDelegate>

inline constexpr int kCellMargin = 9; // Fixed: pixels left and right of a cell's contents.

/// Paints cells with more room at their sides than most styles leave, and without a focus frame of
/// their own: the table draws one around the whole row. A file's name in the title's place, and a
/// tempo that awaits another analysis, are painted in faint letters.
/// Thread: main.
class CCellDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, QStyleOptionViewItem const& option,
               QModelIndex const& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, QStyleOptionViewItem const& option,
                   QModelIndex const& index) override;

protected:
    /// Paints what stands on the background; `cell` is filled in and clipped to.
    virtual void paintContents(QPainter& painter, QStyleOptionViewItem const& cell,
                               QModelIndex const& index) const;
};

/// Paints tempo cells: while the row is analysed, the percentage over a bar, or a stripe that
/// passes as long as there is none; otherwise the number, decimal point below decimal point, with
/// marks in front of it. A tempo is typed in the locale's digits or plain ones, with comma or
/// point; what is none from 20 to 999 isn't taken. Thread: main.
class CTempoDelegate : public CCellDelegate {
    Q_OBJECT

public:
    explicit CTempoDelegate(QObject* parent = nullptr);

    QWidget* createEditor(QWidget* parent, QStyleOptionViewItem const& option,
                          QModelIndex const& index) const override;
    void setEditorData(QWidget* editor, QModelIndex const& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      QModelIndex const& index) const override;

    /// Pixels that a tempo of three digits and two decimals takes.
    static int WidestNumber(QFont font);

signals:
    /// A tempo was typed into this cell.
    void tempoTyped(QModelIndex const& index, double bpm) const;

protected:
    bool eventFilter(QObject* editor, QEvent* event) override;
    void paintContents(QPainter& painter, QStyleOptionViewItem const& cell,
                       QModelIndex const& index) const override;

private:
    void paintNumber(QPainter& painter, QStyleOptionViewItem cell, qsizetype point,
                     int marks) const;
    void paintMarks(QPainter& painter, QStyleOptionViewItem const& cell, QRect& area,
                    int marks) const;

    QIcon m_byHand;
    QIcon m_notInFile;
};
