// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DecodeProblem.h"

/// Why a file has no tempo. The words for a person are made by the programs.
enum class EAnalysisProblem {
    None,
    NotDecoded, // why is told by the decode's report
    NoBeat,     // it was heard to its end
    NoThread,
    NoMemory, // for the engine
};

// Derived: how many there are, from the last one.
inline constexpr int kAnalysisProblems = static_cast<int>(EAnalysisProblem::NoMemory) + 1;

/// What came of one file beside its tempo.
struct CAnalysisOutcome {
    EAnalysisProblem m_problem = EAnalysisProblem::None;
    CDecodeReport m_report = {};

    bool operator==(CAnalysisOutcome const&) const = default;
};
