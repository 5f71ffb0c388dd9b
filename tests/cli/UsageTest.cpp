// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/CommandTest.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sstream>

// The program from outside: what every command has in common.

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class UsageTest : public CCommandTest {
protected:
    /// Holds that the words are refused with `message` as the first line.
    void ExpectRefused(std::vector<std::string> const& arguments, std::string const& message) {
        CProcessResult const result = Tactus(arguments);
        EXPECT_EQ(result.m_nExit, 2) << message;
        EXPECT_EQ(result.m_sOut, "");
        EXPECT_EQ(result.m_sErr.substr(0, result.m_sErr.find('\n')), "tactus: " + message);
    }
};

TEST_F(UsageTest, HelpAndVersionGoToStandardOutput) {
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

TEST_F(UsageTest, EveryEntryOfAHelpIsIndented) {
    for (char const* command : {"analyze", "profile", "dupes", "history", "undo", "fix"}) {
        std::istringstream help(Tactus({command, "--help"}).m_sOut);
        std::string line;
        while (std::getline(help, line) && !line.empty()) {
        }
        // From the first entry to the first option, without the heads.
        while (std::getline(help, line) && line != "Options:") {
            EXPECT_THAT(line, testing::AnyOf("", testing::StartsWith("  "))) << command;
        }
    }
}

TEST_F(UsageTest, TypesOfValuesAreNamedInPlainWords) {
    EXPECT_THAT(Tactus({"history", "--help"}).m_sOut, HasSubstr("-n, --number N  "));
}

TEST_F(UsageTest, WrongUsageIsTwoAndWritesNoResults) {
    for (std::vector<std::string> const& arguments : {std::vector<std::string>{"--bogus"},
                                                      {"bogus"},
                                                      {"analyze"},
                                                      {"analyze", "--bogus", "x"},
                                                      {"analyze", "-j", "0", "x"},
                                                      {"analyze", "-j", "-1", "x"},
                                                      {"analyze", "-j", "many", "x"},
                                                      {"analyze", "-j", "257", "x"},
                                                      {"analyze", "--format", "xml", "x"},
                                                      {"analyze", "--output", "", "x"},
                                                      {"analyze", "--write=no", "x"},
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

TEST_F(UsageTest, HelpThatCannotBeWrittenIsFive) {
    CProcessSetup setup = Prepare({"--help"});
    setup.m_sOutput = "/dev/full";
    EXPECT_EQ(RunProcess(setup).m_nExit, 5);
}

TEST_F(UsageTest, HelpFitsEightyColumns) {
    for (std::vector<std::string> arguments : {std::vector<std::string>{},
                                               {"analyze"},
                                               {"profile"},
                                               {"tag"},
                                               {"tag", "get"},
                                               {"tag", "set"},
                                               {"tag", "list"}}) {
        arguments.emplace_back("--help");
        CProcessResult const result = Tactus(arguments);
        EXPECT_EQ(result.m_nExit, 0);
        std::istringstream lines(result.m_sOut);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(line.size(), 80U) << line;
        }
    }
}

TEST_F(UsageTest, NothingToDoIsAnsweredByThreeExamples) {
    CProcessResult const result = Tactus({});
    EXPECT_EQ(result.m_nExit, 2);
    EXPECT_EQ(result.m_sOut, "");
    EXPECT_THAT(result.m_sErr, StartsWith("Usage: tactus "));
    EXPECT_THAT(result.m_sErr, testing::ContainsRegex("Examples:\n"
                                                      "  tactus analyze [^\n]+\n"
                                                      "  tactus analyze [^\n]+\n"
                                                      "  tactus analyze [^\n]+\n"));
}

TEST_F(UsageTest, VersionIsToldBehindEveryCommand) {
    std::string const version = Tactus({"--version"}).m_sOut;
    for (std::vector<std::string> const& arguments : {std::vector<std::string>{"analyze"},
                                                      {"analyze", "x"},
                                                      {"profile"},
                                                      {"tag"},
                                                      {"tag", "get"}}) {
        std::vector<std::string> all = arguments;
        all.emplace_back("--version");
        CProcessResult const result = Tactus(all);
        EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
        EXPECT_EQ(result.m_sOut, version);
    }
}

TEST_F(UsageTest, FormatsMayBeSpeltInAnyCase) {
    WriteTagged("a.mp3", "120");
    for (char const* format : {"CSV", "Csv", "csv"}) {
        CProcessResult const result = Tactus({"analyze", "--format", format, "a.mp3"});
        EXPECT_EQ(result.m_nExit, 0) << format;
        EXPECT_THAT(result.m_sOut, StartsWith("path,title,"));
    }
    ExpectRefused({"analyze", "--format", "xml", "a.mp3"},
                  "--format: 'xml' is none of table, csv, json and jsonl");
    ExpectRefused({"analyze", "--format=", "a.mp3"},
                  "--format: needs a value (table (if not said), csv, json or jsonl (an object a "
                  "line))");
}

TEST_F(UsageTest, AnUnknownTypeOfFileIsRefused) {
    WriteTagged("a.mp3", "120");
    EXPECT_EQ(Tactus({"analyze", "--types", "mp3,Flac", "."}).m_nExit, 0);
    CProcessResult const result = Tactus({"analyze", "--types", "mp3,jpg", "."});
    EXPECT_EQ(result.m_nExit, 2);
    EXPECT_EQ(result.m_sOut, "");
    EXPECT_THAT(result.m_sErr, StartsWith("tactus: --types: 'jpg' is none of all, aac, aif, "));
    EXPECT_THAT(result.m_sErr, HasSubstr(" wma and wv\n"));
}

TEST_F(UsageTest, LastOfARepeatedOptionWins) {
    WriteTagged("a.mp3", "120");
    CProcessResult const result = Tactus(
        {"analyze", "--format", "json", "-j", "1", "-q", "-q", "--format=csv", "-j2", "a.mp3"});
    EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
    EXPECT_THAT(result.m_sOut, StartsWith("path,title,"));
    Tactus({"analyze", "-o", "first", "-o", "second", "a.mp3"});
    EXPECT_FALSE(std::filesystem::exists(m_folder / "first"));
    EXPECT_TRUE(std::filesystem::exists(m_folder / "second"));
}

TEST_F(UsageTest, OptionBeforeItsCommandIsExplained) {
    ExpectRefused({"--format", "csv", "x"},
                  "--format: comes after the command: tactus analyze --format");
    ExpectRefused({"-j", "2", "analyze", "x"}, "-j: comes after the command: tactus analyze -j");
    ExpectRefused({"--trace", "x"}, "--trace: comes after the command: tactus profile --trace");
}

TEST_F(UsageTest, NameThatBeginsWithADashIsExplained) {
    WriteTagged("-dash.mp3", "120");
    ExpectRefused({"analyze", "-dash.mp3"}, "-dash.mp3: is no option of tactus analyze; if you "
                                            "mean a file, write ./-dash.mp3");
    EXPECT_EQ(Tactus({"analyze", "./-dash.mp3"}).m_nExit, 0);
    EXPECT_EQ(Tactus({"analyze", "--", "-dash.mp3"}).m_nExit, 0);
}

TEST_F(UsageTest, PathOfPlusSignsIsAPath) {
    std::filesystem::create_directory(m_folder / "++");
    WriteTagged("++/a.mp3", "120");
    CProcessResult const result = Tactus({"analyze", "--format", "csv", "++"});
    EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
    EXPECT_THAT(result.m_sOut, HasSubstr("\n++/a.mp3,"));
    EXPECT_EQ(Tactus({"analyze", "-o", "++", "x"}).m_nExit, 5);
}

TEST_F(UsageTest, NumberOfJobsIsExplained) {
    for (std::vector<std::string> const& arguments :
         {std::vector<std::string>{"--jobs=", "x"}, {"x", "--jobs"}, {"--jobs", "", "x"}}) {
        std::vector<std::string> all = {"analyze"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        EXPECT_THAT(
            Tactus(all).m_sErr,
            StartsWith("tactus: --jobs: needs a value (Files to analyse at once, 1 to 256"));
    }
    ExpectRefused({"analyze", "--jobs=many", "x"}, "--jobs: 'many' is no number from 1 to 256");
    ExpectRefused({"analyze", "-j0", "x"}, "--jobs: '0' is no number from 1 to 256");
    ExpectRefused({"analyze", "-j", "257", "x"}, "--jobs: '257' is no number from 1 to 256");
    ExpectRefused({"analyze", "-j", "2x", "x"}, "--jobs: '2x' is no number from 1 to 256");
}

TEST_F(UsageTest, MistypedWordsAreSetRight) {
    ExpectRefused({"analyz", "x"}, "analyz: there is no such command; did you mean analyze?");
    ExpectRefused({"analyze", "--form", "csv", "x"},
                  "--form: is no option of tactus analyze; did you mean --format?");
    ExpectRefused({"analyze", "--wirte", "x"},
                  "--wirte: is no option of tactus analyze; did you mean --write?");
    ExpectRefused({"tag", "gets", "x"}, "gets: there is no such command; did you mean get?");
    ExpectRefused({"analyze", "--write=no", "x"}, "--write: takes no value");
}

TEST_F(UsageTest, PathWithoutACommandIsExplained) {
    ExpectRefused({"song.mp3"},
                  "song.mp3: no command comes before it: tactus analyze finds the tempo of files");
    ExpectRefused({"."}, ".: no command comes before it: tactus analyze finds the tempo of files");
}

TEST_F(UsageTest, WrongNumberOfOperandsIsExplained) {
    ExpectRefused({"analyze"}, "something is missing. Usage: tactus analyze [OPTION]... PATH...");
    ExpectRefused({"tag", "get", "a.mp3"},
                  "something is missing. Usage: tactus tag get FILE FRAMEID");
    ExpectRefused({"tag"}, "something is missing. Usage: tactus tag COMMAND ...");
    ExpectRefused({"tag", "get", "a.mp3", "TBPM", "x"}, "x: is one too many for tactus tag get");
    EXPECT_THAT(Tactus({"tag", "get", "a.mp3"}).m_sErr,
                testing::EndsWith("\ntactus: 'tactus tag get --help' tells more\n"));
}

} // namespace
