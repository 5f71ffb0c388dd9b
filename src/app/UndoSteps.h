// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Correction.h"
#include "app/RowTempo.h"
#include "records/Journal.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <set>
#include <vector>

/// What a step did.
enum class EStepKind {
    Analysis, // tempos that were heard went into files
    Ratio,    // tempos times a ratio
    Tempo,    // tempos that were typed, tapped or chosen
};

/// A step that can be taken back or done again, as it is told.
struct CUndoStep {
    EStepKind m_kind = EStepKind::Tempo;
    CTempoFix m_ratio; // of `Ratio`
    std::size_t m_nFiles = 0;
    std::int64_t m_nTime = 0; // nanoseconds since the epoch

    bool operator==(CUndoStep const&) const = default;
};

/// What is kept of a correction while the program runs: the journal knows files alone, and only
/// those that were written.
struct CStepMemory {
    std::int64_t m_nTime = 0; // nanoseconds since the epoch
    CTempoFix m_fix;
    std::vector<CRowChange> m_vChanges;
    std::optional<std::int64_t> m_batch; // of the journal; nothing: no file was written
    bool m_bUndone = false;
};

/// A step of the window's, in this session or an earlier one.
struct CStep {
    std::int64_t m_nTime = 0;
    std::int64_t m_nRoot = 0;   // batch of the journal that it began as; 0 for none
    std::int64_t m_nLatest = 0; // the batch that took it back or did it again last
    std::size_t m_nWrites = 0;  // of the latest batch
    bool m_bUndone = false;
    bool m_bUndoneOnDisk = false;
    CStepMemory* m_pMemory = nullptr; // null for a step of the analysis, or of an earlier session
};

/// The window's steps, the first one first, from what the journal has, the last one first, and from
/// what is kept in memory. Steps that were taken back and followed by another one are gone, as are
/// those of `leftOut`.
std::vector<CStep> StepsOf(std::vector<CJournalBatch> const& batches,
                           std::list<CStepMemory>& memories, std::set<std::int64_t> const& leftOut);

/// The step to be taken back next; null when there is none.
CStep const* StepToUndo(std::vector<CStep> const& steps);

/// The step to be done again next; null when there is none.
CStep const* StepToRedo(std::vector<CStep> const& steps);

/// The ratio in which all of these writes stand to what was there before, as near as two decimals
/// let it be told. Returns: nothing when there is none.
std::optional<CTempoFix> RatioOf(std::vector<CJournalEntry> const& entries);
