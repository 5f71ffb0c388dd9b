// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/CString.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace std::string_literals;
using namespace std::string_view_literals;

TEST(CStringTest, StartsEmpty) {
    CString const text;
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.GetLength(), 0U);
    EXPECT_EQ(std::wstring_view(static_cast<wchar_t const*>(text)), L"");
}

TEST(CStringTest, NullPointersGiveEmptyText) {
    EXPECT_TRUE(CString(static_cast<char const*>(nullptr)).IsEmpty());
    EXPECT_TRUE(CString(static_cast<wchar_t const*>(nullptr)).IsEmpty());
    CString text("full");
    text = static_cast<wchar_t const*>(nullptr);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CStringTest, DecodesUtf8IntoUnits) {
    // a, U+00E9, U+20AC, U+1F600 (D83D DE00)
    EXPECT_EQ(CString("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80").Units(),
              u"a\u00E9\u20AC\xD83D\xDE00"sv);
}

TEST(CStringTest, InvalidUtf8GivesEmptyText) {
    EXPECT_TRUE(CString("ab\xFF").IsEmpty());           // no such byte
    EXPECT_TRUE(CString("ab\xC3").IsEmpty());           // cut short
    EXPECT_TRUE(CString("\x80").IsEmpty());             // starts in the middle
    EXPECT_TRUE(CString("\xC0\xAF").IsEmpty());         // longer than needed
    EXPECT_TRUE(CString("\xED\xA0\x80").IsEmpty());     // a surrogate
    EXPECT_TRUE(CString("\xF4\x90\x80\x80").IsEmpty()); // past U+10FFFF
}

TEST(CStringTest, FromUtf8KeepsZeroBytes) {
    EXPECT_EQ(CString::FromUtf8("a\0b"sv).Units(), u"a\0b"sv);
    EXPECT_TRUE(CString::FromUtf8("a\0\xFF"sv).IsEmpty());
}

TEST(CStringTest, PinsWideCharactersAreCutToSixteenBits) {
    std::array<wchar_t, 2> const smiley{static_cast<wchar_t>(0x1F600), L'\0'};
    EXPECT_EQ(CString(smiley.data()).Units(), u"\xF600"sv);
}

TEST(CStringTest, WideCopyHasOneUnitPerCharacter) {
    CString const text("a\xF0\x9F\x98\x80");
    wchar_t const* const wide = text;
    EXPECT_EQ(wide[0], L'a');
    EXPECT_EQ(wide[1], static_cast<wchar_t>(0xD83D));
    EXPECT_EQ(wide[2], static_cast<wchar_t>(0xDE00));
    EXPECT_EQ(wide[3], L'\0');
    EXPECT_EQ(CString(wide), text);
}

TEST(CStringTest, WidePointerOutlivesAssignment) {
    CString text("before");
    wchar_t const* const wide = text;
    text = CString("a much longer text than the one before");
    EXPECT_EQ(std::wstring_view(wide), L"before");
    text = wide;
    EXPECT_EQ(text, "before");
}

TEST(CStringTest, WideCopyFollowsAShorterText) {
    CString text("abcdef");
    EXPECT_EQ(std::wstring_view(static_cast<wchar_t const*>(text)), L"abcdef");
    text = L"xy";
    EXPECT_EQ(std::wstring_view(static_cast<wchar_t const*>(text)), L"xy");
}

TEST(CStringTest, CopiesAndMovesCarryTheText) {
    CString source("abc");
    CString copy(source);
    EXPECT_EQ(copy, source);
    CString const moved(std::move(source));
    EXPECT_EQ(moved, "abc");
    copy = std::move(moved);
    EXPECT_EQ(copy, "abc");
    CString& same = copy;
    copy = same;
    EXPECT_EQ(copy, "abc");
}

