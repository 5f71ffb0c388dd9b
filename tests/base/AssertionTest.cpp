// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/Assertion.h"

#include <csignal>
#include <gtest/gtest.h>

TEST(AssertionTest, PassesWhenTheConditionHolds) {
    int evaluations = 0;
    TACTUS_ASSERT("base/Test", ++evaluations == 1);
    TACTUS_ASSERT_TEXT("base/Test", ++evaluations == 2, "text");
    TACTUS_ASSERT_DETAIL("base/Test", ++evaluations == 3, "text", "detail");
    EXPECT_EQ(evaluations, 3);
}

TEST(AssertionDeathTest, NamesLabelLineAndExpression) {
    int const stream = 0;
    EXPECT_EXIT(TACTUS_ASSERT("IDTag/MacCFile", stream != 0), testing::KilledBySignal(SIGABRT),
                "^IDTag/MacCFile:[0-9]+: assertion failed: stream != 0\n$");
}

TEST(AssertionDeathTest, PrintsTheLineOfTheCheck) {
    EXPECT_EXIT(FailAssertion("base/Test", 1234, "x"), testing::KilledBySignal(SIGABRT),
                "^base/Test:1234: assertion failed: x\n$");
}

TEST(AssertionDeathTest, PrintsGivenTextInsteadOfTheCondition) {
    EXPECT_EXIT(TACTUS_ASSERT_TEXT("IDTag/ID3Tag", 1 > 2, "FALSE"),
                testing::KilledBySignal(SIGABRT),
                "^IDTag/ID3Tag:[0-9]+: assertion failed: FALSE\n$");
}

TEST(AssertionDeathTest, PrintsTheDetailBehind) {
    EXPECT_EXIT(TACTUS_ASSERT_DETAIL("IDTag/ID3Tag", false, "FALSE", "/m/song.mp3"),
                testing::KilledBySignal(SIGABRT),
                "^IDTag/ID3Tag:[0-9]+: assertion failed: FALSE: /m/song.mp3\n$");
}
