// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// A correction: work out the new tempos and show them, on the caller's thread; then, on the worker,
// write each file and tell its row how that went.

#include "app/Corrector.h"

#include "IDTag/FrameIds.h"
#include "app/BPMController.h"
#include "song/StoreTempo.h"
#include "song/TempoText.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

std::int64_t Now() {
    auto const time = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(time).count();
}

} // namespace

ECorrectionRefusal RefusalOf(CTempoSpread const& spread, CTempoFix const& fix) {
    if (spread.m_nRows == 0) {
        return spread.m_nRunning > 0 ? ECorrectionRefusal::Running : ECorrectionRefusal::NoTempo;
    }
    if (!IsTempoInRange(FixedTempo(fix, spread.m_dSlowest))) {
        return FixedTempo(fix, spread.m_dSlowest) > spread.m_dSlowest ? ECorrectionRefusal::TooFast
                                                                      : ECorrectionRefusal::TooSlow;
    }
    return IsTempoInRange(FixedTempo(fix, spread.m_dFastest)) ? ECorrectionRefusal::None
                                                              : ECorrectionRefusal::TooFast;
}

CCorrector::CCorrector(BPMController& controller)
    : m_list(controller.list()), m_batch(controller.batch()), m_view(controller.view()) {
    m_journal.SetStore(&m_batch.Store());
}

void CCorrector::Post(CWorkQueue::Job job) {
    // Without a thread nothing is written, and the rows keep saying so.
    (void)m_queue.Post(std::move(job));
}

CTempoSpread CCorrector::Spread(std::vector<std::size_t> const& rows) const {
    auto const guard = m_list.Lock();
    CTempoSpread spread;
    for (std::size_t const index : rows) {
        if (index >= m_list.Size()) {
            continue;
        }
        CListRow const& row = m_list.Row(index);
        double const bpm = BpmOfRow(row);
        spread.m_nRunning += static_cast<std::size_t>(row.m_nPercent >= 0);
        if (bpm > 0.0) {
            bool const isFirst = spread.m_nRows++ == 0;
            spread.m_dSlowest = isFirst ? bpm : std::min(spread.m_dSlowest, bpm);
            spread.m_dFastest = std::max(spread.m_dFastest, bpm);
        }
    }
    return spread;
}

double CCorrector::Tempo(std::size_t row) const {
    return Spread({row}).m_dFastest;
}

/// What the row is to show. What was wrong with its tempo is so no longer.
CRowTempo CCorrector::Corrected(CListRow const& row, CTempoFix const& fix) const {
    CRowTempo tempo = TempoOfRow(row);
    tempo.m_dExactBpm = FixedTempo(fix, BpmOfRow(row));
    tempo.m_sText = CString(TempoText(tempo.m_dExactBpm).c_str());
    tempo.m_bDone = true;
    tempo.m_bFromTag = false;
    tempo.m_bByHand = true;
    tempo.m_bNotInFile = false;
    tempo.m_outcome.m_problem = EAnalysisProblem::None;
    tempo.m_writeProblem = EWriteProblem::None;
    return tempo;
}

bool CCorrector::Correct(std::vector<std::size_t> const& rows, CTempoFix const& fix) {
    bool const isRefused = fix.IsRatio() ? RefusalOf(Spread(rows), fix) != ECorrectionRefusal::None
                                         : !IsTempoInRange(fix.m_dBpm);
    if (isRefused) {
        return false;
    }
    CStepMemory step;
    step.m_nTime = Now();
    step.m_fix = fix;
    {
        auto const guard = m_list.Lock();
        for (std::size_t const index : rows) {
            if (index >= m_list.Size() || m_list.Row(index).m_nPercent >= 0 ||
                (fix.IsRatio() && BpmOfRow(m_list.Row(index)) <= 0.0)) {
                continue;
            }
            CListRow& row = m_list.Row(index);
            step.m_vChanges.push_back({index, TempoOfRow(row), Corrected(row, fix)});
            SetTempoOfRow(m_list, row, step.m_vChanges.back().m_after);
        }
    }
    if (step.m_vChanges.empty()) {
        return false;
    }
    for (CRowChange const& change : step.m_vChanges) {
        m_view.reloadRow(change.m_nRow);
    }
    m_view.statusChanged();
    Post([this, step = std::move(step)] { Write(step); });
    return true;
}

