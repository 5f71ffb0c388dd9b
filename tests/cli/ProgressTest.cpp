// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Progress.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

CProgressState State() {
    return {.m_nDone = 3,
            .m_nTotal = 20,
            .m_bTotalKnown = true,
            .m_nPercent = 15,
            .m_dRate = 110.4,
            .m_left = 41.2,
            .m_sName = "One \"two\""};
}

TEST(ProgressTest, LineTellsFilesShareRateTimeLeftAndName) {
    CProgressState state = State();
    EXPECT_EQ(ProgressLine(state),
              "3 of 20 files, 15%  110 times real time  42 s left  One \"two\"");
    state.m_left = 59.5;
    state.m_dRate = 9.94;
    EXPECT_EQ(ProgressLine(state),
              "3 of 20 files, 15%  9.9 times real time  1 min 0 s left  One \"two\"");
}

TEST(ProgressTest, WhatIsNotKnownIsLeftOut) {
    EXPECT_EQ(ProgressLine({}), "searching for files");
    CProgressState state = State();
    state.m_bTotalKnown = false;
    state.m_dRate = 0.0;
    state.m_left.reset();
    EXPECT_EQ(ProgressLine(state), "3 of 20 files so far  One \"two\"");
    state.m_left = std::numeric_limits<double>::infinity();
    EXPECT_EQ(ProgressLine(state), "3 of 20 files so far  One \"two\"");
}

TEST(ProgressTest, JsonHasTheSame) {
    CProgressState state = State();
    state.m_left = 41.25;
    EXPECT_EQ(ProgressJson(state),
              R"({"event":"progress","done":3,"total":20,"totalKnown":true,"percent":15,)"
              R"("rate":110.4,"secondsLeft":41.25,"name":"One \"two\""})");
    EXPECT_EQ(ProgressJson({}),
              R"({"event":"progress","done":0,"total":0,"totalKnown":false,"percent":null,)"
              R"("rate":null,"secondsLeft":null,"name":""})");
}

} // namespace
