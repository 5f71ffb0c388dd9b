// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Rows whose file is not theirs alone: somebody changed it while it was heard, or it has several
// names in the list. All of it runs on the analyser's worker.

#include "app/Batch.h"
#include "app/RowTags.h"
#include "song/AudioKinds.h"

namespace {

/// Names through which a tempo is stored and others have different ends.
bool IsWritten(CString const& path) {
    CAudioKind const* const kind = FindAudioKind(path);
    return kind != nullptr && kind->m_writing != ETagWriting::None;
}

} // namespace

// A copy for this worker's own use: a text keeps its wide form with it, so that two threads may
// not read one and the same.
CString CBatch::PathAt(std::size_t index) const {
    auto const guard = m_list.Lock();
    return m_list.Row(index).m_file.GetPath();
}

CWishes CBatch::Wishes() const {
    auto const guard = m_list.Lock();
    return m_list.Wishes();
}

// All is decided by the tag that stands there now: either it has a tempo, or the row is to do
// again, and next.
void CBatch::DecideAnew(CListRow& row) {
    CBPMFile fresh(PathAt(row.m_nIndex));
    CString const tempoInTag = ReadRowTags(fresh, Wishes());
    bool isDone = false;
    {
        auto const guard = m_list.Lock();
        TakeTagAgain(row, fresh, tempoInTag);
        isDone = row.m_file.IsDone();
    }
    m_view.reloadRow(row.m_nIndex);
    m_view.statusChanged();
    if (isDone) {
        row.m_retries = {};
        GiveToOtherNames(row);
    }
}

// With the lock held. Where the tag's tempo is to be replaced, it says nothing.
void CBatch::TakeTagAgain(CListRow& row, CBPMFile const& fresh, CString const& tempoInTag) {
    m_list.SetOutcome(row, {});
    m_list.SetWriteProblem(row, EWriteProblem::None);
    row.m_nPercent = -1;
    bool const isReplaced = !row.m_sTempoInTag.has_value();
    if (!isReplaced) {
        row.m_sTempoInTag = tempoInTag;
        row.m_file.SetTitle(fresh.GetTitle());
        row.m_file.SetArtist(fresh.GetArtist());
    }
    if (!isReplaced && fresh.IsDone()) {
        row.m_file.SetTempo(fresh.GetTempo());
        row.m_bFromTag = true;
        m_list.SetDone(row);
        return;
    }
    row.m_file.SetTempo(m_sTempoBefore);
    m_list.Undo(row);
}

// Of the rows that were made of the same file, those that still are get what this one got. A new
// version that took the place of this name alone is none of theirs.
void CBatch::GiveToOtherNames(CListRow const& row) {
    CString const path = PathAt(row.m_nIndex);
    std::vector<std::size_t> others;
    {
        auto const guard = m_list.Lock();
        others = m_list.OtherNames(row);
    }
    if (others.empty()) {
        return;
    }
    std::optional<CFileIdentity> const now = IdentityAt(path.ToPath());
    std::erase_if(others, [&](std::size_t index) {
        CString const other = PathAt(index);
        std::optional<CFileIdentity> const identity = IdentityAt(other.ToPath());
        return !now || !identity || !identity->IsSameFile(*now) ||
               IsWritten(other) != IsWritten(path);
    });
    {
        auto const guard = m_list.Lock();
        for (std::size_t const index : others) {
            TakeOver(m_list.Row(index), row);
        }
    }
    for (std::size_t const index : others) {
        m_view.reloadRow(index);
    }
    m_view.statusChanged();
}

// With the lock held.
void CBatch::TakeOver(CListRow& other, CListRow const& row) {
    if (!other.IsToDo()) {
        return;
    }
    other.m_file.SetTempo(row.m_file.GetTempo());
    other.m_bFromTag = row.m_bFromTag;
    other.m_sTempoInTag = row.m_sTempoInTag;
    other.m_vConverted = row.m_vConverted;
    other.m_candidates = row.m_candidates;
    other.m_sKey = row.m_sKey;
    m_list.SetDone(other);
    m_list.SetOutcome(other, row.m_outcome);
    m_list.SetWriteProblem(other, row.m_writeProblem);
}
