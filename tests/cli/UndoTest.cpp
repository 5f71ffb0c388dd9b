// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "CommandTest.h"
#include "support/Chords.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>

// The program from outside: `tactus history` and `tactus undo`.

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

class UndoCommandTest : public CCommandTest {
protected:
    /// A journal of this test's own.
    UndoCommandTest() { (void)::setenv("XDG_STATE_HOME", (m_state / "s").c_str(), 1); }

    void WriteSong(std::string const& name) { WriteBytes(m_folder / name, MpegAudio(4)); }

    void SetTempo(std::string const& name, std::string const& tempo) {
        CProcessResult const set = Tactus({"tag", "set", name, "TBPM", tempo});
        ASSERT_EQ(set.m_nExit, 0) << set.m_sErr;
    }

    /// The path as the journal has it.
    std::string Real(std::string const& name) {
        return std::filesystem::canonical(m_folder / name).string();
    }

    CTempFolder m_state;
};

TEST_F(UndoCommandTest, LastBatchIsTakenBackAndTheUndoToo) {
    WriteSong("a.mp3");
    std::string const before = ReadText(m_folder / "a.mp3");
    SetTempo("a.mp3", "174");
    std::string const written = ReadText(m_folder / "a.mp3");
    CProcessResult const undone = Tactus({"undo"});
    EXPECT_EQ(undone.m_nExit, 0) << undone.m_sErr;
    EXPECT_EQ(undone.m_sOut, Real("a.mp3") + ": TBPM '174' -> nothing\n");
    EXPECT_EQ(ReadText(m_folder / "a.mp3"), before);
    CProcessResult const redone = Tactus({"undo"});
    EXPECT_EQ(redone.m_sOut, Real("a.mp3") + ": TBPM nothing -> '174'\n");
    EXPECT_EQ(ReadText(m_folder / "a.mp3"), written);
}

TEST_F(UndoCommandTest, FilesAndBatchesAreNamed) {
    WriteSong("a.mp3");
    WriteSong("b.mp3");
    SetTempo("a.mp3", "100");
    SetTempo("b.mp3", "101");
    SetTempo("b.mp3", "102");
    EXPECT_EQ(Tactus({"undo", "a.mp3"}).m_sOut, "a.mp3: TBPM '100' -> nothing\n");
    EXPECT_EQ(Tactus({"undo", "3"}).m_sOut, Real("b.mp3") + ": TBPM '102' -> '101'\n");
    EXPECT_EQ(Tactus({"undo", "2"}).m_sOut, Real("b.mp3") + ": TBPM '101' -> nothing\n");
    CProcessResult const none = Tactus({"undo", "99", "none.mp3"});
    EXPECT_EQ(none.m_nExit, 1);
    EXPECT_THAT(none.m_sErr, HasSubstr("tactus: 99: no such batch of writes"));
    EXPECT_THAT(none.m_sErr, HasSubstr("tactus: none.mp3: Tactus knows of no write of it\n"));
}

TEST_F(UndoCommandTest, WhatAnotherProgramSetStaysUnlessForced) {
    WriteSong("a.mp3");
    SetTempo("a.mp3", "100");
    // Another program's: the journal hears nothing of it.
    WriteBytes(m_folder / "a.mp3",
               Joined({TagOf(3, Frame23("TBPM", Latin1Text("174"))), MpegAudio(4)}));
    CProcessResult const left = Tactus({"undo"});
    EXPECT_EQ(left.m_nExit, 1);
    EXPECT_EQ(left.m_sErr, "tactus: " + Real("a.mp3") +
                               ": TBPM says '174' and not '100', which was written: --force\n");
    CProcessResult const forced = Tactus({"undo", "--force"});
    EXPECT_EQ(forced.m_nExit, 0);
    EXPECT_EQ(forced.m_sOut, Real("a.mp3") + ": TBPM '174' -> nothing\n");
}

