// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/WavHeader.h"

#include "platform/SourceFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using namespace std::string_literals;

/// "fmt ": 16 bytes: PCM, two channels, 44100 Hz, 176400 bytes a second, 4 bytes a frame, 16 bits.
std::string const kFormat = "fmt \x10\0\0\0\x01\0\x02\0\x44\xAC\0\0\x10\xB1\x02\0\x04\0\x10\0"s;

std::int64_t Claimed(std::string const& bytes) {
    CTempFolder const folder;
    WriteText(folder / "a.wav", bytes);
    CSourceFile source;
    EXPECT_EQ(source.Open(folder / "a.wav"), EDecodeProblem::None);
    return ClaimedWavFrames(source);
}

} // namespace

TEST(WavHeaderTest, SizeOfTheDataByTheSizeOfAFrame) {
    // 0x100 bytes of 4 a frame; how many there are doesn't matter.
    EXPECT_EQ(Claimed("RIFF\0\0\0\0WAVE"s + kFormat + "data\0\x01\0\0"s), 64);
}

TEST(WavHeaderTest, ChunksOfOddSizeArePadded) {
    EXPECT_EQ(Claimed("RIFF\0\0\0\0WAVE"s + "LIST\x03\0\0\0abc\0"s + kFormat + "data\x08\0\0\0"s),
              2);
}

TEST(WavHeaderTest, OtherFilesClaimNothing) {
    EXPECT_EQ(Claimed("RIFF"), 0);
    EXPECT_EQ(Claimed("RIFF\0\0\0\0AVI "s + kFormat + "data\x08\0\0\0"s), 0);
    EXPECT_EQ(Claimed("RIFF\0\0\0\0WAVE"s + "data\x08\0\0\0"s), 0);
    EXPECT_EQ(Claimed("RIFF\0\0\0\0WAVE"s + kFormat), 0);
}
