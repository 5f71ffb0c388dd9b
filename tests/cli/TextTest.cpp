// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Text.h"

#include "cli/Message.h"

#include <gtest/gtest.h>

namespace {

TEST(TextTest, WidthCountsCells) {
    EXPECT_EQ(DisplayWidth("abc"), 3U);
    EXPECT_EQ(DisplayWidth("\xC3\xA9"), 1U);                 // e with acute
    EXPECT_EQ(DisplayWidth("e\xCC\x81"), 1U);                // e and a combining acute
    EXPECT_EQ(DisplayWidth("\xE6\x97\xA5\xE6\x9C\xAC"), 4U); // two wide characters
}

TEST(TextTest, CutKeepsTheRoom) {
    EXPECT_EQ(CutToWidth("abcdef", 6), "abcdef");
    EXPECT_EQ(CutToWidth("abcdef", 5), "abcd\xE2\x80\xA6");
    EXPECT_EQ(CutToWidth("abcdef", 1), "\xE2\x80\xA6");
    EXPECT_EQ(CutToWidth("abcdef", 0), "");
    // The second wide character would be one cell too many.
    EXPECT_EQ(CutToWidth("\xE6\x97\xA5\xE6\x9C\xAC", 3), "\xE6\x97\xA5\xE2\x80\xA6");
    EXPECT_EQ(CutStartToWidth("abcdef", 6), "abcdef");
    EXPECT_EQ(CutStartToWidth("abcdef", 5), "\xE2\x80\xA6"
                                            "cdef");
    EXPECT_EQ(CutStartToWidth("abcdef", 1), "\xE2\x80\xA6");
    EXPECT_EQ(CutStartToWidth("abcdef", 0), "");
}

TEST(TextTest, NothingPrintableMovesTheCursor) {
    EXPECT_EQ(Printable("song \xC3\xA9.mp3"), "song \xC3\xA9.mp3");
    std::string const mark(kReplacementCharacter);
    EXPECT_EQ(Printable("a\x1B[31mb\nc\r\t\x7F"),
              "a" + mark + "[31mb" + mark + "c" + mark + mark + mark);
    EXPECT_EQ(Printable("\xC2\x9B"
                        "1m"),
              mark + "1m"); // a C1 control
    EXPECT_EQ(Printable("a\xE2\x80\xAE"
                        "b"),
              "a" + mark + "b"); // right-to-left override
    EXPECT_EQ(Printable("a\xFF\xC3"), "a" + mark + mark);
}

} // namespace
