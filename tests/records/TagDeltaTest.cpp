// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/TagDelta.h"

#include "support/TagFile.h"

#include <gtest/gtest.h>
#include <random>

namespace {

/// Bytes without a repetition.
TagBytes Noise(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    TagBytes bytes(count);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

void ExpectWay(TagBytes const& from, TagBytes const& wanted, std::size_t mostBytes) {
    TagBytes const delta = MakeDelta(from, wanted);
    EXPECT_LE(delta.size(), mostBytes);
    EXPECT_EQ(ApplyDelta(from, delta, wanted.size()), wanted);
}

TEST(TagDeltaTest, NothingIsMadeOfAnything) {
    ExpectWay({}, {}, 0);
    ExpectWay(Noise(100, 1), {}, 0);
}

TEST(TagDeltaTest, WhatTheOtherDoesNotHaveIsInTheDelta) {
    // One piece: the count, the bytes, and two zeros for nothing copied from nowhere.
    ExpectWay({}, Ascii("new"), 1 + 3 + 2);
    EXPECT_EQ(MakeDelta({}, Ascii("new")), (TagBytes{3, 'n', 'e', 'w', 0, 0}));
}

TEST(TagDeltaTest, APictureCostsNothing) {
    TagBytes const picture = Noise(3'000'000, 2);
    TagBytes const from = Joined({TagHeader(3, 3'000'020), Noise(10, 3), picture, Zeros(4096)});
    TagBytes const wanted = Joined({TagHeader(4, 2'999'999), Noise(24, 4), picture});
    // 34 bytes of their own, and the numbers of a copy.
    ExpectWay(from, wanted, 34 + 12);
}

TEST(TagDeltaTest, AByteThatChangesInALargePictureIsAlone) {
    TagBytes const from = Noise(3'000'000, 10);
    TagBytes wanted = from;
    wanted[1'500'000] ^= 1;
    // The byte, and for a piece on each side of it two counts and an offset of up to 4 bytes each.
    ExpectWay(from, wanted, 1 + 2 * 12);
}

TEST(TagDeltaTest, PiecesInAnotherOrderAreFound) {
    TagBytes const a = Noise(500, 5);
    TagBytes const b = Noise(500, 6);
    ExpectWay(Joined({a, b}), Joined({b, Ascii("x"), a, a}), 24);
}

TEST(TagDeltaTest, ZerosAreCopiedFromFewer) {
    ExpectWay(Joined({Noise(7, 7), Zeros(100)}), Zeros(1000), 60);
}

TEST(TagDeltaTest, WhateverTheBytesTheWayLeadsThere) {
    std::mt19937 random(8);
    for (unsigned i = 0; i < 300; ++i) {
        // Few different values, so that pieces repeat everywhere.
        TagBytes from(random() % 200);
        TagBytes wanted(random() % 200);
        for (TagBytes* const bytes : {&from, &wanted}) {
            for (std::uint8_t& byte : *bytes) {
                byte = static_cast<std::uint8_t>(random() % 2);
            }
        }
        ExpectWay(from, wanted, 2 * wanted.size() + 3);
    }
}

TEST(TagDeltaTest, BrokenDeltasLeadNowhere) {
    TagBytes const from = Noise(10, 9);
    for (TagBytes const& delta : {TagBytes{1}, TagBytes{0}, TagBytes{0, 5}, TagBytes{0, 5, 6},
                                  TagBytes{0, 11, 0}, TagBytes{200, 1, 2}, TagBytes{0x80, 0x80},
                                  TagBytes(20, 0xFF), TagBytes{0, 5, 0, 0, 1, 0}}) {
        EXPECT_FALSE(ApplyDelta(from, delta, 5));
    }
    EXPECT_TRUE(ApplyDelta(from, TagBytes{0, 5, 0}, 5));
    EXPECT_FALSE(ApplyDelta(from, TagBytes{0, 5, 0}, 4));
    EXPECT_FALSE(ApplyDelta(from, TagBytes{0, 5, 0}, 6));
}

} // namespace
