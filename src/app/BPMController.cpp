// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The batch is a chain of single files: `startNext` hands a row to the analyser, whose worker
// reports progress and result to the three handlers; the last of them starts the next row from
// within the worker that is about to end. Adding files has a source of its own (`AddFiles.cpp`).

#include "app/BPMController.h"

#include "app/ControllerRow.h"
#include "base/FileUtil.h"
#include "song/AudioKinds.h"
#include "song/StoreTempo.h"
#include "song/TempoText.h"

#include <charconv>
#include <utility>

namespace {

constexpr std::int32_t kArtistColumn = 1; // Fixed: identifiers of the table's columns.
constexpr std::int32_t kTempoColumn = 2;

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

BPMController::BPMController(IBpmView& view)
    : m_view(view),
      m_sSupportedExts(ListedExtensions()),
      m_pFileAnalyzer(std::make_unique<CFileAnalyzer>()) {
}

BPMController::~BPMController() {
    applicationWillTerminate();
}

void BPMController::awakeFromNib() {
    CNotificationCenter& centre = CNotificationCenter::Default();
    centre.AddObserver(this, kFileProgressNotification,
                       [this](CUserInfo const* info) { onProfilerFileProgress(info); });
    centre.AddObserver(this, kFileCompleteNotification,
                       [this](CUserInfo const* info) { onFileComplete(info); });
    centre.AddObserver(this, kAnalysisCompleteNotification,
                       [this](CUserInfo const* info) { onAnalysisComplete(info); });
}

void BPMController::analyze() {
    {
        std::scoped_lock const guard(m_lock);
        m_bBatchStopped = false;
        startNext();
    }
    m_view.statusChanged();
}

void BPMController::reScan() {
    {
        std::scoped_lock const guard(m_lock);
        for (auto const& row : m_vFiles) {
            row->m_file.SetDone(row->m_bHidden && row->m_file.IsDone());
            row->m_sTempoInTag.reset();
        }
        m_nFirstUndone = 0;
        m_status.m_nUndone = m_vFiles.size() - m_status.m_nHidden;
        m_status.m_nBatchFiles = m_status.m_nUndone;
        m_bBatchStopped = false;
        m_journal.BeginBatch();
        startNext();
    }
    m_view.reloadAll();
    m_view.statusChanged();
}

// With the lock held.
void BPMController::startNext() {
    if (m_bAnalysisInProgress || m_bTerminated) {
        return;
    }
    while (m_nFirstUndone < m_vFiles.size() && !isToDo(*m_vFiles[m_nFirstUndone])) {
        ++m_nFirstUndone;
    }
    if (m_nFirstUndone == m_vFiles.size()) {
        m_status.m_nBatchFiles = 0;
        return;
    }
    if (m_status.m_nBatchFiles == 0) {
        m_status.m_nBatchFiles = m_status.m_nUndone;
        m_journal.BeginBatch();
    }
    CRow& row = *m_vFiles[m_nFirstUndone];
    m_sTempoBefore = row.m_file.GetTempo();
    m_nRunningRow = m_nFirstUndone;
    row.m_nPercent = 0;
    m_bPercentSeen = false;
    m_view.setCanClose(false);
    m_view.reloadRow(m_nRunningRow);
    m_bAnalysisInProgress = true;
    if (!m_pFileAnalyzer->Analyze(&row.m_file)) {
        giveUpRunningRow();
    }
}

// With the lock held: no worker can be had, so the batch ends and its rows stay undone.
void BPMController::giveUpRunningRow() {
    CRow& row = *m_vFiles[m_nRunningRow];
    setOutcome(row, {.m_problem = EAnalysisProblem::NoThread});
    row.m_nPercent = -1;
    m_nRunningRow = kNoRow;
    m_bAnalysisInProgress = false;
    m_bBatchStopped = true;
    m_status.m_nBatchFiles = 0;
    m_view.setCanClose(true);
}

void BPMController::stop() {
    std::size_t row = kNoRow;
    {
        std::scoped_lock const guard(m_lock);
        ++m_nAddGeneration;
        m_bBatchStopped = true;
        if (m_bAnalysisInProgress && !m_bRunCancelled) {
            m_bRunCancelled = true;
            m_pFileAnalyzer->Cancel();
            row = m_nRunningRow;
            restoreRunningRow();
        }
    }
    if (row != kNoRow) {
        m_view.reloadRow(row);
    }
    m_view.statusChanged();
}

// With the lock held: a row whose result is not there shows again what it showed before.
void BPMController::restoreRunningRow() {
    CRow& row = *m_vFiles[m_nRunningRow];
    if (!row.m_file.IsDone()) {
        row.m_file.SetTempo(m_sTempoBefore);
    }
    row.m_nPercent = -1;
}

// With the lock held.
BPMController::CRow* BPMController::rowOf(CUserInfo const* userInfo) const {
    auto const* file = static_cast<CBPMFile const*>(UserInfoPointer(userInfo, kUserDataKey));
    auto const found = m_vIndexes.find(file);
    return found != m_vIndexes.end() ? m_vFiles[found->second].get() : nullptr;
}

void BPMController::onProfilerFileProgress(CUserInfo const* userInfo) {
    std::string const percent = UserInfoText(userInfo, kPercentKey);
    std::size_t index = kNoRow;
    {
        std::scoped_lock const guard(m_lock);
        CRow* row = rowOf(userInfo);
        if (row == nullptr || m_bRunCancelled) {
            return;
        }
        row->m_file.SetTempo(CString(percent.c_str()));
        row->m_nPercent = PercentIn(percent);
        m_bPercentSeen = true;
        index = row->m_nIndex;
    }
    m_view.reloadRow(index);
    m_view.statusChanged();
}

// Deliberate: a file that could not be analysed is done as well, with "0.00" in its row, and not
// tried again until a rescan. Into a tag "0.00" goes only when the song was heard whole.
void BPMController::onFileComplete(CUserInfo const* userInfo) {
    CRow* row = nullptr;
    {
        std::scoped_lock const guard(m_lock);
        row = rowOf(userInfo);
        if (row == nullptr || m_bRunCancelled) {
            return;
        }
        row->m_file.SetTempo(CString(UserInfoText(userInfo, kBpmKey).c_str()));
        row->m_nPercent = -1;
        row->m_bFromTag = false;
        if (!row->m_file.IsDone()) {
            row->m_file.SetDone(true);
            --m_status.m_nUndone;
        }
        setOutcome(*row, outcomeOf(*row));
    }
    m_view.reloadRow(row->m_nIndex);
    m_view.statusChanged();
    storeTempo(*row);
}

void BPMController::onAnalysisComplete(CUserInfo const*) {
    std::size_t row = kNoRow;
    {
        std::scoped_lock const guard(m_lock);
        row = std::exchange(m_nRunningRow, kNoRow);
        m_bAnalysisInProgress = false;
        m_bRunCancelled = false;
        m_view.setCanClose(true);
        if (m_bBatchStopped) {
            m_status.m_nBatchFiles = 0;
        } else {
            startNext();
        }
    }
    if (row != kNoRow) {
        m_view.reloadRow(row);
    }
    m_view.statusChanged();
}

// With the lock held. A file that was read to its end may have no tempo all the same.
CAnalysisOutcome BPMController::outcomeOf(CRow const& row) const {
    CAnalysisOutcome outcome = m_pFileAnalyzer->GetOutcome();
    bool const hasTempo = LeadingNumber(row.m_file.GetTempo()) > 0.0;
    if (outcome.m_problem == EAnalysisProblem::None && !hasTempo) {
        outcome.m_problem = EAnalysisProblem::NoBeat;
    }
    return outcome;
}

// With the lock held.
void BPMController::setOutcome(CRow& row, CAnalysisOutcome outcome) {
    bool const hadFailed = row.m_outcome.m_problem != EAnalysisProblem::None;
    bool const hasFailed = outcome.m_problem != EAnalysisProblem::None;
    m_status.m_nFailed += static_cast<std::size_t>(hasFailed);
    m_status.m_nFailed -= static_cast<std::size_t>(hadFailed);
    if (hasFailed || outcome.m_report.IsDamaged()) {
        noteProblem(row);
    }
    row.m_outcome = std::move(outcome);
}

// Without the lock: a large tag takes its time. The file is opened by this worker alone.
void BPMController::storeTempo(CRow& row) {
    CString path;
    CString tempo;
    CStoreTempoOptions options;
    CAnalysisOutcome outcome;
    {
        std::scoped_lock const guard(m_lock);
        path = row.m_file.GetPath();
        tempo = row.m_file.GetTempo();
        options.m_tempoBefore = row.m_sTempoInTag;
        outcome = row.m_outcome;
    }
    // What could not be heard is left alone, and its row says already why.
    EWriteProblem problem = EWriteProblem::None;
    bool const isHeard = outcome.m_problem == EAnalysisProblem::None ||
                         outcome.m_problem == EAnalysisProblem::NoBeat;
    if (isHeard) {
        auto const witness = m_journal.Witness(EJournalWriter::Window, ETextOrigin::Heard);
        options.m_pWitness = witness.get();
        problem = StoreTempo(path, outcome, tempo, options);
    }
    {
        std::scoped_lock const guard(m_lock);
        if (isHeard && problem == EWriteProblem::None) {
            row.m_sTempoInTag = tempo;
        }
        bool const wasTold = IsStoreFailure(row.m_writeProblem);
        row.m_writeProblem = problem;
        m_status.m_nNotStored += static_cast<std::size_t>(IsStoreFailure(problem));
        m_status.m_nNotStored -= static_cast<std::size_t>(wasTold);
        if (IsStoreFailure(problem)) {
            noteProblem(row);
        }
    }
    m_view.reloadRow(row.m_nIndex);
    m_view.statusChanged();
}

// With the lock held.
void BPMController::noteProblem(CRow const& row) {
    ++m_status.m_nProblems;
    m_status.m_nProblemRow = row.m_nIndex;
}

std::size_t BPMController::numberOfRowsInTableView() const {
    std::scoped_lock const guard(m_lock);
    return m_vFiles.size();
}

std::u16string BPMController::objectValueForTableColumn(std::int32_t column,
                                                        std::size_t row) const {
    std::scoped_lock const guard(m_lock);
    if (row >= m_vFiles.size()) {
        return {};
    }
    CBPMFile const& file = m_vFiles[row]->m_file;
    switch (column) {
    case kArtistColumn:
        return std::u16string(file.GetArtist().Units());
    case kTempoColumn:
        return std::u16string(file.GetTempo().Units());
    default:
        return std::u16string(file.GetTitle().Units());
    }
}

CRowState BPMController::rowState(std::size_t row) const {
    std::scoped_lock const guard(m_lock);
    if (row >= m_vFiles.size()) {
        return {};
    }
    CRow const& entry = *m_vFiles[row];
    return {std::u16string(entry.m_file.GetPath().Units()),
            entry.m_file.IsDone(),
            entry.m_bFromTag,
            entry.m_bHidden,
            entry.m_nPercent,
            entry.m_nPercent >= 0 && !m_bPercentSeen,
            entry.m_outcome,
            entry.m_writeProblem};
}

CBatchStatus BPMController::status() const {
    std::scoped_lock const guard(m_lock);
    CBatchStatus status = m_status;
    status.m_nRows = m_vFiles.size();
    status.m_bAdding = m_nAddJobs > 0;
    status.m_bRunning = m_bAnalysisInProgress;
    status.m_bStopping = m_bRunCancelled;
    if (m_nRunningRow != kNoRow) {
        CRow const& row = *m_vFiles[m_nRunningRow];
        CString name;
        CFileUtil::ExtractFileName(row.m_file.GetPath(), name);
        status.m_sRunningName = name.Units();
        status.m_nPercent = row.m_nPercent;
        status.m_bReading = row.m_nPercent >= 0 && !m_bPercentSeen;
        // A row that is done already is still running while its tempo is stored.
        status.m_nBatchPlace = status.m_nBatchFiles - status.m_nUndone +
                               static_cast<std::size_t>(!row.m_file.IsDone());
    }
    return status;
}

CBPMFile* BPMController::fileAtRow(std::size_t row) const {
    std::scoped_lock const guard(m_lock);
    return row < m_vFiles.size() ? &m_vFiles[row]->m_file : nullptr;
}

void BPMController::onHelp() {
    m_view.openHomePage();
}

// The subscriptions go first, so that nothing new begins; what has begun is waited for.
void BPMController::applicationWillTerminate() {
    {
        std::scoped_lock const guard(m_lock);
        if (std::exchange(m_bTerminated, true)) {
            return;
        }
        ++m_nAddGeneration;
    }
    m_addQueue.End();
    CNotificationCenter& centre = CNotificationCenter::Default();
    centre.RemoveObserver(this, kFileProgressNotification);
    centre.RemoveObserver(this, kFileCompleteNotification);
    centre.RemoveObserver(this, kAnalysisCompleteNotification);
    {
        std::scoped_lock const guard(m_lock);
        m_bRunCancelled = true;
        m_pFileAnalyzer->Cancel();
    }
    m_pFileAnalyzer->Wait();
    m_pFileAnalyzer.reset();
    std::scoped_lock const guard(m_lock);
    m_vIndexes.clear();
    m_vPaths.clear();
    m_vFiles.clear();
    m_nRunningRow = kNoRow;
    m_bAnalysisInProgress = false;
}
