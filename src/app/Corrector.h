// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Correction.h"
#include "app/UndoSteps.h"
#include "app/WorkQueue.h"
#include "records/Places.h"
#include "records/Undo.h"

#include <atomic>
#include <cstddef>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

class BPMController;
class CBatch;
class CFileList;
class IBpmView;

/// The tempos of some rows, as far as a correction cares.
struct CTempoSpread {
    std::size_t m_nRows = 0;    // with a tempo
    std::size_t m_nRunning = 0; // analysed at this moment
    double m_dSlowest = 0.0;
    double m_dFastest = 0.0;
};

/// Why rows can't be corrected.
enum class ECorrectionRefusal { None, NothingSelected, Running, NoTempo, TooSlow, TooFast };

/// Whether `fix` leads every one of the rows to a tempo from 20 to 999. Rows without a tempo, and
/// the one that is analysed, are left out as long as there are others.
ECorrectionRefusal RefusalOf(CTempoSpread const& spread, CTempoFix const& fix);

/// What can be taken back and done again next.
struct CUndoState {
    std::optional<CUndoStep> m_undo;
    std::optional<CUndoStep> m_redo;

    bool operator==(CUndoState const&) const = default;
};

/// What came of a step that was taken back or done again.
struct CUndoReport {
    std::size_t m_nDone = 0;
    std::size_t m_nLeft = 0;           // files that were left as they are
    EUndo m_eReason = EUndo::AsBefore; // of the first of these
    EWriteProblem m_eProblem = EWriteProblem::None;
    std::string m_sPath; // bytes
};

/// Sets tempos right that a person knows better, and takes steps back: corrections and whole
/// batches of the analysis, of this session and, by the journal, of earlier ones. Rows change at
/// once; files are written on a worker of its own, one after the other.
/// Thread: one, unless an operation says otherwise.
class CCorrector {
public:
    /// `controller` must outlive it.
    explicit CCorrector(BPMController& controller);
    CCorrector(CCorrector const&) = delete;
    CCorrector& operator=(CCorrector const&) = delete;
    ~CCorrector() { End(); }

    [[nodiscard]] CTempoSpread Spread(std::vector<std::size_t> const& rows) const;

    /// The tempo of one row; 0 for none.
    [[nodiscard]] double Tempo(std::size_t row) const;

    /// Corrects the rows that have a tempo or, for a value, all but the one that is analysed.
    /// Returns: false when it is refused, and nothing is changed.
    bool Correct(std::vector<std::size_t> const& rows, CTempoFix const& fix);

    /// Takes back the latest step that can be. What isn't as it was left by it stays.
    void Undo() {
        Post([this] { TakeBack(false); });
    }

    /// Does again what was taken back last.
    void Redo() {
        Post([this] { TakeBack(true); });
    }

    [[nodiscard]] CUndoState State() const;

    /// What came of the latest `Undo` or `Redo`, once.
    [[nodiscard]] std::optional<CUndoReport> TakeReport();

    /// Looks for steps that came from elsewhere: a batch of the analysis, another program.
    void Refresh() {
        Post([this] { Publish(); });
    }

    /// Finds out which of the rows that came in since were corrected in an earlier session.
    void LookAtNewRows();

    /// Nothing is being written, and nothing waits for it. Thread: any.
    [[nodiscard]] bool IsIdle() { return m_queue.IsIdle(); }

    /// Waits until everything is written. Nothing more is taken on. May be called twice.
    void End();

private:
    void Post(CWorkQueue::Job job);
    [[nodiscard]] CRowTempo Corrected(CListRow const& row, CTempoFix const& fix) const;
    void Write(CStepMemory step);
    void Store(CRowChange& change);
    void TakeBack(bool isRedo);
    void TakeBackFiles(CStep const& step, CUndoReport& report);
    void TakeBackRows(CStepMemory& memory, bool isRedo, std::set<std::size_t> const& left,
                      CUndoReport& report);
    void ShowFile(CJournalEntry const& entry, std::size_t index, bool wasHeard, bool isRemembered);
    [[nodiscard]] std::size_t RowOf(std::string const& path);
    [[nodiscard]] std::vector<CStep> Steps();
    [[nodiscard]] bool WasHeard(CStep const& step);
    [[nodiscard]] std::optional<CUndoStep> Told(CStep const* step);
    void Publish();
    void FindByHand(std::size_t first, std::size_t end);

    CFileList& m_list;
    CBatch& m_batch;
    IBpmView& m_view;
    CJournal m_journal{StateFolder()};
    std::atomic<bool> m_bEnding = false;
    std::size_t m_nLookedAt = 0; // rows

    // The worker's own.
    std::list<CStepMemory> m_vMemories;
    std::set<std::int64_t> m_vGivenUp;              // batches that can't be taken back any more
    std::map<std::string, std::size_t> m_vRealRows; // while a step is taken back
    std::set<std::size_t> m_vLeftRows;              // likewise

    mutable std::mutex m_lock; // Guards the two below.
    CUndoState m_state;
    std::optional<CUndoReport> m_report;

    CWorkQueue m_queue; // comes last: its end waits for the worker
};
