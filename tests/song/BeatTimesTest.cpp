// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/BeatTimes.h"

#include "song/SongProfile.h"
#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

class BeatTimesTest : public testing::Test {
protected:
    CSongProfile Hear(std::vector<float> const& samples, std::uint32_t rate = 44100) {
        WriteWav(m_folder / "song.wav", {.m_nRate = rate}, samples);
        return ProfileSong(m_folder / "song.wav", {.m_bHearBeats = true});
    }

    CTempFolder m_folder;
};

/// Half beats every quarter of a second from `first` on, without a sound.
CBeatSource SilentSource(double first, int count, double seconds) {
    CBeatSource source;
    source.m_dSeconds = seconds;
    for (int i = 0; i < count; ++i) {
        source.m_vPoints.push_back(std::llround((first + 0.25 * i) * 44100.0));
    }
    return source;
}

/// Of each time the distance from the nearest multiple of `period`.
std::vector<double> OffFrom(std::vector<double> const& times, double period) {
    std::vector<double> off;
    for (double const time : times) {
        off.push_back(time - std::round(time / period) * period);
    }
    return off;
}

} // namespace

TEST_F(BeatTimesTest, ClicksAreMetToHalfAMillisecond) {
    for (double const bpm : {84.0, 97.3, 120.0, 128.0, 143.7, 160.0}) {
        CClickTrack track;
        track.m_dBpm = bpm;
        track.m_dStartSeconds = 0.1;
        CSongProfile const profile = Hear(MakeClickTrack(track));
        std::vector<double> beats = profile.m_beats.Beats();
        ASSERT_GT(beats.size(), 60.0 * bpm / 60.0 - 3.0) << bpm;
        std::ranges::for_each(beats, [](double& beat) { beat -= 0.1; });
        double sum = 0.0;
        for (double const off : OffFrom(beats, 60.0 / bpm)) {
            EXPECT_LT(std::abs(off), 0.003) << bpm;
            sum += off;
        }
        EXPECT_LT(std::abs(sum / static_cast<double>(beats.size())), 0.0005) << bpm;
        EXPECT_TRUE(profile.m_beats.m_bSteady);
    }
}

TEST_F(BeatTimesTest, ASongIsCountedAsItIsPlayed) {
    // Kick on the beats, snare on the second and fourth, hats on the half beats, chords by
    // measures.
    double const beat = 60.0 / 126.0;
    CSongProfile const profile = Hear(MakeSong(126.0, 90.0));
    std::vector<double> const beats = profile.m_beats.Beats();
    std::vector<double> const downbeats = profile.m_beats.Downbeats();
    ASSERT_GT(beats.size(), 180U);
    EXPECT_EQ(profile.m_beats.m_nBeatsPerMeasure, 4);
    for (double const off : OffFrom(beats, beat)) {
        EXPECT_LT(std::abs(off), 0.003);
    }
    for (double const off : OffFrom(downbeats, 4.0 * beat)) {
        EXPECT_LT(std::abs(off), 0.003);
    }
    EXPECT_GT(profile.m_beats.m_fBeatConfidence, 0.5f);
}

TEST_F(BeatTimesTest, AnotherRateHasTheSameSeconds) {
    // 48000 samples a second: what the engine counts at 44100 still lies at the same moments.
    std::vector<float> const slow = MakeClickTrack(120.0, 60.0);
    // Every sample held as long as it is due at the other rate; a click moves by a sample at most.
    std::vector<float> fast(slow.size() * 480 / 441);
    for (std::size_t i = 0; i < fast.size(); ++i) {
        fast[i] = slow[i * 441 / 480];
    }
    CSongProfile const profile = Hear(fast, 48000);
    std::vector<double> const beats = profile.m_beats.Beats();
    ASSERT_GT(beats.size(), 110U);
    EXPECT_LT(beats.back(), 60.0);
    for (double const off : OffFrom(beats, 0.5)) {
        EXPECT_LT(std::abs(off), 0.001);
    }
}

