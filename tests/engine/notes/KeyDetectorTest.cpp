// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/notes/KeyDetector.h"

#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "engine/notes/NoteMap.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

struct CKey {
    std::uint16_t m_nTonic = 99;
    std::uint16_t m_nMode = 99;

    bool operator==(CKey const&) const = default;
};

CKey Detect(CPfNoteMap& notes) {
    CProfiler profiler(nullptr);
    CProfileResults results;
    EXPECT_EQ(CPfKeyDetector::DetectKey(&profiler, &notes, &results), kStatusOk);
    CKey key;
    results.GetKey(&key.m_nTonic, &key.m_nMode);
    return key;
}

/// The key of a map with so many notes of each pitch class, C first.
CKey DetectCounts(std::array<int, 12> const& counts, std::uint32_t octave = 0) {
    CPfNoteMap notes;
    for (std::uint32_t pitch = 0; pitch < 12; ++pitch) {
        for (int i = 0; i < counts[pitch]; ++i) {
            notes.AddDetection(pitch + 12 * octave, 0, 0.5f);
        }
    }
    return Detect(notes);
}

CKey Minor(std::uint16_t tonic) {
    return {tonic, CPfKeyDetector::kMinor};
}

CKey Major(std::uint16_t tonic) {
    return {tonic, CPfKeyDetector::kMajor};
}

} // namespace

TEST(KeyDetectorTest, ProfilesAreTheseNumbers) {
    EXPECT_EQ(g_fMajorKeyMap, (CKeyProfile{0.16f, -0.1f, 0.1f, -0.1f, 0.1f, 0.145f, -0.1f, 0.1f,
                                           -0.1f, 0.135f, -0.1f, 0.1f}));
    EXPECT_EQ(g_fMinorKeyMap, (CKeyProfile{0.352f, 0.0f, 0.114f, 0.176f, 0.0f, 0.073f, 0.0f, 0.066f,
                                           0.034f, 0.0f, 0.183f, 0.0f}));
}

TEST(KeyDetectorTest, StandardMapPutsTheTonicAtTheKey) {
    CPfKeyMap map;
    EXPECT_EQ(map.LoadStandardMap(g_fMajorKeyMap, 7), kStatusOk);
    EXPECT_EQ(map.GetWeight(7), 0.16f);  // G
    EXPECT_EQ(map.GetWeight(0), 0.145f); // C, the fourth
    EXPECT_EQ(map.GetWeight(6), 0.1f);   // F sharp, the seventh
    EXPECT_EQ(map.GetWeight(8), -0.1f);  // G sharp
}

TEST(KeyDetectorTest, NotesOfAllOctavesShareAPitchClass) {
    CPfKeyMap map;
    map.AddNote(3);
    map.AddNote(15);
    map.AddNote(0);
    EXPECT_EQ(map.GetWeight(3), 2.0f);
    EXPECT_EQ(map.GetWeight(0), 1.0f);
    EXPECT_EQ(map.GetWeight(1), 0.0f);
}

TEST(KeyDetectorTest, NormalizeDividesByTheNotesSinceTheLastTime) {
    CPfKeyMap map;
    map.Normalize(); // no notes: nothing to divide
    EXPECT_EQ(map.GetWeight(0), 0.0f);
    map.AddNote(0);
    map.AddNote(0);
    map.AddNote(5);
    map.AddNote(7);
    map.Normalize();
    EXPECT_EQ(map.GetWeight(0), 0.5f);
    EXPECT_EQ(map.GetWeight(5), 0.25f);
    map.Normalize(); // by 1
    EXPECT_EQ(map.GetWeight(0), 0.5f);
    map.AddNote(0); // the count is 2 now
    map.Normalize();
    EXPECT_EQ(map.GetWeight(0), 0.75f);
    map.LoadStandardMap(g_fMajorKeyMap, 0);
    map.Normalize(); // by 1
    EXPECT_EQ(map.GetWeight(0), 0.16f);
}

TEST(KeyDetectorTest, CorrelationIsSummedFromCUpInSinglePrecision) {
    CPfKeyMap ones;
    for (std::uint16_t pitch = 0; pitch < 12; ++pitch) {
        ones.AddNote(pitch);
    }
    // 2^24 first swallows the ones behind it; last it would be added to their sum.
    CKeyProfile profile{};
    profile.fill(1.0f);
    profile[0] = 16777216.0f;
    CPfKeyMap map;
    map.LoadStandardMap(profile, 0);
    float correlation = 0.0f;
    EXPECT_EQ(map.CalcMapCorrelation(&ones, &correlation), kStatusOk);
    EXPECT_EQ(correlation, 16777216.0f);
    map.LoadStandardMap(profile, 11);
    map.CalcMapCorrelation(&ones, &correlation);
    EXPECT_EQ(correlation, 16777228.0f); // 2^24 + 11 is a tie, to the even 2^24 + 12
}

