// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/NameList.h"

#include "support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NameListTest, NamesEndWithALineOrAZeroByte) {
    EXPECT_THAT(NamesIn("a\nb c\n\nd", '\n'), ElementsAre("a", "b c", "d"));
    std::string const zeros("a\nb\0c\0", 6);
    EXPECT_THAT(NamesIn(zeros, '\0'), ElementsAre("a\nb", "c"));
    EXPECT_THAT(NamesIn("", '\n'), IsEmpty());
    EXPECT_THAT(NamesIn("\n\n", '\n'), IsEmpty());
    // Names are bytes: what isn't UTF-8 stays, and so does a carriage return.
    EXPECT_THAT(NamesIn("\xFF\r\n", '\n'), ElementsAre("\xFF\r"));
}

TEST(NameListTest, AFileIsReadToItsEndBehindWhatIsThere) {
    CTempFolder const folder;
    // Longer than one read, and a dash is a name here.
    std::string list;
    for (int i = 0; i < 20'000; ++i) {
        list += "song " + std::to_string(i) + ".mp3\n";
    }
    WriteText(folder / "list", list + "-\n");
    std::vector<std::string> names = {"first"};
    EXPECT_EQ(ReadNameList(folder / "list", false, names), "");
    ASSERT_EQ(names.size(), 20'002U);
    EXPECT_EQ(names.front(), "first");
    EXPECT_EQ(names[20'000], "song 19999.mp3");
    EXPECT_EQ(names.back(), "./-");
}

TEST(NameListTest, WhatCannotBeReadIsTold) {
    CTempFolder const folder;
    std::vector<std::string> names;
    EXPECT_EQ(ReadNameList(folder / "none", false, names), "No such file or directory");
    EXPECT_EQ(ReadNameList(folder.Path(), false, names), "Is a directory");
    EXPECT_THAT(names, IsEmpty());
}

} // namespace
