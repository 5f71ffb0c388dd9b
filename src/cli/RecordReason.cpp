// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/RecordReason.h"

#include "cli/Message.h"
#include "cli/WriteReason.h"

std::string RecordReason(ERecordProblem problem) {
    switch (problem) {
    case ERecordProblem::None:
    case ERecordProblem::NoFolder:
    case ERecordProblem::NotThere:
        return {};
    case ERecordProblem::NotOpened:
        return "can't be opened or made";
    case ERecordProblem::Damaged:
        return "was damaged and is put aside; a new one is begun";
    case ERecordProblem::Foreign:
        return "isn't used: another program made it";
    case ERecordProblem::Newer:
        return "isn't used: a later version of Tactus made it";
    case ERecordProblem::Busy:
        return "isn't used: other processes keep it locked";
    case ERecordProblem::Failed:
        break;
    }
    return "can't be written";
}

std::string TextOrNothing(std::optional<std::string> const& text) {
    return text ? "'" + *text + "'" : "nothing";
}

std::string UndoReason(CJournalEntry const& entry, CUndoResult const& result) {
    switch (result.m_eUndo) {
    case EUndo::Restored:
    case EUndo::TextAlone:
    case EUndo::AsBefore:
        return {};
    case EUndo::OtherText:
        return entry.m_sFrameId + " says " + TextOrNothing(result.m_textThere) + " and not " +
               TextOrNothing(entry.m_textAfter) + ", which was written: --force";
    case EUndo::Gone:
        return "isn't there any more";
    case EUndo::Unreadable:
        return "its tag can't be read";
    case EUndo::NotWritten:
        break;
    }
    return WriteReason(result.m_eProblem);
}

std::string WriterName(EJournalWriter writer) {
    switch (writer) {
    case EJournalWriter::Analyze:
        return "analyze";
    case EJournalWriter::TagSet:
        return "tag set";
    case EJournalWriter::Fix:
        return "fix";
    case EJournalWriter::Window:
        return "window";
    case EJournalWriter::Undo:
        break;
    }
    return "undo";
}

void ReportJournal(CJournal const& journal) {
    std::string const reason = RecordReason(journal.Problem());
    if (!reason.empty()) {
        ReportProblem(journal.Path(), "the journal of writes " + reason);
    }
}

void ReportStore(CRecordStore const& store) {
    std::string const reason = RecordReason(store.Problem());
    if (!reason.empty()) {
        ReportProblem(store.Path(), "the store of results " + reason);
    }
}
