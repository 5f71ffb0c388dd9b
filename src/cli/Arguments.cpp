// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace {

// Fixed: marks a shielded argument; the parser sees an ordinary word.
constexpr char kShield = '\x01';

/// A word that means something to the parser: a list, or the end of a command.
bool IsParsersOwn(std::string const& argument) {
    bool const isBracketed =
        argument.size() > 1 && argument.front() == '[' && argument.back() == ']';
    return isBracketed || argument == "++";
}

} // namespace

std::vector<std::string> ReversedArguments(int argc, char const* const* argv) {
    std::vector<std::string> arguments;
    bool isOperand = false;
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        if (!isOperand && argument == "--") {
            isOperand = true;
            continue;
        }
        if (isOperand || IsParsersOwn(argument) || argument.starts_with(kShield)) {
            argument.insert(argument.begin(), kShield);
        }
        arguments.push_back(std::move(argument));
    }
    std::ranges::reverse(arguments);
    return arguments;
}

std::string Unshielded(std::string argument) {
    if (argument.starts_with(kShield)) {
        argument.erase(0, 1);
    }
    return argument;
}

void UnshieldValues(CLI::App& app) {
    CLI::Validator const unshield(
        [](std::string& value) {
            value = Unshielded(std::move(value));
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
