// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <memory>
#include <thread>

/// Runs one plain function on a thread of its own, once, and lets others ask whether it has ended
/// or wait for it. From its making on the object counts as running: a function that has not begun
/// yet never looks ended.
/// Thread: `init` and destruction on one thread; the questions from any.
class MacThread {
public:
    using Proc = std::uint32_t (*)(void* param);

    MacThread();
    MacThread(MacThread const&) = delete;
    MacThread& operator=(MacThread const&) = delete;

    /// Waits until the function has returned; on the function's own thread it doesn't, and the
    /// thread goes on by itself.
    ~MacThread();

    /// Starts `proc(param)`, whose result is ignored; `param` is handed on as it is.
    /// Units: `priority` from 0 to 1; 0.5 is normal, what lies below runs nicer.
    /// Returns: false when no thread can be had.
    bool init(Proc proc, void* param, double priority);

    /// True once the function has returned. Never waits for it.
    [[nodiscard]] bool hasThreadEnded() const;

    /// Waits until the function has returned. On the function's own thread it returns at once.
    void waitTillThreadEnds() const;

    /// Waits `seconds` at the most; 0 and less only looks.
    /// Returns: true when the function has returned.
    [[nodiscard]] bool waitTillThreadEnds(double seconds) const;

    /// True on the thread that runs the function.
    [[nodiscard]] bool isCurrentThread() const;

    /// Objects that exist in this process.
    [[nodiscard]] static int getObjectCount();

private:
    struct CEnd; // Outlives the object when the thread does.

    std::shared_ptr<CEnd> m_pEnd;
    std::thread m_thread;
};

/// Starts `proc(param)` on a new thread. The priority is rounded to single precision.
/// Returns: the thread, null when none can be had.
std::unique_ptr<MacThread> MacBeginThread(MacThread::Proc proc, void* param, double priority);
