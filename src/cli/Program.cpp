// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Program.h"

#include "cli/AnalyzeCommand.h"
#include "cli/ArgumentCheck.h"
#include "cli/Arguments.h"
#include "cli/CacheCommand.h"
#include "cli/Command.h"
#include "cli/DupesCommand.h"
#include "cli/ExitCode.h"
#include "cli/ExportCommand.h"
#include "cli/FixCommand.h"
#include "cli/HelpFormat.h"
#include "cli/HistoryCommand.h"
#include "cli/Message.h"
#include "cli/ProfileCommand.h"
#include "cli/TagCommand.h"
#include "cli/UndoCommand.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

// The steps: list the commands, look for what is wrong with the words, parse, run.

namespace {

using CommandList = std::vector<std::unique_ptr<ICommand>>;

constexpr char kVersionLine[] = "tactus " TACTUS_VERSION;
constexpr char kExamples[] = "Examples:\n"
                             "  tactus analyze ~/Music\n"
                             "  tactus analyze --write song.mp3\n"
                             "  tactus analyze --format csv -o tempos.csv ~/Music\n";

/// The commands in the order of the help text. A new one is entered here.
CommandList MakeCommands() {
    CommandList commands;
    commands.push_back(std::make_unique<CAnalyzeCommand>());
    commands.push_back(std::make_unique<CProfileCommand>());
    commands.push_back(std::make_unique<CExportCommand>());
    commands.push_back(std::make_unique<CDupesCommand>());
    commands.push_back(std::make_unique<CTagCommand>());
    commands.push_back(std::make_unique<CHistoryCommand>());
    commands.push_back(std::make_unique<CUndoCommand>());
    commands.push_back(std::make_unique<CFixCommand>());
    commands.push_back(std::make_unique<CCacheCommand>());
    return commands;
}

/// Gives `command` and those below it what every command has.
void AddCommonOptions(CLI::App& command) {
    command.set_help_flag("-h,--help", "Show this help");
    command.set_version_flag("--version", kVersionLine, "Show the version")->group("");
    for (CLI::App* below : command.get_subcommands([](CLI::App*) { return true; })) {
        AddCommonOptions(*below);
    }
}

/// Says what is wrong and where more is told. Returns: the exit code.
int RefuseUsage(std::string const& problem, CLI::App const& app) {
    ReportProblem(problem);
    ReportProblem("'" + FullName(app) + " --help' tells more");
    return kExitUsage;
}

/// Shows how the program is called to somebody who gave it nothing to do.
int ShowUsage(CLI::App const& app) {
    std::string const text = UsageLine(app) + app.get_description() + "\n\n" + kExamples +
                             "\n'tactus --help' lists the commands.\n";
    (void)std::fwrite(text.data(), 1, text.size(), stderr);
    return kExitUsage;
}

/// The command of whose words the parser read the last.
CLI::App const& ChosenApp(CLI::App const& app) {
    auto const chosen = app.get_subcommands();
    return chosen.empty() ? app : ChosenApp(*chosen.back());
}

/// Shows what the parser has to say: help and version on standard output, errors on the other.
int FinishParsing(CLI::App const& app, CLI::ParseError const& error) {
    CLI::App const& chosen = ChosenApp(app);
    if (error.get_exit_code() == 0) {
        bool const isHelp = error.get_name() == "CallForHelp";
        std::string const text = isHelp ? chosen.help() : std::string(kVersionLine) + "\n";
        bool const isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
        if (!isWritten || std::fflush(stdout) != 0) {
            ReportProblem("standard output", "can't be written");
            return kExitOutput;
        }
        return kExitDone;
    }
    if (error.get_name() != "RequiredError") {
        return RefuseUsage(error.what(), chosen);
    }
    std::string usage = UsageLine(chosen);
    usage.pop_back();
    return RefuseUsage("something is missing. " + usage, chosen);
}

} // namespace

int RunProgram(int argc, char const* const* argv) {
    CLI::App app("Finds the tempo of music files.", "tactus");
    app.formatter(std::make_shared<CHelpFormat>());
    app.require_subcommand(1);

    CommandList const commands = MakeCommands();
    std::vector<CLI::App*> parsers;
    for (auto const& command : commands) {
        parsers.push_back(command->AddTo(app));
    }
    app.footer(kExamples);
    AddCommonOptions(app);
    app.get_option("--version")->group("Options");
    UnshieldValues(app);
    if (argc < 2) {
        return ShowUsage(app);
    }
    if (CArgumentProblem const problem = FindArgumentProblem(app, argc, argv);
        !problem.m_sText.empty()) {
        return RefuseUsage(problem.m_sText, *problem.m_pApp);
    }
    try {
        app.parse(ReversedArguments(argc, argv));
    } catch (CLI::ParseError const& error) {
        return FinishParsing(app, error);
    }
    for (std::size_t i = 0; i < commands.size(); ++i) {
        if (parsers[i]->parsed()) {
            return commands[i]->Run();
        }
    }
    return kExitUsage;
}
