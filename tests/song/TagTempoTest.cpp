// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/TagTempo.h"

#include <gtest/gtest.h>

namespace {

TEST(TagTempoTest, FromTwentyToNineHundredNinetyNineIsBelieved) {
    EXPECT_EQ(JudgeTagTempo("128"), (CTagTempo{ETagTempo::Plain, 128.0}));
    EXPECT_EQ(JudgeTagTempo("20"), (CTagTempo{ETagTempo::Plain, 20.0}));
    EXPECT_EQ(JudgeTagTempo("999"), (CTagTempo{ETagTempo::Plain, 999.0}));
    EXPECT_EQ(JudgeTagTempo("19.5"), (CTagTempo{ETagTempo::Unlikely, 19.5}));
    EXPECT_EQ(JudgeTagTempo("999.5"), (CTagTempo{ETagTempo::TimesTen, 99.95}));
}

TEST(TagTempoTest, APointAndACommaComeBeforeDecimals) {
    EXPECT_EQ(JudgeTagTempo("128,5"), (CTagTempo{ETagTempo::Plain, 128.5}));
    EXPECT_EQ(JudgeTagTempo(" 128.5 BPM"), (CTagTempo{ETagTempo::Plain, 128.5}));
    EXPECT_EQ(JudgeTagTempo("128.5,7"), (CTagTempo{ETagTempo::Plain, 128.5}));
}

TEST(TagTempoTest, TimesTenAndTimesHundredAreRecognised) {
    EXPECT_EQ(JudgeTagTempo("1285"), (CTagTempo{ETagTempo::TimesTen, 128.5}));
    EXPECT_EQ(JudgeTagTempo("2500"), (CTagTempo{ETagTempo::TimesTen, 250.0}));
    EXPECT_EQ(JudgeTagTempo("12800"), (CTagTempo{ETagTempo::TimesHundred, 128.0}));
    EXPECT_EQ(JudgeTagTempo("4000"), (CTagTempo{ETagTempo::TimesHundred, 40.0}));
    EXPECT_EQ(JudgeTagTempo("25001"), (CTagTempo{ETagTempo::Unlikely, 25001.0}));
    EXPECT_EQ(JudgeTagTempo("2600"), (CTagTempo{ETagTempo::Unlikely, 2600.0})); // 260 and 26
}

TEST(TagTempoTest, WhatIsNoNumberIsNoTempo) {
    for (char const* text : {"", " ", "fast", "-120", "0", "0.00", ",", ".", "inf", "nan", "0x80",
                             "99999999999999999999"}) {
        EXPECT_EQ(JudgeTagTempo(text), CTagTempo{}) << text;
    }
}

} // namespace
