// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/NoticeBar.h"

#include "desktop/Tints.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

struct NoticeBarTest : testing::Test {
    NoticeBarTest() {
        window.resize(600, 200);
        bar.setGeometry(0, 0, 600, 60);
        window.show();
    }

    void post(ENotice about, char const* text) {
        bar.post({about, text, {{"Act", [this] { ++acted; }}, {"Close", {}}}});
    }

    std::string text() const { return bar.findChild<QLabel*>("noticeText")->text().toStdString(); }
    QPushButton* button(int number) const {
        return bar.findChild<QPushButton*>(QString("noticeButton%1").arg(number));
    }

    QWidget window;
    CNoticeBar bar{&window};
    int acted = 0;
};

/// The middle row of what `label` shows, in its parent. Its upper right corner is bare.
double MiddleOf(QLabel& label) {
    QImage const picture = label.grab().toImage();
    QRgb const ground = picture.pixel(picture.width() - 1, 0);
    int first = picture.height();
    int last = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != ground) {
                first = std::min(first, y);
                last = y;
            }
        }
    }
    return label.y() + (first + last) / 2.0;
}

} // namespace

TEST_F(NoticeBarTest, IsGoneUntilThereIsANotice) {
    EXPECT_FALSE(bar.isVisible());
    post(ENotice::Added, "one");
    EXPECT_TRUE(bar.isVisible());
    EXPECT_EQ(text(), "one");
}

TEST_F(NoticeBarTest, StaysUntilItIsRead) {
    post(ENotice::Added, "one");
    QTest::qWait(50);
    EXPECT_TRUE(bar.isVisible());
    QTest::mouseClick(button(1), Qt::LeftButton);
    EXPECT_FALSE(bar.isVisible());
    EXPECT_EQ(acted, 0);
}

TEST_F(NoticeBarTest, AButtonActsOnceAndTheNoticeGoes) {
    post(ENotice::Hidden, "one");
    button(0)->click();
    button(0)->click();
    EXPECT_EQ(acted, 1);
    EXPECT_FALSE(bar.isVisible());
}

TEST_F(NoticeBarTest, ANoticeThatWasCoveredReturns) {
    post(ENotice::Folders, "first");
    post(ENotice::Added, "second");
    EXPECT_EQ(text(), "second");
    button(1)->click();
    EXPECT_TRUE(bar.isVisible());
    EXPECT_EQ(text(), "first");
}

TEST_F(NoticeBarTest, ALaterNoticeAboutTheSameTakesThePlaceOfTheEarlier) {
    post(ENotice::Added, "first");
    post(ENotice::Added, "second");
    button(1)->click();
    EXPECT_FALSE(bar.isVisible());
}

TEST_F(NoticeBarTest, AWithdrawnNoticeIsGoneAndOthersStay) {
    post(ENotice::Closing, "first");
    post(ENotice::Added, "second");
    bar.withdraw(ENotice::Closing);
    EXPECT_EQ(text(), "second");
    EXPECT_FALSE(bar.has(ENotice::Closing));
    bar.withdraw(ENotice::Added);
    EXPECT_FALSE(bar.isVisible());
}

TEST_F(NoticeBarTest, ASingleChoiceHasASingleButton) {
    bar.post({ENotice::Added, "one", {{"Close", {}}}});
    EXPECT_TRUE(button(0)->isVisible());
    EXPECT_EQ(button(0)->text(), "Close");
    EXPECT_FALSE(button(1)->isVisible());
}

TEST_F(NoticeBarTest, ANoticeMayBringTheNext) {
    bar.post({ENotice::Added, "one", {{"More", [this] { post(ENotice::Added, "two"); }}}});
    button(0)->click();
    EXPECT_TRUE(bar.isVisible());
    EXPECT_EQ(text(), "two");
}

TEST_F(NoticeBarTest, SignsOfMarkUpAreShownAsTheyAre) {
    post(ENotice::Added, "<b>a</b>");
    EXPECT_EQ(bar.findChild<QLabel*>("noticeText")->textFormat(), Qt::PlainText);
}

TEST_F(NoticeBarTest, AScreenReaderSeesAnAlertNamedByItsSentence) {
    post(ENotice::Closing, "Still working on 12 files.");
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&bar);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::AlertMessage);
    EXPECT_EQ(seen->text(QAccessible::Name), "Still working on 12 files.");
}

TEST_F(NoticeBarTest, TheKeyboardLeavesWithTheNotice) {
    QSignalSpy const left(&bar, &CNoticeBar::focusLeft);
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    post(ENotice::Closing, "one");
    bar.focusLastButton();
    EXPECT_TRUE(button(1)->hasFocus());
    QTest::keyClick(button(1), Qt::Key_Space);
    EXPECT_FALSE(bar.isVisible());
    EXPECT_EQ(left.count(), 1);
}

TEST_F(NoticeBarTest, TheSignStandsInTheMiddleOfItsSentence) {
    post(ENotice::Added, "xxxx"); // no letter stands out above or below
    QTest::qWait(50);
    auto* sentence = bar.findChild<QLabel*>("noticeText");
    for (QLabel* label : bar.findChildren<QLabel*>()) {
        // Three pixels, because small letters are below the middle of their line.
        EXPECT_NEAR(MiddleOf(*label), MiddleOf(*sentence), 3.0);
    }
}

TEST_F(NoticeBarTest, OnADarkWindowItIsDarkThoughTipsAreLight) {
    QPalette const before = QApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::Window, QColor(42, 46, 50));
    dark.setColor(QPalette::WindowText, QColor(252, 252, 252));
    dark.setColor(QPalette::ToolTipBase, QColor(255, 255, 220));
    dark.setColor(QPalette::ToolTipText, Qt::black);
    QApplication::setPalette(dark);
    post(ENotice::Added, "one");
    QTest::qWait(50);
    QColor const ground = bar.grab().toImage().pixelColor(bar.width() / 2, bar.height() - 4);
    EXPECT_LT(Contrast(ground, dark.color(QPalette::Window)), 3.0);
    auto const* sentence = bar.findChild<QLabel*>("noticeText");
    EXPECT_GE(Contrast(sentence->palette().color(sentence->foregroundRole()), ground), 4.5);
    QApplication::setPalette(before);
}

TEST_F(NoticeBarTest, TipsColoursStayWhereTheyGoWithTheWindow) {
    QPalette const before = QApplication::palette();
    QPalette light = before;
    light.setColor(QPalette::Window, QColor(239, 239, 239));
    light.setColor(QPalette::ToolTipBase, QColor(255, 255, 220));
    QApplication::setPalette(light);
    post(ENotice::Added, "one");
    QTest::qWait(50);
    EXPECT_EQ(bar.grab().toImage().pixelColor(bar.width() / 2, bar.height() - 4),
              QColor(255, 255, 220));
    QApplication::setPalette(before);
}