void CCorrector::Write(CStepMemory step) {
    m_journal.BeginBatch();
    for (CRowChange& change : step.m_vChanges) {
        Store(change);
    }
    step.m_batch = m_journal.CurrentBatch();
    std::erase_if(m_vMemories, [](CStepMemory const& memory) { return memory.m_bUndone; });
    m_vMemories.push_back(std::move(step));
    Publish();
}

void CCorrector::Store(CRowChange& change) {
    CString path;
    CString const text = change.m_after.m_sText;
    CCorrectionOptions options;
    options.m_eWriter = EJournalWriter::Window;
    bool isOnlyShown = false;
    {
        auto const guard = m_list.Lock();
        if (change.m_nRow >= m_list.Size()) {
            return;
        }
        CListRow const& row = m_list.Row(change.m_nRow);
        path = row.m_file.GetPath();
        options.m_textBefore = row.m_sTempoInTag;
        options.m_bKeepTime = m_list.Wishes().m_bKeepTime;
        options.m_bOtherKinds = m_list.Wishes().m_bWriteOtherKinds;
        isOnlyShown = m_list.Wishes().m_bOnlyLook;
    }
    EWriteProblem const problem =
        isOnlyShown ? EWriteProblem::None : StoreCorrection(path, text, m_journal, options);
    change.m_after.m_writeProblem = problem;
    change.m_after.m_bNotInFile = isOnlyShown || problem != EWriteProblem::None;
    CString const stored = change.m_after.m_bNotInFile ? text : StoredTempoText(path, text);
    {
        auto const guard = m_list.Lock();
        if (change.m_nRow >= m_list.Size()) {
            return;
        }
        CListRow& row = m_list.Row(change.m_nRow);
        if (!change.m_after.m_bNotInFile) {
            row.m_sTempoInTag = stored;
        } else if (problem == EWriteProblem::TempoChanged) {
            row.m_sTempoInTag.reset(); // whoever corrects it once more means it
        }
        m_list.SetWriteProblem(row, problem);
        row.m_bNotInFile = change.m_after.m_bNotInFile;
    }
    m_view.reloadRow(change.m_nRow);
}

CUndoState CCorrector::State() const {
    std::scoped_lock const guard(m_lock);
    return m_state;
}

std::optional<CUndoReport> CCorrector::TakeReport() {
    std::scoped_lock const guard(m_lock);
    return std::exchange(m_report, std::nullopt);
}

void CCorrector::LookAtNewRows() {
    std::size_t const count = m_list.Count();
    if (count > m_nLookedAt) {
        std::size_t const first = std::exchange(m_nLookedAt, count);
        Post([this, first, count] { FindByHand(first, count); });
    }
}

void CCorrector::FindByHand(std::size_t first, std::size_t end) {
    if (m_journal.Batches(1).empty()) {
        return;
    }
    for (std::size_t index = first; index < end && !m_bEnding; ++index) {
        CString path;
        CString text;
        {
            auto const guard = m_list.Lock();
            if (index >= m_list.Size() || !m_list.Row(index).m_bFromTag) {
                continue;
            }
            path = m_list.Row(index).m_file.GetPath();
            text = TextInTagOf(m_list.Row(index));
        }
        if (m_journal.OriginOf(path.ToPath(), kTempoFrameId, text.ToUtf8()) != ETextOrigin::Hand) {
            continue;
        }
        {
            auto const guard = m_list.Lock();
            if (index < m_list.Size() && TextInTagOf(m_list.Row(index)) == text) {
                m_list.Row(index).m_bByHand = true;
            }
        }
        m_view.reloadRow(index);
    }
}

void CCorrector::End() {
    m_bEnding = true;
    m_queue.Finish();
}
