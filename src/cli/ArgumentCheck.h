// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace CLI {
class App;
}

/// What is wrong with the words of a command line, found before the parser reads them: it would
/// say so in its own terms, or blame something else.
struct CArgumentProblem {
    std::string m_sText;              // for a person; empty: nothing is wrong
    CLI::App const* m_pApp = nullptr; // whose help tells more
};

/// Looks at commands, options and their values: unknown or misplaced ones, values that are missing
/// or not wanted, operands beyond those that a command takes.
CArgumentProblem FindArgumentProblem(CLI::App const& program, int argc, char const* const* argv);

/// "tactus tag get": the commands that lead to `app`.
std::string FullName(CLI::App const& app);