TEST_F(BeatTimesTest, WhatTheEngineMarkedIsFlagged) {
    CSongProfile const profile = Hear(MakeSong(120.0, 60.0));
    ASSERT_FALSE(profile.m_beatSource.m_vMarks.empty());
    for (std::int64_t const mark : profile.m_beatSource.m_vMarks) {
        double const seconds = static_cast<double>(mark) / 44100.0;
        if (seconds > 59.95) {
            continue; // its half beat may lie behind the end
        }
        auto const found =
            std::ranges::find_if(profile.m_beats.m_vHalfBeats, [&](CBeatTime const& beat) {
                return beat.m_bMarked && std::abs(beat.m_dSeconds - seconds) < 0.05;
            });
        EXPECT_NE(found, profile.m_beats.m_vHalfBeats.end()) << seconds;
    }
}

TEST_F(BeatTimesTest, WithoutAGridThereAreNoBeats) {
    CBeatTimes const times = FindBeatTimes({});
    EXPECT_TRUE(times.m_vHalfBeats.empty());
    EXPECT_TRUE(times.Beats().empty());
    EXPECT_TRUE(times.Downbeats().empty());
    EXPECT_EQ(times.m_nBeatsPerMeasure, 0);
    EXPECT_EQ(times.m_fBeatConfidence, 0.0f);
}

TEST_F(BeatTimesTest, TheGridGoesOnToBothEnds) {
    // Points from 5 to 14.75 s of a song of 20 s: half beats from 0 to 19.75 s.
    CBeatTimes const times = FindBeatTimes(SilentSource(5.0, 40, 20.0));
    ASSERT_EQ(times.m_vHalfBeats.size(), 80U);
    for (std::size_t i = 0; i < 80; ++i) {
        // Points are whole samples.
        EXPECT_NEAR(times.m_vHalfBeats[i].m_dSeconds, 0.25 * static_cast<double>(i), 1e-4);
    }
}

TEST_F(BeatTimesTest, PlacesCountThroughTheMeasures) {
    CBeatTimes const times = FindBeatTimes(SilentSource(5.0, 40, 20.0));
    std::size_t const period = 2U * times.m_nBeatsPerMeasure;
    ASSERT_GT(period, 0U);
    for (std::size_t i = 0; i + period < times.m_vHalfBeats.size(); ++i) {
        int const place = times.m_vHalfBeats[i].m_nPlace;
        EXPECT_EQ(times.m_vHalfBeats[i + period].m_nPlace, place);
        if (place > 0) {
            int const next = times.m_vHalfBeats[i + 2].m_nPlace;
            EXPECT_EQ(next, place % times.m_nBeatsPerMeasure + 1);
            EXPECT_EQ(times.m_vHalfBeats[i + 1].m_nPlace, 0);
        }
    }
}

TEST_F(BeatTimesTest, NothingLiesOutsideTheSong) {
    CBeatTimes const times = FindBeatTimes(SilentSource(0.0, 200, 10.0));
    EXPECT_GE(times.m_vHalfBeats.front().m_dSeconds, 0.0);
    EXPECT_LT(times.m_vHalfBeats.back().m_dSeconds, 10.0);
}

TEST_F(BeatTimesTest, BeatsChangeNothingElse) {
    WriteWav(m_folder / "song.wav", MakeSong(120.0, 60.0));
    CSongProfile const with = ProfileSong(m_folder / "song.wav", {.m_bHearBeats = true});
    CSongProfile const without = ProfileSong(m_folder / "song.wav", {});
    EXPECT_EQ(with.m_results.GetBpm(), without.m_results.GetBpm());
    EXPECT_TRUE(without.m_beats.m_vHalfBeats.empty());
    EXPECT_TRUE(without.m_beatSource.m_vPoints.empty());
    EXPECT_TRUE(without.m_beatSource.m_curves.m_vAttack.empty());
}
