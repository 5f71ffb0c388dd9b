// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

// The program from outside: `tactus analyze`.

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class AnalyzeTest : public testing::Test {
protected:
    /// Runs `tactus analyze` with `arguments` in the temporary folder.
    CProcessResult Analyze(std::vector<std::string> const& arguments) {
        return RunProcess(Prepare(arguments));
    }

    CProcessSetup Prepare(std::vector<std::string> const& arguments) {
        CProcessSetup setup;
        setup.m_vArguments = {TACTUS_PROGRAM, "analyze"};
        setup.m_vArguments.insert(setup.m_vArguments.end(), arguments.begin(), arguments.end());
        setup.m_sFolder = m_folder.Path();
        return setup;
    }

    /// A clip of 10 s without a sound: 240 / 10 doubled twice is 96.
    void WriteClip(std::string const& name) { WriteWav(m_folder / name, MakeSilence(10.0)); }

    CTempFolder m_folder;
};

TEST_F(AnalyzeTest, PrintsATable) {
    WriteClip("a.wav");
    CProcessResult const result = Analyze({"a.wav"});
    EXPECT_EQ(result.m_nExit, 0);
    EXPECT_EQ(result.m_sOut, "Path   Title  Artist  Tempo  Source\n"
                             "a.wav  a.wav          96.00  length\n");
    EXPECT_EQ(result.m_sErr, "");
}

TEST_F(AnalyzeTest, WalksFoldersInAStableOrder) {
    std::filesystem::create_directories(m_folder / "d/e");
    for (char const* name : {"d/b.wav", "d/A.wav", "d/e/c.wav"}) {
        WriteClip(name);
    }
    WriteText(m_folder / "d/notes.txt", "not audio");
    CProcessResult const result = Analyze({"--format", "csv", "d"});
    EXPECT_EQ(result.m_nExit, 0);
    EXPECT_EQ(result.m_sOut,
              "path,title,artist,tempo,source,error,written,notWritten,album,tagKey,tempoNote,"
              "candidates,confidence,harmony,camelot,openKey\n"
              "d/A.wav,A.wav,,96.00,length,,,,,,,,,,,\n"
              "d/b.wav,b.wav,,96.00,length,,,,,,,,,,,\n"
              "d/e/c.wav,c.wav,,96.00,length,,,,,,,,,,,\n");
}

TEST_F(AnalyzeTest, BrokenFilesAreNamedAndTheRestGoesOn) {
    WriteClip("good.wav");
    WriteText(m_folder / "empty.wav", "");
    WriteText(m_folder / "text.mp3", "this is no music at all\n");
    WriteWav(m_folder / "header.wav", std::vector<float>());
    WriteWav(m_folder / "channels.wav", {.m_nChannels = 0}, MakeSilence(1.0));
    WriteWav(m_folder / "liar.wav", {.m_nClaimedData = 0xFFFFFFF0}, std::vector<float>());
    std::filesystem::create_directory(m_folder / "folder.wav");
    ASSERT_EQ(mkfifo((m_folder / "pipe.wav").c_str(), 0600), 0);
    std::vector<std::string> const broken = {"none.wav",     "empty.wav", "text.mp3", "header.wav",
                                             "channels.wav", "liar.wav",  "pipe.wav"};
    std::vector<std::string> arguments = {"--format", "jsonl"};
    arguments.insert(arguments.end(), broken.begin(), broken.end());
    arguments.emplace_back("good.wav");
    CProcessResult const result = Analyze(arguments);
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_EQ(std::count(result.m_sErr.begin(), result.m_sErr.end(), '\n'),
              static_cast<std::ptrdiff_t>(broken.size()));
    for (std::string const& name : broken) {
        EXPECT_THAT(result.m_sErr, HasSubstr("tactus: " + name + ": "));
        EXPECT_THAT(result.m_sOut,
                    HasSubstr(R"({"path":")" + name + R"(","title":")" + name +
                              R"(","artist":"","tempo":null,"source":null,"error":")"));
    }
    EXPECT_THAT(result.m_sOut,
                HasSubstr(R"("good.wav","title":"good.wav","artist":"","tempo":96.00)"));
}

