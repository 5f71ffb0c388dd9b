// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BPMFile.h"
#include "base/FileIdentity.h"
#include "cli/InputWalk.h"
#include "cli/Report.h"
#include "records/Journal.h"
#include "records/RecordStore.h"
#include "song/AnalysisProblem.h"
#include "song/AudioKinds.h"
#include "song/Retries.h"
#include "song/StoreTempo.h"

#include <memory>
#include <optional>
#include <string>

/// What is to be done with every file.
struct CSongOptions {
    bool m_bForce = false;         // analyse files too whose tag has a tempo
    bool m_bRecheck = false;       // those too whose tag has one that no song has
    bool m_bWrite = false;         // store what an analysis finds in the tags of mp3 files
    bool m_bOverwriteHand = false; // also a tempo that Tactus didn't write
    bool m_bCandidates = false;    // find the readings of each tempo
    bool m_bLikely = false;        // report the likeliest of them
    bool m_bFacts = false;         // find all that the record of a song has; needs candidates
    bool m_bEnvelopes = false;     // with its envelopes
    bool m_bHarmony = false;       // find the key of chords and melody
    bool m_bShort = false;         // store also what follows from a clip's length
    double m_dSlowest = 0.0;       // fold tempos into this range; 0: don't
    double m_dFastest = 0.0;
    std::optional<CKindChoice> m_writeTypes = {}; // kinds beside MP3 that are written too
    int m_nDecimals = 2;                          // of a tempo that is stored
    bool m_bKeepTime = false;                     // the time of a file's last write stays
    bool m_bKeepVersion = false;                  // a version 2.4 tag stays one
    bool m_bWriteKey = false;                     // the key too
    bool m_bDryRun = false;                       // only plan it
    double m_dLeastOff = 0.0;                     // store only what is off by more than this share
    CJournal* m_pJournal = nullptr;               // where writes are entered; null: nowhere
    CRecordStore* m_pStore = nullptr;             // what was heard and read before; null: nothing
};

/// The work on one file but for the listening: its tag is read, then a tempo that was heard is
/// stored. When the file changes in between, all begins anew, so that nobody's change is lost.
/// Thread: one thread at a time.
class CSongWork {
public:
    CSongWork(CInputFile input, CSongOptions const& options);

    /// Reads the tag. A call after the first begins anew.
    /// Returns: true when the row is complete by it: there is no need to listen.
    bool Begin();

    /// Completes the row by what was heard, and stores the tempo if that is wanted.
    /// Returns: false when the file changed since `Begin`, which is to be called again.
    bool Conclude(CHeardSong const& heard, std::string const& key);

    /// Completes the row of a file that nothing came of.
    void Fail(EAnalysisProblem problem);

    /// The file that `Begin` found; null when it can't be looked at.
    [[nodiscard]] CBPMFile* File() { return m_pFile.get(); }

    [[nodiscard]] CReportRow& Row() { return m_row; }

    /// True when the name is one through which a tempo may be stored.
    static bool IsWritable(CInputFile const& input);

private:
    bool ReadTag();
    void Recall();
    void Remember() const;
    void Learn(CHeardSong heard);
    [[nodiscard]] bool IsKnown() const;
    void TakeSong(CHeardSong const& heard);
    [[nodiscard]] double ReportedTempo(CHeardSong const& heard) const;
    [[nodiscard]] ETempoSource SourceOf(CHeardSong const& heard) const;
    [[nodiscard]] bool IsToBeWritten() const;
    [[nodiscard]] ESetBy FindSetBy() const;
    [[nodiscard]] std::string ReasonToKeep() const;
    void Plan(CAnalysisOutcome const& outcome, std::string const& tempo);
    [[nodiscard]] CStoreTempoOptions WishesFor(std::string const& key) const;
    bool Store(CAnalysisOutcome const& outcome, std::string const& key);
    [[nodiscard]] bool HasChanged() const;

    CInputFile m_input;
    CSongOptions m_options;
    CRetries m_retries;
    std::optional<CFileIdentity> m_identity; // before the tag was read
    std::unique_ptr<CBPMFile> m_pFile;
    CString m_sTempoInTag;     // when it was read
    CSongRecord m_known;       // of the file in this state
    bool m_bNews = false;      // something is known that the store doesn't have
    bool m_bTagStands = false; // the tag's tempo is told, whatever is heard
    bool m_bRested = false;    // a change since would show in the identity
    CReportRow m_row;
};
