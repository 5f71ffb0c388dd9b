// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Beat grids and measures of whole runs. A grid point is the foot of a rise: the element before the
// one that is louder. A click at the start of its frame of 256 samples has its foot in the frame
// before, up to 512 samples early; one late in its frame lifts its own frame little and has its
// foot there, up to 256 samples early. Points between and behind onsets follow from those. So every
// point lies 0 to 512 samples before its half beat.

#include "audio/ProfiledTrack.h"
#include "support/ClickTrack.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr double kRate = 44100.0;
constexpr double kEarly = 512.0; // two elements

/// A click track that starts after 0.3 s; a click at 0 would have its foot before the stream.
CClickTrack Clicks(double bpm, int accentEvery = 0) {
    CClickTrack track;
    track.m_dBpm = bpm;
    track.m_dStartSeconds = 0.3;
    track.m_nAccentEvery = accentEvery;
    return track;
}

double HalfBeat(CClickTrack const& track) {
    return kRate * 60.0 / track.m_dBpm / 2.0;
}

/// Samples by which a position lies before the nearest multiple of `unit` from the first click on.
double Earliness(CClickTrack const& track, std::int64_t position, double unit) {
    double const way = static_cast<double>(position) - track.m_dStartSeconds * kRate;
    return std::round((way + kEarly / 2.0) / unit) * unit - way;
}

void ExpectGridOnHalfBeats(CProfiledTrack const& profiled, CClickTrack const& track) {
    for (std::int64_t const beat : profiled.m_vBeats) {
        double const early = Earliness(track, beat, HalfBeat(track));
        EXPECT_GE(early, 0.0) << beat;
        EXPECT_LE(early, kEarly) << beat;
    }
}

std::vector<std::int64_t> Marks(CProfiledTrack const& profiled) {
    auto const& marks = profiled.m_results.GetMeasMarks();
    return {marks.begin(), marks.end()};
}

void ExpectMarksWholeMeasuresApart(CProfiledTrack const& profiled, CClickTrack const& track) {
    double const measure = 8.0 * HalfBeat(track);
    std::vector<std::int64_t> const marks = Marks(profiled);
    ASSERT_GE(marks.size(), 2U);
    for (std::int64_t const mark : marks) {
        double const way = static_cast<double>(mark - marks.front());
        // Both are grid points, hence up to 512 samples early.
        EXPECT_NEAR(way, std::round(way / measure) * measure, kEarly) << mark;
    }
    // The first and the last whole measure are marked.
    EXPECT_LT(static_cast<double>(marks.front()), measure);
    EXPECT_GT(static_cast<double>(marks.back()), track.m_dSeconds * kRate - 2.0 * measure);
}

void ExpectAscendingInsideTheStream(CProfiledTrack const& profiled, double seconds) {
    auto const& beats = profiled.m_vBeats;
    EXPECT_TRUE(std::ranges::is_sorted(beats));
    EXPECT_EQ(std::ranges::adjacent_find(beats), beats.end());
    if (!beats.empty()) {
        EXPECT_GE(beats.front(), 0);
        EXPECT_LT(static_cast<double>(beats.back()), seconds * kRate);
    }
}

class SteadyGrid : public testing::TestWithParam<double> {};

} // namespace

TEST_P(SteadyGrid, LiesOnTheHalfBeats) {
    CClickTrack const track = Clicks(GetParam(), 4);
    CProfiledTrack const profiled(MakeClickTrack(track));
    // Whole to within one point at either end.
    EXPECT_NEAR(static_cast<double>(profiled.m_vBeats.size()), 60.0 * kRate / HalfBeat(track), 1.0);
    ExpectAscendingInsideTheStream(profiled, 60.0);
    ExpectGridOnHalfBeats(profiled, track);
    EXPECT_NEAR(static_cast<double>(profiled.m_results.GetBpm()), GetParam(), 0.02);
}

TEST_P(SteadyGrid, HasItsMarksWholeMeasuresApart) {
    CClickTrack const track = Clicks(GetParam(), 4);
    CProfiledTrack const profiled(MakeClickTrack(track));
    ExpectMarksWholeMeasuresApart(profiled, track);
}

