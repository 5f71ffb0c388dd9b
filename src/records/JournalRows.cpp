// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/JournalRows.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

namespace {

constexpr char kJournalTables[] = R"(
    CREATE TABLE batches(
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        time INTEGER NOT NULL,
        writer INTEGER NOT NULL);
    CREATE TABLE writes(
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        batch INTEGER NOT NULL REFERENCES batches(id),
        time INTEGER NOT NULL,
        writer INTEGER NOT NULL,
        origin INTEGER NOT NULL,
        state INTEGER NOT NULL,
        path BLOB NOT NULL,
        frame TEXT NOT NULL,
        textBefore TEXT,
        textAfter TEXT,
        device INTEGER NOT NULL, inode INTEGER NOT NULL, size INTEGER NOT NULL,
        written INTEGER NOT NULL, changed INTEGER NOT NULL,
        newDevice INTEGER, newInode INTEGER, newSize INTEGER,
        newWritten INTEGER, newChanged INTEGER,
        oldTagBytes INTEGER NOT NULL, oldTagDigest INTEGER NOT NULL,
        newTagBytes INTEGER NOT NULL, newTagDigest INTEGER NOT NULL,
        way BLOB,
        undoes INTEGER);
    CREATE INDEX writesByBatch ON writes(batch, id);
    CREATE INDEX writesByPath ON writes(path, id);
    CREATE INDEX writesByFile ON writes(newInode, newDevice, id);
)";

constexpr char kColumns[] =
    "id, batch, time, writer, origin, state, path, frame, textBefore, textAfter, "
    "device, inode, size, written, changed, "
    "newDevice, newInode, newSize, newWritten, newChanged, "
    "oldTagBytes, oldTagDigest, newTagBytes, newTagDigest, way, undoes";
constexpr int kIdentityColumns = 5;
constexpr int kNotWritten = static_cast<int>(EJournalState::NotWritten);

std::int64_t Signed(std::uint64_t number) {
    return static_cast<std::int64_t>(number);
}

/// Binds the next parameters of a statement, from the first to the last.
class CBinder {
public:
    explicit CBinder(SQLite::Statement& statement) : m_statement(statement) {}

    CBinder& Number(std::int64_t number) {
        m_statement.bind(++m_nLast, number);
        return *this;
    }
    CBinder& Bytes(void const* bytes, std::size_t count) {
        m_statement.bind(++m_nLast, bytes, static_cast<int>(count));
        return *this;
    }
    CBinder& Text(std::optional<std::string> const& text) {
        ++m_nLast;
        if (text) {
            m_statement.bind(m_nLast, *text);
        }
        return *this;
    }
    CBinder& Identity(CFileIdentity const& identity) {
        return Number(Signed(identity.m_nDevice))
            .Number(Signed(identity.m_nInode))
            .Number(identity.m_nSize)
            .Number(identity.m_nWrittenTime)
            .Number(identity.m_nChangedTime);
    }
    CBinder& Nothing() {
        ++m_nLast;
        return *this;
    }

private:
    SQLite::Statement& m_statement;
    int m_nLast = 0;
};

/// Takes the columns of a row, from the first to the last.
class CTaker {
public:
    explicit CTaker(SQLite::Statement const& row) : m_row(row) {}

    std::int64_t Number() { return m_row.getColumn(m_nNext++).getInt64(); }
    std::uint64_t Unsigned() { return static_cast<std::uint64_t>(Number()); }
    std::string Bytes() { return m_row.getColumn(m_nNext++).getString(); }
    [[nodiscard]] bool IsNull() const { return m_row.getColumn(m_nNext).isNull(); }
    void Skip(int columns) { m_nNext += columns; }

    std::optional<std::string> Text() {
        if (IsNull()) {
            Skip(1);
            return std::nullopt;
        }
        return Bytes();
    }
    CFileIdentity Identity() {
        CFileIdentity identity;
        identity.m_nDevice = Unsigned();
        identity.m_nInode = Unsigned();
        identity.m_nSize = Number();
        identity.m_nWrittenTime = Number();
        identity.m_nChangedTime = Number();
        return identity;
    }

private:
    SQLite::Statement const& m_row;
    int m_nNext = 0;
};

