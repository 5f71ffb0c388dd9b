// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/Journal.h"

#include "IDTag/RawTag.h"
#include "records/Database.h"
#include "records/JournalRows.h"
#include "records/RealPath.h"
#include "records/RecordStore.h"
#include "records/TagDelta.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <algorithm>
#include <chrono>

namespace {

constexpr std::size_t kMostWayBytes = 262'144; // Fixed: what one write may cost in the journal.

std::int64_t Now() {
    auto const time = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(time).count();
}

std::optional<std::string> Utf8Of(std::optional<CString> const& text) {
    return text ? std::optional(text->ToUtf8()) : std::nullopt;
}

/// The way back from the new tag to the old one; nothing when it is too long, or leads elsewhere.
std::optional<std::vector<std::uint8_t>> WayBack(CTagChange const& change) {
    std::vector<std::uint8_t> way = MakeDelta(change.m_newTag, change.m_oldTag);
    if (way.size() > kMostWayBytes) {
        return std::nullopt;
    }
    auto const old = ApplyDelta(change.m_newTag, way, change.m_oldTag.size());
    bool const isRight = old && std::ranges::equal(*old, change.m_oldTag);
    return isRight ? std::optional(std::move(way)) : std::nullopt;
}

} // namespace

CTagMark MarkOf(std::span<std::uint8_t const> tag) {
    return {tag.size(), DigestOf(tag).Value()};
}

/// The open database, and what is to be remembered between two calls.
struct CJournal::CImpl {
    std::string m_sFolder;
    COpenDatabase m_open;
    bool m_bReadOnly = false;
    bool m_bGivenUp = false; // no further write is entered
    std::optional<std::int64_t> m_batch;
    ERecordProblem m_eProblem = ERecordProblem::None;

    /// Opens the database unless it is open. Returns: null when there is none.
    SQLite::Database* Open(bool isReading) {
        if (m_open.m_pDatabase != nullptr && (isReading || !m_bReadOnly)) {
            return m_open.m_pDatabase.get();
        }
        if (m_bGivenUp) {
            return nullptr;
        }
        m_open = {};
        m_open = OpenDatabase(m_sFolder, kJournalKind, isReading);
        m_bReadOnly = isReading;
        Note(m_open.m_eProblem);
        m_bGivenUp = !isReading && m_open.m_pDatabase == nullptr;
        return m_open.m_pDatabase.get();
    }

    void Note(ERecordProblem problem) {
        bool const isNews = problem != ERecordProblem::NotThere;
        if (m_eProblem == ERecordProblem::None && isNews) {
            m_eProblem = problem;
        }
    }

    /// Takes note of what the database complained of. It isn't asked again for further writes.
    void GiveUp(SQLite::Exception const& thrown) {
        ERecordProblem const problem = ProblemOf(thrown);
        Note(problem);
        if (problem == ERecordProblem::Damaged) {
            PutAside(m_sFolder, kJournalKind, m_open);
        }
        m_bGivenUp = true;
    }

    /// What `action` makes of the database; `otherwise` when there is none or it gives way.
    template <typename Result, typename Action>
    Result Do(bool isReading, Result otherwise, Action const& action) {
        try {
            SQLite::Database* const database = Open(isReading);
            return database != nullptr ? action(*database) : otherwise;
        } catch (SQLite::Exception const& thrown) {
            GiveUp(thrown);
        }
        return otherwise;
    }

    std::int64_t Insert(SQLite::Database& database, CJournalEntry entry) {
        SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
        if (!m_batch) {
            SQLite::Statement batch(database, "INSERT INTO batches(time, writer) VALUES (?, ?)");
            batch.bind(1, entry.m_nTime);
            batch.bind(2, static_cast<int>(entry.m_eWriter));
            batch.exec();
        }
        entry.m_nBatch = m_batch.value_or(database.getLastInsertRowid());
        InsertEntry(database, entry);
        std::int64_t const id = database.getLastInsertRowid();
        transaction.commit();
        m_batch = entry.m_nBatch;
        return id;
    }
};

/// Enters one write and confirms it.
class CJournal::CWitness final : public ITagWitness {
public:
    CWitness(CJournal& journal, EJournalWriter writer, ETextOrigin origin,
             std::optional<std::int64_t> undoes)
        : m_journal(journal) {
        m_entry.m_eWriter = writer;
        m_entry.m_eOrigin = origin;
        m_entry.m_undoes = undoes;
    }

