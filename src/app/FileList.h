// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BpmView.h"
#include "app/ListRow.h"
#include "app/Wishes.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

/// The rows with their texts, states and counts. Rows are appended and never removed: others know
/// them by their numbers. Its one lock guards the rows, and the state of whoever works through
/// them; it is never held while a file is read or written.
/// Thread: any. What says so is for callers that hold the lock; the rest takes it.
class CFileList {
public:
    static constexpr std::size_t kNoRow = static_cast<std::size_t>(-1); // Fixed: no such index.

    CFileList() = default;
    CFileList(CFileList const&) = delete;
    CFileList& operator=(CFileList const&) = delete;

    [[nodiscard]] std::unique_lock<std::mutex> Lock() const { return std::unique_lock(m_lock); }

    [[nodiscard]] std::size_t Count() const;
    [[nodiscard]] std::u16string Text(std::int32_t column, std::size_t row) const;
    [[nodiscard]] CRowState State(std::size_t row) const;
    [[nodiscard]] std::vector<CTempoCandidate> Candidates(std::size_t row) const;

    /// The file of a row; null past the end.
    [[nodiscard]] CBPMFile* FileAt(std::size_t row) const;

    // With the lock held.

    /// Rows in the list.
    [[nodiscard]] std::size_t Size() const { return m_vRows.size(); }
    [[nodiscard]] CListRow& Row(std::size_t index) const { return *m_vRows[index]; }

    /// The row of a file; null for a file that isn't in the list.
    [[nodiscard]] CListRow* Find(CBPMFile const* file) const;

    /// Counts and flags; whoever works through the list keeps its own among them.
    [[nodiscard]] CBatchStatus& Counts() { return m_counts; }
    [[nodiscard]] CBatchStatus const& Counts() const { return m_counts; }

    /// What a person wants otherwise; whoever works on the list goes by it.
    [[nodiscard]] CWishes& Wishes() { return m_wishes; }
    [[nodiscard]] CWishes const& Wishes() const { return m_wishes; }

    /// Takes a path, so that it comes in once. Returns: whether it is new.
    bool TakePath(CString const& path);

    /// Forgets a path that was taken and got no row.
    void DropPath(CString const& path);

    /// Row of a path that was taken; `kNoRow` until it has one.
    [[nodiscard]] std::size_t RowOfPath(CString const& path) const;

    void Append(std::unique_ptr<CListRow> row);

    /// The first row to do; `kNoRow` when there is none.
    std::size_t FindToDo();

    /// Every row that isn't hidden is to do again, and whatever its tag says may be replaced.
    void UndoAll();

    /// The row is to do again.
    void Undo(CListRow& row);

    /// Rows to do that were made of the same file as this one.
    [[nodiscard]] std::vector<std::size_t> OtherNames(CListRow const& row) const;

    /// Hidden rows only don't count.
    void SetHidden(std::size_t index, bool isHidden);

    void SetDone(CListRow& row);
    void SetOutcome(CListRow& row, CAnalysisOutcome outcome);
    void SetWriteProblem(CListRow& row, EWriteProblem problem);

    void Clear();

private:
    void NoteProblem(CListRow const& row);

    mutable std::mutex m_lock; // Guards everything.
    std::vector<std::unique_ptr<CListRow>> m_vRows;
    std::unordered_map<CBPMFile const*, std::size_t> m_vIndexes;
    std::unordered_map<std::u16string, std::size_t> m_vPaths;      // To its row; kNoRow until then.
    std::unordered_multimap<std::uint64_t, std::size_t> m_vInodes; // Numbers of files, to rows.
    std::size_t m_nFirstUndone = 0; // No row in front of it is undone.
    CBatchStatus m_counts;
    CWishes m_wishes;
};
