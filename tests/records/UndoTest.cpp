// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/Undo.h"

#include "IDTag/TagStore.h"

#include "support/TagFile.h"
#include "support/TempFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

TagBytes Tempo(std::string_view text) {
    return Frame23("TBPM", Latin1Text(text));
}

class UndoTest : public testing::Test {
protected:
    void Begin(TagBytes const& bytes) { WriteBytes(m_sPath, bytes); }

    void Write(char const* text, bool keepsTime = false) {
        auto const witness = m_journal.Witness(EJournalWriter::Analyze, ETextOrigin::Heard);
        CTagStoreOptions options;
        options.m_pWitness = witness.get();
        options.m_bKeepTime = keepsTime;
        ASSERT_EQ(StoreTagText(CString::FromPath(m_sPath), "TBPM", CString(text), options),
                  EWriteProblem::None);
    }

    /// Takes the last write back.
    CUndoResult Undo(CUndoOptions const& options = {}) {
        std::vector<CJournalEntry> const writes = m_journal.Writes(m_sPath, 1);
        EXPECT_EQ(writes.size(), 1U);
        return UndoWrite(m_journal, writes.at(0), m_sPath, options);
    }

    std::string Text() const {
        CString text;
        return ReadTagText(CString::FromPath(m_sPath), "TBPM", text) == kStatusOk ? text.ToUtf8()
                                                                                  : "<none>";
    }

    CTempFolder m_folder;
    std::string m_sPath = m_folder / "a.mp3";
    CJournal m_journal{m_folder / "state"};
};

TEST_F(UndoTest, EveryBeginningComesBackByteForByte) {
    for (TagBytes const& bytes : {
             kSound,
             Joined({TagOf(3, kTitle), kSound}),
             Joined({TagOf(3, Joined({Tempo("97"), Zeros(100)})), kSound}),
             Joined({TagOf(4, Joined({Frame24("TBPM", {3, '9'}), Zeros(9000)})), kSound}),
             Joined({TagOf(2, Frame22("TT2", Latin1Text("x"))), kSound}),
             Joined({TagOf(3, Frame23("TBPM", {0, '9', '0', 0, '9', '1'})), kSound}),
         }) {
        Begin(bytes);
        Write("128.00");
        EXPECT_EQ(Undo().m_eUndo, EUndo::Restored);
        EXPECT_EQ(ReadBytes(m_sPath), bytes);
    }
}

TEST_F(UndoTest, AnUndoIsUndoneToo) {
    Begin(Joined({TagOf(4, Frame24("TIT2", {3, 'x'})), kSound}));
    TagBytes const before = ReadBytes(m_sPath);
    Write("128.00");
    TagBytes const written = ReadBytes(m_sPath);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Undo().m_eUndo, EUndo::Restored);
        EXPECT_EQ(ReadBytes(m_sPath), before);
        EXPECT_EQ(Undo().m_eUndo, EUndo::Restored);
        EXPECT_EQ(ReadBytes(m_sPath), written);
    }
}

TEST_F(UndoTest, OnlyTheFrameComesBackWhereAnotherProgramWasAtTheTag) {
    Begin(kSound);
    Write("128.00");
    ASSERT_EQ(StoreTagText(CString::FromPath(m_sPath), "TIT2", L"New", {}), EWriteProblem::None);
    EXPECT_EQ(Undo().m_eUndo, EUndo::TextAlone);
    EXPECT_EQ(Text(), "<none>");
    CString title;
    EXPECT_EQ(ReadTagText(CString::FromPath(m_sPath), "TIT2", title), kStatusOk);
    EXPECT_EQ(title, L"New");
    // And back: the frame alone again.
    EXPECT_EQ(Undo().m_eUndo, EUndo::Restored);
    EXPECT_EQ(Text(), "128.00");
}

TEST_F(UndoTest, WhatSomebodyElseWroteStaysUnlessForced) {
    Begin(Joined({TagOf(3, Tempo("97")), kSound}));
    Write("128.00");
    ASSERT_EQ(StoreTagText(CString::FromPath(m_sPath), "TBPM", L"174", {}), EWriteProblem::None);
    TagBytes const theirs = ReadBytes(m_sPath);
    CUndoResult const left = Undo();
    EXPECT_EQ(left.m_eUndo, EUndo::OtherText);
    EXPECT_EQ(left.m_textThere, "174");
    EXPECT_EQ(ReadBytes(m_sPath), theirs);
    EXPECT_EQ(Undo({.m_bForce = true}).m_eUndo, EUndo::TextAlone);
    EXPECT_EQ(Text(), "97");
}

TEST_F(UndoTest, AWriteThatNeverHappenedNeedsNoUndo) {
    // The process ended between the entry and the write.
    TagBytes const bytes = Joined({TagOf(3, Tempo("97")), kSound});
    Begin(bytes);
    Write("128.00");
    CJournalEntry const entry = m_journal.Writes(m_sPath, 1).at(0);
    Begin(bytes);
    EXPECT_EQ(UndoWrite(m_journal, entry, m_sPath, {}).m_eUndo, EUndo::AsBefore);
    EXPECT_EQ(ReadBytes(m_sPath), bytes);
}

TEST_F(UndoTest, AFileThatIsGoneIsTold) {
    Begin(kSound);
    Write("128.00");
    CJournalEntry const entry = m_journal.Writes(m_sPath, 1).at(0);
    std::filesystem::remove(m_sPath);
    EXPECT_EQ(UndoWrite(m_journal, entry, m_sPath, {}).m_eUndo, EUndo::Gone);
}

TEST_F(UndoTest, TimeOfBeforeComesBackWhenAsked) {
    for (bool const isKept : {false, true}) {
        Begin(kSound);
        std::int64_t const time = 1'000'000'000'123'456'789;
        timespec const times[] = {{0, UTIME_NOW}, {1'000'000'000, 123'456'789}};
        ASSERT_EQ(::utimensat(AT_FDCWD, m_sPath.c_str(), times, 0), 0);
        Write("128.00", isKept);
        EXPECT_EQ(Undo({.m_bKeepTime = true}).m_eUndo, EUndo::Restored);
        EXPECT_EQ(IdentityAt(m_sPath)->m_nWrittenTime, time);
        EXPECT_EQ(ReadBytes(m_sPath), kSound);
    }
}

TEST_F(UndoTest, TimeThatSomebodyGaveTheFileSinceStays) {
    Begin(kSound);
    Write("128.00");
    timespec const times[] = {{0, UTIME_NOW}, {1'500'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, m_sPath.c_str(), times, 0), 0);
    EXPECT_EQ(Undo({.m_bKeepTime = true}).m_eUndo, EUndo::Restored);
    EXPECT_EQ(IdentityAt(m_sPath)->m_nWrittenTime, 1'500'000'000'000'000'000);
}

TEST_F(UndoTest, TheSoundBehindTheTagIsNotAskedFor) {
    Begin(kSound);
    Write("128.00");
    TagBytes longer = ReadBytes(m_sPath);
    longer.insert(longer.end(), 1000, 0x55);
    Begin(longer);
    EXPECT_EQ(Undo().m_eUndo, EUndo::Restored);
    TagBytes wanted = kSound;
    wanted.insert(wanted.end(), 1000, 0x55);
    EXPECT_EQ(ReadBytes(m_sPath), wanted);
}

} // namespace
