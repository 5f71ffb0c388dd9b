// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Numbers.h"

#include "Language.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

std::string Shown(char16_t const* tempo) {
    return TempoText(tempo).toStdString();
}

} // namespace

TEST(NumbersTest, AGermanTempoHasAComma) {
    CLanguage const german(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(Shown(u"128.05"), "128,05");
    EXPECT_EQ(Shown(u"128"), "128");
}

// U+0661, U+0662 and U+0668 are one, two and eight; U+066B is the decimal point.
TEST(NumbersTest, AnArabicTempoIsArabicThroughout) {
    CLanguage const arabic(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(Shown(u"128.00"), "١٢٨٫٠٠");
    EXPECT_EQ(Shown(u"128"), "١٢٨");
    EXPECT_TRUE(PercentText(28).startsWith("٢٨٪"));
    EXPECT_EQ(CountText(128).toStdString(), "١٢٨");
    EXPECT_EQ(LimitText(999.0).toStdString(), "٩٩٩");
}

// Morocco writes Arabic with the digits of Europe.
TEST(NumbersTest, TheCountrySettlesTheDigits) {
    CLanguage const arabic(QLocale(QLocale::Arabic, QLocale::Morocco));
    EXPECT_EQ(Shown(u"128.00"), "128,00");
    EXPECT_EQ(CountText(5128).toStdString(), "5.128");
}

TEST(NumbersTest, DigitsOfEveryScriptAreReadAsPlainOnes) {
    EXPECT_EQ(WithPlainDigits("١٢٨٫٥-130"), "128.5-130");
    EXPECT_EQ(WithPlainDigits("abc, 1"), "abc. 1");
    EXPECT_EQ(TypedTempo("١٢٨٫٠٥"), 128.05);
}

TEST(NumbersTest, WhatIsNoPlainNumberStaysAsItIs) {
    CLanguage const arabic(QLocale(QLocale::Arabic, QLocale::Egypt));
    for (char16_t const* text : {u"ca. 128.5", u"1e5", u"128.", u".5", u"1.2.3", u"", u"-128"}) {
        EXPECT_EQ(TempoText(text), QString::fromUtf16(text));
    }
}

TEST(NumbersTest, APercentageHasRoomForTwoDigits) {
    EXPECT_EQ(PercentText(7).toStdString(), " 7%");
    EXPECT_EQ(PercentText(42).toStdString(), "42%");
    EXPECT_EQ(PercentText(100).toStdString(), "100%");
}

TEST(NumbersTest, TempoValuesAreNumbersAboveZero) {
    EXPECT_EQ(TempoValue(u"128.05"), 128.05);
    EXPECT_EQ(TempoValue(u"97 BPM"), 97.0);
    EXPECT_TRUE(std::isnan(TempoValue(u"0.00")));
    EXPECT_TRUE(std::isnan(TempoValue(u"")));
    EXPECT_TRUE(std::isnan(TempoValue(u"fast")));
}

TEST(NumbersTest, TheDecimalPointIsFoundInNumbersOnly) {
    EXPECT_EQ(DecimalPointIn("128.05"), 3);
    EXPECT_EQ(DecimalPointIn("128"), 3);
    EXPECT_EQ(DecimalPointIn(""), -1);
    EXPECT_EQ(DecimalPointIn("ca. 128.5"), -1);
    CLanguage const german(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(DecimalPointIn("99,50"), 2);
}
