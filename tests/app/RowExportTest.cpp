// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/RowExport.h"

#include "support/CommaLocale.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <vector>

namespace {

CExportRow const kSong{"/m/a.mp3", "Say \"hi\"", "A\tB", "94.99", false, {}, ""};
CExportRow const kBroken{"/m/b.wav",
                         "b.wav",
                         "",
                         "0.00",
                         false,
                         {.m_problem = EAnalysisProblem::NotDecoded},
                         "No tempo: the file is empty"};

} // namespace

TEST(RowExportTest, ATableHasOneLineARowInEveryLocale) {
    CCommaLocale const locale;
    EXPECT_EQ(ExportRows(std::vector{kSong, kBroken}, ERowFormat::Commas),
              "path,title,artist,tempo,source,error\n"
              "/m/a.mp3,\"Say \"\"hi\"\"\",A\tB,94.99,analysis,\n"
              "/m/b.wav,b.wav,,,,No tempo: the file is empty\n");
}

TEST(RowExportTest, TabsInFieldsAreQuotedBetweenTabs) {
    EXPECT_EQ(ExportRows(std::vector{kSong}, ERowFormat::Tabs),
              "path\ttitle\tartist\ttempo\tsource\terror\n"
              "/m/a.mp3\t\"Say \"\"hi\"\"\"\t\"A\tB\"\t94.99\tanalysis\t\n");
}

TEST(RowExportTest, JsonHasOneObjectALine) {
    std::string const text = ExportRows(std::vector{kSong, kBroken}, ERowFormat::Json);
    std::size_t const end = text.find('\n');
    auto const song = nlohmann::json::parse(text.substr(0, end));
    EXPECT_EQ(song["path"], "/m/a.mp3");
    EXPECT_EQ(song["title"], "Say \"hi\"");
    EXPECT_EQ(song["tempo"], 94.99);
    auto const broken = nlohmann::json::parse(text.substr(end + 1));
    EXPECT_EQ(broken["path"], "/m/b.wav");
    EXPECT_FALSE(broken.contains("tempo"));
    EXPECT_EQ(broken["error"]["message"], "No tempo: the file is empty");
}

TEST(RowExportTest, NoRowsGiveATableWithoutLines) {
    EXPECT_EQ(ExportRows({}, ERowFormat::Commas), "path,title,artist,tempo,source,error\n");
    EXPECT_EQ(ExportRows({}, ERowFormat::Json), "");
}
