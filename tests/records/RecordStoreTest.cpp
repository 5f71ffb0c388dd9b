// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/RecordStore.h"

#include "records/EngineVersion.h"

#include "support/TempFolder.h"

#include <SQLiteCpp/Database.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

CSongRecord Heard(std::string const& tempo) {
    CSongRecord record;
    record.m_heard = CHeardSong{.m_outcome = {}, .m_sTempo = tempo, .m_candidates = {}};
    return record;
}

class RecordStoreTest : public testing::Test {
protected:
    CFileIdentity Song(std::string const& name) {
        WriteText(m_folder / name, name);
        return *IdentityAt(m_folder / name);
    }
    std::string Tempo(CRecordStore& store, std::string const& name, CFileIdentity const& identity) {
        CSongRecord const record = store.Find(m_folder / name, identity);
        return record.m_heard ? record.m_heard->m_sTempo : "<none>";
    }
    std::string Folder() const { return m_folder / "cache"; }
    std::string Database() const { return Folder() + "/songs.sqlite"; }

    CTempFolder m_folder;
};

TEST_F(RecordStoreTest, WhatIsKeptIsFoundAtOnceAndLater) {
    CFileIdentity const song = Song("a.mp3");
    {
        CRecordStore store(Folder());
        EXPECT_EQ(Tempo(store, "a.mp3", song), "<none>");
        store.Keep(m_folder / "a.mp3", song, Heard("128.00"));
        EXPECT_EQ(Tempo(store, "a.mp3", song), "128.00");
    }
    CRecordStore store(Folder());
    EXPECT_EQ(Tempo(store, "a.mp3", song), "128.00");
    EXPECT_EQ(store.Find(m_folder / "a.mp3", song).m_heard->m_outcome.m_report.m_identity, song);
    EXPECT_EQ(store.Problem(), ERecordProblem::None);
}

TEST_F(RecordStoreTest, AnyChangeOfTheFileIsAnotherState) {
    CFileIdentity const song = Song("a.mp3");
    CRecordStore store(Folder());
    store.Keep(m_folder / "a.mp3", song, Heard("128.00"));
    (void)store.Info(); // to the file
    for (auto const member : {&CFileIdentity::m_nSize, &CFileIdentity::m_nWrittenTime,
                              &CFileIdentity::m_nChangedTime}) {
        CFileIdentity changed = song;
        ++(changed.*member);
        EXPECT_EQ(Tempo(store, "a.mp3", changed), "<none>");
    }
    CFileIdentity other = song;
    ++other.m_nInode;
    EXPECT_EQ(Tempo(store, "a.mp3", other), "<none>");
    EXPECT_EQ(Tempo(store, "a.mp3", song), "128.00");
}

TEST_F(RecordStoreTest, ARenamedFileIsKnownByItsNumber) {
    CFileIdentity const song = Song("a.mp3");
    CRecordStore store(Folder());
    store.Keep(m_folder / "a.mp3", song, Heard("128.00"));
    EXPECT_EQ(Tempo(store, "b.mp3", song), "128.00");
    // Tags are looked for by the extension.
    EXPECT_EQ(Tempo(store, "b.wav", song), "<none>");
}

TEST_F(RecordStoreTest, ResultsOfAnotherEngineAreNotGivenOut) {
    CFileIdentity const song = Song("a.mp3");
    {
        CRecordStore store(Folder());
        store.Keep(m_folder / "a.mp3", song, Heard("128.00"));
    }
    SQLite::Database(Database(), SQLite::OPEN_READWRITE).exec("UPDATE songs SET engine = 'other'");
    CRecordStore store(Folder());
    EXPECT_EQ(Tempo(store, "a.mp3", song), "<none>");
    EXPECT_EQ(store.Info()->m_nOther, 1);
    EXPECT_EQ(store.Prune(), 1);
    EXPECT_EQ(store.Info()->m_nSongs, 0);
}

TEST_F(RecordStoreTest, EngineIsADigestAndADecoder) {
    // 32 hexadecimal digits, a blank, and what the decoding library says of itself.
    std::string const version = EngineVersion();
    EXPECT_EQ(version.find_first_not_of("0123456789abcdef"), 32U);
    EXPECT_GT(version.size(), 34U);
}

TEST_F(RecordStoreTest, ResultsFollowAWrittenTag) {
    CFileIdentity const before = Song("a.mp3");
    CRecordStore store(Folder());
    CSongRecord record = Heard("128.00");
    record.m_tags = CReadTags();
    store.Keep(m_folder / "a.mp3", before, record);
    CFileIdentity const after = Song("a.mp3 ");
    store.Follow(m_folder / "a.mp3", before, after);
    CSongRecord const found = store.Find(m_folder / "a.mp3", after);
    ASSERT_TRUE(found.m_heard);
    EXPECT_EQ(found.m_heard->m_sTempo, "128.00");
    EXPECT_FALSE(found.m_tags);
}

