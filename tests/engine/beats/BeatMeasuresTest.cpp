// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/beats/BeatBuilder.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr std::int64_t kGridStep = 100; // samples from one grid point to the next

CPfImpactPoints MakePoints(std::vector<std::int64_t> const& positions, std::uint16_t resolution) {
    CPfImpactPoints points(100, positions.empty() ? 0 : positions.back() + kGridStep);
    for (std::int64_t const position : positions) {
        points.Add(position);
    }
    points.SetResolution(resolution);
    return points;
}

std::vector<std::int64_t> Even(std::int32_t count, std::int64_t first = 0) {
    std::vector<std::int64_t> positions;
    for (std::int32_t i = 0; i < count; ++i) {
        positions.push_back(first + i * kGridStep);
    }
    return positions;
}

std::vector<std::int64_t> Marks(CPfImpactPoints const& points) {
    auto const marks = points.MeasStartMarks();
    return {marks.begin(), marks.end()};
}

/// One element for every ten samples, so ten to a grid step.
CPfPcmThumbnail MakeSteps(std::vector<float> const& elements) {
    CPfPcmThumbnail thumbnail;
    thumbnail.Initialize(static_cast<std::int64_t>(elements.size()) * 10, 100, 10);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        thumbnail.SetAt(static_cast<std::int32_t>(i), elements[i]);
    }
    return thumbnail;
}

/// `count` grid steps of silence with the given peaks, in the middle of a step.
CPfPcmThumbnail MakePeaks(std::int32_t count, std::vector<std::pair<std::int32_t, float>> peaks) {
    std::vector<float> elements(static_cast<std::size_t>(count) * 10, 0.0f);
    for (auto const& [step, level] : peaks) {
        elements[static_cast<std::size_t>(step) * 10 + 5] = level;
    }
    return MakeSteps(elements);
}

} // namespace

TEST(BeatMeasuresTest, NoResolutionIsTheOnlyFailure) {
    CPfImpactPoints points = MakePoints(Even(20), 0);
    CPfPcmThumbnail const thumbnail = MakePeaks(20, {});
    CPfBeatPattern pattern;
    pattern.Initialize(3);
    EXPECT_FALSE(CPfBeatBuilder::BuildMeasStartMarks(&thumbnail, &thumbnail, &points));
    EXPECT_FALSE(CPfBeatBuilder::BuildExtMeasStartMarks(&points));
    EXPECT_FALSE(CPfBeatBuilder::BuildBeatPattern(&thumbnail, &points, &pattern));
    EXPECT_EQ(pattern.GetCount(), 3);
    EXPECT_TRUE(Marks(points).empty());
}

TEST(BeatMeasuresTest, WithoutAttacksTheFirstPointIsTheDownbeat) {
    CPfImpactPoints points = MakePoints(Even(20), 8);
    CPfPcmThumbnail const silence = MakePeaks(20, {});
    EXPECT_TRUE(CPfBeatBuilder::BuildMeasStartMarks(&silence, &silence, &points));
    EXPECT_EQ(Marks(points), (std::vector<std::int64_t>{0}));
}

TEST(BeatMeasuresTest, AttacksVoteAndEnergyWeighs) {
    // At 30 BPM and 100 samples a second a measure has 800 samples: 80 elements, lead 2, rest 40.
    // Attacks at steps 2 and 10 vote for phase 2 (element 105: the closest point to sample
    // (103 + 1) * 10 = 1040 is point 10; element 25: sample 240, point 2). The energy of phase 2 is
    // that of the intervals which begin there: both peaks.
    CPfPcmThumbnail attacks = MakePeaks(24, {{2, 1.0f}, {10, 1.0f}});
    attacks.ApplyBpm(30.0f);
    CPfImpactPoints points = MakePoints(Even(24), 8);
    EXPECT_TRUE(CPfBeatBuilder::BuildMeasStartMarks(&attacks, &attacks, &points));
    EXPECT_EQ(Marks(points), (std::vector<std::int64_t>{200}));
}

TEST(BeatMeasuresTest, EnergyDecidesBetweenEqualVotesAndTheEarlierWinsATie) {
    CPfPcmThumbnail attacks = MakePeaks(24, {{2, 1.0f}, {13, 1.0f}});
    attacks.ApplyBpm(30.0f);
    CPfImpactPoints tie = MakePoints(Even(24), 8);
    EXPECT_TRUE(CPfBeatBuilder::BuildMeasStartMarks(&attacks, &attacks, &tie));
    EXPECT_EQ(Marks(tie), (std::vector<std::int64_t>{200}));

    CPfPcmThumbnail const louder = MakePeaks(24, {{2, 1.0f}, {13, 2.0f}});
    CPfImpactPoints decided = MakePoints(Even(24), 8);
    EXPECT_TRUE(CPfBeatBuilder::BuildMeasStartMarks(&louder, &attacks, &decided));
    EXPECT_EQ(Marks(decided), (std::vector<std::int64_t>{500}));
}

