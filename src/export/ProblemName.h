// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "export/TakenSong.h"
#include "song/AnalysisProblem.h"

// Names for programs, which stay as they are in every language. People get words of the programs'.

/// Why a file has no tempo: "notAudio", "noBeat"; empty when it has one.
[[nodiscard]] char const* ProblemName(CAnalysisOutcome const& outcome);

/// "mpeg", "mp4", "flac"; empty when not known.
[[nodiscard]] char const* ContainerName(EContainer container);

/// "tag", "analysis" or "length"; empty for none.
[[nodiscard]] char const* TempoSourceName(ETempoSource source);

/// "encoderTag", "trackTable" or "streamHeader"; empty for none.
[[nodiscard]] char const* StartNoteName(EStartNote note);
