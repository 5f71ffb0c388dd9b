// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/HelpFormat.h"

#include "cli/ArgumentCheck.h"

#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kLineCells = 80;         // Standard: what VT100s had.
constexpr std::size_t kDescriptionColumn = 26; // Fixed: the longest option and a gap.

using OptionList = std::vector<CLI::Option const*>;

/// `text` in lines that end before `kLineCells`, each after the first indented to `column`, which
/// is where the first one begins. The texts are ours and ASCII.
std::string Wrapped(std::string_view text, std::size_t column) {
    std::string lines;
    while (text.size() > kLineCells - column) {
        std::size_t const end = text.rfind(' ', kLineCells - column);
        if (end == std::string_view::npos) {
            break;
        }
        lines += std::string(text.substr(0, end)) + "\n" + std::string(column, ' ');
        text.remove_prefix(end + 1);
    }
    return lines + std::string(text) + "\n";
}

/// A name and what it stands for, in two columns.
std::string Entry(std::string const& name, std::string const& description) {
    std::string const head = "  " + name;
    bool const isLong = head.size() + 2 > kDescriptionColumn;
    std::string const gap = isLong ? "\n" + std::string(kDescriptionColumn, ' ')
                                   : std::string(kDescriptionColumn - head.size(), ' ');
    return head + gap + Wrapped(description, kDescriptionColumn);
}

/// "-j, --jobs N"; a long option without a short one stands under the long ones.
std::string OptionNames(CLI::Option const& option) {
    std::string names;
    for (std::string const& name : option.get_snames()) {
        names += "-" + name + ", ";
    }
    if (names.empty()) {
        names = "    ";
    }
    names += "--" + option.get_lnames().front();
    return names + (option.get_items_expected_max() > 0 ? " " + option.get_type_name() : "");
}

OptionList OptionsOf(CLI::App const& app, bool isPositional) {
    return app.get_options([isPositional](CLI::Option const* option) {
        return !option->get_group().empty() && option->get_positional() == isPositional;
    });
}

std::string CommandEntries(CLI::App const& app) {
    std::string text;
    for (CLI::App const* command : app.get_subcommands([](CLI::App const*) { return true; })) {
        text += Entry(command->get_name(), command->get_description());
    }
    return text.empty() ? "" : "\nCommands:\n" + text;
}

} // namespace

std::string UsageLine(CLI::App const& app) {
    std::string line = "Usage: " + FullName(app);
    bool const hasCommands = !app.get_subcommands([](CLI::App const*) { return true; }).empty();
    line += hasCommands ? " COMMAND ..." : OptionsOf(app, false).size() > 1 ? " [OPTION]..." : "";
    for (CLI::Option const* operand : OptionsOf(app, true)) {
        bool const isList = operand->get_expected_max() >= CLI::detail::expected_max_vector_size;
        line += " " + operand->get_name(true, false) + (isList ? "..." : "");
    }
    return line + "\n";
}

std::string CHelpFormat::make_help(CLI::App const* app, std::string /*name*/,
                                   CLI::AppFormatMode /*mode*/) const {
    std::string text = UsageLine(*app) + Wrapped(app->get_description(), 0) + "\n";
    OptionList const operands = OptionsOf(*app, true);
    for (CLI::Option const* operand : operands) {
        text += Entry(operand->get_name(true, false), operand->get_description());
    }
    text += operands.empty() ? "Options:\n" : "\nOptions:\n";
    for (CLI::Option const* option : OptionsOf(*app, false)) {
        text += Entry(OptionNames(*option), option->get_description());
    }
    text += CommandEntries(*app);
    return text + (app->get_footer().empty() ? "" : "\n" + app->get_footer());
}
