// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/OnsetCurve.h"

#include "support/Envelope.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <vector>

namespace {

/// An element of 256 samples at 25600 Hz lasts 10 ms, a frame of four 40 ms.
constexpr std::uint32_t kCurveRate = 25600;
constexpr std::uint16_t kCurveElement = 256;
constexpr float kFrameSeconds = 0.04f;

/// Silence with a stroke of one element at the start of every `period`-th frame, behind two frames.
CPfPcmThumbnail Strokes(std::size_t frames, std::size_t period) {
    std::vector<float> elements(frames * 4, 0.0f);
    for (std::size_t frame = 2; frame < frames; frame += period) {
        elements[frame * 4] = 1.0f;
    }
    return MakeEnvelope(elements, kCurveRate, kCurveElement);
}

COnsetCurve CurveOf(std::vector<float> values) {
    COnsetCurve curve;
    curve.m_vValues = std::move(values);
    curve.m_fFrameSeconds = kFrameSeconds;
    return curve;
}

} // namespace

TEST(OnsetCurveTest, AFrameIsFourElements) {
    COnsetCurve const curve = MakeOnsetCurve(Strokes(100, 10));
    EXPECT_EQ(curve.m_vValues.size(), 100U);
    EXPECT_FLOAT_EQ(curve.m_fFrameSeconds, kFrameSeconds);
}

TEST(OnsetCurveTest, TheMeanIsZero) {
    COnsetCurve const curve = MakeOnsetCurve(Strokes(100, 10));
    // A hundred values below 1, each rounded once: far below 1e-4.
    EXPECT_NEAR(std::accumulate(curve.m_vValues.begin(), curve.m_vValues.end(), 0.0f), 0.0f, 1e-4f);
}

TEST(OnsetCurveTest, OnsetsAreCounted) {
    // Strokes in frames 2, 12, 22 ... 92 of 100 frames of 40 ms: ten in four seconds.
    EXPECT_FLOAT_EQ(MakeOnsetCurve(Strokes(100, 10)).m_fOnsetsPerSecond, 2.5f);
}

TEST(OnsetCurveTest, ASlowerStrokeIsPeakier) {
    EXPECT_GT(MakeOnsetCurve(Strokes(200, 40)).m_fPeakiness,
              MakeOnsetCurve(Strokes(200, 10)).m_fPeakiness);
}

TEST(OnsetCurveTest, SilenceAndAHeldLevelHaveNoCurve) {
    EXPECT_TRUE(
        MakeOnsetCurve(MakeEnvelope(std::vector<float>(400, 0.0f), kCurveRate, kCurveElement))
            .m_vValues.empty());
    EXPECT_TRUE(
        MakeOnsetCurve(MakeEnvelope(std::vector<float>(400, 0.5f), kCurveRate, kCurveElement))
            .m_vValues.empty());
    EXPECT_TRUE(MakeOnsetCurve(MakeEnvelope({}, kCurveRate, kCurveElement)).m_vValues.empty());
}

TEST(OnsetCurveTest, BadElementsCountAsSilence) {
    CPfPcmThumbnail const plain = Strokes(100, 10);
    CPfPcmThumbnail bad = Strokes(100, 10);
    bad.SetAt(5 * 4, std::numeric_limits<float>::quiet_NaN());
    bad.SetAt(6 * 4, std::numeric_limits<float>::infinity());
    bad.SetAt(7 * 4, -3.0f);
    EXPECT_EQ(MakeOnsetCurve(bad).m_vValues, MakeOnsetCurve(plain).m_vValues);
}

TEST(OnsetCurveTest, LoudnessDoesNotMatter) {
    std::vector<float> elements(400, 0.0f);
    for (std::size_t i = 8; i < elements.size(); i += 40) {
        elements[i] = 0.25f; // a power of two: nothing is rounded differently
    }
    EXPECT_EQ(MakeOnsetCurve(MakeEnvelope(elements, kCurveRate, kCurveElement)).m_vValues,
              MakeOnsetCurve(Strokes(100, 10)).m_vValues);
}

TEST(OnsetCurveTest, TheMiddleOfALongEnvelopeIsTaken) {
    // 8000 frames of 40 ms are 320 s.
    COnsetCurve const curve = MakeOnsetCurve(Strokes(8000, 10));
    EXPECT_EQ(curve.m_vValues.size(), 2400U); // 96 s
}

TEST(OnsetCurveTest, ACurveIsFullyLikeItself) {
    CSelfLikeness const likeness = CompareWithItself(CurveOf({1, -1, 1, -1, 1, -1, 1, -1}), 4);
    // Products at lag 1: seven of -1, over a mean square of 1; at lag 2: six of 1.
    EXPECT_FLOAT_EQ(likeness.m_whole.At(0.0f), 1.0f);
    EXPECT_FLOAT_EQ(likeness.m_whole.At(1.0f), -1.0f);
    EXPECT_FLOAT_EQ(likeness.m_whole.At(2.0f), 1.0f);
}

TEST(OnsetCurveTest, APartComparesItsOwnFramesWithLaterOnes) {
    std::vector<float> values(16, 0.0f);
    values[0] = 1.0f; // part 0 is frames 0 and 1
    values[3] = 2.0f;
    CSelfLikeness const likeness = CompareWithItself(CurveOf(values), 5);
    ASSERT_EQ(likeness.m_vParts.size(), kCurveParts);
    EXPECT_FLOAT_EQ(likeness.m_vParts[0].At(3.0f), 2.0f); // 1 * 2 over 1 * 1
    EXPECT_FLOAT_EQ(likeness.m_vParts[1].At(0.0f), 1.0f);
    EXPECT_FLOAT_EQ(likeness.m_vParts[7].At(0.0f), 0.0f); // nothing there
}

TEST(OnsetCurveTest, ComparisonLooksBothWays) {
    // b is a, two frames later: half of the pairs at lag 2 agree, none at lag 0. The sums are
    // divided by 6 products of 8, and the mean of both directions halves them.
    CLagTable const between =
        Compare(CurveOf({1, 0, 0, 0, 0, 0, 0, 0}), CurveOf({0, 0, 1, 0, 0, 0, 0, 0}), 4);
    EXPECT_FLOAT_EQ(between.At(0.0f), 0.0f);
    EXPECT_FLOAT_EQ(between.At(2.0f), 0.5f * 8.0f / 6.0f);
}

TEST(OnsetCurveTest, CurvesOfDifferentLengthAreNotCompared) {
    EXPECT_TRUE(Compare(CurveOf({1, 0}), CurveOf({1, 0, 0}), 2).Values().empty());
}

TEST(OnsetCurveTest, ATableRunsStraightBetweenLagsAndIsZeroOutside) {
    CLagTable const table({1.0f, 0.5f, 0.25f});
    EXPECT_EQ(table.At(0.5f), 0.75f);
    EXPECT_EQ(table.At(1.0f), 0.5f);
    EXPECT_EQ(table.At(2.0f), 0.0f); // the last lag has no neighbour
    EXPECT_EQ(table.At(3.0f), 0.0f);
    EXPECT_EQ(table.At(-0.1f), 0.0f);
    EXPECT_EQ(table.At(std::numeric_limits<float>::quiet_NaN()), 0.0f);
}
