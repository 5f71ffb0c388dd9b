// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/notes/NoteSearch.h"

#include "engine/kernels/Kernels.h"
#include "engine/notes/NoteMap.h"
#include "support/ClickTrack.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

namespace {

// The periods of C at 32.7 Hz, B at 123.5 Hz and what lies between.
std::vector<std::int32_t> const kPeriods = {1348, 1272, 1201, 1133, 1070, 1010, 953, 900,
                                            849,  801,  756,  714,  674,  636,  600, 566,
                                            535,  505,  476,  450,  424,  400,  378, 357};
constexpr std::int32_t kB = 23; // its period: 357
constexpr std::int32_t kPeriodB = 357;

struct CNote {
    std::int32_t m_nNote;
    std::int64_t m_nTime;
    float m_fStrength;

    /// Bit for bit, but for NaN, of which there is one kind here.
    bool operator==(CNote const& other) const {
        bool const bothLackStrength = std::isnan(m_fStrength) && std::isnan(other.m_fStrength);
        return m_nNote == other.m_nNote && m_nTime == other.m_nTime &&
               (bothLackStrength || std::bit_cast<std::uint32_t>(m_fStrength) ==
                                        std::bit_cast<std::uint32_t>(other.m_fStrength));
    }
};

using SearchFunction = void (*)(CNoteSearch const&, CPfNoteMap*);

std::vector<CNote> RunSearch(SearchFunction function, std::vector<float> const& samples,
                             std::int32_t scanCount, std::int64_t basePos) {
    CPfNoteMap map;
    CNoteSearch const search{samples.data(), scanCount,
                             static_cast<std::int32_t>(samples.size()) - 1, basePos, kPeriods};
    function(search, &map);
    std::vector<CNote> notes;
    CPfNoteDetection* item = nullptr;
    for (std::int32_t i = 0; map.EnumItems(i, &item) == kStatusOk; ++i) {
        notes.push_back({item->m_nNote, item->m_nTime, item->m_fStrength});
    }
    return notes;
}

/// What the plain search finds. That of every vector unit must find the same bits.
std::vector<CNote> Search(std::vector<float> const& samples, std::int32_t scanCount,
                          std::int64_t basePos = 0) {
    std::vector<CNote> notes = RunSearch(SearchNotesPlain, samples, scanCount, basePos);
    for (CKernelTarget const& target : GetKernelTargets()) {
        CForceKernels const forced(target);
        EXPECT_EQ(RunSearch(SearchNotes, samples, scanCount, basePos), notes) << target.m_pName;
    }
    return notes;
}

std::vector<CNote> Search(std::vector<float> const& samples) {
    return Search(samples, static_cast<std::int32_t>(samples.size()));
}

/// Strengths found for one note, in the order of the map.
std::vector<float> StrengthsOf(std::vector<CNote> const& notes, std::int32_t note) {
    std::vector<float> strengths;
    for (CNote const& found : notes) {
        if (found.m_nNote == note) {
            strengths.push_back(found.m_fStrength);
        }
    }
    return strengths;
}

/// -level, then level: one crossing, at sample 1.
std::vector<float> Step(std::size_t count, float level = 1.0f) {
    std::vector<float> samples(count, level);
    samples[0] = -level;
    return samples;
}

/// A wave that repeats exactly.
std::vector<float> Wave(std::size_t period, std::size_t count, float amplitude) {
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        double const phase = static_cast<double>(i % period) / static_cast<double>(period);
        samples[i] = amplitude * static_cast<float>(std::sin(2.0 * std::numbers::pi * phase));
    }
    return samples;
}

} // namespace

TEST(NoteSearchTest, SilenceHasNoCrossing) {
    EXPECT_TRUE(Search(std::vector<float>(20000, 0.0f)).empty());
    EXPECT_TRUE(Search(std::vector<float>(20000, 0.5f)).empty());
}

TEST(NoteSearchTest, CrossingGoesFromBelowZeroToZeroOrAbove) {
    std::vector<float> samples = Step(100); // too short for a comparison
    samples[1] = 0.0f;                      // from below 0 to 0
    EXPECT_FALSE(Search(samples).empty());
    samples[0] = 0.0f; // from 0 upwards is none
    EXPECT_TRUE(Search(samples).empty());
}

