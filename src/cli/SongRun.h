// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/AnalysisJobs.h"
#include "cli/Output.h"
#include "records/Places.h"
#include "records/RecordStore.h"

#include <functional>
#include <string>
#include <vector>

class CSummary;

namespace CLI {
class App;
}

/// What a command does with songs.
struct CSongSink {
    /// Takes the next song, one that can't be heard too. Returns: false when there is no use for
    /// more.
    std::function<bool(CTakenSong const& song, COutput& output)> m_add;
    /// Writes what belongs behind the last one.
    std::function<bool(COutput& output)> m_end = {};
};

/// The run of commands that take songs along, with the options that these have in common: which
/// files, how many at once, where results go.
/// Thread: main.
class CSongRun {
public:
    /// Adds the options, and PATH.
    void AddOptions(CLI::App& app);

    /// Hears the files, several at once, or remembers them, and hands their songs to `sink` in the
    /// files' order. `withEnvelopes`: the songs have theirs.
    /// Returns: what to exit with, one of `cli/ExitCode.h`.
    int Run(CSongSink const& sink, bool withEnvelopes);

    /// Hears them alike, and appends their songs, those that can't be heard too. Nothing is opened.
    /// Returns: as `Run`; `isWhole`: whether the user let it come to its end.
    int Gather(std::vector<CTakenSong>& songs, bool withEnvelopes, bool* isWhole);

    /// Opens where results go. Returns: 0, or what to exit with.
    int Open(COutput& output) const;

    /// Writes `text` to the file `path`, or to standard output when that is empty or "-".
    /// Returns: 0, or what to exit with after a message.
    int Write(std::string const& path, std::string const& text) const;

    [[nodiscard]] std::vector<std::string> const& Paths() const { return m_vPaths; }
    [[nodiscard]] std::string const& OutputPath() const { return m_sOutput; }
    [[nodiscard]] bool IsVerbose() const { return m_bVerbose; }

private:
    int Open(COutput& output, std::string const& path) const;
    void Settle(bool withEnvelopes);
    int RunJobs(CSongSink const& sink, COutput& output, bool* isWhole);
    std::string RunJobs(CSongSink const& sink, COutput& output, CInputWalk& walk,
                        CSummary& summary);
    void ReportWalk(CInputWalk const& walk, CSummary& summary) const;

    CRecordStore m_store{CacheFolder()};
    CAnalysisOptions m_options;
    CWalkOptions m_walk;
    std::string m_sOutput;
    bool m_bOverwriting = false; // whatever the output file holds
    bool m_bNoCache = false;
    bool m_bQuiet = false;
    bool m_bVerbose = false;
    std::vector<std::string> m_vPaths;
};
