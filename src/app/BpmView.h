// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/ID3Tag.h"
#include "IDTag/WriteProblem.h"
#include "song/AnalysisProblem.h"
#include "song/TempoCandidates.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// What one row tells beside its three texts. A copy, taken under the list's lock.
struct CRowState {
    std::u16string m_sPath;     ///< Full path, bytes that are not UTF-8 as lone surrogates.
    bool m_bDone = false;       ///< Has a tempo, from its tag or from an analysis.
    bool m_bFromTag = false;    ///< That tempo was in the tag; no analysis of ours has replaced it.
    bool m_bHidden = false;     ///< Neither shown nor analysed until it is brought back.
    int m_nPercent = -1;        ///< Progress while the row is analysed, 0 to 100; otherwise -1.
    bool m_bReading = false;    ///< It is being decoded: no percentage has come yet.
    CAnalysisOutcome m_outcome; ///< Why it has no tempo, and how much of it was heard.
    EWriteProblem m_writeProblem = EWriteProblem::None; ///< Why its tempo isn't in the file.
    std::vector<CWiderId> m_vConverted = {}; ///< Ids that got another name when it was stored.
    bool m_bByHand = false;                  ///< A person set its tempo.
    bool m_bNotInFile = false; ///< The tempo was set by hand or taken back, and only shown.
    bool m_bToReview = false;  ///< Another reading of its tempo is nearly as likely, or likelier.
    std::string m_sKey = {};   ///< The key that was heard, as tags have it; empty for none.
    bool m_bInFile = false;    ///< Its tempo stands in the file's tag, as far as is known.
};

/// True for a tempo that should be in the file and isn't. Files of a kind that is never written
/// are no failure.
inline bool IsStoreFailure(EWriteProblem problem) {
    return problem != EWriteProblem::None && problem != EWriteProblem::OtherExtension;
}

/// True for a row that the user should look at.
inline bool HasProblem(CRowState const& row) {
    return row.m_outcome.m_problem != EAnalysisProblem::None ||
           row.m_outcome.m_report.IsDamaged() || IsStoreFailure(row.m_writeProblem);
}

/// Where the batch stands. A copy, taken under the list's lock.
struct CBatchStatus {
    bool m_bAdding = false;      ///< Paths are being looked through on the adding worker.
    bool m_bRunning = false;     ///< A file is being analysed.
    bool m_bReading = false;     ///< That file is being decoded: no percentage yet.
    bool m_bStopping = false;    ///< The batch was stopped; its running file is ending.
    std::size_t m_nRows = 0;     ///< Rows in the list, hidden ones included.
    std::size_t m_nHidden = 0;   ///< Of these, rows that are hidden now.
    std::size_t m_nReturned = 0; ///< Hidden rows so far that came back by being added again.
    std::size_t m_nKnown = 0;    ///< Paths met so far that were in the list already.
    std::size_t m_nLeftOut = 0;  ///< Files of other kinds that were left out of folders.
    std::size_t m_nUndone = 0; ///< Rows without a tempo, the running one included, hidden ones not.
    std::size_t m_nBatchFiles = 0;    ///< Files of this batch, done and still to come.
    std::size_t m_nBatchPlace = 0;    ///< Which of them is running, from 1; 0 when none is.
    int m_nPercent = -1;              ///< Progress of the running file; -1 when there is none.
    std::u16string m_sRunningName;    ///< File name of the running file.
    std::size_t m_nHeard = 0;         ///< Analyses so far that came to an end.
    std::size_t m_nStored = 0;        ///< Of these, tempos that were stored in the file.
    std::size_t m_nFailed = 0;        ///< Rows whose analysis failed.
    std::size_t m_nNotStored = 0;     ///< Rows whose tempo could not be stored in the file.
    std::size_t m_nProblems = 0;      ///< Problems met so far; grows by one with each.
    std::size_t m_nProblemRow = 0;    ///< Row of the latest problem; only when there were any.
    std::size_t m_nUnreadFolders = 0; ///< Folders met so far that could not be read.
    std::u16string m_sUnreadFolder;   ///< The latest of them.
};

/// The list as the window reads it: rows are only ever appended, and a row's number is its
/// identity for as long as the program runs.
/// Thread: safe from any thread.
class IFileList {
public:
    virtual ~IFileList() = default;

    [[nodiscard]] virtual std::size_t numberOfRowsInTableView() const = 0;

    /// Text of one cell. Columns: 1 is the artist, 2 the tempo, any other the title. A row past
    /// the end has empty texts.
    [[nodiscard]] virtual std::u16string objectValueForTableColumn(std::int32_t column,
                                                                   std::size_t row) const = 0;

    [[nodiscard]] virtual CRowState rowState(std::size_t row) const = 0;

    /// Readings of the tempo that was heard of the row's song, the likeliest first.
    [[nodiscard]] virtual std::vector<CTempoCandidate> rowCandidates(std::size_t row) const = 0;

    [[nodiscard]] virtual CBatchStatus status() const = 0;
};

/// The window as the controller sees it: told what has changed, it reads the list in its own
/// time. No call waits for the window.
/// Thread: called from any thread, sometimes under the list's lock; it must neither block nor call
/// back into the controller.
class IBpmView {
public:
    virtual ~IBpmView() = default;

    /// The texts or the state of `row` have changed.
    virtual void reloadRow(std::size_t row) = 0;

    /// Every row may have changed.
    virtual void reloadAll() = 0;

    /// Rows were appended.
    virtual void rowsAdded() = 0;

    /// `status()` has changed.
    virtual void statusChanged() = 0;

    /// Says whether the window may close. Calls arrive in the order of the batch's turns.
    virtual void setCanClose(bool canClose) = 0;

    /// Opens the product's page in the default browser. Only on the thread that asked for help.
    virtual void openHomePage() = 0;
};