/// A number of a database that somebody may have edited, as one of an enumeration's values.
template <typename Value>
Value ValueOf(std::int64_t number, Value last) {
    bool const isKnown = number >= 0 && number <= static_cast<std::int64_t>(last);
    return isKnown ? static_cast<Value>(number) : last;
}

CJournalEntry EntryOf(SQLite::Statement const& row) {
    CTaker taker(row);
    CJournalEntry entry;
    entry.m_nId = taker.Number();
    entry.m_nBatch = taker.Number();
    entry.m_nTime = taker.Number();
    entry.m_eWriter = ValueOf(taker.Number(), EJournalWriter::Undo);
    entry.m_eOrigin = ValueOf(taker.Number(), ETextOrigin::Earlier);
    entry.m_eState = ValueOf(taker.Number(), EJournalState::NotWritten);
    entry.m_sPath = taker.Bytes();
    entry.m_sFrameId = taker.Bytes();
    entry.m_textBefore = taker.Text();
    entry.m_textAfter = taker.Text();
    entry.m_before = taker.Identity();
    if (taker.IsNull()) {
        taker.Skip(kIdentityColumns);
    } else {
        entry.m_after = taker.Identity();
    }
    entry.m_oldTag.m_nBytes = taker.Unsigned();
    entry.m_oldTag.m_nDigest = taker.Unsigned();
    entry.m_newTag.m_nBytes = taker.Unsigned();
    entry.m_newTag.m_nDigest = taker.Unsigned();
    std::optional<std::string> const way = taker.Text();
    if (way) {
        entry.m_way.emplace(way->begin(), way->end());
    }
    if (!taker.IsNull()) {
        entry.m_undoes = taker.Number();
    }
    return entry;
}

std::vector<CJournalEntry> EntriesOf(SQLite::Statement& rows) {
    std::vector<CJournalEntry> entries;
    while (rows.executeStep()) {
        entries.push_back(EntryOf(rows));
    }
    return entries;
}

std::string Select(char const* condition) {
    return std::string("SELECT ") + kColumns +
           " FROM writes WHERE state != " + std::to_string(kNotWritten) + " AND " + condition;
}

} // namespace

CDatabaseKind const kJournalKind = {
    .m_pFileName = "journal.sqlite",
    .m_nApplication = 0x54614A6F, // Fixed: "TaJo".
    .m_nVersion = 1,
    .m_pTables = kJournalTables,
    .m_bShrinks = false,
    .m_bDurable = true,
};

