// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The program from outside: what every command has in common.

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

CProcessResult Tactus(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), TACTUS_PROGRAM);
    return RunProcess(std::move(arguments));
}

TEST(UsageTest, HelpAndVersionGoToStandardOutput) {
    for (std::vector<std::string> const& arguments : {std::vector<std::string>{"--help"},
                                                      {"-h"},
                                                      {"analyze", "--help"},
                                                      {"profile", "--help"}}) {
        CProcessResult const result = Tactus(arguments);
        EXPECT_EQ(result.m_nExit, 0);
        EXPECT_THAT(result.m_sOut, HasSubstr("Usage: tactus"));
        EXPECT_EQ(result.m_sErr, "");
    }
    CProcessResult const version = Tactus({"--version"});
    EXPECT_EQ(version.m_nExit, 0);
    EXPECT_THAT(version.m_sOut, testing::MatchesRegex("tactus [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(UsageTest, WrongUsageIsTwoAndWritesNoResults) {
    for (std::vector<std::string> const& arguments : {std::vector<std::string>{},
                                                      {"--bogus"},
                                                      {"bogus"},
                                                      {"analyze"},
                                                      {"analyze", "--bogus", "x"},
                                                      {"analyze", "-j", "0", "x"},
                                                      {"analyze", "-j", "-1", "x"},
                                                      {"analyze", "-j", "many", "x"},
                                                      {"analyze", "-j", "257", "x"},
                                                      {"analyze", "--format", "xml", "x"},
                                                      {"analyze", "--format"},
                                                      {"profile"},
                                                      {"profile", "--bogus", "x"}}) {
        CProcessResult const result = Tactus(arguments);
        EXPECT_EQ(result.m_nExit, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(result.m_sOut, "");
        EXPECT_THAT(result.m_sErr, StartsWith("tactus: "));
    }
    EXPECT_THAT(Tactus({"bogus"}).m_sErr, StartsWith("tactus: bogus: there is no such command\n"));
    EXPECT_THAT(Tactus({"analyze", "--", "--bogus"}).m_sErr,
                HasSubstr("tactus: --bogus: No such file or directory"));
}

TEST(UsageTest, HelpThatCannotBeWrittenIsAFailure) {
    CProcessSetup setup;
    setup.m_vArguments = {TACTUS_PROGRAM, "--help"};
    setup.m_sOutput = "/dev/full";
    EXPECT_EQ(RunProcess(setup).m_nExit, 1);
}

} // namespace