    void OnWriting(CTagChange const& change) override {
        m_entry.m_nTime = Now();
        m_entry.m_sPath = RealPath(change.m_sPath.ToPath());
        m_entry.m_sFrameId = change.m_sFrameId;
        m_entry.m_textBefore = Utf8Of(change.m_textBefore);
        m_entry.m_textAfter = Utf8Of(change.m_textAfter);
        m_entry.m_before = change.m_before;
        m_entry.m_oldTag = MarkOf(change.m_oldTag);
        m_entry.m_newTag = MarkOf(change.m_newTag);
        if (change.m_bHasBytes) {
            m_entry.m_way = WayBack(change);
        }
        m_entry.m_nId = m_journal.Enter(m_entry);
    }

    void OnWritten(std::optional<CFileIdentity> const& after) override {
        m_journal.Confirm(m_entry.m_nId, after);
        if (m_journal.m_pStore != nullptr && after) {
            m_journal.m_pStore->Follow(m_entry.m_sPath, m_entry.m_before, *after);
        }
    }

private:
    CJournal& m_journal;
    CJournalEntry m_entry;
};

CJournal::CJournal(std::string folder) : m_pImpl(std::make_unique<CImpl>()) {
    m_pImpl->m_sFolder = std::move(folder);
}

CJournal::~CJournal() = default;

std::optional<std::int64_t> CJournal::CurrentBatch() const {
    std::scoped_lock const guard(m_lock);
    return m_bNewBatch ? std::nullopt : m_pImpl->m_batch;
}

std::unique_ptr<ITagWitness> CJournal::Witness(EJournalWriter writer, ETextOrigin origin,
                                               std::optional<std::int64_t> undoes) {
    return std::make_unique<CWitness>(*this, writer, origin, undoes);
}

/// Returns: the entry's number; 0 when it couldn't be entered.
std::int64_t CJournal::Enter(CJournalEntry const& entry) {
    std::scoped_lock const guard(m_lock);
    if (m_bNewBatch.exchange(false)) {
        m_pImpl->m_batch.reset();
    }
    return m_pImpl->Do(false, std::int64_t{0}, [&](SQLite::Database& database) {
        return m_pImpl->Insert(database, entry);
    });
}

void CJournal::Confirm(std::int64_t id, std::optional<CFileIdentity> const& after) {
    std::scoped_lock const guard(m_lock);
    if (id != 0) {
        (void)m_pImpl->Do(false, 0, [&](SQLite::Database& database) {
            ConfirmEntry(database, id, after);
            return 0;
        });
    }
}

std::vector<CJournalBatch> CJournal::Batches(std::int64_t most) {
    std::scoped_lock const guard(m_lock);
    return m_pImpl->Do(true, std::vector<CJournalBatch>(),
                       [&](SQLite::Database& database) { return ReadBatches(database, most); });
}

std::vector<CJournalEntry> CJournal::Entries(std::int64_t batch) {
    std::scoped_lock const guard(m_lock);
    return m_pImpl->Do(true, std::vector<CJournalEntry>(),
                       [&](SQLite::Database& database) { return ReadBatch(database, batch); });
}

std::vector<CJournalEntry> CJournal::Writes(std::string const& path, std::int64_t most) {
    std::scoped_lock const guard(m_lock);
    return m_pImpl->Do(true, std::vector<CJournalEntry>(), [&](SQLite::Database& database) {
        return ReadWrites(database, RealPath(path), IdentityAt(path), most);
    });
}

std::optional<ETextOrigin> CJournal::OriginOf(std::string const& path, std::string const& frameId,
                                              std::string const& text) {
    std::scoped_lock const guard(m_lock);
    return m_pImpl->Do(true, std::optional<ETextOrigin>(), [&](SQLite::Database& database) {
        return ReadOrigin(database, {RealPath(path), IdentityAt(path), frameId, text});
    });
}

std::optional<std::int64_t> CJournal::Clear() {
    std::scoped_lock const guard(m_lock);
    return m_pImpl->Do(false, std::optional<std::int64_t>(), [&](SQLite::Database& database) {
        m_pImpl->m_batch.reset();
        return std::optional(ClearRows(database));
    });
}

std::string CJournal::Path() const {
    return m_pImpl->m_sFolder + "/" + kJournalKind.m_pFileName;
}

ERecordProblem CJournal::Problem() const {
    std::scoped_lock const guard(m_lock);
    return m_pImpl->m_eProblem;
}
