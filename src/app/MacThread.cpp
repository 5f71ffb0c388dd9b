// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/MacThread.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <new>
#include <sys/resource.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

constexpr double kNormalPriority = 0.5; // Fixed: runs like the rest of the process.
constexpr double kNicest = 19.0;        // Standard: POSIX, the largest nice value below NZERO.

std::atomic<int> g_nObjects{0};

/// Sets the calling thread's priority. Above normal the system usually refuses, which is no loss.
void ApplyPriority(double priority) {
    double const held = std::isnan(priority) ? kNormalPriority : std::clamp(priority, 0.0, 1.0);
    double const steps = (kNormalPriority - held) / kNormalPriority * kNicest;
    int const nice = static_cast<int>(std::lround(steps));
    if (nice != 0) {
        (void)setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), nice);
    }
}

} // namespace

struct MacThread::CEnd {
    std::mutex m_lock;
    std::condition_variable m_changed;
    bool m_bEnded = false;
};

MacThread::MacThread() : m_pEnd(std::make_shared<CEnd>()) {
    ++g_nObjects;
}

MacThread::~MacThread() {
    if (isCurrentThread()) {
        m_thread.detach();
    } else if (m_thread.joinable()) {
        waitTillThreadEnds();
        m_thread.join();
    }
    --g_nObjects;
}

bool MacThread::init(Proc proc, void* param, double priority) {
    try {
        m_thread = std::thread([proc, param, priority, end = m_pEnd] {
            ApplyPriority(priority);
            (void)proc(param);
            // Waking up under the lock: nobody can miss it or destroy the condition meanwhile.
            std::scoped_lock const guard(end->m_lock);
            end->m_bEnded = true;
            end->m_changed.notify_all();
        });
    } catch (std::system_error const&) {
        return false;
    }
    return true;
}

bool MacThread::hasThreadEnded() const {
    std::scoped_lock const guard(m_pEnd->m_lock);
    return m_pEnd->m_bEnded;
}

void MacThread::waitTillThreadEnds() const {
    if (isCurrentThread()) {
        return;
    }
    std::unique_lock guard(m_pEnd->m_lock);
    m_pEnd->m_changed.wait(guard, [this] { return m_pEnd->m_bEnded; });
}

bool MacThread::waitTillThreadEnds(double seconds) const {
    constexpr double kLongestWait = 1e8; // Fixed: three years, far from any overflow.
    double const held = seconds > 0.0 ? std::min(seconds, kLongestWait) : 0.0;
    std::chrono::duration<double> const time(held);
    std::unique_lock guard(m_pEnd->m_lock);
    return m_pEnd->m_changed.wait_for(guard, time, [this] { return m_pEnd->m_bEnded; });
}

bool MacThread::isCurrentThread() const {
    return m_thread.get_id() == std::this_thread::get_id();
}

int MacThread::getObjectCount() {
    return g_nObjects;
}

std::unique_ptr<MacThread> MacBeginThread(MacThread::Proc proc, void* param, double priority) {
    try {
        auto thread = std::make_unique<MacThread>();
        bool const isStarted =
            thread->init(proc, param, static_cast<double>(static_cast<float>(priority)));
        return isStarted ? std::move(thread) : nullptr;
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}
