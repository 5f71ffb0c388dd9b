// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/Correction.h"

#include <gtest/gtest.h>

TEST(CorrectionTest, WordsStandForRatiosAndTempos) {
    EXPECT_EQ(TempoFixOf("x2")->m_nTimes, 2);
    EXPECT_EQ(TempoFixOf("x2")->m_nOver, 1);
    EXPECT_EQ(TempoFixOf("/2")->m_nOver, 2);
    EXPECT_EQ(TempoFixOf("3:4")->m_nTimes, 3);
    EXPECT_EQ(TempoFixOf("3:4")->m_nOver, 4);
    EXPECT_EQ(TempoFixOf("=174.5")->m_dBpm, 174.5);
    EXPECT_FALSE(TempoFixOf("=174.5")->IsRatio());
    for (char const* const word : {"", "x3", "2", "=", "=19.9", "=1000", "=abc", "=120x", "tap",
                                   "=inf", "=nan", "=-120", "5:4"}) {
        EXPECT_FALSE(TempoFixOf(word)) << word;
    }
}

TEST(CorrectionTest, TapsGiveTheMeanOfTheirSpans) {
    // Four spans of half a second on the whole: 120 a minute.
    EXPECT_EQ(TappedTempo({10.0, 10.4, 11.1, 11.5, 12.0}), 120.0);
    EXPECT_FALSE(TappedTempo({}));
    EXPECT_FALSE(TappedTempo({1.0, 1.5, 2.0}));
    EXPECT_FALSE(TappedTempo({1.0, 1.0, 1.0, 1.0}));
    // Four seconds a beat are 15 a minute.
    EXPECT_FALSE(TappedTempo({0.0, 4.0, 8.0, 12.0}));
}
