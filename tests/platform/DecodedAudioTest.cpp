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
    EXPECT_EQ(TakeSamples(m_buffer, 5, 3, m_audio), EDecodeProblem::None);
    EXPECT_THAT(m_audio.Samples(), ElementsAre(1.0f, 1.0f, 1.0f, 0.0f, 0.0f));
    EXPECT_EQ(m_buffer.GetCount(), 0);

    CSampleBuffer longer;
    ASSERT_TRUE(longer.Append(std::vector<std::int16_t>{32767, 0, 32767}));
    EXPECT_EQ(TakeSamples(longer, 2, 3, m_audio), EDecodeProblem::None);
    EXPECT_THAT(m_audio.Samples(), ElementsAre(1.0f, 0.0f));
}

TEST_F(TakeSamplesTest, WhatLiesPastTheMusicBecomesZero) {
    EXPECT_EQ(TakeSamples(m_buffer, 3, 1, m_audio), EDecodeProblem::None);
    EXPECT_THAT(m_audio.Samples(), ElementsAre(1.0f, 0.0f, 0.0f));
}

TEST_F(TakeSamplesTest, NoFramesAndTooManyAreReasons) {
    EXPECT_EQ(TakeSamples(m_buffer, 0, 3, m_audio), EDecodeProblem::NoAudio);
    EXPECT_EQ(TakeSamples(m_buffer, 0x80000000, 3, m_audio), EDecodeProblem::TooLong);
    EXPECT_EQ(m_audio.m_nCount, 0);
}

/// A buffer of `blocks` blocks of 100,000 samples 0, 1, ..., 29999, 0, 1, ...
CSampleBuffer MakeRamp(std::size_t blocks) {
    CSampleBuffer buffer;
    std::vector<std::int16_t> block(100'000);
    for (std::size_t i = 0; i < block.size(); ++i) {
        block[i] = static_cast<std::int16_t>(i % 30'000);
    }
    for (std::size_t i = 0; i < blocks; ++i) {
        EXPECT_TRUE(buffer.Append(block));
    }
    return buffer;
}

float RampAt(std::size_t i) {
    return static_cast<float>(i % 100'000 % 30'000) / 32767.0f;
}

TEST(SampleBufferTest, GrowsAndKeepsItsSamples) {
    constexpr std::size_t kBlocks = 340; // 136 MB: beyond two steps of 64 MiB
    CSampleBuffer buffer = MakeRamp(kBlocks);
    ASSERT_EQ(buffer.GetCount(), 34'000'000);
    CSamplePtr const samples = buffer.Release();
    for (std::size_t i = 0; i < kBlocks * 100'000; i += 997) {
        ASSERT_EQ(samples[i], RampAt(i));
    }
    EXPECT_EQ(buffer.GetCount(), 0);
}

TEST(SampleBufferTest, ReleasedBufferStartsAnew) {
    CSampleBuffer buffer = MakeRamp(1);
    CSamplePtr const first = buffer.Release();
    ASSERT_TRUE(buffer.Append(std::vector<std::int16_t>{32767}));
    CSamplePtr const second = buffer.Release();
    EXPECT_NE(first, second);
    EXPECT_EQ(first[1], RampAt(1));
    EXPECT_EQ(second[0], 1.0f);
}

TEST(SampleBufferTest, GivesBackTheStartAndKeepsTheRest) {
    CSampleBuffer buffer = MakeRamp(30);
    CSamplePtr const samples = buffer.Release();
    GiveBackSamples(samples, 524'287); // less than a large page of 2 MiB: all stay
    EXPECT_EQ(samples[1], RampAt(1));
    GiveBackSamples(samples, 1'100'000); // two of them, 1,048,576 samples
    EXPECT_EQ(samples[1], 0.0f);         // memory that is new again
    EXPECT_EQ(samples[1'048'575], 0.0f);
    for (std::size_t i = 1'048'576; i < 3'000'000; i += 997) {
        ASSERT_EQ(samples[i], RampAt(i));
    }
}

TEST(SampleBufferTest, GivingBackNothingIsNothing) {
    GiveBackSamples(nullptr, 1'000'000);
    CSampleBuffer buffer = MakeRamp(1);
    CSamplePtr const samples = buffer.Release();
    GiveBackSamples(samples, 0);
    EXPECT_EQ(samples[29'999], RampAt(29'999));
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
