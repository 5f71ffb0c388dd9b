// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/CommandTest.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <thread>
#include <unistd.h>

// The program from outside: what `tactus analyze` finds in folders, and when it tells it.

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class AnalyzeFoldersTest : public CCommandTest {
protected:
    /// The lines of a CSV without the headings.
    static std::string RowsOf(std::string const& csv) { return csv.substr(csv.find('\n') + 1); }

    void MakeFolders(std::vector<std::string> const& names) {
        for (std::string const& name : names) {
            std::filesystem::create_directories(m_folder / name);
        }
    }

    static void Sleep(int milliseconds) {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }
};

TEST_F(AnalyzeFoldersTest, RowsComeWhileFurtherTagsAreStillToBeRead) {
    constexpr int kFiles = 8000;
    MakeFolders({"d"});
    for (int i = 0; i < kFiles; ++i) {
        WriteTagged("d/" + std::to_string(i) + ".mp3", "120");
    }
    CProcess process(Prepare({"analyze", "-j", "1", "--format", "jsonl", "d"}));
    while (process.Output().empty()) {
        Sleep(1);
    }
    process.Signal(SIGINT);
    CProcessResult const result = process.Wait();
    EXPECT_EQ(result.m_nExit, 128 + SIGINT);
    EXPECT_LT(std::count(result.m_sOut.begin(), result.m_sOut.end(), '\n'), kFiles);
    EXPECT_THAT(result.m_sErr,
                testing::MatchesRegex("tactus: interrupted: [0-9]+ of [0-9]+ files.* done\n"));
}

