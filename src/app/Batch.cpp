// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/Batch.h"

#include "app/RowTempo.h"
#include "base/FileUtil.h"
#include "song/StoreTempo.h"
#include "song/TempoText.h"

#include <charconv>
#include <new>
#include <utility>

namespace {

/// The number in a progress text such as " 5%"; 0 when there is none.
int PercentIn(std::string const& text) {
    std::size_t const digits = text.find_first_of("0123456789");
    int percent = 0;
    if (digits != std::string::npos) {
        std::from_chars(text.data() + digits, text.data() + text.size(), percent);
    }
    return percent;
}

} // namespace

CBatch::CBatch(CFileList& list, IBpmView& view)
    : m_list(list), m_view(view), m_pFileAnalyzer(std::make_unique<CFileAnalyzer>()) {
    m_journal.SetStore(&m_store);
}

void CBatch::Subscribe() {
    CNotificationCenter& centre = CNotificationCenter::Default();
    centre.AddObserver(this, kFileProgressNotification,
                       [this](CUserInfo const* info) { OnProgress(info); });
    centre.AddObserver(this, kFileCompleteNotification,
                       [this](CUserInfo const* info) { OnFileComplete(info); });
    centre.AddObserver(this, kAnalysisCompleteNotification,
                       [this](CUserInfo const* info) { OnAnalysisComplete(info); });
}

void CBatch::Start() {
    {
        auto const guard = m_list.Lock();
        Go();
    }
    m_view.statusChanged();
}

void CBatch::Go() {
    m_bStopped = false;
    StartNext();
}

void CBatch::StartOver() {
    {
        auto const guard = m_list.Lock();
        m_list.UndoAll();
        m_list.Counts().m_nBatchFiles = m_list.Counts().m_nUndone;
        m_journal.BeginBatch();
        Go();
    }
    m_view.reloadAll();
    m_view.statusChanged();
}

// With the lock held.
void CBatch::StartNext() {
    if (m_bInProgress || m_bEnded) {
        return;
    }
    std::size_t const next = m_list.FindToDo();
    CBatchStatus& counts = m_list.Counts();
    if (next == CFileList::kNoRow) {
        counts.m_nBatchFiles = 0;
        return;
    }
    if (counts.m_nBatchFiles == 0) {
        counts.m_nBatchFiles = counts.m_nUndone;
        m_journal.BeginBatch();
    }
    CListRow& row = m_list.Row(next);
    m_sTempoBefore = row.m_file.GetTempo();
    m_nRunningRow = next;
    row.m_nPercent = 0;
    row.m_bReading = true;
    m_view.setCanClose(false);
    m_view.reloadRow(next);
    m_bInProgress = true;
    m_pFileAnalyzer->WantCandidates(true);
    if (!m_pFileAnalyzer->Analyze(&row.m_file)) {
        GiveUpRunningRow();
    }
}

// With the lock held: no worker can be had, so the batch ends and its rows stay undone.
void CBatch::GiveUpRunningRow() {
    CListRow& row = m_list.Row(std::exchange(m_nRunningRow, CFileList::kNoRow));
    m_list.SetOutcome(row, {.m_problem = EAnalysisProblem::NoThread});
    row.m_nPercent = -1;
    m_bInProgress = false;
    m_bStopped = true;
    m_list.Counts().m_nBatchFiles = 0;
    m_view.setCanClose(true);
}

void CBatch::Stop() {
    std::size_t row = CFileList::kNoRow;
    {
        auto const guard = m_list.Lock();
        m_bStopped = true;
        if (m_bInProgress && !m_bRunCancelled) {
            row = m_nRunningRow;
            CancelRun();
        }
    }
    if (row != CFileList::kNoRow) {
        m_view.reloadRow(row);
    }
    m_view.statusChanged();
}

// With the lock held.
void CBatch::CancelRun() {
    m_bRunCancelled = true;
    m_pFileAnalyzer->Cancel();
    RestoreRunningRow();
}

// With the lock held: a row whose result is not there shows again what it showed before.
void CBatch::RestoreRunningRow() {
    CListRow& row = m_list.Row(m_nRunningRow);
    if (!row.m_file.IsDone()) {
        row.m_file.SetTempo(m_sTempoBefore);
    }
    row.m_nPercent = -1;
}

void CBatch::SetHidden(std::vector<std::size_t> const& rows, bool isHidden) {
    {
        auto const guard = m_list.Lock();
        for (std::size_t const row : rows) {
            if (row < m_list.Size() && m_list.Row(row).m_bHidden != isHidden) {
                HideRow(row, isHidden);
            }
        }
    }
    m_view.reloadAll();
    m_view.statusChanged();
}

