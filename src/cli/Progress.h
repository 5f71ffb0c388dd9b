// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

/// How far the work is.
struct CProgressState {
    std::size_t m_nDone = 0;
    std::size_t m_nTotal = 0;   // files found so far
    bool m_bTotalKnown = false; // the search for files is over
    int m_nPercent = 0;         // of the work on the files found
    std::string_view m_sName;   // the file at hand
};

/// One line on standard error that tells how far the work is, when a person reads along there.
/// Thread: main.
class CProgress {
public:
    /// `isWanted`: false keeps the line away on a terminal too.
    explicit CProgress(bool isWanted);
    ~CProgress() { Clear(); }
    CProgress(CProgress const&) = delete;
    CProgress& operator=(CProgress const&) = delete;

    /// Shows `state`, ten times a second at the most.
    void Show(CProgressState const& state);

    /// Takes the line away, so that something else can be written.
    void Clear();

private:
    bool m_bWanted;
    bool m_bShown = false;
    std::chrono::steady_clock::time_point m_lastShown;
};
