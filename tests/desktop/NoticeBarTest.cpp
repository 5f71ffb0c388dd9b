// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/NoticeBar.h"

#include <QAccessible>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
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
