// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/FileList.h"

#include <cstddef>

/// What a correction changes of a row.
struct CRowTempo {
    CString m_sText;
    bool m_bDone = false;
    bool m_bFromTag = false;
    bool m_bByHand = false;
    bool m_bNotInFile = false;
    double m_dExactBpm = 0.0;
    CAnalysisOutcome m_outcome;
    EWriteProblem m_writeProblem = EWriteProblem::None;
};

/// One row of a correction.
struct CRowChange {
    std::size_t m_nRow = 0;
    CRowTempo m_before;
    CRowTempo m_after;
};

// All of it with the list's lock held.

[[nodiscard]] CRowTempo TempoOfRow(CListRow const& row);

/// The row gets this tempo, and what belongs to it.
void SetTempoOfRow(CFileList& list, CListRow& row, CRowTempo const& tempo);

/// The tempo that a row shows, unrounded where that is known, and what is meant by one that is 10
/// or 100 times too large. Returns: 0 for a row without a tempo and for one that is analysed.
[[nodiscard]] double BpmOfRow(CListRow const& row);

/// What stands in the file of a row whose tempo came from its tag, as far as that is known; else
/// the text that the row shows.
[[nodiscard]] CString TextInTagOf(CListRow const& row);

/// The tempo that stands in the row's tag, as such a row shows it, as far as that is known; empty
/// for none. In the factory state, rows of other kinds than MP3 don't show it.
[[nodiscard]] CString TempoInTagOf(CListRow const& row);
