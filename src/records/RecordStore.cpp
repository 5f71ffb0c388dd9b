// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/RecordStore.h"

#include "records/Database.h"
#include "records/EngineVersion.h"
#include "records/FileKey.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <chrono>
#include <filesystem>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kMostWaiting = 64;   // Fixed: songs that go to the file together.
constexpr std::int64_t kRemovedShare = 10; // Fixed: one in as many goes at a time.
constexpr std::int64_t kKeptPercent = 90;  // Fixed: room for some more after a removal.
constexpr std::int64_t kPercent = 100;

constexpr char kRecordTables[] = R"(
    CREATE TABLE songs(
        key BLOB NOT NULL UNIQUE,
        size INTEGER NOT NULL, written INTEGER NOT NULL, changed INTEGER NOT NULL,
        engine TEXT NOT NULL,
        used INTEGER NOT NULL,
        record BLOB NOT NULL);
    CREATE INDEX songsByUse ON songs(used);
)";

CDatabaseKind const kStoreKind = {
    .m_pFileName = "songs.sqlite",
    .m_nApplication = 0x54615265, // Fixed: "TaRe".
    .m_nVersion = 1,
    .m_pTables = kRecordTables,
    .m_bShrinks = true,
    .m_bDurable = false,
};

std::int64_t Today() {
    auto const time = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::hours>(time).count() / 24;
}

void BindBytes(SQLite::Statement& statement, int place, auto const& bytes) {
    statement.bind(place, static_cast<void const*>(bytes.data()), static_cast<int>(bytes.size()));
}

std::int64_t Count(SQLite::Database& database, char const* what) {
    return database.execAndGet(what).getInt64();
}

/// Bytes of the file, but for pages that are free.
std::int64_t UsedBytes(SQLite::Database& database) {
    std::int64_t const pages =
        Count(database, "PRAGMA page_count") - Count(database, "PRAGMA freelist_count");
    return pages * Count(database, "PRAGMA page_size");
}

std::int64_t RemoveOldest(SQLite::Database& database) {
    SQLite::Statement remove(
        database, "DELETE FROM songs WHERE key IN (SELECT key FROM songs ORDER BY used, key "
                  "LIMIT 1 + (SELECT count(*) FROM songs) / ?)");
    remove.bind(1, kRemovedShare);
    return remove.exec();
}

/// A song on its way to the file.
struct CWaitingSong {
    CFileKey m_key;
    std::vector<std::uint8_t> m_vRecord;
};

} // namespace

struct CRecordStore::CImpl {
    std::string m_sFolder;
    std::int64_t m_nMostBytes = 0;
    std::string m_sEngine = EngineVersion();
    CFileKeys m_keys;
    COpenDatabase m_open;
    std::unique_ptr<SQLite::Statement> m_pFind;
    std::vector<CWaitingSong> m_vWaiting;
    bool m_bAsked = false; // whether there is a database
    ERecordProblem m_eProblem = ERecordProblem::None;

    [[nodiscard]] std::string Path() const { return m_sFolder + "/" + kStoreKind.m_pFileName; }

    SQLite::Database* Open() {
        if (!m_bAsked) {
            m_bAsked = true;
            m_open = OpenDatabase(m_sFolder, kStoreKind, false);
            Note(m_open.m_eProblem);
        }
        return m_open.m_pDatabase.get();
    }

    void Note(ERecordProblem problem) {
        if (m_eProblem == ERecordProblem::None) {
            m_eProblem = problem;
        }
    }

    /// What was to be kept for want of a moment without others is no loss; anything else ends it.
    void GiveUp(SQLite::Exception const& thrown) {
        ERecordProblem const problem = ProblemOf(thrown);
        if (problem == ERecordProblem::Busy) {
            return;
        }
        Note(problem);
        m_pFind.reset();
        if (problem == ERecordProblem::Damaged) {
            PutAside(m_sFolder, kStoreKind, m_open);
        }
        m_open.m_pDatabase.reset();
    }