TEST(BeatMeasuresTest, AfterAnAttackHalfAMeasurePasses) {
    // Steps 2, 4 and 5: the second and the third lie within the 40 elements that rest (elements 25,
    // 45, 55), so only phase 2 has a vote. Step 11 (element 115), with silence for half a measure
    // before it, is tested again: phase 3.
    CPfPcmThumbnail attacks = MakePeaks(24, {{2, 1.0f}, {4, 1.0f}, {5, 1.0f}, {11, 1.0f}});
    attacks.ApplyBpm(30.0f);
    CPfPcmThumbnail const envelope = MakePeaks(24, {{4, 1.0f}, {5, 1.0f}, {11, 0.5f}});
    CPfImpactPoints points = MakePoints(Even(24), 8);
    EXPECT_TRUE(CPfBeatBuilder::BuildMeasStartMarks(&envelope, &attacks, &points));
    // The energies favour 4 and 5, which have no vote; phase 3 scores 0.5, phase 2 nothing.
    EXPECT_EQ(Marks(points), (std::vector<std::int64_t>{300}));
}

TEST(BeatMeasuresTest, AttackMustRiseFromTheLastHalfMeasure) {
    // Step 8 (element 85) is as loud as step 5 (element 55) before it: no rise, no vote, and
    // without energy in phase 5 the votes alone decide.
    CPfPcmThumbnail attacks = MakePeaks(24, {{5, 1.0f}, {8, 1.0f}});
    attacks.ApplyBpm(30.0f);
    CPfPcmThumbnail const envelope = MakePeaks(24, {{8, 1.0f}});
    CPfImpactPoints points = MakePoints(Even(24), 8);
    EXPECT_TRUE(CPfBeatBuilder::BuildMeasStartMarks(&envelope, &attacks, &points));
    EXPECT_EQ(Marks(points), (std::vector<std::int64_t>{500}));
}

TEST(BeatMeasuresTest, MarksThatStandAreKept) {
    CPfImpactPoints points = MakePoints(Even(20), 8);
    points.AddMeasStartMark(700);
    CPfPcmThumbnail const silence = MakePeaks(20, {});
    EXPECT_TRUE(CPfBeatBuilder::BuildMeasStartMarks(&silence, &silence, &points));
    EXPECT_EQ(Marks(points), (std::vector<std::int64_t>{700, 0}));
}

TEST(BeatMeasuresTest, NeighboursAreAlwaysLinearAndAPointToItselfNever) {
    CPfImpactPoints const points = MakePoints({0, 1, 500, 501}, 8);
    EXPECT_TRUE(CPfBeatBuilder::IsRangeLinear(&points, 1, 2));
    EXPECT_FALSE(CPfBeatBuilder::IsRangeLinear(&points, 2, 2));
}

TEST(BeatMeasuresTest, APointOffByTheToleranceIsStillEven) {
    // Step 100, tolerance 2.
    CPfImpactPoints const within = MakePoints({0, 102, 200}, 8);
    CPfImpactPoints const beyond = MakePoints({0, 103, 200}, 8);
    EXPECT_TRUE(CPfBeatBuilder::IsRangeLinear(&within, 0, 2));
    EXPECT_FALSE(CPfBeatBuilder::IsRangeLinear(&beyond, 0, 2));
}

TEST(BeatMeasuresTest, EvenGridGetsItsFirstAndLastMeasure) {
    // A mark on point 11 of 30: 11 mod 8 is 3; rest 30 - 11 - 1 = 18, two measures: point 27.
    CPfImpactPoints points = MakePoints(Even(30), 8);
    points.AddMeasStartMark(1100);
    EXPECT_TRUE(CPfBeatBuilder::BuildExtMeasStartMarks(&points));
    EXPECT_EQ(Marks(points), (std::vector<std::int64_t>{300, 1100, 2700}));
}

TEST(BeatMeasuresTest, MarkInTheFirstMeasureNeedsNoEarlierOne) {
    // Point 3 of 20: rest 16, t = 3 + 16 = 19.
    CPfImpactPoints points = MakePoints(Even(20), 8);
    points.AddMeasStartMark(300);
    EXPECT_TRUE(CPfBeatBuilder::BuildExtMeasStartMarks(&points));
    EXPECT_EQ(Marks(points), (std::vector<std::int64_t>{300, 1900}));
}

