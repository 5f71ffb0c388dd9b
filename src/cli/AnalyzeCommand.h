// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/AnalysisJobs.h"
#include "cli/Command.h"
#include "cli/Report.h"

#include <string>
#include <vector>

/// `tactus analyze`: finds the tempo of files and of what lies in folders.
class CAnalyzeCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

private:
    [[nodiscard]] bool IsOutputAnInput(CInputList const& inputs) const;
    int RunJobs(CInputList const& inputs, COutput& output);

    CAnalysisOptions m_options;
    EReportFormat m_format = EReportFormat::Table;
    std::string m_sOutput;
    bool m_bQuiet = false;
    std::vector<std::string> m_vPaths;
};
