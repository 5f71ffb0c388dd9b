// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "records/Database.h"
#include "records/Journal.h"

/// The journal's tables, and what is asked of them. Everything throws `SQLite::Exception` when the
/// database gives way.

extern CDatabaseKind const kJournalKind;

void InsertEntry(SQLite::Database& database, CJournalEntry const& entry);

/// `after`: nothing for a write that failed.
void ConfirmEntry(SQLite::Database& database, std::int64_t id,
                  std::optional<CFileIdentity> const& after);

std::vector<CJournalBatch> ReadBatches(SQLite::Database& database, std::int64_t most);

std::vector<CJournalEntry> ReadBatch(SQLite::Database& database, std::int64_t batch);

/// By the path; when it has none, by the file that `identity` tells of, if nobody has changed it
/// since its last write: the number of a file that is gone may be another one's.
std::vector<CJournalEntry> ReadWrites(SQLite::Database& database, std::string const& path,
                                      std::optional<CFileIdentity> const& identity,
                                      std::int64_t most);

/// A text in a file.
struct CPlacedText {
    std::string m_sPath;
    std::optional<CFileIdentity> m_identity;
    std::string m_sFrameId;
    std::string m_sText;
};

std::optional<ETextOrigin> ReadOrigin(SQLite::Database& database, CPlacedText const& text);

/// Returns: the number of writes that were there.
std::int64_t ClearRows(SQLite::Database& database);