TEST(BeatMeasuresTest, BreakBehindAWholeEvenMeasureIsMarked) {
    // Points 0..16 even, then 50 samples late: 0..8 and 0..16 are linear, 0..24 is not. The mark is
    // where the even run ends, point 16. The last mark (1600) then leads on to point 32 of 34.
    std::vector<std::int64_t> positions = Even(17);
    for (std::int64_t const late : Even(17, 1750)) {
        positions.push_back(late);
    }
    CPfImpactPoints points = MakePoints(positions, 8);
    points.AddMeasStartMark(0);
    EXPECT_TRUE(CPfBeatBuilder::BuildExtMeasStartMarks(&points));
    EXPECT_EQ(Marks(points), (std::vector<std::int64_t>{0, 1600, 1750 + 15 * kGridStep}));
}

TEST(BeatMeasuresTest, PinsBreakInTheFirstMeasureMarksBackwardsOnly) {
    // A break between points 3 and 4. Forwards from a mark on 0: 0..8 is not linear, only the
    // anchor moves. Backwards from a mark on 8 the same break marks point 8 itself.
    std::vector<std::int64_t> positions = Even(4);
    for (std::int64_t const late : Even(13, 450)) {
        positions.push_back(late);
    }
    CPfImpactPoints forwards = MakePoints(positions, 8);
    forwards.AddMeasStartMark(0);
    EXPECT_TRUE(CPfBeatBuilder::BuildExtMeasStartMarks(&forwards));
    // Only the last measure is added: point 16 lies at 450 + 12 * 100.
    EXPECT_EQ(Marks(forwards), (std::vector<std::int64_t>{0, 1650}));

    CPfImpactPoints backwards = MakePoints(positions, 8);
    backwards.AddMeasStartMark(850); // point 8
    EXPECT_TRUE(CPfBeatBuilder::BuildExtMeasStartMarks(&backwards));
    EXPECT_EQ(Marks(backwards), (std::vector<std::int64_t>{0, 850, 850, 1650}));
}

TEST(BeatMeasuresTest, EmptyGridGetsNoMarks) {
    CPfImpactPoints points = MakePoints({}, 8);
    EXPECT_TRUE(CPfBeatBuilder::BuildExtMeasStartMarks(&points));
    EXPECT_TRUE(Marks(points).empty());
}

TEST(BeatMeasuresTest, PatternStartsAtTheDownbeat) {
    // Sixteen points, resolution 4, first mark on point 1: slot 0 gets the intervals that begin on
    // points 1, 5, 9 and 13. Peaks there are 4, those of the next interval 2, the rest silent: the
    // weights are 1, 0.5, 0, 0.
    std::vector<std::pair<std::int32_t, float>> peaks;
    for (std::int32_t j = 1; j < 16; j += 4) {
        peaks.emplace_back(j, 4.0f);
        peaks.emplace_back(j + 1, 2.0f);
    }
    CPfPcmThumbnail const thumbnail = MakePeaks(18, peaks);
    CPfImpactPoints points = MakePoints(Even(16), 4);
    points.AddMeasStartMark(100);
    CPfBeatPattern pattern;
    EXPECT_TRUE(CPfBeatBuilder::BuildBeatPattern(&thumbnail, &points, &pattern));
    ASSERT_EQ(pattern.GetCount(), 4);
    EXPECT_EQ(pattern.GetValue(0), 1.0f);
    EXPECT_EQ(pattern.GetValue(1), 0.5f);
    EXPECT_EQ(pattern.GetValue(2), 0.0f);
    EXPECT_EQ(pattern.GetValue(3), 0.0f);
}

TEST(BeatMeasuresTest, OneMeasureLeavesItsLastStepWithoutEnergy) {
    // Four points have three intervals, each with a peak of 1.
    CPfPcmThumbnail const thumbnail = MakePeaks(5, {{0, 1.0f}, {1, 1.0f}, {2, 1.0f}, {3, 1.0f}});
    CPfImpactPoints const points = MakePoints(Even(4), 4);
    CPfBeatPattern pattern;
    EXPECT_TRUE(CPfBeatBuilder::BuildBeatPattern(&thumbnail, &points, &pattern));
    EXPECT_EQ(pattern.GetValue(0), 1.0f);
    EXPECT_EQ(pattern.GetValue(2), 1.0f);
    EXPECT_EQ(pattern.GetValue(3), 0.0f);
}

TEST(BeatMeasuresTest, LessThanAMeasureHasNoWeights) {
    CPfPcmThumbnail const thumbnail = MakePeaks(5, {{0, 1.0f}, {1, 1.0f}});
    CPfImpactPoints const points = MakePoints(Even(3), 4);
    CPfBeatPattern pattern;
    EXPECT_TRUE(CPfBeatBuilder::BuildBeatPattern(&thumbnail, &points, &pattern));
    ASSERT_EQ(pattern.GetCount(), 4);
    for (std::int32_t k = 0; k < 4; ++k) {
        EXPECT_EQ(pattern.GetValue(k), 0.0f);
    }
}
