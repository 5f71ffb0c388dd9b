// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Pace.h"

#include <algorithm>

namespace {

constexpr double kMemorySeconds = 30.0;  // Fixed: long beside most songs, short beside a run.
constexpr double kBetweenSeconds = 0.5;  // Fixed: between two marks that are kept.
constexpr double kShortestSeconds = 1.0; // Fixed: less than that tells nothing.

} // namespace

void CPace::Note(double now, double done) {
    // The last mark moves along until it is far enough from the one before it.
    bool const isMoving = m_vMarks.size() > 1 && m_vMarks.back().m_dTime - kBetweenSeconds <
                                                     m_vMarks[m_vMarks.size() - 2].m_dTime;
    if (isMoving) {
        m_vMarks.pop_back();
    }
    m_vMarks.push_back({now, done});
    while (m_vMarks.size() > 2 && m_vMarks[1].m_dTime <= now - kMemorySeconds) {
        m_vMarks.pop_front();
    }
}

std::optional<double> CPace::Left(double all) const {
    if (m_vMarks.empty()) {
        return std::nullopt;
    }
    double const time = m_vMarks.back().m_dTime - m_vMarks.front().m_dTime;
    double const done = m_vMarks.back().m_dDone - m_vMarks.front().m_dDone;
    if (time < kShortestSeconds || done <= 0.0) {
        return std::nullopt;
    }
    return std::max(all - m_vMarks.back().m_dDone, 0.0) * time / done;
}
