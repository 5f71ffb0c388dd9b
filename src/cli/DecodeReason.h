// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/AnalysisProblem.h"

#include <string>

/// Why a file could not be decoded, in words that follow its name. Empty when it could.
std::string DecodeReason(CDecodeReport const& report);

/// What of a file could not be decoded although the rest was. Empty when all could.
std::string DamageReason(CDecodeReport const& report);

/// Why a file has no tempo. Empty when it has one.
std::string AnalysisReason(CAnalysisOutcome const& outcome);
