// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SameSongs.h"
#include "support/SongLength.h"
#include "support/Strokes.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Openings are made of strokes, so that what is the same song, and by how much it is cut, is known.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kElementSeconds = 256.0 / 44100.0;

bool EarlierIsBetter(std::size_t a, std::size_t b) {
    return a < b;
}

/// Songs for the search, with their levels.
class SameSongsTest : public testing::Test {
protected:
    void Add(std::vector<double> const& envelope, double seconds = 180.0,
             EKeyMode mode = EKeyMode::Minor, std::int32_t tonic = 9) {
        m_vLevels.push_back(LevelsFrom(envelope));
        CSongMarks& song = m_vSongs.emplace_back();
        song.m_dSeconds = seconds;
        song.m_eMode = mode;
        song.m_nTonic = tonic;
    }

    std::vector<std::vector<CSameSong>> Find(BetterSong const& isBetter = EarlierIsBetter) {
        for (std::size_t i = 0; i < m_vSongs.size(); ++i) {
            m_vSongs[i].m_opening = m_vLevels[i];
        }
        return FindSameSongs(m_vSongs, isBetter);
    }

    static std::vector<std::size_t> PlacesOf(std::vector<CSameSong> const& group) {
        std::vector<std::size_t> places;
        for (CSameSong const& song : group) {
            places.push_back(song.m_nSong);
        }
        return places;
    }

    /// The song of `seed` from element `from` on.
    static std::vector<double> CutSong(std::uint32_t seed, std::size_t from) {
        std::vector<double> const song = StrokesOf(seed, kOpeningElements + from);
        return {song.begin() + static_cast<std::ptrdiff_t>(from), song.end()};
    }

    /// With every value off by a factor that `seed` draws, from 1 / (1 + most) to 1 + most.
    static std::vector<double> Roughened(std::vector<double> song, double most,
                                         std::uint32_t seed) {
        for (double& value : song) {
            seed = seed * 1664525U + 1013904223U;
            double const share = static_cast<double>(seed >> 8U) / 16777216.0;
            value *= std::pow(1.0 + most, 2.0 * share - 1.0);
        }
        return song;
    }

    std::vector<std::vector<std::uint8_t>> m_vLevels;
    std::vector<CSongMarks> m_vSongs;
};

TEST_F(SameSongsTest, NothingIsFoundInNothing) {
    EXPECT_THAT(Find(), IsEmpty());
    Add(StrokesOf(1, kOpeningElements));
    EXPECT_THAT(Find(), IsEmpty());
}

TEST_F(SameSongsTest, CopiesAreFoundAmongOthersWithTheirOffsets) {
    Add(StrokesOf(1, kOpeningElements));
    Add(StrokesOf(2, kOpeningElements));
    Add(CutSong(1, 172), 179.0);
    Add(Roughened(CutSong(2, 86), 0.2, 7), 179.5);
    Add(StrokesOf(3, kOpeningElements));
    auto const groups = Find();
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_THAT(PlacesOf(groups[0]), ElementsAre(0, 2));
    // 172 elements are missing at the start of the second: its music begins earlier.
    EXPECT_NEAR(groups[0][1].m_dOffsetSeconds, -172 * kElementSeconds, 1e-9);
    EXPECT_EQ(groups[0][0].m_dOffsetSeconds, 0.0);
    EXPECT_EQ(groups[0][0].m_dLikeness, 1.0);
    EXPECT_THAT(PlacesOf(groups[1]), ElementsAre(1, 3));
    EXPECT_NEAR(groups[1][1].m_dOffsetSeconds, -86 * kElementSeconds, 1e-9);
}

TEST_F(SameSongsTest, TheBetterOneComesFirstAndOffsetsCountFromIt) {
    Add(CutSong(1, 172), 179.0);
    Add(StrokesOf(1, kOpeningElements));
    auto const groups = Find([](std::size_t a, std::size_t b) { return a > b; });
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_THAT(PlacesOf(groups[0]), ElementsAre(1, 0));
    EXPECT_NEAR(groups[0][1].m_dOffsetSeconds, -172 * kElementSeconds, 1e-9);
}

