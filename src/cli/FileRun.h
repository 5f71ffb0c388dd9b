// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/AnalysisJobs.h"
#include "cli/Output.h"
#include "cli/Progress.h"
#include "cli/RunLock.h"
#include "cli/Summary.h"
#include "records/Places.h"
#include "records/RecordStore.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/// The run of a command through files, with the options that all such commands have: which files,
/// how many at once, where results go, when to stop and what is told meanwhile. In this order:
/// `Begin`, `Open`, `Run`, `Conclude`, `End`.
/// Thread: main.
class CFileRun {
public:
    CFileRun();

    /// Adds the options, and PATH.
    void AddOptions(CLI::App& app);

    /// Throws `CLI::RequiredError` when no path is named, nor a file with paths.
    void RequirePaths() const;

    /// What must hold before anything is touched: the lock, and the paths in a file.
    /// Returns: 0, or what to exit with after a message.
    int Begin();

    /// Opens `path` for results, standard output when it is empty or "-". A file of the run is
    /// never replaced. Returns: 0, or what to exit with after a message.
    int Open(COutput& output, std::string const& path) const;

    /// Goes through the files, and hands their rows to `sink` in the files' order until that
    /// returns false. `output`: where the sink writes, if anywhere.
    void Run(CSongOptions const& song, COutput const& output, RowSink const& sink);

    /// Whether the run came to its end: neither the user nor errors stopped it.
    [[nodiscard]] bool IsWhole() const { return m_sInterruption.empty(); }

    /// Tells what stopped the run, or what the search left out. Returns: what to exit with.
    int Conclude();

    /// Sums the run up, for whoever reads along. Returns: `exitCode`.
    int End(int exitCode) const;

    [[nodiscard]] std::vector<std::string> const& Paths() const { return m_vPaths; }
    [[nodiscard]] std::string const& OutputPath() const { return m_sOutput; }
    [[nodiscard]] bool IsQuiet() const { return m_bQuiet; }
    [[nodiscard]] bool IsVerbose() const { return m_bVerbose; }

    /// What was heard before; null when nobody wants to know.
    [[nodiscard]] CRecordStore* Store() { return m_bNoCache ? nullptr : &m_store; }

private:
    void AddWalkOptions(CLI::App& app);
    void AddBatchOptions(CLI::App& app);
    int TakeLock();
    int ReadNames();
    void ReportRow(CReportRow const& row) const;
    void ReportWalk();

    CRecordStore m_store{CacheFolder()};
    std::size_t m_nJobs = 1; // files at once
    CWalkOptions m_walk;
    std::vector<std::string> m_vPaths;
    std::string m_sNameList; // a file with further paths; "-": standard input
    std::string m_sOutput;
    CRunLock m_lock;
    std::size_t m_nMostErrors = 0; // 0: any number
    std::optional<EProgress> m_progress;
    bool m_bNoCache = false;
    bool m_bOverwriting = false; // whatever the output file holds
    bool m_bNamesEndInZero = false;
    bool m_bLocks = false; // lets no two runs work at once
    bool m_bQuiet = false;
    bool m_bVerbose = false;

    bool m_bWriting = false; // tempos were to be stored
    std::optional<CInputWalk> m_input;
    CSummary m_summary;
    std::string m_sInterruption; // what a person is told of it; empty: none
    std::chrono::steady_clock::time_point m_begin;
};
