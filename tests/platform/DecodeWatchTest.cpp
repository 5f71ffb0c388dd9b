// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/DecodeWatch.h"

#include <gtest/gtest.h>
#include <thread>

namespace {

using std::chrono::milliseconds;

/// Keeps this thread busy until the watch ends the run. Returns: false when that takes far too
/// long.
bool WorkUntilTheEnd(CDecodeWatch& watch) {
    auto const limit = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!watch.MustEnd()) {
        if (std::chrono::steady_clock::now() > limit) {
            return false;
        }
    }
    return true;
}

TEST(DecodeWatchTest, TimeThatPassesWithoutWorkUsesUpNoPatience) {
    // A thread asleep works as little as one of a stopped program, or one that waits for a disk.
    CDecodeWatch watch(nullptr, milliseconds(50));
    EXPECT_FALSE(watch.MustEnd());
    std::this_thread::sleep_for(milliseconds(200));
    EXPECT_FALSE(watch.MustEnd());
    std::this_thread::sleep_for(milliseconds(200));
    EXPECT_FALSE(watch.MustEnd());
    EXPECT_EQ(watch.Explain(EDecodeProblem::None), EDecodeProblem::None);
}

TEST(DecodeWatchTest, WorkWithoutSamplesUsesItUp) {
    CDecodeWatch watch(nullptr, milliseconds(50));
    EXPECT_TRUE(WorkUntilTheEnd(watch));
    EXPECT_EQ(watch.Explain(EDecodeProblem::None), EDecodeProblem::NoAudioForTooLong);
    watch.NoteYield();
    EXPECT_FALSE(watch.MustEnd());
    EXPECT_TRUE(WorkUntilTheEnd(watch));
}

TEST(DecodeWatchTest, SoDoBytesWithoutSamples) {
    CDecodeWatch watch(nullptr, std::chrono::minutes(1));
    watch.NoteRead(256 << 20);
    EXPECT_FALSE(watch.MustEnd());
    watch.NoteRead(1);
    EXPECT_TRUE(watch.MustEnd());
}

TEST(DecodeWatchTest, ACancelComesFirst) {
    CCancelFlag cancel;
    CDecodeWatch watch(&cancel, milliseconds(0));
    EXPECT_EQ(watch.Explain(EDecodeProblem::None), EDecodeProblem::NoAudioForTooLong);
    cancel.Set();
    EXPECT_TRUE(watch.MustEnd());
    EXPECT_EQ(watch.Explain(EDecodeProblem::None), EDecodeProblem::Cancelled);
}

} // namespace