TEST_F(SameSongsTest, AnotherLengthIsAnotherVersion) {
    Add(StrokesOf(1, kOpeningElements), 180.0);
    Add(StrokesOf(1, kOpeningElements), 185.0);
    Add(StrokesOf(1, kOpeningElements), 200.0);
    auto const groups = Find();
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_THAT(PlacesOf(groups[0]), ElementsAre(0, 1));
}

TEST_F(SameSongsTest, TwoOfFourHaveToAgree) {
    // Lengths are a second apart and outros too; the key is the same.
    Add(StrokesOf(1, kOpeningElements), 180.0, EKeyMode::Minor, 9);
    Add(StrokesOf(1, kOpeningElements), 181.0, EKeyMode::Minor, 9);
    m_vSongs[1].m_dOutroSeconds += 1.0;
    EXPECT_THAT(Find(), IsEmpty());
    m_vSongs[1].m_dOutroSeconds -= 1.05; // within a tenth of a second
    EXPECT_EQ(Find().size(), 1U);
    m_vSongs[1].m_nTonic = 8;
    EXPECT_THAT(Find(), IsEmpty());
    m_vSongs[1].m_dSeconds = 180.2;
    EXPECT_EQ(Find().size(), 1U);
}

TEST_F(SameSongsTest, ThreeOfFourHaveToAgreeWhereOpeningsDiffer) {
    Add(StrokesOf(1, kOpeningElements), 180.0, EKeyMode::Minor, 9);
    Add(Roughened(StrokesOf(1, kOpeningElements), 4.0, 5), 180.0, EKeyMode::Minor, 9);
    auto const groups = Find();
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_GT(groups[0][1].m_dLikeness, 0.70);
    EXPECT_LT(groups[0][1].m_dLikeness, 0.93);
    m_vSongs[1].m_nTonic = 8;
    EXPECT_THAT(Find(), IsEmpty());
}

TEST_F(SameSongsTest, ExcerptOfTheSameSpotAgreesWhereverItsFrameBegins) {
    // 130 values of noise, 16 samples between the two captures: 4 values.
    std::vector<float> spot;
    std::uint32_t seed = 3;
    for (int i = 0; i < 132; ++i) {
        seed = seed * 1664525U + 1013904223U;
        spot.push_back(static_cast<float>(seed >> 8U) / 8388608.0f - 1.0f);
    }
    Add(StrokesOf(1, kOpeningElements), 180.0, EKeyMode::Minor, 9);
    Add(StrokesOf(1, kOpeningElements), 181.0, EKeyMode::Minor, 9);
    m_vSongs[1].m_dOutroSeconds = 9.0;
    m_vSongs[0].m_excerpt = std::span<float const>(spot).first(128);
    m_vSongs[1].m_excerpt = std::span<float const>(spot).last(128);
    m_vSongs[0].m_dExcerptSeconds = 3.0;
    m_vSongs[1].m_dExcerptSeconds = 3.0 + 16.0 / 44100.0;
    EXPECT_EQ(Find().size(), 1U);
    m_vSongs[1].m_dExcerptSeconds = 3.5; // the same values, but of another spot
    EXPECT_THAT(Find(), IsEmpty());
}

TEST_F(SameSongsTest, SilenceIsNoCopyOfSilence) {
    Add(std::vector<double>(kOpeningElements, 1.0));
    Add(std::vector<double>(kOpeningElements, 1.0));
    EXPECT_THAT(Find(), IsEmpty());
}

TEST_F(SameSongsTest, SongsOfOneMachineRhythmAreNotTheSame) {
    for (std::uint32_t seed = 0; seed < 40; ++seed) {
        // All as long, and in one key.
        Add(MachineStrokesOf(seed, kOpeningElements, 126.0), 240.0);
        m_vSongs.back().m_dOutroSeconds = 200.0 + seed;
    }
    EXPECT_THAT(Find(), IsEmpty());
}

TEST_F(SameSongsTest, ManyCopiesOfOneRhythmAreAllFound) {
    // More than are looked at around an entry of the index, with others of the same beat between.
    for (std::uint32_t i = 0; i < 60; ++i) {
        Add(MachineStrokesOf(i % 2 == 0 ? 1 : 100 + i, kOpeningElements, 126.0));
        m_vSongs.back().m_dOutroSeconds = i % 2 == 0 ? 150.0 : 100.0 + 0.5 * i;
    }
    auto const groups = Find();
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(groups[0].size(), 30U);
}

} // namespace
