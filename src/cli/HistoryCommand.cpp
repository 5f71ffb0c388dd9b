// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/HistoryCommand.h"

#include "base/Utf16.h"
#include "cli/ExitCode.h"
#include "cli/Message.h"
#include "cli/RecordReason.h"
#include "export/FileUri.h"
#include "export/Json.h"
#include "records/Places.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t kMostRows = 1'000'000'000; // Fixed: as good as all.
constexpr std::size_t kNumberCells = 6;           // Fixed: columns of the list of batches.
constexpr std::size_t kWriterCells = 14;          // Fixed: likewise; holds "undo of 123456".

/// "2026-11-21 20:31:02" by the clock of this place.
std::string TimeOf(std::int64_t nanoseconds) {
    std::time_t const seconds = nanoseconds / kNanosecondsPerSecond;
    std::tm parts = {};
    std::array<char, 64> text{};
    std::size_t const length = ::localtime_r(&seconds, &parts) != nullptr
                                   ? std::strftime(text.data(), text.size(), "%F %T", &parts)
                                   : 0;
    return {text.data(), length};
}

std::string PaddedLeft(std::string const& text, std::size_t cells) {
    return std::string(cells - std::min(cells, text.size()), ' ') + text;
}

std::string PaddedRight(std::string const& text, std::size_t cells) {
    return text + std::string(cells - std::min(cells, text.size()), ' ');
}

std::string JsonOrNull(std::optional<std::string> const& text) {
    return text ? JsonText(*text) : "null";
}

void AddPath(CJsonObject& object, std::string const& path) {
    object.Add("path", JsonText(path));
    if (!IsUtf8(path)) {
        object.Add("uri", JsonText(FileUri(path)));
    }
}

std::string BatchJson(CJournalBatch const& batch) {
    CJsonObject object;
    object.Add("batch", JsonNumber(batch.m_nId))
        .Add("time", JsonText(TimeOf(batch.m_nTime)))
        .Add("by", JsonText(WriterName(batch.m_eWriter)))
        .Add("undoes", batch.m_undoes ? JsonNumber(*batch.m_undoes) : "null")
        .Add("files", JsonNumber(batch.m_nWrites));
    AddPath(object, batch.m_sPath);
    return object.Close();
}

std::string BatchLine(CJournalBatch const& batch) {
    std::string const writer =
        batch.m_undoes ? "undo of " + std::to_string(*batch.m_undoes) : WriterName(batch.m_eWriter);
    return PaddedLeft(std::to_string(batch.m_nId), kNumberCells) + "  " + TimeOf(batch.m_nTime) +
           "  " + PaddedRight(writer, kWriterCells) + "  " +
           PaddedLeft(std::to_string(batch.m_nWrites), kNumberCells) + "  " + batch.m_sPath;
}

std::string EntryJson(CJournalEntry const& entry) {
    CJsonObject object;
    object.Add("batch", JsonNumber(entry.m_nBatch))
        .Add("time", JsonText(TimeOf(entry.m_nTime)))
        .Add("by", JsonText(WriterName(entry.m_eWriter)));
    AddPath(object, entry.m_sPath);
    return object.Add("frame", JsonText(entry.m_sFrameId))
        .Add("before", JsonOrNull(entry.m_textBefore))
        .Add("after", JsonOrNull(entry.m_textAfter))
        .Add("confirmed", entry.m_eState == EJournalState::Written ? "true" : "false")
        .Close();
}

std::string EntryLine(CJournalEntry const& entry) {
    std::string const doubt =
        entry.m_eState == EJournalState::Written ? "" : "  (the program ended meanwhile)";
    return TimeOf(entry.m_nTime) + "  " + PaddedRight(WriterName(entry.m_eWriter), kNumberCells) +
           "  " + entry.m_sFrameId + " " + TextOrNothing(entry.m_textBefore) + " -> " +
           TextOrNothing(entry.m_textAfter) + "  " + entry.m_sPath + doubt;
}

std::string Shown(COutput const& output, std::string const& line) {
    return (output.IsTerminal() ? Printable(line) : line) + "\n";
}

} // namespace

CLI::App* CHistoryCommand::AddTo(CLI::App& program) {
    CLI::App* const app = program.add_subcommand("history", "Tell what was written into tags");
    app->add_option("-n,--number", m_nMost, "How many rows to show at the most, 20 unless said")
        ->type_name("N")
        ->check(CLI::Range(std::int64_t{1}, kMostRows).description(""));
    app->add_flag("--json", m_bJson, "Print a JSON object a line");
    app->add_flag("--clear", m_bClear, "Forget all of it; nothing can be taken back then");
    app->add_option("WHAT", m_sWhat,
                    "The number of a batch, whose writes are listed, or a file; "
                    "the latest batches unless said")
        ->type_name("");
    app->footer("Exit status: 0 all done; 1 nothing was found; 2 wrong usage.\n");
    return app;
}

int CHistoryCommand::Run() {
    CJournal journal(StateFolder());
    if (m_bClear) {
        return Clear(journal);
    }
    COutput output;
    bool const isFound =
        m_sWhat.empty() ? PrintBatches(journal, output) : PrintWrites(journal, output);
    bool const isWritten = output.Finish();
    ReportJournal(journal);
    return !isWritten ? kExitOutput : isFound ? kExitDone : kExitFailed;
}

bool CHistoryCommand::PrintBatches(CJournal& journal, COutput& output) const {
    std::vector<CJournalBatch> const batches = journal.Batches(m_nMost);
    if (!batches.empty() && !m_bJson) {
        output.Write(PaddedLeft("Batch", kNumberCells) + "  " + PaddedRight("Time", 19) + "  " +
                     PaddedRight("By", kWriterCells) + "  " + PaddedLeft("Files", kNumberCells) +
                     "  First\n");
    }
    for (CJournalBatch const& batch : batches) {
        output.Write(m_bJson ? BatchJson(batch) + "\n" : Shown(output, BatchLine(batch)));
    }
    return true;
}

bool CHistoryCommand::PrintWrites(CJournal& journal, COutput& output) const {
    std::int64_t batch = 0;
    char const* const last = m_sWhat.data() + m_sWhat.size();
    auto const [end, error] = std::from_chars(m_sWhat.data(), last, batch);
    bool const isBatch = error == std::errc() && end == last;
    std::vector<CJournalEntry> entries =
        isBatch ? journal.Entries(batch) : journal.Writes(m_sWhat, m_nMost);
    if (entries.empty()) {
        ReportProblem(m_sWhat,
                      isBatch ? "no such batch of writes" : "Tactus knows of no write of it");
        return false;
    }
    for (CJournalEntry const& entry : entries) {
        output.Write(m_bJson ? EntryJson(entry) + "\n" : Shown(output, EntryLine(entry)));
    }
    return true;
}

int CHistoryCommand::Clear(CJournal& journal) {
    std::optional<std::int64_t> const forgotten = journal.Clear();
    ReportJournal(journal);
    if (forgotten) {
        ReportProblem(std::to_string(*forgotten) +
                      (*forgotten == 1 ? " write forgotten" : " writes forgotten"));
    }
    return forgotten ? kExitDone : kExitFailed;
}
