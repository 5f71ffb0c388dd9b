// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/OpeningShape.h"
#include "support/SongLength.h"
#include "support/Strokes.h"

#include <algorithm>
#include <gtest/gtest.h>

// Openings are made of strokes at known elements, so that every shift is known.

namespace {

TEST(OpeningShapeTest, LoudnessLeavesTheShapeAlmostAsItIs) {
    std::vector<double> const song = StrokesOf(1, kOpeningElements);
    COpeningShape const loud(LevelsFrom(song));
    std::vector<double> quiet = song;
    std::ranges::for_each(quiet, [](double& value) { value *= 0.25; });
    // The levels are shares of the highest one: a song that is turned down has the same ones.
    EXPECT_TRUE(std::ranges::equal(loud.Steps(), COpeningShape(LevelsFrom(quiet)).Steps()));
}

TEST(OpeningShapeTest, AnchorsAreStrokesThatStandOut) {
    // Three strokes, farther apart than 40 elements; the second of two near ones is lower.
    std::vector<double> song(1024, 1.0);
    AddStroke(song, 100, 200.0);
    AddStroke(song, 300, 200.0);
    AddStroke(song, 320, 20.0);
    AddStroke(song, 700, 100.0);
    std::vector<std::int32_t> const anchors = COpeningShape(LevelsFrom(song)).Anchors();
    // The levels of one element are spread over three, so that a rise begins an element early.
    ASSERT_EQ(anchors.size(), 3U);
    EXPECT_NEAR(anchors[0], 100, 1);
    EXPECT_NEAR(anchors[1], 300, 1);
    EXPECT_NEAR(anchors[2], 700, 1);
}

TEST(OpeningShapeTest, SilenceHasNoAnchors) {
    EXPECT_TRUE(COpeningShape(std::vector<std::uint8_t>(kOpeningElements, 0)).Anchors().empty());
    EXPECT_TRUE(COpeningShape(std::vector<std::uint8_t>()).Anchors().empty());
}

TEST(OpeningShapeTest, CodeNeedsThirtyThreeBinsBehindItsAnchor) {
    COpeningShape const shape(LevelsFrom(StrokesOf(1, 600)));
    bool isThere = false;
    (void)shape.CodeAt(600 - 33 * 12, &isThere);
    EXPECT_TRUE(isThere);
    EXPECT_EQ(shape.CodeAt(600 - 33 * 12 + 1, &isThere), 0U);
    EXPECT_FALSE(isThere);
    (void)shape.CodeAt(-1, &isThere);
    EXPECT_FALSE(isThere);
}

TEST(OpeningShapeTest, CodeSaysWhetherEachBinIsAboveTheOneBefore) {
    // A plateau of 12 elements is bin 1 and nothing else: the first bit is set, the second isn't.
    std::vector<std::uint8_t> levels(600, 10);
    std::fill_n(levels.begin() + 112, 12, std::uint8_t{200});
    bool isThere = false;
    std::uint32_t const code = COpeningShape(levels).CodeAt(100, &isThere);
    EXPECT_TRUE(isThere);
    EXPECT_EQ(code >> 30U, 2U);
}

TEST(OpeningShapeTest, CutIsFoundToTheElement) {
    std::vector<double> const song = StrokesOf(2, kOpeningElements + 172);
    COpeningShape const whole(LevelsFrom(std::vector<double>(song.begin(), song.end() - 172)));
    COpeningShape const cut(LevelsFrom(std::vector<double>(song.begin() + 172, song.end())));
    CShapeMatch const match = MatchShapes(whole, cut);
    EXPECT_EQ(match.m_nShift, 172);
    EXPECT_GT(match.m_dLikeness, 0.95); // what differs is at the ends, and in the highest level
    EXPECT_EQ(MatchShapes(cut, whole).m_nShift, -172);
}

TEST(OpeningShapeTest, ItselfIsWhollyAlikeAndAnotherIsNot) {
    COpeningShape const song(LevelsFrom(StrokesOf(3, kOpeningElements)));
    EXPECT_NEAR(MatchShapes(song, song).m_dLikeness, 1.0, 1e-12); // a quotient of two roots
    COpeningShape const other(LevelsFrom(StrokesOf(4, kOpeningElements)));
    EXPECT_LT(MatchShapes(song, other).m_dLikeness, 0.5);
}

TEST(OpeningShapeTest, LessThanThreeSecondsTogetherAreNotCompared) {
    COpeningShape const song(LevelsFrom(StrokesOf(3, 511)));
    EXPECT_EQ(MatchShapes(song, song).m_dLikeness, 0.0);
    COpeningShape const longer(LevelsFrom(StrokesOf(3, 512)));
    EXPECT_GT(MatchShapes(longer, longer).m_dLikeness, 0.99);
}

} // namespace
