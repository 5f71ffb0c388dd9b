// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/Json.h"

#include <bit>
#include <charconv>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {

TEST(JsonTest, TextIsEscapedAndNeverFails) {
    EXPECT_EQ(JsonText("a\"b\\c\n\x01"), "\"a\\\"b\\\\c\\n\\u0001\"");
    EXPECT_EQ(JsonText("\xC3\xA9\xFF"), "\"\xC3\xA9\xEF\xBF\xBD\"");
    EXPECT_EQ(JsonText(""), "\"\"");
}

TEST(JsonTest, NineDigitsRestoreEveryFloat) {
    EXPECT_EQ(JsonNumber(0.0f), "0");
    EXPECT_EQ(JsonNumber(128.0f), "128");
    EXPECT_EQ(JsonNumber(128.1f), "128.100006");
    EXPECT_EQ(JsonNumber(-0.1f), "-0.100000001");
    // Every 65521st bit pattern; the prime reaches all exponents.
    for (std::uint64_t bits = 0; bits <= 0xFFFFFFFF; bits += 65521) {
        auto const value = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        std::string const text = JsonNumber(value);
        if (text == "null") {
            ASSERT_FALSE(value - value == 0.0f) << bits;
            continue;
        }
        float back = 0.0f;
        std::from_chars(text.data(), text.data() + text.size(), back);
        ASSERT_EQ(std::bit_cast<std::uint32_t>(back), static_cast<std::uint32_t>(bits)) << text;
    }
}

TEST(JsonTest, FewestDigitsRestoreAFloat) {
    EXPECT_EQ(JsonShortest(128.1f), "128.1");
    EXPECT_EQ(JsonShortest(-0.5f), "-0.5");
    EXPECT_EQ(JsonShortest(120.0f), "120");
    EXPECT_EQ(JsonShortest(std::numeric_limits<float>::quiet_NaN()), "null");
}

TEST(JsonTest, SecondsGoToTheMicrosecond) {
    EXPECT_EQ(JsonSeconds(0.0), "0");
    EXPECT_EQ(JsonSeconds(100.0), "100");
    EXPECT_EQ(JsonSeconds(0.1), "0.1");
    EXPECT_EQ(JsonSeconds(1.0 / 3.0), "0.333333");
    EXPECT_EQ(JsonSeconds(2.0 / 3.0), "0.666667");
    EXPECT_EQ(JsonSeconds(3599.9999999), "3600");
    EXPECT_EQ(JsonSeconds(std::numeric_limits<double>::infinity()), "null");
}

TEST(JsonTest, WhatIsNoNumberIsNull) {
    EXPECT_EQ(JsonNumber(std::numeric_limits<float>::quiet_NaN()), "null");
    EXPECT_EQ(JsonNumber(std::numeric_limits<float>::infinity()), "null");
    EXPECT_EQ(JsonNumber(-std::numeric_limits<float>::infinity()), "null");
}

TEST(JsonTest, ObjectsAndArraysKeepTheirOrder) {
    EXPECT_EQ(CJsonObject().Close(), "{}");
    EXPECT_EQ(CJsonObject().Add("b", "1").Add("a", "null").Close(), R"({"b":1,"a":null})");
    auto const number = [](std::int64_t value) { return JsonNumber(value); };
    EXPECT_EQ(JsonArray(std::vector<std::int64_t>(), number), "[]");
    EXPECT_EQ(JsonArray(std::vector<std::int64_t>{3, -1, 2}, number), "[3,-1,2]");
}

} // namespace
