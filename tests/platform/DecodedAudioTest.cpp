// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/DecodedAudio.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace {

using testing::ElementsAre;

TEST(DecodedAudioTest, PinsLengthIsTheLowHalfOfTheFrameCount) {
    EXPECT_EQ(SampleCountOf(0), 0);
    EXPECT_EQ(SampleCountOf(91'875), 91'875);
    EXPECT_EQ(SampleCountOf(0x7FFFFFFF), 0x7FFFFFFF);
    EXPECT_EQ(SampleCountOf(0x80000000), std::nullopt);
    EXPECT_EQ(SampleCountOf(0xFFFFFFFF), std::nullopt);
    EXPECT_EQ(SampleCountOf(0x100000000 + 1000), 1000);
}

class TakeSamplesTest : public testing::Test {
protected:
    /// 3 samples of 1.
    TakeSamplesTest() {
        EXPECT_TRUE(m_buffer.Append(std::vector<std::int16_t>{32767, 32767, 32767}));
    }

    CSampleBuffer m_buffer;
    CDecodedAudio m_audio;
};

TEST_F(TakeSamplesTest, BufferIsCutOrFilled) {
    EXPECT_EQ(TakeSamples(m_buffer, 5, 3, m_audio), "");
    EXPECT_THAT(m_audio.Samples(), ElementsAre(1.0f, 1.0f, 1.0f, 0.0f, 0.0f));
    EXPECT_EQ(m_buffer.GetCount(), 0);

    CSampleBuffer longer;
    ASSERT_TRUE(longer.Append(std::vector<std::int16_t>{32767, 0, 32767}));
    EXPECT_EQ(TakeSamples(longer, 2, 3, m_audio), "");
    EXPECT_THAT(m_audio.Samples(), ElementsAre(1.0f, 0.0f));
}

TEST_F(TakeSamplesTest, WhatLiesPastTheMusicBecomesZero) {
    EXPECT_EQ(TakeSamples(m_buffer, 3, 1, m_audio), "");
    EXPECT_THAT(m_audio.Samples(), ElementsAre(1.0f, 0.0f, 0.0f));
}

TEST_F(TakeSamplesTest, NoFramesAndTooManyAreReasons) {
    EXPECT_EQ(TakeSamples(m_buffer, 0, 3, m_audio), "holds no audio");
    EXPECT_EQ(TakeSamples(m_buffer, 0x80000000, 3, m_audio), "is too long");
    EXPECT_EQ(m_audio.m_nCount, 0);
}

TEST(SampleBufferTest, GrowsAndKeepsItsSamples) {
    CSampleBuffer buffer;
    std::vector<std::int16_t> block(100'000);
    for (std::size_t i = 0; i < block.size(); ++i) {
        block[i] = static_cast<std::int16_t>(i % 30'000);
    }
    constexpr std::size_t kBlocks = 30; // beyond the first capacity, twice over
    for (std::size_t i = 0; i < kBlocks; ++i) {
        ASSERT_TRUE(buffer.Append(block));
    }
    ASSERT_EQ(buffer.GetCount(), static_cast<std::int32_t>(kBlocks * block.size()));
    CSamplePtr const samples = buffer.Release();
    for (std::size_t i = 0; i < kBlocks * block.size(); i += 997) {
        ASSERT_EQ(samples[i], static_cast<float>(block[i % block.size()]) / 32767.0f);
    }
    EXPECT_EQ(buffer.GetCount(), 0);
}

TEST(SampleBufferTest, CountMayBeSetToNothing) {
    CSampleBuffer buffer;
    EXPECT_TRUE(buffer.SetCount(0));
    EXPECT_TRUE(buffer.SetCount(2));
    EXPECT_EQ(buffer.GetCount(), 2);
    EXPECT_TRUE(buffer.SetCount(0));
    EXPECT_EQ(buffer.Release(), nullptr);
}

} // namespace
