// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Command.h"
#include "cli/Output.h"
#include "records/Journal.h"
#include "records/Undo.h"

#include <cstddef>
#include <string>
#include <vector>

/// `tactus undo`: takes writes of tags back.
class CUndoCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

private:
    /// A write, and the name under which its file is known to the person.
    struct CTask {
        CJournalEntry m_entry;
        std::string m_sName;
        std::string m_sPath;
    };

    void Collect(CJournal& journal);
    void CollectBatch(CJournal& journal, std::int64_t batch, std::string const& name);
    void CollectFile(CJournal& journal, std::string const& path);
    void Fail(std::string const& name, std::string const& reason);
    void TakeBack(CJournal& journal, CTask const& task, COutput& output);

    std::vector<std::string> m_vWhat;
    CUndoOptions m_options;
    std::vector<CTask> m_vTasks;
    std::size_t m_nDone = 0;
    std::size_t m_nAsBefore = 0;
    std::size_t m_nFailed = 0;
};
