// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/mix/MixParamGen.h"

#include "engine/ProfileResults.h"
#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/PcmThumbnail.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

namespace {

// One element a sample and 4 samples a second: at 60 BPM a measure is 16 samples, 16 elements.
constexpr std::uint32_t kRate = 4;
constexpr float kBpm = 60.0f;

CPfPcmThumbnail MakeThumbnail(std::vector<float> const& elements, float bpm = kBpm) {
    CPfPcmThumbnail thumbnail;
    thumbnail.Initialize(static_cast<std::int64_t>(elements.size()), kRate, 1);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        thumbnail.SetAt(static_cast<std::int32_t>(i), elements[i]);
    }
    thumbnail.ApplyBpm(bpm);
    return thumbnail;
}

CPfImpactPoints MakeGrid(std::int32_t count, std::int64_t step, std::uint16_t resolution) {
    CPfImpactPoints grid(kRate, count * step);
    for (std::int32_t i = 0; i < count; ++i) {
        grid.Add(i * step);
    }
    grid.SetResolution(resolution);
    return grid;
}

std::vector<std::int64_t> ToVector(CProfileResults::CPositions const& positions) {
    return {positions.begin(), positions.end()};
}

} // namespace

TEST(MixParamGenTest, IntroEndsAtTheFirstElementAboveATenthOfTheLoudest) {
    // 32 elements of 1: the running average, element 0 kept, comes to 17 / 16 of them at the most.
    std::vector<float> elements(40, 1.0f);
    for (std::size_t i = 0; i < 8; ++i) {
        elements[i] = 0.05f;
    }
    CPfPcmThumbnail const thumbnail = MakeThumbnail(elements);
    EXPECT_EQ(CPfMixParamGen::FindIntroEnd(&thumbnail), 8);
}

TEST(MixParamGenTest, IntroOfATrackThatIsNeverLoudEndsAtZero) {
    CPfPcmThumbnail const thumbnail = MakeThumbnail(std::vector<float>(40, 0.0f));
    EXPECT_EQ(CPfMixParamGen::FindIntroEnd(&thumbnail), 0);
}

TEST(MixParamGenTest, OutroOfATrackShorterThanAMeasureStartsAtTheLastSample) {
    CPfPcmThumbnail const thumbnail = MakeThumbnail(std::vector<float>(16, 1.0f));
    EXPECT_EQ(CPfMixParamGen::FindOutroStart(&thumbnail), 15);
}

TEST(MixParamGenTest, OutroWithoutATempoStartsAtZero) {
    CPfPcmThumbnail const thumbnail = MakeThumbnail(std::vector<float>(40, 1.0f), 0.0f);
    EXPECT_EQ(CPfMixParamGen::FindOutroStart(&thumbnail), 0);
}

TEST(MixParamGenTest, OutroStartsAtTheQuietElementOfTheLastLoudMeasure) {
    // Loud up to element 39, then silence. Seen from the end, the sixteen elements from 31 on hold
    // nine loud ones: 9 / 16 > 0.5 * 17 / 16, which is 8.5 / 16. So the measure is 31..46, and its
    // first element below a fifth of the loudest average is 40.
    std::vector<float> elements(60, 0.0f);
    for (std::size_t i = 0; i < 40; ++i) {
        elements[i] = 1.0f;
    }
    CPfPcmThumbnail const thumbnail = MakeThumbnail(elements);
    EXPECT_EQ(CPfMixParamGen::FindOutroStart(&thumbnail), 40);
}

TEST(MixParamGenTest, OutroOfATrackThatIsNeverLoudEnoughStartsAtTheLastSample) {
    CPfPcmThumbnail const thumbnail = MakeThumbnail(std::vector<float>(60, 0.0f));
    EXPECT_EQ(CPfMixParamGen::FindOutroStart(&thumbnail), 59);
}

