// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/PcmReader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {

constexpr std::array<float, 3> kSamples{0.5f, -0.25f, 1.0f};

std::vector<std::uint8_t> SampleBytes() {
    std::vector<std::uint8_t> bytes(sizeof(kSamples));
    std::memcpy(bytes.data(), kSamples.data(), sizeof(kSamples));
    return bytes;
}

std::vector<std::uint8_t> Load(std::int64_t offset, std::uint32_t count) {
    CPcmReader reader(kSamples.data(), 3);
    std::vector<std::uint8_t> bytes(count, std::uint8_t{0xEE});
    EXPECT_EQ(reader.LoadPcm(bytes.data(), offset, count), kStatusOk);
    return bytes;
}

} // namespace

TEST(PcmReaderTest, TellsValidityRateAndLengths) {
    CPcmReader reader(kSamples.data(), 3);
    std::uint32_t rate = 0;
    std::int64_t bytes = 0;
    std::int64_t count = 0;
    EXPECT_EQ(reader.IsValid(), kStatusOk);
    EXPECT_EQ(reader.GetSampleRate(&rate), kStatusOk);
    EXPECT_EQ(reader.GetStreamLength(&bytes), kStatusOk);
    EXPECT_EQ(reader.GetSampleCount(&count), kStatusOk);
    EXPECT_EQ(rate, 44100U);
    EXPECT_EQ(bytes, 12);
    EXPECT_EQ(count, 3);
}

TEST(PcmReaderTest, LoadsPlainBytes) {
    std::vector<std::uint8_t> const bytes = SampleBytes();
    EXPECT_EQ(Load(0, 12), bytes);
    EXPECT_EQ(Load(3, 6), std::vector<std::uint8_t>(bytes.begin() + 3, bytes.begin() + 9));
    EXPECT_TRUE(Load(5, 0).empty());
}

TEST(PcmReaderTest, BytesPastTheEndAreZero) {
    std::vector<std::uint8_t> expected = SampleBytes();
    expected.erase(expected.begin(), expected.begin() + 10);
    expected.resize(7, std::uint8_t{0});
    EXPECT_EQ(Load(10, 7), expected);
    EXPECT_THAT(Load(12, 5), testing::Each(0));
    EXPECT_THAT(Load(std::numeric_limits<std::int64_t>::max(), 5), testing::Each(0));
}

TEST(PcmReaderTest, BytesBeforeTheStartAreZero) {
    std::vector<std::uint8_t> const bytes = SampleBytes();
    std::vector<std::uint8_t> const expected{0, 0, bytes[0], bytes[1]};
    EXPECT_EQ(Load(-2, 4), expected);
    EXPECT_THAT(Load(-4, 4), testing::Each(0));
    EXPECT_THAT(Load(std::numeric_limits<std::int64_t>::min(), 4), testing::Each(0));
}

TEST(PcmReaderTest, AnEmptyBufferReadsAsZeros) {
    CPcmReader reader(nullptr, 0);
    std::array<std::uint8_t, 4> bytes{1, 2, 3, 4};
    EXPECT_EQ(reader.LoadPcm(bytes.data(), 0, 4), kStatusOk);
    EXPECT_THAT(bytes, testing::Each(0));
}

TEST(PcmReaderTest, StreamLengthIsA32BitProduct) {
    // 2^30 + 1 samples are 2^32 + 4 bytes, of which 32 bits hold 4.
    CPcmReader reader(nullptr, 1073741825);
    std::int64_t bytes = 0;
    EXPECT_EQ(reader.GetStreamLength(&bytes), kStatusOk);
    EXPECT_EQ(bytes, 4);
    // -1 sample: 2^32 - 4 bytes, and a count of -1.
    CPcmReader negative(nullptr, -1);
    std::int64_t count = 0;
    EXPECT_EQ(negative.GetStreamLength(&bytes), kStatusOk);
    EXPECT_EQ(bytes, 4294967292);
    EXPECT_EQ(negative.GetSampleCount(&count), kStatusOk);
    EXPECT_EQ(count, -1);
}

TEST(PcmReaderTest, FormatOutputsAreOptional) {
    CPcmReader reader(kSamples.data(), 3);
    std::uint32_t bitRate = 0;
    EXPECT_EQ(reader.GetFormatInfo(nullptr, &bitRate), kStatusOk);
    EXPECT_EQ(bitRate, 1411200U); // 44100 samples of 4 bytes of 8 bits
    std::array<std::uint8_t, kFormatRecordBytes> record{};
    EXPECT_EQ(reader.GetFormatInfo(record.data(), nullptr), kStatusOk);
    EXPECT_EQ(record[2] + record[3], 1);
}

TEST(PcmReaderTest, PinsFormatRecord) {
    // Field by field in the machine's byte order.
    std::vector<std::uint8_t> expected;
    auto const put16 = [&](std::uint16_t value) {
        std::array<std::uint8_t, 2> bytes{};
        std::memcpy(bytes.data(), &value, 2);
        expected.insert(expected.end(), bytes.begin(), bytes.end());
    };
    auto const put32 = [&](std::uint32_t value) {
        std::array<std::uint8_t, 4> bytes{};
        std::memcpy(bytes.data(), &value, 4);
        expected.insert(expected.end(), bytes.begin(), bytes.end());
    };
    put16(3);      // 0: IEEE float
    put16(1);      // 2: channels
    put32(44100);  // 4: samples per second
    put32(176400); // 8: bytes per second
    put16(4);      // 12: block align
    put16(32);     // 14: bits per sample
    put16(44);     // 16: the whole record's size
    put16(0);      // 18: padding
    put16(32);     // 20: valid bits
    put16(0);      // 22: padding
    put32(0);      // 24: channel mask
    for (int const byte : {0x00, 0x00, 0x00, 0x06, 0x00, 0x00, 0x00, 0x10, 0x80, 0x00, 0x00, 0xAA,
                           0x00, 0x38, 0x9B, 0x71}) {
        expected.push_back(static_cast<std::uint8_t>(byte)); // 28: sub-format
    }
    CPcmReader reader(kSamples.data(), 3);
    std::vector<std::uint8_t> record(kFormatRecordBytes, std::uint8_t{0xEE});
    EXPECT_EQ(reader.GetFormatInfo(record.data(), nullptr), kStatusOk);
    EXPECT_EQ(record, expected);
}
