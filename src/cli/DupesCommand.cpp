// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/DupesCommand.h"

#include "cli/DupesReport.h"
#include "cli/ExitCode.h"

#include <CLI/CLI.hpp>
#include <vector>

namespace {

constexpr double kMicroseconds = 1e6;

/// By what each song is compared. The songs stay where they are.
std::vector<CSongMarks> MarksOf(std::vector<CTakenSong> const& songs) {
    std::vector<CSongMarks> marks;
    marks.reserve(songs.size());
    for (CTakenSong const& song : songs) {
        marks.push_back(
            {.m_opening = song.m_opening.m_vLevels,
             .m_excerpt = song.m_print.m_vValues,
             .m_dExcerptSeconds = static_cast<double>(song.m_print.m_nMicroseconds) / kMicroseconds,
             .m_dSeconds = song.m_dSeconds,
             .m_dOutroSeconds = song.m_dOutroStart,
             .m_eMode = song.m_harmony.m_eMode,
             .m_nTonic = song.m_harmony.m_nTonic});
    }
    return marks;
}

} // namespace

CLI::App* CDupesCommand::AddTo(CLI::App& program) {
    CLI::App* const app =
        program.add_subcommand("dupes", "Find files that hold the same audio, however it is coded");
    app->add_flag("--json", m_bJson, "Print one JSON object instead of a table");
    m_run.AddOptions(*app);
    app->parse_complete_callback([this] { m_run.RequirePaths(); });
    app->footer("No file is changed. Of each group the best copy is marked to be kept: without\n"
                "loss, whole, at the highest bit rate. Offsets are seconds by which the music\n"
                "begins later than in that copy.\n");
    return app;
}

int CDupesCommand::Run() {
    if (int const code = m_run.Begin(); code != kExitDone) {
        return code;
    }
    std::vector<CTakenSong> songs;
    bool isWhole = false;
    int const code = m_run.Gather(songs, false, &isWhole);
    if (!isWhole) {
        return m_run.End(code);
    }
    auto const groups = FindSameSongs(MarksOf(songs), [&](std::size_t a, std::size_t b) {
        return IsBetterCopy(songs[a], songs[b]);
    });
    int const writing = m_run.Write(m_run.OutputPath(), m_bJson ? DupesJson(songs, groups) + "\n"
                                                                : DupesTable(songs, groups));
    return m_run.End(writing != kExitDone ? writing : code);
}
