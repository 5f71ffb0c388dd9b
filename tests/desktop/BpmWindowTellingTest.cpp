// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "Language.h"
#include "WindowFixture.h"
#include "desktop/ExportDialog.h"
#include "desktop/ListDialog.h"
#include "support/Unprivileged.h"

#include <QComboBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QTreeWidget>

namespace {

struct BpmWindowTellingTest : WindowTest {
    /// Reads all rows of the dialog that comes next, then presses its button of this name, or
    /// closes it.
    void readDialog(char const* button = nullptr) {
        QTimer::singleShot(0, &window, [this, button] {
            auto* dialog = qobject_cast<CListDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            auto const* list = dialog->findChild<QTreeWidget*>();
            for (int row = 0; row < list->topLevelItemCount(); ++row) {
                rows << list->topLevelItem(row)->text(0) + "|" + list->topLevelItem(row)->text(1);
            }
            if (button != nullptr) {
                dialog->findChild<QPushButton*>(button)->click();
            } else {
                dialog->reject();
            }
        });
    }

    CLanguage const english{QLocale(QLocale::English, QLocale::UnitedStates)};
    QStringList rows;
};

} // namespace

TEST_F(BpmWindowTellingTest, WhatCameOfARunIsSummedUp) {
    QSignalSpy const notes(&window, &BpmWindow::noteWanted);
    WriteText(folder / "c.wav", "");
    window.addPaths({writeClip("a.wav"), writeClip("b.wav"), folder / "c.wav"});
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !label("summary").isEmpty(); }));
    EXPECT_EQ(label("summary"), "3 analyzed in 1 s, 0 stored, 1 problem");
    EXPECT_TRUE(window.findChild<QLabel*>("summary")->isVisible());
    EXPECT_EQ(notes.count(), 0) << "of a short run";
}

TEST_F(BpmWindowTellingTest, TheTitleTellsHowFarTheRunIs) {
    EXPECT_EQ(window.windowTitle(), "Tactus");
    open({writeLong("a.wav")});
    ASSERT_TRUE(QTest::qWaitFor([this] { return window.windowTitle() != "Tactus"; }, 60'000));
    EXPECT_TRUE(window.windowTitle().endsWith("% – Tactus")) << window.windowTitle().toStdString();
    QTest::keyClick(&window, Qt::Key_Escape);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(QTest::qWaitFor([this] { return window.windowTitle() == "Tactus"; }));
    EXPECT_EQ(label("summary"), "") << "nothing was analyzed";
}

TEST_F(BpmWindowTellingTest, FoldersThatCouldNotBeReadAreListed) {
    std::filesystem::create_directory(folder / "closed");
    {
        CUnprivileged const nobody{folder.Path(), folder / "closed"};
        std::filesystem::permissions(folder / "closed", std::filesystem::perms::none);
        controller.add(CString::FromPath(folder.Path()));
    }
    auto* show = window.findChild<QPushButton*>("noticeButton0");
    ASSERT_TRUE(QTest::qWaitFor([show] { return show->isVisible(); }));
    EXPECT_EQ(show->text(), "Show");
    readDialog();
    show->click();
    EXPECT_EQ(rows, QStringList{QString::fromStdString(folder / "closed") + "|"});
    EXPECT_FALSE(show->isVisible());
}

TEST_F(BpmWindowTellingTest, F1ListsTheKeysAndLeadsToTheGuide) {
    readDialog();
    QTest::keyClick(&window, Qt::Key_F1);
    EXPECT_TRUE(rows.contains("Ctrl+O|Add")) << rows.join('\n').toStdString();
    EXPECT_TRUE(rows.contains("Shift+F5|Analyze all again"));
    EXPECT_TRUE(rows.contains("Ctrl+,|Preferences"));
    EXPECT_TRUE(rows.contains("Space|In the song: play and pause"));
}

TEST_F(BpmWindowTellingTest, ControlEExportsTheSelectedRowsAsTheyAreShown) {
    EXPECT_FALSE(action("actionExport")->isEnabled());
    window.addPaths({writeClip("a.wav"), writeClip("b.wav")});
    ASSERT_TRUE(waitUntilIdle());
    table->selectRow(1);
    std::string const target = folder / "out.csv";
    QTimer::singleShot(0, &window, [target] {
        auto* dialog = qobject_cast<CExportDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        EXPECT_TRUE(dialog->save(QString::fromStdString(target)));
        dialog->accept();
    });
    QTest::keyClick(&window, Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(ReadText(target), "path,title,artist,tempo,source,error\n" + folder.Path() +
                                    "/b.wav,b.wav,,120.00,analysis,\n");
    EXPECT_EQ(label("noticeText").toStdString(), "1 row exported to “" + target + "”.");
}

TEST_F(BpmWindowTellingTest, ControlETakesSongsAlongWithTheirBeats) {
    WriteWav(folder / "song.wav", MakeClickTrack(120.0, 40.0));
    window.addPaths({folder / "song.wav"});
    ASSERT_TRUE(waitUntilIdle());
    std::string const target = folder / "out.txt";
    QTimer::singleShot(0, &window, [target] {
        auto* dialog = qobject_cast<CExportDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        auto const visible = [dialog](char const* name) {
            return QTest::qWaitFor([=] { return dialog->findChild<QWidget*>(name)->isVisible(); },
                                   10'000);
        };
        auto* formats = dialog->findChild<QComboBox*>("exportFormat");
        formats->setCurrentIndex(formats->findText("(txt)", Qt::MatchEndsWith));
        ASSERT_TRUE(visible("exportGather"));
        EXPECT_EQ(dialog->findChild<QLabel*>("exportGathered")->text(),
                  "This song has no beat grid yet.");
        QTest::mouseClick(dialog->findChild<QPushButton*>("exportGather"), Qt::LeftButton);
        auto const* save = dialog->findChild<QPushButton*>("exportSave");
        EXPECT_TRUE(QTest::qWaitFor([=] { return save->isEnabled(); }, 20'000));
        EXPECT_TRUE(dialog->save(QString::fromStdString(target)));
        dialog->accept();
    });
    QTest::keyClick(&window, Qt::Key_E, Qt::ControlModifier);
    EXPECT_NE(ReadText(target).find("1.1 downbeat"), std::string::npos);
    EXPECT_EQ(label("noticeText").toStdString(), "1 song exported to “" + target + "”.");
}
