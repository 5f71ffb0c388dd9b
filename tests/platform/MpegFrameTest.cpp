// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/MpegFrame.h"

#include <array>
#include <gtest/gtest.h>

namespace {

std::optional<std::size_t> BytesOf(std::array<std::uint8_t, 4> const& header) {
    auto const frame = MpegFrameOf(header);
    return frame ? std::optional(frame->m_nBytes) : std::nullopt;
}

TEST(MpegFrameTest, LengthComesFromBitRateAndSampleRate) {
    // MPEG-1 layer III, 128 kbit/s, 44100 Hz: 144 x 128000 / 44100 = 417.9.
    EXPECT_EQ(BytesOf({0xFF, 0xFB, 0x90, 0x00}), 417U);
    EXPECT_EQ(BytesOf({0xFF, 0xFB, 0x92, 0x00}), 418U); // with the padding byte
    // 320 kbit/s, 48000 Hz: 144 x 320000 / 48000 = 960.
    EXPECT_EQ(BytesOf({0xFF, 0xFB, 0xE4, 0x00}), 960U);
    // MPEG-2, 64 kbit/s, 22050 Hz: 72 x 64000 / 22050 = 208.9.
    EXPECT_EQ(BytesOf({0xFF, 0xF3, 0x80, 0x00}), 208U);
    // MPEG-2.5, 8 kbit/s, 8000 Hz: 72 x 8000 / 8000 = 72.
    EXPECT_EQ(BytesOf({0xFF, 0xE3, 0x18, 0x00}), 72U);
}

TEST(MpegFrameTest, VersionAndChannelModeTellTheRest) {
    auto const first = MpegFrameOf(std::array<std::uint8_t, 4>{0xFF, 0xFB, 0x90, 0x40});
    ASSERT_TRUE(first); // MPEG-1, joint stereo
    EXPECT_EQ(first->m_nSamples, 1152U);
    EXPECT_EQ(first->m_nSampleRate, 44100U);
    EXPECT_FALSE(first->m_bMono);
    auto const second = MpegFrameOf(std::array<std::uint8_t, 4>{0xFF, 0xF3, 0x84, 0xC0});
    ASSERT_TRUE(second); // MPEG-2, 24000 Hz, one channel
    EXPECT_EQ(second->m_nSamples, 576U);
    EXPECT_EQ(second->m_nSampleRate, 24000U);
    EXPECT_TRUE(second->m_bMono);
}

TEST(MpegFrameTest, OtherBytesHaveNoLength) {
    EXPECT_EQ(BytesOf({'T', 'A', 'G', ' '}), std::nullopt);
    EXPECT_EQ(BytesOf({0xFF, 0x1B, 0x90, 0x00}), std::nullopt); // no sync
    EXPECT_EQ(BytesOf({0xFF, 0xEB, 0x90, 0x00}), std::nullopt); // reserved version
    EXPECT_EQ(BytesOf({0xFF, 0xFD, 0x90, 0x00}), std::nullopt); // layer II
    EXPECT_EQ(BytesOf({0xFF, 0xFB, 0x00, 0x00}), std::nullopt); // free bit rate
    EXPECT_EQ(BytesOf({0xFF, 0xFB, 0xF0, 0x00}), std::nullopt); // bad bit rate
    EXPECT_EQ(BytesOf({0xFF, 0xFB, 0x9C, 0x00}), std::nullopt); // reserved sample rate
    EXPECT_FALSE(MpegFrameOf({}));
}

} // namespace
