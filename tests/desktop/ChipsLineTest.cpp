// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ChipsLine.h"

#include "desktop/Tints.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

namespace {

struct ChipsLineTest : testing::Test {
    ChipsLineTest() {
        line.show();
        line.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&line));
    }

    std::string text(char const* name) const {
        return line.findChild<QToolButton*>(name)->text().toStdString();
    }

    CChipsLine line;
    QSignalSpy chosen{&line, &CChipsLine::filterChosen};
};

} // namespace

TEST_F(ChipsLineTest, EveryChipHasItsCount) {
    line.setCounts({301, 151, 14, 6, 3});
    EXPECT_EQ(text("chipAll"), "All 301");
    EXPECT_EQ(text("chipToDo"), "To do 151");
    EXPECT_EQ(text("chipToReview"), "To review 14");
    EXPECT_EQ(text("chipByHand"), "By hand 6");
    EXPECT_EQ(text("chipProblems"), "Problems 3");
}

TEST_F(ChipsLineTest, OneFilterIsOnAndAllIsTheFirst) {
    EXPECT_EQ(line.filter(), ERowFilter::All);
    line.choose(ERowFilter::Problems);
    EXPECT_EQ(line.filter(), ERowFilter::Problems);
    EXPECT_FALSE(line.findChild<QToolButton*>("chipAll")->isChecked());
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen[0][0].value<ERowFilter>(), ERowFilter::Problems);
}

TEST_F(ChipsLineTest, TheKeysOutliveNewCounts) {
    line.setCounts({1, 1, 0, 0, 0});
    QTest::keyClick(&line, Qt::Key_2, Qt::AltModifier);
    EXPECT_EQ(line.filter(), ERowFilter::ToDo);
    line.setCounts({2, 1, 0, 0, 1});
    QTest::keyClick(&line, Qt::Key_5, Qt::AltModifier);
    EXPECT_EQ(line.filter(), ERowFilter::Problems);
    QTest::keyClick(&line, Qt::Key_1, Qt::AltModifier);
    EXPECT_EQ(line.filter(), ERowFilter::All);
}

TEST_F(ChipsLineTest, TheHintIsLegibleWhereThePaletteLeavesItBlack) {
    QPalette palette = line.palette();
    palette.setColor(QPalette::Base, QColor(27, 30, 32));
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::PlaceholderText, Qt::black);
    line.setPalette(palette);
    QPalette const& field = line.findChild<QLineEdit*>("query")->palette();
    EXPECT_EQ(field.color(QPalette::Base), QColor(27, 30, 32));
    EXPECT_GE(Contrast(field.color(QPalette::PlaceholderText), field.color(QPalette::Base)), 4.5);
}

TEST_F(ChipsLineTest, TheChosenChipIsUnderlined) {
    auto const isUnderlined = [this](char const* name) {
        return line.findChild<QToolButton*>(name)->font().underline();
    };
    EXPECT_TRUE(isUnderlined("chipAll"));
    line.choose(ERowFilter::Problems);
    EXPECT_TRUE(isUnderlined("chipProblems"));
    EXPECT_FALSE(isUnderlined("chipAll"));
}
