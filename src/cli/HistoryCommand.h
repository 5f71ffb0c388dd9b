// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Command.h"
#include "cli/Output.h"
#include "records/Journal.h"

#include <cstdint>
#include <string>

/// `tactus history`: tells what was written into tags.
class CHistoryCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

private:
    bool PrintBatches(CJournal& journal, COutput& output) const;
    bool PrintWrites(CJournal& journal, COutput& output) const;
    static int Clear(CJournal& journal);

    std::string m_sWhat;
    std::int64_t m_nMost = 20;
    bool m_bJson = false;
    bool m_bClear = false;
};
