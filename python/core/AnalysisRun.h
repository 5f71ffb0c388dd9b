// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <pybind11/pybind11.h>
#include <stop_token>
#include <tactus/tactus.h>
#include <thread>

/// Whether `cancel` asks for an end. It is None or has `is_set`.
bool IsSet(pybind11::object const& cancel);

/// One hearing on a thread of its own, so that the thread of Python that waits for it can answer
/// signals and look at what may cancel it. Destroying it stops the hearing and waits for its end.
class CAnalysisRun {
public:
    using CHear = std::function<tactus::Song(tactus::Options const&)>;

    CAnalysisRun(CHear hear, tactus::Options const& options, bool tellsProgress);
    ~CAnalysisRun();
    CAnalysisRun(CAnalysisRun const&) = delete;
    CAnalysisRun& operator=(CAnalysisRun const&) = delete;

    /// Waits for the song without the interpreter's lock. `progress` is None or takes percents,
    /// rising; `cancel` is asked ten times a second.
    /// Thread: the one that made it, which holds the interpreter's lock.
    tactus::Song Wait(pybind11::object const& progress, pybind11::object const& cancel);

private:
    void Run(CHear const& hear, tactus::Options const& options);
    void SetPercent(int percent);
    /// Sleeps until there is more to tell than `told`, the end, or time to look round.
    /// Returns: the percents to tell, and whether it is the end.
    std::pair<int, bool> WaitForNews(int told);

    std::stop_source m_stop;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_bDone = false;
    int m_nPercent = -1; // none yet
    tactus::Song m_song;
    std::exception_ptr m_pError;
    std::thread m_thread; // the last: it uses the others
};
