// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongFacts.h"

#include "song/SongProfile.h"

#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(SongFactsTest, LevelsAreTheNearestOfTheirSteps) {
    // By hand: one step is 2 / 255, so that 0.5 lies at 63.75 and 1 at 127.5.
    CLevels const levels = LevelsOf(std::vector{0.0f, 0.5f, 1.0f, 2.0f}, 256);
    EXPECT_EQ(levels.m_fTop, 2.0f);
    EXPECT_EQ(levels.m_nSamples, 256);
    EXPECT_EQ(levels.m_vLevels, (std::vector<std::uint8_t>{0, 64, 128, 255}));
}

TEST(SongFactsTest, WhatIsNotFiniteIsSilence) {
    float const infinite = std::numeric_limits<float>::infinity();
    float const none = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(LevelsOf(std::vector{infinite, none, -1.0f, 1.0f}, 1).m_vLevels,
              (std::vector<std::uint8_t>{0, 0, 0, 255}));
    EXPECT_EQ(LevelsOf(std::vector{infinite}, 1).m_fTop, 0.0f);
    EXPECT_TRUE(LevelsOf({}, 1).m_vLevels.empty());
}

TEST(SongFactsTest, SongIsHeardWithAllThatWasAskedFor) {
    CTempFolder folder;
    WriteWav(folder / "a.wav", MakeClickTrack(120.0, 40.0));
    CSongProfile const profile = ProfileSong(
        folder / "a.wav", {.m_bKeepEnvelopes = true, .m_bHearBeats = true, .m_bHarmony = true});
    CSongFacts const facts = FactsOf(profile, true);
    EXPECT_EQ(facts.m_nFrames, 40 * 44'100);
    EXPECT_EQ(facts.m_fBpm, profile.m_results.GetBpm());
    EXPECT_EQ(facts.m_positions.m_vGrid, profile.m_beatSource.m_vPoints);
    ASSERT_EQ(facts.m_beats.m_vHalfBeats.size(), profile.m_beats.m_vHalfBeats.size());
    ASSERT_FALSE(facts.m_beats.m_vHalfBeats.empty());
    for (std::size_t i = 0; i < facts.m_beats.m_vHalfBeats.size(); ++i) {
        double const exact = profile.m_beats.m_vHalfBeats[i].m_dSeconds;
        // Half a microsecond, and the roundings of doubles.
        EXPECT_NEAR(facts.m_beats.m_vHalfBeats[i].m_dSeconds, exact, 0.500001e-6) << i;
    }
    EXPECT_EQ(facts.m_print.m_vValues, profile.m_pPrint->GetValues());
    EXPECT_EQ(facts.m_opening.m_vLevels.size(), 4096);
    EXPECT_EQ(facts.m_energy.m_vLevels.size(), profile.m_energy.Elements().size());
    EXPECT_TRUE(FactsOf(profile, false).m_energy.m_vLevels.empty());
}

} // namespace
