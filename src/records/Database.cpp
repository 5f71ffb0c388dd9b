// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The steps of opening: make the folder; open the file; see that it is of our kind and of a version
// that we know; make the tables of a new one. What turns out to be damaged is put aside, and the
// steps are taken once more.

#include "records/Database.h"

#include "base/FileIdentity.h"
#include "records/Places.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <chrono>
#include <filesystem>
#include <sqlite3.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int kBusyMilliseconds = 5000;            // Fixed: others are done long before.
constexpr int kMostAside = 100;                    // Fixed: then a damaged file stays in the way.
constexpr int kWalAttempts = 200;                  // Fixed: with the pause below, 2 seconds.
constexpr std::chrono::milliseconds kWalPause(10); // Fixed: likewise.
constexpr int kPrimaryCode = 0xFF;                 // Standard: SQLite's extended result codes.

/// Lets readers go on while one process writes. Where that can't be had, locks do.
void UseWriteAheadLog(SQLite::Database& database) {
    for (int i = 0; i < kWalAttempts; ++i) {
        // Busy handlers are not asked while the mode is changed.
        int const code = database.tryExec("PRAGMA journal_mode = WAL");
        if ((code & kPrimaryCode) != SQLITE_BUSY) {
            return;
        }
        std::this_thread::sleep_for(kWalPause);
    }
}

bool IsEmpty(SQLite::Database& database) {
    return database.execAndGet("SELECT count(*) FROM sqlite_master").getInt() == 0;
}

void MakeTables(SQLite::Database& database, CDatabaseKind const& kind) {
    SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
    if (IsEmpty(database)) { // nobody was faster
        database.exec(kind.m_pTables);
        database.exec("PRAGMA application_id = " + std::to_string(kind.m_nApplication));
        database.exec("PRAGMA user_version = " + std::to_string(kind.m_nVersion));
    }
    transaction.commit();
}

ERecordProblem LookAt(SQLite::Database& database, CDatabaseKind const& kind) {
    if (database.execAndGet("PRAGMA application_id").getInt() != kind.m_nApplication) {
        return ERecordProblem::Foreign;
    }
    std::int32_t const version = database.execAndGet("PRAGMA user_version").getInt();
    return version == kind.m_nVersion  ? ERecordProblem::None
           : version > kind.m_nVersion ? ERecordProblem::Newer
                                       : ERecordProblem::Foreign;
}

COpenDatabase OpenAt(std::string const& path, CDatabaseKind const& kind, bool isReading) {
    int const flags =
        isReading ? SQLite::OPEN_READONLY : SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE;
    COpenDatabase opened;
    try {
        opened.m_pDatabase = std::make_unique<SQLite::Database>(path, flags, kBusyMilliseconds);
        SQLite::Database& database = *opened.m_pDatabase;
        if (!isReading && IsEmpty(database)) {
            if (kind.m_bShrinks) {
                database.exec("PRAGMA auto_vacuum = INCREMENTAL");
            }
            UseWriteAheadLog(database);
            MakeTables(database, kind);
        }
        opened.m_nInode = IdentityAt(path).value_or(CFileIdentity()).m_nInode;
        // A file without tables was begun where no more would fit.
        opened.m_eProblem =
            isReading && IsEmpty(database) ? ERecordProblem::NotThere : LookAt(database, kind);
        // What a kill of the process leaves is whole either way; the difference is a power cut.
        database.exec(kind.m_bDurable ? "PRAGMA synchronous = FULL"
                                      : "PRAGMA synchronous = NORMAL");
    } catch (SQLite::Exception const& thrown) {
        ERecordProblem const problem = ProblemOf(thrown);
        opened.m_eProblem = problem == ERecordProblem::Failed ? ERecordProblem::NotOpened : problem;
    }
    if (opened.m_eProblem != ERecordProblem::None) {
        opened.m_pDatabase.reset();
    }
    return opened;
}

} // namespace

ERecordProblem ProblemOf(SQLite::Exception const& thrown) {
    switch (thrown.getErrorCode() & kPrimaryCode) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return ERecordProblem::Damaged;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return ERecordProblem::Busy;
    default:
        return ERecordProblem::Failed;
    }
}

bool PutAside(std::string const& path, std::uint64_t inode) {
    std::optional<CFileIdentity> const now = IdentityAt(path);
    if (!now || now->m_nInode != inode) {
        return !now.has_value();
    }
    for (int i = 1; i <= kMostAside; ++i) {
        std::string const aside = path + ".damaged-" + std::to_string(i);
        // A second name first, because a rename would replace an older one.
        if (::link(path.c_str(), aside.c_str()) != 0) {
            continue;
        }
        for (char const* const beside : {"-wal", "-shm"}) {
            (void)::rename((path + beside).c_str(), (aside + beside).c_str());
        }
        return ::unlink(path.c_str()) == 0;
    }
    return false;
}

void PutAside(std::string const& folder, CDatabaseKind const& kind, COpenDatabase& opened) {
    opened.m_pDatabase.reset();
    (void)PutAside(folder + "/" + kind.m_pFileName, opened.m_nInode);
}

COpenDatabase OpenDatabase(std::string const& folder, CDatabaseKind const& kind, bool isReading) {
    COpenDatabase opened;
    std::string const path = folder + "/" + kind.m_pFileName;
    std::optional<CFileIdentity> const there = IdentityAt(path);
    if (folder.empty()) {
        opened.m_eProblem = ERecordProblem::NoFolder;
    } else if (isReading && !there) {
        opened.m_eProblem = ERecordProblem::NotThere;
    } else if (!isReading && !MakePrivateFolder(folder)) {
        opened.m_eProblem = ERecordProblem::NotOpened;
    } else {
        opened = OpenAt(path, kind, isReading);
    }
    if (opened.m_eProblem == ERecordProblem::Damaged && !isReading && there &&
        PutAside(path, there->m_nInode)) {
        opened = OpenAt(path, kind, isReading);
        if (opened.m_eProblem == ERecordProblem::None) {
            opened.m_eProblem = ERecordProblem::Damaged;
        }
    }
    return opened;
}
