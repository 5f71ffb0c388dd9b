// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSize>
#include <gtest/gtest.h>

namespace {

/// Starts and ends without a file.
struct SettingsTest : testing::Test {
    SettingsTest() { CSettings().Clear(); }
    ~SettingsTest() override { CSettings().Clear(); }

    static bool hasFile() { return QFileInfo::exists(CSettings::FilePath()); }

    static void write(char const* text) {
        QFile file(CSettings::FilePath());
        ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
};

} // namespace

TEST_F(SettingsTest, ThereIsNoFileBeforeTheFirstChange) {
    CSettings settings;
    EXPECT_EQ(settings.Wishes(), CWishes());
    EXPECT_EQ(settings.PaneOpen(), std::nullopt);
    EXPECT_EQ(settings.WindowSize(), std::nullopt);
    EXPECT_TRUE(settings.RemembersLayout());
    settings.SetWishes({});
    settings.SetRemembersLayout(true);
    EXPECT_FALSE(hasFile());
    EXPECT_EQ(settings.Stored(), "");
}

TEST_F(SettingsTest, OnlyWhatDiffersIsStored) {
    CSettings settings;
    settings.SetWishes({.m_bOtherKinds = true, .m_nDecimals = 1});
    EXPECT_TRUE(hasFile());
    EXPECT_EQ(settings.Stored(), "list/otherKinds = true\ntempo/decimals = 1");
    settings.SetWishes({.m_nDecimals = 1});
    EXPECT_EQ(settings.Stored(), "tempo/decimals = 1");
}

TEST_F(SettingsTest, WishesComeBackAsTheyWere) {
    CWishes const wishes{.m_bOtherKinds = true,
                         .m_bWriteOtherKinds = true,
                         .m_bOnlyLook = true,
                         .m_bKeepTime = true,
                         .m_bZeros = false,
                         .m_bLikelyOctave = true,
                         .m_nDecimals = 0,
                         .m_dSlowest = 70.5,
                         .m_dFastest = 180.0};
    CSettings().SetWishes(wishes);
    EXPECT_EQ(CSettings().Wishes(), wishes);
}

TEST_F(SettingsTest, FactorySettingsReadAndKeepNothing) {
    CSettings().SetWishes({.m_bOnlyLook = true});
    CSettings().SetPaneOpen(true);
    QString const before = CSettings().Stored();
    CSettings factory = CSettings::Factory();
    EXPECT_EQ(factory.Wishes(), CWishes());
    EXPECT_EQ(factory.PaneOpen(), std::nullopt);
    factory.SetWishes({.m_nDecimals = 0});
    factory.SetPaneOpen(false);
    factory.SetWindowSize({800, 600});
    factory.Clear();
    EXPECT_EQ(CSettings().Stored(), before);
}

TEST_F(SettingsTest, ALayoutThatIsNotToBeRememberedIsForgotten) {
    CSettings settings;
    settings.SetWindowSize({800, 600});
    EXPECT_EQ(settings.WindowSize(), QSize(800, 600));
    settings.SetRemembersLayout(false);
    settings.SetWindowSize({900, 700});
    EXPECT_EQ(settings.WindowSize(), std::nullopt);
    EXPECT_EQ(settings.Stored(), "window/remember = false");
}

TEST_F(SettingsTest, NumbersThatCantBeMeantAreNotTaken) {
    write("[tempo]\ndecimals=7\nslowest=100\nfastest=120\n");
    EXPECT_EQ(CSettings().Wishes(), CWishes());
    write("[tempo]\nslowest=nan\nfastest=inf\ndecimals=-3\n");
    EXPECT_EQ(CSettings().Wishes(), CWishes{.m_nDecimals = 0});
}

TEST_F(SettingsTest, ForgettingEverythingRemovesTheFile) {
    CSettings settings;
    settings.SetPaneOpen(true);
    EXPECT_TRUE(hasFile());
    settings.Clear();
    EXPECT_FALSE(hasFile());
}
