// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/ID3Tag.h"
#include "IDTag/WriteProblem.h"
#include "app/BPMFile.h"
#include "base/FileIdentity.h"
#include "song/AnalysisProblem.h"
#include "song/Retries.h"
#include "song/TempoCandidates.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// One row of the list: the file with its texts and done flag, and what the window is told beside
/// them. Once in the list, all of it is guarded by its lock unless it says otherwise.
struct CListRow {
    explicit CListRow(CString const& path) : m_file(path) {}

    CBPMFile m_file;
    std::size_t m_nIndex = 0;   // Fixed once the row is in the list.
    bool m_bHidden = false;     // Neither shown nor analysed.
    bool m_bFromTag = false;    // Its tempo was in the tag; none of ours has replaced it.
    int m_nPercent = -1;        // Of the running analysis; -1 when there is none.
    bool m_bReading = false;    // That analysis hasn't told how far it is.
    CAnalysisOutcome m_outcome; // Of the last analysis that came to its end.
    EWriteProblem m_writeProblem = EWriteProblem::None; // Why the tempo isn't in the file.
    bool m_bByHand = false;                             // A person set its tempo.
    bool m_bNotInFile = false;            // That tempo, or one that was taken back, is shown alone.
    CTempoCandidates m_candidates;        // Readings of the tempo that was heard.
    std::string m_sKey;                   // That was heard, as tags have it; empty for none.
    double m_dExactBpm = 0.0;             // Of a tempo by hand, before it was rounded for its text.
    std::vector<CWiderId> m_vConverted;   // Ids that got another name when the tempo was stored.
    std::optional<CString> m_sTempoInTag; // As it was read; nothing once it may be replaced.
    std::optional<CFileIdentity> m_identity; // Fixed too: of the file when the row was made.
    CRetries m_retries;                      // The analyser's worker's own.

    [[nodiscard]] bool IsToDo() const { return !m_file.IsDone() && !m_bHidden; }
};
