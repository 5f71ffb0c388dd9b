// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/CellDelegate.h"

#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <gtest/gtest.h>

namespace {

constexpr int kWidth = 160;
constexpr int kHeight = 24;

/// First and last pixel of a number that is painted into a cell of that direction.
std::pair<int, int> InkOf(QString const& number, Qt::LayoutDirection direction) {
    QStandardItemModel model(1, 1);
    QModelIndex const index = model.index(0, 0);
    model.setData(index, number);
    model.setData(index, static_cast<int>(Qt::AlignRight | Qt::AlignVCenter),
                  Qt::TextAlignmentRole);
    QStyleOptionViewItem cell;
    cell.rect = QRect(0, 0, kWidth, kHeight);
    cell.direction = direction;
    cell.state = QStyle::State_Enabled | QStyle::State_Active;
    cell.palette.setColor(QPalette::Text, Qt::black);
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    CCellDelegate().paint(&painter, cell, index);
    painter.end();
    std::pair<int, int> ink(kWidth, -1);
    for (int x = 0; x < kWidth; ++x) {
        for (int y = 0; y < kHeight; ++y) {
            if (image.pixelColor(x, y).lightness() < 128) {
                ink = {std::min(ink.first, x), x};
            }
        }
    }
    return ink;
}

} // namespace

TEST(CellDelegateTest, NumbersEndBelowEachOtherInMirroredCellsToo) {
    for (auto const direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        auto const [shortFirst, shortLast] = InkOf("79.90", direction);
        auto const [longFirst, longLast] = InkOf("200.90", direction);
        EXPECT_EQ(shortLast, longLast) << direction;
        EXPECT_GT(shortFirst, longFirst) << direction;
        // They stand at the column's end, which is left in a mirrored cell.
        EXPECT_EQ(longLast < kWidth / 2, direction == Qt::RightToLeft) << direction;
    }
}