TEST_F(AnalyzeFoldersTest, JsonLinesAreThereAsSoonAsTheyAreKnown) {
    WriteTagged("first.mp3", "120");
    // 4 GB that are not on the disk: minutes of work.
    WriteWav(m_folder / "endless.wav", {.m_nClaimedData = 0xFFFFFFF0}, MakeSilence(1.0));
    std::filesystem::resize_file(m_folder / "endless.wav", 4'000'000'000);
    CProcess process(
        Prepare({"analyze", "-j", "1", "--format", "jsonl", "first.mp3", "endless.wav"}));
    for (int i = 0; i < 1000 && process.Output().empty(); ++i) {
        Sleep(5);
    }
    EXPECT_THAT(process.Output(), StartsWith(R"({"path":"first.mp3",)"));
    process.Signal(SIGINT);
    EXPECT_EQ(process.Wait().m_nExit, 128 + SIGINT);
}

TEST_F(AnalyzeFoldersTest, ProgressIsThereFromTheStart) {
    WriteTagged("a.mp3", "120");
    WriteTagged("b.mp3", "120");
    CProcessSetup setup = Prepare({});
    // A terminal of its own for standard error, as far as the program can tell.
    setup.m_vArguments = {"script", "-qec", std::string(TACTUS_PROGRAM) + " analyze a.mp3 b.mp3",
                          "/dev/null"};
    CProcessResult const result = RunProcess(setup);
    EXPECT_THAT(result.m_sOut, HasSubstr("searching for files"));
    EXPECT_THAT(result.m_sOut, HasSubstr("0 heard, 2 known from tags in "));
}

TEST_F(AnalyzeFoldersTest, InterruptInAFolderWithoutAudioIsTold) {
    MakeFolders({"d"});
    for (int i = 0; i < 2000; ++i) {
        WriteText(m_folder / ("d/" + std::to_string(i) + ".txt"), "");
    }
    // The same folder over and over: seconds of searching.
    std::vector<std::string> arguments = {"analyze"};
    arguments.resize(5000, "d");
    CProcess process(Prepare(arguments));
    while (!process.Catches(SIGINT)) {
        Sleep(1);
    }
    process.Signal(SIGINT);
    CProcessResult const result = process.Wait();
    EXPECT_EQ(result.m_nExit, 128 + SIGINT);
    EXPECT_EQ(result.m_sOut, "");
    EXPECT_EQ(result.m_sErr, "tactus: interrupted: 0 of 0 files found so far done\n");
}

TEST_F(AnalyzeFoldersTest, WhatSystemsPutBesideMusicIsLeftOut) {
    MakeFolders({"d/.Trash-1000", "d/.Trashes", "d/#recycle", "d/.snapshots/1", "d/@eaDir",
                 "d/lost+found", "d/.hidden"});
    for (char const* name : {"d/._a.mp3", "d/.Trash-1000/b.mp3", "d/.Trashes/c.mp3",
                             "d/#recycle/d.mp3", "d/.snapshots/1/e.mp3", "d/@eaDir/f.mp3",
                             "d/lost+found/g.mp3", "d/.hidden/h.mp3", "d/i.mp3"}) {
        WriteTagged(name, "120");
    }
    CProcessResult const result = Tactus({"analyze", "--format", "csv", "d"});
    EXPECT_EQ(result.m_nExit, 0);
    EXPECT_EQ(RowsOf(result.m_sOut), "d/.hidden/h.mp3,h.mp3,,120.00,tag,,,,,,,,,,,\n"
                                     "d/i.mp3,i.mp3,,120.00,tag,,,,,,,,,,,\n");
    CProcessResult const all = Tactus({"analyze", "--hidden", "--format", "csv", "d"});
    EXPECT_EQ(std::count(all.m_sOut.begin(), all.m_sOut.end(), '\n'), 1 + 9);
    // What is named is taken.
    CProcessResult const named = Tactus({"analyze", "--format", "csv", "d/._a.mp3", "d/@eaDir"});
    EXPECT_EQ(RowsOf(named.m_sOut), "d/._a.mp3,._a.mp3,,120.00,tag,,,,,,,,,,,\n"
                                    "d/@eaDir/f.mp3,f.mp3,,120.00,tag,,,,,,,,,,,\n");
}

TEST_F(AnalyzeFoldersTest, LinkedFoldersAreToldAndFollowedOnRequest) {
    MakeFolders({"d", "elsewhere"});
    WriteTagged("d/a.mp3", "120");
    WriteTagged("elsewhere/b.mp3", "130");
    std::filesystem::create_directory_symlink("../elsewhere", m_folder / "d/link");
    CProcessResult const without = Tactus({"analyze", "--format", "csv", "d"});
    EXPECT_EQ(without.m_nExit, 0);
    EXPECT_EQ(without.m_sErr, "tactus: 1 linked folder not followed: -L\n");
    EXPECT_EQ(RowsOf(without.m_sOut), "d/a.mp3,a.mp3,,120.00,tag,,,,,,,,,,,\n");
    CProcessResult const with = Tactus({"analyze", "-L", "--format", "csv", "d"});
    EXPECT_EQ(with.m_sErr, "");
    EXPECT_EQ(RowsOf(with.m_sOut), "d/a.mp3,a.mp3,,120.00,tag,,,,,,,,,,,\n"
                                   "d/link/b.mp3,b.mp3,,130.00,tag,,,,,,,,,,,\n");
    EXPECT_EQ(Tactus({"analyze", "--follow", "--format", "csv", "d"}).m_sOut, with.m_sOut);
}

TEST_F(AnalyzeFoldersTest, LoopsOfLinksEndWhenLinksAreFollowed) {
    MakeFolders({"d/e"});
    WriteTagged("d/e/a.mp3", "120");
    std::filesystem::create_directory_symlink("..", m_folder / "d/e/up");
    std::filesystem::create_directory_symlink(".", m_folder / "d/e/self");
    CProcessResult const result = Tactus({"analyze", "-L", "--format", "csv", "d"});
    EXPECT_EQ(result.m_nExit, 0);
    EXPECT_EQ(RowsOf(result.m_sOut), "d/e/a.mp3,a.mp3,,120.00,tag,,,,,,,,,,,\n");
}

TEST_F(AnalyzeFoldersTest, FolderWithoutAudioIsToldAndNoTableIsPrinted) {
    MakeFolders({"d", "e"});
    WriteText(m_folder / "d/notes.txt", "not audio");
    WriteTagged("e/a.mp3", "120");
    CProcessResult const result = Tactus({"analyze", "d"});
    EXPECT_EQ(result.m_nExit, 4);
    EXPECT_EQ(result.m_sOut, "");
    EXPECT_EQ(result.m_sErr, "tactus: d: holds no audio file\n");
    CProcessResult const both = Tactus({"analyze", "--format", "csv", "e", "d", "d/"});
    EXPECT_EQ(both.m_nExit, 4);
    EXPECT_EQ(both.m_sErr, "tactus: d: holds no audio file\ntactus: d/: holds no audio file\n");
    EXPECT_EQ(RowsOf(both.m_sOut), "e/a.mp3,a.mp3,,120.00,tag,,,,,,,,,,,\n");
}

TEST_F(AnalyzeFoldersTest, ExtensionsAreTakenExactly) {
    MakeFolders({"d"});
    for (char const* name : {"a.m4", "b.if", "c.av", "d.3", "e.MP3", "f.wav;mp3", "g.mp33"}) {
        WriteTagged(std::string("d/") + name, "120");
    }
    EXPECT_EQ(RowsOf(Tactus({"analyze", "--format", "csv", "d"}).m_sOut),
              "d/e.MP3,e.MP3,,120.00,tag,,,,,,,,,,,\n");
}

} // namespace
