// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/CommandTest.h"

#include "IDTag/PosixFile.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>

// The program from outside: the commands beside `analyze` that go through files.

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using Words = std::vector<std::string>;

class FileRunTest : public CCommandTest {
protected:
    CProcessResult Run(Words command, Words const& rest) {
        command.insert(command.end(), rest.begin(), rest.end());
        return Tactus(command);
    }

    Words const m_profile = {"profile", "--fields", "path"};
    Words const m_table = {"export", "csv", "--columns", "path"};
    std::vector<Words> const m_commands = {m_profile, m_table, {"dupes"}};
};

TEST_F(FileRunTest, PathsComeFromAList) {
    std::filesystem::create_directories(m_folder / "d/Live");
    for (char const* name : {"a.wav", "b c.wav", "d/e.wav", "d/Live/f.wav"}) {
        WriteClip(name);
    }
    WriteText(m_folder / "list", "d\nb c.wav\n");
    Words const rest = {"--files-from", "list", "--exclude", "Live", "a.wav"};
    CProcessResult const records = Run(m_profile, rest);
    EXPECT_EQ(records.m_nExit, 0) << records.m_sErr;
    EXPECT_EQ(records.m_sOut,
              "{\"path\":\"a.wav\"}\n{\"path\":\"d/e.wav\"}\n{\"path\":\"b c.wav\"}\n");
    EXPECT_EQ(Run(m_table, rest).m_sOut, "path\na.wav\nd/e.wav\nb c.wav\n");
    // The same sound three times.
    CProcessResult const same = Run({"dupes", "--json"}, rest);
    EXPECT_EQ(same.m_nExit, 0) << same.m_sErr;
}

TEST_F(FileRunTest, ListOnStandardInputMayHaveZeroBytes) {
    WriteClip("one\ntwo.wav");
    WriteText(m_folder / "list", std::string("one\ntwo.wav\0", 12));
    CProcessSetup setup = Prepare({"profile", "--fields", "path", "-0", "--files-from", "-"});
    setup.m_sInput = m_folder / "list";
    EXPECT_EQ(RunProcess(setup).m_sOut, "{\"path\":\"one\\ntwo.wav\"}\n");
}

TEST_F(FileRunTest, EmptyListIsNoMistakeButNoListIs) {
    WriteText(m_folder / "empty", "");
    for (Words const& command : m_commands) {
        EXPECT_EQ(Run(command, {"--files-from", "empty"}).m_nExit, 0) << command[0];
        CProcessResult const none = Run(command, {"--files-from", "none"});
        EXPECT_EQ(none.m_nExit, 1) << command[0];
        EXPECT_EQ(none.m_sErr, "tactus: none: No such file or directory\n");
        EXPECT_EQ(Run(command, {}).m_nExit, 2) << command[0];
    }
    EXPECT_EQ(Tactus({"export", "midi", "--files-from", "empty"}).m_nExit, 0);
}

TEST_F(FileRunTest, RunEndsWithTheLastErrorAllowed) {
    Words rest = {"-j", "1", "--max-errors", "2", "-o", "out"};
    // Enough to be still ahead when the second error is known.
    for (int i = 0; i < 300; ++i) {
        WriteText(m_folder / (std::to_string(i) + ".caf"), "no audio");
        rest.push_back(std::to_string(i) + ".caf");
    }
    for (Words const& command : m_commands) {
        CProcessResult const result = Run(command, rest);
        EXPECT_EQ(result.m_nExit, 1) << command[0];
        EXPECT_THAT(result.m_sErr, HasSubstr("tactus: stopped by --max-errors: "));
        // An export of a part is none; records are what they are.
        EXPECT_EQ(std::filesystem::exists(m_folder / "out"), command[0] == "profile");
        std::filesystem::remove(m_folder / "out");
    }
}

TEST_F(FileRunTest, NothingIsDoneWhileAnotherRunHasTheLock) {
    CTempFolder const state;
    (void)::setenv("XDG_STATE_HOME", (state / "s").c_str(), 1);
    WriteClip("a.wav");
    EXPECT_EQ(Run(m_profile, {"--lock", "a.wav"}).m_nExit, 0);
    CDescriptor const file(::open((state / "s/tactus/lock").c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(LockFile(file.Get()), ELock::Taken);
    for (Words const& command : m_commands) {
        CProcessResult const busy = Run(command, {"--lock", "-o", "out", "a.wav"});
        EXPECT_EQ(busy.m_nExit, 75) << command[0];
        EXPECT_EQ(busy.m_sErr, "tactus: another run is at work (--lock)\n");
        EXPECT_FALSE(std::filesystem::exists(m_folder / "out"));
    }
}

TEST_F(FileRunTest, ProgressForProgramsEndsWithTheSums) {
    WriteClip("a.wav");
    WriteText(m_folder / "c.wav", "no audio");
    for (Words const& command : m_commands) {
        CProcessResult const result = Run(command, {"--progress", "json", "a.wav", "c.wav"});
        EXPECT_EQ(result.m_nExit, 1) << command[0];
        EXPECT_THAT(result.m_sErr,
                    MatchesRegex(R"re([{]"event":"progress","done":.*[}].)re"
                                 R"re(tactus: c.wav: .*.[{]"event":"end","rows":2,)re"
                                 R"re("heard":1,.*"failed":1,.*"exit":1[}].)re"));
        EXPECT_EQ(Run(command, {"a.wav"}).m_sErr, "") << command[0];
    }
}

TEST_F(FileRunTest, TraceTakesListsAndRefusesWhatItDoesNot) {
    WriteClip("a.wav");
    WriteText(m_folder / "list", "a.wav\n");
    CProcessResult const listed = Tactus({"profile", "--trace", "--files-from", "list"});
    EXPECT_EQ(listed.m_nExit, 0) << listed.m_sErr;
    EXPECT_EQ(listed.m_sOut, Tactus({"profile", "--trace", "a.wav"}).m_sOut);
    for (Words const& watching : {Words{"--max-errors", "1"}, Words{"--progress", "json"}}) {
        CProcessResult const refused = Run({"profile", "--trace", "a.wav"}, watching);
        EXPECT_EQ(refused.m_nExit, 2);
        EXPECT_THAT(refused.m_sErr, HasSubstr("goes with neither --max-errors nor --progress"));
        EXPECT_EQ(refused.m_sOut, "");
    }
}

} // namespace