TEST(CStringTest, ComparesUnitsExactly) {
    CString const text("Stra\xC3\x9F"
                       "e");
    EXPECT_TRUE(text == "Stra\xC3\x9F"
                        "e");
    EXPECT_TRUE(text == L"Stra\u00DFe");
    EXPECT_FALSE(text == "stra\xC3\x9F"
                         "e");
    EXPECT_FALSE(text == L"Stra");
    // The same letter in two spellings is two texts.
    EXPECT_FALSE(CString(L"\u00E9") == L"e\u0301");
    EXPECT_TRUE(CString() == "");
    EXPECT_TRUE(L"x" == CString("x"));
    EXPECT_TRUE(CString("x") != CString("y"));
}

TEST(CStringTest, SortsByUnits) {
    std::vector<CString> texts{CString("b"), CString("B"), CString("a"), CString()};
    std::sort(texts.begin(), texts.end());
    EXPECT_EQ(texts, (std::vector<CString>{CString(), CString("B"), CString("a"), CString("b")}));
}

TEST(CStringTest, AddsTextBehind) {
    CString const text("ab");
    EXPECT_EQ(text + L"cd", "abcd");
    EXPECT_EQ(text + CString("ef"), "abef");
    EXPECT_EQ(text + CString(u"\0c"sv), CString(u"ab\0c"sv));
    EXPECT_EQ(text, "ab");
    CString sum(text);
    sum += L"c";
    sum += sum;
    EXPECT_EQ(sum, "abcabc");
}

TEST(CStringTest, FindsTheFirstOccurrence) {
    CString const text("abcabc");
    EXPECT_EQ(text.Find(L"bc"), 1);
    EXPECT_EQ(text.Find(L"bc", 1), 1);
    EXPECT_EQ(text.Find(L"bc", 2), 4);
    EXPECT_EQ(text.Find(L"bc", 5), -1);
    EXPECT_EQ(text.Find(L"x"), -1);
    EXPECT_EQ(text.Find(L"A"), -1);
    EXPECT_EQ(text.Find(L"abcabcd"), -1);
}

TEST(CStringTest, FindsNothingFromTheEndOn) {
    CString const text("abc");
    EXPECT_EQ(text.Find(L"c", 2), 2);
    EXPECT_EQ(text.Find(L"c", 3), -1);
    EXPECT_EQ(text.Find(L"c", 0xFFFFFFFFU), -1);
    EXPECT_EQ(CString().Find(L"a"), -1);
}

TEST(CStringTest, EmptyTextOccursNowhere) {
    EXPECT_EQ(CString("abc").Find(L""), -1);
    EXPECT_EQ(CString("abc").Find(nullptr), -1);
}

TEST(CStringTest, ReverseFindsTheLastUnit) {
    EXPECT_EQ(CString("a/b/c").ReverseFind(u'/'), 3);
    EXPECT_EQ(CString("/").ReverseFind(u'/'), 0);
    EXPECT_EQ(CString("abc").ReverseFind(u'/'), -1);
}

TEST(CStringTest, PinsMidWithCountZeroTakesTheRest) {
    CString const text("abcdef");
    EXPECT_EQ(text.Mid(3, 0), "def");
    EXPECT_EQ(text.Mid(0, 0), "abcdef");
}

TEST(CStringTest, MidStaysInsideTheText) {
    CString const text("abcdef");
    EXPECT_EQ(text.Mid(1, 3), "bcd");
    EXPECT_EQ(text.Mid(4, 9), "ef");
    EXPECT_EQ(text.Mid(6, 1), "");
    EXPECT_EQ(text.Mid(7, 0), "");
}

TEST(CStringTest, LeftAndRightStayInsideTheText) {
    CString const text("abcdef");
    EXPECT_EQ(text.Left(2), "ab");
    EXPECT_EQ(text.Left(0), "");
    EXPECT_EQ(text.Left(7), "abcdef");
    EXPECT_EQ(text.Right(2), "ef");
    EXPECT_EQ(text.Right(0), "");
    EXPECT_EQ(text.Right(7), "abcdef");
}

TEST(CStringTest, LowersEveryCodePoint) {
    CString text(L"ABC-\u00C4\u0416\u03A3");
    text.MakeLower();
    EXPECT_EQ(text, L"abc-\u00E4\u0436\u03C3");
}