TEST(MixParamGenTest, FadePointsComeWhereTheLevelPassesTheNextStep) {
    // Average at most 17 / 16; threshold 0.2125. Every element falls by (1 - 0.2125) * 131.072,
    // which is more than the cap of 600 / 4 = 150? It is 103.2, so the level falls by 103.2 an
    // element. The level passes -600 with the 6th element (-619.3) and -1200 with the 12th
    // (-1238.6).
    std::array<std::uint64_t, 3> points{};
    CPfPcmThumbnail const thumbnail = MakeThumbnail(std::vector<float>(40, 1.0f));
    EXPECT_TRUE(CPfMixParamGen::BuildIntroFadePoints(points.data(), 3, -600, -600, &thumbnail, 2));
    EXPECT_EQ(points, (std::array<std::uint64_t, 3>{2, 7, 13}));
}

TEST(MixParamGenTest, FadeLevelFallsByTheCapAtMost) {
    // A cap of 100 / 4 = 25 an element: -50 is passed with the third element, at -75.
    std::array<std::uint64_t, 2> points{};
    CPfPcmThumbnail const thumbnail = MakeThumbnail(std::vector<float>(40, 1.0f));
    EXPECT_TRUE(CPfMixParamGen::BuildIntroFadePoints(points.data(), 2, -50, -100, &thumbnail, 0));
    EXPECT_EQ(points[1], 2U);
}

TEST(MixParamGenTest, FadePointsThatAreNotReachedLieAtTheEnd) {
    std::array<std::uint64_t, 3> points{};
    CPfPcmThumbnail const thumbnail = MakeThumbnail(std::vector<float>(40, 0.0f));
    EXPECT_TRUE(CPfMixParamGen::BuildIntroFadePoints(points.data(), 3, -600, -600, &thumbnail, 5));
    // A silent track has a threshold of 0, which a 0 doesn't exceed.
    EXPECT_EQ(points, (std::array<std::uint64_t, 3>{5, 40, 40}));
}

TEST(MixParamGenTest, FadePointsNeedAWholeElementASecond) {
    CPfPcmThumbnail thumbnail;
    thumbnail.Initialize(100, 4, 8);
    std::array<std::uint64_t, 2> points{7, 7};
    EXPECT_FALSE(CPfMixParamGen::BuildIntroFadePoints(points.data(), 2, -600, -600, &thumbnail, 0));
    EXPECT_EQ(points[0], 7U);
}

TEST(MixParamGenTest, RangeFromTheStartIsMovedBackToTheFirstWholeSpan) {
    CPfPcmThumbnail const loud = MakeThumbnail(std::vector<float>(400, 1.0f));
    CPfImpactPoints const grid = MakeGrid(50, 8, 4);
    std::int32_t start = 0;
    std::int32_t end = 0;
    // Span 4 * 2 = 8 points; the anchor is point 20: back twice, to 4.
    EXPECT_TRUE(CPfMixParamGen::FindSuitableBeatRange(&grid, &loud, 2, 160, false, &start, &end));
    EXPECT_EQ(start, 4);
    EXPECT_EQ(end, 12);
}

TEST(MixParamGenTest, RangeFromTheEndIsMovedToTheLastWholeSpan) {
    CPfPcmThumbnail const loud = MakeThumbnail(std::vector<float>(400, 1.0f));
    CPfImpactPoints const grid = MakeGrid(50, 8, 4);
    std::int32_t start = 0;
    std::int32_t end = 0;
    // From 4..12 on while the end plus 8 lies below 50: 12, 20, 28, 36, 44.
    EXPECT_TRUE(CPfMixParamGen::FindSuitableBeatRange(&grid, &loud, 2, 32, true, &start, &end));
    EXPECT_EQ(start, 36);
    EXPECT_EQ(end, 44);
}

TEST(MixParamGenTest, RangeMovesForwardWhileItIsQuiet) {
    // Quiet up to sample 128, which is point 16: the ranges 0..8 and 8..16 are passed over. The
    // second one ends on the first loud element: 1 / 64 stays below 0.15.
    std::vector<float> elements(400, 1.0f);
    for (std::size_t i = 0; i < 128; ++i) {
        elements[i] = 0.0f;
    }
    CPfPcmThumbnail const thumbnail = MakeThumbnail(elements);
    CPfImpactPoints const grid = MakeGrid(50, 8, 4);
    std::int32_t start = 0;
    std::int32_t end = 0;
    EXPECT_TRUE(
        CPfMixParamGen::FindSuitableBeatRange(&grid, &thumbnail, 2, 0, false, &start, &end));
    EXPECT_EQ(start, 16);
    EXPECT_EQ(end, 24);
}

