// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/PacketCount.h"

#include <gtest/gtest.h>

namespace {

AVCodecParameters StereoOf16Bits() {
    AVCodecParameters codec{};
    codec.codec_id = AV_CODEC_ID_PCM_S16LE;
    codec.block_align = 4;
    codec.ch_layout.nb_channels = 2;
    return codec;
}

} // namespace

TEST(PacketCountTest, PcmIsCountedByWhatIsThere) {
    AVCodecParameters const codec = StereoOf16Bits();
    EXPECT_EQ(CountPcmFrames(codec, 44, 44 + 400, 100), 100);
    EXPECT_EQ(CountPcmFrames(codec, 44, 44 + 403, 0), 100);             // no whole frame more
    EXPECT_EQ(CountPcmFrames(codec, 44, 44 + 400, 90), 90);             // something else behind it
    EXPECT_EQ(CountPcmFrames(codec, 44, 44 + 400, 1'000'000'000), 100); // a claim
    EXPECT_EQ(CountPcmFrames(codec, 44, 20, 100), 0);
}

TEST(PacketCountTest, OnlyPcmOfWholeFramesIsPlain) {
    AVCodecParameters codec = StereoOf16Bits();
    EXPECT_TRUE(IsPlainPcm(codec));
    codec.block_align = 5; // bytes between the frames
    EXPECT_FALSE(IsPlainPcm(codec));
    codec.block_align = 0;
    EXPECT_FALSE(IsPlainPcm(codec));
    codec.block_align = 4;
    codec.codec_id = AV_CODEC_ID_ADPCM_MS;
    EXPECT_FALSE(IsPlainPcm(codec));
}
