// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Correction.h"
#include "cli/Command.h"
#include "cli/InputWalk.h"
#include "cli/Output.h"
#include "records/Journal.h"

#include <string>
#include <vector>

class CRecordStore;

/// `tactus fix`: puts tempos right that are a ratio off, or known to a person.
class CFixCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

private:
    bool Tap();
    bool Fix(CInputFile const& input, CJournal& journal, CRecordStore& store, COutput& output);

    std::string m_sHow;
    std::vector<std::string> m_vPaths;
    CWalkOptions m_walk;
    CTempoFix m_fix;
    bool m_bDryRun = false;
    bool m_bKeepTime = false;
};
