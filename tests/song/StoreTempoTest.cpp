// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/StoreTempo.h"

#include <gtest/gtest.h>

namespace {

/// A song of a thousand packets, decoded whole by the MPEG demuxer.
CAnalysisOutcome GoodSong() {
    CAnalysisOutcome outcome;
    outcome.m_report.m_container = EContainer::MpegAudio;
    outcome.m_report.m_nPackets = 1000;
    outcome.m_report.m_dPromisedSeconds = 100.0;
    outcome.m_report.m_dHeardSeconds = 100.0;
    return outcome;
}

} // namespace

TEST(StoreTempoTest, NothingSpeaksAgainstAGoodSong) {
    EXPECT_EQ(ProblemOfStoring(GoodSong()), EWriteProblem::None);
}

TEST(StoreTempoTest, OnlyMpegAudioIsWritten) {
    CAnalysisOutcome outcome = GoodSong();
    for (EContainer const container : {EContainer::Unknown, EContainer::AdtsAac, EContainer::Mp4,
                                       EContainer::Wav, EContainer::Ogg}) {
        outcome.m_report.m_container = container;
        EXPECT_EQ(ProblemOfStoring(outcome), EWriteProblem::NotMpegAudio);
    }
}

TEST(StoreTempoTest, OneBadPacketInAHundredIsTooMany) {
    CAnalysisOutcome outcome = GoodSong();
    outcome.m_report.m_nBadPackets = 9;
    EXPECT_EQ(ProblemOfStoring(outcome), EWriteProblem::None);
    outcome.m_report.m_nBadPackets = 10;
    EXPECT_EQ(ProblemOfStoring(outcome), EWriteProblem::Damaged);
}

TEST(StoreTempoTest, TwoHundredthsOfItsLengthMayBeMissing) {
    CAnalysisOutcome outcome = GoodSong();
    outcome.m_report.m_dHeardSeconds = 98.0;
    EXPECT_EQ(ProblemOfStoring(outcome), EWriteProblem::None);
    outcome.m_report.m_dHeardSeconds = 97.9;
    EXPECT_EQ(ProblemOfStoring(outcome), EWriteProblem::EndsEarly);
}

TEST(StoreTempoTest, WithoutABeatTheSongMustHaveBeenHeardWhole) {
    CAnalysisOutcome outcome = GoodSong();
    outcome.m_problem = EAnalysisProblem::NoBeat;
    EXPECT_EQ(ProblemOfStoring(outcome), EWriteProblem::None);
    outcome.m_report.m_nBadPackets = 1;
    EXPECT_EQ(ProblemOfStoring(outcome), EWriteProblem::Damaged);
}

TEST(StoreTempoTest, WhatWasNotHeardIsNotWritten) {
    CAnalysisOutcome outcome = GoodSong();
    outcome.m_problem = EAnalysisProblem::NotDecoded;
    EXPECT_EQ(ProblemOfStoring(outcome), EWriteProblem::NotMpegAudio);
    outcome.m_problem = EAnalysisProblem::NoMemory;
    EXPECT_EQ(ProblemOfStoring(outcome), EWriteProblem::NoMemory);
}
