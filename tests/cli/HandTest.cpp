// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "CommandTest.h"

#include <cstdlib>
#include <gmock/gmock.h>

// The program from outside: tempos that Tactus didn't find itself are their setter's.

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

class HandTest : public CCommandTest {
protected:
    HandTest() { (void)::setenv("XDG_STATE_HOME", (m_state / "s").c_str(), 1); }

    /// An mp3 whose tag another program gave a tempo; its own is near 96.
    void WriteOthers(std::string const& name, std::string const& tempo) {
        WriteMp3(name);
        std::vector<std::uint8_t> const sound = ReadBytes(m_folder / name);
        WriteBytes(m_folder / name, Joined({TagOf(3, Frame23("TBPM", Latin1Text(tempo))), sound}));
    }

    CProcessResult Analyze(std::vector<std::string> arguments, std::string const& name = "a.mp3") {
        arguments.insert(arguments.begin(), {"analyze", "--format", "jsonl"});
        arguments.push_back(name);
        return Tactus(arguments);
    }

    std::string Tempo(std::string const& name = "a.mp3") {
        return Tactus({"tag", "get", name, "TBPM"}).m_sOut;
    }

    CTempFolder m_state;
};

TEST_F(HandTest, AnotherProgramsTempoStaysUnlessItIsToGo) {
    WriteOthers("a.mp3", "174");
    CProcessResult const kept = Analyze({"-f", "-w", "--short"});
    EXPECT_EQ(kept.m_nExit, 0);
    EXPECT_THAT(kept.m_sOut, HasSubstr("\"written\":false,\"notWritten\":\"the tag's tempo is "
                                       "another program's: --overwrite-hand\""));
    EXPECT_THAT(kept.m_sOut, HasSubstr("\"before\":\"174\",\"setBy\":\"other\""));
    EXPECT_THAT(kept.m_sErr, StartsWith("tactus: 1 heard, 0 stored, 1 kept in "));
    EXPECT_EQ(Tempo(), "174\n");
    EXPECT_THAT(Analyze({"-f", "-w", "--short", "--overwrite-hand"}).m_sOut,
                HasSubstr("\"written\":true"));
    EXPECT_THAT(Tempo(), ContainsRegex("^9[0-9]"));
}

TEST_F(HandTest, WhatAPersonSetStaysToo) {
    WriteMp3("a.mp3");
    ASSERT_EQ(Tactus({"tag", "set", "a.mp3", "TBPM", "174"}).m_nExit, 0);
    EXPECT_THAT(Analyze({}).m_sOut, HasSubstr("\"source\":\"tag\""));
    EXPECT_THAT(Analyze({}).m_sOut, HasSubstr("\"setBy\":\"hand\""));
    EXPECT_THAT(Tactus({"analyze", "a.mp3"}).m_sOut, HasSubstr("174.00  tag, by hand\n"));
    EXPECT_THAT(Analyze({"-f", "-w", "--short"}).m_sOut,
                HasSubstr("the tag's tempo was set by hand: --overwrite-hand"));
    ASSERT_EQ(Tactus({"fix", "/2", "a.mp3"}).m_nExit, 0);
    EXPECT_THAT(Analyze({"-f", "-w", "--short"}).m_sOut, HasSubstr("was set by hand"));
    EXPECT_EQ(Tempo(), "87.00\n");
}

TEST_F(HandTest, WhatTactusFoundMayBeFoundAnew) {
    WriteMp3("a.mp3");
    ASSERT_EQ(Analyze({"-w", "--short"}).m_nExit, 0);
    std::string const found = Tempo();
    EXPECT_THAT(Analyze({}).m_sOut, HasSubstr("\"setBy\":\"tactus\""));
    EXPECT_THAT(Analyze({"-f", "-w", "--short"}).m_sOut, HasSubstr("\"written\":true"));
    EXPECT_EQ(Tempo(), found);
}

TEST_F(HandTest, OnlyWhatIsOffIsReplaced) {
    WriteOthers("a.mp3", "96");
    EXPECT_THAT(Analyze({"-f", "-w", "--short", "--overwrite-hand", "--only-if-off", "5%"}).m_sOut,
                HasSubstr("\"notWritten\":\"the tag's tempo is within the limit\""));
    EXPECT_EQ(Tempo(), "96\n");
    WriteOthers("a.mp3", "120");
    EXPECT_THAT(Analyze({"-f", "-w", "--short", "--overwrite-hand", "--only-if-off", "5%"}).m_sOut,
                HasSubstr("\"written\":true"));
    for (char const* const share : {"5", "-1%", "101%", "%", "x%"}) {
        EXPECT_EQ(Analyze({"--only-if-off", share}).m_nExit, 2) << share;
    }
}

TEST_F(HandTest, DryRunTellsWhatWouldBeDone) {
    WriteMp3("write.mp3");
    WriteOthers("keep.mp3", "174");
    WriteClip("skip.wav");
    std::string const before = ReadText(m_folder / "write.mp3");
    CProcessResult const plain = Tactus(
        {"analyze", "--dry-run", "--short", "write.mp3", "keep.mp3", "skip.wav", "none.mp3"});
    EXPECT_THAT(
        plain.m_sOut,
        ContainsRegex(
            "^write\tnothing -> 9[0-9.]+\twrite.mp3\n"
            "keep\t174\tkeep.mp3\n"
            "skip\t96.00\tskip.wav\tonly .mp3 files are written, and what --write-types names\n"
            "skip\tnothing\tnone.mp3\t[^\n]+\n$"));
    EXPECT_THAT(plain.m_sErr,
                HasSubstr("tactus: 1 to write, 1 to keep, 0 to keep that differ, 2 to skip in "));
    CProcessResult const forced = Tactus({"analyze", "--dry-run", "--short", "-f", "keep.mp3"});
    EXPECT_THAT(forced.m_sOut, ContainsRegex("^differ\t174 -> 9[0-9.]+\tkeep.mp3\tthe tag's"));
    CProcessResult const all =
        Tactus({"analyze", "--dry-run", "--short", "-f", "--overwrite-hand", "keep.mp3"});
    EXPECT_THAT(all.m_sOut, ContainsRegex("^write\t174 -> 9[0-9.]+\tkeep.mp3\n$"));
    EXPECT_EQ(ReadText(m_folder / "write.mp3"), before);
    EXPECT_EQ(Tempo("keep.mp3"), "174\n");
}

TEST_F(HandTest, LogHasEveryRow) {
    WriteOthers("a.mp3", "174");
    CProcessResult const run =
        Tactus({"analyze", "-f", "-w", "--short", "--log", "log.jsonl", "a.mp3", "none.mp3"});
    EXPECT_THAT(run.m_sOut, StartsWith("Path"));
    std::string const log = ReadText(m_folder / "log.jsonl");
    EXPECT_THAT(log, ContainsRegex("^[{]\"path\":\"a.mp3\",[^\n]*\"before\":\"174\"[^\n]*[}]\n"
                                   "[{]\"path\":\"none.mp3\",[^\n]*[}]\n$"));
}

} // namespace
