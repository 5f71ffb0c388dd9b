// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/ProfileCommand.h"

#include "base/CString.h"
#include "cli/DecodeReason.h"
#include "cli/ExitCode.h"
#include "cli/InputList.h"
#include "cli/Interrupt.h"
#include "cli/Message.h"
#include "cli/Output.h"
#include "cli/ProfileJson.h"
#include "cli/ProfileTrace.h"
#include "song/SongProfile.h"

#include <CLI/CLI.hpp>

CLI::App* CProfileCommand::AddTo(CLI::App& program) {
    CLI::App* const app = program.add_subcommand(
        "profile", "Print everything that an analysis finds, one JSON object a file");
    app->add_flag("--trace", m_bTrace, "Print what the stages hand on as well");
    app->add_flag("--harmony", m_bHarmony, "Print the key of chords and melody as well");
    app->add_flag("-v,--verbose", m_bVerbose, "Add what the decoding library says of a failure");
    app->add_option("FILE", m_vFiles, "Audio files; - is standard input")
        ->type_name("")
        ->required();
    return app;
}

void CProfileCommand::ReportTrouble(std::string const& name, std::string const& reason,
                                    CDecodeReport const& report) {
    if (reason.empty()) {
        return;
    }
    ReportProblem(name, reason);
    if (m_bVerbose && !report.m_sDetail.empty()) {
        ReportProblem(name, "the decoding library says: " + report.m_sDetail);
    }
}

std::string CProfileCommand::ProfileFile(std::string const& name, CString const& path) {
    std::vector<int> percents;
    CProfileTrace trace;
    CSongProfile const profile = ProfileSong(
        path.ToPath(), {.m_pCancel = &CInterrupt::Flag(),
                        .m_progress = [&](std::uint8_t percent) { percents.push_back(percent); },
                        .m_pObserver = m_bTrace ? &trace : nullptr,
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
                        profile.m_pLargePrint.Get(), percents, m_bTrace ? &trace : nullptr,
                        profile.m_harmony});
}

int CProfileCommand::Run() {
    CInterrupt::Install();
    COutput output;
    CInputList const inputs(m_vFiles);
    std::size_t done = 0;
    for (CInputFile const& input : inputs.Files()) {
        std::string const json = ProfileFile(input.m_sName, input.m_sPath);
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