    template <typename Result, typename Action>
    Result Do(Result otherwise, Action const& action) {
        try {
            SQLite::Database* const database = Open();
            return database != nullptr ? action(*database) : otherwise;
        } catch (SQLite::Exception const& thrown) {
            GiveUp(thrown);
        }
        return otherwise;
    }

    /// The record of this file in this state and by this engine.
    std::optional<CSongRecord> Read(SQLite::Database& database, CFileKey const& key) {
        if (m_pFind == nullptr) {
            m_pFind = std::make_unique<SQLite::Statement>(
                database, "SELECT record, used FROM songs WHERE key = ? AND size = ? AND "
                          "written = ? AND changed = ? AND engine = ?");
        }
        m_pFind->reset();
        BindBytes(*m_pFind, 1, key.m_sKey);
        m_pFind->bind(2, key.m_state.m_nSize);
        m_pFind->bind(3, key.m_state.m_nWrittenTime);
        m_pFind->bind(4, key.m_state.m_nChangedTime);
        m_pFind->bind(5, m_sEngine);
        if (!m_pFind->executeStep()) {
            m_pFind->reset();
            return std::nullopt;
        }
        std::string const bytes = m_pFind->getColumn(0).getString();
        bool const isOld = m_pFind->getColumn(1).getInt64() < Today();
        m_pFind->reset();
        std::vector<std::uint8_t> record(bytes.begin(), bytes.end());
        std::optional<CSongRecord> found = SongRecordOf(record);
        if (found && isOld) {
            m_vWaiting.push_back({key, std::move(record)}); // used today
        }
        return found;
    }

    void Write(SQLite::Database& database) {
        if (m_vWaiting.empty()) {
            return;
        }
        std::vector<CWaitingSong> const songs = std::exchange(m_vWaiting, {});
        SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
        SQLite::Statement insert(
            database, "INSERT OR REPLACE INTO songs(key, size, written, changed, engine, "
                      "used, record) VALUES (?, ?, ?, ?, ?, ?, ?)");
        for (CWaitingSong const& song : songs) {
            insert.reset();
            BindBytes(insert, 1, song.m_key.m_sKey);
            insert.bind(2, song.m_key.m_state.m_nSize);
            insert.bind(3, song.m_key.m_state.m_nWrittenTime);
            insert.bind(4, song.m_key.m_state.m_nChangedTime);
            insert.bind(5, m_sEngine);
            insert.bind(6, Today());
            BindBytes(insert, 7, song.m_vRecord);
            insert.exec();
        }
        transaction.commit();
        (void)Shrink(database);
    }

    /// Removes what was used longest ago as long as there is too much. Returns: how many songs.
    std::int64_t Shrink(SQLite::Database& database) const {
        std::int64_t removed = 0;
        if (UsedBytes(database) > m_nMostBytes) {
            while (UsedBytes(database) > m_nMostBytes / kPercent * kKeptPercent &&
                   Count(database, "SELECT count(*) FROM songs") > 0) {
                removed += RemoveOldest(database);
            }
            database.exec("PRAGMA incremental_vacuum");
        }
        return removed;
    }

    void Remember(CFileKey key, CSongRecord const& record) {
        m_vWaiting.push_back({std::move(key), BytesOf(record)});
        if (m_vWaiting.size() >= kMostWaiting) {
            (void)Do(0, [&](SQLite::Database& database) {
                Write(database);
                return 0;
            });
        }
    }

    std::optional<CSongRecord> FindWaiting(CFileKey const& key) const {
        for (auto song = m_vWaiting.rbegin(); song != m_vWaiting.rend(); ++song) {
            if (song->m_key == key) {
                return SongRecordOf(song->m_vRecord);
            }
        }
        return std::nullopt;
    }

    std::optional<CSongRecord> Find(CFileKey const& key) {
        std::optional<CSongRecord> waiting = FindWaiting(key);
        return waiting ? waiting
                       : Do(std::optional<CSongRecord>(),
                            [&](SQLite::Database& database) { return Read(database, key); });
    }