TEST_F(UndoCommandTest, AnalysisOfAFolderIsOneBatch) {
    std::filesystem::create_directory(m_folder / "songs");
    for (std::string const name : {"songs/a.mp3", "songs/b.mp3"}) {
        WriteMp3(name);
    }
    std::string const before = ReadText(m_folder / "songs/b.mp3");
    ASSERT_EQ(Tactus({"analyze", "-w", "--short", "songs"}).m_nExit, 0);
    EXPECT_NE(ReadText(m_folder / "songs/b.mp3"), before);
    CProcessResult const undone = Tactus({"undo"});
    EXPECT_EQ(undone.m_sErr, "tactus: 2 taken back\n");
    EXPECT_EQ(ReadText(m_folder / "songs/b.mp3"), before);
}

TEST_F(UndoCommandTest, AKeyThatWasStoredIsTakenBackToo) {
    CChords chords;
    for (int i = 0; i < 4; ++i) {
        chords.PlayCadence(9, true);
    }
    WriteWav(m_folder / "source.wav", chords.Samples());
    Ffmpeg({"-i", m_folder / "source.wav", "-c:a", "libmp3lame", "-id3v2_version", "0",
            m_folder / "a.mp3"});
    std::string const before = ReadText(m_folder / "a.mp3");
    ASSERT_EQ(Tactus({"analyze", "-w", "--short", "--write-key", "a.mp3"}).m_nExit, 0);
    EXPECT_NE(Tactus({"tag", "get", "a.mp3", "TKEY"}).m_sOut, "");
    EXPECT_THAT(Tactus({"history", "a.mp3"}).m_sOut, HasSubstr("TKEY nothing -> '"));
    EXPECT_EQ(Tactus({"undo"}).m_nExit, 0);
    EXPECT_EQ(ReadText(m_folder / "a.mp3"), before);
}

TEST_F(UndoCommandTest, HistoryTellsBatchesAndWrites) {
    WriteSong("a.mp3");
    SetTempo("a.mp3", "100");
    SetTempo("a.mp3", "101");
    (void)Tactus({"undo"});
    CProcessResult const batches = Tactus({"history"});
    EXPECT_EQ(batches.m_nExit, 0);
    EXPECT_THAT(batches.m_sOut,
                ContainsRegex("\n     3  [-0-9]+ [:0-9]+  undo of 2            1  "));
    EXPECT_THAT(batches.m_sOut,
                ContainsRegex("\n     1  [-0-9]+ [:0-9]+  tag set              1  "));
    EXPECT_THAT(Tactus({"history", "2"}).m_sOut,
                HasSubstr("  tag set  TBPM '100' -> '101'  " + Real("a.mp3") + "\n"));
    CProcessResult const json = Tactus({"history", "--json", "-n", "1", "a.mp3"});
    EXPECT_THAT(json.m_sOut, HasSubstr("\"batch\":3,"));
    EXPECT_THAT(json.m_sOut, HasSubstr("\"by\":\"undo\",\"path\":\"" + Real("a.mp3") +
                                       "\",\"frame\":\"TBPM\",\"before\":\"101\",\"after\":\"100\","
                                       "\"confirmed\":true}\n"));
    EXPECT_EQ(Tactus({"history", "77"}).m_nExit, 1);
}

TEST_F(UndoCommandTest, ClearForgets) {
    WriteSong("a.mp3");
    SetTempo("a.mp3", "100");
    CProcessResult const cleared = Tactus({"history", "--clear"});
    EXPECT_EQ(cleared.m_nExit, 0);
    EXPECT_EQ(cleared.m_sErr, "tactus: 1 write forgotten\n");
    EXPECT_EQ(Tactus({"history"}).m_sOut, "");
    EXPECT_EQ(Tactus({"undo"}).m_nExit, 1);
}

TEST_F(UndoCommandTest, AWriteSucceedsWithoutAJournal) {
    WriteSong("a.mp3");
    WriteText(m_state / "s", "no folder");
    CProcessResult const set = Tactus({"tag", "set", "a.mp3", "TBPM", "100"});
    EXPECT_EQ(set.m_nExit, 0);
    EXPECT_EQ(set.m_sErr, "tactus: " + (m_state / "s/tactus/journal.sqlite") +
                              ": the journal of writes can't be opened or made\n");
    EXPECT_EQ(Tactus({"tag", "get", "a.mp3", "TBPM"}).m_sOut, "100\n");
}

} // namespace
