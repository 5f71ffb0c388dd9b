// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/Journal.h"

#include "IDTag/TagStore.h"

#include "support/TagFile.h"
#include "support/TempFolder.h"

#include <SQLiteCpp/Database.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

namespace {

class JournalTest : public testing::Test {
protected:
    std::string Song(std::string const& name) {
        std::string const path = m_songs / name;
        WriteBytes(path, kSound);
        return path;
    }

    static EWriteProblem Write(CJournal& journal, std::string const& path, char const* text,
                               ETextOrigin origin = ETextOrigin::Heard) {
        auto const witness = journal.Witness(EJournalWriter::Analyze, origin);
        CTagStoreOptions options;
        options.m_pWitness = witness.get();
        return StoreTagText(CString::FromPath(path), "TBPM", CString(text), options);
    }

    std::string Database() const { return Folder() + "/journal.sqlite"; }
    std::string Folder() const { return m_folder / "tactus"; }

    CTempFolder m_folder;
    CTempFolder m_songs;
};

TEST_F(JournalTest, TellsWhatWasWritten) {
    std::string const path = Song("a.mp3");
    CFileIdentity const before = *IdentityAt(path);
    {
        CJournal journal(Folder());
        ASSERT_EQ(Write(journal, path, "128.00"), EWriteProblem::None);
        ASSERT_EQ(Write(journal, path, "64.00", ETextOrigin::Hand), EWriteProblem::None);
    }
    CJournal journal(Folder());
    std::vector<CJournalBatch> const batches = journal.Batches(10);
    ASSERT_EQ(batches.size(), 1U);
    EXPECT_EQ(batches[0].m_nWrites, 2);
    EXPECT_EQ(batches[0].m_sPath, std::filesystem::canonical(path).string());
    EXPECT_FALSE(batches[0].m_undoes);
    std::vector<CJournalEntry> const entries = journal.Entries(batches[0].m_nId);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].m_sFrameId, "TBPM");
    EXPECT_EQ(entries[0].m_textBefore, std::nullopt);
    EXPECT_EQ(entries[0].m_textAfter, "128.00");
    EXPECT_EQ(entries[0].m_before, before);
    EXPECT_EQ(entries[0].m_eState, EJournalState::Written);
    EXPECT_EQ(entries[1].m_textBefore, "128.00");
    EXPECT_EQ(entries[1].m_after, IdentityAt(path));
    EXPECT_EQ(journal.Writes(path, 10).size(), 2U);
    EXPECT_EQ(journal.Problem(), ERecordProblem::None);
}

TEST_F(JournalTest, BatchesAreToldApart) {
    CJournal journal(Folder());
    ASSERT_EQ(Write(journal, Song("a.mp3"), "128.00"), EWriteProblem::None);
    journal.BeginBatch();
    ASSERT_EQ(Write(journal, Song("b.mp3"), "128.00"), EWriteProblem::None);
    ASSERT_EQ(Write(journal, Song("c.mp3"), "128.00"), EWriteProblem::None);
    std::vector<CJournalBatch> const batches = journal.Batches(10);
    ASSERT_EQ(batches.size(), 2U);
    EXPECT_EQ(batches[0].m_nWrites, 2);
    EXPECT_EQ(batches[1].m_nWrites, 1);
    EXPECT_EQ(journal.Batches(1).size(), 1U);
}

TEST_F(JournalTest, AWriteThatFailedIsNoWrite) {
    std::string const path = Song("a.mp3");
    std::filesystem::create_directory(m_songs / "a.MP~");
    CJournal journal(Folder());
    EXPECT_EQ(Write(journal, path, "128.00"), EWriteProblem::NoTemporaryFile);
    EXPECT_TRUE(journal.Batches(10).empty());
    EXPECT_TRUE(journal.Writes(path, 10).empty());
}

TEST_F(JournalTest, ARenamedFileIsKnown) {
    std::string const path = Song("a.mp3");
    CJournal journal(Folder());
    ASSERT_EQ(Write(journal, path, "128.00"), EWriteProblem::None);
    std::filesystem::rename(path, m_songs / "b.mp3");
    EXPECT_EQ(journal.Writes(m_songs / "b.mp3", 10).size(), 1U);
    EXPECT_TRUE(journal.Writes(Song("c.mp3"), 10).empty());
}

TEST_F(JournalTest, KnowsWhoseATextIs) {
    std::string const path = Song("a.mp3");
    CJournal journal(Folder());
    EXPECT_EQ(journal.OriginOf(path, "TBPM", "128.00"), std::nullopt);
    ASSERT_EQ(Write(journal, path, "128.00"), EWriteProblem::None);
    EXPECT_EQ(journal.OriginOf(path, "TBPM", "128.00"), ETextOrigin::Heard);
    EXPECT_EQ(journal.OriginOf(path, "TBPM", "129.00"), std::nullopt);
    EXPECT_EQ(journal.OriginOf(path, "TKEY", "128.00"), std::nullopt);
    ASSERT_EQ(Write(journal, path, "64.00", ETextOrigin::Hand), EWriteProblem::None);
    EXPECT_EQ(journal.OriginOf(path, "TBPM", "64.00"), ETextOrigin::Hand);
    // An undo puts a text back that was heard before.
    ASSERT_EQ(Write(journal, path, "128.00", ETextOrigin::Earlier), EWriteProblem::None);
    EXPECT_EQ(journal.OriginOf(path, "TBPM", "128.00"), ETextOrigin::Heard);
}

