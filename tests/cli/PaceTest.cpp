// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Pace.h"

#include <gtest/gtest.h>

namespace {

TEST(PaceTest, WhatIsLeftFollowsFromTheTimeThatTheRestTook) {
    CPace pace;
    EXPECT_FALSE(pace.Left(100.0));
    pace.Note(10.0, 0.0);
    EXPECT_FALSE(pace.Left(100.0));
    // 20 in 4 seconds: 80 more take 16.
    pace.Note(14.0, 20.0);
    EXPECT_EQ(pace.Left(100.0), 16.0);
    EXPECT_EQ(pace.Left(20.0), 0.0);
    EXPECT_EQ(pace.Left(10.0), 0.0);
}

TEST(PaceTest, NothingIsKnownForASecondAndWhileNothingGetsDone) {
    CPace pace;
    pace.Note(0.0, 0.0);
    pace.Note(0.9, 50.0);
    EXPECT_FALSE(pace.Left(100.0));
    CPace stuck;
    stuck.Note(0.0, 7.0);
    stuck.Note(20.0, 7.0);
    EXPECT_FALSE(stuck.Left(100.0));
}

TEST(PaceTest, AQuickStartIsForgottenAfterHalfAMinute) {
    CPace pace;
    pace.Note(0.0, 0.0);
    pace.Note(1.0, 9000.0); // remembered songs
    for (int second = 2; second <= 60; ++second) {
        pace.Note(second, 9000.0 + second - 1); // one a second
    }
    // 1000 were to be heard, 59 of them are done.
    EXPECT_EQ(pace.Left(10'000.0), 941.0);
}

TEST(PaceTest, NotesInQuickSuccessionCountByTheirLast) {
    CPace pace;
    for (int i = 0; i <= 1000; ++i) {
        pace.Note(i * 0.0625, i * 0.0625); // one a second in sixteenths
    }
    EXPECT_EQ(pace.Left(72.5), 10.0);
}

} // namespace
