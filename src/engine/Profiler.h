// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"

#include <cstdint>

/// Progress sink of one run. It carries the caller's user data to the observers of the progress
/// notifications, and a cancel flag of its own that the note and key stages look at; the long
/// loops poll the profile builder's flag instead.
class CProfiler {
public:
    /// `userData` is handed on as it is, never dereferenced.
    explicit CProfiler(void* userData) : m_pUserData(userData) {}
    CProfiler(CProfiler const&) = delete;
    CProfiler& operator=(CProfiler const&) = delete;
    virtual ~CProfiler() = default;

    /// Sets this sink's flag. Thread: any.
    void CancelProfile() noexcept { m_cancel.Set(); }

    [[nodiscard]] bool IsCancelled() const noexcept { return m_cancel.IsSet(); }

    /// Posts `kFileProgressNotification` with the user data and the percentage as text,
    /// blank-padded to two digits: " 0%", "95%", "100%". Returns after the last observer.
    void SendProfileProgress(std::uint8_t percent);

private:
    CCancelFlag m_cancel;
    void* m_pUserData;
};