TEST_F(JournalTest, WithoutAFolderWritesGoOn) {
    std::string const path = Song("a.mp3");
    CJournal journal("");
    EXPECT_EQ(Write(journal, path, "128.00"), EWriteProblem::None);
    EXPECT_TRUE(journal.Batches(10).empty());
    EXPECT_EQ(journal.Problem(), ERecordProblem::NoFolder);
}

TEST_F(JournalTest, ReadingMakesNothing) {
    CJournal journal(Folder());
    EXPECT_TRUE(journal.Batches(10).empty());
    EXPECT_FALSE(std::filesystem::exists(Folder()));
    EXPECT_EQ(journal.Problem(), ERecordProblem::None);
}

TEST_F(JournalTest, AFolderThatCannotBeMadeIsNoHindrance) {
    WriteText(m_folder / "tactus", "a file");
    CJournal journal(Folder());
    EXPECT_EQ(Write(journal, Song("a.mp3"), "128.00"), EWriteProblem::None);
    EXPECT_EQ(journal.Problem(), ERecordProblem::NotOpened);
    EXPECT_EQ(ReadText(m_folder / "tactus"), "a file");
}

TEST_F(JournalTest, ADamagedFileIsPutAside) {
    std::filesystem::create_directory(Folder());
    std::string const damaged(9000, 'x');
    WriteText(Database(), damaged);
    CJournal journal(Folder());
    std::string const path = Song("a.mp3");
    EXPECT_EQ(Write(journal, path, "128.00"), EWriteProblem::None);
    EXPECT_EQ(journal.Problem(), ERecordProblem::Damaged);
    EXPECT_EQ(ReadText(Database() + ".damaged-1"), damaged);
    EXPECT_EQ(journal.Writes(path, 10).size(), 1U);
}

TEST_F(JournalTest, WhatIsNotOursIsLeftAlone) {
    std::filesystem::create_directory(Folder());
    SQLite::Database(Database(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec("CREATE TABLE theirs(x); INSERT INTO theirs VALUES (1)");
    std::string const before = ReadText(Database());
    CJournal journal(Folder());
    EXPECT_EQ(Write(journal, Song("a.mp3"), "128.00"), EWriteProblem::None);
    EXPECT_EQ(journal.Problem(), ERecordProblem::Foreign);
    EXPECT_EQ(ReadText(Database()), before);
}

TEST_F(JournalTest, WhatIsLeftOfAFullDiskIsNobodys) {
    std::string const path = Song("a.mp3");
    std::filesystem::create_directories(Folder());
    WriteText(Database(), "");
    CJournal journal(Folder());
    EXPECT_TRUE(journal.Batches(10).empty());
    EXPECT_EQ(journal.OriginOf(path, "TBPM", "128.00"), std::nullopt);
    EXPECT_EQ(journal.Problem(), ERecordProblem::None);
    // Once there is space, it is begun anew.
    ASSERT_EQ(Write(journal, path, "128.00"), EWriteProblem::None);
    EXPECT_EQ(journal.Batches(10).size(), 1U);
    EXPECT_EQ(journal.Problem(), ERecordProblem::None);
}

TEST_F(JournalTest, WhatALaterVersionMadeIsLeftAlone) {
    { EXPECT_TRUE(CJournal(Folder()).Clear()); }
    SQLite::Database(Database(), SQLite::OPEN_READWRITE).exec("PRAGMA user_version = 99");
    CJournal journal(Folder());
    EXPECT_EQ(Write(journal, Song("a.mp3"), "128.00"), EWriteProblem::None);
    EXPECT_EQ(journal.Problem(), ERecordProblem::Newer);
}

TEST_F(JournalTest, SeveralWriteAtOnce) {
    constexpr int kWriters = 4;
    constexpr int kWrites = 25;
    auto const write = [this](int writer) {
        CJournal journal(Folder());
        for (int i = 0; i < kWrites; ++i) {
            std::string const name = std::to_string(writer) + "-" + std::to_string(i) + ".mp3";
            EXPECT_EQ(Write(journal, Song(name), "128.00"), EWriteProblem::None);
        }
        EXPECT_EQ(journal.Problem(), ERecordProblem::None);
    };
    std::vector<std::thread> writers;
    for (int i = 0; i < kWriters; ++i) {
        writers.emplace_back(write, i);
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    std::vector<CJournalBatch> const batches = CJournal(Folder()).Batches(10);
    ASSERT_EQ(batches.size(), 4U);
    for (CJournalBatch const& batch : batches) {
        EXPECT_EQ(batch.m_nWrites, kWrites);
    }
}

TEST_F(JournalTest, ClearForgetsAll) {
    CJournal journal(Folder());
    std::string const path = Song("a.mp3");
    ASSERT_EQ(Write(journal, path, "128.00"), EWriteProblem::None);
    EXPECT_EQ(journal.Clear(), 1);
    EXPECT_TRUE(journal.Batches(10).empty());
    ASSERT_EQ(Write(journal, path, "129.00"), EWriteProblem::None);
    EXPECT_EQ(journal.Batches(10).size(), 1U);
}

} // namespace
