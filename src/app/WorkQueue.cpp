// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/WorkQueue.h"

#include <exception>
#include <utility>

bool CWorkQueue::Post(Job job) {
    std::scoped_lock const guard(m_lock);
    if (m_bEnding || m_bFinishing) {
        return true;
    }
    try {
        if (!m_thread.joinable()) {
            m_thread = std::thread([this] { Run(); });
        }
        m_vJobs.push_back(std::move(job));
    } catch (std::exception const&) {
        return false; // neither a thread nor memory
    }
    m_wake.notify_one();
    return true;
}

void CWorkQueue::Do(Job const& job) {
    try {
        job();
    } catch (std::exception const&) {
        return; // the jobs behind it are others
    }
}

bool CWorkQueue::IsIdle() {
    std::scoped_lock const guard(m_lock);
    return !m_bWorking && m_vJobs.empty();
}

void CWorkQueue::Finish() {
    {
        std::scoped_lock const guard(m_lock);
        m_bFinishing = true;
        m_wake.notify_one();
    }
    if (m_thread.joinable()) {
        m_thread.join();
    }
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
        m_wake.wait(guard, [this] { return m_bEnding || m_bFinishing || !m_vJobs.empty(); });
        if (m_bEnding || m_vJobs.empty()) {
            return;
        }
        Job const job = std::exchange(m_vJobs.front(), {});
        m_vJobs.pop_front();
        m_bWorking = true;
        guard.unlock();
        Do(job);
        guard.lock();
        m_bWorking = false;
    }
}