TEST_P(SteadyGrid, HasItsMarksOnAnAccentedFirstBeat) {
    CClickTrack const track = Clicks(GetParam(), 4);
    CProfiledTrack const profiled(MakeClickTrack(track));
    for (std::int64_t const mark : Marks(profiled)) {
        double const early = Earliness(track, mark, 8.0 * HalfBeat(track));
        EXPECT_GE(early, 0.0) << mark;
        EXPECT_LE(early, kEarly) << mark;
    }
}

INSTANTIATE_TEST_SUITE_P(GridTest, SteadyGrid,
                         testing::Values(82.0, 90.0, 97.3, 100.0, 110.5, 120.0, 128.0, 133.33,
                                         140.0, 150.0, 163.9));

// Linking ends when four fifths of the nodes are in chains. At 82 BPM a minute has 81 beats and no
// half beats; they are used up by four chains one behind the other, none of which spans the 32
// nodes that a chain needs to stay. The step is measured all the same.
TEST(GridTest, SlowBeatsWithoutHalfBeatsMayHaveNoGrid) {
    CProfiledTrack const profiled(MakeClickTrack(Clicks(82.0)));
    EXPECT_TRUE(profiled.m_vBeats.empty());
    EXPECT_TRUE(Marks(profiled).empty());
    EXPECT_NEAR(static_cast<double>(profiled.m_results.GetBpm()), 82.0, 0.02);
}

// A click at 0 has no foot in the stream: the first grid point is the half beat after it. Its
// attack votes for the point closest to it, which is this one.
TEST(GridTest, FirstMeasureOfATrackThatStartsWithAClickIsHalfABeatLate) {
    CClickTrack track = Clicks(120.0, 4);
    track.m_dStartSeconds = 0.0;
    CProfiledTrack const profiled(MakeClickTrack(track));
    ExpectGridOnHalfBeats(profiled, track);
    EXPECT_EQ(Marks(profiled).front(), profiled.m_vBeats.front());
    EXPECT_NEAR(static_cast<double>(Marks(profiled).front()), HalfBeat(track), kEarly);
}

// A bass drum on the first beat of the measure is an attack; clicks alone hardly reach the bass.
TEST(GridTest, MarksFallOnTheBassDrumWhereverTheMeasureBegins) {
    constexpr CClickShape kDrum{55.0, 0.08, 0.3, 0.6f};
    for (double const bpm : {100.0, 120.0, 128.0, 150.0}) {
        for (int const first : {0, 1, 2, 3}) {
            CClickTrack const track = Clicks(bpm);
            std::vector<float> samples = MakeClickTrack(track);
            auto const end = static_cast<std::int64_t>(samples.size());
            for (int i = first; ClickPosition(track, i) < end; i += 4) {
                AddClick(samples, ClickPosition(track, i), kDrum, 0.6f);
            }
            CProfiledTrack const profiled(samples);
            ASSERT_GE(Marks(profiled).size(), 2U);
            for (std::int64_t const mark : Marks(profiled)) {
                std::int64_t const away = mark - ClickPosition(track, first);
                double const early =
                    Earliness(track, away + ClickPosition(track, 0), 8.0 * HalfBeat(track));
                EXPECT_LE(std::abs(early), kEarly) << bpm << " " << first << " " << mark;
            }
            CPfBeatPattern bass;
            CPfBeatPattern energy;
            EXPECT_TRUE(profiled.m_results.GetBeatPatterns(&energy, &bass));
            EXPECT_EQ(bass.GetValue(0), 1.0f); // the accent pattern begins on the drum
        }
    }
}

TEST(GridTest, AGapIsFilledInTime) {
    CClickTrack const track = Clicks(120.0);
    std::vector<float> samples = MakeClickTrack(track);
    std::fill(samples.begin() + 30 * 44100, samples.begin() + 32 * 44100, 0.0f);
    CProfiledTrack const profiled(samples);
    EXPECT_NEAR(static_cast<double>(profiled.m_vBeats.size()), 240.0, 1.0);
    ExpectGridOnHalfBeats(profiled, track);
    ExpectMarksWholeMeasuresApart(profiled, track);
    EXPECT_NEAR(static_cast<double>(profiled.m_results.GetBpm()), 120.0, 0.02);
}

