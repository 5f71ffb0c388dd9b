// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/CommandTest.h"

#include "IDTag/PosixFile.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>

// The program from outside: what runs want that nobody looks at.

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;

class AnalyzeBatchTest : public CCommandTest {
protected:
    void MakeFolders(std::vector<std::string> const& names) {
        for (std::string const& name : names) {
            std::filesystem::create_directories(m_folder / name);
        }
    }

    /// The first column of CSV, without the headings.
    static std::vector<std::string> PathsOf(std::string const& csv) {
        std::vector<std::string> paths;
        for (std::size_t begin = csv.find('\n') + 1; begin < csv.size();
             begin = csv.find('\n', begin) + 1) {
            paths.push_back(csv.substr(begin, csv.find(',', begin) - begin));
        }
        return paths;
    }

    std::vector<std::string> Paths(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"analyze", "--format", "csv"});
        return PathsOf(Tactus(arguments).m_sOut);
    }
};

TEST_F(AnalyzeBatchTest, PathsComeFromAList) {
    MakeFolders({"d"});
    for (char const* name : {"a.mp3", "b c.mp3", "d/e.mp3"}) {
        WriteTagged(name, "120");
    }
    WriteText(m_folder / "list", "d\nb c.mp3\n");
    EXPECT_THAT(Paths({"--files-from", "list"}), ElementsAre("d/e.mp3", "b c.mp3"));
    EXPECT_THAT(Paths({"--files-from", "list", "a.mp3"}),
                ElementsAre("a.mp3", "d/e.mp3", "b c.mp3"));
    WriteText(m_folder / "empty", "");
    CProcessResult const none = Tactus({"analyze", "--files-from", "empty"});
    EXPECT_EQ(none.m_nExit, 0) << none.m_sErr;
    EXPECT_EQ(none.m_sOut + none.m_sErr, "");
}

TEST_F(AnalyzeBatchTest, ListOnStandardInputMayHaveZeroBytes) {
    WriteTagged("one\ntwo.mp3", "120");
    WriteTagged("b.mp3", "121");
    WriteText(m_folder / "list", std::string("one\ntwo.mp3\0b.mp3\0", 18));
    for (char const* const zero : {"-0", "--null"}) {
        CProcessSetup setup = Prepare({"analyze", "--format", "jsonl", "--files-from", "-", zero});
        setup.m_sInput = m_folder / "list";
        CProcessResult const result = RunProcess(setup);
        EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
        EXPECT_THAT(result.m_sOut, MatchesRegex("[{]\"path\":\"one\\\\ntwo.mp3\",.*\n"
                                                "[{]\"path\":\"b.mp3\",.*\n"));
    }
}

TEST_F(AnalyzeBatchTest, ListThatCannotBeReadIsTold) {
    CProcessResult const gone = Tactus({"analyze", "--files-from", "none", "a.mp3"});
    EXPECT_EQ(gone.m_nExit, 1);
    EXPECT_EQ(gone.m_sErr, "tactus: none: No such file or directory\n");
    EXPECT_EQ(gone.m_sOut, "");
    CProcessResult const both = Tactus({"analyze", "--files-from", "-", "-"});
    EXPECT_EQ(both.m_nExit, 2);
    EXPECT_EQ(both.m_sErr, "tactus: --files-from: standard input can't be a song as well\n");
    EXPECT_EQ(Tactus({"analyze"}).m_nExit, 2);
    EXPECT_EQ(Tactus({"analyze", "-0"}).m_nExit, 2);
}

TEST_F(AnalyzeBatchTest, ResultsNeverReplaceAFileOfTheList) {
    WriteTagged("a.mp3", "120");
    WriteText(m_folder / "list", "a.mp3\n");
    std::string const before = ReadText(m_folder / "a.mp3");
    CProcessResult const result =
        Tactus({"analyze", "--overwrite-output", "--files-from", "list", "-o", "a.mp3"});
    EXPECT_EQ(result.m_nExit, 2);
    EXPECT_EQ(ReadText(m_folder / "a.mp3"), before);
}

TEST_F(AnalyzeBatchTest, PatternsLeaveNamesAndPathsOut) {
    MakeFolders({"m/Live/x", "m/Podcasts", "m/a/Live"});
    for (char const* name :
         {"m/1.mp3", "m/2.MP3", "m/Live/x/3.mp3", "m/Podcasts/4.mp3", "m/a/Live/5.mp3"}) {
        WriteTagged(name, "120");
    }
    EXPECT_THAT(Paths({"--exclude", "Live", "m"}),
                ElementsAre("m/1.mp3", "m/2.MP3", "m/Podcasts/4.mp3"));
    EXPECT_THAT(Paths({"--exclude", "/Live", "m/"}),
                ElementsAre("m/1.mp3", "m/2.MP3", "m/Podcasts/4.mp3", "m/a/Live/5.mp3"));
    EXPECT_THAT(Paths({"--exclude", "*.mp3", "m"}), ElementsAre("m/2.MP3"));
    EXPECT_THAT(Paths({"--exclude", "*/Live/*", "--exclude=P*/", "m"}),
                ElementsAre("m/1.mp3", "m/2.MP3", "m/Live/x/3.mp3"));
    // A pattern for folders is none for files, and what is named is taken.
    EXPECT_THAT(
        Paths({"--exclude", "1.mp3/", "--exclude", "[!1].*", "--exclude", "m", "m", "m/2.MP3"}),
        ElementsAre("m/1.mp3", "m/2.MP3"));
}

