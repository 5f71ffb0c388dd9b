// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "records/Journal.h"
#include "records/RecordProblem.h"
#include "records/RecordStore.h"
#include "records/Undo.h"

#include <string>

/// Why a database isn't used, in words for a person; empty for `None`, and where nothing is to be
/// kept.
std::string RecordReason(ERecordProblem problem);

/// What came of taking back a write, where it isn't done; else empty.
std::string UndoReason(CJournalEntry const& entry, CUndoResult const& result);

/// "97" or "nothing", which is what a frame says that isn't there.
std::string TextOrNothing(std::optional<std::string> const& text);

/// What a batch did, such as "analyze".
std::string WriterName(EJournalWriter writer);

/// Tells a person, once, that results aren't remembered.
void ReportStore(CRecordStore const& store);

/// Tells a person, once, that writes weren't entered in the journal.
void ReportJournal(CJournal const& journal);
