// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/EncoderNote.h"

#include <gtest/gtest.h>
#include <string>

namespace {

/// A frame's first bytes: header, side information and a note.
std::string FrameWith(std::size_t sideBytes, std::string const& note) {
    return std::string("\xFF\xFB\x90\x00", 4) + std::string(sideBytes, '\0') + note;
}

/// Number of frames, then all that comes before what was added, then 576 and 1700 samples.
std::string NoteOf(std::string const& encoder) {
    return std::string("Info") + std::string("\0\0\0\x0F", 4) // all four are announced
           + std::string("\0\0\x27\x10", 4)                   // 10,000 frames
           + std::string(4 + 100 + 4, '\x01')                 // bytes, places, quality
           + encoder                                          // 9 bytes
           + std::string(12, '\x02')                          // LAME's other fields
           + std::string("\x24\x06\xA4", 3);                  // 0x240 and 0x6A4
}

CEncoderNote Read(std::string const& bytes, CMpegFrame const& frame = {.m_nSamples = 1152}) {
    return EncoderNoteIn({reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size()},
                         frame);
}

TEST(EncoderNoteTest, TellsFramesDelayAndPadding) {
    CEncoderNote const note = Read(FrameWith(32, NoteOf("LAME3.100")));
    EXPECT_EQ(note.m_nFrames, 10'000);
    EXPECT_EQ(note.m_nDelay, 576 + 529);    // the decoder lags by 529
    EXPECT_EQ(note.m_nPadding, 1700 - 529); // of which the last frame holds as many back
}

TEST(EncoderNoteTest, LiesWhereVersionAndChannelsPutIt) {
    std::string const note = NoteOf("Lavc59.37");
    EXPECT_EQ(Read(FrameWith(17, note), {.m_nSamples = 1152, .m_bMono = true}).m_nFrames, 10'000);
    EXPECT_EQ(Read(FrameWith(17, note), {.m_nSamples = 576}).m_nFrames, 10'000);
    EXPECT_EQ(Read(FrameWith(9, note), {.m_nSamples = 576, .m_bMono = true}).m_nFrames, 10'000);
    EXPECT_EQ(Read(FrameWith(17, note)).m_nFrames, 0);
}

TEST(EncoderNoteTest, OnlyWhatIsAnnouncedIsThere) {
    std::string const note = std::string("Xing") + std::string("\0\0\0\0", 4) + "LAME3.100" +
                             std::string(12, '\x02') + std::string("\x24\x00\x64", 3);
    EXPECT_EQ(Read(FrameWith(32, note)).m_nFrames, 0);
    EXPECT_EQ(Read(FrameWith(32, note)).m_nDelay, 576 + 529);
    EXPECT_EQ(Read(FrameWith(32, note)).m_nPadding, 0); // 100 samples are less than the lag
}

TEST(EncoderNoteTest, OtherEncodersAddNothingThatIsDropped) {
    CEncoderNote const note = Read(FrameWith(32, NoteOf("GOGO3.137")));
    EXPECT_EQ(note.m_nFrames, 10'000);
    EXPECT_EQ(note.m_nDelay, 0);
    EXPECT_EQ(note.m_nPadding, 0);
}

TEST(EncoderNoteTest, ANoteThatBreaksOffSaysNoMore) {
    std::string const whole = FrameWith(32, NoteOf("LAME3.100"));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(Read(whole.substr(0, size)).m_nDelay, 0) << size;
    }
    EXPECT_EQ(Read(FrameWith(32, "VBRI")).m_nFrames, 0);
}

} // namespace