TEST(CStringTest, LowersPairsAndKeepsLoneSurrogates) {
    CString pair(u"\xD801\xDC00"sv); // U+10400, lower case U+10428
    pair.MakeLower();
    EXPECT_EQ(pair.Units(), u"\xD801\xDC28"sv);
    CString lone(u"A\xD801"
                 u"B\xDC00"
                 u"C\xD83D"sv);
    lone.MakeLower();
    EXPECT_EQ(lone.Units(), u"a\xD801"
                            u"b\xDC00"
                            u"c\xD83D"sv);
}

TEST(CStringTest, EmptyRemovesAllUnits) {
    CString text("abc");
    text.Empty();
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CStringTest, PathAppendPutsOneSlashBetween) {
    auto const joined = [](wchar_t const* left, wchar_t const* right) {
        CString path(left);
        path.PathAppend(right);
        return path.ToUtf8();
    };
    EXPECT_EQ(joined(L"/music", L"song.mp3"), "/music/song.mp3");
    EXPECT_EQ(joined(L"/music/", L"song.mp3"), "/music/song.mp3");
    EXPECT_EQ(joined(L"/music", L"/song.mp3"), "/music/song.mp3");
    EXPECT_EQ(joined(L"/music//", L"//a/b"), "/music/a/b");
    EXPECT_EQ(joined(L"/", L"a"), "/a");
    EXPECT_EQ(joined(L"", L"a"), "a");
    EXPECT_EQ(joined(L"/music", L""), "/music");
    EXPECT_EQ(joined(L"/music", nullptr), "/music");
}

TEST(CStringTest, PathAppendTakesItsOwnText) {
    CString path("a");
    path.PathAppend(path);
    EXPECT_EQ(path, "a/a");
}

TEST(CStringTest, EncodesUtf8) {
    EXPECT_EQ(CString(u"a\u00E9\u20AC\xD83D\xDE00"sv).ToUtf8(),
              "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    // U+FFFD is EF BF BD.
    EXPECT_EQ(CString(u"a\xDE00"
                      u"b\xD83D"sv)
                  .ToUtf8(),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD");
}

TEST(CStringTest, PathsKeepInvalidBytesAsLoneSurrogates) {
    CString const path = CString::FromPath("/m/caf\xE9.mp3");
    EXPECT_EQ(path.Units(), u"/m/caf\xDCE9.mp3"sv);
    EXPECT_EQ(path.ToPath(), "/m/caf\xE9.mp3");
    EXPECT_EQ(path.ToUtf8(), "/m/caf\xEF\xBF\xBD.mp3");
}

TEST(CStringTest, PathsKeepAnyBytes) {
    std::array const names{
        "plain"s,
        "\xF0\x9F\x98\x80.mp3"s,     // an emoji
        "\xF0\x9F\x98"s,             // cut short
        "\xED\xB2\x80"s,             // the surrogate U+DC80, spelled out
        "\xC0\xAF\xFE\xFF"s,         // never valid
        "\x80\xF0\x9F\x98\x80\x80"s, // a pair between escapes
    };
    for (std::string const& name : names) {
        EXPECT_EQ(CString::FromPath(name).ToPath(), name);
    }
    std::string every;
    for (int left = 1; left < 256; ++left) {
        for (int right = 0x7E; right < 256; ++right) {
            every += static_cast<char>(left);
            every += static_cast<char>(right);
        }
    }
    EXPECT_EQ(CString::FromPath(every).ToPath(), every);
}

TEST(CStringTest, PathsSurviveTheWideRoundTrip) {
    std::string const name = "\xF0\x9F\x98\x80 caf\xE9.mp3";
    CString const path = CString::FromPath(name);
    EXPECT_EQ(CString(static_cast<wchar_t const*>(path)).ToPath(), name);
}

TEST(CStringTest, OtherLoneSurrogatesGetThreeBytesInPaths) {
    // U+D83D is 1101 100000 111101: ED A0 BD.
    EXPECT_EQ(CString(u"a\xD83D"sv).ToPath(), "a\xED\xA0\xBD");
}
