// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/MpegChain.h"

#include "IDTag/PosixFile.h"

#include "support/TagFile.h"
#include "support/TempFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace {

class MpegChainTest : public testing::Test {
protected:
    bool Has(TagBytes const& bytes, std::uint64_t offset = 0) {
        std::string const path = m_folder / "song.mp3";
        WriteBytes(path, bytes);
        CDescriptor const file(::open(path.c_str(), O_RDONLY));
        return HasMpegChain(file.Get(), offset);
    }

    bool HasOther(TagBytes const& bytes) {
        std::string const path = m_folder / "song.mp3";
        WriteBytes(path, bytes);
        CDescriptor const file(::open(path.c_str(), O_RDONLY));
        return HasOtherKind(file.Get(), 0);
    }

    CTempFolder m_folder;
};

/// `count` frames of `bytes` each that begin with `header`.
TagBytes Frames(TagBytes const& header, std::size_t bytes, std::size_t count = 3) {
    TagBytes out;
    for (std::size_t i = 0; i < count; ++i) {
        out = Joined({out, header, FakeAudio(bytes - header.size())});
    }
    return out;
}

TEST_F(MpegChainTest, FramesOfEveryVersionAndLayerAreFollowed) {
    // Lengths by hand: 144 (or 72, or 48) * bit rate / sample rate, rounded down, and the padding.
    EXPECT_TRUE(Has(Frames({0xFF, 0xFB, 0x90, 0x64}, 417)));  // 1, III, 128 kbit/s, 44100 Hz
    EXPECT_TRUE(Has(Frames({0xFF, 0xFB, 0x92, 0x64}, 418)));  // the same, padded
    EXPECT_TRUE(Has(Frames({0xFF, 0xFA, 0xE4, 0x64}, 960)));  // 1, III, 320 kbit/s, 48000 Hz
    EXPECT_TRUE(Has(Frames({0xFF, 0xF3, 0x80, 0x64}, 208)));  // 2, III, 64 kbit/s, 22050 Hz
    EXPECT_TRUE(Has(Frames({0xFF, 0xE3, 0x18, 0x64}, 72)));   // 2.5, III, 8 kbit/s, 8000 Hz
    EXPECT_TRUE(Has(Frames({0xFF, 0xFD, 0xA4, 0x64}, 576)));  // 1, II, 192 kbit/s, 48000 Hz
    EXPECT_TRUE(Has(Frames({0xFF, 0xF5, 0x80, 0x64}, 417)));  // 2, II, 64 kbit/s, 22050 Hz
    EXPECT_TRUE(Has(Frames({0xFF, 0xFF, 0xC0, 0x64}, 416)));  // 1, I, 384 kbit/s, 44100 Hz
    EXPECT_TRUE(Has(Frames({0xFF, 0xE5, 0xE8, 0x64}, 2880))); // 2.5, II, 160 kbit/s, 8000 Hz
}

TEST_F(MpegChainTest, AnOpenBitRateIsFollowedToTheNextHeader) {
    EXPECT_TRUE(Has(Frames({0xFF, 0xFB, 0x00, 0x64}, 500)));
}

TEST_F(MpegChainTest, OneBreakInTheChainIsOneTooMany) {
    EXPECT_FALSE(Has(Joined({Frames({0xFF, 0xFB, 0x90, 0x64}, 417, 2), FakeAudio(2000)})));
    EXPECT_FALSE(Has(Frames({0xFF, 0xFB, 0x90, 0x64}, 416)));
    // The second frame has another sample rate: 144 * 128000 / 48000 is 384.
    EXPECT_FALSE(Has(Joined({Frames({0xFF, 0xFB, 0x90, 0x64}, 417, 1),
                             Frames({0xFF, 0xFB, 0x94, 0x64}, 384, 1), FakeAudio(900)})));
    EXPECT_FALSE(Has({}));
    EXPECT_FALSE(Has(FakeAudio(5000)));
    EXPECT_FALSE(Has(TagBytes(5000, 0xFF)));
}

TEST_F(MpegChainTest, AShortSoundNeedsTwoFrames) {
    EXPECT_TRUE(Has(MpegAudio(2)));
    EXPECT_TRUE(Has(Joined({MpegAudio(2), Id3v1Trailer("", "", "", "", 0)})));
    EXPECT_FALSE(Has(MpegAudio(1)));
}