TEST(MixParamGenTest, QuietTrackEndsTheWalkAtTheLastRangeOfTheGrid) {
    std::vector<float> elements(400, 0.0f);
    elements[399] = 1.0f; // the loudest average is above 0
    CPfPcmThumbnail const thumbnail = MakeThumbnail(elements);
    CPfImpactPoints const grid = MakeGrid(49, 8, 4);
    std::int32_t start = 0;
    std::int32_t end = 0;
    // 0..8, 8..16, ... 40..48; then 48..56 exceeds the 49 points and is taken back.
    EXPECT_TRUE(
        CPfMixParamGen::FindSuitableBeatRange(&grid, &thumbnail, 2, 0, false, &start, &end));
    EXPECT_EQ(start, 40);
    EXPECT_EQ(end, 48);
    // And from the end: 40..48 down to 0..8; then -8 is taken back.
    EXPECT_TRUE(CPfMixParamGen::FindSuitableBeatRange(&grid, &thumbnail, 2, 0, true, &start, &end));
    EXPECT_EQ(start, 0);
    EXPECT_EQ(end, 8);
}

TEST(MixParamGenTest, PinsShortGridRangeMayBeginBeforeTheGrid) {
    CPfPcmThumbnail loud = MakeThumbnail(std::vector<float>(400, 1.0f));
    CPfImpactPoints grid = MakeGrid(10, 8, 4);
    grid.AddMeasStartMark(24);
    std::int32_t start = 0;
    std::int32_t end = 0;
    // Point 3 and a span of 8: the range would end at 11, past the 10 points, so it is -5..3.
    EXPECT_TRUE(CPfMixParamGen::FindSuitableBeatRange(&grid, &loud, 2, 24, false, &start, &end));
    EXPECT_EQ(start, -5);
    EXPECT_EQ(end, 3);
}

TEST(MixParamGenTest, EmptyGridHasNoRange) {
    CPfPcmThumbnail const loud = MakeThumbnail(std::vector<float>(400, 1.0f));
    CPfImpactPoints const grid(kRate, 400);
    std::int32_t start = 7;
    std::int32_t end = 7;
    EXPECT_FALSE(CPfMixParamGen::FindSuitableBeatRange(&grid, &loud, 2, 0, false, &start, &end));
    EXPECT_EQ(start, 7);
}

TEST(MixParamGenTest, GridGivesThePairsNearBothEnds) {
    CPfPcmThumbnail loud = MakeThumbnail(std::vector<float>(400, 1.0f));
    CPfImpactPoints grid = MakeGrid(50, 8, 4);
    grid.AddMeasStartMark(160);
    CProfileResults results;
    results.SetBpm(kBpm);
    EXPECT_TRUE(CPfMixParamGen::BuildBeatMixSprockets(&loud, &grid, 2, nullptr, &results));
    // Intro 4..12 as above; outro from point 20..28 on: 28..36, 36..44.
    EXPECT_EQ(ToVector(results.GetIntroSprockets()), (std::vector<std::int64_t>{32, 96}));
    EXPECT_EQ(ToVector(results.GetOutroSprockets()), (std::vector<std::int64_t>{288, 352}));
}

TEST(MixParamGenTest, PairsThatTouchFallBackToTheOuterOnes) {
    // 17 points, span 8: intro 0..8, outro 8..16; the intro's end is not before the outro's start.
    // A constant envelope has no onsets, so the intro's end and the outro's start stand alone.
    CPfPcmThumbnail loud = MakeThumbnail(std::vector<float>(400, 1.0f));
    CPfImpactPoints grid = MakeGrid(17, 8, 4);
    grid.AddMeasStartMark(0);
    CProfileResults results;
    results.SetBpm(kBpm);
    EXPECT_TRUE(CPfMixParamGen::BuildBeatMixSprockets(&loud, &grid, 2, nullptr, &results));
    // Outro: nine elements from the end reach 9 / 16 > 8.5 / 16, at 391; none of the measure lies
    // below the maximum, so it starts there. Gap 391 > 2 * 16, and L = 2 * 16 fits.
    EXPECT_EQ(ToVector(results.GetIntroSprockets()), (std::vector<std::int64_t>{0, 32}));
    EXPECT_EQ(ToVector(results.GetOutroSprockets()), (std::vector<std::int64_t>{391, 359}));
}

