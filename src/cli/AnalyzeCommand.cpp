// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/AnalyzeCommand.h"

#include "cli/ExitCode.h"
#include "cli/Interrupt.h"
#include "cli/KindList.h"
#include "cli/Message.h"
#include "cli/NameList.h"
#include "cli/OptionValues.h"
#include "cli/OutputGuard.h"
#include "cli/Progress.h"
#include "cli/RecordReason.h"
#include "cli/ReviewReport.h"
#include "cli/SongReport.h"
#include "cli/Summary.h"
#include "cli/WriteReason.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>
#include <tuple>
#include <unistd.h>

namespace {

constexpr std::size_t kManyFiles = 100; // Fixed: as many are worth a closing line in a log too.

constexpr char kFooter[] =
    "A path of - is standard input. What follows -- is a path, whatever it looks\n"
    "like.\n\nExit status: 0 all done; 1 a file failed; 2 wrong usage; 4 "
    "warnings only;\n5 the results can't be written; 75 another run is at work; 128 and the\n"
    "signal's number when stopped.\n";

/// What a person is told of a file, in one line; empty when all went well.
std::string ProblemOf(CReportRow const& row) {
    if (!row.m_bRefused) {
        return row.m_sError;
    }
    std::string const refusal = WriteReason(row.m_sNotStored);
    return row.m_sError.empty() ? refusal : row.m_sError + "; " + refusal;
}

} // namespace

CLI::App* CAnalyzeCommand::AddTo(CLI::App& program) {
    m_options.m_nJobs = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostJobs);
    CLI::App* const app = program.add_subcommand(
        "analyze", "Find the tempo of files, and of the audio files in folders");
    app->option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app->add_flag("-w,--write", m_options.m_song.m_bWrite,
                  "Store the tempos found in the tags of MP3 files");
    app->add_flag("-f,--force", m_options.m_song.m_bForce,
                  "Analyse files too whose tag has a tempo");
    app->add_flag("--recheck", m_options.m_song.m_bRecheck,
                  "Analyse files too whose tag has a tempo below 20 or above 999");
    app->add_option_function<std::string>(
           "-j,--jobs", [this](std::string const& text) { m_options.m_nJobs = JobsOf(text); },
           "Files to analyse at once, 1 to " + std::to_string(kMostJobs) +
               "; as many as there are processors (" + std::to_string(m_options.m_nJobs) +
               ") unless said")
        ->type_name("N");
    app->add_flag("-L,--follow", m_walk.m_bFollows, "Search folders behind links too");
    app->add_flag("--hidden", m_walk.m_bHidden,
                  "Take in what systems put beside music: ._*, .Trash*, #recycle, .snapshots, "
                  "@eaDir, lost+found");
    app->add_option_function<std::string>(
           "--types",
           [this](std::string const& names) { m_walk.m_types = KindsOf("--types", names); },
           "Search folders for these kinds only, such as mp3,m4a")
        ->type_name("LIST");
    app->add_flag("--no-cache", m_bNoCache, "Hear every file anew, and remember nothing of it");
    AddBatchOptions(*app);
    AddWriteOptions(*app);
    AddOutputOptions(*app);
    AddRecordOptions(*app);
    AddCareOptions(*app);
    AddReadingOptions(*app);
    app->option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::Throw);
    app->add_option("--exclude", m_walk.m_vExcluded,
                    "Leave out what GLOB matches in folders: a name, or with a slash a path below "
                    "the folder; may be repeated")
        ->type_name("GLOB")
        ->allow_extra_args(false);
    app->add_option("PATH", m_vPaths, "Files, and folders to be searched")->type_name("");
    app->parse_complete_callback([this] {
        bool const isJson = m_format == EReportFormat::Json || m_format == EReportFormat::JsonLines;
        if (m_bFull && !isJson) {
            throw CLI::ValidationError("--full", "and --fields want --format json or jsonl");
        }
        if (m_vPaths.empty() && m_sNameList.empty()) {
            throw CLI::RequiredError("PATH");
        }
    });
    app->footer(kFooter);
    return app;
}

