// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Whole runs over generated rhythms of known tempo.

#include "audio/ProfiledTrack.h"
#include "support/ClickTrack.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

class SteadyClicks : public testing::TestWithParam<double> {};

} // namespace

TEST_P(SteadyClicks, TheGridFindsTheTempo) {
    double const bpm = GetParam();
    CProfiledTrack const track(MakeClickTrack(bpm, 60.0));
    // Onsets are whole elements of 256 samples. The step is the length of the best chain over its
    // number of steps; chains span most of the minute here, and 256 of its 2,646,000 samples are
    // 0.016 BPM at 163.9 BPM.
    EXPECT_NEAR(static_cast<double>(track.m_results.GetBpm()), bpm, 0.02);
}

TEST_P(SteadyClicks, TheBaseTempoLiesJustBelow) {
    double const bpm = GetParam();
    CProfiledTrack const track(MakeClickTrack(bpm, 60.0));
    // A tie goes to the slower tempo. Over 20 s a tempo that is d BPM too slow drifts by d / 3 of a
    // beat, and clicks that drift by less than three fortieths always share a bin: ties reach down
    // by 0.225 BPM at four periods to the measure, by half of that at eight. The windows that reach
    // past the end are shorter and their ties reach further down, but they are less than half.
    // At 163.9 an eighth of a measure at 82 BPM is a whole beat, so that those windows tie down to
    // 82, and the median becomes the lowest of the others: that of 6 s, where ties reach down by
    // 0.75 to 1 BPM.
    double const reach = bpm > 163.8 ? 1.0 : 0.3;
    EXPECT_LE(static_cast<double>(track.m_fBaseBpm), bpm + 0.05);
    EXPECT_GE(static_cast<double>(track.m_fBaseBpm), bpm - reach);
}

TEST_P(SteadyClicks, AreNeverFoldedUp) {
    // The bass between these clicks is next to silent and its onsets come at random, so that no
    // tempo at or under 100 sees a majority of half beats.
    CProfiledTrack const track(MakeClickTrack(GetParam(), 60.0));
    EXPECT_EQ(track.m_fFoldedBpm, track.m_fBaseBpm);
}

TEST_P(SteadyClicks, AccentsDoNotMoveTheTempo) {
    CClickTrack clicks;
    clicks.m_dBpm = GetParam();
    clicks.m_nAccentEvery = 4;
    CProfiledTrack const track(MakeClickTrack(clicks));
    EXPECT_NEAR(static_cast<double>(track.m_results.GetBpm()), GetParam(), 0.02); // as above
}

INSTANTIATE_TEST_SUITE_P(TempoTest, SteadyClicks,
                         testing::Values(82.0, 90.0, 97.3, 100.0, 110.5, 120.0, 128.0, 133.33,
                                         140.0, 150.0, 163.9));

TEST(TempoTest, HalfBeatBassFoldsASlowSongUp) {
    // The bass plays every half beat, so most intervals of its onsets are half beats.
    CProfiledTrack const slow(MakeSong(90.0, 60.0));
    EXPECT_NEAR(static_cast<double>(slow.m_fBaseBpm), 90.0, 0.3); // ties as above
    EXPECT_EQ(slow.m_fFoldedBpm, 2.0f * slow.m_fBaseBpm);
    EXPECT_NEAR(static_cast<double>(slow.m_results.GetBpm()), 180.0, 0.04); // twice that
}

TEST(TempoTest, ASongAbove100IsNeverFolded) {
    CProfiledTrack const track(MakeSong(126.0, 60.0));
    EXPECT_EQ(track.m_fFoldedBpm, track.m_fBaseBpm);
    EXPECT_NEAR(static_cast<double>(track.m_results.GetBpm()), 126.0, 0.02); // as above
}

TEST(TempoTest, ATenSecondClipIsOneMeasure) {
    CProfiledTrack const track(MakeSilence(10.0));
    EXPECT_EQ(track.m_fShortClipBpm, 96.0f);
    // The grid's step is 110250 samples / 8, truncated to 13781: 60 * 44100 / (2 * 13781).
    EXPECT_NEAR(static_cast<double>(track.m_results.GetBpm()), 96.00174, 1e-5); // float steps: 8e-6
}

TEST(TempoTest, AOneSecondClipHas120) {
    CProfiledTrack const track(MakeClickTrack(120.0, 1.0));
    EXPECT_EQ(track.m_fShortClipBpm, 120.0f);
    EXPECT_EQ(track.m_results.GetBpm(), 120.0f); // 88200 / 8 is whole
}

TEST(TempoTest, NoSoundHasNoTempo) {
    CProfiledTrack const empty(std::vector<float>{});
    EXPECT_EQ(empty.m_results.GetBpm(), 0.0f);
    CProfiledTrack const silence(MakeSilence(60.0));
    EXPECT_EQ(silence.m_fBaseBpm, 0.0f);
    EXPECT_EQ(silence.m_results.GetBpm(), 0.0f);
    EXPECT_EQ(silence.m_nNotesFound, 0);
    EXPECT_TRUE(silence.m_vBeats.empty());
}

TEST(TempoTest, TheRecordOfASongIsWhole) {
    CProfiledTrack const track(MakeSong(126.0, 60.0));
    CProfileResults const& results = track.m_results;
    EXPECT_TRUE(results.IsValid());
    EXPECT_EQ(results.GetIntroFadePoints().GetCount(), 12U);
    EXPECT_GT(results.GetMeasMarks().GetCount(), 1U);
    EXPECT_GE(results.GetOutroStart(), results.GetIntroEnd());
    EXPECT_GT(results.GetPeakLevel(), 0.0f);
    CPfBeatPattern a;
    CPfBeatPattern b;
    EXPECT_TRUE(results.GetBeatPatterns(&a, &b));
    EXPECT_EQ(a.GetCount(), 8);
    EXPECT_EQ(b.GetCount(), 8);
    EXPECT_GT(track.m_nNotesFound, track.m_nNotesKept);
}
