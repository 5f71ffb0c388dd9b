// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Summary.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

CReportRow Row(ETempoSource source, EWriting writing = EWriting::NotAsked) {
    CReportRow row;
    row.m_source = source;
    row.m_writing = writing;
    row.m_sError = source == ETempoSource::None ? "is empty" : "";
    return row;
}

TEST(SummaryTest, LineTellsWhatBecameOfTheFiles) {
    CSummary summary;
    for (int i = 0; i < 25; ++i) {
        summary.Add(Row(ETempoSource::Analysis, i < 14 ? EWriting::Stored : EWriting::NotStored));
    }
    for (int i = 0; i < 3; ++i) {
        summary.Add(Row(ETempoSource::Tag));
    }
    EXPECT_EQ(summary.Line(true, 12345ms), "25 heard, 14 stored, 3 kept in 12.3 s");
    EXPECT_EQ(summary.Line(false, 12345ms), "25 heard, 3 known from tags in 12.3 s");
    EXPECT_EQ(summary.ExitCode(), 0);
    summary.Add(Row(ETempoSource::None));
    EXPECT_EQ(summary.Line(true, 12345ms), "25 heard, 14 stored, 3 kept, 1 failed in 12.3 s");
    EXPECT_EQ(summary.ExitCode(), 1);
    EXPECT_EQ(summary.Rows(), 29U);
}

TEST(SummaryTest, LineOfNothing) {
    EXPECT_EQ(CSummary().Line(true, 0s), "0 heard, 0 stored in 0.0 s");
    EXPECT_EQ(CSummary().Line(false, 0s), "0 heard in 0.0 s");
}

TEST(SummaryTest, RateIsTheMusicHeardInTheTime) {
    CSummary summary;
    CReportRow row = Row(ETempoSource::Analysis);
    row.m_dHeardSeconds = 240.0;
    summary.Add(row);
    summary.Add(row);
    // Another name of the same file is not heard again.
    row.m_bFurtherName = true;
    summary.Add(row);
    EXPECT_EQ(summary.Line(false, 4s), "2 heard, 1 further name in 4.0 s, 120 times real time");
    EXPECT_EQ(summary.Json(4s, 0),
              R"({"event":"end","rows":3,"heard":2,"stored":0,"notStored":0,"kept":0,"failed":0,)"
              R"("seconds":4.000,"rate":120.0,"exit":0})");
    EXPECT_EQ(RateText(9.94), "9.9 times real time");
    EXPECT_EQ(RateText(9.96), "10 times real time");
}

TEST(SummaryTest, FailuresAreThoseThatFailTheRun) {
    CSummary summary;
    summary.Add(Row(ETempoSource::None));
    CReportRow row = Row(ETempoSource::Analysis);
    row.m_bRefused = true;
    summary.Add(row);
    row.m_sError = "breaks off in the middle of a frame";
    summary.Add(row);
    EXPECT_EQ(summary.Failures(), 2U);
}

TEST(SummaryTest, FurtherNamesAreNoFurtherWork) {
    CSummary summary;
    CReportRow row = Row(ETempoSource::Analysis, EWriting::Stored);
    summary.Add(row);
    row.m_bFurtherName = true;
    summary.Add(row);
    EXPECT_EQ(summary.Line(true, 1s), "1 heard, 1 stored, 1 further name in 1.0 s");
    summary.Add(row);
    EXPECT_EQ(summary.Line(true, 1s), "1 heard, 1 stored, 2 further names in 1.0 s");
}

TEST(SummaryTest, DamageAloneIsAWarning) {
    CSummary summary;
    CReportRow row = Row(ETempoSource::Analysis);
    row.m_sError = "breaks off in the middle of a frame";
    summary.Add(row);
    EXPECT_EQ(summary.ExitCode(), 4);
    // Nor does it fail because its tempo is not stored.
    row.m_writing = EWriting::NotStored;
    row.m_bRefused = true;
    summary.Add(row);
    EXPECT_EQ(summary.ExitCode(), 4);
    row.m_sError.clear();
    summary.Add(row);
    EXPECT_EQ(summary.ExitCode(), 1);
    EXPECT_EQ(summary.Line(true, 1s), "3 heard, 0 stored, 2 not stored in 1.0 s");
}

TEST(SummaryTest, LongTimesAreInMinutesAndHours) {
    EXPECT_EQ(TimeText(59.94s), "59.9 s");
    EXPECT_EQ(TimeText(59.96s), "1 min 0 s");
    EXPECT_EQ(TimeText(60s), "1 min 0 s");
    EXPECT_EQ(TimeText(3599.9s), "59 min 59 s");
    EXPECT_EQ(TimeText(3600s), "1 h 0 min");
    EXPECT_EQ(TimeText(90'061s), "25 h 1 min");
}

} // namespace
