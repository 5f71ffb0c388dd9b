// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Report.h"

#include <chrono>
#include <cstddef>
#include <string>

/// Counts what became of the files of a run.
class CSummary {
public:
    void Add(CReportRow const& row);

    /// Takes note of something that a person should know although no file failed.
    void Warn() { m_bWarned = true; }

    [[nodiscard]] std::size_t Rows() const { return m_nRows; }

    /// Files that make the run a failed one, so far.
    [[nodiscard]] std::size_t Failures() const { return m_nFailures; }

    /// "25 heard, 14 stored, 3 kept, 1 failed in 12.3 s, 480 times real time"; `isWriting`: tempos
    /// were to be stored. Without the end when nothing was listened to.
    [[nodiscard]] std::string Line(bool isWriting, std::chrono::duration<double> time) const;

    /// The same as a JSON object for programs; `exitCode`: what the run exits with.
    [[nodiscard]] std::string Json(std::chrono::duration<double> time, int exitCode) const;

    /// One of `cli/ExitCode.h`.
    [[nodiscard]] int ExitCode() const;

private:
    [[nodiscard]] double Rate(std::chrono::duration<double> time) const;

    std::size_t m_nRows = 0;
    std::size_t m_nFailures = 0;
    double m_dHeardSeconds = 0.0; // of music
    std::size_t m_nHeard = 0;
    std::size_t m_nStored = 0;
    std::size_t m_nRefused = 0;
    std::size_t m_nTooShort = 0;
    std::size_t m_nKept = 0;
    std::size_t m_nFailed = 0;
    std::size_t m_nFurtherNames = 0;
    std::size_t m_nToWrite = 0; // of a dry run
    std::size_t m_nDiffering = 0;
    std::size_t m_nSkipped = 0;
    bool m_bPlan = false;
    bool m_bFailed = false;
    bool m_bWarned = false;
};

/// "12.3 s", "4 min 5 s" or "2 h 10 min".
std::string TimeText(std::chrono::duration<double> time);

/// "480 times real time", with a decimal below 10.
std::string RateText(double rate);

/// A rate as a JSON number with one decimal; null for none.
std::string RateJson(double rate);
