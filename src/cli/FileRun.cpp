// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/FileRun.h"

#include "cli/ExitCode.h"
#include "cli/Interrupt.h"
#include "cli/KindList.h"
#include "cli/Message.h"
#include "cli/NameList.h"
#include "cli/OptionValues.h"
#include "cli/OutputGuard.h"
#include "cli/RecordReason.h"
#include "cli/WriteReason.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <thread>
#include <unistd.h>

namespace {

constexpr std::size_t kManyFiles = 100; // Fixed: as many are worth a closing line in a log too.

/// What a person is told of a file, in one line; empty when all went well.
std::string ProblemOf(CReportRow const& row) {
    if (!row.m_bRefused) {
        return row.m_sError;
    }
    std::string const refusal = WriteReason(row.m_sNotStored);
    return row.m_sError.empty() ? refusal : row.m_sError + "; " + refusal;
}

} // namespace

CFileRun::CFileRun()
    : m_nJobs(std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostJobs)) {
}

void CFileRun::AddOptions(CLI::App& app) {
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.add_option_function<std::string>(
           "-j,--jobs", [this](std::string const& text) { m_nJobs = JobsOf(text); },
           "Files to analyse at once, 1 to " + std::to_string(kMostJobs) +
               "; as many as there are processors (" + std::to_string(m_nJobs) + ") unless said")
        ->type_name("N");
    AddWalkOptions(app);
    AddBatchOptions(app);
    app.add_option("-o,--output", m_sOutput, "Write to FILE")->type_name("FILE");
    app.add_flag("--overwrite-output", m_bOverwriting,
                 "Replace FILE also when it holds something else than results of Tactus");
    app.add_flag("-q,--quiet", m_bQuiet, "Show neither progress nor a closing line");
    app.add_flag("-v,--verbose", m_bVerbose, "Add what the decoding library says of a failure");
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::Throw);
    app.add_option("--exclude", m_walk.m_vExcluded,
                   "Leave out what GLOB matches in folders: a name, or with a slash a path below "
                   "the folder; may be repeated")
        ->type_name("GLOB")
        ->allow_extra_args(false);
    app.add_option("PATH", m_vPaths, "Audio files, and folders to be searched; - is standard input")
        ->type_name("");
}

void CFileRun::AddWalkOptions(CLI::App& app) {
    app.add_flag("-L,--follow", m_walk.m_bFollows, "Search folders behind links too");
    app.add_flag("--hidden", m_walk.m_bHidden,
                 "Take in what systems put beside music: ._*, .Trash*, #recycle, .snapshots, "
                 "@eaDir, lost+found");
    app.add_option_function<std::string>(
           "--types",
           [this](std::string const& names) { m_walk.m_types = KindsOf("--types", names); },
           "Search folders for these kinds only, such as mp3,m4a")
        ->type_name("LIST");
    app.add_flag("--no-cache", m_bNoCache, "Hear every file anew, and remember nothing of it");
}

/// What runs want that nobody looks at.
void CFileRun::AddBatchOptions(CLI::App& app) {
    app.add_option("--files-from", m_sNameList,
                   "Take further paths from FILE, one a line; - is standard input")
        ->type_name("FILE");
    app.add_flag("-0,--null", m_bNamesEndInZero,
                 "In --files-from, a zero byte ends each path, as 'find -print0' has it");
    app.add_option_function<std::string>(
           "--max-errors",
           [this](std::string const& text) { m_nMostErrors = CountOf("--max-errors", text); },
           "Stop once N files have failed")
        ->type_name("N");
    app.add_flag("--lock", m_bLocks, "Do nothing, and exit with 75, while another such run works");
    app.add_option_function<std::string>(
           "--progress", [this](std::string const& word) { m_progress = ProgressOf(word); },
           "line (if not said): on a terminal; json: an object a line on standard error, wherever "
           "that goes; none")
        ->type_name("FORM");
}

void CFileRun::RequirePaths() const {
    if (m_vPaths.empty() && m_sNameList.empty()) {
        throw CLI::RequiredError("PATH");
    }
}

int CFileRun::Begin() {
    CInterrupt::Install();
    m_begin = std::chrono::steady_clock::now();
    int const code = m_bLocks ? TakeLock() : kExitDone;
    return code == kExitDone && !m_sNameList.empty() ? ReadNames() : code;
}

