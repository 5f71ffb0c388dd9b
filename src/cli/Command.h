// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

namespace CLI {
class App;
}

/// One command of the program, such as `tactus analyze`: its options and what it does with them.
/// A command lies in a source of its own and is entered in the list of `cli/Program.cpp`.
/// Thread: main.
class ICommand {
public:
    virtual ~ICommand() = default;

    /// Adds the command with its options and operands to `program`; the parsed values are kept in
    /// this object, which outlives the parsing.
    /// Returns: what was added, so that the program knows when it was chosen.
    virtual CLI::App* AddTo(CLI::App& program) = 0;

    /// Does the work once the options have been read.
    /// Returns: one of `cli/ExitCode.h`.
    virtual int Run() = 0;

protected:
    ICommand() = default;
    ICommand(ICommand const&) = delete;
    ICommand& operator=(ICommand const&) = delete;
};
