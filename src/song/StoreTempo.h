// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/TagStore.h"
#include "IDTag/TagWitness.h"
#include "IDTag/WriteProblem.h"
#include "base/CString.h"
#include "song/AnalysisProblem.h"
#include "song/AudioKinds.h"

#include <optional>
#include <string>

/// Whether a song may have its tempo written, by what is known of it from hearing it: only what
/// was read as what its name says (`container`), with less than 1 % of its packets bad and at most
/// 2 % of its promised length missing. A song without a beat must have been heard whole. Returns:
/// why not; `None` when nothing of this speaks against it.
EWriteProblem ProblemOfStoring(CAnalysisOutcome const& outcome,
                               EContainer container = EContainer::MpegAudio);

/// How a tempo is written.
struct CStoreTempoOptions {
    /// What the tag said when its row was read; with it, a tempo that somebody has set since stays.
    /// Nothing: whatever stands there gives way.
    std::optional<CString> m_tempoBefore;

    /// The file's time of the last write stays.
    bool m_bKeepTime = false;

    /// The kinds beside MP3 whose tags are written too; nothing: none.
    std::optional<CKindChoice> m_types = {};

    /// The key in the standard's three letters ("Am", "Ebm"), which is written with the tempo;
    /// empty: none is.
    std::string m_sKey = {};

    /// A version 2.4 tag stays one, instead of becoming version 2.3.
    bool m_bKeepVersion = false;

    /// Told of the write of the tempo; null for nobody.
    ITagWitness* m_pWitness = nullptr;

    /// Told of the write of an MP3 file's key, which is one of its own; null for nobody.
    ITagWitness* m_pKeyWitness = nullptr;
};

/// Writes `tempo` as the "TBPM" text of the MP3 file at `path`, or into the tag of one of the
/// further kinds that are wished for, when `ProblemOfStoring` has nothing against it, and into no
/// other file than the one that was heard: device, inode, size and both times are compared again
/// under the writer's lock. `report`, which may be null, tells of the write of an MP3 file's tempo.
/// Returns: `None` also when the text stands there already.
/// Thread: any.
EWriteProblem StoreTempo(CString const& path, CAnalysisOutcome const& outcome, CString const& tempo,
                         CStoreTempoOptions const& wishes, CTagStoreReport* report = nullptr);

/// Writes a tempo that a person gives into the tag of a file that nobody has decoded, of any kind
/// that can be written: in an MP3 file, MPEG frames must follow the tag. Of `wishes`, the tempo
/// that was seen, the time and the witness count.
/// Returns: `None` also when the text stands there already.
/// Thread: any.
EWriteProblem StoreGivenTempo(CString const& path, CString const& tempo,
                              CStoreTempoOptions const& wishes);

/// The text that the tag of the file at `path` has once `tempo` is written into it, which a later
/// write is held against: `tempo` itself in an MP3 file, what is read back in others, as MP4 has
/// whole numbers of its own.
/// Thread: any.
CString StoredTempoText(CString const& path, CString const& tempo);
