// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/TagStore.h"
#include "IDTag/TagWitness.h"
#include "IDTag/WriteProblem.h"
#include "base/CString.h"
#include "song/AnalysisProblem.h"

#include <optional>

/// Whether a song may have its tempo written, by what is known of it from hearing it: only what
/// was read as MPEG audio, with less than 1 % of its packets bad and at most 2 % of its promised
/// length missing. A song without a beat must have been heard whole.
/// Returns: why not; `None` when nothing of this speaks against it.
EWriteProblem ProblemOfStoring(CAnalysisOutcome const& outcome);

/// How a tempo is written.
struct CStoreTempoOptions {
    /// What the tag said when its row was read; with it, a tempo that somebody has set since stays.
    /// Nothing: whatever stands there gives way.
    std::optional<CString> m_tempoBefore;

    /// The file's time of the last write stays.
    bool m_bKeepTime = false;

    /// Told of the write; null for nobody.
    ITagWitness* m_pWitness = nullptr;
};

/// Writes `tempo` as the "TBPM" text of the MP3 file at `path`, when `ProblemOfStoring` has nothing
/// against it, and into no other file than the one that was heard: device, inode, size and both
/// times are compared again under the writer's lock.
/// `report`: what there is to tell of the write; may be null.
/// Returns: `None` also when the text stands there already.
/// Thread: any.
EWriteProblem StoreTempo(CString const& path, CAnalysisOutcome const& outcome, CString const& tempo,
                         CStoreTempoOptions const& wishes, CTagStoreReport* report = nullptr);
