// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/WriteProblem.h"
#include "song/AnalysisProblem.h"

/// Decides how often a song is begun anew because somebody else was at its file: its tag is read
/// again then, and all is decided by what stands there now.
/// Thread: one at a time.
class CRetries {
public:
    /// After the file changed while it was worked on. Returns: whether to begin anew.
    bool AfterChange() { return ++m_nChanges < kMostAttempts; }

    /// After a refusal to write. A file that another program is writing is given a moment.
    /// Returns: whether it was somebody else's doing, and to begin anew.
    bool After(EWriteProblem problem);

private:
    static constexpr int kMostAttempts = 3; // Fixed: a file that never rests is given up.
    static constexpr int kMostWaits = 5;    // Fixed: with the pauses below, a second and a half.

    int m_nChanges = 0;
    int m_nWaits = 0;
};

/// True when the file changed while it was heard, or went away.
inline bool HasChangedMeanwhile(CAnalysisOutcome const& outcome) {
    return outcome.m_problem == EAnalysisProblem::NotDecoded &&
           (outcome.m_report.m_problem == EDecodeProblem::Changed ||
            outcome.m_report.m_problem == EDecodeProblem::Vanished);
}
