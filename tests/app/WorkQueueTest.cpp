// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/WorkQueue.h"

#include "support/NoThreads.h"

#include <atomic>
#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <thread>

TEST(WorkQueueTest, RunsJobsInOrderOnOneThreadOfItsOwn) {
    CWorkQueue queue;
    std::string order;
    std::promise<std::thread::id> second;
    std::thread::id first;
    (void)queue.Post([&] {
        order += "a";
        first = std::this_thread::get_id();
    });
    (void)queue.Post([&] {
        order += "b";
        second.set_value(std::this_thread::get_id());
    });
    EXPECT_EQ(second.get_future().get(), first);
    EXPECT_EQ(order, "ab");
    EXPECT_NE(first, std::this_thread::get_id());
}

TEST(WorkQueueTest, EndWaitsForTheRunningJob) {
    CWorkQueue queue;
    std::promise<void> begun;
    std::atomic<bool> isFinished{false};
    (void)queue.Post([&] {
        begun.set_value();
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        isFinished = true;
    });
    begun.get_future().wait();
    queue.End();
    EXPECT_TRUE(isFinished);
}

TEST(WorkQueueTest, NothingRunsAfterEnd) {
    CWorkQueue queue;
    (void)queue.Post([] {});
    queue.End();
    std::atomic<bool> hasRun{false};
    (void)queue.Post([&] { hasRun = true; });
    queue.End();
    EXPECT_FALSE(hasRun);
}

TEST(WorkQueueTest, EndWithoutAnyJobReturnsAtOnce) {
    CWorkQueue queue;
    queue.End();
    queue.End();
    SUCCEED();
}

TEST(WorkQueueTest, WithoutAThreadAJobIsRefused) {
    if (!kThreadsCanBeDenied) {
        GTEST_SKIP() << "not under this sanitizer";
    }
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            CWorkQueue queue;
            bool isTaken = true;
            bool hasRun = false;
            {
                CNoThreads const none;
                isTaken = queue.Post([&] { hasRun = true; });
            }
            queue.End();
            std::_Exit(isTaken || hasRun ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

TEST(WorkQueueTest, WhatAJobThrowsEndsWithIt) {
    CWorkQueue queue;
    EXPECT_TRUE(queue.Post([] { throw std::bad_alloc(); }));
    std::promise<void> done;
    EXPECT_TRUE(queue.Post([&] { done.set_value(); }));
    done.get_future().wait();
    queue.End();
}
