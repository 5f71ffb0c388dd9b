// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Corrector.h"
#include "song/TempoCandidates.h"

#include <QString>

/// What the window says of corrections and of taking them back. Everything is translated and
/// follows the user's locale.
/// Thread: main.

/// A ratio as people write it: "×2", "÷2", "3:2".
QString RatioText(CTempoFix const& ratio);

/// A reading of a tempo: "189.98 · ×2 · 24 %".
QString ReadingText(CTempoCandidate const& reading);

/// What a step did: "×2 on 14 files".
QString StepText(CUndoStep const& step);

/// Why rows can't be corrected; empty when they can.
QString RefusalText(ECorrectionRefusal refusal);

/// What was left as it is when a step was taken back, and why; empty when nothing was.
QString LeftText(CUndoReport const& report);
