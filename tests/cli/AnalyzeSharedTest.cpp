// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/CommandTest.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <thread>

// The program from outside: files of several names, and files that others write meanwhile.

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

class AnalyzeSharedTest : public CCommandTest {
protected:
    /// An mp3 without a tag that takes a second or two to be heard: ten minutes of clicks.
    void WriteLongMp3(std::string const& name) {
        WriteWav(m_folder / "short.wav", MakeClickTrack(120.0, 10.0));
        Ffmpeg({"-i", m_folder / "short.wav", "-c:a", "libmp3lame", "-write_xing", "0",
                "-id3v2_version", "0", m_folder / "short.mp3"});
        std::string const clip = ReadText(m_folder / "short.mp3");
        std::string song;
        for (int i = 0; i < 60; ++i) {
            song += clip;
        }
        WriteText(m_folder / name, song);
    }

    /// Runs `tactus analyze -w` on a first file and on "long.mp3", and calls `meddle` once the
    /// second one's turn has come.
    CProcessResult AnalyzeWhile(std::vector<std::string> const& options,
                                std::function<void()> const& meddle) {
        WriteTagged("first.mp3", "120");
        std::vector<std::string> arguments = {"analyze", "-w",       "--short", "-j",
                                              "1",       "--format", "jsonl"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.insert(arguments.end(), {"first.mp3", "long.mp3"});
        CProcess process(Prepare(arguments));
        while (process.Output().empty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        meddle();
        return process.Wait();
    }

    void SetFrame(std::string const& name, std::string const& id, std::string const& text) {
        CProcessResult const result = Tactus({"tag", "set", name, id, text});
        EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
    }

    std::string Frame(std::string const& name, std::string const& id) {
        return Tactus({"tag", "get", name, id}).m_sOut;
    }
};

TEST_F(AnalyzeSharedTest, NamesOfOneFileAreHeardOnceAndAllHaveTheirRow) {
    WriteMp3("a.mp3");
    std::filesystem::create_hard_link(m_folder / "a.mp3", m_folder / "b.mp3");
    std::filesystem::create_symlink("a.mp3", m_folder / "c.mp3");
    for (char const* jobs : {"1", "4"}) {
        CProcessResult const result = Tactus({"analyze", "-w", "--short", "-f", "-j", jobs,
                                              "--format", "csv", "a.mp3", "c.mp3", "./a.mp3"});
        EXPECT_EQ(result.m_nExit, 0);
        EXPECT_THAT(result.m_sErr, StartsWith("tactus: 1 heard, 1 stored, 2 further names in "));
        EXPECT_THAT(result.m_sOut,
                    ContainsRegex("\na.mp3,[^,]*,,9[56].[0-9]+,length,,true,,,,,,,,,\n"
                                  "c.mp3,[^,]*,,9[56].[0-9]+,length,,true,,,,,,,,,\n"
                                  "./a.mp3,[^,]*,,9[56].[0-9]+,length,,true,,,,,,,,,\n"));
        CProcessResult const reading =
            Tactus({"analyze", "-f", "-j", jobs, "--format", "csv", "b.mp3", "a.mp3", "c.mp3"});
        EXPECT_EQ(std::count(reading.m_sOut.begin(), reading.m_sOut.end(), '\n'), 1 + 3);
    }
}

TEST_F(AnalyzeSharedTest, RowThatSaysStoredIsTrueOfEveryName) {
    for (char const* jobs : {"1", "4"}) {
        std::filesystem::remove_all(m_folder / "d");
        std::filesystem::create_directory(m_folder / "d");
        // Without a tag there is no room for one: a new version takes the place of one name.
        WriteMp3("d/a.mp3");
        for (char const* name : {"d/b.mp3", "d/c.mp3"}) {
            std::filesystem::create_hard_link(m_folder / "d/a.mp3", m_folder / name);
        }
        std::filesystem::create_symlink("a.mp3", m_folder / "d/e.mp3");
        CProcessResult const result =
            Tactus({"analyze", "-w", "--short", "-j", jobs, "--format", "csv", "d"});
        EXPECT_EQ(result.m_nExit, 0);
        for (std::string const name : {"d/a.mp3", "d/b.mp3", "d/c.mp3", "d/e.mp3"}) {
            EXPECT_THAT(
                result.m_sOut,
                ContainsRegex("\n" + name + ",[^,]*,,9[56].[0-9]+,length,,true,,,,,,,,,\n"));
            EXPECT_THAT(Frame(name, "TBPM"), ContainsRegex("^9[56]")) << name;
        }
    }
}

TEST_F(AnalyzeSharedTest, NamesOfABrokenFileAllFail) {
    WriteText(m_folder / "a.mp3", "this is no music at all\n");
    std::filesystem::create_hard_link(m_folder / "a.mp3", m_folder / "b.mp3");
    CProcessResult const result = Tactus({"analyze", "--format", "csv", "a.mp3", "b.mp3"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_THAT(result.m_sErr, ContainsRegex("^tactus: a.mp3: .*\ntactus: b.mp3: .*\n$"));
}

TEST_F(AnalyzeSharedTest, TempoThatIsSetMeanwhileIsKept) {
    WriteLongMp3("long.mp3");
    CProcessResult const result = AnalyzeWhile({}, [this] { SetFrame("long.mp3", "TBPM", "77"); });
    EXPECT_EQ(result.m_nExit, 0);
    EXPECT_THAT(result.m_sOut,
                HasSubstr(R"("tempo":77.00,"source":"tag","error":null,"written":null)"));
    EXPECT_EQ(Frame("long.mp3", "TBPM"), "77\n");
    EXPECT_THAT(result.m_sErr, StartsWith("tactus: 0 heard, 0 stored, 2 kept in "));
}

TEST_F(AnalyzeSharedTest, TagThatGetsATitleMeanwhileHasBothInTheEnd) {
    WriteLongMp3("long.mp3");
    CProcessResult const result =
        AnalyzeWhile({}, [this] { SetFrame("long.mp3", "TIT2", "Song"); });
    EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
    EXPECT_THAT(result.m_sOut, HasSubstr(R"("source":"analysis","error":null,"written":true)"));
    EXPECT_EQ(Frame("long.mp3", "TIT2"), "Song\n");
    EXPECT_NE(Frame("long.mp3", "TBPM"), "");
}

TEST_F(AnalyzeSharedTest, FileThatIsReplacedMeanwhileGetsItsOwnTempo) {
    WriteLongMp3("long.mp3");
    WriteClip("other.wav");
    WriteWav(m_folder / "clicks.wav", MakeClickTrack(130.0, 40.0));
    Ffmpeg({"-i", m_folder / "clicks.wav", "-c:a", "libmp3lame", "-b:a", "192k",
            m_folder / "other.mp3"});
    CProcessResult const result = AnalyzeWhile(
        {}, [this] { std::filesystem::rename(m_folder / "other.mp3", m_folder / "long.mp3"); });
    EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
    // Onsets lie on whole elements of 256 samples, 1.2 % of a beat.
    EXPECT_THAT(result.m_sOut, ContainsRegex(R"("tempo":1(29|30)\.[0-9]+,"source":"analysis")"));
    EXPECT_THAT(Frame("long.mp3", "TBPM"), ContainsRegex("^1(29|30)"));
}

} // namespace
