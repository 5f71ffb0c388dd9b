// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/DecodeReason.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

TEST(DecodeReasonTest, EveryProblemHasWordsOfItsOwn) {
    std::set<std::string> words;
    for (int i = 1; i < kDecodeProblems; ++i) {
        CDecodeReport report;
        report.m_problem = static_cast<EDecodeProblem>(i);
        report.m_nError = ENOENT;
        EXPECT_TRUE(words.insert(DecodeReason(report)).second) << i;
    }
    for (int i = 1; i < kAnalysisProblems; ++i) {
        CAnalysisOutcome outcome{static_cast<EAnalysisProblem>(i), {}};
        outcome.m_report.m_problem = EDecodeProblem::None;
        std::string const text = AnalysisReason(outcome);
        EXPECT_TRUE(outcome.m_problem == EAnalysisProblem::NotDecoded || words.insert(text).second)
            << i;
    }
    EXPECT_FALSE(words.contains(""));
    EXPECT_EQ(DecodeReason({}), "");
    EXPECT_EQ(AnalysisReason({}), "");
}

TEST(DecodeReasonTest, TheSystemSpeaksForItself) {
    CAnalysisOutcome outcome;
    outcome.m_problem = EAnalysisProblem::NotDecoded;
    outcome.m_report.m_problem = EDecodeProblem::SystemError;
    outcome.m_report.m_nError = ENOENT;
    EXPECT_EQ(AnalysisReason(outcome), "No such file or directory");
}

TEST(DecodeReasonTest, DamageIsToldInNumbers) {
    CDecodeReport report;
    EXPECT_EQ(DamageReason(report), "");
    report.m_nPackets = 1200;
    report.m_bBreaksOff = true;
    EXPECT_EQ(DamageReason(report), "breaks off in the middle of a frame");
    report.m_nBadPackets = 3;
    EXPECT_EQ(DamageReason(report),
              "is damaged: 3 of 1200 packets can't be decoded, and it breaks off");
    report.m_bBreaksOff = false;
    EXPECT_EQ(DamageReason(report), "is damaged: 3 of 1200 packets can't be decoded");
    report.m_dPromisedSeconds = 40.0;
    report.m_dHeardSeconds = 20.1;
    EXPECT_EQ(DamageReason(report),
              "is damaged: 3 of 1200 packets can't be decoded, and it ends early: 20 of 40 s");
}

TEST(DecodeReasonTest, AnEarlyEndShowsADifference) {
    CDecodeReport report;
    report.m_dPromisedSeconds = 12.0;
    report.m_dHeardSeconds = 11.7; // 2.5 % are missing
    EXPECT_EQ(DamageReason(report), "ends early: 11.7 of 12.0 s");
    report.m_dHeardSeconds = 11.8; // 1.7 %
    EXPECT_EQ(DamageReason(report), "");
}

} // namespace
