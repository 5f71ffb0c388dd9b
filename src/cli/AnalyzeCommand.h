// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Command.h"
#include "cli/FileRun.h"
#include "cli/Report.h"
#include "export/SongJson.h"
#include "records/Journal.h"

#include <cstddef>
#include <memory>
#include <string>

/// `tactus analyze`: finds the tempo of files and of what lies in folders.
class CAnalyzeCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

private:
    void AddWriteOptions(CLI::App& app);
    void AddOutputOptions(CLI::App& app);
    void AddCareOptions(CLI::App& app);
    void AddRecordOptions(CLI::App& app);
    [[nodiscard]] std::unique_ptr<IReport> Report(COutput& output) const;
    void AddReadingOptions(CLI::App& app);
    int Analyze();
    void Settle();
    void RunJobs(COutput& output, COutput& log);
    void ReportNewVersions() const;

    CJournal m_journal{StateFolder()};
    CFileRun m_run;
    CSongOptions m_song;
    bool m_bShowsOther = false; // the next reading of each tempo
    bool m_bReview = false;
    EReportFormat m_format = EReportFormat::Table;
    bool m_bFull = false; // rows are whole records, or some of their fields
    CSongJsonWishes m_wishes;
    std::string m_sLog;
    std::size_t m_nNewVersions = 0; // tags of version 2.4 that became version 2.3
};
