// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/WriteProblem.h"
#include "song/HeardSong.h"
#include "song/SongProfile.h"
#include "tactus/tactus.h"

namespace tactus {

struct Evidence {
    CHeardSong heard;
};

/// The public value of a profile for which beats, harmony and envelopes were asked for.
Song SongOf(CSongProfile const& profile, bool keepEnvelopes);

/// A song that was not heard.
Song SongOf(CAnalysisOutcome const& outcome);

Problem ProblemOf(CAnalysisOutcome const& outcome);

Refusal RefusalOf(EWriteProblem problem);

} // namespace tactus
