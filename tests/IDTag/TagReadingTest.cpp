// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/TagReading.h"

#include "support/TagFile.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> TitlesOf(TagBytes const& tag) {
    return CTagReading(tag).Texts("TIT2");
}

/// A text frame's body.
TagBytes Body(std::uint8_t encoding, std::string const& text) {
    return Joined({{encoding}, Ascii(text)});
}

using namespace std::string_literals;

TEST(TagReadingTest, EveryEncodingBecomesUtf8) {
    for (std::string const& body : {"\x00\xE9"s, "\x01\xFF\xFE\xE9\x00"s, "\x01\xFE\xFF\x00\xE9"s,
                                    "\x02\x00\xE9"s, "\x03\xC3\xA9"s}) {
        EXPECT_THAT(TitlesOf(TagOf(4, Frame24("TIT2", Ascii(body)))), ElementsAre("\xC3\xA9"))
            << static_cast<int>(body[0]);
    }
    // Bytes that belie their encoding are taken as Latin-1.
    EXPECT_THAT(TitlesOf(TagOf(4, Frame24("TIT2", Body(3, "\xE9")))), ElementsAre("\xC3\xA9"));
}

TEST(TagReadingTest, SeveralTextsHaveAMarkEachOrNone) {
    TagBytes const marks = Ascii("\x01\xFF\xFE"
                                 "a\0\0\0\xFF\xFE"
                                 "b\0"s);
    EXPECT_THAT(TitlesOf(TagOf(3, Frame23("TIT2", marks))), ElementsAre("a", "b"));
    EXPECT_THAT(TitlesOf(TagOf(4, Frame24("TIT2", Body(3, "a\0\0b\0"s)))), ElementsAre("a", "b"));
}

TEST(TagReadingTest, OldIdsAnswerToTheNewOnes) {
    EXPECT_THAT(TitlesOf(TagOf(2, Frame22("TT2", Body(0, "a")))), ElementsAre("a"));
}

TEST(TagReadingTest, AFrameIsReadPastWhatStandsBeforeItsBody) {
    // Version 2.4: grouping 40, unsynchronisation 02, a length of the data 01.
    TagBytes frame = Frame24("TIT2", Joined({{7}, {0, 0, 0, 3}, Body(0, "\xFF\0a"s)}));
    frame[9] = 0x43;
    EXPECT_THAT(TitlesOf(TagOf(4, frame)), ElementsAre("\xC3\xBF"
                                                       "a"));
    // Version 2.3: grouping 20.
    TagBytes old = Frame23("TIT2", Joined({{7}, Body(0, "a")}));
    old[9] = 0x20;
    EXPECT_THAT(TitlesOf(TagOf(3, old)), ElementsAre("a"));
}

TEST(TagReadingTest, ExtendedHeadersArePassedOver) {
    TagBytes const title = Frame23("TIT2", Body(0, "a"));
    TagBytes const old = Joined({{0, 0, 0, 6}, Zeros(6), title}); // without its four bytes
    EXPECT_THAT(TitlesOf(TagOf(3, old, 0x40)), ElementsAre("a"));
    TagBytes const recent = Joined({{0, 0, 0, 6, 1, 0}, Frame24("TIT2", Body(0, "a"))});
    EXPECT_THAT(TitlesOf(TagOf(4, recent, 0x40)), ElementsAre("a"));
}

TEST(TagReadingTest, UsersTextsAreFoundByTheirDescription) {
    CTagReading const tag(TagOf(3, Frame23("TXXX", Body(0, "bpm\0"
                                                           "128.5"s))));
    EXPECT_THAT(tag.UserTexts("BPM"), ElementsAre("128.5"));
    EXPECT_THAT(tag.UserTexts("BP"), IsEmpty());
    EXPECT_THAT(CTagReading(TagOf(3, Frame23("TXXX", {0}))).UserTexts("BPM"), IsEmpty());
}

TEST(TagReadingTest, WhatAnotherReaderWouldHaveToUnfoldIsTold) {
    TagBytes frame = Frame24("TIT2", Body(0, "a"));
    EXPECT_TRUE(CTagReading(TagOf(4, frame)).IsPlain());
    for (std::uint8_t const form :
         {std::uint8_t{0x08}, std::uint8_t{0x04}}) { // compressed, encrypted
        frame[9] = form;
        EXPECT_FALSE(CTagReading(TagOf(4, frame)).IsPlain()) << int{form};
        EXPECT_THAT(TitlesOf(TagOf(4, frame)), IsEmpty());
    }
    EXPECT_FALSE(CTagReading(TagOf(3, Frame23("CHAP", Zeros(40)))).IsPlain());
}

TEST(TagReadingTest, WhatIsNoTagHasNoTexts) {
    TagBytes const whole = TagOf(3, Frame23("TIT2", Body(0, "abc")));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_THAT(TitlesOf({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}),
                    IsEmpty());
    }
    EXPECT_THAT(TitlesOf(TagOf(5, Frame23("TIT2", Body(0, "a")))), IsEmpty());
}

} // namespace
