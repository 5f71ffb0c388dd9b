// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/FileIdentity.h"
#include "records/RecordProblem.h"
#include "records/SongRecord.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

/// What there is to tell of the store.
struct CStoreInfo {
    std::string m_sPath; // of its file; empty when nothing is kept
    std::int64_t m_nSongs = 0;
    std::int64_t m_nOther = 0; // of them, those of another engine
    std::int64_t m_nBytes = 0; // of its file
};

constexpr std::int64_t kStoreBytes = 512LL << 20; // Fixed: 512 MiB, told in the guide.

/// Results of songs that were heard or read before, so that it need not be done again. A song is
/// known by its file: device, inode, size and both times; where inodes don't last, as on shares
/// and FAT, by path, size and time of the last write. Results of another engine aren't given out.
/// Without a folder, or with a database that gives way, it knows nothing and keeps nothing. Thread:
/// every operation is safe from any thread.
class CRecordStore {
public:
    /// `folder`: where its file lies; empty: nothing is kept. Nothing is opened or made before it
    /// is needed. `mostBytes`: from there on, what was used longest ago goes.
    explicit CRecordStore(std::string folder, std::int64_t mostBytes = kStoreBytes);

    /// Brings what is still held back to the file.
    ~CRecordStore();
    CRecordStore(CRecordStore const&) = delete;
    CRecordStore& operator=(CRecordStore const&) = delete;

    /// What is known of the file at `path` in the state `identity`.
    CSongRecord Find(std::string const& path, CFileIdentity const& identity);

    /// Keeps it, in the place of all that was known of the file.
    void Keep(std::string const& path, CFileIdentity const& identity, CSongRecord const& record);

    /// A tag was written into the file: what was heard of it holds on, what was read doesn't. A
    /// song that is damaged is heard again.
    void Follow(std::string const& path, CFileIdentity const& before, CFileIdentity const& after);

    /// Returns: nothing when there is no store.
    std::optional<CStoreInfo> Info();

    /// Removes results of other engines, and what is beyond the bound. Returns: how many songs.
    std::optional<std::int64_t> Prune();

    /// Removes everything. Returns: how many songs.
    std::optional<std::int64_t> Clear();

    /// Where its file lies or would lie; means nothing without a folder.
    [[nodiscard]] std::string Path() const;

    /// The first trouble since the store was made.
    [[nodiscard]] ERecordProblem Problem() const;

private:
    struct CImpl;

    mutable std::mutex m_lock;
    std::unique_ptr<CImpl> m_pImpl;
};