TEST_F(AnalyzeBatchTest, RunEndsWithTheLastErrorAllowed) {
    for (char const* name : {"1.wav", "3.wav", "5.wav"}) {
        WriteText(m_folder / name, "no audio");
    }
    WriteTagged("2.mp3", "120");
    WriteTagged("4.mp3", "120");
    std::vector<std::string> arguments = {"analyze",      "-j", "1",     "--format", "csv",
                                          "--max-errors", "2",  "1.wav", "2.mp3",    "3.wav"};
    // Enough to be still ahead when the second error is known.
    for (int i = 0; i < 300; ++i) {
        WriteText(m_folder / (std::to_string(i) + ".caf"), "no audio");
        arguments.push_back(std::to_string(i) + ".caf");
    }
    CProcessResult const result = Tactus(arguments);
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_THAT(result.m_sErr, HasSubstr("tactus: stopped by --max-errors: "));
    std::vector<std::string> const paths = PathsOf(result.m_sOut);
    ASSERT_GE(paths.size(), 3U);
    EXPECT_EQ(paths[2], "3.wav");
    EXPECT_LT(paths.size(), 100U);
    // As many as are allowed, and none left: nothing was stopped.
    CProcessResult const all = Tactus({"analyze", "--max-errors", "1", "2.mp3", "5.wav"});
    EXPECT_EQ(all.m_nExit, 1);
    EXPECT_EQ(all.m_sErr.find("stopped"), std::string::npos);
    for (char const* const count : {"0", "-1", "x", "1x"}) {
        EXPECT_EQ(Tactus({"analyze", "--max-errors", count, "2.mp3"}).m_nExit, 2) << count;
    }
}

class LockTest : public AnalyzeBatchTest {
protected:
    /// A state folder of this test's own.
    LockTest() { (void)::setenv("XDG_STATE_HOME", (m_state / "s").c_str(), 1); }
    CTempFolder m_state;
};

TEST_F(LockTest, AnotherRunIsNotDisturbed) {
    WriteTagged("a.mp3", "120");
    WriteText(m_folder / "out.csv", "path,title,artist,tempo,source,error\n");
    EXPECT_EQ(Tactus({"analyze", "--lock", "a.mp3"}).m_nExit, 0);
    // The second time the file is there, and as good.
    EXPECT_EQ(Tactus({"analyze", "--lock", "a.mp3"}).m_nExit, 0);
    std::string const path = m_state / "s/tactus/lock";
    EXPECT_EQ(std::filesystem::file_size(path), 0U);
    CDescriptor const file(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(LockFile(file.Get()), ELock::Taken);
    CProcessResult const busy = Tactus({"analyze", "--lock", "-o", "out.csv", "a.mp3"});
    EXPECT_EQ(busy.m_nExit, 75);
    EXPECT_EQ(busy.m_sErr, "tactus: another run is at work (--lock)\n");
    EXPECT_EQ(ReadText(m_folder / "out.csv"), "path,title,artist,tempo,source,error\n");
    EXPECT_EQ(Tactus({"analyze", "a.mp3"}).m_nExit, 0);
}

TEST_F(LockTest, WithoutAPlaceForItNothingIsDone) {
    WriteTagged("a.mp3", "120");
    WriteText(m_state / "file", "");
    (void)::setenv("XDG_STATE_HOME", (m_state / "file").c_str(), 1);
    CProcessResult const result = Tactus({"analyze", "--lock", "a.mp3"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_EQ(result.m_sOut, "");
    EXPECT_THAT(result.m_sErr, MatchesRegex("tactus: --lock: .*/lock: Not a directory\n"));
}

TEST_F(AnalyzeBatchTest, ProgressForProgramsIsJsonAndOnlyOnRequest) {
    WriteClip("a.wav");
    WriteTagged("b.mp3", "120");
    WriteText(m_folder / "c.wav", "no audio");
    CProcessResult const silent = Tactus({"analyze", "a.wav", "b.mp3"});
    EXPECT_EQ(silent.m_sErr, "");
    CProcessResult const asked = Tactus(
        {"analyze", "--no-cache", "--progress", "json", "--write", "a.wav", "b.mp3", "c.wav"});
    EXPECT_EQ(asked.m_nExit, 1);
    EXPECT_THAT(
        asked.m_sErr,
        MatchesRegex(R"re(([{]"event":"progress","done":.*[}].)+)re"
                     R"re(tactus: c.wav: .*.[{]"event":"end","rows":3,"heard":1,)re"
                     R"re("stored":0,"notStored":0,"kept":1,"failed":1,"seconds":[0-9.]+,)re"
                     R"re("rate":[0-9.]+,"exit":1[}].)re"));
    EXPECT_EQ(Tactus({"analyze", "--progress", "bar", "a.wav"}).m_nExit, 2);
}

} // namespace
