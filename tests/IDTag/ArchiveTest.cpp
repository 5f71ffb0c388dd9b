// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/Archive.h"

#include "support/TempFolder.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace {

using Bytes = std::vector<std::uint8_t>;

CArchiveObject ThroughMemory(CArchiveObject const& object) {
    CMemoryArchive out;
    out << object;
    CMemoryArchive in(out.GetBytes());
    CArchiveObject back = true;
    in >> back;
    EXPECT_EQ(in.GetAvailable(), 0U);
    return back;
}

/// What an embedded object with this encoding reads as.
CArchiveObject Decoded(Bytes const& encoding) {
    auto const length = static_cast<std::uint32_t>(encoding.size());
    Bytes bytes(sizeof length);
    std::memcpy(bytes.data(), &length, sizeof length);
    bytes.insert(bytes.end(), encoding.begin(), encoding.end());
    CMemoryArchive in(bytes);
    CArchiveObject object = true;
    in >> object;
    return object;
}

CArchiveObject const kNothing = std::monostate();

} // namespace

TEST(ArchiveTest, ReadingAfterWritingGivesAnEqualObject) {
    for (CArchiveObject const& object :
         {CArchiveObject(), CArchiveObject(true), CArchiveObject(false),
          CArchiveObject(std::int64_t{-1}),
          CArchiveObject(std::numeric_limits<std::int64_t>::max()),
          CArchiveObject(std::numeric_limits<std::int64_t>::min()), CArchiveObject(0.1),
          CArchiveObject(std::numeric_limits<double>::infinity()),
          CArchiveObject(std::string("caf\xC3\xA9")), CArchiveObject(std::string()),
          CArchiveObject(Bytes{0x00, 0xFF}), CArchiveObject(CDate{1'234'567'890'123'456}),
          CArchiveObject(CDate{-1})}) {
        EXPECT_EQ(ThroughMemory(object), object) << object.index();
    }
}

TEST(ArchiveTest, NotANumberStaysOne) {
    CArchiveObject const back = ThroughMemory(std::numeric_limits<double>::quiet_NaN());
    ASSERT_TRUE(std::holds_alternative<double>(back));
    EXPECT_TRUE(std::isnan(std::get<double>(back)));
}

TEST(ArchiveTest, ObjectIsALengthAndAKeyedMap) {
    CMemoryArchive archive;
    archive << CArchiveObject(std::int64_t{5});
    Bytes const encoding = {0xA1,                               // map of one
                            0x66, 'O', 'b', 'j', 'e', 'c', 't', // text of six
                            0x05};                              // integer
    std::uint32_t length = 0;
    ASSERT_EQ(archive.GetBytes().size(), sizeof length + encoding.size());
    std::memcpy(&length, archive.GetBytes().data(), sizeof length);
    EXPECT_EQ(length, encoding.size());
    EXPECT_EQ(Bytes(archive.GetBytes().begin() + 4, archive.GetBytes().end()), encoding);
    EXPECT_EQ(Decoded(encoding), CArchiveObject(std::int64_t{5}));
}

TEST(ArchiveTest, DateIsAMapOfItsOwn) {
    EXPECT_EQ(Decoded({0xA1,                               // map of one
                       0x66, 'O', 'b', 'j', 'e', 'c', 't', // text of six
                       0xA1,                               // map of one
                       0x64, 'D', 'a', 't', 'e',           // text of four
                       0x18, 0x64}),                       // integer 100
              CArchiveObject(CDate{100}));
}

TEST(ArchiveTest, UndecodableBytesGiveNothing) {
    EXPECT_EQ(Decoded({}), kNothing);
    EXPECT_EQ(Decoded({0xFF}), kNothing);
    EXPECT_EQ(Decoded({0x05}), kNothing);                                     // no map
    EXPECT_EQ(Decoded({0xA1, 0x61, 'X', 0x05}), kNothing);                    // another key
    EXPECT_EQ(Decoded({0xA1, 0x66, 'O', 'b', 'j', 'e', 'c', 't'}), kNothing); // cut short
    EXPECT_EQ(Decoded({0xA1, 0x66, 'O', 'b', 'j', 'e', 'c', 't', 0x81, 0x05}), kNothing); // array
    EXPECT_EQ(Decoded({0xA1, 0x66, 'O', 'b', 'j', 'e', 'c', 't', 0x1B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                       0xFF, 0xFF, 0xFF}),
              kNothing); // an integer past 64 signed bits
}

TEST(ArchiveTest, DeepNestingIsRefusedAtOnce) {
    EXPECT_EQ(Decoded(Bytes(1'000'000, 0x81)), kNothing);
    Bytes maps;
    for (int i = 0; i < 100'000; ++i) {
        maps.insert(maps.end(), {0xA1, 0x66, 'O', 'b', 'j', 'e', 'c', 't'});
    }
    EXPECT_EQ(Decoded(maps), kNothing);
}

TEST(ArchiveTest, ClaimPastTheEndIsNotBelieved) {
    CMemoryArchive in(Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xA0});
    CArchiveObject object = true;
    in >> object;
    EXPECT_EQ(object, kNothing);
    CMemoryArchive empty{Bytes()};
    object = true;
    empty >> object;
    EXPECT_EQ(object, kNothing);
}

TEST(ArchiveTest, TextClaimPastTheEndGivesNothing) {
    EXPECT_EQ(Decoded({0xA1, 0x66, 'O', 'b', 'j', 'e', 'c', 't', // key
                       0x7A, 0xFF, 0xFF, 0xFF, 0xF0, 'x'}),      // text of 4 GB
              kNothing);
}

TEST(ArchiveTest, MemoryArchiveIsAPlainStream) {
    CMemoryArchive out;
    EXPECT_NE(static_cast<IArchive&>(out).IsStoring(), 0);
    std::uint32_t const value = 0x01020304;
    static_cast<IArchive&>(out).Write(&value, 4);
    static_cast<IArchive&>(out).Write("ab", 2);
    CMemoryArchive in(out.GetBytes());
    EXPECT_EQ(static_cast<IArchive&>(in).IsStoring(), 0);
    std::uint32_t back = 0;
    static_cast<IArchive&>(in).Read(&back, 4, 0);
    EXPECT_EQ(back, value);
    char text[4] = {'-', '-', '-', '-'};
    static_cast<IArchive&>(in).Read(text, 4, 0);
    EXPECT_EQ(std::string(text, 4), "ab--");
}

TEST(ArchiveTest, FileArchiveKeepsValuesAndObjects) {
    CTempFolder folder;
    std::string const path = folder / "archive";
    {
        CFileArchive out(path, CFileArchive::EMode::Store);
        EXPECT_NE(out.IsStoring(), 0);
        std::int64_t const position = 44100;
        out.Write(&position, sizeof position);
        out << CArchiveObject(std::string("x"));
        EXPECT_TRUE(out.Close());
    }
    CFileArchive in(path, CFileArchive::EMode::Load);
    EXPECT_EQ(in.IsStoring(), 0);
    std::int64_t position = 0;
    in.Read(&position, sizeof position, 0);
    EXPECT_EQ(position, 44100);
    CArchiveObject object;
    in >> object;
    EXPECT_EQ(object, CArchiveObject(std::string("x")));
    EXPECT_EQ(in.GetAvailable(), 0U);
    EXPECT_TRUE(in.Close());
}

TEST(ArchiveTest, FileArchiveTellsWhenItIsNotWhole) {
    CTempFolder folder;
    CFileArchive missing(folder / "none", CFileArchive::EMode::Load);
    char byte = '-';
    missing.Read(&byte, 1, 0);
    EXPECT_EQ(byte, '-');
    EXPECT_FALSE(missing.Close());
    CFileArchive folderItself(folder.Path(), CFileArchive::EMode::Load);
    CArchiveObject object = true;
    folderItself >> object;
    EXPECT_EQ(object, kNothing);
    EXPECT_FALSE(folderItself.Close());
}

TEST(ArchiveTest, FullDiskIsTold) {
    CFileArchive full("/dev/full", CFileArchive::EMode::Store);
    full.Write("x", 1);
    EXPECT_FALSE(full.Close());
}

TEST(SysTimeTest, ReadsBackTheDateWritten) {
    CSysTime time(CDate{1'700'000'000'000'001});
    CMemoryArchive out;
    time.Serialize(out);
    CMemoryArchive in(out.GetBytes());
    CSysTime back;
    EXPECT_EQ(back.GetDate(), kNothing);
    back.Serialize(in);
    EXPECT_EQ(back.GetDate(), CArchiveObject(CDate{1'700'000'000'000'001}));
}

TEST(SysTimeTest, AnotherObjectIsNoDate) {
    CMemoryArchive out;
    out << CArchiveObject(std::int64_t{5});
    CMemoryArchive in(out.GetBytes());
    CSysTime time(CDate{1});
    time.Serialize(in);
    EXPECT_EQ(time.GetDate(), kNothing);
}

TEST(SysTimeTest, NowIsAfterThisTestWasWritten) {
    CArchiveObject const now = CSysTime::Now().GetDate();
    ASSERT_TRUE(std::holds_alternative<CDate>(now));
    EXPECT_GT(std::get<CDate>(now).m_nMicroseconds, 1'700'000'000'000'000);
}
