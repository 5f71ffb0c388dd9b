// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/DecodeDamage.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <tuple>
#include <vector>

namespace {

/// What a person would be told: bad packets, of how many, and whether it breaks off.
std::tuple<std::int64_t, std::int64_t, bool> Told(CDecodeDamage const& damage) {
    CDecodeReport report;
    damage.Tell(report);
    return {report.m_nBadPackets, report.m_nPackets, report.m_bBreaksOff};
}

/// A packet of `size` bytes that begins like an MPEG frame of 417 bytes.
std::vector<std::uint8_t> Mp3Packet(std::size_t size) {
    std::vector<std::uint8_t> packet = {0xFF, 0xFB, 0x90, 0x00};
    packet.resize(size);
    return packet;
}

TEST(DecodeDamageTest, NothingIsDamagedWithoutPackets) {
    EXPECT_EQ(Told(CDecodeDamage()), std::tuple(0, 0, false));
}

TEST(DecodeDamageTest, CountsWhatCannotBeDecoded) {
    CDecodeDamage damage;
    damage.SetCodec("aac");
    std::vector<std::uint8_t> const packet(10);
    damage.Note(packet, true);
    damage.Note(packet, false);
    damage.Note(packet, true);
    EXPECT_EQ(Told(damage), std::tuple(1, 3, false));
}

TEST(DecodeDamageTest, ForeignBytesCountWithAudioBehindThem) {
    CDecodeDamage damage;
    damage.SetCodec("mp3float");
    std::vector<std::uint8_t> const foreign(100, 'x');
    damage.Note(Mp3Packet(417), true);
    damage.Note(foreign, false);
    EXPECT_EQ(Told(damage), std::tuple(0, 1, false));
    damage.Note(Mp3Packet(417), true);
    EXPECT_EQ(Told(damage), std::tuple(1, 3, false));
}

TEST(DecodeDamageTest, ForeignBytesCountAsManyPacketsAsAudioOfTheirLength) {
    CDecodeDamage damage;
    damage.SetCodec("mp3float");
    damage.Note(Mp3Packet(417), true);
    damage.Note(std::vector<std::uint8_t>(41'700, 'x'), false);
    damage.Note(Mp3Packet(417), true);
    EXPECT_EQ(Told(damage), std::tuple(100, 102, false));
}

TEST(DecodeDamageTest, ForeignPacketsBehindTheLastGoodOneCountOnceTheyAreMore) {
    CDecodeDamage damage;
    damage.SetCodec("mp3float");
    std::vector<std::uint8_t> const foreign(417, 'x');
    damage.Note(Mp3Packet(417), true);
    damage.Note(Mp3Packet(417), true);
    damage.Note(foreign, false);
    damage.Note(foreign, false);
    EXPECT_EQ(Told(damage), std::tuple(0, 2, false));
    damage.Note(foreign, false);
    EXPECT_EQ(Told(damage), std::tuple(3, 5, false));
}

TEST(DecodeDamageTest, AFileOfForeignPacketsAloneIsDamagedAltogether) {
    CDecodeDamage damage;
    damage.SetCodec("mp3float");
    damage.Note(std::vector<std::uint8_t>(100'000, 'x'), false);
    EXPECT_EQ(Told(damage), std::tuple(1, 1, false));
}

TEST(DecodeDamageTest, ShortFrameIsWhereTheFileBreaksOff) {
    CDecodeDamage damage;
    damage.SetCodec("mp3float");
    damage.Note(Mp3Packet(417), true);
    damage.Note(Mp3Packet(416), true);
    EXPECT_EQ(Told(damage), std::tuple(0, 1, true));
    damage.Note(Mp3Packet(417), false);
    EXPECT_EQ(Told(damage), std::tuple(1, 2, true));
}

TEST(DecodeDamageTest, OddBytesBehindPcmAreNoDamage) {
    CDecodeDamage damage;
    damage.SetCodec("pcm_s16le");
    damage.Note(std::vector<std::uint8_t>(4096), true);
    damage.Note(std::vector<std::uint8_t>(1), false);
    EXPECT_EQ(Told(damage), std::tuple(0, 1, false));
}

} // namespace
