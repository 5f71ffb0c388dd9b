// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/CancelFlag.h"

#include <gtest/gtest.h>
#include <thread>

TEST(CancelFlagTest, StaysSetOnceSet) {
    CCancelFlag flag;
    EXPECT_FALSE(flag.IsSet());
    flag.Set();
    EXPECT_TRUE(flag.IsSet());
    flag.Set();
    EXPECT_TRUE(flag.IsSet());
}

TEST(CancelFlagTest, EndsALoopOnAnotherThread) {
    CCancelFlag flag;
    std::thread worker([&flag] {
        while (!flag.IsSet()) {
            std::this_thread::yield();
        }
    });
    flag.Set();
    worker.join();
    EXPECT_TRUE(flag.IsSet());
}