TEST(NoteSearchTest, ExactWaveIsItsNoteAtEveryCrossing) {
    // Sine of 1348 samples: zero at 0, crossings at 1348, 2696, ... 9 * 1348 = 12132 is the last
    // below 12300. The nearest other note is off by 4 * 76 samples after four periods, 1.4 radians:
    // 2 sin(0.7) = 1.29 of the peak. The octave is in opposite phase.
    std::vector<CNote> const notes = Search(Wave(1348, 18000, 0.5f), 12300, 44100);
    ASSERT_EQ(notes.size(), 9U);
    // The second one found comes first, behind it the newest.
    std::vector<std::int64_t> const periods = {2, 9, 8, 7, 6, 5, 4, 3, 1};
    for (std::size_t i = 0; i < notes.size(); ++i) {
        EXPECT_EQ(notes[i].m_nNote, 0);
        EXPECT_EQ(notes[i].m_fStrength, 1.0f);
        std::int64_t const position = 44100 + periods[i] * 1348;
        EXPECT_EQ(notes[i].m_nTime, (position * 1000000 + 22050) / 44100);
    }
}

TEST(NoteSearchTest, LooksAtCrossingsBelowTheScanCountOnly) {
    std::vector<float> const wave = Wave(1348, 18000, 0.5f);
    EXPECT_EQ(Search(wave, 1348).size(), 0U);
    EXPECT_EQ(Search(wave, 1349).size(), 1U);
}

TEST(NoteSearchTest, QuietCrossingsAreSkipped) {
    EXPECT_TRUE(Search(Step(20000, std::nextafter(0.01f, 0.0f))).empty());
    EXPECT_EQ(Search(Step(20000, 0.01f)).size(), 24U);
}

TEST(NoteSearchTest, PeakIsLookedForOnEveryEighthSample) {
    // The step is too quiet by itself, and near enough to the louder sample to repeat.
    std::vector<float> samples = Step(20000, 0.009f);
    samples[1 + 8 * 10 + 1] = 0.0105f; // between two of those looked at
    EXPECT_TRUE(Search(samples).empty());
    samples[1 + 8 * 10] = 0.0105f;
    EXPECT_EQ(Search(samples).size(), 24U);
}

TEST(NoteSearchTest, PeakEndsBeforeTheLongestPeriod) {
    // 1 + 8 * 168 = 1345 is the last looked at below 1 + 1348.
    std::vector<float> samples = Step(20000, 0.009f);
    samples[1345 + 8] = 0.0105f;
    EXPECT_TRUE(Search(samples).empty());
    samples[1345] = 0.0105f;
    EXPECT_EQ(Search(samples).size(), 24U);
}

TEST(NoteSearchTest, PeakEndsBeforeTheLastSample) {
    std::vector<float> samples(10, 0.005f);
    samples[0] = -1.0f;
    samples[9] = 1.0f; // the last sample, and the next in line after sample 1
    EXPECT_TRUE(Search(samples).empty());
    samples.push_back(0.005f);
    EXPECT_FALSE(Search(samples).empty());
}

TEST(NoteSearchTest, PinsNoComparisonMeansNoStrength) {
    // Ten samples reach no second period of any note, so none fails and none has a mean.
    std::vector<CNote> const notes = Search(Step(10));
    ASSERT_EQ(notes.size(), 24U);
    for (CNote const& note : notes) {
        EXPECT_TRUE(std::isnan(note.m_fStrength));
    }
}

TEST(NoteSearchTest, StrengthIsOneLessTheMeanDifference) {
    // The last sample is 360, so B alone is compared, at samples 1, 2 and 3.
    std::vector<float> samples = Step(361);
    samples[358] = 0.5f;
    samples[359] = 0.75f;
    // (0.5 + 0.25 + 0) / 3 = 0.25, times 2^-16.
    EXPECT_EQ(StrengthsOf(Search(samples), kB), std::vector<float>{1.0f - 0x1.0p-18f});
}

