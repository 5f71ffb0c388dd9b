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

TEST(WriteReasonTest, TheReasonStandsByItselfAndBehindAName) {
    EXPECT_EQ(NotWrittenReason(EWriteProblem::EndsEarly), "it ends early");
    EXPECT_EQ(WriteReason(EWriteProblem::EndsEarly), "isn't written: it ends early");
    for (int i = 1; i < kWriteProblems; ++i) {
        std::string const reason = NotWrittenReason(static_cast<EWriteProblem>(i));
        EXPECT_EQ(reason.find("written: "), std::string::npos) << reason;
    }
}

TEST(WriteReasonTest, ConversionsAreToldTogether) {
    EXPECT_EQ(ConversionNote({}), "");
    EXPECT_EQ(ConversionNote({{"GP1", "GRP1"}, {"TST", "TSOT"}}),
              "its ID3v2.2 tag became one of version 2.3: GP1 is now GRP1, TST is now TSOT");
}
