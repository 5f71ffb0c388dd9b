// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/WorkQueue.h"

#include <utility>

void CWorkQueue::Post(Job job) {
    std::scoped_lock const guard(m_lock);
    if (m_bEnding) {
        return;
    }
    m_vJobs.push_back(std::move(job));
    if (!m_thread.joinable()) {
        m_thread = std::thread([this] { Run(); });
    }
    m_wake.notify_one();
}

void CWorkQueue::End() {
    {
        std::scoped_lock const guard(m_lock);
        m_bEnding = true;
        m_vJobs.clear();
        m_wake.notify_one();
    }
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void CWorkQueue::Run() {
    std::unique_lock guard(m_lock);
    while (true) {
        m_wake.wait(guard, [this] { return m_bEnding || !m_vJobs.empty(); });
        if (m_bEnding) {
            return;
        }
        Job const job = std::exchange(m_vJobs.front(), {});
        m_vJobs.pop_front();
        guard.unlock();
        job();
        guard.lock();
    }
}