TEST_F(RecordStoreTest, DamagedSongsAreHeardAgainAfterAWrite) {
    CFileIdentity const before = Song("a.mp3");
    CRecordStore store(Folder());
    CSongRecord record = Heard("128.00");
    record.m_heard->m_outcome.m_report.m_nBadPackets = 1;
    store.Keep(m_folder / "a.mp3", before, record);
    CFileIdentity const after = Song("b.mp3");
    store.Follow(m_folder / "a.mp3", before, after);
    EXPECT_FALSE(store.Find(m_folder / "a.mp3", after).m_heard);
}

TEST_F(RecordStoreTest, FollowingMakesNoStore) {
    CFileIdentity const song = Song("a.mp3");
    CRecordStore store(Folder());
    store.Follow(m_folder / "a.mp3", song, song);
    EXPECT_FALSE(std::filesystem::exists(Folder()));
}

TEST_F(RecordStoreTest, WhatWasUsedLongestAgoGoesFirst) {
    constexpr int kSongs = 600;
    constexpr std::int64_t kMostBytes = 200'000; // a quarter of what the songs take
    CFileIdentity song = Song("a.mp3");
    CSongRecord record = Heard(std::string(1000, '1'));
    {
        CRecordStore store(Folder(), kMostBytes * 100);
        for (int i = 0; i < kSongs; ++i) {
            song.m_nInode = static_cast<std::uint64_t>(i);
            store.Keep(m_folder / "a.mp3", song, record);
        }
    }
    SQLite::Database(Database(), SQLite::OPEN_READWRITE)
        .exec("UPDATE songs SET used = used - 1 WHERE CAST(key AS TEXT) NOT LIKE '%:59_.mp3'");
    CRecordStore store(Folder(), kMostBytes);
    EXPECT_GT(store.Prune(), kSongs / 2);
    std::optional<CStoreInfo> const info = store.Info();
    EXPECT_LE(info->m_nBytes, kMostBytes);
    EXPECT_GT(info->m_nSongs, kSongs / 10);
    for (int i = 590; i < kSongs; ++i) {
        song.m_nInode = static_cast<std::uint64_t>(i);
        EXPECT_TRUE(store.Find(m_folder / "a.mp3", song).m_heard) << i;
    }
}

TEST_F(RecordStoreTest, WithoutAFolderNothingIsKnown) {
    CFileIdentity const song = Song("a.mp3");
    CRecordStore store("");
    store.Keep(m_folder / "a.mp3", song, Heard("128.00"));
    EXPECT_FALSE(store.Info());
    EXPECT_EQ(store.Problem(), ERecordProblem::NoFolder);
}

TEST_F(RecordStoreTest, ADamagedStoreIsPutAside) {
    std::filesystem::create_directory(Folder());
    WriteText(Database(), std::string(9000, 'x'));
    CFileIdentity const song = Song("a.mp3");
    CRecordStore store(Folder());
    store.Keep(m_folder / "a.mp3", song, Heard("128.00"));
    EXPECT_EQ(store.Info()->m_nSongs, 1);
    EXPECT_EQ(store.Problem(), ERecordProblem::Damaged);
    EXPECT_EQ(ReadText(Database() + ".damaged-1"), std::string(9000, 'x'));
}

TEST_F(RecordStoreTest, AStoreDamagedInTheMiddleIsPutAside) {
    CFileIdentity const song = Song("a.mp3");
    {
        CRecordStore store(Folder());
        store.Keep(m_folder / "a.mp3", song, Heard("128.00"));
    }
    // The first page, which is looked at when it is opened, stays whole.
    std::string bytes = ReadText(Database());
    ASSERT_GT(bytes.size(), 8192U);
    bytes.replace(4096, bytes.size() - 4096, bytes.size() - 4096, 'x');
    WriteText(Database(), bytes);
    CRecordStore store(Folder());
    EXPECT_EQ(Tempo(store, "a.mp3", song), "<none>");
    EXPECT_EQ(store.Problem(), ERecordProblem::Damaged);
    CRecordStore next(Folder());
    EXPECT_EQ(next.Info()->m_nSongs, 0);
    EXPECT_EQ(next.Problem(), ERecordProblem::None);
}

TEST_F(RecordStoreTest, SeveralKeepAndFindAtOnce) {
    constexpr int kWriters = 4;
    constexpr std::uint64_t kSongs = 300;
    CFileIdentity const song = Song("a.mp3");
    auto const work = [&](std::uint64_t writer) {
        CRecordStore store(Folder());
        for (std::uint64_t i = 0; i < kSongs; ++i) {
            CFileIdentity mine = song;
            mine.m_nInode = writer * kSongs + i;
            store.Keep(m_folder / "a.mp3", mine, Heard(std::to_string(mine.m_nInode)));
            EXPECT_EQ(Tempo(store, "a.mp3", mine), std::to_string(mine.m_nInode));
        }
        EXPECT_EQ(store.Problem(), ERecordProblem::None);
    };
    std::vector<std::thread> writers;
    for (int i = 0; i < kWriters; ++i) {
        writers.emplace_back(work, static_cast<std::uint64_t>(i));
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    EXPECT_EQ(CRecordStore(Folder()).Info()->m_nSongs, 1200);
}

} // namespace
