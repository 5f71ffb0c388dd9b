// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/CorrectionTexts.h"

#include "Language.h"
#include "app/Correction.h"

#include <gtest/gtest.h>

namespace {

std::string Ratio(char const* word) {
    return RatioText(TempoFixOf(word).value_or(CTempoFix())).toStdString();
}

} // namespace

TEST(CorrectionTextsTest, RatiosAreWrittenAsPeopleDo) {
    EXPECT_EQ(Ratio("x2"), "×2");
    EXPECT_EQ(Ratio("/2"), "÷2");
    EXPECT_EQ(Ratio("3:2"), "3:2");
    EXPECT_EQ(RefusalText(ECorrectionRefusal::TooFast), "A tempo would be above 999.");
    EXPECT_EQ(RefusalText(ECorrectionRefusal::TooSlow), "A tempo would be below 20.");
}

// U+2066 and U+2069 hold signs and figures from left to right.
TEST(CorrectionTextsTest, ALineHasTheDigitsOfTheCountryOnly) {
    CLanguage const arabic(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(Ratio("x2"), "\u2066×٢\u2069");
    EXPECT_EQ(Ratio("4:3"), "\u2066٤:٣\u2069");
    // U+200F settles the line's direction, U+061C that of the percentage.
    EXPECT_EQ(
        ReadingText({.m_fBpm = 190.5f, .m_nTimes = 3, .m_nOver = 2, .m_fScore = 0.25f}),
        QStringLiteral(
            "\u200F\u2068١٩٠٫٥٠\u2069 · \u2068\u2066٣:٢\u2069\u2069 · \u2068٢٥٪\u061C\u2069"));
    EXPECT_EQ(RefusalText(ECorrectionRefusal::TooFast).toStdString(), "ستزيد سرعة على ٩٩٩.");
}
