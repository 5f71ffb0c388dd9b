// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ImageClickView.h"

#include <QAccessible>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {

struct ImageClickViewTest : testing::Test {
    ImageClickViewTest() {
        view.resize(view.sizeHint());
        view.show();
    }

    QxImageClickView view;
    QSignalSpy clicks{&view, &QxImageClickView::clicked};
};

} // namespace

TEST_F(ImageClickViewTest, ASingleClickAsksForThePage) {
    QTest::mouseClick(&view, Qt::LeftButton);
    EXPECT_EQ(clicks.count(), 1);
}

TEST_F(ImageClickViewTest, TheSecondClickOfADoubleClickDoesNothing) {
    QTest::mouseClick(&view, Qt::LeftButton);
    QTest::mouseDClick(&view, Qt::LeftButton);
    EXPECT_EQ(clicks.count(), 1);
}

TEST_F(ImageClickViewTest, TheThirdClickOfARowDoesNothing) {
    QTest::mouseDClick(&view, Qt::LeftButton);
    int const before = static_cast<int>(clicks.count());
    QTest::mouseClick(&view, Qt::LeftButton);
    EXPECT_EQ(clicks.count(), before);
}

TEST_F(ImageClickViewTest, AClickLongAfterADoubleClickCountsAgain) {
    QApplication::setDoubleClickInterval(20);
    QTest::mouseDClick(&view, Qt::LeftButton);
    int const before = static_cast<int>(clicks.count());
    QTest::qWait(40);
    QTest::mouseClick(&view, Qt::LeftButton);
    EXPECT_EQ(clicks.count(), before + 1);
}

TEST_F(ImageClickViewTest, OtherButtonsDoNothing) {
    QTest::mouseClick(&view, Qt::RightButton);
    EXPECT_EQ(clicks.count(), 0);
}

TEST_F(ImageClickViewTest, AScreenReaderSeesAButtonAndCanPressIt) {
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::Button);
    QAccessibleActionInterface* actions = seen->actionInterface();
    ASSERT_NE(actions, nullptr);
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks.count(), 1);
}

TEST_F(ImageClickViewTest, SpaceAndReturnDoWhatAClickDoes) {
    QTest::keyClick(&view, Qt::Key_Space);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(clicks.count(), 2);
}
