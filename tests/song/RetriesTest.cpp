// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/Retries.h"

#include <chrono>
#include <gtest/gtest.h>

TEST(RetriesTest, AFileThatNeverRestsIsGivenUpAfterThreeAttempts) {
    CRetries retries;
    EXPECT_TRUE(retries.AfterChange());
    EXPECT_TRUE(retries.After(EWriteProblem::Changed));
    EXPECT_FALSE(retries.After(EWriteProblem::TempoChanged));
}

TEST(RetriesTest, AFileThatIsBeingWrittenIsGivenTime) {
    CRetries retries;
    auto const begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(retries.After(EWriteProblem::InUse));
    }
    EXPECT_FALSE(retries.After(EWriteProblem::InUse));
    // 100, 200 and three times 400 ms.
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(1500));
    // That takes nothing away from the attempts after a change.
    EXPECT_TRUE(retries.After(EWriteProblem::Changed));
}

TEST(RetriesTest, OtherRefusalsStand) {
    for (int i = 0; i < kWriteProblems; ++i) {
        auto const problem = static_cast<EWriteProblem>(i);
        bool const isOthers = problem == EWriteProblem::Changed ||
                              problem == EWriteProblem::TempoChanged ||
                              problem == EWriteProblem::InUse;
        EXPECT_EQ(CRetries().After(problem), isOthers) << i;
    }
}