TEST(KeyDetectorTest, NoNotesNoKey) {
    CPfNoteMap notes;
    EXPECT_EQ(Detect(notes), (CKey{0, CPfKeyDetector::kNoKey}));
}

TEST(KeyDetectorTest, CancelledProfilerStoresNothing) {
    CPfNoteMap notes;
    notes.AddDetection(9, 0, 0.5f);
    CProfiler profiler(nullptr);
    profiler.CancelProfile();
    CProfileResults results;
    results.SetKey(5, 2);
    EXPECT_EQ(CPfKeyDetector::DetectKey(&profiler, &notes, &results), kStatusNothing);
    CKey key;
    results.GetKey(&key.m_nTonic, &key.m_nMode);
    EXPECT_EQ(key, Major(5));
}

TEST(KeyDetectorTest, OnePitchAloneIsItsMinorKey) {
    // 0.352, where the best major key has 0.16.
    for (std::uint32_t octave = 0; octave < 2; ++octave) {
        for (std::uint16_t pitch = 0; pitch < 12; ++pitch) {
            std::array<int, 12> counts{};
            counts[pitch] = 3;
            EXPECT_EQ(DetectCounts(counts, octave), Minor(pitch));
        }
    }
}

TEST(KeyDetectorTest, EqualKeysGoToTheLowerTonic) {
    // Two notes six semitones apart: each is 0.352 / 2 for its own minor key and 0 for the
    // other's, as minor gives nothing to the tritone.
    EXPECT_EQ(DetectCounts({0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0}), Minor(2));
    // All twelve the same: every minor key sums to 0.998 / 12, every major one to 0.34 / 12, in
    // 24 different orders of addition; some minor key wins.
    EXPECT_EQ(DetectCounts({1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}).m_nMode, CPfKeyDetector::kMinor);
}

TEST(KeyDetectorTest, PinsMinorForgivesForeignTones) {
    // C 5, E 3, F 7, G 2, B 5. F minor: 7 * 0.352 + 2 * 0.114 + 5 * 0.066 = 3.022; C major: 0.8 +
    // 0.3 + 1.015 + 0.2 + 0.5 = 2.815. At 0.1 for each E and B, which aren't in its scale, F minor
    // would have 2.222.
    EXPECT_EQ(DetectCounts({5, 0, 0, 0, 3, 7, 0, 2, 0, 0, 0, 5}), Minor(5));
}

TEST(KeyDetectorTest, MajorNeedsTonicFourthAndLeadingTone) {
    // C 5, E 3, F 5, G 2, B 5. C major: 0.8 + 0.3 + 0.725 + 0.2 + 0.5 = 2.525. The best minor key
    // is F: 5 * 0.352 + 2 * 0.114 + 5 * 0.066 = 2.318.
    for (std::uint16_t tonic = 0; tonic < 12; ++tonic) {
        std::array<int, 12> counts{};
        counts[tonic] = 5;
        counts[(tonic + 4U) % 12] = 3;
        counts[(tonic + 5U) % 12] = 5;
        counts[(tonic + 7U) % 12] = 2;
        counts[(tonic + 11U) % 12] = 5;
        EXPECT_EQ(DetectCounts(counts), Major(tonic));
    }
}

TEST(KeyDetectorTest, NamesTheBestOfTheTwentyFourCorrelations) {
    std::mt19937 random(3);
    int majors = 0;
    for (int round = 0; round < 3000; ++round) {
        // Leaning towards tonic, third, fourth, fifth and leading tone of C, so that major keys
        // occur.
        std::array<int, 12> counts{};
        for (std::size_t const pitch : {0U, 4U, 5U, 7U, 11U}) {
            counts[pitch] = static_cast<int>(random() % 12);
        }
        counts[random() % 12] += 2;
        double best = 0.0;
        double second = 0.0;
        CKey expected{0, CPfKeyDetector::kNoKey};
        for (std::uint16_t mode = 1; mode <= 2; ++mode) {
            for (std::uint16_t tonic = 0; tonic < 12; ++tonic) {
                double sum = 0.0;
                for (std::size_t i = 0; i < 12; ++i) {
                    CKeyProfile const& profile = mode == 1 ? g_fMinorKeyMap : g_fMajorKeyMap;
                    sum += static_cast<double>(profile[(i + 12 - tonic) % 12]) * counts[i];
                }
                if (sum > best) {
                    second = best;
                    best = sum;
                    expected = {tonic, mode};
                } else if (sum > second) {
                    second = sum;
                }
            }
        }
        // Closer ones are for the rounding to decide.
        if (best - second > 1.0e-3) {
            ASSERT_EQ(DetectCounts(counts), expected) << round;
            majors += expected.m_nMode == CPfKeyDetector::kMajor ? 1 : 0;
        }
    }
    EXPECT_GT(majors, 20);
}
