// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStyledItemDelegate>

/// Paints cells without a focus frame of their own: the table draws one around the whole row. An
/// empty title is painted as the file's name in faint letters; the cell's text stays empty.
/// Thread: main.
class CCellDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, QModelIndex const& index) const override;
};

/// Paints tempo cells: the percentage over a bar while the row is analysed, otherwise its text.
/// Thread: main.
class CTempoDelegate : public CCellDelegate {
    Q_OBJECT

public:
    using CCellDelegate::CCellDelegate;

    void paint(QPainter* painter, QStyleOptionViewItem const& option,
               QModelIndex const& index) const override;
};
