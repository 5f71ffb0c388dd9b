// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/WriteProblem.h"
#include "song/SongProfile.h"
#include "tactus/tactus.h"

namespace tactus {

struct Evidence {
    CAnalysisOutcome outcome;
};

/// The public value of a profile.
Song SongOf(CSongProfile profile);

Problem ProblemOf(CAnalysisOutcome const& outcome);

Refusal RefusalOf(EWriteProblem problem);

} // namespace tactus