TEST(MixParamGenTest, OnlyAnIntroRangeFallsBackToTheOuterOnes) {
    CPfPcmThumbnail loud = MakeThumbnail(std::vector<float>(400, 1.0f));
    CPfImpactPoints const unmarked = MakeGrid(50, 8, 4);
    CProfileResults results;
    results.SetBpm(kBpm);
    results.AddIntroBeatMixSproc(1);
    results.AddIntroBeatMixSproc(2);
    EXPECT_TRUE(CPfMixParamGen::BuildBeatMixSprockets(&loud, &unmarked, 2, nullptr, &results));
    EXPECT_EQ(ToVector(results.GetIntroSprockets()), (std::vector<std::int64_t>{0, 32}));
}

TEST(MixParamGenTest, PinsOuterOutroPairDescends) {
    CPfPcmThumbnail loud = MakeThumbnail(std::vector<float>(400, 1.0f));
    CProfileResults results;
    results.SetBpm(kBpm);
    EXPECT_TRUE(CPfMixParamGen::BuildBeatMixSprocketsClassic(&loud, nullptr, 2, &results));
    ASSERT_EQ(results.GetOutroSprockets().GetCount(), 2U);
    EXPECT_GT(results.GetOutroSprockets()[0], results.GetOutroSprockets()[1]);
}

TEST(MixParamGenTest, GapOfExactlyTwoMeasuresHasOnlyTheOuterSprockets) {
    // 41 elements of 1: outro at 41 - 9 = 32, which is two measures of 16 after the intro's end.
    CPfPcmThumbnail loud = MakeThumbnail(std::vector<float>(41, 1.0f));
    CProfileResults results;
    results.SetBpm(kBpm);
    EXPECT_TRUE(CPfMixParamGen::BuildBeatMixSprocketsClassic(&loud, nullptr, 2, &results));
    EXPECT_EQ(ToVector(results.GetIntroSprockets()), (std::vector<std::int64_t>{0}));
    EXPECT_EQ(ToVector(results.GetOutroSprockets()), (std::vector<std::int64_t>{32}));
}

TEST(MixParamGenTest, OuterStretchIsHalvedUntilItFitsTwice) {
    // Gap 33 > 32: L = 8 * 16 = 128, halved while 2 L > 33: 64, 32, 16.
    CPfPcmThumbnail loud = MakeThumbnail(std::vector<float>(42, 1.0f));
    CProfileResults results;
    results.SetBpm(kBpm);
    EXPECT_TRUE(CPfMixParamGen::BuildBeatMixSprocketsClassic(&loud, nullptr, 8, &results));
    EXPECT_EQ(ToVector(results.GetIntroSprockets()), (std::vector<std::int64_t>{0, 16}));
    EXPECT_EQ(ToVector(results.GetOutroSprockets()), (std::vector<std::int64_t>{33, 17}));
}

TEST(MixParamGenTest, IntroEndsAboveTheLimitNotOnIt) {
    CPfPcmThumbnail thumbnail = MakeThumbnail(std::vector<float>(40, 16.0f));
    float const limit = 0.1f * thumbnail.GetMaxRunningMeasAvg();
    thumbnail.SetAt(0, limit);
    thumbnail.SetAt(1, std::nextafter(limit, 100.0f));
    EXPECT_EQ(CPfMixParamGen::FindIntroEnd(&thumbnail), 1);
}

TEST(MixParamGenTest, OutroFoundAtTheVeryStartIsTheLastSample) {
    // The only loud measure is the one from element 0 on.
    std::vector<float> elements(20, 0.0f);
    elements[0] = 1.0f;
    CPfPcmThumbnail const thumbnail = MakeThumbnail(elements);
    EXPECT_EQ(CPfMixParamGen::FindOutroStart(&thumbnail), 19);
}

