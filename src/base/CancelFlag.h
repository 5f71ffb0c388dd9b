// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>

/// Cancel flag of one run, written once from false to true by any thread and polled by the
/// worker's long loops, which hold a `CCancelFlag const*`. It carries no other data, so relaxed
/// order is enough.
class CCancelFlag {
public:
    /// Asks the run to stop. Safe from any thread and from a signal handler.
    void Set() noexcept { m_bSet.store(true, std::memory_order_relaxed); }

    /// True once `Set` was called.
    [[nodiscard]] bool IsSet() const noexcept { return m_bSet.load(std::memory_order_relaxed); }

private:
    std::atomic<bool> m_bSet{false};
};
