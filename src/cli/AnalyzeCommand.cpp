// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/AnalyzeCommand.h"

#include "cli/ExitCode.h"
#include "cli/KindList.h"
#include "cli/Message.h"
#include "cli/OptionValues.h"
#include "cli/RecordReason.h"
#include "cli/ReviewReport.h"
#include "cli/SongReport.h"

#include <CLI/CLI.hpp>
#include <tuple>

namespace {

constexpr char kAnalyzeFooter[] =
    "A path of - is standard input. What follows -- is a path, whatever it looks\n"
    "like.\n\nExit status: 0 all done; 1 a file failed; 2 wrong usage; 4 "
    "warnings only;\n5 the results can't be written; 75 another run is at work; 128 and the\n"
    "signal's number when stopped.\n";

} // namespace

CLI::App* CAnalyzeCommand::AddTo(CLI::App& program) {
    CLI::App* const app = program.add_subcommand(
        "analyze", "Find the tempo of files, and of the audio files in folders");
    app->option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app->add_flag("-w,--write", m_song.m_bWrite, "Store the tempos found in the tags of MP3 files");
    app->add_flag("-f,--force", m_song.m_bForce, "Analyse files too whose tag has a tempo");
    app->add_flag("--recheck", m_song.m_bRecheck,
                  "Analyse files too whose tag has a tempo below 20 or above 999");
    AddWriteOptions(*app);
    AddOutputOptions(*app);
    AddRecordOptions(*app);
    AddCareOptions(*app);
    AddReadingOptions(*app);
    m_run.AddOptions(*app);
    app->parse_complete_callback([this] {
        bool const isJson = m_format == EReportFormat::Json || m_format == EReportFormat::JsonLines;
        if (m_bFull && !isJson) {
            throw CLI::ValidationError("--full", "and --fields want --format json or jsonl");
        }
        m_run.RequirePaths();
    });
    app->footer(kAnalyzeFooter);
    return app;
}

void CAnalyzeCommand::AddWriteOptions(CLI::App& app) {
    app.add_option_function<std::string>(
           "--write-types",
           [this](std::string const& names) {
               m_song.m_writeTypes = KindsOf("--write-types", names);
           },
           "With --write, store tempos in these kinds too, such as flac,m4a, or all")
        ->type_name("LIST");
    app.add_option_function<std::string>(
           "--round", [this](std::string const& text) { m_song.m_nDecimals = DecimalsOf(text); },
           "Decimals of a stored tempo: 0, 1 or 2 (if not said)")
        ->type_name("N");
    app.add_flag("--keep-mtime", m_song.m_bKeepTime,
                 "Leave the time of a file's last write as it is");
    app.add_option_function<std::string>(
           "--id3", [this](std::string const& word) { m_song.m_bKeepVersion = KeepsVersion(word); },
           "keep: an ID3v2.4 tag stays one; 2.3 (if not said): it becomes 2.3")
        ->type_name("VERSION");
    app.add_flag("--short", m_song.m_bShort,
                 "Store tempos of clips under 30 s too, which follow from their length");
    app.add_flag("--write-key", m_song.m_bWriteKey, "Store the key with the tempo");
}

void CAnalyzeCommand::AddOutputOptions(CLI::App& app) {
    app.add_option_function<std::string>(
           "--format", [this](std::string const& name) { m_format = FormatOf(name); },
           "table (if not said), csv, json or jsonl (an object a line)")
        ->type_name("FORMAT");
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
    app.add_flag(
        "--overwrite-hand", m_song.m_bOverwriteHand,
        "With --force --write, replace tempos too that Tactus didn't write itself, or that "
        "were set by hand");
    app.add_option_function<std::string>(
           "--only-if-off", [this](std::string const& text) { m_song.m_dLeastOff = ShareOf(text); },
           "With --force --write, replace only what is off by more than this, such as 1%")
        ->type_name("SHARE");
    app.add_flag("--dry-run", m_song.m_bDryRun,
                 "Only say what --write would do with each file: write, keep, differ or skip");
    app.add_option("--log", m_sLog, "Write every row to FILE as well, as a JSON object a line")
        ->type_name("FILE");
}

