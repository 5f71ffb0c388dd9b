// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/CellDelegate.h"

#include "desktop/FileTableModel.h"
#include "desktop/Glyphs.h"
#include "desktop/Numbers.h"
#include "desktop/Texts.h"
#include "desktop/Tints.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QLocale>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

namespace {

constexpr int kBarMarginX = 4;                // Fixed: pixels left and right of the bar.
constexpr int kBarMarginY = 3;                // Fixed: pixels above and below it.
constexpr qreal kBarRadius = 3.0;             // Fixed: pixels, of its corners.
constexpr int kGrooveAlpha = 28;              // Fixed: of 255; the part still to come.
constexpr int kFillAlpha = 110;               // Fixed: of 255; light enough for the text on top.
constexpr int kStripePercent = 30;            // Fixed: of the bar's length.
constexpr std::int64_t kStripeTurnMs = 1'600; // Fixed: once through the bar.
constexpr int kMarkPercent = 90;              // Fixed: of an icon's side.
constexpr int kMarkGap = 3;                   // Fixed: pixels behind a mark.

QColor WithAlpha(QColor color, int alpha) {
    color.setAlpha(alpha);
    return color;
}

bool IsSelected(QStyleOptionViewItem const& cell) {
    return cell.state.testFlag(QStyle::State_Selected);
}

QPalette::ColorGroup GroupOf(QStyleOptionViewItem const& cell) {
    return cell.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

QColor TextColor(QStyleOptionViewItem const& cell) {
    return cell.palette.color(GroupOf(cell),
                              IsSelected(cell) ? QPalette::HighlightedText : QPalette::Text);
}

void PaintIcon(QPainter& painter, QStyleOptionViewItem const& cell, QRect& area) {
    QRect place(area.topLeft(), QSize(cell.decorationSize.width(), area.height()));
    cell.icon.paint(&painter, QStyle::visualRect(cell.direction, area, place), Qt::AlignCenter,
                    IsSelected(cell) ? QIcon::Selected : QIcon::Normal);
    area.setLeft(place.right() + kCellMargin);
}

// Where the filled part of a bar lies: up to its percentage or, while there is none, a stripe that
// passes through.
QRect FilledPart(QRect const& groove, QModelIndex const& index) {
    QRect filled = groove;
    if (!index.data(CFileTableModel::kReadingRole).toBool()) {
        int const percent = index.data(CFileTableModel::kPercentRole).toInt();
        filled.setWidth(groove.width() * percent / kWholePercent);
        return filled;
    }
    static QElapsedTimer const clock = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    int const stripe = groove.width() * kStripePercent / kWholePercent;
    std::int64_t const way = groove.width() + stripe;
    auto const gone = static_cast<int>(clock.elapsed() % kStripeTurnMs * way / kStripeTurnMs);
    filled.setLeft(groove.left() + gone - stripe);
    filled.setWidth(stripe);
    return filled & groove;
}

void PaintBar(QPainter& painter, QStyleOptionViewItem const& cell, QModelIndex const& index) {
    QColor const ink = TextColor(cell);
    QColor const fill = IsSelected(cell) ? ink : cell.palette.color(QPalette::Highlight);
    QRect const groove = cell.rect.adjusted(kBarMarginX, kBarMarginY, -kBarMarginX, -kBarMarginY);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(WithAlpha(ink, kGrooveAlpha));
    painter.drawRoundedRect(groove, kBarRadius, kBarRadius);
    painter.setClipRect(QStyle::visualRect(cell.direction, groove, FilledPart(groove, index)));
    painter.setBrush(WithAlpha(fill, kFillAlpha));
    painter.drawRoundedRect(groove, kBarRadius, kBarRadius);
    painter.setClipRect(cell.rect);
    painter.setPen(ink);
    painter.drawText(groove, Qt::AlignCenter, cell.text.trimmed());
}

/// Draws figures of one width each, whatever the font has, so that they stand below each other.
class CFigures {
public:
    explicit CFigures(QFontMetrics const& metrics) : m_metrics(metrics) {
        for (QChar digit = u'0'; digit <= u'9'; digit = QChar(digit.unicode() + 1)) {
            m_nDigit = std::max(m_nDigit, metrics.horizontalAdvance(TempoText({digit.unicode()})));
        }
    }

    [[nodiscard]] int widthOf(QString const& text) const {
        int width = 0;
        for (char32_t const letter : text.toStdU32String()) {
            width += widthOf(letter);
        }
        return width;
    }

    /// Widest part that stands behind the digits in front of the decimal point.
    [[nodiscard]] int widthOfDecimals() const {
        return kTempoDecimals * m_nDigit + m_metrics.horizontalAdvance(QLocale().decimalPoint());
    }

    void draw(QPainter& painter, QRect place, QString const& text) const {
        for (char32_t const letter : text.toStdU32String()) {
            place.setWidth(widthOf(letter));
            painter.drawText(place, Qt::AlignCenter | Qt::TextDontClip,
                             QString::fromUcs4(&letter, 1));
            place.moveLeft(place.left() + place.width());
        }
    }

private:
    [[nodiscard]] int widthOf(char32_t letter) const {
        QString const text = QString::fromUcs4(&letter, 1);
        return QChar::isDigit(letter) ? m_nDigit : m_metrics.horizontalAdvance(text);
    }

    QFontMetrics m_metrics;
    int m_nDigit = 0;
};

/// Of three digits in front of the decimal point, which is as far as tempos and most lengths go.
int WidestFigures(QFont const& font) {
    CFigures const figures((QFontMetrics(font)));
    return figures.widthOf(TempoText(u"000")) + figures.widthOfDecimals();
}

/// Numbers of a column end below each other also where the column's end is on the left.
void PaintMirroredFigures(QPainter& painter, QStyleOptionViewItem const& cell,
                          QString const& text) {
    CFigures const figures((QFontMetrics(cell.font)));
    int const width = figures.widthOf(text);
    int const end = cell.rect.left() + kCellMargin + std::max(WidestFigures(cell.font), width);
    painter.setLayoutDirection(Qt::LeftToRight);
    figures.draw(painter, QRect(end - width, cell.rect.top(), 0, cell.rect.height()), text);
}

} // namespace

void CCellDelegate::paint(QPainter* painter, QStyleOptionViewItem const& option,
                          QModelIndex const& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    cell.state &= ~QStyle::State_HasFocus;
    bool const isUntitled = index.data(CFileTableModel::kUntitledRole).toBool();
    cell.font.setItalic(isUntitled);
    if (isUntitled || index.data(CFileTableModel::kAwaitsRole).toBool()) {
        cell.palette.setBrush(QPalette::Text, HintColor(cell.palette, GroupOf(cell)));
    }
    QStyle const* style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, cell.widget);
    painter->save();
    painter->setClipRect(cell.rect);
    painter->setFont(cell.font);
    paintContents(*painter, cell, index);
    painter->restore();
}