int CFileRun::TakeLock() {
    ERunLock const lock = m_lock.Take(LockFolder());
    if (lock == ERunLock::Held) {
        ReportProblem("another run is at work (--lock)");
        return kExitBusy;
    }
    if (lock == ERunLock::NoFile) {
        ReportProblem("--lock", m_lock.Reason());
        return kExitFailed;
    }
    return kExitDone;
}

int CFileRun::ReadNames() {
    if (m_sNameList == kStandardInputName &&
        std::ranges::find(m_vPaths, kStandardInputName) != m_vPaths.end()) {
        ReportProblem("--files-from", "standard input can't be a song as well");
        return kExitUsage;
    }
    std::string const problem = ReadNameList(m_sNameList, m_bNamesEndInZero, m_vPaths);
    if (!problem.empty()) {
        ReportProblem(m_sNameList, problem);
        return kExitFailed;
    }
    return kExitDone;
}

int CFileRun::Open(COutput& output, std::string const& path) const {
    COutputGuard const guard(m_vPaths, m_walk, m_bOverwriting);
    return output.Open(
        path, [&](std::string const& name, int file) { return guard.Problem(name, file); });
}

void CFileRun::Run(CSongOptions const& song, COutput const& output, RowSink const& sink) {
    m_bWriting = song.m_bWrite;
    m_input.emplace(m_vPaths, m_walk);
    CProgress progress(m_progress.value_or(m_bQuiet ? EProgress::None : EProgress::Line));
    CAnalysisJobs jobs(*m_input, {.m_song = song, .m_nJobs = m_nJobs}, progress);
    bool hadTooManyErrors = false;
    jobs.Run([&](CReportRow const& row) {
        if (!ProblemOf(row).empty() || !row.m_sNote.empty() || output.IsTerminal()) {
            progress.Clear();
        }
        ReportRow(row);
        m_summary.Add(row);
        if (m_nMostErrors > 0 && m_summary.Failures() >= m_nMostErrors) {
            hadTooManyErrors = true;
            jobs.Stop();
        }
        return sink(row);
    });
    progress.Clear();
    bool const isStopped = hadTooManyErrors || CInterrupt::IsSet();
    if (isStopped && !(m_input->IsAtEnd() && jobs.Done() == jobs.Found())) {
        m_sInterruption = CInterrupt::IsSet() ? "interrupted: " : "stopped by --max-errors: ";
        m_sInterruption += std::to_string(jobs.Done()) + " of " + std::to_string(jobs.Found()) +
                           (m_input->IsAtEnd() ? " files done" : " files found so far done");
    }
}

/// Tells what there is to know of a file beside its results.
void CFileRun::ReportRow(CReportRow const& row) const {
    if (std::string const problem = ProblemOf(row); !problem.empty()) {
        ReportProblem(row.m_sPath, problem);
    }
    if (!row.m_sNote.empty()) {
        ReportProblem(row.m_sPath, row.m_sNote);
    }
    if (m_bVerbose && !row.m_sError.empty() && !row.m_sDetail.empty()) {
        ReportProblem(row.m_sPath, "the decoding library says: " + row.m_sDetail);
    }
}

int CFileRun::Conclude() {
    if (IsWhole()) {
        ReportWalk();
    } else {
        ReportProblem(m_sInterruption);
    }
    ReportStore(m_store);
    return !IsWhole() && CInterrupt::IsSet() ? CInterrupt::ExitCode() : m_summary.ExitCode();
}

/// Tells what the search left out or didn't find.
void CFileRun::ReportWalk() {
    for (std::string const& folder : m_input->BarrenFolders()) {
        ReportProblem(folder, m_walk.m_types ? "holds no such audio file" : "holds no audio file");
        m_summary.Warn();
    }
    std::size_t const linked = m_input->LinkedFolders();
    if (linked > 0 && !m_bQuiet) {
        ReportProblem(std::to_string(linked) +
                      (linked == 1 ? " linked folder" : " linked folders") + " not followed: -L");
    }
}

int CFileRun::End(int exitCode) const {
    std::chrono::duration<double> const time = std::chrono::steady_clock::now() - m_begin;
    bool const isLineWanted =
        m_bWriting || m_summary.Rows() >= (isatty(STDERR_FILENO) == 1 ? 2 : kManyFiles);
    if (m_progress == EProgress::Json) {
        std::string const end = m_summary.Json(time, exitCode) + "\n";
        (void)std::fwrite(end.data(), 1, end.size(), stderr);
    } else if (isLineWanted && !m_bQuiet) {
        ReportProblem(m_summary.Line(m_bWriting, time));
    }
    return exitCode;
}
