// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "Language.h"
#include "WindowFixture.h"
#include "desktop/NoticeBar.h"
#include "desktop/Settings.h"
#include "support/Process.h"

#include <QCheckBox>
#include <QDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace {

/// The window, with preferences that nobody has changed before.
struct BpmWindowWishesTest : WindowTest {
    ~BpmWindowWishesTest() override { CSettings().Clear(); }

    std::string notice() const {
        auto const* bar = window.findChild<CNoticeBar*>();
        return bar->isVisible() ? bar->findChild<QLabel*>("noticeText")->text().toStdString() : "";
    }

    void press(char const* name) const { window.findChild<QPushButton*>(name)->click(); }

    bool waitForRows(int rows) const {
        return QTest::qWaitFor([&] { return table->model()->rowCount() == rows; }, 20'000);
    }

    std::string writeTagless(std::string const& name) const {
        Ffmpeg({"-i", writeClip("clip.wav"), "-map_metadata", "-1", "-id3v2_version", "0",
                folder / name});
        return folder / name;
    }

    /// An album of one WAV and two FLAC files.
    void writeAlbum() const {
        std::string const clip = writeClip("a.wav");
        Ffmpeg({"-i", clip, "-metadata", "title=Song", folder / "b.flac"});
        Ffmpeg({"-i", clip, folder / "c.flac"});
    }

    CLanguage const english{QLocale(QLocale::English, QLocale::UnitedStates)};
};

} // namespace

TEST_F(BpmWindowWishesTest, FilesOfOtherKindsAreToldAndAddedOnRequest) {
    writeAlbum();
    drop({folder.Path()});
    ASSERT_TRUE(waitForRows(1));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !notice().empty(); }));
    EXPECT_EQ(notice(), "2 files of other kinds were left out (flac 2).");
    EXPECT_EQ(CSettings().Wishes(), CWishes());
    press("noticeButton0");
    ASSERT_TRUE(waitForRows(3));
    EXPECT_EQ(cell(1, 0), "Song");
    EXPECT_EQ(notice(), "");
    EXPECT_TRUE(CSettings().Wishes().m_bOtherKinds);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(cell(2, 2), "120.00");
}

TEST_F(BpmWindowWishesTest, AFolderOfOtherKindsAloneIsToldOnce) {
    std::filesystem::create_directory(folder / "album");
    WriteText(folder / "album/a.ogg", "");
    WriteText(folder / "album/b.opus", "");
    WriteText(folder / "album/c.opus", "");
    window.addPaths({folder / "album"});
    ASSERT_TRUE(QTest::qWaitFor([this] { return !notice().empty(); }));
    EXPECT_EQ(notice(), "3 files of other kinds were left out (opus 2, ogg 1).");
    press("noticeButton1");
    EXPECT_EQ(notice(), "");
    EXPECT_EQ(CSettings().Stored(), "");
}

TEST_F(BpmWindowWishesTest, OnlyLookingIsSaidAndLastsAsLongAsTheWindow) {
    QTimer::singleShot(0, &window, [] {
        auto* panel = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(panel, nullptr);
        panel->reject();
    });
    EXPECT_FALSE(window.findChild<QLabel*>("onlyLook")->isVisible());
    press("emptyOnlyLook");
    EXPECT_TRUE(window.findChild<QLabel*>("onlyLook")->isVisible());
    EXPECT_EQ(label("emptyHint"), "Finds the tempo of music");
    EXPECT_FALSE(window.findChild<QPushButton*>("emptyOnlyLook")->isVisible());
    EXPECT_EQ(CSettings().Stored(), "");
}

TEST_F(BpmWindowWishesTest, PreferencesAreKeptWhenTheyAreAccepted) {
    QTimer::singleShot(0, &window, [] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->findChild<QCheckBox*>("onlyLookBox")->click();
        dialog->accept();
    });
    QTest::keyClick(&window, Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(CSettings().Stored(), "tags/onlyLook = true");
    EXPECT_TRUE(window.findChild<QLabel*>("onlyLook")->isVisible());
    std::string const file = writeTagless("a.mp3");
    std::string const before = ReadText(file);
    window.addPaths({file});
    ASSERT_TRUE(waitForRows(1));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(cell(0, 2), "120.00");
    EXPECT_EQ(ReadText(file), before);
}

TEST_F(BpmWindowWishesTest, ASizeIsRememberedOnceItWasChanged) {
    window.openPaneAtStart();
    window.close();
    EXPECT_EQ(CSettings().WindowSize(), std::nullopt);
    window.show();
    window.resize(790, 700);
    window.close();
    EXPECT_EQ(CSettings().WindowSize(), QSize(790, 700));
    BpmWindow again(controller);
    again.openPaneAtStart();
    EXPECT_EQ(again.size(), QSize(790, 700));
}

TEST_F(BpmWindowWishesTest, RememberedWishesCountFromTheStart) {
    CSettings().SetWishes({.m_bOtherKinds = true});
    BpmWindow again(controller);
    writeAlbum();
    controller.add(CString::FromPath(folder.Path()));
    EXPECT_EQ(controller.numberOfRowsInTableView(), 3U);
    BpmWindow const factory(controller, CSettings::Factory());
    EXPECT_FALSE(controller.panelShouldShowFilename(CString::FromPath(folder / "b.flac")));
}

TEST_F(BpmWindowWishesTest, TheQuestionBeforeReplacingSpeaksOfTagsOnlyWhereTheyAreWritten) {
    std::string const song = folder / "song.mp3";
    Ffmpeg({"-i", writeClip("clip.wav"), "-metadata", "TBPM=128", song});
    auto const toldBy = [](BpmWindow& asked) {
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return asked.findChild<QAction*>("actionRescan")->isEnabled(); }));
        QString told;
        QTimer::singleShot(0, &asked, [&] {
            auto* question = asked.findChild<QMessageBox*>("askBeforeReplacing");
            told = question->informativeText();
            question->reject();
        });
        asked.findChild<QAction*>("actionRescan")->trigger();
        return told.toStdString();
    };
    controller.add(CString::FromPath(song));
    EXPECT_EQ(toldBy(window), "Tactus did not find them; they may have been set by hand. "
                              "MP3 files get the new tempo in their tags.");
    CSettings().SetWishes({.m_bOnlyLook = true});
    BpmWindow onlyLooking(controller);
    EXPECT_EQ(toldBy(onlyLooking), "Tactus did not find them; they may have been set by hand.");
}
