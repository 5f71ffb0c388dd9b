// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/TempoCandidates.h"

#include <optional>

struct CSongProfile;

/// The readings of a song's tempo, from a profile whose envelopes were kept. None without these,
/// and for a song that couldn't be heard.
CTempoCandidates CandidatesOf(CSongProfile const& profile);

/// The reading that a person should think of beside the reported one: the likeliest that stands in
/// another ratio to it. Null when there is none.
CTempoCandidate const* OtherReading(CTempoCandidates const& candidates);

/// How far the other reading comes up to the reported tempo: its score less that of the reported
/// one. Returns: nothing where the latter is more than twice as likely, so that nobody needs to
/// look.
std::optional<float> DoubtIn(CTempoCandidates const& candidates);

/// `bpm` doubled or halved until it lies between `slowest` and `fastest`, both included, of which
/// the latter is at least twice the former. Returns: `bpm` when it is no positive number.
double FoldedTempo(double bpm, double slowest, double fastest);
