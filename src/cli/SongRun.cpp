// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/SongRun.h"

#include "cli/ExitCode.h"
#include "cli/Interrupt.h"
#include "cli/KindList.h"
#include "cli/Message.h"
#include "cli/OptionValues.h"
#include "cli/OutputGuard.h"
#include "cli/Progress.h"
#include "cli/RecordReason.h"
#include "cli/Summary.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <thread>

void CSongRun::AddOptions(CLI::App& app) {
    m_options.m_nJobs = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostJobs);
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.add_option("-o,--output", m_sOutput, "Write to FILE")->type_name("FILE");
    app.add_flag("--overwrite-output", m_bOverwriting,
                 "Replace FILE also when it holds something else than results of Tactus");
    app.add_option_function<std::string>(
           "-j,--jobs", [this](std::string const& text) { m_options.m_nJobs = JobsOf(text); },
           "Files to hear at once, 1 to " + std::to_string(kMostJobs) +
               "; as many as there are processors (" + std::to_string(m_options.m_nJobs) +
               ") unless said")
        ->type_name("N");
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
    app.add_flag("-q,--quiet", m_bQuiet, "Show no progress");
    app.add_flag("-v,--verbose", m_bVerbose, "Add what the decoding library says of a failure");
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::Throw);
    app.add_option("--exclude", m_walk.m_vExcluded,
                   "Leave out what GLOB matches in folders: a name, or with a slash a path below "
                   "the folder; may be repeated")
        ->type_name("GLOB")
        ->allow_extra_args(false);
    app.add_option("PATH", m_vPaths, "Audio files, and folders to be searched; - is standard input")
        ->type_name("")
        ->required();
}

int CSongRun::Open(COutput& output) const {
    return Open(output, m_sOutput);
}

int CSongRun::Open(COutput& output, std::string const& path) const {
    COutputGuard const guard(m_vPaths, m_walk, m_bOverwriting);
    return output.Open(
        path, [&](std::string const& name, int file) { return guard.Problem(name, file); });
}

int CSongRun::Write(std::string const& path, std::string const& text) const {
    COutput output;
    if (int const code = Open(output, path); code != kExitDone) {
        return code;
    }
    (void)output.Write(text);
    return output.Finish() ? kExitDone : kExitOutput;
}

void CSongRun::Settle(bool withEnvelopes) {
    CInterrupt::Install();
    CSongOptions& song = m_options.m_song;
    song.m_bForce = true;
    song.m_bCandidates = true;
    song.m_bFacts = true;
    song.m_bEnvelopes = withEnvelopes;
    song.m_pStore = m_bNoCache ? nullptr : &m_store;
}

int CSongRun::Run(CSongSink const& sink, bool withEnvelopes) {
    Settle(withEnvelopes);
    COutput output;
    if (int const code = Open(output); code != kExitDone) {
        return code;
    }
    bool isWhole = false;
    int const code = RunJobs(sink, output, &isWhole);
    return output.Finish() ? code : kExitOutput;
}

int CSongRun::Gather(std::vector<CTakenSong>& songs, bool withEnvelopes, bool* isWhole) {
    Settle(withEnvelopes);
    COutput nothing;
    return RunJobs({.m_add =
                        [&songs](CTakenSong const& song, COutput&) {
                            songs.push_back(song);
                            return true;
                        }},
                   nothing, isWhole);
}

/// Returns: what to exit with if the output can be written; `isWhole`: whether the run came to its
/// end.
int CSongRun::RunJobs(CSongSink const& sink, COutput& output, bool* isWhole) {
    CInputWalk walk(m_vPaths, m_walk);
    CSummary summary;
    std::string const interruption = RunJobs(sink, output, walk, summary);
    *isWhole = interruption.empty();
    if (*isWhole) {
        ReportWalk(walk, summary);
    } else {
        ReportProblem(interruption);
    }
    ReportStore(m_store);
    return *isWhole ? summary.ExitCode() : CInterrupt::ExitCode();
}

/// Returns: what a person is told when the run was stopped before its end, else an empty text.
std::string CSongRun::RunJobs(CSongSink const& sink, COutput& output, CInputWalk& walk,
                              CSummary& summary) {
    CProgress progress(m_bQuiet ? EProgress::None : EProgress::Line);
    CAnalysisJobs jobs(walk, m_options, progress);
    jobs.Run([&](CReportRow const& row) {
        if (!row.m_sError.empty() || output.IsTerminal()) {
            progress.Clear();
        }
        if (!row.m_sError.empty()) {
            ReportProblem(row.m_sPath, row.m_sError);
        }
        if (m_bVerbose && !row.m_sError.empty() && !row.m_sDetail.empty()) {
            ReportProblem(row.m_sPath, "the decoding library says: " + row.m_sDetail);
        }
        summary.Add(row);
        return sink.m_add(*row.m_pSong, output) && output.Flush();
    });
    progress.Clear();
    if (sink.m_end) {
        (void)sink.m_end(output);
    }
    bool const isWhole = walk.IsAtEnd() && jobs.Done() == jobs.Found();
    if (!CInterrupt::IsSet() || isWhole) {
        return {};
    }
    return "interrupted: " + std::to_string(jobs.Done()) + " of " + std::to_string(jobs.Found()) +
           (walk.IsAtEnd() ? " files done" : " files found so far done");
}

/// Tells what the search left out or didn't find.
void CSongRun::ReportWalk(CInputWalk const& walk, CSummary& summary) const {
    for (std::string const& folder : walk.BarrenFolders()) {
        ReportProblem(folder, m_walk.m_types ? "holds no such audio file" : "holds no audio file");
        summary.Warn();
    }
    std::size_t const linked = walk.LinkedFolders();
    if (linked > 0 && !m_bQuiet) {
        ReportProblem(std::to_string(linked) +
                      (linked == 1 ? " linked folder" : " linked folders") + " not followed: -L");
    }
}
