// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/PreferencesDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <gtest/gtest.h>

namespace {

void Click(CPreferencesDialog const& dialog, char const* box) {
    dialog.findChild<QCheckBox*>(box)->click();
}

} // namespace

TEST(PreferencesDialogTest, UntouchedItGivesBackWhatItGot) {
    CWishes const wishes{.m_bOtherKinds = true,
                         .m_bWriteOtherKinds = true,
                         .m_bKeepTime = true,
                         .m_bZeros = false,
                         .m_bLikelyOctave = true,
                         .m_nDecimals = 1,
                         .m_dSlowest = 60.0,
                         .m_dFastest = 140.0};
    EXPECT_EQ(CPreferencesDialog({.m_wishes = wishes}).wishes(), wishes);
    EXPECT_EQ(CPreferencesDialog({}).wishes(), CWishes());
    EXPECT_TRUE(CPreferencesDialog({}).remembersLayout());
}

TEST(PreferencesDialogTest, EveryBoxIsAWishOfItsOwn) {
    CPreferencesDialog const dialog({});
    Click(dialog, "otherKinds");
    EXPECT_EQ(dialog.wishes(), CWishes{.m_bOtherKinds = true});
    Click(dialog, "otherKinds");
    Click(dialog, "zeros");
    EXPECT_EQ(dialog.wishes(), CWishes{.m_bZeros = false});
    Click(dialog, "zeros");
    Click(dialog, "likely");
    EXPECT_EQ(dialog.wishes(), CWishes{.m_bLikelyOctave = true});
    Click(dialog, "likely");
    Click(dialog, "keepTime");
    EXPECT_EQ(dialog.wishes(), CWishes{.m_bKeepTime = true});
    Click(dialog, "keepTime");
    Click(dialog, "writeOtherKinds");
    EXPECT_EQ(dialog.wishes(), CWishes{.m_bWriteOtherKinds = true});
    Click(dialog, "writeOtherKinds");
    dialog.findChild<QComboBox*>("decimals")->setCurrentIndex(2);
    EXPECT_EQ(dialog.wishes(), CWishes{.m_nDecimals = 0});
    Click(dialog, "remember");
    EXPECT_FALSE(dialog.remembersLayout());
}

TEST(PreferencesDialogTest, ARangeHoldsAnOctaveAtLeast) {
    CPreferencesDialog const dialog({});
    auto* slowest = dialog.findChild<QDoubleSpinBox*>("slowest");
    EXPECT_FALSE(slowest->isEnabled());
    Click(dialog, "range");
    EXPECT_TRUE(slowest->isEnabled());
    EXPECT_EQ(dialog.wishes().m_dSlowest, 70.0);
    EXPECT_EQ(dialog.wishes().m_dFastest, 180.0);
    slowest->setValue(110.0);
    EXPECT_EQ(dialog.wishes().m_dFastest, 220.0);
}

TEST(PreferencesDialogTest, WhoOnlyLooksNeedNotSayHowToWrite) {
    CPreferencesDialog const dialog({});
    Click(dialog, "onlyLookBox");
    EXPECT_FALSE(dialog.findChild<QCheckBox*>("keepTime")->isEnabled());
    EXPECT_EQ(dialog.wishes(), CWishes{.m_bOnlyLook = true});
}

TEST(PreferencesDialogTest, DefaultsComeBackAtOnce) {
    CPreferencesDialog const dialog(
        {.m_wishes = {.m_bOnlyLook = true, .m_nDecimals = 0}, .m_bRemembersLayout = false});
    dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::RestoreDefaults)->click();
    EXPECT_EQ(dialog.wishes(), CWishes());
    EXPECT_TRUE(dialog.remembersLayout());
}

TEST(PreferencesDialogTest, ItSaysWhatIsStored) {
    auto const text = [](CPreferencesDialog const& dialog) {
        return dialog.findChild<QLabel*>("stored")->text().toStdString();
    };
    EXPECT_EQ(text(CPreferencesDialog({})), "Nothing is stored: everything is as it came.");
    EXPECT_EQ(text(CPreferencesDialog({.m_sStored = "tempo/decimals = 1", .m_sFile = "/a.conf"})),
              "Stored in /a.conf:\ntempo/decimals = 1");
}
