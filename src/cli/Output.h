// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

/// Where results go: standard output, or a file. What can't be written is found out at the latest
/// by `Finish`.
/// Thread: main.
class COutput {
public:
    COutput() = default;
    ~COutput();
    COutput(COutput const&) = delete;
    COutput& operator=(COutput const&) = delete;

    /// Why the open file must not be replaced, for a person; empty when it may be.
    using ReplaceCheck = std::function<std::string(std::string const& path, int file)>;

    /// Opens the file at `path` instead of standard output, which an empty path and "-" mean. What
    /// the file held is gone from here on, unless `check` speaks against it.
    /// Returns: 0, or what to exit with after a message to the user, one of `cli/ExitCode.h`.
    int Open(std::string const& path, ReplaceCheck const& check = nullptr);

    /// Hands `text` on.
    /// Returns: false once anything could not be written; there is no point in going on.
    bool Write(std::string_view text);

    /// Writes what is held back. Returns: as `Write`.
    bool Flush();

    /// Writes what is still held back and reports a failure to the user.
    /// Returns: false when not everything was written. A reader that has gone away ends the
    /// program here.
    bool Finish();

    /// True when a person reads along on a terminal.
    [[nodiscard]] bool IsTerminal() const;

private:
    int OpenFile();

    std::string m_sName = "standard output";
    int m_nFile = 1;
    int m_nError = 0;
    std::string m_sHeld;
};

/// Cells in a line of the terminal behind `file`, a descriptor; 0 when it is none.
std::size_t TerminalWidth(int file);

/// True when colours and bold letters are welcome on a terminal.
bool AreColoursWelcome();
