// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/DecodeDamage.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

namespace {

/// A packet of `size` bytes that begins like an MPEG frame of 417 bytes.
std::vector<std::uint8_t> Mp3Packet(std::size_t size) {
    std::vector<std::uint8_t> packet = {0xFF, 0xFB, 0x90, 0x00};
    packet.resize(size);
    return packet;
}

TEST(DecodeDamageTest, NothingIsDamagedWithoutPackets) {
    EXPECT_EQ(CDecodeDamage().Describe(), "");
}

TEST(DecodeDamageTest, CountsWhatCannotBeDecoded) {
    CDecodeDamage damage;
    damage.SetCodec("aac");
    std::vector<std::uint8_t> const packet(10);
    damage.Note(packet, true);
    damage.Note(packet, false);
    damage.Note(packet, true);
    EXPECT_EQ(damage.Describe(), "is damaged: 1 of 3 packets can't be decoded");
}

TEST(DecodeDamageTest, ForeignBytesCountWithAudioBehindThem) {
    CDecodeDamage damage;
    damage.SetCodec("mp3float");
    std::vector<std::uint8_t> const foreign(100, 'x');
    damage.Note(Mp3Packet(417), true);
    damage.Note(foreign, false);
    EXPECT_EQ(damage.Describe(), "");
    damage.Note(Mp3Packet(417), true);
    EXPECT_EQ(damage.Describe(), "is damaged: 1 of 3 packets can't be decoded");
}

TEST(DecodeDamageTest, ShortFrameIsWhereTheFileBreaksOff) {
    CDecodeDamage damage;
    damage.SetCodec("mp3float");
    damage.Note(Mp3Packet(417), true);
    damage.Note(Mp3Packet(416), true);
    EXPECT_EQ(damage.Describe(), "breaks off in the middle of a frame");
    damage.Note(Mp3Packet(417), false);
    EXPECT_EQ(damage.Describe(), "is damaged: 1 of 2 packets can't be decoded, and it breaks off");
}

TEST(DecodeDamageTest, OddBytesBehindPcmAreNoDamage) {
    CDecodeDamage damage;
    damage.SetCodec("pcm_s16le");
    damage.Note(std::vector<std::uint8_t>(4096), true);
    damage.Note(std::vector<std::uint8_t>(1), false);
    EXPECT_EQ(damage.Describe(), "");
}

} // namespace
