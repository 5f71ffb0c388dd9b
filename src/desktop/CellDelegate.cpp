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

bool IsSelected(QStyleOptionViewItem const& cell) {
    return cell.state.testFlag(QStyle::State_Selected);
}

QColor TextColor(QStyleOptionViewItem const& cell) {
    bool const isActive = cell.state.testFlag(QStyle::State_Active);
    return cell.palette.color(isActive ? QPalette::Active : QPalette::Inactive,
                              IsSelected(cell) ? QPalette::HighlightedText : QPalette::Text);
}

void PaintIcon(QPainter& painter, QStyleOptionViewItem const& cell, QRect& area) {
    QRect place(area.topLeft(), QSize(cell.decorationSize.width(), area.height()));
    cell.icon.paint(&painter, QStyle::visualRect(cell.direction, area, place), Qt::AlignCenter,
                    IsSelected(cell) ? QIcon::Selected : QIcon::Normal);
    area.setLeft(place.right() + kCellMargin);
}

void PaintBar(QPainter& painter, QStyleOptionViewItem const& cell, int percent) {
    QColor const ink = TextColor(cell);
    QColor const fill = IsSelected(cell) ? ink : cell.palette.color(QPalette::Highlight);
    QRect const groove = cell.rect.adjusted(kBarMarginX, kBarMarginY, -kBarMarginX, -kBarMarginY);
    QRect filled = groove;
    filled.setWidth(groove.width() * percent / kWholePercent);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(WithAlpha(ink, kGrooveAlpha));
    painter.drawRoundedRect(groove, kBarRadius, kBarRadius);
    painter.setClipRect(QStyle::visualRect(cell.direction, groove, filled));
    painter.setBrush(WithAlpha(fill, kFillAlpha));
    painter.drawRoundedRect(groove, kBarRadius, kBarRadius);
    painter.setClipRect(cell.rect);
    painter.setPen(ink);
    painter.drawText(groove, Qt::AlignCenter, cell.text.trimmed());
}

} // namespace

void CCellDelegate::paint(QPainter* painter, QStyleOptionViewItem const& option,
                          QModelIndex const& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    cell.state &= ~QStyle::State_HasFocus;
    QVariant const placeholder = index.data(CFileTableModel::kPlaceholderRole);
    if (placeholder.isValid()) {
        cell.text = placeholder.toString();
        cell.font.setItalic(true);
        cell.palette.setBrush(QPalette::Text, cell.palette.placeholderText());
    }
    QStyle const* style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, cell.widget);
    painter->save();
    painter->setClipRect(cell.rect);
    painter->setFont(cell.font);
    paintContents(*painter, cell, index);
    painter->restore();
}

void CCellDelegate::paintContents(QPainter& painter, QStyleOptionViewItem const& cell,
                                  QModelIndex const&) const {
    QRect area = cell.rect.adjusted(kCellMargin, 0, -kCellMargin, 0);
    if (!cell.icon.isNull()) {
        PaintIcon(painter, cell, area);
    }
    QString const text =
        QFontMetrics(cell.font).elidedText(cell.text, cell.textElideMode, area.width());
    painter.setPen(TextColor(cell));
    painter.drawText(
        QStyle::visualRect(cell.direction, cell.rect, area),
        static_cast<int>(QStyle::visualAlignment(cell.direction, cell.displayAlignment)), text);
}

void CTempoDelegate::paintContents(QPainter& painter, QStyleOptionViewItem const& cell,
                                   QModelIndex const& index) const {
    QVariant const percent = index.data(CFileTableModel::kPercentRole);
    if (percent.isValid()) {
        PaintBar(painter, cell, percent.toInt());
    } else {
        CCellDelegate::paintContents(painter, cell, index);
    }
}
