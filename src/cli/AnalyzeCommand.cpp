// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/AnalyzeCommand.h"

#include "cli/ExitCode.h"
#include "cli/InputList.h"
#include "cli/Interrupt.h"
#include "cli/Message.h"
#include "cli/Progress.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <map>
#include <thread>

namespace {

constexpr std::size_t kMostJobs = 256; // Fixed: more only cost memory.

std::map<std::string, EReportFormat> const& Formats() {
    static std::map<std::string, EReportFormat> const formats = {
        {"table", EReportFormat::Table},
        {"csv", EReportFormat::Csv},
        {"json", EReportFormat::Json},
        {"jsonl", EReportFormat::JsonLines}};
    return formats;
}

} // namespace

CLI::App* CAnalyzeCommand::AddTo(CLI::App& program) {
    m_options.m_nJobs = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostJobs);
    CLI::App* const app = program.add_subcommand(
        "analyze", "Find the tempo of files, and of the audio files in folders");
    app->add_flag("-w,--write", m_options.m_bWrite,
                  "Store the tempos found in the tags of mp3 files");
    app->add_flag("-f,--force", m_options.m_bForce, "Analyse files too whose tag has a tempo");
    app->add_option("-j,--jobs", m_options.m_nJobs, "Files to analyse at once")
        ->type_name("N")
        ->check(CLI::Range(std::size_t{1}, kMostJobs))
        ->capture_default_str();
    app->add_option_function<std::string>(
           "--format", [this](std::string const& name) { m_format = Formats().at(name); },
           "table, csv, json or jsonl")
        ->type_name("FORMAT")
        ->check(CLI::IsMember(&Formats(), CLI::ignore_case).description(""))
        ->default_str("table");
    app->add_option("-o,--output", m_sOutput, "Write the results to FILE")->type_name("FILE");
    app->add_flag("-q,--quiet", m_bQuiet, "Show no progress");
    app->add_option("PATH", m_vPaths, "Files and folders; - is standard input")
        ->type_name("")
        ->required();
    return app;
}

/// True when the results would replace a file that is to be analysed, or another one that looks
/// like audio: a forgotten operand must not cost a song.
bool CAnalyzeCommand::IsOutputAnInput(CInputList const& inputs) const {
    std::error_code ignored;
    if (m_sOutput.empty() || m_sOutput == "-" ||
        !std::filesystem::is_regular_file(m_sOutput, ignored)) {
        return false;
    }
    return HasAudioExtension(CString::FromPath(m_sOutput)) ||
           std::ranges::any_of(inputs.Files(), [&](CInputFile const& file) {
               return std::filesystem::equivalent(m_sOutput, file.m_sPath.ToPath(), ignored);
           });
}

int CAnalyzeCommand::Run() {
    CInterrupt::Install();
    CInputList const inputs(m_vPaths);
    if (IsOutputAnInput(inputs)) {
        ReportProblem(m_sOutput, "is an audio file; the results would replace it");
        return kExitUsage;
    }
    COutput output;
    if (!output.Open(m_sOutput)) {
        return kExitFailed;
    }
    int const code = RunJobs(inputs, output);
    if (!output.Finish()) {
        return kExitFailed;
    }
    return code;
}

int CAnalyzeCommand::RunJobs(CInputList const& inputs, COutput& output) {
    std::unique_ptr<IReport> const report = MakeReport(m_format, output);
    CProgress progress(!m_bQuiet);
    CAnalysisJobs jobs(inputs.Files(), m_options, progress);
    bool isAllWell = true;
    std::size_t const done = jobs.Run([&](CReportRow const& row) {
        progress.Clear();
        if (!row.m_sError.empty()) {
            ReportProblem(row.m_sPath, row.m_sError);
            isAllWell = false;
        } else if (!row.m_sNote.empty()) {
            ReportProblem(row.m_sPath, row.m_sNote);
        }
        return report->Add(row);
    });
    progress.Clear();
    isAllWell = report->End() && isAllWell;
    if (CInterrupt::IsSet() && done < inputs.Files().size()) {
        ReportProblem("interrupted: " + std::to_string(done) + " of " +
                      std::to_string(inputs.Files().size()) + " files done");
        return CInterrupt::ExitCode();
    }
    return isAllWell ? kExitDone : kExitFailed;
}