    std::optional<std::int64_t> Remove(char const* what) {
        return Do(std::optional<std::int64_t>(), [&](SQLite::Database& database) {
            Write(database);
            SQLite::Statement remove(database, what);
            if (remove.getBindParameterCount() > 0) {
                remove.bind(1, m_sEngine);
            }
            std::int64_t const removed = remove.exec() + Shrink(database);
            database.exec("PRAGMA incremental_vacuum");
            (void)database.tryExec("PRAGMA wal_checkpoint(TRUNCATE)");
            return std::optional(removed);
        });
    }
};

CRecordStore::CRecordStore(std::string folder, std::int64_t mostBytes)
    : m_pImpl(std::make_unique<CImpl>()) {
    m_pImpl->m_sFolder = std::move(folder);
    m_pImpl->m_nMostBytes = mostBytes;
}

CRecordStore::~CRecordStore() {
    if (!m_pImpl->m_vWaiting.empty()) {
        (void)m_pImpl->Do(0, [&](SQLite::Database& database) {
            m_pImpl->Write(database);
            return 0;
        });
    }
}

CSongRecord CRecordStore::Find(std::string const& path, CFileIdentity const& identity) {
    std::scoped_lock const guard(m_lock);
    CSongRecord record =
        m_pImpl->Find(m_pImpl->m_keys.KeyOf(path, identity)).value_or(CSongRecord());
    if (record.m_heard) {
        record.m_heard->m_outcome.m_report.m_identity = identity;
    }
    return record;
}

void CRecordStore::Keep(std::string const& path, CFileIdentity const& identity,
                        CSongRecord const& record) {
    std::scoped_lock const guard(m_lock);
    m_pImpl->Remember(m_pImpl->m_keys.KeyOf(path, identity), record);
}

void CRecordStore::Follow(std::string const& path, CFileIdentity const& before,
                          CFileIdentity const& after) {
    std::scoped_lock const guard(m_lock);
    if (!m_pImpl->m_bAsked && m_pImpl->m_vWaiting.empty() && !IdentityAt(m_pImpl->Path())) {
        return;
    }
    std::optional<CSongRecord> record = m_pImpl->Find(m_pImpl->m_keys.KeyOf(path, before));
    if (!record || !record->m_heard || record->m_heard->m_outcome.m_report.IsDamaged()) {
        return;
    }
    record->m_tags.reset();
    record->m_heard->m_outcome.m_report.m_identity = after;
    m_pImpl->Remember(m_pImpl->m_keys.KeyOf(path, after), *record);
}

std::optional<CStoreInfo> CRecordStore::Info() {
    std::scoped_lock const guard(m_lock);
    return m_pImpl->Do(std::optional<CStoreInfo>(), [&](SQLite::Database& database) {
        m_pImpl->Write(database);
        CStoreInfo info;
        info.m_sPath = m_pImpl->Path();
        info.m_nSongs = Count(database, "SELECT count(*) FROM songs");
        SQLite::Statement other(database, "SELECT count(*) FROM songs WHERE engine != ?");
        other.bind(1, m_pImpl->m_sEngine);
        (void)other.executeStep();
        info.m_nOther = other.getColumn(0).getInt64();
        std::error_code error;
        info.m_nBytes = static_cast<std::int64_t>(std::filesystem::file_size(info.m_sPath, error));
        return std::optional(info);
    });
}

std::optional<std::int64_t> CRecordStore::Prune() {
    std::scoped_lock const guard(m_lock);
    return m_pImpl->Remove("DELETE FROM songs WHERE engine != ?");
}

std::optional<std::int64_t> CRecordStore::Clear() {
    std::scoped_lock const guard(m_lock);
    return m_pImpl->Remove("DELETE FROM songs");
}

std::string CRecordStore::Path() const {
    return m_pImpl->Path();
}

ERecordProblem CRecordStore::Problem() const {
    std::scoped_lock const guard(m_lock);
    return m_pImpl->m_eProblem;
}