// With the lock held.
void CBatch::HideRow(std::size_t index, bool isHidden) {
    bool const isDone = m_list.Row(index).m_file.IsDone();
    if (isHidden && index == m_nRunningRow && !isDone && !m_bRunCancelled) {
        CancelRun();
    }
    m_list.SetHidden(index, isHidden);
    std::size_t& files = m_list.Counts().m_nBatchFiles;
    if (!isDone && files > 0) {
        files = isHidden ? files - 1 : files + 1;
    }
}

void CBatch::NoteKnown(std::size_t index) {
    if (index == CFileList::kNoRow || !m_list.Row(index).m_bHidden) {
        ++m_list.Counts().m_nKnown;
        return;
    }
    HideRow(index, false);
    ++m_list.Counts().m_nReturned;
    m_view.reloadAll();
}

void CBatch::Append(std::unique_ptr<CListRow> row) {
    m_list.Counts().m_nBatchFiles += static_cast<std::size_t>(m_bInProgress && row->IsToDo());
    m_list.Append(std::move(row));
}

// With the lock held.
CListRow* CBatch::RowOf(CUserInfo const* userInfo) const {
    return m_list.Find(static_cast<CBPMFile const*>(UserInfoPointer(userInfo, kUserDataKey)));
}

void CBatch::OnProgress(CUserInfo const* userInfo) {
    std::string const percent = UserInfoText(userInfo, kPercentKey);
    std::size_t index = CFileList::kNoRow;
    {
        auto const guard = m_list.Lock();
        CListRow* row = RowOf(userInfo);
        if (row == nullptr || m_bRunCancelled) {
            return;
        }
        row->m_file.SetTempo(CString(percent.c_str()));
        row->m_nPercent = PercentIn(percent);
        row->m_bReading = false;
        index = row->m_nIndex;
    }
    m_view.reloadRow(index);
    m_view.statusChanged();
}

// Deliberate: a file that could not be analysed is done as well, with "0.00" in its row, and not
// tried again until a rescan. Into a tag "0.00" goes only when the song was heard whole.
void CBatch::OnFileComplete(CUserInfo const* userInfo) {
    try {
        Conclude(userInfo);
    } catch (std::bad_alloc const&) {
        Fail(userInfo);
    }
}

void CBatch::Conclude(CUserInfo const* userInfo) {
    CListRow* row = nullptr;
    bool isAgain = false;
    {
        auto const guard = m_list.Lock();
        row = RowOf(userInfo);
        if (row == nullptr || m_bRunCancelled) {
            return;
        }
        isAgain =
            HasChangedMeanwhile(m_pFileAnalyzer->GetOutcome()) && row->m_retries.AfterChange();
        if (!isAgain) {
            row->m_file.SetTempo(WishedTempo(m_list.Wishes(),
                                             CString(UserInfoText(userInfo, kBpmKey).c_str()),
                                             m_pFileAnalyzer->GetCandidates()));
            row->m_nPercent = -1;
            row->m_bFromTag = false;
            row->m_bByHand = false;
            row->m_bNotInFile = false;
            row->m_candidates = m_pFileAnalyzer->GetCandidates();
            row->m_sKey = m_pFileAnalyzer->GetKey();
            m_list.SetDone(*row);
            m_list.SetOutcome(*row, OutcomeOf(*row));
            ++m_list.Counts().m_nHeard;
        }
    }
    if (isAgain) {
        DecideAnew(*row);
        return;
    }
    m_view.reloadRow(row->m_nIndex);
    m_view.statusChanged();
    StoreTempo(*row);
}

// Without memory for its end, a row is done: it isn't to be taken again and again.
void CBatch::Fail(CUserInfo const* userInfo) {
    auto const guard = m_list.Lock();
    CListRow* const row = RowOf(userInfo);
    if (row == nullptr || m_bRunCancelled) {
        return;
    }
    row->m_nPercent = -1;
    m_list.SetDone(*row);
    m_list.SetOutcome(*row, {.m_problem = EAnalysisProblem::NoMemory});
}

