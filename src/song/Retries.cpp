// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/Retries.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace {

constexpr std::chrono::milliseconds kFirstPause(100);   // Fixed: half a second is long for a tag.
constexpr std::chrono::milliseconds kLongestPause(400); // Fixed: who stops the run waits as long.

} // namespace

bool CRetries::After(EWriteProblem problem) {
    switch (problem) {
    case EWriteProblem::Changed:
    case EWriteProblem::TempoChanged:
        return AfterChange();
    case EWriteProblem::InUse:
        if (m_nWaits == kMostWaits) {
            return false;
        }
        std::this_thread::sleep_for(std::min(kFirstPause * (1 << m_nWaits), kLongestPause));
        ++m_nWaits;
        return true;
    default:
        return false;
    }
}
