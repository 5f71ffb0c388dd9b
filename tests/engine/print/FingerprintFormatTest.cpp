// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/print/Fingerprint.h"

#include "support/VectorArchive.h"

#include <cstring>
#include <gtest/gtest.h>
#include <vector>

namespace {

using CBytes = std::vector<std::uint8_t>;

CBytes Full(CFingerprint const& print) {
    std::uint32_t size = 0;
    EXPECT_TRUE(print.CopyToMemory(nullptr, &size));
    CBytes bytes(size);
    EXPECT_TRUE(print.CopyToMemory(bytes.data(), &size));
    return bytes;
}

CBytes Compact(CFingerprint const& print) {
    std::uint32_t size = 0;
    EXPECT_TRUE(print.CopyToCompactMemory(nullptr, &size));
    CBytes bytes(size);
    EXPECT_TRUE(print.CopyToCompactMemory(bytes.data(), &size));
    return bytes;
}

bool FromFull(CFingerprint& print, CBytes const& bytes) {
    return print.BuildFromMemory(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

bool FromCompact(CFingerprint& print, CBytes const& bytes) {
    return print.BuildFromCompactMemory(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

/// Values at every fourth sample, with a time and extremes of choice.
void Capture(CFingerprint& print, std::vector<float> const& values, std::int64_t time, float min,
             float max) {
    std::vector<float> data(4 * values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        data[4 * i] = values[i];
    }
    print.CapturePrint(data.data(), static_cast<std::uint32_t>(data.size()), time, min, max);
}

template <typename T>
void Put(CBytes& bytes, T value) {
    CBytes image(sizeof value);
    std::memcpy(image.data(), &value, sizeof value);
    bytes.insert(bytes.end(), image.begin(), image.end());
}

} // namespace

TEST(FingerprintFormatTest, SizesOf128Values) {
    CFingerprint print;
    Capture(print, std::vector<float>(128, 0.5f), 0, 0.0f, 1.0f);
    std::uint32_t size = 0;
    EXPECT_TRUE(print.CopyToMemory(nullptr, &size));
    EXPECT_EQ(size, 521U);
    EXPECT_TRUE(print.CopyToCompactMemory(nullptr, &size));
    EXPECT_EQ(size, 141U);
}

TEST(FingerprintFormatTest, RoomThatIsTooSmallStaysUntouched) {
    CFingerprint print;
    Capture(print, std::vector<float>(128, 0.5f), 0, 0.0f, 1.0f);
    CBytes room(600, 0xEE);
    std::uint32_t size = 520;
    EXPECT_FALSE(print.CopyToMemory(room.data(), &size));
    EXPECT_EQ(size, 520U);
    size = 140;
    EXPECT_FALSE(print.CopyToCompactMemory(room.data(), &size));
    EXPECT_EQ(room, CBytes(600, 0xEE));
    size = 600;
    EXPECT_TRUE(print.CopyToMemory(room.data(), &size));
    EXPECT_EQ(size, 600U) << "the size stays as given";
    EXPECT_EQ(room[520], 0x00);
    EXPECT_EQ(room[521], 0xEE);
}

TEST(FingerprintFormatTest, FullFormIsBigEndian) {
    CFingerprint print;
    Capture(print, {1.0f, -2.0f, 0.15625f}, 0x0102030405060708, 0.0f, 0.0f);
    CBytes const expected{
        0x04,                                           // format
        0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, // time
        0x3F, 0x80, 0x00, 0x00,                         // 1
        0xC0, 0x00, 0x00, 0x00,                         // -2
        0x3E, 0x20, 0x00, 0x00                          // 0.15625 = 1.25 / 8
    };
    EXPECT_EQ(Full(print), expected);
}

TEST(FingerprintFormatTest, FullFormIsReadWhateverItsFormatByte) {
    CBytes const bytes{
        0x00,                                           // format
        0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, // time -2
        0x3F, 0x80, 0x00, 0x00,                         // 1
        0xC0, 0x00, 0x00, 0x00,                         // -2
        0x12, 0x34, 0x56                                // not a whole value
    };
    CFingerprint print;
    ASSERT_TRUE(FromFull(print, bytes));
    EXPECT_EQ(print.GetTime(), -2);
    EXPECT_EQ(print.GetValues(), (std::vector<float>{1.0f, -2.0f}));
    EXPECT_EQ(print.GetMin(), -2.0f);
    EXPECT_EQ(print.GetMax(), 1.0f);
}

TEST(FingerprintFormatTest, FullFormNeedsMoreThanItsHeader) {
    CFingerprint print;
    Capture(print, {1.0f}, 7, 0.0f, 1.0f);
    EXPECT_FALSE(FromFull(print, CBytes(9, 4)));
    EXPECT_FALSE(print.BuildFromMemory(nullptr, 100));
    EXPECT_EQ(print.GetTime(), 7);
    ASSERT_TRUE(FromFull(print, CBytes(10, 0)));
    EXPECT_TRUE(print.GetValues().empty());
    EXPECT_EQ(print.GetTime(), 0);
}

TEST(FingerprintFormatTest, CompactFormIsBigEndian) {
    CFingerprint print;
    Capture(print, {-1.0f, 3.0f, 1.0f, 0.0f}, 0x01020304, -1.0f, 3.0f);
    CBytes const expected{
        0x04,                   // format
        0x01, 0x02, 0x03, 0x04, // time
        0xBF, 0x80, 0x00, 0x00, // minimum -1
        0x40, 0x40, 0x00, 0x00, // maximum 3
        0x00,                   // -1
        0xFF,                   // 3
        0x7F,                   // 1: 2 / 4 * 255 = 127.5
        0x3F                    // 0: 1 / 4 * 255 = 63.75
    };
    EXPECT_EQ(Compact(print), expected);
}

TEST(FingerprintFormatTest, CompactFormIsRead) {
    CBytes const bytes{
        0x05,                   // a format above 3
        0xFF, 0xFF, 0xFF, 0xFE, // time, without a sign
        0xBF, 0x80, 0x00, 0x00, // minimum -1
        0x40, 0x40, 0x00, 0x00, // maximum 3
        0x33, 0x66              // 51 / 255 = 0.2, 102 / 255 = 0.4
    };
    CFingerprint print;
    ASSERT_TRUE(FromCompact(print, bytes));
    EXPECT_EQ(print.GetTime(), 4294967294);
    EXPECT_EQ(print.GetMin(), -1.0f) << "extremes come from the header";
    EXPECT_EQ(print.GetMax(), 3.0f);
    EXPECT_EQ(print.GetValues(), (std::vector<float>{0.2f * 4.0f - 1.0f, 0.4f * 4.0f - 1.0f}));
}

TEST(FingerprintFormatTest, PinsCompactFormKeepsHalfTheTime) {
    CFingerprint print;
    Capture(print, {1.0f}, 0x0000000A23456789, 0.0f, 1.0f);
    CBytes const bytes = Compact(print);
    EXPECT_EQ(CBytes(bytes.begin() + 1, bytes.begin() + 5), (CBytes{0x23, 0x45, 0x67, 0x89}));
    CFingerprint back;
    ASSERT_TRUE(FromCompact(back, bytes));
    EXPECT_EQ(back.GetTime(), 0x23456789);
}

TEST(FingerprintFormatTest, CompactRoundTripKeepsTheExtremes) {
    CFingerprint print;
    Capture(print, {-0.75f, 0.5f, 1.25f}, 0, -0.75f, 1.25f);
    CBytes const bytes = Compact(print);
    EXPECT_EQ(bytes[13], 0);
    EXPECT_EQ(bytes[15], 255);
    CFingerprint back;
    ASSERT_TRUE(FromCompact(back, bytes));
    EXPECT_EQ(back.GetValues()[0], -0.75f);
    EXPECT_EQ(back.GetValues()[2], 1.25f);
    EXPECT_EQ(back.GetMin(), -0.75f);
    EXPECT_EQ(back.GetMax(), 1.25f);
}

TEST(FingerprintFormatTest, CompactMaximumIsRangePlusMinimum) {
    // 2^-25 + 1 rounds to 1 in single precision, so the way back gives 1 - 1 = 0.
    float const tiny = 0x1.0p-25f;
    CFingerprint print;
    Capture(print, {tiny, -1.0f}, 0, -1.0f, tiny);
    CFingerprint back;
    ASSERT_TRUE(FromCompact(back, Compact(print)));
    EXPECT_EQ(back.GetValues()[0], 0.0f);
    EXPECT_EQ(back.GetMax(), tiny);
}

TEST(FingerprintFormatTest, ConstantPrintIsAllZeros) {
    CFingerprint print;
    Capture(print, {0.7f, 0.7f, 0.7f}, 0, 0.7f, 0.7f);
    CBytes const bytes = Compact(print);
    EXPECT_EQ(CBytes(bytes.begin() + 13, bytes.end()), CBytes(3, 0));
}

TEST(FingerprintFormatTest, ValuesOutsideTheExtremesAreHeldToTheBytes) {
    CFingerprint print;
    Capture(print, {5.0f, -5.0f, 1.0e30f}, 0, 0.0f, 1.0f);
    CBytes const bytes = Compact(print);
    EXPECT_EQ(CBytes(bytes.begin() + 13, bytes.end()), (CBytes{255, 0, 255}));
}

TEST(FingerprintFormatTest, CompactFormNeedsAValueAndAFormatAboveThree) {
    CFingerprint print;
    Capture(print, {1.0f}, 7, 0.0f, 1.0f);
    EXPECT_FALSE(FromCompact(print, CBytes(13, 4)));
    EXPECT_FALSE(FromCompact(print, CBytes(100, 3)));
    EXPECT_FALSE(print.BuildFromCompactMemory(nullptr, 100));
    EXPECT_EQ(print.GetTime(), 7) << "unchanged";
    EXPECT_TRUE(FromCompact(print, CBytes(14, 4)));
}

TEST(FingerprintFormatTest, SerializeWritesMemoryImages) {
    CFingerprint print;
    Capture(print, {1.0f, -2.0f}, 1004263, -2.0f, 1.0f);
    CVectorArchive archive;
    print.Serialize(&archive);
    CBytes expected;
    Put(expected, std::uint8_t{4});       // format
    Put(expected, std::int64_t{1004263}); // time
    Put(expected, std::int32_t{2});       // number of values
    Put(expected, 1.0f);
    Put(expected, -2.0f);
    EXPECT_EQ(archive.GetBytes(), expected);
    EXPECT_EQ(expected.size(), 21U);
}

TEST(FingerprintFormatTest, SerializeReadsWhatItWrote) {
    CFingerprint print;
    Capture(print, {0.5f, -0.25f, 0.125f}, 987654321012, -9.0f, 9.0f);
    CVectorArchive archive;
    print.Serialize(&archive);
    CFingerprint back;
    Capture(back, {7.0f, 7.0f}, 1, 0.0f, 0.0f);
    CVectorArchive reader(archive.GetBytes());
    back.Serialize(&reader);
    EXPECT_EQ(back.GetValues(), print.GetValues());
    EXPECT_EQ(back.GetTime(), 987654321012);
    EXPECT_EQ(back.GetMin(), -0.25f) << "extremes are computed anew";
    EXPECT_EQ(back.GetMax(), 0.5f);
}

TEST(FingerprintFormatTest, SerializeReadsNothingOfAnOlderFormat) {
    CBytes bytes;
    Put(bytes, std::uint8_t{3});
    Put(bytes, std::int64_t{5});
    Put(bytes, std::int32_t{1});
    Put(bytes, 8.0f);
    CFingerprint print;
    Capture(print, {0.5f}, 77, -9.0f, 9.0f);
    CVectorArchive reader(bytes);
    print.Serialize(&reader);
    EXPECT_EQ(print.GetValues(), std::vector<float>{0.5f});
    EXPECT_EQ(print.GetTime(), 77);
    EXPECT_EQ(print.GetMin(), 0.0f) << "extremes are computed anew all the same";
    EXPECT_EQ(print.GetMax(), 0.5f);
}

TEST(FingerprintFormatTest, SerializeDoesNotBelieveAnyCount) {
    for (std::int32_t const count : {-1, 0x7FFFFFFF}) {
        CBytes bytes;
        Put(bytes, std::uint8_t{4});
        Put(bytes, std::int64_t{5});
        Put(bytes, count);
        CFingerprint print;
        Capture(print, {0.5f}, 77, 0.0f, 1.0f);
        CVectorArchive reader(bytes);
        print.Serialize(&reader);
        EXPECT_TRUE(print.GetValues().empty()) << count;
        EXPECT_EQ(print.GetTime(), 5);
    }
}

TEST(FingerprintFormatTest, MissingValuesOfAShortArchiveAreZero) {
    CBytes bytes;
    Put(bytes, std::uint8_t{4});
    Put(bytes, std::int64_t{5});
    Put(bytes, std::int32_t{3});
    Put(bytes, 8.0f);
    CFingerprint print;
    CVectorArchive reader(bytes);
    print.Serialize(&reader);
    EXPECT_EQ(print.GetValues(), (std::vector<float>{8.0f, 0.0f, 0.0f}));
}
