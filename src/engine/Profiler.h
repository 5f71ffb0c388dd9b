// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"

#include <cstdint>
#include <functional>
#include <utility>

/// Progress sink of one run. It carries the caller's user data to the observers of the progress
/// notifications, or hands the percents to one function, and has a cancel flag of its own that the
/// note and key stages look at; the long loops poll the profile builder's flag instead.
class CProfiler {
public:
    /// Takes 0 to 100, on the run's worker.
    using Sink = std::function<void(std::uint8_t percent)>;

    /// `userData` is handed on as it is, never dereferenced.
    explicit CProfiler(void* userData) : m_pUserData(userData) {}

    CProfiler(CProfiler const&) = delete;
    CProfiler& operator=(CProfiler const&) = delete;
    virtual ~CProfiler() = default;

    /// Sets this sink's flag. Thread: any.
    void CancelProfile() noexcept { m_cancel.Set(); }

    [[nodiscard]] bool IsCancelled() const noexcept { return m_cancel.IsSet(); }

    /// Percents go to `sink` from now on and no notification is posted; null goes back to posting.
    void SetSink(Sink sink) { m_sink = std::move(sink); }

    /// Calls the sink, or posts `kFileProgressNotification` with the user data and the percentage
    /// as text, blank-padded to two digits: " 0%", "95%", "100%". Returns after the last observer.
    void SendProfileProgress(std::uint8_t percent);

private:
    CCancelFlag m_cancel;
    void* m_pUserData;
    Sink m_sink;
};