// Half a minute at 120 and half a minute at 140 BPM: five windows out of nine lie in the second
// half or reach into it, so 140 is the median. Only steps within 5 % of its step count, and the
// chains are made of these. The first half is filled with even steps, and the marks tell where the
// grid breaks.
TEST(GridTest, AfterATempoChangeTheGridKeepsTheTempoOfTheMedian) {
    std::vector<float> samples = MakeClickTrack(120.0, 30.0);
    std::vector<float> const faster = MakeClickTrack(140.0, 30.0);
    samples.insert(samples.end(), faster.begin(), faster.end());
    CProfiledTrack const profiled(samples);
    EXPECT_NEAR(static_cast<double>(profiled.m_fBaseBpm), 140.0,
                0.35); // 0.3 by ties, 0.05 by steps
    EXPECT_NEAR(static_cast<double>(profiled.m_results.GetBpm()), 140.0, 140.0 * 0.05);
    ExpectAscendingInsideTheStream(profiled, 60.0);
    EXPECT_GT(Marks(profiled).size(), 2U);
}

TEST(GridTest, NoiseHasSomeGridNearItsBaseTempo) {
    CProfiledTrack const profiled(MakeNoise(60.0, 0.5f));
    // A link may be off by a fifth of a step, and no chain averages further off than that.
    auto const base = static_cast<double>(profiled.m_fFoldedBpm);
    EXPECT_GT(static_cast<double>(profiled.m_results.GetBpm()), base * 0.8);
    EXPECT_LT(static_cast<double>(profiled.m_results.GetBpm()), base * 1.25);
    ExpectAscendingInsideTheStream(profiled, 60.0);
    EXPECT_FALSE(profiled.m_vBeats.empty());
}

// One measure of 5 s is 48 BPM, doubled into the band: 96. Its step is 110250 / 8, truncated to
// 13781, and 60 * 44100 / (2 * 13781) = 96.00174. Four onsets make no chain of 32 nodes, so there
// is no grid, and intro and outro have one sprocket each.
TEST(GridTest, FiveSecondsHaveATempoButNoGrid) {
    CProfiledTrack const profiled(MakeClickTrack(120.0, 5.0));
    EXPECT_EQ(profiled.m_fShortClipBpm, 96.0f);
    EXPECT_NEAR(static_cast<double>(profiled.m_results.GetBpm()), 96.00174, 1e-5); // float steps
    EXPECT_TRUE(profiled.m_vBeats.empty());
    EXPECT_TRUE(Marks(profiled).empty());
    EXPECT_EQ(profiled.m_results.GetIntroSprockets().GetCount(), 1U);
    EXPECT_EQ(profiled.m_results.GetOutroSprockets().GetCount(), 1U);
}

// The first window begins at a tenth of the length, after 6 s: no onset, no tempo, no step. The
// onsets themselves stand for the grid then.
TEST(GridTest, SoundBeforeTheFirstWindowOnlyGivesItsOnsets) {
    std::vector<float> samples = MakeNoise(5.0, 0.5f);
    samples.resize(SamplesIn(60.0), 0.0f);
    CProfiledTrack const profiled(samples);
    EXPECT_EQ(profiled.m_fBaseBpm, 0.0f);
    EXPECT_EQ(profiled.m_results.GetBpm(), 0.0f);
    ExpectAscendingInsideTheStream(profiled, 5.0);
    EXPECT_GT(profiled.m_vBeats.size(), 8U);
    CPfBeatPattern a;
    CPfBeatPattern b;
    EXPECT_TRUE(profiled.m_results.GetBeatPatterns(&a, &b));
    EXPECT_EQ(a.GetCount(), 8); // the resolution is that of a grid
}

TEST(GridTest, SilenceHasNeitherGridNorMarks) {
    CProfiledTrack const profiled(MakeSilence(60.0));
    EXPECT_TRUE(profiled.m_vBeats.empty());
    EXPECT_TRUE(Marks(profiled).empty());
    EXPECT_EQ(profiled.m_results.GetOutroStart(), 0); // without a tempo there is no measure
    EXPECT_EQ(profiled.m_results.GetIntroEnd(), 0);
}
