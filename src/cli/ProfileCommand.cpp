// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/ProfileCommand.h"

#include "base/CString.h"
#include "base/NotificationCenter.h"
#include "base/SmartPtr.h"
#include "cli/DecodeReason.h"
#include "cli/ExitCode.h"
#include "cli/InputList.h"
#include "cli/Interrupt.h"
#include "cli/Message.h"
#include "cli/Output.h"
#include "cli/ProfileJson.h"
#include "cli/ProfileTrace.h"
#include "engine/ProfileBuilder.h"
#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "engine/print/Fingerprint.h"
#include "platform/AudioDecoder.h"
#include "song/SamplePass.h"

#include <CLI/CLI.hpp>
#include <cstdlib>

namespace {

/// Keeps the percents of one run, and ends it when the user asks to stop.
class CProgressKeeper {
public:
    explicit CProgressKeeper(CProfileBuilder& builder) {
        CNotificationCenter::Default().AddObserver(
            this, kFileProgressNotification, [this, &builder](CUserInfo const* info) {
                m_vPercents.push_back(std::atoi(UserInfoText(info, kPercentKey).c_str()));
                if (CInterrupt::IsSet()) {
                    builder.CancelProfiling();
                }
            });
    }
    ~CProgressKeeper() {
        CNotificationCenter::Default().RemoveObserver(this, kFileProgressNotification);
    }
    CProgressKeeper(CProgressKeeper const&) = delete;
    CProgressKeeper& operator=(CProgressKeeper const&) = delete;

    [[nodiscard]] std::vector<int> const& Percents() const { return m_vPercents; }

private:
    std::vector<int> m_vPercents;
};

} // namespace

CLI::App* CProfileCommand::AddTo(CLI::App& program) {
    CLI::App* const app = program.add_subcommand(
        "profile", "Print everything that an analysis finds, one JSON object a file");
    app->add_flag("--trace", m_bTrace, "Print what the stages hand on as well");
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
    CAudioDecoder decoder(&CInterrupt::Flag());
    CDecodedAudio audio;
    if (decoder.Decode(path.ToPath(), audio) != kStatusOk) {
        if (!CInterrupt::IsSet()) {
            ReportTrouble(name, DecodeReason(decoder.GetReport()), decoder.GetReport());
            m_bFailed = true;
        }
        return {};
    }
    std::string const damage = DamageReason(decoder.GetReport());
    ReportTrouble(name, damage, decoder.GetReport());
    m_bWarned = m_bWarned || !damage.empty();
    CSamplePass reader(audio);
    CProfiler profiler(nullptr);
    CProfileResults results;
    CSmartPtr<CFingerprint> print;
    CSmartPtr<CFingerprint> largePrint;
    print.Create();
    largePrint.Create();
    CProfileTrace trace;
    CProfileBuilder builder;
    builder.SetObserver(m_bTrace ? &trace : nullptr);
    CProgressKeeper const progress(builder);
    builder.BuildProfile(&profiler, &reader, &results, print.Get(), largePrint.Get());
    if (CInterrupt::IsSet()) {
        return {};
    }
    return ProfileJson({name, &results, print.Get(), largePrint.Get(), progress.Percents(),
                        m_bTrace ? &trace : nullptr});
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
