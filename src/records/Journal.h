// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/TagWitness.h"
#include "base/CString.h"
#include "base/FileIdentity.h"
#include "records/RecordProblem.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

class CRecordStore;

/// What wrote a tag.
enum class EJournalWriter { Analyze = 0, TagSet = 1, Fix = 2, Window = 3, Undo = 4 };

/// Where a written text came from.
enum class ETextOrigin {
    Heard = 0,   // by the analysis
    Hand = 1,    // a person typed, chose or tapped it
    Earlier = 2, // it stood there before another write
};

/// How far a write came, as far as the journal was told.
enum class EJournalState {
    Begun = 0, // the process ended before it could tell
    Written = 1,
    NotWritten = 2,
};

/// A tag's bytes at a file's start, without the bytes.
struct CTagMark {
    std::uint64_t m_nBytes = 0;
    std::uint64_t m_nDigest = 0;

    bool operator==(CTagMark const&) const = default;
};

/// The mark of the tag that these bytes are.
CTagMark MarkOf(std::span<std::uint8_t const> tag);

/// One write of one tag.
struct CJournalEntry {
    std::int64_t m_nId = 0;
    std::int64_t m_nBatch = 0;
    std::int64_t m_nTime = 0; // nanoseconds since the epoch
    EJournalWriter m_eWriter = EJournalWriter::Analyze;
    ETextOrigin m_eOrigin = ETextOrigin::Heard;
    EJournalState m_eState = EJournalState::Begun;
    std::string m_sPath; // bytes; absolute, no link
    std::string m_sFrameId;
    std::optional<std::string> m_textBefore; // UTF-8; nothing: no such frame
    std::optional<std::string> m_textAfter;  // likewise
    CFileIdentity m_before;
    std::optional<CFileIdentity> m_after; // once it is known to be written
    CTagMark m_oldTag;
    CTagMark m_newTag;
    std::optional<std::vector<std::uint8_t>> m_way; // the delta from the new tag to the old one
    std::optional<std::int64_t> m_undoes;           // the write that this one took back
};

/// Some writes that belong together.
struct CJournalBatch {
    std::int64_t m_nId = 0;
    std::int64_t m_nTime = 0; // of the first write
    EJournalWriter m_eWriter = EJournalWriter::Analyze;
    std::int64_t m_nWrites = 0;           // but those that are known to have failed
    std::optional<std::int64_t> m_undoes; // the batch that this one took back
    std::string m_sPath;                  // of the first write
};

/// Every tag write of the programs, so that it can be told and taken back. An entry is on the disk
/// before the file is touched, and confirmed afterwards: whenever a process ends, what it wrote is
/// in here. Without a folder, or with a database that gives way, it holds nothing and keeps
/// nothing; no write ever fails for it.
/// Thread: every operation is safe from any thread.
class CJournal {
public:
    /// `folder`: where its file lies; empty: nothing is kept. Nothing is opened or made before it
    /// is needed.
    explicit CJournal(std::string folder);
    ~CJournal();
    CJournal(CJournal const&) = delete;
    CJournal& operator=(CJournal const&) = delete;

    /// Lets `store`, which must outlive the journal, follow what is written: results of a file hold
    /// on when its tag changes. Before any write.
    void SetStore(CRecordStore* store) { m_pStore = store; }

    /// Begins a new batch with the next write. Waits for nobody.
    void BeginBatch() { m_bNewBatch = true; }

    /// The batch that the last write went into; nothing before the first one of a new batch.
    [[nodiscard]] std::optional<std::int64_t> CurrentBatch() const;

    /// A witness that enters one write. It must not outlive the journal.
    /// `undoes`: the write that this one takes back.
    std::unique_ptr<ITagWitness> Witness(EJournalWriter writer, ETextOrigin origin,
                                         std::optional<std::int64_t> undoes = {});

    /// The latest batches, the last one first.
    std::vector<CJournalBatch> Batches(std::int64_t most);

    /// The writes of one batch in their order, those that are known to have failed left out.
    std::vector<CJournalEntry> Entries(std::int64_t batch);

    /// The writes of the file at `path`, else of that file under another name; the last one first.
    std::vector<CJournalEntry> Writes(std::string const& path, std::int64_t most);

    /// Where the text that stands in the frame of the file at `path` came from, if it was written
    /// by us. Returns: nothing for a text that wasn't.
    std::optional<ETextOrigin> OriginOf(std::string const& path, std::string const& frameId,
                                        std::string const& text);

    /// Forgets everything. Returns: the number of writes forgotten; nothing when that failed.
    std::optional<std::int64_t> Clear();

    /// Where its file lies or would lie; means nothing without a folder.
    [[nodiscard]] std::string Path() const;

    /// The first trouble since the journal was made.
    [[nodiscard]] ERecordProblem Problem() const;

private:
    class CWitness;
    struct CImpl;

    std::int64_t Enter(CJournalEntry const& entry);
    void Confirm(std::int64_t id, std::optional<CFileIdentity> const& after);

    CRecordStore* m_pStore = nullptr;
    std::atomic<bool> m_bNewBatch = false;
    mutable std::mutex m_lock;
    std::unique_ptr<CImpl> m_pImpl;
};
