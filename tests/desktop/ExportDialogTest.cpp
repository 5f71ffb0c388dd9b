// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ExportDialog.h"

#include "Language.h"
#include "support/TempFolder.h"

#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
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
};

char const kHead[] = "path,title,artist,tempo,source,error\n";
char const kLine[] = "\"/m/a, b.mp3\",Song,Singer,128.00,tag,\n";

} // namespace

TEST_F(ExportDialogTest, TheFirstLinesAreShown) {
    CExportDialog const dialog(songs(2), {});
    EXPECT_EQ(preview(dialog), std::string(kHead) + kLine + kLine);
    CExportDialog const many(songs(20), {});
    EXPECT_TRUE(preview(many).ends_with("…"));
    many.findChild<QComboBox*>("exportFormat")->setCurrentIndex(1);
    EXPECT_TRUE(preview(many).starts_with("path\ttitle\t"));
}

TEST_F(ExportDialogTest, SelectedRowsComeFirstAndAllCanBeHad) {
    CExportDialog dialog(songs(3), songs(1));
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
    CExportDialog dialog(songs(1), {});
    EXPECT_FALSE(dialog.save(QString::fromStdString(folder / "file/x.csv")));
    std::string const problem = dialog.findChild<QLabel*>("exportProblem")->text().toStdString();
    EXPECT_TRUE(problem.starts_with("“" + (folder / "file/x.csv") + "” could not be written: "))
        << problem;
    EXPECT_EQ(ReadText(folder / "file"), "old");
    EXPECT_EQ(dialog.summary(), "");
}
