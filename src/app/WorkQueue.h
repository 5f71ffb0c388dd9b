// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

/// One worker thread that runs jobs in the order in which they were posted. The thread starts with
/// the first job and stays until the queue ends.
/// Thread: `Post` from any thread; construction, `End` and destruction from one.
class CWorkQueue {
public:
    using Job = std::function<void()>;

    CWorkQueue() = default;
    CWorkQueue(CWorkQueue const&) = delete;
    CWorkQueue& operator=(CWorkQueue const&) = delete;
    ~CWorkQueue() { End(); }

    /// Hands over a job; after `End` or `Finish` it is dropped. What a job throws ends with it.
    /// Returns: false when no thread can be had for it: it is dropped too.
    [[nodiscard]] bool Post(Job job);

    /// Nothing is waiting, and nothing is being done.
    [[nodiscard]] bool IsIdle();

    /// Takes no further job and waits until those that were posted are done. May be called twice.
    void Finish();

    /// Drops the jobs that haven't begun and waits for the one that has. May be called twice.
    void End();

private:
    void Run();
    static void Do(Job const& job);

    std::mutex m_lock;
    std::condition_variable m_wake;
    std::deque<Job> m_vJobs;
    bool m_bWorking = false;
    bool m_bEnding = false;
    bool m_bFinishing = false; // What is there is still done.
    std::thread m_thread;
};
