// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Arguments.h"

#include <gtest/gtest.h>

namespace {

CArguments Read(std::initializer_list<char const*> arguments) {
    std::vector<char const*> all{"tactus-desktop"};
    for (char const* argument : arguments) {
        all.push_back(argument);
    }
    return ReadArguments(static_cast<int>(all.size()), all.data());
}

using Texts = std::vector<std::string>;

} // namespace

TEST(ArgumentsTest, PathsKeepTheirOrder) {
    EXPECT_EQ(Read({"/b", "/a", "/c/"}).m_vPaths, (Texts{"/b", "/a", "/c"}));
    EXPECT_TRUE(Read({}).m_vPaths.empty());
}

TEST(ArgumentsTest, BehindTwoDashesEverythingIsAPath) {
    CArguments const arguments = Read({"--", "--help", "--"});
    ASSERT_EQ(arguments.m_vPaths.size(), 2U);
    EXPECT_TRUE(arguments.m_vPaths[0].ends_with("/--help"));
    EXPECT_TRUE(arguments.m_vPaths[1].ends_with("/--"));
    EXPECT_FALSE(arguments.m_bHelp);
}

TEST(ArgumentsTest, HelpAndVersionAreOptions) {
    EXPECT_TRUE(Read({"--help"}).m_bHelp);
    EXPECT_TRUE(Read({"-h"}).m_bHelp);
    EXPECT_TRUE(Read({"--version"}).m_bVersion);
    EXPECT_TRUE(Read({"--factory"}).m_bFactory);
}

TEST(ArgumentsTest, TheFirstUnknownOptionIsNamed) {
    EXPECT_EQ(Read({"/a", "--fast", "-x"}).m_sUnknown, "--fast");
    EXPECT_EQ(Read({"/a"}).m_sUnknown, "");
}
