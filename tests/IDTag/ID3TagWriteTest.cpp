// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/ID3Tag.h"

#include "support/TagFile.h"
#include "support/TempFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

TagBytes const kLongAudio = FakeAudio(3'000'000); // more than two pieces of the copy

struct stat StatOf(std::string const& path) {
    struct stat info = {};
    EXPECT_EQ(::stat(path.c_str(), &info), 0) << path;
    return info;
}

} // namespace

class ID3TagWriteTest : public testing::Test {
protected:
    CString Path() const { return CString::FromPath(m_sFile); }

    /// Opens a file with these bytes, sets one text and updates.
    CStatus Update(TagBytes const& bytes, char const* id = "TBPM", wchar_t const* text = L"128") {
        WriteBytes(m_sFile, bytes);
        CID3Tag tag;
        m_bRewritten = false;
        EXPECT_GE(tag.OpenFile(Path()), 0);
        EXPECT_EQ(tag.SetString(id, text), kStatusOk);
        CStatus const status = tag.UpdateFile(&m_bRewritten);
        m_eProblem = tag.GetWriteProblem();
        EXPECT_FALSE(std::filesystem::exists(m_sTemporary));
        return status;
    }

    CTempFolder m_folder;
    std::string const m_sFile = m_folder / "song.mp3";
    std::string const m_sTemporary = m_folder / "song.MP~";
    bool m_bRewritten = false;
    EWriteProblem m_eProblem = EWriteProblem::None;
};

TEST_F(ID3TagWriteTest, PaddingTakesANewFrameInPlace) {
    TagBytes const before = Joined({TagOf(3, Joined({kTitle, Zeros(200)})), kLongAudio});
    WriteBytes(m_sFile, before);
    ino_t const inode = StatOf(m_sFile).st_ino;
    ASSERT_EQ(Update(before), kStatusOk);
    EXPECT_FALSE(m_bRewritten);
    EXPECT_EQ(StatOf(m_sFile).st_ino, inode);
    // The tag keeps its 10 + 16 + 200 bytes.
    EXPECT_EQ(ReadBytes(m_sFile),
              Joined({TagOf(3, Joined({kTitle, kTempo, Zeros(200 - 21)})), kLongAudio}));
}

TEST_F(ID3TagWriteTest, FrameThatFitsExactlyGoesInPlace) {
    ASSERT_EQ(Update(Joined({TagOf(3, Joined({kTitle, Zeros(21)})), kLongAudio})), kStatusOk);
    EXPECT_FALSE(m_bRewritten);
    EXPECT_EQ(ReadBytes(m_sFile), Joined({TagOf(3, Joined({kTitle, kTempo})), kLongAudio}));
}

TEST_F(ID3TagWriteTest, OneByteTooManyMakesANewFileWithPadding) {
    ASSERT_EQ(Update(Joined({TagOf(3, Joined({kTitle, Zeros(20)})), kLongAudio})), kStatusOk);
    EXPECT_TRUE(m_bRewritten);
    EXPECT_EQ(ReadBytes(m_sFile),
              Joined({TagOf(3, Joined({kTitle, kTempo, Zeros(4096)})), kLongAudio}));
}

TEST_F(ID3TagWriteTest, FileWithoutATagGetsOneInFront) {
    ASSERT_EQ(Update(kLongAudio), kStatusOk);
    EXPECT_TRUE(m_bRewritten);
    EXPECT_EQ(ReadBytes(m_sFile), Joined({TagOf(3, Joined({kTempo, Zeros(4096)})), kLongAudio}));
}

TEST_F(ID3TagWriteTest, EmptyFileGetsATagOnly) {
    ASSERT_EQ(Update({}), kStatusOk);
    EXPECT_TRUE(m_bRewritten);
    EXPECT_EQ(ReadBytes(m_sFile), TagOf(3, Joined({kTempo, Zeros(4096)})));
}

TEST_F(ID3TagWriteTest, FileThatIsAllTagKeepsNothingBehindIt) {
    ASSERT_EQ(Update(TagOf(3, kTitle)), kStatusOk);
    EXPECT_TRUE(m_bRewritten);
    EXPECT_EQ(ReadBytes(m_sFile), TagOf(3, Joined({kTitle, kTempo, Zeros(4096)})));
}

TEST_F(ID3TagWriteTest, UnsupportedVersionStaysAsAudio) {
    TagBytes const old = Joined({TagOf(5, kTitle), kLongAudio});
    ASSERT_EQ(Update(old), kStatusOk);
    EXPECT_EQ(ReadBytes(m_sFile), Joined({TagOf(3, Joined({kTempo, Zeros(4096)})), old}));
}

