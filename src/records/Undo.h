// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/WriteProblem.h"
#include "records/Journal.h"

#include <optional>
#include <string>

/// What came of taking a write back.
enum class EUndo {
    Restored,   // the file's tag is what it was before, byte for byte
    TextAlone,  // the frame is what it was before, in a tag that was changed since
    AsBefore,   // there was nothing to be done
    OtherText,  // the frame says something else than what was written; nothing was done
    Gone,       // the file isn't there
    Unreadable, // its tag can't be read
    NotWritten, // why is told by the problem
};

struct CUndoOptions {
    bool m_bForce = false; // also where the frame says something else
    /// The file gets the time of the last write that it had before the write, or keeps the one that
    /// somebody has given it since.
    bool m_bKeepTime = false;
};

struct CUndoResult {
    EUndo m_eUndo = EUndo::AsBefore;
    EWriteProblem m_eProblem = EWriteProblem::None;
    std::optional<std::string> m_textThere =
        {}; // what the frame said, UTF-8; nothing: no such frame
};

/// Takes one write back: puts the bytes back that were there, where the tag is the one that was
/// written; else the text, where the frame still says what was written. It is itself a write, by
/// the same careful way, and entered in the journal.
/// `path`: where the file lies now, which is `entry.m_sPath` unless it was renamed.
/// Thread: any.
CUndoResult UndoWrite(CJournal& journal, CJournalEntry const& entry, std::string const& path,
                      CUndoOptions const& options);
