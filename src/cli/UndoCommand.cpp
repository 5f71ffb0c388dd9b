// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The steps: collect the writes that are meant; take them back, the last one first; tell of each.

#include "cli/UndoCommand.h"

#include "cli/ExitCode.h"
#include "cli/Interrupt.h"
#include "cli/Message.h"
#include "cli/RecordReason.h"
#include "records/Places.h"
#include "records/RecordStore.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <optional>

namespace {

/// The number of a batch; nothing for a path. A file whose name is a number is "./12".
std::optional<std::int64_t> BatchOf(std::string const& text) {
    std::int64_t batch = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), batch);
    bool const isNumber = error == std::errc() && end == text.data() + text.size() && batch > 0;
    return isNumber ? std::optional(batch) : std::nullopt;
}

} // namespace

CLI::App* CUndoCommand::AddTo(CLI::App& program) {
    CLI::App* const app = program.add_subcommand("undo", "Take writes of tags back");
    app->add_flag("-f,--force", m_options.m_bForce,
                  "Also where the tag says something else by now");
    app->add_flag("--keep-mtime", m_options.m_bKeepTime,
                  "Give files the time back that they had before the write");
    app->add_option("WHAT", m_vWhat,
                    "Numbers of batches, as 'tactus history' lists them, and files, "
                    "whose last write is meant; the last batch unless said")
        ->type_name("");
    app->footer(
        "An undo is a write too: undoing it brings back what it took.\n\nExit status: 0 all "
        "done; 1 something was left as it is; 2 wrong usage; 128 and\nthe signal's number "
        "when stopped.\n");
    return app;
}

int CUndoCommand::Run() {
    CInterrupt::Install();
    CRecordStore store(CacheFolder());
    CJournal journal(StateFolder());
    journal.SetStore(&store);
    Collect(journal);
    COutput output;
    for (CTask const& task : m_vTasks) {
        if (CInterrupt::IsSet()) {
            break;
        }
        TakeBack(journal, task, output);
    }
    bool const isWritten = output.Finish();
    ReportJournal(journal);
    std::size_t const done = m_nDone + m_nAsBefore;
    if (CInterrupt::IsSet()) {
        ReportProblem("interrupted: " + std::to_string(done) + " of " +
                      std::to_string(m_vTasks.size()) + " files done");
        return CInterrupt::ExitCode();
    }
    if (m_vTasks.size() > 1) {
        ReportProblem(std::to_string(m_nDone) + " taken back" +
                      (m_nAsBefore > 0 ? ", " + std::to_string(m_nAsBefore) + " as before" : "") +
                      (m_nFailed > 0 ? ", " + std::to_string(m_nFailed) + " left" : ""));
    }
    return !isWritten ? kExitOutput : m_nFailed > 0 ? kExitFailed : kExitDone;
}

void CUndoCommand::Collect(CJournal& journal) {
    if (m_vWhat.empty()) {
        std::vector<CJournalBatch> const last = journal.Batches(1);
        if (last.empty()) {
            Fail("", "nothing was written that could be taken back");
        } else {
            CollectBatch(journal, last.front().m_nId, "");
        }
    }
    for (std::string const& what : m_vWhat) {
        std::optional<std::int64_t> const batch = BatchOf(what);
        if (batch) {
            CollectBatch(journal, *batch, what);
        } else {
            CollectFile(journal, what);
        }
    }
}

/// Two writes of one file are taken back the last one first.
void CUndoCommand::CollectBatch(CJournal& journal, std::int64_t batch, std::string const& name) {
    std::vector<CJournalEntry> entries = journal.Entries(batch);
    if (entries.empty()) {
        Fail(name, "no such batch of writes: 'tactus history' lists them");
    }
    std::ranges::reverse(entries);
    for (CJournalEntry& entry : entries) {
        std::string const path = entry.m_sPath;
        m_vTasks.push_back({std::move(entry), path, path});
    }
}

void CUndoCommand::CollectFile(CJournal& journal, std::string const& path) {
    std::vector<CJournalEntry> writes = journal.Writes(path, 1);
    if (writes.empty()) {
        Fail(path, "Tactus knows of no write of it");
        return;
    }
    m_vTasks.push_back({std::move(writes.front()), path, path});
}

void CUndoCommand::Fail(std::string const& name, std::string const& reason) {
    ++m_nFailed;
    if (name.empty()) {
        ReportProblem(reason);
    } else {
        ReportProblem(name, reason);
    }
}

void CUndoCommand::TakeBack(CJournal& journal, CTask const& task, COutput& output) {
    CUndoResult const result = UndoWrite(journal, task.m_entry, task.m_sPath, m_options);
    std::string const reason = UndoReason(task.m_entry, result);
    if (!reason.empty()) {
        Fail(task.m_sName, reason);
        return;
    }
    bool const isAsBefore = result.m_eUndo == EUndo::AsBefore;
    ++(isAsBefore ? m_nAsBefore : m_nDone);
    std::string const change = isAsBefore ? "is as it was before"
                                          : task.m_entry.m_sFrameId + " " +
                                                TextOrNothing(result.m_textThere) + " -> " +
                                                TextOrNothing(task.m_entry.m_textBefore);
    std::string const line = task.m_sName + ": " + change;
    output.Write((output.IsTerminal() ? Printable(line) : line) + "\n");
}
