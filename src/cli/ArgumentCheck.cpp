// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps: go through the words; a command leads on to its own options; an option is looked up
// and its value passed over; operands are counted.

#include "cli/ArgumentCheck.h"

#include "cli/FolderWalk.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <numeric>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace {

constexpr std::size_t kMostTypos = 2; // Fixed: as many wrong letters a suggestion bridges.

/// The letters to be inserted, removed or replaced to get from `a` to `b`.
std::size_t Distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t corner = row[0];
        row[0] = i + 1;
        for (std::size_t k = 0; k < b.size(); ++k) {
            std::size_t const replaced = corner + (a[i] == b[k] ? 0 : 1);
            corner = row[k + 1];
            row[k + 1] = std::min({replaced, row[k] + 1, row[k + 1] + 1});
        }
    }
    return row.back();
}

/// "; did you mean X?" when one of `names` is near to `word`, else nothing.
std::string Suggestion(std::string_view word, std::vector<std::string> const& names) {
    std::string nearest;
    std::size_t least = kMostTypos + 1;
    for (std::string const& name : names) {
        bool const isBegun = word.size() > kMostTypos && name.starts_with(word);
        std::size_t const distance = isBegun ? 0 : Distance(word, name);
        if (distance < least && distance < word.size()) {
            least = distance;
            nearest = name;
        }
    }
    return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

std::vector<CLI::App const*> CommandsOf(CLI::App const& app) {
    return app.get_subcommands([](CLI::App const*) { return true; });
}

CLI::App const* FindCommand(CLI::App const& app, std::string const& name) {
    for (CLI::App const* command : CommandsOf(app)) {
        if (command->get_name() == name) {
            return command;
        }
    }
    return nullptr;
}

bool TakesValue(CLI::Option const& option) {
    return option.get_items_expected_max() > 0;
}

/// The words of one command line on their way through the commands.
class CArgumentCheck {
public:
    CArgumentCheck(CLI::App const& program, int argc, char const* const* argv)
        : m_pApp(&program), m_vWords(argv + 1, argv + argc) {}

    CArgumentProblem Run() {
        while (m_sProblem.empty() && m_nNext < m_vWords.size()) {
            std::string const& word = m_vWords[m_nNext++];
            bool const isOption = word.size() > 1 && word.front() == '-';
            if (m_bOperandsOnly || (!isOption && CommandsOf(*m_pApp).empty())) {
                CheckOperand(word);
            } else if (word == "--") {
                m_bOperandsOnly = true;
            } else if (word.starts_with("--")) {
                CheckLong(word);
            } else if (isOption) {
                CheckShort(word);
            } else {
                CheckCommand(word);
            }
            if (m_bHelp) {
                return {};
            }
        }
        return {m_sProblem, m_pApp};
    }

private:
    void CheckCommand(std::string const& word);
    void CheckOperand(std::string const& word);
    void CheckLong(std::string const& word);
    void CheckShort(std::string const& word);
    void PassValue(std::string const& name, bool isEmpty);
    void Unknown(std::string const& name);

    CLI::App const* m_pApp;
    std::vector<std::string> m_vWords;
    std::size_t m_nNext = 0;
    std::size_t m_nOperands = 0;
    bool m_bOperandsOnly = false;
    bool m_bHelp = false; // help or the version is asked for: nothing else matters
    std::string m_sProblem;
};

void CArgumentCheck::CheckCommand(std::string const& word) {
    if (CLI::App const* const command = FindCommand(*m_pApp, word); command != nullptr) {
        m_pApp = command;
        return;
    }
    struct stat ignored {};
    bool const isPath = HasAudioExtension(word) || ::stat(word.c_str(), &ignored) == 0;
    if (m_pApp->get_parent() == nullptr && isPath) {
        m_sProblem = word + ": no command comes before it: tactus analyze finds the tempo of files";
        return;
    }
    std::vector<std::string> names;
    for (CLI::App const* command : CommandsOf(*m_pApp)) {
        names.push_back(command->get_name());
    }
    m_sProblem = word + ": there is no such command" + Suggestion(word, names);
}

void CArgumentCheck::CheckOperand(std::string const& word) {
    std::size_t room = 0;
    for (CLI::Option const* option : m_pApp->get_options()) {
        room += option->get_positional()
                    ? static_cast<std::size_t>(option->get_items_expected_max())
                    : 0;
    }
    if (++m_nOperands > room) {
        m_sProblem = word + ": is one too many for " + FullName(*m_pApp);
    }
}

void CArgumentCheck::CheckLong(std::string const& word) {
    std::size_t const equals = word.find('=');
    std::string const name = word.substr(0, equals);
    CLI::Option const* const option = m_pApp->get_option_no_throw(name);
    bool const hasValue = equals != std::string::npos;
    if (option == nullptr) {
        Unknown(name);
    } else if (TakesValue(*option)) {
        m_nNext += hasValue ? 0 : 1;
        PassValue(name, hasValue ? equals + 1 == word.size()
                                 : m_nNext > m_vWords.size() || m_vWords[m_nNext - 1].empty());
    } else if (hasValue) {
        m_sProblem = name + ": takes no value";
    } else {
        m_bHelp = name == "--help" || name == "--version";
    }
}

void CArgumentCheck::CheckShort(std::string const& word) {
    for (std::size_t i = 1; i < word.size() && !m_bHelp; ++i) {
        std::string const name = std::string("-") + word[i];
        CLI::Option const* const option = m_pApp->get_option_no_throw(name);
        if (option == nullptr) {
            Unknown(word.size() > 2 ? word : name);
            return;
        }
        if (TakesValue(*option)) {
            bool const isApart = i + 1 == word.size();
            m_nNext += isApart ? 1 : 0;
            PassValue(name,
                      isApart && (m_nNext > m_vWords.size() || m_vWords[m_nNext - 1].empty()));
            return;
        }
        m_bHelp = name == "-h";
    }
}

void CArgumentCheck::PassValue(std::string const& name, bool isEmpty) {
    if (isEmpty) {
        CLI::Option const* const option = m_pApp->get_option_no_throw(name);
        m_sProblem = name + ": needs a value (" + option->get_description() + ")";
    }
}

void CArgumentCheck::Unknown(std::string const& name) {
    for (CLI::App const* command : CommandsOf(*m_pApp)) {
        if (command->get_option_no_throw(name) != nullptr) {
            m_sProblem = name;
            m_sProblem.append(": comes after the command: ").append(FullName(*command));
            m_sProblem.append(" ").append(name);
            return;
        }
    }
    std::vector<std::string> names;
    for (CLI::Option const* option : m_pApp->get_options()) {
        for (std::string const& known : option->get_lnames()) {
            names.push_back("--" + known);
        }
    }
    std::string const suggestion = Suggestion(name, names);
    m_sProblem = name + ": is no option of " + FullName(*m_pApp) + suggestion;
    if (suggestion.empty() && !name.starts_with("--")) {
        m_sProblem += "; if you mean a file, write ./" + name;
    }
}

} // namespace

CArgumentProblem FindArgumentProblem(CLI::App const& program, int argc, char const* const* argv) {
    return CArgumentCheck(program, argc, argv).Run();
}

std::string FullName(CLI::App const& app) {
    CLI::App const* const parent = app.get_parent();
    return (parent == nullptr ? "" : FullName(*parent) + " ") + app.get_name();
}
