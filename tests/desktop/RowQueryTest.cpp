// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/RowQuery.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

CRowFacts Row(QString const& text, double bpm = 120.0) {
    CRowFacts row;
    row.m_sText = FoldedText(text);
    row.m_fBpm = bpm;
    return row;
}

bool Finds(QString const& query, CRowFacts const& row) {
    return CRowQuery(query).matches(row);
}

} // namespace

TEST(RowQueryTest, EveryWordMustBeThereInWhateverCase) {
    CRowFacts const row = Row("Feelings\nSome Band\n01 feelings.mp3");
    EXPECT_TRUE(Finds("feel BAND", row));
    EXPECT_TRUE(Finds(".mp3", row));
    EXPECT_FALSE(Finds("feel tears", row));
    EXPECT_TRUE(CRowQuery("  ").isEmpty());
    EXPECT_TRUE(Finds("", row));
}

TEST(RowQueryTest, LettersWithMarksAndWithoutAreTheSame) {
    EXPECT_TRUE(Finds("bjork", Row("Björk")));
    EXPECT_TRUE(Finds("BJÖRK", Row("bjork")));
}

TEST(RowQueryTest, ARangeTakesBothItsEnds) {
    EXPECT_TRUE(Finds("120-130", Row("a", 120.0)));
    EXPECT_TRUE(Finds("120-130", Row("a", 130.0)));
    EXPECT_FALSE(Finds("120-130", Row("a", 119.99)));
    EXPECT_FALSE(Finds("120-130", Row("a", 130.01)));
    EXPECT_TRUE(Finds("119,5–120.5", Row("a", 120.0)));
    EXPECT_TRUE(Finds("١١٩٫٥-١٢٠٫٥", Row("a", 120.0))); // Arabic digits and their decimal point
    EXPECT_FALSE(Finds("١٢١-١٣٠", Row("a", 120.0)));
    EXPECT_FALSE(Finds("120-130", Row("a", std::numeric_limits<double>::quiet_NaN())));
    EXPECT_FALSE(Finds("120-", Row("a"))); // a word as yet
}

TEST(RowQueryTest, AKeyIsFoundByEachOfItsNames) {
    CRowFacts row = Row("a");
    row.m_sKey = "Am";
    for (char const* const query : {"key:Am", "key:am", "key:8A", "key:8a", "key:1m", "key:"}) {
        EXPECT_TRUE(Finds(query, row)) << query;
    }
    EXPECT_FALSE(Finds("key:8B", row)); // C major
    EXPECT_FALSE(Finds("key:H", row));
    EXPECT_FALSE(Finds("key:8A", Row("a")));
}

TEST(RowQueryTest, AStateIsFoundByTheBeginningOfItsName) {
    CRowFacts row = Row("a");
    EXPECT_FALSE(Finds("state:problem", row));
    EXPECT_TRUE(Finds("state:", row));
    row.m_bProblem = true;
    EXPECT_TRUE(Finds("state:problem", row));
    EXPECT_TRUE(Finds("State:prob", row));
    EXPECT_FALSE(Finds("state:hand", row));
    row.m_bByHand = true;
    EXPECT_TRUE(Finds("state:hand state:problem a", row));
    EXPECT_FALSE(Finds("state:handy", row));
}