TEST(NoteSearchTest, DifferenceMayReachSixTenthsOfThePeak) {
    // With a peak of 16 the limit and the samples are multiples of 2^-20, so nothing is rounded.
    std::vector<float> samples = Step(361, 16.0f);
    samples[359] = 16.0f - 0.6f * 16.0f;
    EXPECT_EQ(StrengthsOf(Search(samples), kB).size(), 1U);
    samples[359] -= 0x1.0p-20f;
    EXPECT_EQ(StrengthsOf(Search(samples), kB).size(), 0U);
}

TEST(NoteSearchTest, EveryRepetitionUpToTheFourthIsCompared) {
    for (std::int32_t const repetition : {1, 2, 3, 4, 5}) {
        std::vector<float> samples = Step(1 + 6 * 357 + 10);
        samples[static_cast<std::size_t>(2 + repetition * kPeriodB)] = 0.0f;
        // Sample 2 + 357 m is met from sample 2 as its m-th repetition. The fifth is out of reach
        // of the first period; only sample 359, behind it, would meet it.
        EXPECT_EQ(StrengthsOf(Search(samples), kB).size(), repetition == 5 ? 1U : 0U) << repetition;
    }
}

TEST(NoteSearchTest, PinsLastSampleFailureIsIgnored) {
    // Sample 358 = 1 + 357 ends B's test. Against 715 it is off by 0.75 of the peak, which no
    // longer counts against the note, but ends the comparisons of sample 358 after this one:
    //   sample 1 against 358, 715, 1072, 1429:  0.5 + 0.25 + 0 + 0
    //   samples 2 .. 357, four each:            0
    //   sample 358 against 715:                 0.75
    // 1.5 over 357 * 4 + 1 comparisons, all times 65536.
    std::vector<float> samples = Step(4000, 65536.0f);
    samples[358] = 0.5f * 65536.0f;
    samples[715] = 1.25f * 65536.0f;
    EXPECT_EQ(StrengthsOf(Search(samples), kB),
              std::vector<float>{1.0f - 98304.0f / 1429.0f * 0x1.0p-16f});
    // The same difference one sample earlier fails.
    samples[358] = samples[715] = 65536.0f;
    samples[357] = 0.5f * 65536.0f;
    samples[714] = 1.25f * 65536.0f;
    EXPECT_TRUE(StrengthsOf(Search(samples), kB).empty());
}

TEST(NoteSearchTest, DifferencesAreSummedFromTheFirstSampleOn) {
    // 2^24 swallows every 1 that is added behind it. The peak of 2^25 allows 2^24.
    constexpr float kBig = 16777216.0f;
    std::vector<float> samples(1787, 1.0f);
    samples[0] = -1.0f;
    for (std::size_t const i : {9U, 366U, 723U, 1080U, 1437U}) {
        samples[i] = 2.0f * kBig; // the peak, the same in every period
    }
    samples[1] = kBig;
    samples[358] = 0.0f;        // 2^24 from sample 1, then
    samples[715] = kBig - 1.0f; // 1 more three times,
    samples[1072] = kBig - 1.0f;
    samples[1429] = kBig - 1.0f;
    for (std::size_t j = 2; j < 358; ++j) {
        if (j != 9) {
            samples[j + 357] = 0.0f; // 1 from each sample of the first period,
        }
    }
    // and from sample 358 three times 2^24 - 1: 2^24 + 2^24 - 1 ties to 2^25; 2^25 + 2^24 - 1
    // rounds to 3 * 2^24; 3 * 2^24 + 2^24 - 1 rounds to 2^26. Against 1786 there is 0 left.
    samples[1786] = 0.0f;
    EXPECT_EQ(StrengthsOf(Search(samples), kB),
              std::vector<float>{1.0f - 67108864.0f / 1432.0f * 0x1.0p-16f});
}

