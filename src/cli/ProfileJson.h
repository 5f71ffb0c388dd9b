// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/Harmony.h"

#include <optional>
#include <string>
#include <vector>

class CFingerprint;
class CProfileResults;
class CProfileTrace;

/// Everything that one run gave.
struct CProfile {
    std::string m_sFile; // bytes
    CProfileResults const* m_pResults;
    CFingerprint const* m_pPrint;
    CFingerprint const* m_pLargePrint;
    std::vector<int> m_vProgress; // percents in the order sent
    CProfileTrace const* m_pTrace;
    std::optional<CHarmony> m_harmony = std::nullopt; // empty: not asked for
};

/// The run as one JSON object on one line, without a line end. Equal runs give equal bytes.
std::string ProfileJson(CProfile const& profile);
