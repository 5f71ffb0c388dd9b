// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/CommandTest.h"
#include "cli/OutputGuard.h"

#include <filesystem>
#include <gmock/gmock.h>

// The program from outside: what `tactus export` refuses, and where it writes. What it writes is
// read by other makers' readers in other_readers.py.

namespace {

using testing::HasSubstr;

class ExportTest : public CCommandTest {
protected:
    void ExpectUsage(std::vector<std::string> const& arguments, std::string const& message) {
        std::vector<std::string> all = {"export"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        CProcessResult const result = Tactus(all);
        EXPECT_EQ(result.m_nExit, 2) << message;
        EXPECT_THAT(result.m_sErr, HasSubstr(message));
        EXPECT_EQ(result.m_sOut, "");
    }
};

TEST_F(ExportTest, WrongValuesAreNamedBeforeAnythingIsHeard) {
    ExpectUsage({"csv", "x.mp3", "--where", "bpm>3"}, "'bpm' is no column");
    ExpectUsage({"csv", "x.mp3", "--where", "tempo>fast"}, "'fast' is no number");
    ExpectUsage({"csv", "x.mp3", "--where", "(tempo>3"}, "left open");
    ExpectUsage({"csv", "x.mp3", "--sort", "tempo,speed"}, "'speed' is no column");
    ExpectUsage({"csv", "x.mp3", "--columns", "path,speed"}, "'speed' is no column");
    ExpectUsage({"csv", "x.mp3", "--delimiter", "::"}, "'::' is none of , ; | and tab");
    ExpectUsage({"rekordbox", "x.mp3", "--base", "/music"}, "no pair of folders");
    ExpectUsage({"rekordbox", "x.mp3", "--offset", "soon"}, "neither auto nor milliseconds");
    ExpectUsage({"traktor", "x.mp3"}, "there is no such command");
}

TEST_F(ExportTest, SeveralSongsNeedAFolderWhereEachMakesAFile) {
    ExpectUsage({"midi", "a.wav", "b.wav"}, "-o has to name a folder");
    ExpectUsage({"midi", ".", "-o", "x.mid"}, "-o has to name a folder");
    ExpectUsage({"m3u8", "a.wav", "-o", "."}, "is a folder");
}

TEST_F(ExportTest, SongsOfOneNameMakeFilesOfTheirOwn) {
    for (char const* folder : {"a", "b", "out"}) {
        std::filesystem::create_directory(m_folder / folder);
    }
    WriteWav(m_folder / "a/song.wav", MakeClickTrack(120.0, 20.0));
    WriteWav(m_folder / "b/song.wav", MakeClickTrack(120.0, 20.0));
    WriteText(m_folder / "b/no.mp3", "no music");
    CProcessResult const result = Tactus({"export", "labels", "a", "b", "-o", "out"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_THAT(result.m_sErr, HasSubstr("tactus: b/no.mp3: "));
    EXPECT_THAT(ReadText(m_folder / "out/song.txt"), HasSubstr(" downbeat\n"));
    EXPECT_EQ(ReadText(m_folder / "out/song.txt"), ReadText(m_folder / "out/song (2).txt"));
    EXPECT_FALSE(std::filesystem::exists(m_folder / "out/no.txt"));
}

TEST_F(ExportTest, LabelsOfSomebodyElseStay) {
    WriteWav(m_folder / "a.wav", MakeClickTrack(120.0, 20.0));
    WriteText(m_folder / "a.txt", "0.0\t1.0\tmine\n");
    CProcessResult const result = Tactus({"export", "labels", "a.wav", "-o", "a.txt"});
    EXPECT_EQ(result.m_nExit, 2);
    EXPECT_THAT(result.m_sErr, HasSubstr("--overwrite-output"));
    EXPECT_EQ(ReadText(m_folder / "a.txt"), "0.0\t1.0\tmine\n");
}

TEST_F(ExportTest, SongWithoutBeatsIsNamed) {
    WriteWav(m_folder / "a.wav", MakeSilence(0.5));
    CProcessResult const result = Tactus({"export", "midi", "a.wav", "-o", "a.mid"});
    EXPECT_NE(result.m_nExit, 0);
    EXPECT_THAT(result.m_sErr, HasSubstr("tactus: a.wav: "));
    EXPECT_FALSE(std::filesystem::exists(m_folder / "a.mid"));
}

TEST(ExportTextTest, OnlyOurTextsCountAsOurs) {
    EXPECT_TRUE(IsExportText("#EXTM3U\n# made by Tactus\n"));
    EXPECT_FALSE(IsExportText("#EXTM3U\nsong.mp3\n"));
    EXPECT_TRUE(IsExportText("\xEF\xBB\xBFpath;harmony\n/a;8A\n"));
    EXPECT_FALSE(IsExportText("title,artist,album\n"));
    EXPECT_FALSE(IsExportText("\nmine"));
    EXPECT_FALSE(IsExportText(""));
    EXPECT_FALSE(IsExportText("path;price\n"));
    EXPECT_TRUE(IsExportText("{\"schema\":\"tactus-dupes-1\",\"songs\":0}"));
    EXPECT_FALSE(IsExportText("{\"schema\":\"other\"}"));
    EXPECT_FALSE(IsExportText("<?xml version=\"1.0\"?>\n<PRODUCT Name=\"rekordbox\"/>"));
    EXPECT_TRUE(IsExportText("<?xml version=\"1.0\"?>\n<PRODUCT Name=\"Tactus\"/>"));
    EXPECT_FALSE(IsExportText("MThd"));
    EXPECT_FALSE(IsExportText("1.0\t2.0\tlabel\n"));
}

} // namespace