TEST_F(ID3TagWriteTest, Version22IsWrittenAsVersion23) {
    TagBytes const picture = Joined({{0x00}, Ascii("PNG"), {0x03}, Ascii("d"), {0x00}, Zeros(9)});
    TagBytes const old = TagOf(
        2, Joined({Frame22("TT2", Latin1Text("Title")), Frame22("PIC", picture), Zeros(300)}));
    ASSERT_EQ(Update(Joined({old, kLongAudio})), kStatusOk);
    EXPECT_FALSE(m_bRewritten);
    TagBytes const frames = Joined(
        {kTitle,
         Frame23(
             "APIC",
             Joined({{0x00}, Ascii("image/png"), {0x00}, {0x03}, Ascii("d"), {0x00}, Zeros(9)})),
         kTempo});
    EXPECT_EQ(
        ReadBytes(m_sFile),
        Joined({TagOf(3, Joined({frames, Zeros(old.size() - 10 - frames.size())})), kLongAudio}));
}

TEST_F(ID3TagWriteTest, Version24KeepsFlagsAndEncodings) {
    TagBytes const utf8 = {0x03, 0xC3, 0xA9};
    TagBytes const big = Joined({{0x00}, TagBytes(199, 'x')}); // its size differs between versions
    TagBytes const old = TagOf(4, Joined({Frame24("TPE1", utf8, 0x20, 0x00), Frame24("TIT2", big),
                                          Frame24("APIC", {0xFF, 0x00, 0xE0}, 0x10, 0x0B)}));
    ASSERT_EQ(Update(Joined({old, kLongAudio})), kStatusOk);
    EXPECT_TRUE(m_bRewritten);
    EXPECT_EQ(
        ReadBytes(m_sFile),
        Joined({TagOf(3, Joined({Frame23("TPE1", utf8, 0x20, 0x00), Frame23("TIT2", big),
                                 Frame23("APIC", {0xFF, 0xE0}, 0x10, 0x09), kTempo, Zeros(4096)})),
                kLongAudio}));
}

TEST_F(ID3TagWriteTest, UnsynchronizedTagIsWrittenDecodedAndWithoutFlags) {
    TagBytes const picture = Frame23("APIC", {0xFF, 0xE0, 0x01});
    TagBytes encoded = picture;
    encoded.insert(encoded.end() - 2, 0x00);
    TagBytes const old = TagOf(3, Joined({encoded, Zeros(100)}), 0x80);
    ASSERT_EQ(Update(Joined({old, kLongAudio})), kStatusOk);
    EXPECT_FALSE(m_bRewritten);
    // 14 + 100 bytes on disk; 13 of the picture, 21 of the tempo, the rest zero.
    EXPECT_EQ(ReadBytes(m_sFile),
              Joined({TagOf(3, Joined({picture, kTempo, Zeros(114 - 13 - 21)})), kLongAudio}));
}

TEST_F(ID3TagWriteTest, FrameToDiscardIsDroppedButCounted) {
    TagBytes const dropped = Frame23("MCDI", {1, 2, 3, 4}, 0x40); // 14 bytes
    ASSERT_EQ(Update(Joined({TagOf(3, Joined({dropped, kTitle})), kLongAudio})), kStatusOk);
    EXPECT_TRUE(m_bRewritten);
    EXPECT_EQ(ReadBytes(m_sFile),
              Joined({TagOf(3, Joined({kTitle, kTempo, Zeros(4096 + 14)})), kLongAudio}));
}

TEST_F(ID3TagWriteTest, FrameToDiscardLeavesZerosInPlace) {
    TagBytes const dropped = Frame23("MCDI", {1, 2, 3, 4}, 0x60);
    ASSERT_EQ(Update(Joined({TagOf(3, Joined({dropped, kTitle, Zeros(21)})), kLongAudio})),
              kStatusOk);
    EXPECT_FALSE(m_bRewritten);
    EXPECT_EQ(ReadBytes(m_sFile),
              Joined({TagOf(3, Joined({kTitle, kTempo, Zeros(14)})), kLongAudio}));
}

