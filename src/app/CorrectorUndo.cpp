// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The way back, on the worker: find the step; take its writes back, the last one first; give the
// rows what they had; say what can be taken back now.

#include "app/Corrector.h"

#include "app/Batch.h"
#include "app/FileList.h"
#include "app/RowTags.h"
#include "records/RealPath.h"
#include "song/TempoText.h"

#include <utility>

namespace {

constexpr std::int64_t kMostBatches = 200; // Fixed: of the journal, that are looked through.

bool IsTaken(CUndoResult const& result) {
    return result.m_eUndo == EUndo::Restored || result.m_eUndo == EUndo::TextAlone ||
           result.m_eUndo == EUndo::AsBefore;
}

void NoteLeft(CUndoReport& report, CUndoResult const& result, std::string const& path) {
    if (report.m_nLeft++ == 0) {
        report.m_eReason = result.m_eUndo;
        report.m_eProblem = result.m_eProblem;
        report.m_sPath = path;
    }
}

} // namespace

/// The batch that the analysis is at isn't over, and no step yet. Where nothing may be written,
/// neither may the way back.
std::vector<CStep> CCorrector::Steps() {
    std::set<std::int64_t> leftOut = m_vGivenUp;
    bool isWriting = false;
    {
        auto const guard = m_list.Lock();
        CBatchStatus status;
        m_batch.Tell(status);
        std::optional<std::int64_t> const current = m_batch.Journal().CurrentBatch();
        if (status.m_bRunning && current) {
            leftOut.insert(*current);
        }
        isWriting = !m_list.Wishes().m_bOnlyLook;
    }
    std::vector<CStep> steps = StepsOf(m_journal.Batches(kMostBatches), m_vMemories, leftOut);
    std::erase_if(steps, [&](CStep const& step) { return step.m_nRoot != 0 && !isWriting; });
    return steps;
}

void CCorrector::TakeBack(bool isRedo) {
    std::vector<CStep> const steps = Steps();
    CStep const* const step = isRedo ? StepToRedo(steps) : StepToUndo(steps);
    if (step == nullptr) {
        return;
    }
    CUndoReport report;
    m_vLeftRows.clear();
    if (step->m_nRoot != 0 && step->m_bUndoneOnDisk == isRedo) {
        TakeBackFiles(*step, report);
        if (report.m_nDone == 0) {
            m_vGivenUp.insert(step->m_nRoot);
        }
    }
    if (step->m_pMemory != nullptr) {
        TakeBackRows(*step->m_pMemory, isRedo, m_vLeftRows, report);
        step->m_pMemory->m_bUndone = !isRedo;
    }
    {
        std::scoped_lock const guard(m_lock);
        m_report = std::move(report);
    }
    Publish();
    m_view.statusChanged();
}

void CCorrector::TakeBackFiles(CStep const& step, CUndoReport& report) {
    bool const wasHeard = WasHeard(step);
    std::set<std::size_t> remembered;
    if (step.m_pMemory != nullptr) {
        for (CRowChange const& change : step.m_pMemory->m_vChanges) {
            remembered.insert(change.m_nRow);
        }
    }
    std::vector<CJournalEntry> const entries = m_journal.Entries(step.m_nLatest);
    CUndoOptions options;
    {
        auto const guard = m_list.Lock();
        options.m_bKeepTime = m_list.Wishes().m_bKeepTime;
    }
    m_vRealRows.clear();
    m_journal.BeginBatch();
    for (auto next = entries.rbegin(); next != entries.rend(); ++next) {
        CJournalEntry const& entry = *next;
        CUndoResult const result = UndoWrite(m_journal, entry, entry.m_sPath, options);
        std::size_t const row = RowOf(entry.m_sPath);
        if (!IsTaken(result)) {
            NoteLeft(report, result, entry.m_sPath);
            m_vLeftRows.insert(row);
            continue;
        }
        ++report.m_nDone;
        if (row != CFileList::kNoRow) {
            ShowFile(entry, row, wasHeard, remembered.contains(row));
            m_view.reloadRow(row);
        }
    }
}

/// Rows of this session get back all that they had, as long as they show what the step left.
void CCorrector::TakeBackRows(CStepMemory& memory, bool isRedo, std::set<std::size_t> const& left,
                              CUndoReport& report) {
    for (CRowChange const& change : memory.m_vChanges) {
        if (left.contains(change.m_nRow)) {
            continue;
        }
        CRowTempo const& wanted = isRedo ? change.m_after : change.m_before;
        CRowTempo const& expected = isRedo ? change.m_before : change.m_after;
        {
            auto const guard = m_list.Lock();
            if (change.m_nRow >= m_list.Size()) {
                continue;
            }
            CListRow& row = m_list.Row(change.m_nRow);
            bool const isOurs = row.m_file.GetTempo() == expected.m_sText ||
                                row.m_file.GetTempo() == wanted.m_sText;
            if (row.m_nPercent >= 0 || !isOurs) {
                continue;
            }
            SetTempoOfRow(m_list, row, wanted);
        }
        report.m_nDone += static_cast<std::size_t>(change.m_after.m_bNotInFile);
        m_view.reloadRow(change.m_nRow);
    }
}

