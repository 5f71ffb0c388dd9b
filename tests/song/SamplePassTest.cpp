// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SamplePass.h"

#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr std::int32_t kCount = 3'000'000; // 12 MB
constexpr std::uint32_t kChunkBytes = 24'576;

/// Sample i is (i mod 1000 + 1) / 32767, never 0.
class SamplePassTest : public testing::Test {
protected:
    SamplePassTest() {
        std::vector<std::int16_t> pcm(kCount);
        for (std::size_t i = 0; i < pcm.size(); ++i) {
            pcm[i] = static_cast<std::int16_t>(i % 1000 + 1);
        }
        CSampleBuffer buffer;
        EXPECT_TRUE(buffer.Append(pcm));
        EXPECT_EQ(TakeSamples(buffer, kCount, kCount, m_audio), EDecodeProblem::None);
    }

    static float SampleAt(std::int64_t i) { return static_cast<float>(i % 1000 + 1) / 32767.0f; }

    CDecodedAudio m_audio;
};

TEST_F(SamplePassTest, GivesEverySampleOnceAndZerosBehind) {
    CSamplePass pass(m_audio);
    std::array<float, kChunkBytes / sizeof(float)> chunk{};
    std::int64_t sample = 0;
    // One chunk more than there is: 489 chunks of 6144 samples are 3,004,416.
    for (std::int64_t offset = 0; offset < 490 * kChunkBytes; offset += kChunkBytes) {
        ASSERT_EQ(pass.LoadPcm(reinterpret_cast<std::uint8_t*>(chunk.data()), offset, kChunkBytes),
                  kStatusOk);
        for (float const value : chunk) {
            ASSERT_EQ(value, sample < kCount ? SampleAt(sample) : 0.0f) << sample;
            ++sample;
        }
    }
}

TEST_F(SamplePassTest, GivesBackWhatWasReadAndNoMore) {
    CSamplePass pass(m_audio);
    float value = 0.0f;
    auto* const bytes = reinterpret_cast<std::uint8_t*>(&value);
    (void)pass.LoadPcm(bytes, std::int64_t{4} * 1'048'575, 4); // one short of a step
    EXPECT_EQ(m_audio.Samples()[0], SampleAt(0));
    (void)pass.LoadPcm(bytes, std::int64_t{4} * 1'048'576, 4);
    EXPECT_EQ(value, SampleAt(1'048'576));
    EXPECT_EQ(m_audio.Samples()[0], 0.0f); // memory that is new again
    EXPECT_EQ(m_audio.Samples()[1'048'575], 0.0f);
    EXPECT_EQ(m_audio.Samples()[1'048'576], SampleAt(1'048'576));
    EXPECT_EQ(m_audio.Samples()[kCount - 1], SampleAt(kCount - 1));
}

TEST_F(SamplePassTest, TellsWhatAReaderTells) {
    CSamplePass pass(m_audio);
    std::uint32_t rate = 0;
    std::uint32_t bitRate = 0;
    std::int64_t bytes = 0;
    std::int64_t count = 0;
    std::array<std::uint8_t, kFormatRecordBytes> record{};
    EXPECT_EQ(pass.IsValid(), kStatusOk);
    EXPECT_EQ(pass.GetSampleRate(&rate), kStatusOk);
    EXPECT_EQ(pass.GetStreamLength(&bytes), kStatusOk);
    EXPECT_EQ(pass.GetSampleCount(&count), kStatusOk);
    EXPECT_EQ(pass.GetFormatInfo(record.data(), &bitRate), kStatusOk);
    EXPECT_EQ(rate, 44'100U);
    EXPECT_EQ(bytes, 12'000'000);
    EXPECT_EQ(count, kCount);
    EXPECT_EQ(bitRate, 1'411'200U);
    EXPECT_EQ(record[0], 3); // samples are floats
}

TEST(EmptySamplePassTest, HasNothingToGive) {
    CDecodedAudio const audio;
    CSamplePass pass(audio);
    std::array<std::uint8_t, 4> bytes{1, 2, 3, 4};
    EXPECT_EQ(pass.LoadPcm(bytes.data(), 8, 4), kStatusOk);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{}));
}

} // namespace
