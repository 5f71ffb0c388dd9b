// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/FileList.h"

#include "song/SongCandidates.h"
#include "song/TempoText.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::int32_t kArtistColumn = 1; // Fixed: identifiers of the table's columns.
constexpr std::int32_t kTempoColumn = 2;

/// MP4 has 120 for 120.00.
bool AreSameTempo(CString const& tag, CString const& shown) {
    double const bpm = LeadingNumber(tag);
    return tag == shown || (bpm > 0.0 && bpm == LeadingNumber(shown));
}

} // namespace

std::size_t CFileList::Count() const {
    auto const guard = Lock();
    return m_vRows.size();
}

std::u16string CFileList::Text(std::int32_t column, std::size_t row) const {
    auto const guard = Lock();
    if (row >= m_vRows.size()) {
        return {};
    }
    CBPMFile const& file = m_vRows[row]->m_file;
    switch (column) {
    case kArtistColumn:
        return std::u16string(file.GetArtist().Units());
    case kTempoColumn:
        return std::u16string(file.GetTempo().Units());
    default:
        return std::u16string(file.GetTitle().Units());
    }
}

CRowState CFileList::State(std::size_t row) const {
    auto const guard = Lock();
    if (row >= m_vRows.size()) {
        return {};
    }
    CListRow const& entry = *m_vRows[row];
    return {std::u16string(entry.m_file.GetPath().Units()),
            entry.m_file.IsDone(),
            entry.m_bFromTag,
            entry.m_bHidden,
            entry.m_nPercent,
            entry.m_nPercent >= 0 && entry.m_bReading,
            entry.m_outcome,
            entry.m_writeProblem,
            entry.m_vConverted,
            entry.m_bByHand,
            entry.m_bNotInFile,
            !entry.m_bByHand && entry.m_file.IsDone() && DoubtIn(entry.m_candidates).has_value(),
            entry.m_sKey,
            entry.m_bFromTag || (entry.m_sTempoInTag && entry.m_file.IsDone() &&
                                 AreSameTempo(*entry.m_sTempoInTag, entry.m_file.GetTempo()))};
}

std::vector<CTempoCandidate> CFileList::Candidates(std::size_t row) const {
    auto const guard = Lock();
    return row < m_vRows.size() ? m_vRows[row]->m_candidates.m_vCandidates
                                : std::vector<CTempoCandidate>();
}

CBPMFile* CFileList::FileAt(std::size_t row) const {
    auto const guard = Lock();
    return row < m_vRows.size() ? &m_vRows[row]->m_file : nullptr;
}

CListRow* CFileList::Find(CBPMFile const* file) const {
    auto const found = m_vIndexes.find(file);
    return found != m_vIndexes.end() ? m_vRows[found->second].get() : nullptr;
}

bool CFileList::TakePath(CString const& path) {
    return m_vPaths.emplace(path.Units(), kNoRow).second;
}

void CFileList::DropPath(CString const& path) {
    m_vPaths.erase(std::u16string(path.Units()));
}

std::size_t CFileList::RowOfPath(CString const& path) const {
    auto const found = m_vPaths.find(std::u16string(path.Units()));
    return found != m_vPaths.end() ? found->second : kNoRow;
}

void CFileList::Append(std::unique_ptr<CListRow> row) {
    row->m_nIndex = m_vRows.size();
    m_counts.m_nUndone += static_cast<std::size_t>(!row->m_file.IsDone());
    m_vIndexes.emplace(&row->m_file, row->m_nIndex);
    m_vPaths[std::u16string(row->m_file.GetPath().Units())] = row->m_nIndex;
    if (row->m_identity) {
        m_vInodes.emplace(row->m_identity->m_nInode, row->m_nIndex);
    }
    m_vRows.push_back(std::move(row));
}

std::size_t CFileList::FindToDo() {
    while (m_nFirstUndone < m_vRows.size() && !m_vRows[m_nFirstUndone]->IsToDo()) {
        ++m_nFirstUndone;
    }
    return m_nFirstUndone < m_vRows.size() ? m_nFirstUndone : kNoRow;
}

void CFileList::UndoAll() {
    for (auto const& row : m_vRows) {
        row->m_file.SetDone(row->m_bHidden && row->m_file.IsDone());
        row->m_sTempoInTag.reset();
    }
    m_nFirstUndone = 0;
    m_counts.m_nUndone = m_vRows.size() - m_counts.m_nHidden;
}

void CFileList::Undo(CListRow& row) {
    if (row.m_file.IsDone()) {
        row.m_file.SetDone(false);
        m_counts.m_nUndone += static_cast<std::size_t>(!row.m_bHidden);
    }
    m_nFirstUndone = std::min(m_nFirstUndone, row.m_nIndex);
}

std::vector<std::size_t> CFileList::OtherNames(CListRow const& row) const {
    std::vector<std::size_t> others;
    if (!row.m_identity) {
        return others;
    }
    auto const [first, last] = m_vInodes.equal_range(row.m_identity->m_nInode);
    for (auto entry = first; entry != last; ++entry) {
        CListRow const& other = *m_vRows[entry->second];
        if (&other != &row && other.IsToDo() && other.m_identity->IsSameFile(*row.m_identity)) {
            others.push_back(entry->second);
        }
    }
    return others;
}

void CFileList::SetHidden(std::size_t index, bool isHidden) {
    CListRow& row = *m_vRows[index];
    row.m_bHidden = isHidden;
    m_counts.m_nHidden = isHidden ? m_counts.m_nHidden + 1 : m_counts.m_nHidden - 1;
    if (!row.m_file.IsDone()) {
        m_counts.m_nUndone = isHidden ? m_counts.m_nUndone - 1 : m_counts.m_nUndone + 1;
    }
    if (!isHidden) {
        m_nFirstUndone = std::min(m_nFirstUndone, index);
    }
}

void CFileList::SetDone(CListRow& row) {
    if (!row.m_file.IsDone()) {
        row.m_file.SetDone(true);
        m_counts.m_nUndone -= static_cast<std::size_t>(!row.m_bHidden);
    }
}

void CFileList::SetOutcome(CListRow& row, CAnalysisOutcome outcome) {
    bool const hadFailed = row.m_outcome.m_problem != EAnalysisProblem::None;
    bool const hasFailed = outcome.m_problem != EAnalysisProblem::None;
    m_counts.m_nFailed += static_cast<std::size_t>(hasFailed);
    m_counts.m_nFailed -= static_cast<std::size_t>(hadFailed);
    if (hasFailed || outcome.m_report.IsDamaged()) {
        NoteProblem(row);
    }
    row.m_outcome = std::move(outcome);
}

void CFileList::SetWriteProblem(CListRow& row, EWriteProblem problem) {
    bool const wasTold = IsStoreFailure(row.m_writeProblem);
    row.m_writeProblem = problem;
    m_counts.m_nNotStored += static_cast<std::size_t>(IsStoreFailure(problem));
    m_counts.m_nNotStored -= static_cast<std::size_t>(wasTold);
    if (IsStoreFailure(problem)) {
        NoteProblem(row);
    }
}

void CFileList::NoteProblem(CListRow const& row) {
    ++m_counts.m_nProblems;
    m_counts.m_nProblemRow = row.m_nIndex;
}

void CFileList::Clear() {
    m_vIndexes.clear();
    m_vPaths.clear();
    m_vInodes.clear();
    m_vRows.clear();
}
