// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <CLI/CLI.hpp>

/// Lays out the help of a command in lines of 80 cells at the most: what it does, how it is called,
/// operands, options, commands, and what the command itself wants to add.
class CHelpFormat final : public CLI::Formatter {
public:
    std::string make_help(CLI::App const* app, std::string name,
                          CLI::AppFormatMode mode) const override;
};

/// "Usage: tactus analyze [OPTION]... PATH..." and a line end.
std::string UsageLine(CLI::App const& app);
