// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// Why something isn't remembered. The words for a person are made by the programs.
enum class ERecordProblem {
    None,
    NoFolder,  // there is no home folder, or nothing is to be kept
    NotThere,  // it was to be read alone, and there is none
    NotOpened, // no permission, no space, or the disk reports an error
    Damaged,   // it was put aside under another name, and a new one begun
    Foreign,   // another program's
    Newer,     // a later version of Tactus made it
    Busy,      // other processes kept it locked for too long
    Failed,    // it gave way in the middle of the work
};

/// Number of the values above, for those who go through them all.
constexpr int kRecordProblems = static_cast<int>(ERecordProblem::Failed) + 1;
