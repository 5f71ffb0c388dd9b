// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/TagBytes.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Undone(Bytes bytes) {
    auto length = static_cast<std::uint32_t>(bytes.size());
    RemoveUnsynchronization(bytes.data(), &length);
    bytes.resize(length);
    return bytes;
}

} // namespace

TEST(TagBytesTest, BigEndianGoesBothWays) {
    Bytes bytes = {0x12, 0x34, 0x56, 0xF8};
    EXPECT_EQ(ReadBigEndian(bytes.data()), 0x123456F8U);
    WriteBigEndian(0xFEDCBA98U, bytes.data());
    EXPECT_EQ(bytes, (Bytes{0xFE, 0xDC, 0xBA, 0x98}));
}

TEST(TagBytesTest, SyncsafeHasSevenBitsAByte) {
    Bytes bytes = {0x00, 0x00, 0x01, 0x00};
    EXPECT_EQ(ReadSyncsafe(bytes.data()), 128U);
    bytes = {0x01, 0x02, 0x03, 0x04};
    // 2^21 + 2 * 2^14 + 3 * 2^7 + 4 = 2097152 + 32768 + 384 + 4
    EXPECT_EQ(ReadSyncsafe(bytes.data()), 2130308U);
    WriteSyncsafe(2130308U, bytes.data());
    EXPECT_EQ(bytes, (Bytes{0x01, 0x02, 0x03, 0x04}));
}

TEST(TagBytesTest, PinsSyncsafeReadingDoesNotMask) {
    Bytes const bytes(4, 0xFF);
    // 255 * (2^21 + 2^14 + 2^7 + 1) = 255 * 2113665
    EXPECT_EQ(ReadSyncsafe(bytes.data()), 538984575U);
}

TEST(TagBytesTest, SyncsafeWritingMasks) {
    Bytes bytes(4, 0);
    WriteSyncsafe(0xFFFFFFFFU, bytes.data());
    EXPECT_EQ(bytes, (Bytes{0x7F, 0x7F, 0x7F, 0x7F}));
}

TEST(TagBytesTest, UnsynchronizationGoesInOnePass) {
    EXPECT_EQ(Undone({0xFF, 0x00, 0xE0}), (Bytes{0xFF, 0xE0}));
    EXPECT_EQ(Undone({0xFF, 0x00, 0x00}), (Bytes{0xFF, 0x00}));
    EXPECT_EQ(Undone({0xFF, 0x00, 0xFF, 0x00}), (Bytes{0xFF, 0xFF}));
    EXPECT_EQ(Undone({0xFF, 0xFF, 0x00}), (Bytes{0xFF, 0xFF}));
    EXPECT_EQ(Undone({0x00, 0x01, 0xFF}), (Bytes{0x00, 0x01, 0xFF}));
    EXPECT_EQ(Undone({}), Bytes());
}
