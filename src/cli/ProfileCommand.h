// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Command.h"

#include <string>
#include <vector>

class CString;
struct CDecodeReport;

/// `tactus profile`: prints the whole result record of files as JSON.
class CProfileCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

private:
    /// Profiles one file. Returns: its JSON text; empty, after a message, when there is none.
    std::string ProfileFile(std::string const& name, CString const& path);

    /// Tells why there is nothing, or not all, of a file; nothing when `reason` is empty.
    void ReportTrouble(std::string const& name, std::string const& reason,
                       CDecodeReport const& report);

    bool m_bTrace = false;
    bool m_bHarmony = false;
    bool m_bVerbose = false;
    std::vector<std::string> m_vFiles;
    bool m_bFailed = false; // a file has no record
    bool m_bWarned = false; // a file has one of a part of it
};
