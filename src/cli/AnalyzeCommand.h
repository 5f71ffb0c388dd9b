// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/AnalysisJobs.h"
#include "cli/Command.h"
#include "cli/Progress.h"
#include "cli/Report.h"
#include "cli/RunLock.h"
#include "export/SongJson.h"
#include "records/Journal.h"
#include "records/Places.h"
#include "records/RecordStore.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

class CSummary;

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
    void AddBatchOptions(CLI::App& app);
    int Begin();
    int Analyze();
    void ReportEnd(CSummary const& summary, int exitCode) const;
    void Settle();
    std::string RunJobs(CInputWalk& walk, COutput& output, COutput& log, CSummary& summary);
    void ReportWalk(CInputWalk const& walk, CSummary& summary) const;

    CRecordStore m_store{CacheFolder()};
    CJournal m_journal{StateFolder()};
    bool m_bNoCache = false;
    bool m_bShowsOther = false; // the next reading of each tempo
    bool m_bReview = false;
    CAnalysisOptions m_options;
    CWalkOptions m_walk;
    EReportFormat m_format = EReportFormat::Table;
    bool m_bFull = false; // rows are whole records, or some of their fields
    CSongJsonWishes m_wishes;
    std::string m_sOutput;
    std::string m_sLog;
    bool m_bOverwriting = false;    // whatever the output file holds
    std::size_t m_nNewVersions = 0; // tags of version 2.4 that became version 2.3
    std::string m_sNameList;        // a file with further paths; "-": standard input
    bool m_bNamesEndInZero = false;
    bool m_bLocks = false; // lets no two runs work at once
    CRunLock m_lock;
    std::size_t m_nMostErrors = 0; // 0: any number
    std::optional<EProgress> m_progress;
    std::chrono::steady_clock::time_point m_begin;
    bool m_bQuiet = false;
    bool m_bVerbose = false;
    std::vector<std::string> m_vPaths;
};
