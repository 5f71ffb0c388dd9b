// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Tints.h"

#include <array>
#include <gtest/gtest.h>

namespace {

struct CGround {
    QColor m_text;
    QColor m_base;
};

// Text and ground of desktops: light, dark, high contrast both ways, sepia, and a careless one.
std::array<CGround, 6> const kGrounds{{{QColor(0, 0, 0), QColor(255, 255, 255)},
                                       {QColor(252, 252, 252), QColor(27, 30, 32)},
                                       {QColor(255, 255, 255), QColor(0, 0, 0)},
                                       {QColor(0, 0, 128), QColor(255, 255, 0)},
                                       {QColor(91, 70, 54), QColor(244, 236, 216)},
                                       {QColor(120, 120, 120), QColor(140, 140, 140)}}};

} // namespace

TEST(TintsTest, ContrastIsThatOfTheStandard) {
    EXPECT_DOUBLE_EQ(Contrast(Qt::black, Qt::white), 21.0);
    EXPECT_DOUBLE_EQ(Contrast(Qt::white, Qt::white), 1.0);
    // #767676 is the lightest grey that passes 4.5 on white; it is given as 4.54.
    EXPECT_NEAR(Contrast(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.005);
    EXPECT_LT(Contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.5);
}

TEST(TintsTest, AHintIsLegibleOnEveryGround) {
    for (CGround const& ground : kGrounds) {
        EXPECT_GE(Contrast(HintColor(ground.m_text, ground.m_base), ground.m_base), 4.5)
            << ground.m_base.name().toStdString();
    }
}

TEST(TintsTest, AHintIsFainterThanTheTextWhereThereIsRoom) {
    EXPECT_LT(Contrast(HintColor(Qt::black, Qt::white), Qt::white), 21.0);
    EXPECT_EQ(HintColor(Qt::black, Qt::white), QColor(102, 102, 102)); // 60 % black on white
}

TEST(TintsTest, APaletteWithoutAPlaceholderColorHasLegibleHints) {
    QPalette palette;
    palette.setColor(QPalette::Text, QColor(252, 252, 252));
    palette.setColor(QPalette::Base, QColor(27, 30, 32));
    palette.setColor(QPalette::AlternateBase, QColor(35, 38, 41));
    palette.setColor(QPalette::PlaceholderText, Qt::black);
    for (auto const role : {QPalette::Base, QPalette::AlternateBase}) {
        EXPECT_GE(Contrast(HintColor(palette), palette.color(role)), 4.5);
    }
}

TEST(TintsTest, ALightSecondRowInADarkPaletteIsNotUsed) {
    QPalette palette;
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::Base, Qt::black);
    palette.setColor(QPalette::AlternateBase, QColor(247, 247, 247));
    EXPECT_FALSE(CanStripeRows(palette));
    EXPECT_GE(Contrast(HintColor(palette), Qt::black), 4.5);
    palette.setColor(QPalette::AlternateBase, QColor(20, 20, 20));
    EXPECT_TRUE(CanStripeRows(palette));
}

TEST(TintsTest, ASignHasItsContrastOnEveryGround) {
    QColor const amber(0xD9, 0x8E, 0x04);
    for (CGround const& ground : kGrounds) {
        EXPECT_GE(Contrast(SignColor(amber, ground.m_base), ground.m_base), 3.0);
    }
    EXPECT_EQ(SignColor(amber, Qt::black), amber);
}
