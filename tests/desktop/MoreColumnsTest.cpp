// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/MoreColumns.h"

#include "FakeFileList.h"
#include "Language.h"

#include <gtest/gtest.h>

namespace {

struct MoreColumnsTest : CLanguage, testing::Test {
    MoreColumnsTest() : CLanguage(QLocale(QLocale::English, QLocale::UnitedStates)) {
        list.append(u"song.flac", u"", u"94.99");
    }

    std::string text(EMoreColumn column) const {
        return MoreCell(column, list, 0).m_sText.toStdString();
    }

    CRowState& state() { return list.rows.front().state; }

    FakeFileList list;
};

CTempoCandidate Reading(float bpm, int times, int over, float score) {
    return {.m_fBpm = bpm, .m_nTimes = times, .m_nOver = over, .m_fScore = score};
}

} // namespace

TEST_F(MoreColumnsTest, AnotherReadingIsShownWhereThereIsDoubt) {
    list.rows.front().candidates = {Reading(94.99f, 1, 1, 0.5f), Reading(189.98f, 2, 1, 0.4f)};
    EXPECT_EQ(text(kOtherColumn), "");
    state().m_bToReview = true;
    EXPECT_EQ(text(kOtherColumn), "189.98");
    EXPECT_FLOAT_EQ(static_cast<float>(MoreCell(kOtherColumn, list, 0).m_fNumber), 189.98f);
}

TEST_F(MoreColumnsTest, ATempoByHandHasTheReadingBesideIt) {
    list.rows.front().candidates = {Reading(94.99f, 1, 1, 0.9f), Reading(189.98f, 2, 1, 0.1f)};
    list.rows.front().tempo = u"189.98";
    state().m_bByHand = true;
    EXPECT_EQ(text(kOtherColumn), "94.99");
}

TEST_F(MoreColumnsTest, KeysAreOrderedAroundTheCircleOfFifths) {
    EXPECT_EQ(text(kKeyColumn), "");
    double before = 0.0;
    // Camelot: 1A is A flat minor, 8A A minor, 8B C major, 9A E minor, 10A B minor.
    for (auto const& [key, shown] :
         {std::pair("G#m", "G#m · 1A"), std::pair("Am", "Am · 8A"), std::pair("C", "C · 8B"),
          std::pair("Em", "Em · 9A"), std::pair("Bm", "Bm · 10A")}) {
        state().m_sKey = key;
        EXPECT_EQ(text(kKeyColumn), shown);
        double const place = MoreCell(kKeyColumn, list, 0).m_fNumber;
        EXPECT_LT(before, place) << key;
        before = place;
    }
}

TEST_F(MoreColumnsTest, LengthIsThatOfTheMusic) {
    EXPECT_EQ(text(kLengthColumn), "");
    state().m_outcome.m_report.m_dHeardSeconds = 289.0;
    state().m_outcome.m_report.m_nFileRate = 44100;
    EXPECT_EQ(text(kLengthColumn), "4:49");
    state().m_outcome.m_report.m_nSkippedFrames = 44100; // a second
    EXPECT_EQ(text(kLengthColumn), "4:48");
}

TEST_F(MoreColumnsTest, StatesAreTold) {
    EXPECT_EQ(text(kStateColumn), "analyzed");
    state().m_bToReview = true;
    EXPECT_EQ(text(kStateColumn), "to review");
    state().m_outcome.m_report.m_bBreaksOff = true;
    EXPECT_EQ(text(kStateColumn), "damaged");
    state().m_outcome.m_problem = EAnalysisProblem::NoBeat;
    EXPECT_EQ(text(kStateColumn), "no beat");
    state().m_outcome.m_problem = EAnalysisProblem::NotDecoded;
    EXPECT_EQ(text(kStateColumn), "failed");
    state().m_bFromTag = true;
    EXPECT_EQ(text(kStateColumn), "from the tag");
    state().m_bByHand = true;
    EXPECT_EQ(text(kStateColumn), "by hand");
    state().m_bDone = false;
    EXPECT_EQ(text(kStateColumn), "to do");
    state().m_nPercent = 0;
    EXPECT_EQ(text(kStateColumn), "analyzing");
    state().m_bReading = true;
    EXPECT_EQ(text(kStateColumn), "reading");
}

TEST_F(MoreColumnsTest, TheKindIsThatOfTheSoundOnceItWasHeard) {
    EXPECT_EQ(text(kKindColumn), "FLAC");
    state().m_outcome.m_report.m_container = EContainer::Mp4;
    state().m_outcome.m_report.m_sDecoder = "alac";
    EXPECT_EQ(text(kKindColumn), "ALAC");
}

TEST_F(MoreColumnsTest, TheFolderIsWholeAndStoredIsYesOrNo) {
    EXPECT_EQ(text(kFolderColumn), "/music");
    EXPECT_EQ(text(kStoredColumn), "no");
    state().m_bInFile = true;
    EXPECT_EQ(text(kStoredColumn), "yes");
    state().m_bDone = false;
    EXPECT_EQ(text(kStoredColumn), "");
}
