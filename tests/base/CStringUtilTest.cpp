// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/CString.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

using namespace std::string_literals;

TEST(CStringUtilTest, PinsCopiesIgnoreTheRoomTheyAreTold) {
    std::array<char, 8> narrow{};
    EXPECT_EQ(CStringUtil::strcpy_s(narrow.data(), 1, "abc"), 0);
    EXPECT_EQ(narrow.data(), "abc"s);
    EXPECT_EQ(CStringUtil::strncpy_s(narrow.data(), 0, "xyz", 3), 0);
    EXPECT_EQ(narrow.data(), "xyz"s);
    std::array<wchar_t, 8> wide{};
    EXPECT_EQ(CStringUtil::wcscpy_s(wide.data(), 1, L"abc"), 0);
    EXPECT_EQ(wide.data(), L"abc"s);
    EXPECT_EQ(CStringUtil::wcsncpy_s(wide.data(), 0, L"xyz", 3), 0);
    EXPECT_EQ(wide.data(), L"xyz"s);
}

TEST(CStringUtilTest, CountedCopiesCutAndFillUpWithZeros) {
    std::array<char, 6> narrow{'#', '#', '#', '#', '#', '#'};
    CStringUtil::strncpy_s(narrow.data(), narrow.size(), "ab", 4);
    EXPECT_EQ(narrow, (std::array<char, 6>{'a', 'b', 0, 0, '#', '#'}));
    CStringUtil::strncpy_s(narrow.data(), narrow.size(), "wxyz", 2);
    EXPECT_EQ(narrow, (std::array<char, 6>{'w', 'x', 0, 0, '#', '#'}));
    std::array<wchar_t, 4> wide{L'#', L'#', L'#', L'#'};
    CStringUtil::wcsncpy_s(wide.data(), wide.size(), L"a", 3);
    EXPECT_EQ(wide, (std::array<wchar_t, 4>{L'a', 0, 0, L'#'}));
    CStringUtil::wcsncpy_s(wide.data(), wide.size(), L"xyz", 2);
    EXPECT_EQ(wide, (std::array<wchar_t, 4>{L'x', L'y', 0, L'#'}));
}