TEST_F(ID3TagWriteTest, CountedDroppedFrameCanForceANewFile) {
    // 30 bytes would do for title and tempo, were the dropped frame not counted.
    TagBytes const dropped = Frame23("MCDI", {1, 2, 3, 4}, 0x40);
    ASSERT_EQ(Update(Joined({TagOf(3, Joined({dropped, kTitle, Zeros(20)})), kLongAudio})),
              kStatusOk);
    EXPECT_TRUE(m_bRewritten);
}

TEST_F(ID3TagWriteTest, TextOfTheTempoIsReplacedInPlace) {
    TagBytes const old = Frame23("TBPM", Latin1Text("120"));
    ASSERT_EQ(Update(Joined({TagOf(3, Joined({kTitle, old, Zeros(50)})), kLongAudio})), kStatusOk);
    EXPECT_EQ(ReadBytes(m_sFile),
              Joined({TagOf(3, Joined({kTitle, kTempo, Zeros(14 + 50 - 21)})), kLongAudio}));
}

TEST_F(ID3TagWriteTest, UnmodifiedTagWritesNothing) {
    TagBytes const bytes = Joined({TagOf(4, Frame24("TIT2", Latin1Text("Title"))), kLongAudio});
    WriteBytes(m_sFile, bytes);
    CID3Tag tag;
    ASSERT_EQ(tag.OpenFile(Path()), kStatusOk);
    EXPECT_EQ(tag.SetString("TIT2", L"Title"), kStatusNothing);
    EXPECT_EQ(tag.UpdateFile(&m_bRewritten), kStatusNothing);
    EXPECT_EQ(ReadBytes(m_sFile), bytes);
}

TEST_F(ID3TagWriteTest, PrivateDataAreWritten) {
    WriteBytes(m_sFile, kLongAudio);
    CID3Tag tag;
    ASSERT_EQ(tag.OpenFile(Path()), kStatusNothing);
    std::uint8_t const data[] = {0x00, 0x01};
    ASSERT_EQ(tag.SetPrivateBinaryData("me", data, 2), kStatusOk);
    ASSERT_EQ(tag.UpdateFile(&m_bRewritten), kStatusOk);
    TagBytes const frame = Frame23("PRIV", {'m', 'e', 0x00, 0x00, 0x01});
    EXPECT_EQ(ReadBytes(m_sFile), Joined({TagOf(3, Joined({frame, Zeros(4096)})), kLongAudio}));
}

TEST_F(ID3TagWriteTest, FrameWithoutABodyIsNotWritten) {
    WriteBytes(m_sFile, kLongAudio);
    CID3Tag tag;
    (void)tag.OpenFile(Path());
    (void)tag.SetString("TBPM", L"128");
    CID3Frame* frame = nullptr;
    ASSERT_TRUE(tag.GetExistingFrame("TBPM", &frame));
    ID3V2_3_FRAMEHEADER header = {};
    ASSERT_EQ(frame->SetData(&header, nullptr, 0), kStatusOk);
    ASSERT_EQ(tag.UpdateFile(&m_bRewritten), kStatusOk);
    EXPECT_EQ(ReadBytes(m_sFile), Joined({TagOf(3, Zeros(10 + 4096)), kLongAudio}));
}

TEST_F(ID3TagWriteTest, MissingFileIsNotMade) {
    CID3Tag tag;
    ASSERT_EQ(tag.OpenFile(Path()), kStatusFailure);
    ASSERT_EQ(tag.SetString("TBPM", L"128"), kStatusOk);
    EXPECT_EQ(tag.UpdateFile(&m_bRewritten), kStatusFailure);
    EXPECT_EQ(tag.GetWriteProblem(), EWriteProblem::TagUnreadable);
    EXPECT_TRUE(std::filesystem::is_empty(m_folder.Path()));
}

TEST_F(ID3TagWriteTest, TagPastTheEndOfTheFileIsNotWritten) {
    TagBytes const bytes = Joined({TagHeader(3, 1000), kTitle});
    WriteBytes(m_sFile, bytes);
    CID3Tag tag;
    ASSERT_EQ(tag.OpenFile(Path()), kStatusFailure);
    ASSERT_EQ(tag.SetString("TBPM", L"128"), kStatusOk);
    EXPECT_EQ(tag.UpdateFile(&m_bRewritten), kStatusFailure);
    EXPECT_EQ(ReadBytes(m_sFile), bytes);
}