/// Which of a tempo's readings is told, and what of the others.
void CAnalyzeCommand::AddReadingOptions(CLI::App& app) {
    app.add_flag("--candidates", m_bShowsOther, "Show the next reading of each tempo as well");
    app.add_flag("--harmony", m_song.m_bHarmony,
                 "Show the key of chords and melody as well, plainly and by Camelot and Open Key");
    app.add_option_function<std::string>(
           "--octave",
           [this](std::string const& word) {
               if (word != "likely" && word != "heard") {
                   throw CLI::ValidationError("--octave",
                                              "'" + word + "' is neither likely nor heard");
               }
               m_song.m_bLikely = word == "likely";
           },
           "likely: tell the likeliest reading of each tempo instead of the one heard")
        ->type_name("WHICH");
    app.add_option_function<std::string>(
           "--range",
           [this](std::string const& text) {
               std::tie(m_song.m_dSlowest, m_song.m_dFastest) = RangeOf(text);
           },
           "Double or halve each tempo that is heard until it lies in this range, such as 70:180")
        ->type_name("RANGE");
    app.add_flag("--review", m_bReview,
                 "Show only tempos whose next reading is at least half as likely, likely mistakes "
                 "first");
}

/// Draws from the options what follows from them.
void CAnalyzeCommand::Settle() {
    m_song.m_pJournal = &m_journal;
    m_song.m_pStore = m_run.Store();
    m_journal.SetStore(m_song.m_pStore);
    m_song.m_bFacts = m_bFull && !m_song.m_bDryRun;
    m_song.m_bEnvelopes = m_song.m_bFacts && m_wishes.Names("envelopes");
    m_song.m_bCandidates = m_bShowsOther || m_bReview || m_song.m_bLikely || m_song.m_bFacts;
    if (m_song.m_bDryRun) {
        m_song.m_bWrite = true;
        m_format = EReportFormat::Plan;
    }
}

int CAnalyzeCommand::Run() {
    Settle();
    int const code = m_run.Begin();
    return code != kExitDone ? code : Analyze();
}

int CAnalyzeCommand::Analyze() {
    COutput output;
    if (int const code = m_run.Open(output, m_run.OutputPath()); code != kExitDone) {
        return code;
    }
    COutput log;
    if (int const code = m_sLog.empty() ? kExitDone : m_run.Open(log, m_sLog); code != kExitDone) {
        return code;
    }
    RunJobs(output, log);
    bool const isLogWritten = log.Finish();
    bool const isWritten = output.Finish() && isLogWritten;
    int const code = m_run.Conclude();
    ReportNewVersions();
    ReportJournal(m_journal);
    return m_run.End(isWritten ? code : kExitOutput);
}

std::unique_ptr<IReport> CAnalyzeCommand::Report(COutput& output) const {
    bool const isArray = m_format == EReportFormat::Json;
    std::unique_ptr<IReport> report =
        m_song.m_bFacts
            ? std::make_unique<CSongReport>(output, m_wishes, isArray)
            : MakeReport(m_format, output, {m_bShowsOther || m_bReview, m_song.m_bHarmony});
    return m_bReview ? std::make_unique<CReviewReport>(std::move(report)) : std::move(report);
}

void CAnalyzeCommand::RunJobs(COutput& output, COutput& log) {
    std::unique_ptr<IReport> const report = Report(output);
    std::unique_ptr<IReport> const logged = MakeReport(EReportFormat::JsonLines, log);
    m_run.Run(m_song, output, [&](CReportRow const& row) {
        m_nNewVersions += row.m_bNewVersion && !row.m_bFurtherName ? 1 : 0;
        bool const isLogged = m_sLog.empty() || logged->Add(row);
        return report->Add(row) && isLogged;
    });
    (void)report->End();
}

void CAnalyzeCommand::ReportNewVersions() const {
    if (m_run.IsWhole() && m_nNewVersions > 0 && !m_run.IsQuiet()) {
        ReportProblem(std::to_string(m_nNewVersions) + (m_nNewVersions == 1 ? " tag" : " tags") +
                      " of version 2.4 became version 2.3; --id3 keep keeps them");
    }
}
