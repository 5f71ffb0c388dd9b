// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongCandidates.h"

#include "song/SongProfile.h"

#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>

namespace {

TEST(SongCandidatesTest, ReportedTempoOfASongIsAmongItsReadings) {
    CTempFolder folder;
    WriteWav(folder / "a.wav", MakeClickTrack(120.0, 40.0));
    CSongProfile const profile = ProfileSong(folder / "a.wav", {.m_bKeepEnvelopes = true});
    CTempoCandidates const candidates = CandidatesOf(profile);
    ASSERT_FALSE(candidates.m_vCandidates.empty());
    bool isThere = false;
    float sum = 0.0f;
    for (CTempoCandidate const& reading : candidates.m_vCandidates) {
        isThere = isThere || (reading.m_fBpm == profile.m_results.GetBpm() &&
                              reading.m_nTimes == 1 && reading.m_nOver == 1);
        sum += reading.m_fScore;
    }
    EXPECT_TRUE(isThere);
    // Up to twenty roundings of single precision.
    EXPECT_NEAR(sum, 1.0f, 1e-5f);
}

TEST(SongCandidatesTest, WithoutEnvelopesOrASongThereIsNone) {
    CTempFolder folder;
    WriteWav(folder / "a.wav", MakeClickTrack(120.0, 40.0));
    EXPECT_TRUE(CandidatesOf(ProfileSong(folder / "a.wav", {})).m_vCandidates.empty());
    EXPECT_TRUE(CandidatesOf(ProfileSong(folder / "none.wav", {.m_bKeepEnvelopes = true}))
                    .m_vCandidates.empty());
}

TEST(SongCandidatesTest, OtherReadingIsTheLikeliestThatIsNotTheReportedOne) {
    CTempoCandidates candidates;
    EXPECT_EQ(OtherReading(candidates), nullptr);
    candidates.m_vCandidates = {{120.0f, 1, 1, 0.5f}, {100.0f, 0, 0, 0.3f}, {60.0f, 1, 2, 0.2f}};
    EXPECT_EQ(OtherReading(candidates), &candidates.m_vCandidates[1]);
    candidates.m_vCandidates = {{240.0f, 2, 1, 0.6f}, {120.0f, 1, 1, 0.4f}};
    EXPECT_EQ(OtherReading(candidates), &candidates.m_vCandidates[0]);
    candidates.m_vCandidates = {{120.0f, 1, 1, 1.0f}};
    EXPECT_EQ(OtherReading(candidates), nullptr);
}

TEST(SongCandidatesTest, TempoIsFoldedIntoTheRange) {
    EXPECT_EQ(FoldedTempo(60.0, 70.0, 180.0), 120.0);
    EXPECT_EQ(FoldedTempo(200.0, 70.0, 180.0), 100.0);
    EXPECT_EQ(FoldedTempo(100.0, 70.0, 180.0), 100.0);
    EXPECT_EQ(FoldedTempo(10.0, 70.0, 140.0), 80.0);
    EXPECT_EQ(FoldedTempo(70.0, 70.0, 140.0), 70.0);
    EXPECT_EQ(FoldedTempo(140.0, 70.0, 140.0), 140.0);
    EXPECT_EQ(FoldedTempo(0.0, 70.0, 140.0), 0.0);
    EXPECT_EQ(FoldedTempo(-1.0, 70.0, 140.0), -1.0);
    double const infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(FoldedTempo(infinity, 70.0, 140.0), infinity);
}

} // namespace