// File names are no mark-up.
bool CCellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                              QStyleOptionViewItem const&, QModelIndex const& index) {
    if (event->type() != QEvent::ToolTip) {
        return false;
    }
    QString const tip = index.data(Qt::ToolTipRole).toString();
    QToolTip::showText(event->globalPos(), PlainTip(tip), view, view->visualRect(index));
    return true;
}

void CCellDelegate::paintContents(QPainter& painter, QStyleOptionViewItem const& cell,
                                  QModelIndex const& index) const {
    QRect area = cell.rect.adjusted(kCellMargin, 0, -kCellMargin, 0);
    if (!cell.icon.isNull()) {
        PaintIcon(painter, cell, area);
    }
    bool const isPlace = index.data(CFileTableModel::kPlaceRole).toBool();
    QString const text = QFontMetrics(cell.font).elidedText(
        cell.text, isPlace ? Qt::ElideLeft : cell.textElideMode, area.width());
    painter.setPen(TextColor(cell));
    if (cell.direction == Qt::RightToLeft && cell.displayAlignment.testFlag(Qt::AlignRight)) {
        PaintMirroredFigures(painter, cell, text);
        return;
    }
    painter.setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(
        QStyle::visualRect(cell.direction, cell.rect, area),
        static_cast<int>(QStyle::visualAlignment(cell.direction, cell.displayAlignment)), text);
}

void CTempoDelegate::paintContents(QPainter& painter, QStyleOptionViewItem const& cell,
                                   QModelIndex const& index) const {
    qsizetype const point = DecimalPointIn(cell.text);
    if (index.data(CFileTableModel::kPercentRole).isValid()) {
        PaintBar(painter, cell, index);
    } else if (point < 0) {
        CCellDelegate::paintContents(painter, cell, index);
    } else {
        paintNumber(painter, cell, point, index.data(CFileTableModel::kMarksRole).toInt());
    }
}

// The decimal points of all rows stand below each other, also those that aren't written.
void CTempoDelegate::paintNumber(QPainter& painter, QStyleOptionViewItem cell, qsizetype point,
                                 int marks) const {
    cell.font.setWeight(QFont::DemiBold);
    CFigures const figures((QFontMetrics(cell.font)));
    QRect area = cell.rect.adjusted(kCellMargin, 0, -kCellMargin, 0);
    if (!cell.icon.isNull()) {
        PaintIcon(painter, cell, area);
    }
    paintMarks(painter, cell, area, marks);
    int const front = figures.widthOf(cell.text.left(point));
    int const behind = std::max(figures.widthOfDecimals(), figures.widthOf(cell.text.mid(point)));
    int const usual = WidestFigures(cell.font);
    bool const isMirrored = cell.direction == Qt::RightToLeft;
    int const end = isMirrored ? cell.rect.left() + kCellMargin + std::max(usual, front + behind)
                               : area.right() + 1;
    painter.setFont(cell.font);
    painter.setPen(TextColor(cell));
    painter.setLayoutDirection(Qt::LeftToRight);
    figures.draw(painter, QRect(end - behind - front, area.top(), 0, area.height()), cell.text);
}

// They are small and stand close, so that a column has room for two.
void CTempoDelegate::paintMarks(QPainter& painter, QStyleOptionViewItem const& cell, QRect& area,
                                int marks) const {
    int const side = cell.decorationSize.width() * kMarkPercent / kWholePercent;
    for (auto const& [mark, icon] : {std::pair(CFileTableModel::kByHand, &m_byHand),
                                     std::pair(CFileTableModel::kNotInFile, &m_notInFile)}) {
        if ((marks & mark) != 0) {
            QRect const place(area.topLeft(), QSize(side, area.height()));
            icon->paint(&painter, QStyle::visualRect(cell.direction, cell.rect, place),
                        Qt::AlignCenter, IsSelected(cell) ? QIcon::Selected : QIcon::Normal);
            area.setLeft(place.right() + kMarkGap);
        }
    }
}

int CTempoDelegate::WidestNumber(QFont font) {
    font.setWeight(QFont::DemiBold);
    return WidestFigures(font);
}
