// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/ProfileCommand.h"

#include "base/CString.h"
#include "cli/DecodeReason.h"
#include "cli/ExitCode.h"
#include "cli/InputList.h"
#include "cli/Interrupt.h"
#include "cli/Message.h"
#include "cli/OptionValues.h"
#include "cli/ProfileJson.h"
#include "cli/ProfileTrace.h"
#include "song/SongProfile.h"

#include <CLI/CLI.hpp>

namespace {

constexpr char kProfileFooter[] =
    "A path of - is standard input. What follows -- is a path, whatever it looks\n"
    "like.\n\nExit status: 0 all done; 1 a file failed; 2 wrong usage; 4 "
    "warnings only;\n5 the results can't be written; 75 another run is at work; 128 and the\n"
    "signal's number when stopped.\n";

} // namespace

CLI::App* CProfileCommand::AddTo(CLI::App& program) {
    CLI::App* const app = program.add_subcommand(
        "profile", "Print everything that is known of files, one JSON object each");
    auto const addField = [&](char const* option, char const* field, char const* help) {
        app->add_flag_callback(
            option, [this, field] { m_wishes.m_vMore.emplace_back(field); }, help);
    };
    addField("--half-beats", "halfBeats", "Add the points between the beats");
    addField("--fingerprint", "fingerprint", "Add what the song is found again by");
    addField("--envelopes", "envelopes", "Add the levels of the sound and of its bass");
    addField("--samples", "samples", "Add the engine's own positions in samples at 44100 Hz");
    app->add_option_function<std::string>(
           "--fields", [this](std::string const& names) { m_wishes.m_vOnly = FieldsOf(names); },
           "Print these fields alone, such as tempo,key,beats")
        ->type_name("LIST");
    app->add_flag("--trace", m_bTrace,
                  "Print what the stages of the engine hand on instead, of files alone");
    app->add_flag("--harmony", m_bHarmony,
                  "With --trace, print the key of chords and melody as well");
    m_run.AddOptions(*app);
    app->parse_complete_callback([this, app] {
        if (m_bTrace && (app->count("--max-errors") > 0 || app->count("--progress") > 0)) {
            throw CLI::ValidationError("--trace", "goes with neither --max-errors nor --progress");
        }
        m_run.RequirePaths();
    });
    app->footer(kProfileFooter);
    return app;
}

void CProfileCommand::ReportTrouble(std::string const& name, std::string const& reason,
                                    CDecodeReport const& report) {
    if (reason.empty()) {
        return;
    }
    ReportProblem(name, reason);
    if (m_run.IsVerbose() && !report.m_sDetail.empty()) {
        ReportProblem(name, "the decoding library says: " + report.m_sDetail);
    }
}

std::string CProfileCommand::TraceFile(std::string const& name, CString const& path) {
    CProfileTrace trace;
    CSongProfile const profile = ProfileSong(path.ToPath(), {.m_pCancel = &CInterrupt::Flag(),
                                                             .m_pObserver = &trace,
                                                             .m_bReadAhead = HasCoresToReadAhead(1),
                                                             .m_bHarmony = m_bHarmony});
    if (CInterrupt::IsSet()) {
        return {};
    }
    CDecodeReport const& report = profile.m_outcome.m_report;
    if (!profile.IsHeard()) {
        ReportTrouble(name, AnalysisReason(profile.m_outcome), report);
        m_bFailed = true;
        return {};
    }
    std::string const damage = DamageReason(report);
    ReportTrouble(name, damage, report);
    m_bWarned = m_bWarned || !damage.empty();
    return ProfileJson({name, &profile.m_results, profile.m_pPrint.Get(),
                        profile.m_pLargePrint.Get(), profile.m_vPercents, &trace,
                        profile.m_harmony});
}

int CProfileCommand::Run() {
    if (int const code = m_run.Begin(); code != kExitDone) {
        return code;
    }
    if (m_bTrace) {
        return RunTrace();
    }
    SongSink const sink = [this](CTakenSong const& song, COutput& output) {
        return output.Write(SongJson(song, m_wishes) + "\n");
    };
    return m_run.End(m_run.Run(sink, m_wishes.Names("envelopes")));
}

int CProfileCommand::RunTrace() {
    COutput output;
    if (int const code = m_run.Open(output); code != kExitDone) {
        return code;
    }
    CInputList const inputs(m_run.Paths());
    std::size_t done = 0;
    for (CInputFile const& input : inputs.Files()) {
        std::string const json = TraceFile(input.m_sName, input.m_sPath);
        if (CInterrupt::IsSet() || (!json.empty() && !output.Write(json + "\n"))) {
            break;
        }
        ++done;
    }
    if (!output.Finish()) {
        return kExitOutput;
    }
    if (CInterrupt::IsSet()) {
        ReportProblem("interrupted: " + std::to_string(done) + " of " +
                      std::to_string(inputs.Files().size()) + " files done");
        return CInterrupt::ExitCode();
    }
    return m_bFailed ? kExitFailed : m_bWarned ? kExitWarned : kExitDone;
}
