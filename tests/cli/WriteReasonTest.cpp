// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/WriteReason.h"

#include <gtest/gtest.h>
#include <set>

TEST(WriteReasonTest, EveryProblemHasASentenceOfItsOwn) {
    std::set<std::string> reasons;
    for (int i = 1; i < kWriteProblems; ++i) {
        std::string const reason = WriteReason(static_cast<EWriteProblem>(i));
        EXPECT_FALSE(reason.empty()) << i;
        EXPECT_TRUE(reasons.insert(reason).second) << i << ": " << reason;
    }
    EXPECT_EQ(WriteReason(EWriteProblem::None), "");
}
