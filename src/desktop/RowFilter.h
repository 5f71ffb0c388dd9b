// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

/// Which rows the table shows. Rows that were hidden are in none of them.
enum class ERowFilter {
    All,
    ToDo,     ///< Without a tempo, or awaiting another analysis.
    ToReview, ///< Another reading of the tempo is nearly as likely.
    ByHand,   ///< A person set the tempo.
    Problems, ///< Without a tempo, analysed in part, or not stored.
};

/// How many rows each filter shows.
struct CRowCounts {
    std::size_t m_nAll = 0;
    std::size_t m_nToDo = 0;
    std::size_t m_nToReview = 0;
    std::size_t m_nByHand = 0;
    std::size_t m_nProblems = 0;

    friend bool operator==(CRowCounts const&, CRowCounts const&) = default;
};
