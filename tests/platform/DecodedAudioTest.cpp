// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/DecodedAudio.h"

#include <gtest/gtest.h>

namespace {

TEST(DecodedAudioTest, PinsLengthIsTheLowHalfOfTheFrameCount) {
    EXPECT_EQ(SampleCountOf(0), 0);
    EXPECT_EQ(SampleCountOf(91'875), 91'875);
    EXPECT_EQ(SampleCountOf(0x7FFFFFFF), 0x7FFFFFFF);
    EXPECT_EQ(SampleCountOf(0x80000000), std::nullopt);
    EXPECT_EQ(SampleCountOf(0xFFFFFFFF), std::nullopt);
    EXPECT_EQ(SampleCountOf(0x100000000 + 1000), 1000);
}

} // namespace
