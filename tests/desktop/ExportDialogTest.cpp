// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ExportDialog.h"

#include "Language.h"
#include "base/FileIdentity.h"
#include "records/RecordStore.h"
#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

struct ExportDialogTest : testing::Test {
    static std::vector<CExportRow> songs(std::size_t count) {
        return std::vector<CExportRow>(count,
                                       {"/m/a, b.mp3", "Song", "Singer", "128.00", true, {}, ""});
    }

    static std::string preview(CExportDialog const& dialog) {
        return dialog.findChild<QPlainTextEdit*>("exportPreview")->toPlainText().toStdString();
    }

    CLanguage const english{QLocale(QLocale::English, QLocale::UnitedStates)};
    CTempFolder folder;
    CRecordStore store{folder / "records"};
};

/// The dialog over songs that can be heard, or can't.
struct ExportSongsTest : ExportDialogTest {
    /// 40 s at 120 BPM, old enough that a change would show.
    CExportRow song(std::string const& name) const {
        WriteWav(folder / name, MakeClickTrack(120.0, 40.0));
        WaitUntilChangesShow(*IdentityAt(folder / name));
        return {folder / name, name, "", "120.00", false, {}, ""};
    }

    CExportRow noSong(std::string const& name) const {
        WriteText(folder / name, "no sound");
        return {folder / name, name, "", "0.00", false, {}, ""};
    }

    static void choose(CExportDialog const& dialog, char const* ending) {
        auto* formats = dialog.findChild<QComboBox*>("exportFormat");
        formats->setCurrentIndex(formats->findText(QString("(%1)").arg(ending), Qt::MatchEndsWith));
    }

    static std::string gathered(CExportDialog const& dialog) {
        auto const* label = dialog.findChild<QLabel*>("exportGathered");
        return label->isVisible() ? label->text().toStdString() : "";
    }

    static bool waitFor(CExportDialog const& dialog, char const* text) {
        return QTest::qWaitFor([&] { return gathered(dialog) == text; }, 20'000);
    }

    static QPushButton* button(CExportDialog const& dialog, char const* name) {
        return dialog.findChild<QPushButton*>(name);
    }
};

char const kHead[] = "path,title,artist,tempo,source,error\n";
char const kLine[] = "\"/m/a, b.mp3\",Song,Singer,128.00,tag,\n";

} // namespace

TEST_F(ExportDialogTest, TheFirstLinesAreShown) {
    CExportDialog const dialog(songs(2), {}, store);
    EXPECT_EQ(preview(dialog), std::string(kHead) + kLine + kLine);
    CExportDialog const many(songs(20), {}, store);
    EXPECT_TRUE(preview(many).ends_with("…"));
    many.findChild<QComboBox*>("exportFormat")->setCurrentIndex(1);
    EXPECT_TRUE(preview(many).starts_with("path\ttitle\t"));
}

TEST_F(ExportDialogTest, SelectedRowsComeFirstAndAllCanBeHad) {
    CExportDialog dialog(songs(3), songs(1), store);
    auto* which = dialog.findChild<QComboBox*>("exportWhich");
    EXPECT_EQ(which->currentText(), "1 selected row");
    EXPECT_TRUE(dialog.save(QString::fromStdString(folder / "one.csv")));
    EXPECT_EQ(ReadText(folder / "one.csv"), std::string(kHead) + kLine);
    EXPECT_EQ(dialog.summary().toStdString(), "1 row exported to “" + (folder / "one.csv") + "”.");
    which->setCurrentIndex(1);
    EXPECT_EQ(which->currentText(), "All 3 rows");
    EXPECT_TRUE(dialog.save(QString::fromStdString(folder / "all.csv")));
    EXPECT_EQ(ReadText(folder / "all.csv"), std::string(kHead) + kLine + kLine + kLine);
}