/// The row says what its file says. A tempo that was heard stays where the file says nothing, so
/// that nobody hears the file again who didn't ask for it. What is remembered of a row is better.
void CCorrector::ShowFile(CJournalEntry const& entry, std::size_t index, bool wasHeard,
                          bool isRemembered) {
    CString const text = CString::FromUtf8(entry.m_textBefore.value_or(""));
    bool const isByHand =
        entry.m_textBefore && m_journal.OriginOf(entry.m_sPath, entry.m_sFrameId,
                                                 *entry.m_textBefore) == ETextOrigin::Hand;
    CString const shown = TempoOfTagText(CString::FromPath(entry.m_sPath), text);
    bool const hasTempo = !shown.IsEmpty();
    auto const guard = m_list.Lock();
    if (index >= m_list.Size()) {
        return;
    }
    CListRow& row = m_list.Row(index);
    row.m_sTempoInTag = text;
    if (row.m_nPercent >= 0 || isRemembered) {
        return;
    }
    CRowTempo tempo = TempoOfRow(row);
    tempo.m_bByHand = isByHand;
    tempo.m_dExactBpm = 0.0;
    tempo.m_writeProblem = EWriteProblem::None;
    tempo.m_bNotInFile = !hasTempo && wasHeard;
    if (hasTempo) {
        tempo.m_outcome.m_problem = EAnalysisProblem::None;
    }
    if (hasTempo || !wasHeard) {
        tempo.m_sText = shown;
        tempo.m_bDone = hasTempo;
    }
    SetTempoOfRow(m_list, row, tempo);
}

/// The row of a path of the journal, which has no links in it.
std::size_t CCorrector::RowOf(std::string const& path) {
    std::vector<CString> paths;
    {
        auto const guard = m_list.Lock();
        std::size_t const row = m_list.RowOfPath(CString::FromPath(path));
        if (row != CFileList::kNoRow || !m_vRealRows.empty()) {
            auto const found = m_vRealRows.find(path);
            return row != CFileList::kNoRow     ? row
                   : found != m_vRealRows.end() ? found->second
                                                : CFileList::kNoRow;
        }
        for (std::size_t index = 0; index < m_list.Size(); ++index) {
            paths.push_back(m_list.Row(index).m_file.GetPath());
        }
    }
    for (std::size_t index = 0; index < paths.size(); ++index) {
        m_vRealRows.emplace(RealPath(paths[index].ToPath()), index);
    }
    auto const found = m_vRealRows.find(path);
    return found != m_vRealRows.end() ? found->second : CFileList::kNoRow;
}

bool CCorrector::WasHeard(CStep const& step) {
    std::vector<CJournalEntry> const entries = m_journal.Entries(step.m_nRoot);
    return !entries.empty() && entries.front().m_eOrigin == ETextOrigin::Heard;
}

std::optional<CUndoStep> CCorrector::Told(CStep const* step) {
    if (step == nullptr) {
        return std::nullopt;
    }
    CUndoStep told;
    told.m_nFiles = step->m_nWrites;
    told.m_nTime = step->m_nTime;
    std::optional<CTempoFix> ratio;
    if (step->m_pMemory != nullptr) {
        told.m_nFiles = step->m_pMemory->m_vChanges.size();
        ratio =
            step->m_pMemory->m_fix.IsRatio() ? std::optional(step->m_pMemory->m_fix) : std::nullopt;
    } else {
        std::vector<CJournalEntry> const entries = m_journal.Entries(step->m_nRoot);
        if (!entries.empty() && entries.front().m_eOrigin == ETextOrigin::Heard) {
            told.m_kind = EStepKind::Analysis;
            return told;
        }
        ratio = RatioOf(entries);
    }
    told.m_kind = ratio ? EStepKind::Ratio : EStepKind::Tempo;
    told.m_ratio = ratio.value_or(CTempoFix());
    return told;
}

void CCorrector::Publish() {
    std::vector<CStep> const steps = Steps();
    CUndoState const state{.m_undo = Told(StepToUndo(steps)), .m_redo = Told(StepToRedo(steps))};
    {
        std::scoped_lock const guard(m_lock);
        if (state == m_state) {
            return;
        }
        m_state = state;
    }
    m_view.statusChanged();
}
