// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// How far the work is.
struct CProgressState {
    std::size_t m_nDone = 0;
    std::size_t m_nTotal = 0;          // files found so far
    bool m_bTotalKnown = false;        // the search for files is over
    int m_nPercent = 0;                // of the work on the files found
    double m_dRate = 0.0;              // seconds heard in a second; 0: nothing was heard yet
    std::optional<double> m_left = {}; // seconds until the end; nothing: it can't be told
    std::string_view m_sName;          // the file at hand
};

enum class EProgress {
    Line, // one line, where a person reads along on a terminal
    Json, // a JSON object a line, for programs, wherever it goes
    None,
};

/// Tells on standard error how far the work is.
/// Thread: main.
class CProgress {
public:
    explicit CProgress(EProgress form);
    ~CProgress() { Clear(); }
    CProgress(CProgress const&) = delete;
    CProgress& operator=(CProgress const&) = delete;

    /// True when the next `Show` will be shown: it is, ten times a second at the most.
    [[nodiscard]] bool IsDue() const;

    /// Shows `state` if that is due.
    void Show(CProgressState const& state);

    /// Takes the line away, so that something else can be written.
    void Clear();

private:
    EProgress m_form;
    bool m_bShown = false;
    std::chrono::steady_clock::time_point m_lastShown;
};

/// "3 of 20 files, 15%  110 times real time  42 s left  name"
std::string ProgressLine(CProgressState const& state);

/// The state as a JSON object.
std::string ProgressJson(CProgressState const& state);
