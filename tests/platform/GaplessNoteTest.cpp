// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/GaplessNote.h"

#include <gtest/gtest.h>

namespace {

TEST(GaplessNoteTest, ReadsTheSecondToTheFourthNumber) {
    auto const note =
        ParseGaplessNote(" 00000000 00000840 000001CA 00000000003F31F6 00000000 00000000");
    ASSERT_TRUE(note.has_value());
    EXPECT_EQ(note->m_nDelay, 2112);
    EXPECT_EQ(note->m_nPadding, 458);
    EXPECT_EQ(note->m_nFrames, 4141558);
}

TEST(GaplessNoteTest, RefusesWhatIsNoNote) {
    for (char const* text : {"", " ", "0 1 2", "0 1 2 x", "0 1 -2 3", "0 1 2 FFFFFFFFFFFFFFFFF"}) {
        EXPECT_FALSE(ParseGaplessNote(text).has_value()) << text;
    }
}

TEST(GaplessNoteTest, PaddingIsCutFromAWholeTrackAlone) {
    // 100 of delay and 1000 of music: the track has 1100 frames before its padding.
    CGaplessNote const note = {100, 24, 1000};
    EXPECT_EQ(CountWithoutPadding(1024, 100, note), 1000);
    EXPECT_EQ(CountWithoutPadding(1000, 100, note), 976); // an encoder that counts otherwise
    EXPECT_EQ(CountWithoutPadding(999, 100, note), 999);  // the file breaks off
    EXPECT_EQ(CountWithoutPadding(500, 100, note), 500);
}

TEST(GaplessNoteTest, AbsurdNumbersDoNoHarm) {
    constexpr std::int64_t kLargest = INT64_MAX;
    EXPECT_EQ(CountWithoutPadding(1000, 0, {kLargest, 1, kLargest}), 1000);
    EXPECT_EQ(CountWithoutPadding(1000, 0, {0, kLargest, 0}), 0);
}

} // namespace