TEST_F(ExportDialogTest, WhatCannotBeWrittenIsToldWithItsName) {
    WriteText(folder / "file", "old");
    CExportDialog dialog(songs(1), {}, store);
    EXPECT_FALSE(dialog.save(QString::fromStdString(folder / "file/x.csv")));
    std::string const problem = dialog.findChild<QLabel*>("exportProblem")->text().toStdString();
    EXPECT_TRUE(problem.starts_with("“" + (folder / "file/x.csv") + "” could not be written: "))
        << problem;
    EXPECT_EQ(ReadText(folder / "file"), "old");
    EXPECT_EQ(dialog.summary(), "");
}

TEST_F(ExportSongsTest, SongsWithoutAGridAreToldAndHeardOnRequest) {
    CExportDialog dialog({song("a.wav"), noSong("b.wav")}, {}, store);
    dialog.show();
    EXPECT_EQ(gathered(dialog), "");
    choose(dialog, "xml");
    ASSERT_TRUE(waitFor(dialog, "2 of 2 rows have no beat grid yet and will be missing."));
    EXPECT_FALSE(button(dialog, "exportSave")->isEnabled());
    button(dialog, "exportGather")->click();
    EXPECT_EQ(button(dialog, "exportGather")->text(), "Stop");
    ASSERT_TRUE(waitFor(dialog, "1 of 2 rows can't be heard and will be missing."));
    EXPECT_FALSE(button(dialog, "exportGather")->isVisible());
    EXPECT_NE(preview(dialog).find("<TEMPO"), std::string::npos);
    ASSERT_TRUE(button(dialog, "exportSave")->isEnabled());
    EXPECT_TRUE(dialog.save(QString::fromStdString(folder / "out.xml")));
    std::string const text = ReadText(folder / "out.xml");
    EXPECT_NE(text.find("Bpm=\"120.00\""), std::string::npos) << text;
    EXPECT_NE(text.find("/a.wav"), std::string::npos) << text;
    EXPECT_EQ(text.find("/b.wav"), std::string::npos) << text;
    EXPECT_EQ(dialog.summary().toStdString(),
              "1 song exported to “" + (folder / "out.xml") + "”. 1 row left out.");
    // The next time it is known.
    CExportDialog later({song("c.wav"), {folder / "a.wav", "a.wav", "", "120.00", false, {}, ""}},
                        {}, store);
    later.show();
    choose(later, "jsonl");
    EXPECT_EQ(gathered(later), "");
    choose(later, "mid");
    EXPECT_TRUE(waitFor(later, "1 of 2 rows has no beat grid yet and will be missing."));
}

TEST_F(ExportSongsTest, SeveralSongsGetAFileEachAndNoneIsReplaced) {
    WriteText(folder / "a.txt", "mine");
    CExportDialog dialog({song("a.wav"), song("b.wav")}, {}, store);
    dialog.show();
    choose(dialog, "txt");
    EXPECT_EQ(button(dialog, "exportSave")->text(), "Save in …");
    ASSERT_TRUE(waitFor(dialog, "2 of 2 rows have no beat grid yet and will be missing."));
    button(dialog, "exportGather")->click();
    ASSERT_TRUE(waitFor(dialog, ""));
    EXPECT_TRUE(dialog.save(QString::fromStdString(folder.Path())));
    EXPECT_EQ(ReadText(folder / "a.txt"), "mine");
    EXPECT_NE(ReadText(folder / "a (2).txt").find("downbeat"), std::string::npos);
    EXPECT_EQ(ReadText(folder / "a (2).txt"), ReadText(folder / "b.txt"));
    EXPECT_EQ(dialog.summary().toStdString(), "2 songs exported to “" + folder.Path() + "”.");
}

TEST_F(ExportSongsTest, AHearingCanBeStopped) {
    CExportDialog dialog({song("a.wav"), song("b.wav")}, {}, store);
    dialog.show();
    choose(dialog, "jams");
    ASSERT_TRUE(waitFor(dialog, "2 of 2 rows have no beat grid yet and will be missing."));
    button(dialog, "exportGather")->click();
    EXPECT_EQ(gathered(dialog).substr(0, 19), "Finding beat grids:");
    button(dialog, "exportGather")->click();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return gathered(dialog).ends_with("no beat grid yet and will be missing."); },
        20'000));
}