/// What runs want that nobody looks at.
void CAnalyzeCommand::AddBatchOptions(CLI::App& app) {
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

void CAnalyzeCommand::AddWriteOptions(CLI::App& app) {
    CSongOptions& song = m_options.m_song;
    app.add_option_function<std::string>(
           "--write-types",
           [&song](std::string const& names) {
               song.m_writeTypes = KindsOf("--write-types", names);
           },
           "With --write, store tempos in these kinds too, such as flac,m4a, or all")
        ->type_name("LIST");
    app.add_option_function<std::string>(
           "--round", [&song](std::string const& text) { song.m_nDecimals = DecimalsOf(text); },
           "Decimals of a stored tempo: 0, 1 or 2 (if not said)")
        ->type_name("N");
    app.add_flag("--keep-mtime", song.m_bKeepTime,
                 "Leave the time of a file's last write as it is");
    app.add_option_function<std::string>(
           "--id3", [&song](std::string const& word) { song.m_bKeepVersion = KeepsVersion(word); },
           "keep: an ID3v2.4 tag stays one; 2.3 (if not said): it becomes 2.3")
        ->type_name("VERSION");
    app.add_flag("--short", song.m_bShort,
                 "Store tempos of clips under 30 s too, which follow from their length");
    app.add_flag("--write-key", song.m_bWriteKey, "Store the key with the tempo");
}

void CAnalyzeCommand::AddOutputOptions(CLI::App& app) {
    app.add_option_function<std::string>(
           "--format", [this](std::string const& name) { m_format = FormatOf(name); },
           "table (if not said), csv, json or jsonl (an object a line)")
        ->type_name("FORMAT");
    app.add_option("-o,--output", m_sOutput, "Write the rows to FILE")->type_name("FILE");
    app.add_flag("--overwrite-output", m_bOverwriting,
                 "Replace FILE also when it holds something else than results of Tactus");
    app.add_flag("-q,--quiet", m_bQuiet, "Show neither progress nor a closing line");
    app.add_flag("-v,--verbose", m_bVerbose, "Add what the decoding library says of a failure");
}

/// Whole records of songs instead of rows.
void CAnalyzeCommand::AddRecordOptions(CLI::App& app) {
    app.add_flag("--full", m_bFull,
                 "With --format json or jsonl, write all that is known of each file, as 'tactus "
                 "profile' does");
    app.add_option_function<std::string>(
           "--fields",
           [this](std::string const& names) {
               m_wishes.m_vOnly = FieldsOf(names);
               m_bFull = true;
           },
           "Likewise, but these fields alone, such as tempo,key,beats")
        ->type_name("LIST");
}

/// What keeps tempos in tags from being replaced, and tells of it.
void CAnalyzeCommand::AddCareOptions(CLI::App& app) {
    CSongOptions& song = m_options.m_song;
    app.add_flag(
        "--overwrite-hand", song.m_bOverwriteHand,
        "With --force --write, replace tempos too that Tactus didn't write itself, or that "
        "were set by hand");
    app.add_option_function<std::string>(
           "--only-if-off", [&song](std::string const& text) { song.m_dLeastOff = ShareOf(text); },
           "With --force --write, replace only what is off by more than this, such as 1%")
        ->type_name("SHARE");
    app.add_flag("--dry-run", song.m_bDryRun,
                 "Only say what --write would do with each file: write, keep, differ or skip");
    app.add_option("--log", m_sLog, "Write every row to FILE as well, as a JSON object a line")
        ->type_name("FILE");
}

/// Which of a tempo's readings is told, and what of the others.
void CAnalyzeCommand::AddReadingOptions(CLI::App& app) {
    CSongOptions& song = m_options.m_song;
    app.add_flag("--candidates", m_bShowsOther, "Show the next reading of each tempo as well");
    app.add_flag("--harmony", song.m_bHarmony,
                 "Show the key of chords and melody as well, plainly and by Camelot and Open Key");
    app.add_option_function<std::string>(
           "--octave",
           [&song](std::string const& word) {
               if (word != "likely" && word != "heard") {
                   throw CLI::ValidationError("--octave",
                                              "'" + word + "' is neither likely nor heard");
               }
               song.m_bLikely = word == "likely";
           },
           "likely: tell the likeliest reading of each tempo instead of the one heard")
        ->type_name("WHICH");
    app.add_option_function<std::string>(
           "--range",
           [&song](std::string const& text) {
               std::tie(song.m_dSlowest, song.m_dFastest) = RangeOf(text);
           },
           "Double or halve each tempo that is heard until it lies in this range, such as 70:180")
        ->type_name("RANGE");
    app.add_flag("--review", m_bReview,
                 "Show only tempos whose next reading is at least half as likely, likely mistakes "
                 "first");
}

/// Draws from the options what follows from them.
void CAnalyzeCommand::Settle() {
    CSongOptions& song = m_options.m_song;
    song.m_pJournal = &m_journal;
    song.m_pStore = m_bNoCache ? nullptr : &m_store;
    m_journal.SetStore(song.m_pStore);
    song.m_bFacts = m_bFull && !song.m_bDryRun;
    song.m_bEnvelopes = song.m_bFacts && m_wishes.Names("envelopes");
    song.m_bCandidates = m_bShowsOther || m_bReview || song.m_bLikely || song.m_bFacts;
    if (song.m_bDryRun) {
        song.m_bWrite = true;
        m_format = EReportFormat::Plan;
    }
}

int CAnalyzeCommand::Run() {
    CInterrupt::Install();
    Settle();
    m_begin = std::chrono::steady_clock::now();
    int const code = Begin();
    return code != kExitDone ? code : Analyze();
}

/// What must hold before anything is touched. Returns: 0, or what to exit with.
int CAnalyzeCommand::Begin() {
    if (m_bLocks) {
        ERunLock const lock = m_lock.Take(LockFolder());
        if (lock == ERunLock::Held) {
            ReportProblem("another run is at work (--lock)");
            return kExitBusy;
        }
        if (lock == ERunLock::NoFile) {
            ReportProblem("--lock", m_lock.Reason());
            return kExitFailed;
        }
    }
    if (m_sNameList.empty()) {
        return kExitDone;
    }
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

int CAnalyzeCommand::Analyze() {
    COutput output;
    COutputGuard const guard(m_vPaths, m_walk, m_bOverwriting);
    auto const check = [&](auto const& path, int file) { return guard.Problem(path, file); };
    if (int const code = output.Open(m_sOutput, check); code != kExitDone) {
        return code;
    }
    COutput log;
    if (int const code = m_sLog.empty() ? kExitDone : log.Open(m_sLog, check); code != kExitDone) {
        return code;
    }
    CInputWalk walk(m_vPaths, m_walk);
    CSummary summary;
    std::string const interruption = RunJobs(walk, output, log, summary);
    bool const isLogWritten = log.Finish();
    bool const isWritten = output.Finish() && isLogWritten;
    if (interruption.empty()) {
        ReportWalk(walk, summary);
    } else {
        ReportProblem(interruption);
    }
    ReportJournal(m_journal);
    ReportStore(m_store);
    bool const isInterrupted = !interruption.empty() && CInterrupt::IsSet();
    int const code = !isWritten      ? kExitOutput
                     : isInterrupted ? CInterrupt::ExitCode()
                                     : summary.ExitCode();
    ReportEnd(summary, code);
    return code;
}

/// Sums the run up, for whoever reads along.
void CAnalyzeCommand::ReportEnd(CSummary const& summary, int exitCode) const {
    std::chrono::duration<double> const time = std::chrono::steady_clock::now() - m_begin;
    bool const isLineWanted = m_options.m_song.m_bWrite ||
                              summary.Rows() >= (isatty(STDERR_FILENO) == 1 ? 2 : kManyFiles);
    if (m_progress == EProgress::Json) {
        std::string const end = summary.Json(time, exitCode) + "\n";
        (void)std::fwrite(end.data(), 1, end.size(), stderr);
    } else if (isLineWanted && !m_bQuiet) {
        ReportProblem(summary.Line(m_options.m_song.m_bWrite, time));
    }
}

std::unique_ptr<IReport> CAnalyzeCommand::Report(COutput& output) const {
    bool const isArray = m_format == EReportFormat::Json;
    std::unique_ptr<IReport> report =
        m_options.m_song.m_bFacts
            ? std::make_unique<CSongReport>(output, m_wishes, isArray)
            : MakeReport(m_format, output,
                         {m_bShowsOther || m_bReview, m_options.m_song.m_bHarmony});
    return m_bReview ? std::make_unique<CReviewReport>(std::move(report)) : std::move(report);
}

/// Returns: what a person is told when the run was stopped before its end, else an empty text.
std::string CAnalyzeCommand::RunJobs(CInputWalk& walk, COutput& output, COutput& log,
                                     CSummary& summary) {
    std::unique_ptr<IReport> const report = Report(output);
    std::unique_ptr<IReport> const logged = MakeReport(EReportFormat::JsonLines, log);
    CProgress progress(m_progress.value_or(m_bQuiet ? EProgress::None : EProgress::Line));
    CAnalysisJobs jobs(walk, m_options, progress);
    bool hadTooManyErrors = false;
    jobs.Run([&](CReportRow const& row) {
        std::string const problem = ProblemOf(row);
        if (!problem.empty() || !row.m_sNote.empty() || output.IsTerminal()) {
            progress.Clear();
        }
        if (!problem.empty()) {
            ReportProblem(row.m_sPath, problem);
        }
        if (!row.m_sNote.empty()) {
            ReportProblem(row.m_sPath, row.m_sNote);
        }
        if (m_bVerbose && !row.m_sError.empty() && !row.m_sDetail.empty()) {
            ReportProblem(row.m_sPath, "the decoding library says: " + row.m_sDetail);
        }
        summary.Add(row);
        m_nNewVersions += row.m_bNewVersion && !row.m_bFurtherName ? 1 : 0;
        if (m_nMostErrors > 0 && summary.Failures() >= m_nMostErrors) {
            hadTooManyErrors = true;
            jobs.Stop();
        }
        bool const isLogged = m_sLog.empty() || logged->Add(row);
        return report->Add(row) && isLogged;
    });
    progress.Clear();
    (void)report->End();
    bool const isStopped = hadTooManyErrors || CInterrupt::IsSet();
    if (!isStopped || (walk.IsAtEnd() && jobs.Done() == jobs.Found())) {
        return {};
    }
    std::string const why = CInterrupt::IsSet() ? "interrupted: " : "stopped by --max-errors: ";
    return why + std::to_string(jobs.Done()) + " of " + std::to_string(jobs.Found()) +
           (walk.IsAtEnd() ? " files done" : " files found so far done");
}

/// Tells what the search left out or didn't find.
void CAnalyzeCommand::ReportWalk(CInputWalk const& walk, CSummary& summary) const {
    for (std::string const& folder : walk.BarrenFolders()) {
        ReportProblem(folder, m_walk.m_types ? "holds no such audio file" : "holds no audio file");
        summary.Warn();
    }
    if (m_nNewVersions > 0 && !m_bQuiet) {
        ReportProblem(std::to_string(m_nNewVersions) + (m_nNewVersions == 1 ? " tag" : " tags") +
                      " of version 2.4 became version 2.3; --id3 keep keeps them");
    }
    std::size_t const linked = walk.LinkedFolders();
    if (linked > 0 && !m_bQuiet) {
        ReportProblem(std::to_string(linked) +
                      (linked == 1 ? " linked folder" : " linked folders") + " not followed: -L");
    }
}
