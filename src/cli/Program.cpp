// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Program.h"

#include "cli/AnalyzeCommand.h"
#include "cli/Command.h"
#include "cli/ExitCode.h"
#include "cli/Message.h"
#include "cli/ProfileCommand.h"
#include "cli/TagCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

// The steps: list the commands, shield the operands that the parser would take apart, parse, run.

namespace {

using CommandList = std::vector<std::unique_ptr<ICommand>>;

/// The commands in the order of the help text. A new one is entered here.
CommandList MakeCommands() {
    CommandList commands;
    commands.push_back(std::make_unique<CAnalyzeCommand>());
    commands.push_back(std::make_unique<CProfileCommand>());
    commands.push_back(std::make_unique<CTagCommand>());
    return commands;
}

// Fixed: marks a shielded argument; the parser sees an ordinary word.
constexpr char kShield = '\x01';

bool IsBracketed(std::string const& argument) {
    return argument.size() > 1 && argument.front() == '[' && argument.back() == ']';
}

/// The arguments in reverse, as the parser wants them. What follows "--" is an operand whatever it
/// looks like, and a path in brackets is not a list: both are shielded.
std::vector<std::string> ReversedArguments(int argc, char const* const* argv) {
    std::vector<std::string> arguments;
    bool isOperand = false;
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        if (!isOperand && argument == "--") {
            isOperand = true;
            continue;
        }
        if (isOperand || IsBracketed(argument) || argument.starts_with(kShield)) {
            argument.insert(argument.begin(), kShield);
        }
        arguments.push_back(std::move(argument));
    }
    std::ranges::reverse(arguments);
    return arguments;
}

/// Takes the shield off every value that any option or operand of `app` receives.
void UnshieldValues(CLI::App& app) {
    CLI::Validator const unshield(
        [](std::string& value) {
            if (value.starts_with(kShield)) {
                value.erase(0, 1);
            }
            return std::string();
        },
        std::string());
    for (CLI::Option* option : app.get_options()) {
        option->transform(unshield);
    }
    for (CLI::App* command : app.get_subcommands([](CLI::App*) { return true; })) {
        UnshieldValues(*command);
    }
}

/// Shows what the parser has to say: help and version on standard output, errors on the other.
int FinishParsing(CLI::App const& app, CLI::ParseError const& error) {
    std::ostringstream out;
    std::ostringstream problem;
    if (app.exit(error, out, problem) == 0) {
        std::string const text = out.str();
        bool const isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
        if (!isWritten || std::fflush(stdout) != 0) {
            ReportProblem("standard output", "can't be written");
            return kExitFailed;
        }
        return kExitDone;
    }
    std::vector<std::string> const strangers = app.remaining();
    if (error.get_name() == "RequiredError" && !strangers.empty()) {
        ReportProblem(strangers.front(), "there is no such command");
    } else {
        ReportProblem(error.what());
    }
    ReportProblem("'--help' lists what can be asked for");
    return kExitUsage;
}

} // namespace

int RunProgram(int argc, char const* const* argv) {
    CLI::App app("Finds the tempo of music files.", "tactus");
    app.set_version_flag("--version", std::string("tactus ") + TACTUS_VERSION);
    app.require_subcommand(1);

    CommandList const commands = MakeCommands();
    std::vector<CLI::App*> parsers;
    for (auto const& command : commands) {
        parsers.push_back(command->AddTo(app));
    }
    UnshieldValues(app);
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
