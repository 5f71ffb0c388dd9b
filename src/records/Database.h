// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "records/RecordProblem.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <cstdint>
#include <memory>
#include <string>

/// One of the databases that the programs keep.
struct CDatabaseKind {
    char const* m_pFileName = nullptr;
    std::int32_t m_nApplication = 0; // marks the file as this kind
    std::int32_t m_nVersion = 0;     // of the tables
    char const* m_pTables = nullptr; // SQL that makes them
    bool m_bShrinks = false;         // the file can give room back
    bool m_bDurable = false;         // each change is on the disk before the next step
};

/// An open database, which is to be used under one lock at a time.
struct COpenDatabase {
    std::unique_ptr<SQLite::Database> m_pDatabase; // null when there is none
    std::uint64_t m_nInode = 0;                    // of its file
    ERecordProblem m_eProblem = ERecordProblem::None;
};

/// Opens the database of this kind in `folder`, which is made with its parents when it isn't there;
/// several processes may have it open. A file that is no database any more is put aside as
/// "name.damaged-N", so that nothing is lost with it. Never throws.
/// `isReading`: nothing is made or changed.
COpenDatabase OpenDatabase(std::string const& folder, CDatabaseKind const& kind, bool isReading);

/// What an exception of the database means: `Damaged`, `Busy` or `Failed`.
ERecordProblem ProblemOf(SQLite::Exception const& thrown);

/// Puts the file of a database that turned out to be damaged aside; `opened` is closed by it.
void PutAside(std::string const& folder, CDatabaseKind const& kind, COpenDatabase& opened);

/// Renames the database's file and what lies beside it, unless another file has the name by now.
/// Returns: whether it is away.
bool PutAside(std::string const& path, std::uint64_t inode);