void InsertEntry(SQLite::Database& database, CJournalEntry const& entry) {
    SQLite::Statement insert(
        database, "INSERT INTO writes(batch, time, writer, origin, state, path, frame, textBefore, "
                  "textAfter, device, inode, size, written, changed, oldTagBytes, oldTagDigest, "
                  "newTagBytes, newTagDigest, way, undoes) "
                  "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    CBinder binder(insert);
    binder.Number(entry.m_nBatch)
        .Number(entry.m_nTime)
        .Number(static_cast<int>(entry.m_eWriter))
        .Number(static_cast<int>(entry.m_eOrigin))
        .Number(static_cast<int>(EJournalState::Begun))
        .Bytes(entry.m_sPath.data(), entry.m_sPath.size())
        .Text(entry.m_sFrameId)
        .Text(entry.m_textBefore)
        .Text(entry.m_textAfter)
        .Identity(entry.m_before)
        .Number(Signed(entry.m_oldTag.m_nBytes))
        .Number(Signed(entry.m_oldTag.m_nDigest))
        .Number(Signed(entry.m_newTag.m_nBytes))
        .Number(Signed(entry.m_newTag.m_nDigest));
    if (entry.m_way) {
        // Bytes without any would become a null.
        static constexpr char kNone[] = "";
        bool const isEmpty = entry.m_way->empty();
        binder.Bytes(isEmpty ? static_cast<void const*>(kNone) : entry.m_way->data(),
                     entry.m_way->size());
    } else {
        binder.Nothing();
    }
    if (entry.m_undoes) {
        binder.Number(*entry.m_undoes);
    }
    insert.exec();
}

void ConfirmEntry(SQLite::Database& database, std::int64_t id,
                  std::optional<CFileIdentity> const& after) {
    if (!after) {
        SQLite::Statement update(database, "UPDATE writes SET state = ? WHERE id = ?");
        CBinder(update).Number(kNotWritten).Number(id);
        update.exec();
        return;
    }
    SQLite::Statement update(
        database, "UPDATE writes SET state = ?, newDevice = ?, newInode = ?, newSize = ?, "
                  "newWritten = ?, newChanged = ? WHERE id = ?");
    CBinder(update).Number(static_cast<int>(EJournalState::Written)).Identity(*after).Number(id);
    update.exec();
}

std::vector<CJournalBatch> ReadBatches(SQLite::Database& database, std::int64_t most) {
    SQLite::Statement rows(
        database, "SELECT b.id, b.time, b.writer, count(*), "
                  "(SELECT path FROM writes f WHERE f.batch = b.id ORDER BY f.id LIMIT 1), "
                  "(SELECT u.batch FROM writes f JOIN writes u ON u.id = f.undoes "
                  "WHERE f.batch = b.id ORDER BY f.id LIMIT 1) "
                  "FROM batches b JOIN writes w ON w.batch = b.id AND w.state != ? "
                  "GROUP BY b.id ORDER BY b.id DESC LIMIT ?");
    CBinder(rows).Number(kNotWritten).Number(most);
    std::vector<CJournalBatch> batches;
    while (rows.executeStep()) {
        CTaker taker(rows);
        CJournalBatch batch;
        batch.m_nId = taker.Number();
        batch.m_nTime = taker.Number();
        batch.m_eWriter = ValueOf(taker.Number(), EJournalWriter::Undo);
        batch.m_nWrites = taker.Number();
        batch.m_sPath = taker.Bytes();
        if (!taker.IsNull()) {
            batch.m_undoes = taker.Number();
        }
        batches.push_back(std::move(batch));
    }
    return batches;
}

std::vector<CJournalEntry> ReadBatch(SQLite::Database& database, std::int64_t batch) {
    SQLite::Statement rows(database, Select("batch = ? ORDER BY id"));
    CBinder(rows).Number(batch);
    return EntriesOf(rows);
}

std::vector<CJournalEntry> ReadWrites(SQLite::Database& database, std::string const& path,
                                      std::optional<CFileIdentity> const& identity,
                                      std::int64_t most) {
    SQLite::Statement byPath(database, Select("path = ? ORDER BY id DESC LIMIT ?"));
    CBinder(byPath).Bytes(path.data(), path.size()).Number(most);
    std::vector<CJournalEntry> entries = EntriesOf(byPath);
    if (entries.empty() && identity) {
        SQLite::Statement byFile(database,
                                 Select("newInode = ? AND newDevice = ? AND newSize = ? AND "
                                        "newWritten = ? ORDER BY id DESC LIMIT ?"));
        CBinder(byFile)
            .Number(Signed(identity->m_nInode))
            .Number(Signed(identity->m_nDevice))
            .Number(identity->m_nSize)
            .Number(identity->m_nWrittenTime)
            .Number(most);
        entries = EntriesOf(byFile);
    }
    return entries;
}

std::optional<ETextOrigin> ReadOrigin(SQLite::Database& database, CPlacedText const& text) {
    SQLite::Statement row(
        database, "SELECT origin FROM writes WHERE (path = ? OR (newInode = ? AND newDevice = ?)) "
                  "AND frame = ? AND textAfter = ? AND state != ? AND origin != ? "
                  "ORDER BY id DESC LIMIT 1");
    CFileIdentity const identity = text.m_identity.value_or(CFileIdentity());
    CBinder(row)
        .Bytes(text.m_sPath.data(), text.m_sPath.size())
        .Number(Signed(identity.m_nInode))
        .Number(Signed(identity.m_nDevice))
        .Text(text.m_sFrameId)
        .Text(text.m_sText)
        .Number(kNotWritten)
        .Number(static_cast<int>(ETextOrigin::Earlier));
    if (!row.executeStep()) {
        return std::nullopt;
    }
    return ValueOf(CTaker(row).Number(), ETextOrigin::Earlier);
}

std::int64_t ClearRows(SQLite::Database& database) {
    std::int64_t const count = database.execAndGet("SELECT count(*) FROM writes").getInt64();
    SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
    database.exec("DELETE FROM writes");
    database.exec("DELETE FROM batches");
    transaction.commit();
    database.exec("VACUUM");
    (void)database.tryExec("PRAGMA wal_checkpoint(TRUNCATE)");
    return count;
}
