// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/QuitSignals.h"

#include <QSignalSpy>
#include <csignal>
#include <gtest/gtest.h>

TEST(QuitSignalsTest, EachOfTheThreeSignalsReachesTheEventLoop) {
    CQuitSignals quitSignals;
    for (int const signal : {SIGTERM, SIGINT, SIGHUP}) {
        QSignalSpy quits(&quitSignals, &CQuitSignals::quitRequested);
        ASSERT_EQ(raise(signal), 0);
        EXPECT_TRUE(quits.wait(5'000)) << signal;
        EXPECT_EQ(quits.count(), 1) << signal;
    }
}

TEST(QuitSignalsTest, SignalsInARowAreOneRequestAtMostEach) {
    CQuitSignals quitSignals;
    QSignalSpy quits(&quitSignals, &CQuitSignals::quitRequested);
    ASSERT_EQ(raise(SIGTERM), 0);
    ASSERT_EQ(raise(SIGTERM), 0);
    EXPECT_TRUE(quits.wait(5'000));
    EXPECT_EQ(quits.count(), 1);
}
