// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/FileAnalyzer.h"
#include "app/FileList.h"
#include "base/NotificationCenter.h"
#include "records/Journal.h"
#include "records/Places.h"
#include "records/RecordStore.h"

#include <memory>
#include <vector>

/// Works through the rows that are to do, one file after the other: `Start` hands a row to the
/// analyser, whose worker reports progress and result to the three handlers; the last of them
/// starts the next row from within the worker that is about to end.
/// Thread: any, but for `End`. What it keeps is guarded by the list's lock.
class CBatch {
public:
    /// Both must outlive it.
    CBatch(CFileList& list, IBpmView& view);
    CBatch(CBatch const&) = delete;
    CBatch& operator=(CBatch const&) = delete;
    ~CBatch() { End(); }

    /// Subscribes to the three notifications of the analysis.
    void Subscribe();

    /// Starts the first row to do unless a file is being analysed.
    void Start();

    /// Takes every row as to do, and starts.
    void StartOver();

    /// The running file keeps what it had, and no other is begun.
    void Stop();

    /// Hides rows, or brings them back. A running row that is hidden is given up; the batch goes on
    /// behind it.
    void SetHidden(std::vector<std::size_t> const& rows, bool isHidden);

    /// Rows whose tempo came with the file and isn't known to be of our own hearing. Hidden ones
    /// don't count.
    [[nodiscard]] std::size_t CountForeign();

    void OnProgress(CUserInfo const* userInfo);
    void OnFileComplete(CUserInfo const* userInfo);
    void OnAnalysisComplete(CUserInfo const* userInfo);

    /// Ends everything: unsubscribes, cancels the running file and waits for its worker, which
    /// finishes a tag that it is writing. May be called twice. Thread: not a worker.
    void End();

    // With the list's lock held.

    /// As `Start`, without a word to the window.
    void Go();

    void Append(std::unique_ptr<CListRow> row);

    /// A path came in again: whoever adds a hidden file wants it back.
    void NoteKnown(std::size_t index);

    /// Fills in what runs.
    void Tell(CBatchStatus& status) const;

    // For what writes beside it. Thread: any.

    [[nodiscard]] CRecordStore& Store() { return m_store; }
    [[nodiscard]] CJournal const& Journal() const { return m_journal; }

private:
    void StartNext();
    void GiveUpRunningRow();
    void RestoreRunningRow();
    void CancelRun();
    void HideRow(std::size_t index, bool isHidden);
    [[nodiscard]] CListRow* RowOf(CUserInfo const* userInfo) const;
    [[nodiscard]] CAnalysisOutcome OutcomeOf(CListRow const& row) const;
    void Conclude(CUserInfo const* userInfo);
    void Fail(CUserInfo const* userInfo);
    void StoreTempo(CListRow& row);
    void DecideAnew(CListRow& row);
    void TakeTagAgain(CListRow& row, CBPMFile const& fresh, CString const& tempoInTag);
    void GiveToOtherNames(CListRow const& row);
    [[nodiscard]] CWishes Wishes() const;
    [[nodiscard]] CString PathAt(std::size_t index) const;
    void TakeOver(CListRow& other, CListRow const& row);

    CFileList& m_list;
    IBpmView& m_view;
    CRecordStore m_store{CacheFolder()};
    CJournal m_journal{StateFolder()}; // a batch of files is a batch there
    std::size_t m_nRunningRow = CFileList::kNoRow;
    CString m_sTempoBefore; // What the running row showed before it was started.
    bool m_bInProgress = false;
    bool m_bStopped = false;      // The chain must not go on.
    bool m_bRunCancelled = false; // Results of the running file are void.
    bool m_bEnded = false;
    std::unique_ptr<CFileAnalyzer> m_pFileAnalyzer;
};