TEST_F(ID3TagWriteTest, TagOfTwoToTheTwentyEightBytesIsRefused) {
    WriteBytes(m_sFile, kLongAudio);
    CID3Tag tag;
    (void)tag.OpenFile(Path());
    // needed + 4096 = 2^28 with 10 + 10 bytes of headers, the owner and its 00
    std::vector<std::uint8_t> data((1U << 28U) - 4096 - 20 - 2, 0x55);
    (void)tag.SetPrivateBinaryData("o", data.data(), static_cast<std::uint32_t>(data.size()));
    EXPECT_EQ(tag.UpdateFile(&m_bRewritten), kStatusFailure);
    EXPECT_EQ(tag.GetWriteProblem(), EWriteProblem::TagTooLarge);
    EXPECT_EQ(ReadBytes(m_sFile), kLongAudio);
    data.pop_back();
    (void)tag.SetPrivateBinaryData("o", data.data(), static_cast<std::uint32_t>(data.size()));
    EXPECT_EQ(tag.UpdateFile(&m_bRewritten), kStatusOk);
    EXPECT_EQ(std::filesystem::file_size(m_sFile), (1U << 28U) - 1 + kLongAudio.size());
}

TEST_F(ID3TagWriteTest, FileOverTwoGigabytesIsWritten) {
    // Sparse in the source; the copy has all its bytes.
    constexpr std::uint64_t kBytes = 2'200'000'000;
    WriteBytes(m_sFile, TagOf(3, kTitle));
    std::filesystem::resize_file(m_sFile, kBytes);
    {
        std::fstream file(m_sFile, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(-4, std::ios::end);
        file.write("last", 4);
    }
    if (std::filesystem::space(m_folder.Path()).available < 2 * kBytes) {
        GTEST_SKIP() << "needs 4.4 GB of free space in " << m_folder.Path();
    }
    CID3Tag tag;
    ASSERT_EQ(tag.OpenFile(Path()), kStatusOk);
    ASSERT_EQ(tag.SetString("TBPM", L"128"), kStatusOk);
    ASSERT_EQ(tag.UpdateFile(&m_bRewritten), kStatusOk);
    EXPECT_TRUE(m_bRewritten);
    EXPECT_EQ(std::filesystem::file_size(m_sFile), kBytes + 21 + 4096);
    std::ifstream file(m_sFile, std::ios::binary);
    std::string last(4, '\0');
    file.seekg(-4, std::ios::end);
    file.read(last.data(), 4);
    EXPECT_EQ(last, "last");
}

TEST_F(ID3TagWriteTest, FileOverFourGigabytesIsRefused) {
    WriteBytes(m_sFile, TagOf(3, Joined({kTitle, Zeros(100)})));
    std::filesystem::resize_file(m_sFile, 0x100000000);
    auto const time = std::filesystem::last_write_time(m_sFile);
    CID3Tag tag;
    EXPECT_EQ(tag.OpenFile(Path()), kStatusFailure);
    (void)tag.SetString("TBPM", L"128");
    EXPECT_EQ(tag.UpdateFile(&m_bRewritten), kStatusFailure);
    EXPECT_EQ(std::filesystem::last_write_time(m_sFile), time);
}

TEST_F(ID3TagWriteTest, FileThatWouldGrowPastFourGigabytesIsRefused) {
    WriteBytes(m_sFile, TagOf(3, kTitle));
    std::filesystem::resize_file(m_sFile, 0xFFFFFFFF);
    CID3Tag tag;
    ASSERT_EQ(tag.OpenFile(Path()), kStatusOk);
    (void)tag.SetString("TBPM", L"128");
    EXPECT_EQ(tag.UpdateFile(&m_bRewritten), kStatusFailure);
    EXPECT_EQ(tag.GetWriteProblem(), EWriteProblem::FileTooLarge);
    EXPECT_EQ(std::filesystem::file_size(m_sFile), 0xFFFFFFFFU);
    EXPECT_FALSE(std::filesystem::exists(m_sTemporary));
}

TEST_F(ID3TagWriteTest, FileOfFourGigabytesIsWrittenInPlace) {
    WriteBytes(m_sFile, TagOf(3, Joined({kTitle, Zeros(100)})));
    std::filesystem::resize_file(m_sFile, 0xFFFFFFFF);
    CID3Tag tag;
    ASSERT_EQ(tag.OpenFile(Path()), kStatusOk);
    (void)tag.SetString("TBPM", L"128");
    EXPECT_EQ(tag.UpdateFile(&m_bRewritten), kStatusOk);
    EXPECT_FALSE(m_bRewritten);
    EXPECT_EQ(std::filesystem::file_size(m_sFile), 0xFFFFFFFFU);
}
