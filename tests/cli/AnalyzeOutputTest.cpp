// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/CommandTest.h"
#include "cli/OutputGuard.h"

#include <filesystem>
#include <gmock/gmock.h>

// The program from outside: where the results of `tactus analyze` go, and where they don't.

namespace {

using testing::HasSubstr;

class AnalyzeOutputTest : public CCommandTest {
protected:
    /// Holds that results don't go to `target`, which stays as it is.
    void ExpectRefused(std::string const& target, std::vector<std::string> const& arguments) {
        std::string const before = ReadText(m_folder / target);
        std::vector<std::string> all = {"analyze", "-o", target};
        all.insert(all.end(), arguments.begin(), arguments.end());
        CProcessResult const result = Tactus(all);
        EXPECT_EQ(result.m_nExit, 2) << target;
        EXPECT_THAT(result.m_sErr, testing::StartsWith("tactus: " + target + ": "));
        EXPECT_EQ(ReadText(m_folder / target), before);
    }
};

TEST_F(AnalyzeOutputTest, ForeignFilesAreNotReplaced) {
    WriteTagged("in.mp3", "120");
    WriteText(m_folder / "song.flac", std::string("fLaC\0\0\0\x22", 8));
    WriteText(m_folder / "notes.csv", "artist,title\nA,B\n");
    WriteText(m_folder / "thesis.txt", "Path of my life\n");
    for (char const* name : {"song.flac", "notes.csv", "thesis.txt"}) {
        ExpectRefused(name, {"in.mp3"});
    }
    EXPECT_THAT(Tactus({"analyze", "-o", "song.flac", "in.mp3"}).m_sErr,
                HasSubstr("--overwrite-output"));
    CProcessResult const forced =
        Tactus({"analyze", "--overwrite-output", "-o", "notes.csv", "--format", "csv", "in.mp3"});
    EXPECT_EQ(forced.m_nExit, 0) << forced.m_sErr;
    EXPECT_THAT(ReadText(m_folder / "notes.csv"), HasSubstr("in.mp3,in.mp3,,120.00,tag"));
}

TEST_F(AnalyzeOutputTest, LinksAreFollowedFirst) {
    WriteTagged("in.mp3", "120");
    WriteTagged("song.mp3", "99");
    std::filesystem::create_symlink("song.mp3", m_folder / "out.csv");
    ExpectRefused("out.csv", {"in.mp3"});
    std::filesystem::create_symlink("new.csv", m_folder / "to-new.csv");
    EXPECT_EQ(Tactus({"analyze", "-o", "to-new.csv", "--format", "csv", "in.mp3"}).m_nExit, 0);
    EXPECT_THAT(ReadText(m_folder / "new.csv"), HasSubstr("in.mp3,in.mp3,,120.00,tag"));
}

TEST_F(AnalyzeOutputTest, InputsAreNeverReplaced) {
    std::filesystem::create_directory(m_folder / "d");
    WriteTagged("d/a.mp3", "120");
    WriteTagged("b.dat", "130");
    std::filesystem::create_hard_link(m_folder / "d/a.mp3", m_folder / "hard.csv");
    std::filesystem::create_symlink("d/a.mp3", m_folder / "soft.csv");
    for (char const* name : {"d/a.mp3", "hard.csv", "soft.csv"}) {
        ExpectRefused(name, {"--overwrite-output", "d"});
        ExpectRefused(name, {"--overwrite-output", "d/../d/a.mp3"});
    }
    ExpectRefused("b.dat", {"--overwrite-output", "d", "./b.dat"});
    // Not even an empty one.
    WriteText(m_folder / "d/empty.mp3", "");
    ExpectRefused("d/empty.mp3", {"d"});
}

TEST_F(AnalyzeOutputTest, EveryFormatOfOursIsReplaced) {
    WriteTagged("in.mp3", "120");
    std::filesystem::create_directory(m_folder / "none");
    for (std::string const format : {"table", "csv", "json", "jsonl"}) {
        for (std::string const input : {"in.mp3", "none"}) {
            WriteText(m_folder / "out", "");
            Tactus({"analyze", "-o", "out", "--format", format, input});
            CProcessResult const again =
                Tactus({"analyze", "-o", "out", "--format", "csv", "in.mp3"});
            EXPECT_EQ(again.m_nExit, 0) << format << again.m_sErr;
            EXPECT_THAT(ReadText(m_folder / "out"), HasSubstr("in.mp3,in.mp3,,120.00,tag"));
        }
    }
}

TEST_F(AnalyzeOutputTest, ReportsAreKnownByTheirBeginning) {
    for (char const* text :
         {"", "[]\n", "path,title,artist,tempo,source,error\n",
          "Path   Title  Artist  Tempo  Source\na.wav\n",
          "Path  Title  Artist  Tempo  Source  Or\n", "Path  Title  Artist  Tempo  Source  Key\n",
          "Path  Title  Artist  Tempo  Source    Or  Key\n",
          R"({"path":"a","title":"b","artist":"","tempo":null})"
          "\n",
          "[\n"
          R"({"path":"a","title":"b","artist":"","tempo":null})"
          ",\n"}) {
        EXPECT_TRUE(IsReportText(text)) << text;
    }
    for (char const* text :
         {"\n", "[", "[1]", "path,title\n", "Path Title Artist Tempo Source of joy\n",
          "Path Title Artist Tempo Source Keys\n", "Path Title Artist Tempo\n", R"({"path":"a"})",
          R"({"name":"a","title":"","tempo":1})", "[\n{\"path\":1}\n]\n", "ID3\x03"}) {
        EXPECT_FALSE(IsReportText(text)) << text;
    }
}

TEST_F(AnalyzeOutputTest, OutputThatCannotBeWrittenIsFive) {
    WriteTagged("in.mp3", "120");
    CProcessSetup setup = Prepare({"analyze", "in.mp3"});
    setup.m_sOutput = "/dev/full";
    CProcessResult const full = RunProcess(setup);
    EXPECT_EQ(full.m_nExit, 5);
    EXPECT_EQ(full.m_sErr, "tactus: standard output: can't be written: No space left on device\n");
    CProcessResult const nowhere = Tactus({"analyze", "-o", "none/out", "in.mp3"});
    EXPECT_EQ(nowhere.m_nExit, 5);
    EXPECT_EQ(nowhere.m_sErr, "tactus: none/out: No such file or directory\n");
    EXPECT_EQ(Tactus({"analyze", "-o", ".", "in.mp3"}).m_nExit, 5);
    EXPECT_EQ(Tactus({"analyze", "-o", "/dev/null", "in.mp3"}).m_nExit, 0);
}

} // namespace
