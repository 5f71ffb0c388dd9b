// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/CellDelegate.h"

#include "desktop/FileTableModel.h"

#include <QApplication>
#include <QPainter>

namespace {

constexpr int kBarMarginX = 4;    // Fixed: pixels left and right of the bar.
constexpr int kBarMarginY = 3;    // Fixed: pixels above and below it.
constexpr qreal kBarRadius = 3.0; // Fixed: pixels, of its corners.
constexpr int kGrooveAlpha = 28;  // Fixed: of 255; the part still to come.
constexpr int kFillAlpha = 110;   // Fixed: of 255; light enough for the text on top.
constexpr int kWholePercent = 100;

QColor WithAlpha(QColor color, int alpha) {
    color.setAlpha(alpha);
    return color;
}

void PaintBar(QPainter& painter, QStyleOptionViewItem const& option, int percent) {
    bool const isSelected = option.state.testFlag(QStyle::State_Selected);
    QPalette const& palette = option.palette;
    QColor const ink = palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    QColor const fill = isSelected ? ink : palette.color(QPalette::Highlight);
    QRect const groove = option.rect.adjusted(kBarMarginX, kBarMarginY, -kBarMarginX, -kBarMarginY);
    QRect filled = groove;
    filled.setWidth(groove.width() * percent / kWholePercent);
    filled = QStyle::visualRect(option.direction, groove, filled);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(WithAlpha(ink, kGrooveAlpha));
    painter.drawRoundedRect(groove, kBarRadius, kBarRadius);
    painter.setClipRect(filled);
    painter.setBrush(WithAlpha(fill, kFillAlpha));
    painter.drawRoundedRect(groove, kBarRadius, kBarRadius);
    painter.setClipping(false);
    painter.setPen(ink);
    painter.setFont(option.font);
    painter.drawText(groove, Qt::AlignCenter, option.text.trimmed());
    painter.restore();
}

} // namespace

void CCellDelegate::initStyleOption(QStyleOptionViewItem* option, QModelIndex const& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    option->state &= ~QStyle::State_HasFocus;
    QVariant const placeholder = index.data(CFileTableModel::kPlaceholderRole);
    if (placeholder.isValid()) {
        option->text = placeholder.toString();
        option->features |= QStyleOptionViewItem::HasDisplay;
        option->font.setItalic(true);
        option->palette.setBrush(QPalette::Text, option->palette.placeholderText());
    }
}

void CTempoDelegate::paint(QPainter* painter, QStyleOptionViewItem const& option,
                           QModelIndex const& index) const {
    QVariant const percent = index.data(CFileTableModel::kPercentRole);
    if (!percent.isValid()) {
        CCellDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    QString const text = cell.text;
    cell.text.clear();
    QStyle const* style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    cell.text = text;
    PaintBar(*painter, cell, percent.toInt());
}
