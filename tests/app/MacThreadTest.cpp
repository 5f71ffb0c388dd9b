// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/MacThread.h"

#include "support/NoThreads.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <gtest/gtest.h>
#include <semaphore>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace {

/// A function that runs until it is let go.
struct CGate {
    std::binary_semaphore m_began{0};
    std::binary_semaphore m_mayEnd{0};
    std::atomic<bool> m_bReturning{false};

    static std::uint32_t Run(void* param) {
        auto* const gate = static_cast<CGate*>(param);
        gate->m_began.release();
        gate->m_mayEnd.acquire();
        gate->m_bReturning = true;
        return 7;
    }
};

TEST(MacThreadTest, RunsUntilTheFunctionReturns) {
    CGate gate;
    auto const thread = MacBeginThread(CGate::Run, &gate, 0.5);
    ASSERT_NE(thread, nullptr);
    EXPECT_FALSE(thread->hasThreadEnded());
    gate.m_began.acquire();
    EXPECT_FALSE(thread->hasThreadEnded());
    gate.m_mayEnd.release();
    thread->waitTillThreadEnds();
    EXPECT_TRUE(gate.m_bReturning);
    EXPECT_TRUE(thread->hasThreadEnded());
}

TEST(MacThreadTest, CountsAsRunningBeforeItHasBegun) {
    // Before init there is no thread at all, and it doesn't look ended either.
    MacThread const thread;
    EXPECT_FALSE(thread.hasThreadEnded());
    EXPECT_FALSE(thread.waitTillThreadEnds(0.0));
}

TEST(MacThreadTest, WaitWithoutTimeAnswersAtOnce) {
    CGate gate;
    auto const thread = MacBeginThread(CGate::Run, &gate, 0.5);
    EXPECT_FALSE(thread->waitTillThreadEnds(0.0));
    EXPECT_FALSE(thread->waitTillThreadEnds(-5.0));
    auto const start = std::chrono::steady_clock::now();
    EXPECT_FALSE(thread->waitTillThreadEnds(0.05));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
    gate.m_mayEnd.release();
    EXPECT_TRUE(thread->waitTillThreadEnds(1e300));
    EXPECT_TRUE(thread->waitTillThreadEnds(0.0));
}

TEST(MacThreadTest, DestructionWaitsForTheFunction) {
    CGate gate;
    std::thread helper([&] {
        gate.m_began.acquire();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        gate.m_mayEnd.release();
    });
    MacBeginThread(CGate::Run, &gate, 0.5).reset();
    EXPECT_TRUE(gate.m_bReturning);
    helper.join();
}

TEST(MacThreadTest, NeverWaitsForItself) {
    struct CSelf {
        std::unique_ptr<MacThread> m_pThread;
        std::binary_semaphore m_mayLook{0};
        std::binary_semaphore m_done{0};
    } self;
    self.m_pThread = MacBeginThread(
        [](void* param) -> std::uint32_t {
            auto* const that = static_cast<CSelf*>(param);
            that->m_mayLook.acquire();
            EXPECT_TRUE(that->m_pThread->isCurrentThread());
            that->m_pThread->waitTillThreadEnds();
            that->m_pThread.reset();
            that->m_done.release();
            return 0;
        },
        &self, 0.5);
    EXPECT_FALSE(self.m_pThread->isCurrentThread());
    self.m_mayLook.release();
    self.m_done.acquire();
    EXPECT_EQ(self.m_pThread, nullptr);
}

int NicenessAt(double priority) {
    int niceness = 0;
    auto const thread = MacBeginThread(
        [](void* param) -> std::uint32_t {
            *static_cast<int*>(param) = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
            return 0;
        },
        &niceness, priority);
    thread->waitTillThreadEnds();
    return niceness;
}

TEST(MacThreadTest, WithoutAThreadThereIsNone) {
    if (!kThreadsCanBeDenied) {
        GTEST_SKIP() << "not under this sanitizer";
    }
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            CNoThreads const none;
            CGate gate;
            std::_Exit(MacBeginThread(&CGate::Run, &gate, 0.5) == nullptr ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(MacThreadTest, LowPriorityIsNice) {
    int const normal = getpriority(PRIO_PROCESS, 0);
    EXPECT_EQ(NicenessAt(0.5), normal);
    EXPECT_EQ(NicenessAt(std::nan("")), normal);
    EXPECT_EQ(NicenessAt(0.0), 19);
    EXPECT_EQ(NicenessAt(-3.0), 19);
    // Half way down, rounded: 9.5.
    EXPECT_EQ(NicenessAt(0.25), std::max(normal, 10));
    EXPECT_EQ(getpriority(PRIO_PROCESS, 0), normal);
}

TEST(MacThreadTest, CountsItsObjects) {
    int const before = MacThread::getObjectCount();
    {
        MacThread const first;
        MacThread const second;
        EXPECT_EQ(MacThread::getObjectCount(), before + 2);
    }
    EXPECT_EQ(MacThread::getObjectCount(), before);
}

} // namespace