TEST(NoteSearchTest, OneCrossingYieldsItsNotesFromTheLowestUp) {
    // All differences 0: 24 equal strengths. The second note goes in front of the first, each
    // later one behind it.
    std::vector<CNote> const notes = Search(Step(20000));
    ASSERT_EQ(notes.size(), 24U);
    EXPECT_EQ(notes[0].m_nNote, 1);
    for (std::int32_t i = 1; i < 23; ++i) {
        EXPECT_EQ(notes[static_cast<std::size_t>(i)].m_nNote, 24 - i);
    }
    EXPECT_EQ(notes[23].m_nNote, 0);
}

TEST(NoteSearchTest, NeverReadsBehindTheData) {
    // A scan count beyond the data ends with it.
    std::vector<float> const samples = Step(10);
    EXPECT_EQ(Search(samples, 1000).size(), 24U);
    EXPECT_TRUE(Search({}, 1000).empty());
}

TEST(NoteSearchTest, EitherWayFindsTheSameBitsInNoise) {
    // Noise smoothed over 200 samples has crossings everywhere; the amplitude decides how many
    // notes pass, and the data end at every distance from the last crossings.
    std::mt19937 random(5);
    std::size_t found = 0;
    for (int round = 0; round < 60; ++round) {
        std::vector<float> const noise = MakeNoise(0.5, 1.0f, static_cast<std::uint32_t>(round));
        std::vector<float> samples(2000 + random() % 14000);
        float sum = 0.0f;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            sum += noise[i + 200] - noise[i];
            samples[i] = sum * 0.1f;
        }
        // One in three has a tone over the noise, so that notes are found.
        std::vector<float> const tone =
            Wave(357 + random() % 992, samples.size(), round % 3 == 0 ? 3.0f : 0.0f);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i] += tone[i];
        }
        found += Search(samples).size();
    }
    EXPECT_GT(found, 100U);
}

TEST(NoteSearchTest, EitherWayFindsTheSameBitsAmongOddNumbers) {
    // Every kind of odd value at odd places of a wave that repeats: none of them is undefined, and
    // a difference that is NaN speaks against no note.
    std::mt19937 random(6);
    float const odd[] = {
        std::numeric_limits<float>::quiet_NaN(),  std::numeric_limits<float>::infinity(),
        -std::numeric_limits<float>::infinity(),  std::numeric_limits<float>::max(),
        std::numeric_limits<float>::denorm_min(), -0.0f};
    std::size_t found = 0;
    for (int round = 0; round < 120; ++round) {
        std::vector<float> samples = Wave(357 + random() % 992, 9000, 0.5f);
        for (int i = 0; i < round % 5; ++i) {
            samples[random() % samples.size()] = odd[random() % 6];
        }
        found += Search(samples).size();
    }
    EXPECT_GT(found, 500U);
}

TEST(NoteSearchTest, EitherWayFindsTheSameBitsWhereEverythingIsANote) {
    // Alternating steps: a crossing at every second sample, each of them 24 notes.
    std::vector<float> samples(8000);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = i % 2 == 0 ? -0.001f : 0.001f;
    }
    samples[7990] = 0.02f;
    for (std::size_t i = 101; i < samples.size(); i += 8) {
        samples[i] = 0.0101f;
    }
    EXPECT_GT(Search(samples).size(), 1000U);
}

TEST(NoteSearchTest, EitherWayFindsTheSameBitsWhateverASumIsRoundedTo) {
    // The strength has steps of 2^-8 in the mean difference at an amplitude of 1. The larger the
    // samples, the more steps lie between the sums that other orders of summands would give; the
    // largest ones have sums beyond what a float holds.
    std::size_t found = 0;
    for (float const amplitude : {0.02f, 0.5f, 1.0f, 8.0f, 300.0f, 65536.0f, 1.0e30f, 1.0e35f}) {
        for (std::uint32_t round = 0; round < 6; ++round) {
            std::vector<float> samples = Wave(357 + 160 * round, 12000, amplitude);
            std::vector<float> const noise =
                MakeNoise(0.5, 0.02f * static_cast<float>(round), round);
            for (std::size_t i = 0; i < samples.size(); ++i) {
                samples[i] += amplitude * noise[i];
            }
            found += Search(samples).size();
        }
    }
    EXPECT_GT(found, 1000U);
}
