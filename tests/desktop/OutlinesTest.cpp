// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Outlines.h"

#include "desktop/Tints.h"

#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QStyle>
#include <gtest/gtest.h>

namespace {

/// The window's palette is this one as long as it lives.
struct COwnPalette {
    COwnPalette(QColor const& window, QColor const& text) {
        QPalette palette;
        for (auto const role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
            palette.setColor(role, window);
        }
        for (auto const role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
            palette.setColor(role, text);
        }
        QApplication::setPalette(palette);
    }
    ~COwnPalette() { QApplication::setPalette(m_before); }

    QPalette m_before = QApplication::palette();
};

/// Pixels of an empty control that stand out from the window.
int VisiblePixels(QWidget& control) {
    control.resize(40, 30);
    QImage image(control.size(), QImage::Format_RGB32);
    QColor const ground = QApplication::palette().color(QPalette::Window);
    image.fill(ground);
    control.render(&image, {}, {}, {});
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += static_cast<int>(Contrast(image.pixelColor(x, y), ground) >= 3.0);
        }
    }
    return count;
}

struct OutlinesTest : testing::Test {
    void SetUp() override {
        if (QApplication::style()->name() != "fusion") {
            GTEST_SKIP() << "another style";
        }
    }
};

} // namespace

TEST_F(OutlinesTest, BoxesThatAreNotChosenCanBeSeenOnDarkWindows) {
    COutlines const outlines;
    for (QColor const& window : {QColor(Qt::black), QColor(0x2A, 0x2E, 0x32), QColor(0, 0, 0x80)}) {
        COwnPalette const palette(window, Qt::white);
        QRadioButton radio;
        QCheckBox box;
        QLineEdit field;
        // Of a circle and a square of 13 pixels, and of a field of 40 by 20.
        EXPECT_GE(VisiblePixels(radio), 24) << window.name().toStdString();
        EXPECT_GE(VisiblePixels(box), 40) << window.name().toStdString();
        EXPECT_GE(VisiblePixels(field), 100) << window.name().toStdString();
    }
}

TEST_F(OutlinesTest, LightWindowsAreAsTheStyleHasThem) {
    COwnPalette const palette(QColor(0xEF, 0xEF, 0xEF), Qt::black);
    QRadioButton before;
    before.resize(40, 30);
    QImage const plain = before.grab().toImage();
    COutlines const outlines;
    EXPECT_EQ(QApplication::palette("QRadioButton"), QApplication::palette());
    QRadioButton after;
    after.resize(40, 30);
    EXPECT_EQ(after.grab().toImage(), plain);
}

TEST_F(OutlinesTest, BoxesInMenusCanBeSeenOnDarkWindows) {
    COutlines const outlines;
    COwnPalette const palette(Qt::black, Qt::white);
    QMenu menu;
    QAction* entry = menu.addAction(QString());
    entry->setCheckable(true);
    int const boxes = VisiblePixels(menu);
    entry->setCheckable(false);
    EXPECT_GE(boxes, VisiblePixels(menu) + 40);
}

TEST_F(OutlinesTest, NothingElseIsTinted) {
    COwnPalette const palette(Qt::black, Qt::white);
    COutlines const outlines;
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), QColor(Qt::black));
    EXPECT_EQ(QWidget().palette().color(QPalette::Window), QColor(Qt::black));
    EXPECT_EQ(QApplication::palette("QCheckBox").color(QPalette::Base), QColor(Qt::black));
}
