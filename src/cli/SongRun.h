// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/FileRun.h"
#include "export/TakenSong.h"

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/// Takes the next song, one that can't be heard too. Returns: false when there is no use for more.
using SongSink = std::function<bool(CTakenSong const& song, COutput& output)>;

/// The run of commands that take songs along. `Begin` comes first, `End` last.
/// Thread: main.
class CSongRun {
public:
    /// Adds the options of a run, and PATH.
    void AddOptions(CLI::App& app) { m_run.AddOptions(app); }

    /// As `CFileRun` has it.
    void RequirePaths() const { m_run.RequirePaths(); }
    int Begin() { return m_run.Begin(); }

    /// Hears the files, several at once, or remembers them, and hands their songs to `sink` in the
    /// files' order. `withEnvelopes`: the songs have theirs.
    /// Returns: what to exit with, one of `cli/ExitCode.h`.
    int Run(SongSink const& sink, bool withEnvelopes);

    /// Hears them alike, and appends their songs, those that can't be heard too. Nothing is opened.
    /// Returns: as `Run`; `isWhole`: whether it came to its end.
    int Gather(std::vector<CTakenSong>& songs, bool withEnvelopes, bool* isWhole);

    /// Opens where results go. Returns: 0, or what to exit with.
    int Open(COutput& output) const { return m_run.Open(output, m_run.OutputPath()); }

    /// Writes `text` to the file `path`, or to standard output when that is empty or "-".
    /// Returns: 0, or what to exit with after a message.
    int Write(std::string const& path, std::string const& text) const;

    /// Sums the run up, for whoever reads along. Returns: `exitCode`.
    int End(int exitCode) const { return m_run.End(exitCode); }

    [[nodiscard]] std::vector<std::string> const& Paths() const { return m_run.Paths(); }
    [[nodiscard]] std::string const& OutputPath() const { return m_run.OutputPath(); }
    [[nodiscard]] bool IsVerbose() const { return m_run.IsVerbose(); }

private:
    [[nodiscard]] CSongOptions Wishes(bool withEnvelopes);

    CFileRun m_run;
};
