// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStyledItemDelegate>

inline constexpr int kCellMargin = 9; // Fixed: pixels left and right of a cell's contents.

/// Paints cells with more room at their sides than most styles leave, and without a focus frame of
/// their own: the table draws one around the whole row. An empty title is painted as the file's
/// name in faint letters; the cell's text stays empty.
/// Thread: main.
class CCellDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, QStyleOptionViewItem const& option,
               QModelIndex const& index) const override;

protected:
    /// Paints what stands on the background; `cell` is filled in and clipped to.
    virtual void paintContents(QPainter& painter, QStyleOptionViewItem const& cell,
                               QModelIndex const& index) const;
};

/// Paints tempo cells: the percentage over a bar while the row is analysed, otherwise its text.
/// Thread: main.
class CTempoDelegate : public CCellDelegate {
    Q_OBJECT

public:
    using CCellDelegate::CCellDelegate;

protected:
    void paintContents(QPainter& painter, QStyleOptionViewItem const& cell,
                       QModelIndex const& index) const override;
};
