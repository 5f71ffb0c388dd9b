// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Command.h"
#include "cli/SongRun.h"
#include "export/SongJson.h"

#include <string>

class CString;
struct CDecodeReport;

/// `tactus profile`: prints the record of songs as JSON, or the trace of the engine's stages.
class CProfileCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

private:
    int RunTrace();

    /// Profiles one file. Returns: its trace as JSON; empty, after a message, when there is none.
    std::string TraceFile(std::string const& name, CString const& path);

    /// Tells why there is nothing, or not all, of a file; nothing when `reason` is empty.
    void ReportTrouble(std::string const& name, std::string const& reason,
                       CDecodeReport const& report);

    CSongRun m_run;
    CSongJsonWishes m_wishes;
    bool m_bTrace = false;
    bool m_bHarmony = false;
    bool m_bFailed = false; // a file has no trace
    bool m_bWarned = false; // a file has one of a part of it
};