TEST(MixParamGenTest, OutroOfNoElementsIsZero) {
    CPfPcmThumbnail const thumbnail = MakeThumbnail({});
    EXPECT_EQ(CPfMixParamGen::FindOutroStart(&thumbnail), 0);
}

TEST(MixParamGenTest, QuietElementsPassStepsThatOneLoudOneLeft) {
    // Average 30 / 16, threshold 0.375; the level falls to -(30 - 0.375) * 131.072 = -3883 at once.
    // That element passes -600, and each of the silent ones behind it one more, up to -3600.
    std::vector<float> elements(40, 0.0f);
    elements[3] = 30.0f;
    CPfPcmThumbnail const thumbnail = MakeThumbnail(elements);
    std::array<std::uint64_t, 9> points{};
    EXPECT_TRUE(
        CPfMixParamGen::BuildIntroFadePoints(points.data(), 9, -600, -20'000, &thumbnail, 0));
    EXPECT_EQ(points, (std::array<std::uint64_t, 9>{0, 3, 4, 5, 6, 7, 8, 40, 40}));
}

TEST(MixParamGenTest, FadePointsFillTheRoomGivenAndNoMore) {
    CPfPcmThumbnail const thumbnail = MakeThumbnail(std::vector<float>(40, 1.0f));
    std::array<std::uint64_t, 2> points{7, 7};
    EXPECT_TRUE(CPfMixParamGen::BuildIntroFadePoints(points.data(), 0, -600, -600, &thumbnail, 2));
    EXPECT_EQ(points, (std::array<std::uint64_t, 2>{7, 7}));
    EXPECT_TRUE(CPfMixParamGen::BuildIntroFadePoints(points.data(), 1, -600, -600, &thumbnail, 2));
    EXPECT_EQ(points, (std::array<std::uint64_t, 2>{2, 7}));
}

TEST(MixParamGenTest, FadePointsFromOutsideLieAtTheEnd) {
    CPfPcmThumbnail const thumbnail = MakeThumbnail(std::vector<float>(40, 1.0f));
    std::array<std::uint64_t, 2> points{7, 7};
    EXPECT_TRUE(CPfMixParamGen::BuildIntroFadePoints(points.data(), 2, -1, -600, &thumbnail, 90));
    EXPECT_EQ(points, (std::array<std::uint64_t, 2>{90, 40}));
}

TEST(MixParamGenTest, ARangeWithoutPointsStaysWhereItIs) {
    CPfPcmThumbnail const loud = MakeThumbnail(std::vector<float>(400, 1.0f));
    CPfImpactPoints const grid = MakeGrid(50, 8, 4);
    for (bool const fromEnd : {false, true}) {
        std::int32_t start = 0;
        std::int32_t end = 0;
        EXPECT_TRUE(
            CPfMixParamGen::FindSuitableBeatRange(&grid, &loud, 0, 160, fromEnd, &start, &end));
        EXPECT_EQ(start, 20);
        EXPECT_EQ(end, 20);
    }
}

TEST(MixParamGenTest, ARangeMayEndWhereTheGridDoes) {
    // 17 points, a span of 8, quiet up to point 8: 0..8 and 8..16 are quiet, 16..24 exceeds the
    // grid and is taken back. Of 16 points 8..16 ends one past the last point, which is allowed;
    // its average reaches to the end of the track.
    std::vector<float> elements(400, 0.0f);
    elements[399] = 400.0f;
    CPfPcmThumbnail const thumbnail = MakeThumbnail(elements);
    for (std::int32_t const count : {16, 17}) {
        CPfImpactPoints const grid = MakeGrid(count, 8, 4);
        std::int32_t start = 0;
        std::int32_t end = 0;
        EXPECT_TRUE(
            CPfMixParamGen::FindSuitableBeatRange(&grid, &thumbnail, 2, 0, false, &start, &end));
        EXPECT_EQ(start, 8) << count;
        EXPECT_EQ(end, 16) << count;
    }
}
