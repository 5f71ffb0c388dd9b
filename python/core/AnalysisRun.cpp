// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "AnalysisRun.h"

#include <chrono>
#include <tuple>
#include <utility>

namespace py = pybind11;

namespace {

constexpr std::chrono::milliseconds kLookRound(100); // Fixed: how soon Ctrl+C is answered.

} // namespace

bool IsSet(py::object const& cancel) {
    return !cancel.is_none() && py::cast<bool>(cancel.attr("is_set")());
}

CAnalysisRun::CAnalysisRun(CHear hear, tactus::Options const& options, bool tellsProgress) {
    tactus::Options own = options;
    own.stop = m_stop.get_token();
    if (tellsProgress) {
        own.progress = [this](int percent) { SetPercent(percent); };
    }
    m_thread =
        std::thread([this, hear = std::move(hear), own = std::move(own)] { Run(hear, own); });
}

CAnalysisRun::~CAnalysisRun() {
    m_stop.request_stop();
    py::gil_scoped_release const released;
    m_thread.join();
}

tactus::Song CAnalysisRun::Wait(py::object const& progress, py::object const& cancel) {
    int told = -1;
    bool isDone = false;
    while (!isDone) {
        int percent = 0;
        {
            py::gil_scoped_release const released;
            std::tie(percent, isDone) = WaitForNews(told);
        }
        if (percent > told) {
            told = percent;
            progress(percent);
        }
        if (PyErr_CheckSignals() != 0) {
            throw py::error_already_set();
        }
        if (!isDone && IsSet(cancel)) {
            m_stop.request_stop();
        }
    }
    if (m_pError) {
        std::rethrow_exception(m_pError);
    }
    return std::move(m_song);
}

void CAnalysisRun::Run(CHear const& hear, tactus::Options const& options) {
    tactus::Song song;
    std::exception_ptr error;
    try {
        song = hear(options);
    } catch (...) {
        error = std::current_exception();
    }
    std::lock_guard const lock(m_mutex);
    m_song = std::move(song);
    m_pError = error;
    m_bDone = true;
    m_changed.notify_one();
}

void CAnalysisRun::SetPercent(int percent) {
    std::lock_guard const lock(m_mutex);
    m_nPercent = percent;
    m_changed.notify_one();
}

std::pair<int, bool> CAnalysisRun::WaitForNews(int told) {
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, kLookRound, [&] { return m_bDone || m_nPercent > told; });
    return {m_nPercent, m_bDone};
}