TEST_F(AnalyzeTest, DamagedFileHasATempoAndAMessage) {
    WriteClip("whole.wav");
    Ffmpeg({"-i", m_folder / "whole.wav", "-c:a", "libmp3lame", "-b:a", "128k", "-write_xing", "0",
            "-id3v2_version", "0", m_folder / "whole.mp3"});
    WriteText(m_folder / "cut.mp3", ReadText(m_folder / "whole.mp3").substr(0, 100'000));
    CProcessResult const result = Analyze({"--format", "csv", "cut.mp3"});
    EXPECT_EQ(result.m_nExit, 4);
    EXPECT_EQ(result.m_sErr, "tactus: cut.mp3: breaks off in the middle of a frame\n");
    EXPECT_THAT(result.m_sOut,
                testing::ContainsRegex("cut.mp3,cut.mp3,,[0-9.]+,length,breaks off"));
}

TEST_F(AnalyzeTest, OtherRatesAreNoObstacle) {
    // 20 s at 8000 Hz are 160000 frames, which count as 3.628 s: 240 / 3.628 = 66.15, doubled.
    WriteWav(m_folder / "slow.wav", {.m_nRate = 8000}, std::vector<float>(160'000));
    // 5 s at 192000 Hz are 960000 frames, which count as 21.769 s: 240 / 21.769 = 11.025 x 8.
    WriteWav(m_folder / "fast.wav", {.m_nRate = 192000}, std::vector<float>(960'000));
    CProcessResult const result = Analyze({"--format", "csv", "slow.wav", "fast.wav"});
    EXPECT_EQ(result.m_nExit, 0);
    // The beat grid, which lies on whole samples, moves the second decimal.
    EXPECT_THAT(
        result.m_sOut,
        testing::MatchesRegex(
            "path,title,artist,tempo,source,error,written,notWritten,album,tagKey,tempoNote,"
            "candidates,confidence,harmony,camelot,openKey\n"
            "slow.wav,slow.wav,,132.3[0-9],length,,,,,,,,,,,\n"
            "fast.wav,fast.wav,,88.[12][0-9],length,,,,,,,,,,,\n"));
}

TEST_F(AnalyzeTest, JobsDoNotChangeTheOutput) {
    std::filesystem::create_directory(m_folder / "d");
    for (int i = 0; i < 12; ++i) {
        // Lengths that fall and rise, so that files finish out of order.
        WriteWav(m_folder / ("d/" + std::to_string(i) + ".wav"),
                 MakeClickTrack(100.0 + i, 1.0 + 7 * i % 11));
    }
    WriteText(m_folder / "d/5x.wav", "broken");
    for (char const* format : {"table", "csv", "json", "jsonl"}) {
        CProcessResult const one = Analyze({"-j", "1", "--format", format, "d", "none.wav"});
        EXPECT_EQ(one.m_nExit, 1);
        for (char const* jobs : {"2", "3", "64"}) {
            CProcessResult const many = Analyze({"-j", jobs, "--format", format, "d", "none.wav"});
            EXPECT_EQ(many.m_sOut, one.m_sOut);
            EXPECT_EQ(many.m_sErr, one.m_sErr);
            EXPECT_EQ(many.m_nExit, 1);
        }
    }
}

TEST_F(AnalyzeTest, PathsMayLookLikeAnything) {
    for (std::string const name :
         {"-x.wav", "[a,b].wav", "[c]", "--", "--help.wav", "a\xFF.wav", "http:x.wav",
          "concat:x.wav", "file:x.wav", "%41.wav", "analyze"}) {
        WriteClip(name);
    }
    CProcessResult const result =
        Analyze({"--format", "jsonl", "[a,b].wav", "[c]", "a\xFF.wav", "http:x.wav", "concat:x.wav",
                 "file:x.wav", "%41.wav", "analyze", "--", "-x.wav", "--help.wav", "--"});
    EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
    EXPECT_EQ(std::count(result.m_sOut.begin(), result.m_sOut.end(), '\n'), 11);
    EXPECT_THAT(result.m_sOut, HasSubstr(R"({"path":"[a,b].wav",)"));
    EXPECT_THAT(result.m_sOut, HasSubstr(R"({"path":"--",)"));
    EXPECT_THAT(result.m_sOut, HasSubstr("/a%FF.wav\""));
}

TEST_F(AnalyzeTest, DashIsStandardInput) {
    WriteClip("a.wav");
    CProcessSetup setup = Prepare({"--format", "csv", "-"});
    setup.m_sInput = m_folder / "a.wav";
    CProcessResult const file = RunProcess(setup);
    EXPECT_EQ(file.m_nExit, 0);
    EXPECT_THAT(file.m_sOut, HasSubstr("\n-,-,,96.00,length,,,,,,,,,,,\n"));

    setup.m_vArguments = {"/bin/sh", "-c",
                          std::string("cat a.wav | ") + TACTUS_PROGRAM +
                              " analyze --format csv - - none"};
    CProcessResult const pipe = RunProcess(setup);
    EXPECT_EQ(pipe.m_nExit, 1);
    EXPECT_THAT(pipe.m_sOut, HasSubstr("\n-,-,,96.00,length,,,,,,,,,,,\nnone,"));
}

TEST_F(AnalyzeTest, ResultsGoToAFile) {
    WriteClip("a.wav");
    CProcessResult const result = Analyze({"-o", "out.csv", "--format", "csv", "a.wav"});
    EXPECT_EQ(result.m_nExit, 0);
    EXPECT_EQ(result.m_sOut, "");
    EXPECT_THAT(ReadText(m_folder / "out.csv"), HasSubstr("a.wav,a.wav,,96.00,length,"));
    CProcessResult const dash = Analyze({"-o", "-", "a.wav"});
    EXPECT_THAT(dash.m_sOut, HasSubstr("96.00"));
}

TEST_F(AnalyzeTest, ResultsNeverReplaceASong) {
    WriteClip("a.wav");
    WriteClip("b.dat");
    std::string const before = ReadText(m_folder / "a.wav");
    EXPECT_EQ(Analyze({"-o", "a.wav", "b.dat"}).m_nExit, 2);
    EXPECT_EQ(Analyze({"-o", "b.dat", "a.wav", "./b.dat"}).m_nExit, 2);
    EXPECT_EQ(ReadText(m_folder / "a.wav"), before);
    EXPECT_EQ(ReadText(m_folder / "b.dat"), before);
}

TEST_F(AnalyzeTest, ReaderThatGoesAwayEndsItQuietly) {
    WriteClip("a.wav");
    CProcessSetup setup;
    // The reader is gone before there is anything to read.
    setup.m_vArguments = {"/bin/bash", "-c",
                          std::string("(sleep 0.2; exec ") + TACTUS_PROGRAM +
                              " analyze a.wav) | true; exit ${PIPESTATUS[0]}"};
    setup.m_sFolder = m_folder.Path();
    CProcessResult const result = RunProcess(setup);
    EXPECT_EQ(result.m_nExit, 128 + SIGPIPE);
    EXPECT_EQ(result.m_sErr, "");
}

TEST_F(AnalyzeTest, InterruptKeepsWhatIsDone) {
    WriteClip("first.wav");
    // 4 GB that are not on the disk: minutes of work.
    WriteWav(m_folder / "endless.wav", {.m_nClaimedData = 0xFFFFFFF0}, MakeSilence(1.0));
    std::filesystem::resize_file(m_folder / "endless.wav", 4'000'000'000);
    for (int const signal : {SIGINT, SIGTERM}) {
        CProcess process(
            Prepare({"-j", "2", "--format", "json", "first.wav", "missing.wav", "endless.wav"}));
        // Rows come in order: once the second is reported, both are done.
        while (process.Errors().find("missing.wav") == std::string::npos) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        process.Signal(signal);
        CProcessResult const result = process.Wait();
        EXPECT_EQ(result.m_nExit, 128 + signal);
        EXPECT_EQ(result.m_sErr, "tactus: missing.wav: No such file or directory\n"
                                 "tactus: interrupted: 2 of 3 files done\n");
        EXPECT_THAT(result.m_sOut, StartsWith("[\n{\"path\":\"first.wav\""));
        EXPECT_THAT(result.m_sOut, testing::EndsWith("\n]\n"));
        EXPECT_THAT(result.m_sOut, testing::Not(HasSubstr("endless")));
    }
}

TEST_F(AnalyzeTest, EmptyFolderGivesNoRows) {
    std::filesystem::create_directory(m_folder / "d");
    CProcessResult const result = Analyze({"--format", "json", "d"});
    EXPECT_EQ(result.m_nExit, 4);
    EXPECT_EQ(result.m_sOut, "[]\n");
}

} // namespace
