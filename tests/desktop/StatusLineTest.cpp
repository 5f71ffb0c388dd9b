// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/StatusLine.h"

#include "desktop/Tints.h"

#include <QApplication>
#include <QImage>
#include <QProgressBar>
#include <gtest/gtest.h>

namespace {

/// Pixels in the middle fifth of the bar that can be read on its empty ground.
int LegiblePixels(CStatusLine& line, int percent) {
    auto* bar = line.findChild<QProgressBar*>("overallProgress");
    bar->show();
    bar->setValue(percent);
    bar->resize(180, 24);
    QImage const image = bar->grab().toImage();
    QColor const ground = bar->palette().color(QPalette::Base);
    int count = 0;
    for (int x = image.width() * 2 / 5; x < image.width() * 3 / 5; ++x) {
        for (int y = 4; y < image.height() - 4; ++y) {
            count += static_cast<int>(Contrast(image.pixelColor(x, y), ground) >= 4.5);
        }
    }
    return count;
}

} // namespace

TEST(StatusLineTest, ThePercentageCanBeReadInMirroredWindowsToo) {
    for (auto const direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        CStatusLine line;
        line.setLayoutDirection(direction);
        line.resize(600, 30);
        // "8%" has two signs of at least ten pixels; the bar itself ends far from the middle.
        EXPECT_GE(LegiblePixels(line, 8), 20) << direction;
    }
}