void CBatch::OnAnalysisComplete(CUserInfo const*) {
    std::size_t row = CFileList::kNoRow;
    {
        auto const guard = m_list.Lock();
        row = std::exchange(m_nRunningRow, CFileList::kNoRow);
        m_bInProgress = false;
        m_bRunCancelled = false;
        m_view.setCanClose(true);
        if (m_bStopped) {
            m_list.Counts().m_nBatchFiles = 0;
        } else {
            StartNext();
        }
    }
    if (row != CFileList::kNoRow) {
        m_view.reloadRow(row);
    }
    m_view.statusChanged();
}

// With the lock held. A file that was read to its end may have no tempo all the same.
CAnalysisOutcome CBatch::OutcomeOf(CListRow const& row) const {
    CAnalysisOutcome outcome = m_pFileAnalyzer->GetOutcome();
    bool const hasTempo = LeadingNumber(row.m_file.GetTempo()) > 0.0;
    if (outcome.m_problem == EAnalysisProblem::None && !hasTempo) {
        outcome.m_problem = EAnalysisProblem::NoBeat;
    }
    return outcome;
}

// Without the lock: a large tag takes its time. The file is opened by this worker alone.
void CBatch::StoreTempo(CListRow& row) {
    CString path;
    CString tempo;
    CStoreTempoOptions options;
    CAnalysisOutcome outcome;
    bool isWished = false;
    {
        auto const guard = m_list.Lock();
        path = row.m_file.GetPath();
        tempo = row.m_file.GetTempo();
        options.m_tempoBefore = row.m_sTempoInTag;
        if (!TempoInTagOf(row).IsEmpty()) {
            options.m_tempoBefore = CString(); // one that isn't shown is not replaced unasked
        }
        outcome = row.m_outcome;
        isWished = IsStoringWished(m_list.Wishes(), outcome.m_problem);
        ApplyWishes(m_list.Wishes(), options);
    }
    // What could not be heard is left alone, and its row says already why.
    CTagStoreReport report;
    EWriteProblem problem = EWriteProblem::None;
    bool const isHeard = outcome.m_problem == EAnalysisProblem::None ||
                         outcome.m_problem == EAnalysisProblem::NoBeat;
    if (isHeard && isWished) {
        auto const witness = m_journal.Witness(EJournalWriter::Window, ETextOrigin::Heard);
        options.m_pWitness = witness.get();
        problem = ::StoreTempo(path, outcome, tempo, options, &report);
    }
    if (row.m_retries.After(problem)) {
        DecideAnew(row);
        return;
    }
    row.m_retries = {};
    bool const isStored = isHeard && isWished && problem == EWriteProblem::None;
    CString const stored = isStored ? StoredTempoText(path, tempo) : CString();
    {
        auto const guard = m_list.Lock();
        if (isStored) {
            row.m_sTempoInTag = stored;
            ++m_list.Counts().m_nStored;
        }
        row.m_vConverted = std::move(report.m_vConverted);
        m_list.SetWriteProblem(row, problem);
    }
    m_view.reloadRow(row.m_nIndex);
    m_view.statusChanged();
    GiveToOtherNames(row);
}

void CBatch::Tell(CBatchStatus& status) const {
    status.m_bRunning = m_bInProgress;
    status.m_bStopping = m_bRunCancelled;
    if (m_nRunningRow == CFileList::kNoRow) {
        return;
    }
    CListRow const& row = m_list.Row(m_nRunningRow);
    CString name;
    CFileUtil::ExtractFileName(row.m_file.GetPath(), name);
    status.m_sRunningName = name.Units();
    status.m_nPercent = row.m_nPercent;
    status.m_bReading = row.m_nPercent >= 0 && row.m_bReading;
    // A row that is done already is still running while its tempo is stored.
    status.m_nBatchPlace =
        status.m_nBatchFiles - status.m_nUndone + static_cast<std::size_t>(!row.m_file.IsDone());
}

// The subscriptions go first, so that nothing new begins; what has begun is waited for.
void CBatch::End() {
    {
        auto const guard = m_list.Lock();
        if (std::exchange(m_bEnded, true)) {
            return;
        }
    }
    CNotificationCenter& centre = CNotificationCenter::Default();
    centre.RemoveObserver(this, kFileProgressNotification);
    centre.RemoveObserver(this, kFileCompleteNotification);
    centre.RemoveObserver(this, kAnalysisCompleteNotification);
    {
        auto const guard = m_list.Lock();
        m_bRunCancelled = true;
        m_pFileAnalyzer->Cancel();
    }
    m_pFileAnalyzer->Wait();
    m_pFileAnalyzer.reset();
    auto const guard = m_list.Lock();
    m_nRunningRow = CFileList::kNoRow;
    m_bInProgress = false;
}