TEST_F(MpegChainTest, TagsZerosAndTheRestOfAFrameArePassedOver) {
    EXPECT_TRUE(Has(Joined({TagOf(3, Zeros(20)), MpegAudio(3)}), 30));
    EXPECT_TRUE(Has(Joined({TagOf(3, Zeros(20)), TagOf(4, FakeAudio(9)), MpegAudio(3)})));
    EXPECT_TRUE(Has(Joined({Zeros(200'000), MpegAudio(3)})));
    EXPECT_TRUE(Has(Joined({FakeAudio(2881), MpegAudio(3)})));
    EXPECT_FALSE(Has(Joined({FakeAudio(2882), MpegAudio(3)})));
    // A header of 32 bytes whose size, little-endian, counts the items and the footer behind it.
    EXPECT_TRUE(Has(Joined({Ascii("APETAGEX"),
                            {0xD0, 7, 0, 0},
                            {40, 0, 0, 0},
                            Zeros(16),
                            FakeAudio(40),
                            MpegAudio(3)})));
}

TEST_F(MpegChainTest, AFileOfAnotherKindIsKnownByItsFirstBytes) {
    for (char const* mark : {"RIFF", "FORM", "OggS", "fLaC", "PK\3\4",
                             "\x7F"
                             "ELF",
                             "#!/bin/sh"}) {
        EXPECT_FALSE(Has(Joined({Ascii(mark), FakeAudio(40), MpegAudio(3)}))) << mark;
    }
    EXPECT_FALSE(Has(Joined({{0x00, 0x00, 0x01, 0xBA}, FakeAudio(40), MpegAudio(3)})));
    EXPECT_FALSE(Has(Joined({Zeros(100), {32}, Ascii("ftypM4A "), MpegAudio(3)})));
    EXPECT_FALSE(Has(Joined({TagOf(3, Zeros(20)), Ascii("RIFF"), FakeAudio(40), MpegAudio(3)})));
    for (char const* box : {"ftyp", "free", "moov", "mdat", "wide"}) {
        EXPECT_FALSE(Has(Joined({{0, 0, 1, 0}, Ascii(box), FakeAudio(40), MpegAudio(3)}))) << box;
        EXPECT_FALSE(Has(Joined({{1, 1, 1, 1}, Ascii(box), FakeAudio(40), MpegAudio(3)}))) << box;
    }
}

TEST_F(MpegChainTest, AnArchiveOrAPageWithASongInItIsNoSong) {
    // A tape archive's first block: the name, zeros, and its mark at byte 257 of 512.
    TagBytes archive = Joined({Ascii("song.mp3"), Zeros(249), Ascii("ustar"), Zeros(250)});
    ASSERT_EQ(archive.size(), 512U);
    for (TagBytes const& start :
         {archive, Ascii("070701000B5A"), Ascii("<!DOCTYPE html>"), Ascii("From: a@b"),
          Joined({Zeros(32768), {1}, Ascii("CD001")}), TagBytes{0x28, 0xB5, 0x2F, 0xFD}}) {
        EXPECT_FALSE(Has(Joined({start, MpegAudio(4)})));
        EXPECT_TRUE(HasOther(Joined({start, FakeAudio(9000), MpegAudio(4)})));
        EXPECT_TRUE(HasOther(Joined({TagOf(3, Zeros(20)), start, MpegAudio(4)})));
    }
    EXPECT_FALSE(HasOther(MpegAudio(4)));
    EXPECT_FALSE(HasOther(Joined({TagOf(3, Zeros(20)), Zeros(3000), MpegAudio(4)})));
    EXPECT_FALSE(HasOther(FakeAudio(9000)));
    EXPECT_FALSE(HasOther({}));
}

TEST_F(MpegChainTest, TagsThatPointPastTheEndEndTheSearch) {
    EXPECT_FALSE(Has(Joined({TagHeader(3, 0x7FFFFFF), MpegAudio(3)})));
    EXPECT_FALSE(Has(MpegAudio(3), 1'000'000));
}

} // namespace
