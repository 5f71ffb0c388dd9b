// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/WorkQueue.h"

#include <atomic>
#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <string>
#include <thread>

TEST(WorkQueueTest, RunsJobsInOrderOnOneThreadOfItsOwn) {
    CWorkQueue queue;
    std::string order;
    std::promise<std::thread::id> second;
    std::thread::id first;
    queue.Post([&] {
        order += "a";
        first = std::this_thread::get_id();
    });
    queue.Post([&] {
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
    queue.Post([&] {
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
    queue.Post([] {});
    queue.End();
    std::atomic<bool> hasRun{false};
    queue.Post([&] { hasRun = true; });
    queue.End();
    EXPECT_FALSE(hasRun);
}

TEST(WorkQueueTest, EndWithoutAnyJobReturnsAtOnce) {
    CWorkQueue queue;
    queue.End();
    queue.End();
    SUCCEED();
}
