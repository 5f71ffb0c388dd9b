// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/MpegCount.h"

#include "support/TempFolder.h"

#include <gtest/gtest.h>
#include <string>

namespace {

constexpr std::int64_t kTagBytes = 10 + 300;

/// A frame of MPEG-1 at 128 kbit/s and 44100 Hz: 417 bytes, 418 with the padding.
std::string Frame(bool isPadded = false) {
    return std::string("\xFF\xFB") + (isPadded ? '\x92' : '\x90') +
           std::string(isPadded ? 415 : 414, '\x11');
}

std::string Frames(int count) {
    std::string frames;
    for (int i = 0; i < count; ++i) {
        frames += Frame(i % 3 == 0);
    }
    return frames;
}

/// An ID3v2 tag of 300 bytes: 2 x 128 + 44.
std::string Tag() {
    return std::string("ID3\x04\0\0\0\0\x02\x2C", 10) + std::string(300, '\0');
}

/// A frame with an encoder's note: so many frames, 576 samples added before, 1681 behind.
std::string Note(char frames) {
    std::string note = std::string("\xFF\xFB\x90\0", 4) + std::string(32, '\0') + "Info" +
                       std::string("\0\0\0\x01\0\0\0", 7) + frames + "LAME3.100" +
                       std::string(12, '\0') + std::string("\x24\x06\x91", 3);
    return note + std::string(417 - note.size(), '\0');
}

class MpegCountTest : public testing::Test {
protected:
    std::optional<std::int64_t> Count(std::string const& bytes, std::int64_t start) {
        WriteText(m_folder / "x.mp3", bytes);
        CSourceFile file;
        EXPECT_EQ(file.Open(m_folder / "x.mp3"), EDecodeProblem::None);
        return CountMpegSamples(file, start, m_watch);
    }

    CTempFolder m_folder;
    CCancelFlag m_cancel;
    CDecodeWatch m_watch{&m_cancel, std::chrono::minutes(1)};
};

} // namespace

TEST_F(MpegCountTest, EveryFrameIs1152Samples) {
    EXPECT_EQ(Count(Frames(200), 0), 200 * 1152); // more than a block
    EXPECT_EQ(Count(Tag() + Frames(20), kTagBytes), 20 * 1152);
    EXPECT_EQ(Count(Tag() + Tag() + Frames(20), 2 * kTagBytes), 20 * 1152);
}

TEST_F(MpegCountTest, LaterVersionsHaveHalfAsMany) {
    // MPEG-2, 64 kbit/s, 22050 Hz: 208 bytes.
    std::string const frame = std::string("\xFF\xF3\x80") + std::string(205, '\x11');
    std::string frames;
    for (int i = 0; i < 10; ++i) {
        frames += frame;
    }
    EXPECT_EQ(Count(frames, 0), 10 * 576);
}

TEST_F(MpegCountTest, WhatTheEncoderAddedIsLeftOut) {
    std::int64_t const start = kTagBytes + 417;
    // 1105 samples of delay; 1681 - 529 of padding.
    EXPECT_EQ(Count(Tag() + Note(20) + Frames(20), start), 20 * 1152 - 1105 - 1152);
    // Without the number of frames nobody knows where the padding begins.
    EXPECT_EQ(Count(Tag() + Note(0) + Frames(20), start), 20 * 1152 - 1105);
}

TEST_F(MpegCountTest, ANumberOfFramesThatIsWrongIsADoubt) {
    std::int64_t const start = kTagBytes + 417;
    EXPECT_EQ(Count(Tag() + Note(21) + Frames(20), start), std::nullopt);
    EXPECT_EQ(Count(Tag() + Note(19) + Frames(20), start), std::nullopt);
}

TEST_F(MpegCountTest, ATailWithoutFramesCountsForNothing) {
    for (std::string const& tail : {"TAG" + std::string(125, ' '), std::string(70'000, '\0'),
                                    std::string("\xFF"), std::string("\xFF\xDF\x90\x00\xFF")}) {
        EXPECT_EQ(Count(Frames(20) + tail, 0), 20 * 1152) << tail.size();
    }
}

TEST_F(MpegCountTest, ATailWithASyncInItIsADoubt) {
    for (std::size_t const place : {3U, 65'534U, 65'535U, 69'998U}) { // 65,535: in two blocks
        std::string tail(70'000, '\0');
        tail.replace(place, 2, "\xFF\xE0");
        EXPECT_EQ(Count(Frames(20) + tail, 0), std::nullopt) << place;
    }
}

TEST_F(MpegCountTest, AnythingUnusualIsADoubt) {
    std::string const music = Frames(20);
    EXPECT_EQ(Count(music.substr(0, music.size() - 1), 0), std::nullopt);              // cut short
    EXPECT_EQ(Count(music + "some bytes" + music, 0), std::nullopt);                   // joined
    std::string const slower = std::string("\xFF\xFB\x94") + std::string(381, '\x11'); // 48000 Hz
    EXPECT_EQ(Count(music + slower + music, 0), std::nullopt);
    EXPECT_EQ(Count(std::string("\xFF\xFB\x00", 3) + music, 0), std::nullopt); // free format
    EXPECT_EQ(Count("junk" + music, 4), std::nullopt);
    EXPECT_EQ(Count(Frames(7), 0), std::nullopt); // too few
    EXPECT_EQ(Count(music, std::ssize(music)), std::nullopt);
    EXPECT_EQ(Count(music, std::ssize(music) + 100), std::nullopt);
}

TEST_F(MpegCountTest, TheFileStaysWhereItWas) {
    WriteText(m_folder / "x.mp3", Frames(20));
    CSourceFile file;
    ASSERT_EQ(file.Open(m_folder / "x.mp3"), EDecodeProblem::None);
    ASSERT_EQ(file.Seek(417), 417);
    EXPECT_EQ(CountMpegSamples(file, 0, m_watch), 20 * 1152);
    std::uint8_t byte = 0;
    EXPECT_EQ(file.Read(&byte, 1), 1);
    EXPECT_EQ(byte, 0x11);
}

TEST_F(MpegCountTest, ACancelEndsIt) {
    m_cancel.Set();
    EXPECT_EQ(Count(Frames(20), 0), std::nullopt);
}
