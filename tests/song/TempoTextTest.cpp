// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/TempoText.h"

#include "support/CommaLocale.h"

#include <gtest/gtest.h>
#include <limits>

TEST(TempoTextTest, HasTwoDecimals) {
    EXPECT_EQ(TempoText(0.0), "0.00");
    EXPECT_EQ(TempoText(128.0), "128.00");
    EXPECT_EQ(TempoText(94.994999), "94.99");
    EXPECT_EQ(TempoText(94.996), "95.00");
}

TEST(TempoTextTest, HasAPointInEveryLocale) {
    CCommaLocale const locale;
    EXPECT_EQ(TempoText(128.5), "128.50");
}

TEST(TempoTextTest, TheLargestNumberHasRoom) {
    EXPECT_EQ(TempoText(std::numeric_limits<double>::max()).size(), 312U);
}

TEST(TempoTextTest, LeadingNumbersAreReadInEveryLocale) {
    CCommaLocale const locale;
    EXPECT_EQ(LeadingNumber("120"), 120.0);
    EXPECT_EQ(LeadingNumber(" \t97.5 BPM"), 97.5);
    EXPECT_EQ(LeadingNumber("+82"), 82.0);
    EXPECT_EQ(LeadingNumber(".5"), 0.5);
    EXPECT_EQ(LeadingNumber("-3"), -3.0);
    EXPECT_EQ(LeadingNumber("120,5"), 120.0);
    EXPECT_EQ(LeadingNumber(""), 0.0);
    EXPECT_EQ(LeadingNumber("fast"), 0.0);
    EXPECT_EQ(LeadingNumber("+-3"), 0.0);
    EXPECT_EQ(LeadingNumber("nan"), 0.0);
    EXPECT_EQ(LeadingNumber("inf"), 0.0);
    EXPECT_EQ(LeadingNumber("0x10"), 0.0);
}

TEST(TempoTextTest, ATempoIsRoundedFromItsTwoDecimalsHalvesUpwards) {
    EXPECT_EQ(RoundedTempo(128.0, 2), "128.00");
    EXPECT_EQ(RoundedTempo(97.05, 2), "97.05");
    EXPECT_EQ(RoundedTempo(127.95, 1), "128.0");
    EXPECT_EQ(RoundedTempo(127.94, 1), "127.9");
    EXPECT_EQ(RoundedTempo(128.5, 0), "129");
    EXPECT_EQ(RoundedTempo(128.49, 0), "128");
}
