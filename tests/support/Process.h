// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TempFolder.h"

#include <string>
#include <sys/types.h>
#include <vector>

/// What a program left behind.
struct CProcessResult {
    int m_nExit = -1;   // exit code; -1 when a signal ended it
    int m_nSignal = 0;  // the signal, if any
    std::string m_sOut; // standard output
    std::string m_sErr; // standard error
};

/// How a program is started.
struct CProcessSetup {
    std::vector<std::string> m_vArguments; // the program first; found through PATH
    std::string m_sFolder;                 // working folder; empty: this process's
    std::string m_sInput;                  // path of its standard input; empty: nothing to read
    std::string m_sOutput;                 // path of its standard output; empty: captured
};

/// A program that runs.
class CProcess {
public:
    explicit CProcess(CProcessSetup const& setup);
    ~CProcess();
    CProcess(CProcess const&) = delete;
    CProcess& operator=(CProcess const&) = delete;

    void Signal(int signal) const;

    /// True once the program has a handler of its own for `signal`.
    [[nodiscard]] bool Catches(int signal) const;

    /// What it has written to standard output so far.
    [[nodiscard]] std::string Output() const;

    /// What it has written to standard error so far.
    [[nodiscard]] std::string Errors() const;

    /// Waits for its end, once.
    CProcessResult Wait();

private:
    CTempFolder m_folder;
    std::string m_sOutput;
    pid_t m_nProcess = 0;
    bool m_bEnded = false;
};

/// Runs a program to its end.
CProcessResult RunProcess(CProcessSetup const& setup);
CProcessResult RunProcess(std::vector<std::string> arguments);

/// Runs ffmpeg quietly with `arguments`; throws when it fails.
void Ffmpeg(std::vector<std::string> const& arguments);

/// Makes `target` of `source`; `options` say how it is encoded.
/// Returns: `target`.
std::string FfmpegEncode(std::string const& source, std::string const& target,
                         std::vector<std::string> const& options);
