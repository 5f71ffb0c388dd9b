// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The threshold searches. A measure at 82 BPM has 44100 / (82 / 240) = 129073.2, so 129073 samples;
// an envelope of n such measures asks for 4 n points at four to the measure. An envelope of zeros
// with a single element of height h has one rise, from 0 to h in one element.

#include "base/EngineRate.h"
#include "engine/tempo/ImpactFinder.h"

#include "engine/envelope/ImpactPoints.h"
#include "support/Envelope.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <vector>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

constexpr std::uint16_t kSamplesPerElement = 256;
constexpr std::size_t kTwoMeasures = 1010; // elements: 258560 samples, 2 * 129073 = 258146
constexpr std::uint16_t kPointsPerMeasure = 4;
constexpr std::size_t kPulseSpacing = 40; // elements from pulse to pulse

/// `count` pulses of one height on a floor, the first at element `first`.
void AddPulses(std::vector<float>* values, std::size_t first, std::size_t count, float height) {
    for (std::size_t i = 0; i < count; ++i) {
        (*values)[first + i * kPulseSpacing] = height;
    }
}

class ImpactSearchTest : public testing::Test {
protected:
    std::int32_t Search(std::vector<float> const& values) {
        CPfPcmThumbnail const thumb = MakeEnvelope(values, kEngineRateHz, kSamplesPerElement);
        return m_finder.BuildImpactPoints(&thumb, kPointsPerMeasure, &m_points);
    }

    std::int32_t SearchRatios(std::vector<float> const& values) {
        CPfPcmThumbnail const thumb = MakeEnvelope(values, kEngineRateHz, kSamplesPerElement);
        return m_finder.BuildImpactPointsClassic(&thumb, kPointsPerMeasure, &m_points);
    }

    CCancelFlag m_cancel;
    CPfImpactFinder m_finder{&m_cancel};
    CPfImpactPoints m_points{kEngineRateHz, 0};
};

} // namespace

TEST_F(ImpactSearchTest, FirstThresholdThatReachesTheTargetWins) {
    std::vector<float> values(kTwoMeasures, 0.0f);
    AddPulses(&values, 100, 8, 3.0f);  // above 2.44
    AddPulses(&values, 500, 12, 2.0f); // below
    EXPECT_EQ(Search(values), 8);
    EXPECT_EQ(m_points.Points().front(),
              99 * kSamplesPerElement); // sorted; the feet, not the peaks
    EXPECT_EQ(m_points.Points().back(), (99 + 7 * 40) * kSamplesPerElement);
}

TEST_F(ImpactSearchTest, LoweringTheThresholdMayFindMoreThanTheTarget) {
    std::vector<float> values(kTwoMeasures, 0.0f);
    AddPulses(&values, 100, 7, 3.0f);
    AddPulses(&values, 500, 12, 2.1f); // above 2.44140625 / 1.2 = 2.0345
    EXPECT_EQ(Search(values), 19);
}

TEST_F(ImpactSearchTest, SlopeSearchRunsSixtyTwoTimes) {
    // The last threshold is 2.44140625 / 1.2^61 = 3.61e-5; one more would be 3.01e-5.
    m_points.Add(5);
    std::vector<float> values(kTwoMeasures, 0.0f);
    AddPulses(&values, 100, 1, 3.5e-5f);
    EXPECT_EQ(Search(values), 0);
    EXPECT_THAT(m_points.Points(), IsEmpty());
    AddPulses(&values, 500, 1, 3.7e-5f);
    EXPECT_EQ(Search(values), 1);
    EXPECT_THAT(m_points.Points(), ElementsAre(499 * kSamplesPerElement));
}

TEST_F(ImpactSearchTest, RatioSearchRunsNineteenTimes) {
    // The last ratio is 30 / 1.2^18 = 1.127; one more would be 0.939, which fits everywhere.
    std::vector<float> values(kTwoMeasures, 1.0f);
    AddPulses(&values, 100, 1, 1.1f);
    EXPECT_EQ(SearchRatios(values), 0);
    AddPulses(&values, 500, 1, 1.15f);
    EXPECT_EQ(SearchRatios(values), 1);
    EXPECT_THAT(m_points.Points(), ElementsAre(500 * kSamplesPerElement)); // the peak, not the foot
}

TEST_F(ImpactSearchTest, TargetOfNoneOnlySorts) {
    // 504 * 256 = 129024 samples are less than a measure at 82 BPM.
    std::vector<float> values(504, 0.0f);
    AddPulses(&values, 100, 5, 3.0f);
    m_points.Add(9);
    m_points.Add(4);
    EXPECT_EQ(Search(values), 0);
    EXPECT_THAT(m_points.Points(), ElementsAre(4, 9));
    EXPECT_EQ(SearchRatios(values), 0);
    EXPECT_THAT(m_points.Points(), ElementsAre(4, 9));
}

TEST_F(ImpactSearchTest, OneMeasureIsEnoughForATarget) {
    // 505 * 256 = 129280 samples: one measure, hence a target of 4.
    std::vector<float> values(505, 0.0f);
    AddPulses(&values, 100, 5, 3.0f);
    EXPECT_EQ(Search(values), 5);
}

TEST_F(ImpactSearchTest, CancelledSearchLeavesThePoints) {
    std::vector<float> values(kTwoMeasures, 0.0f);
    AddPulses(&values, 100, 8, 3.0f);
    m_points.Add(9);
    m_points.Add(4);
    m_cancel.Set();
    EXPECT_EQ(Search(values), 0);
    EXPECT_THAT(m_points.Points(), ElementsAre(4, 9));
}

TEST_F(ImpactSearchTest, RangeSearchGivesEachTenSecondsTheirThreshold) {
    // A segment has 441000 / 256 = 1722 elements, 440832 samples: 3 measures, a target of 12. The
    // loud segment has 12 pulses at the first threshold, so its faint ones are not looked for.
    constexpr std::size_t kSegment = 1722;
    std::vector<float> values(2 * kSegment, 0.0f);
    AddPulses(&values, 100, 12, 3.0f);
    AddPulses(&values, 1000, 12, 0.01f);
    AddPulses(&values, kSegment + 100, 12, 0.01f);
    CPfPcmThumbnail const thumb = MakeEnvelope(values, kEngineRateHz, kSamplesPerElement);
    m_points.Add(5); // emptied first
    EXPECT_EQ(m_finder.BuildImpactPointsRange(&thumb, kPointsPerMeasure, &m_points), 24);
    EXPECT_EQ(m_points.Points()[0], 99 * kSamplesPerElement);
    EXPECT_EQ(m_points.Points()[11], (99 + 11 * 40) * kSamplesPerElement);
    EXPECT_EQ(m_points.Points()[12], static_cast<std::int64_t>(kSegment + 99) * kSamplesPerElement);
}

TEST_F(ImpactSearchTest, RangeSearchOfLessThanAMeasureFindsNothing) {
    std::vector<float> values(504, 0.0f);
    AddPulses(&values, 100, 5, 3.0f);
    CPfPcmThumbnail const thumb = MakeEnvelope(values, kEngineRateHz, kSamplesPerElement);
    m_points.Add(5);
    EXPECT_EQ(m_finder.BuildImpactPointsRange(&thumb, kPointsPerMeasure, &m_points), 0);
    EXPECT_THAT(m_points.Points(), IsEmpty());
}

TEST_F(ImpactSearchTest, RangeSearchEndsWhereASegmentHasNoElement) {
    // At 10 samples a second ten seconds are 100 samples, less than one element.
    std::vector<float> const values(600, 0.0f);
    CPfPcmThumbnail const thumb = MakeEnvelope(values, 10, kSamplesPerElement);
    EXPECT_EQ(m_finder.BuildImpactPointsRange(&thumb, kPointsPerMeasure, &m_points), 0);
}

namespace {

/// Envelopes of ever other shapes: walks, plateaus, falls, silence, now and then with a number that
/// no envelope should have. A length that is no multiple of anything.
std::vector<float> MakeOddEnvelope(std::mt19937& random) {
    std::vector<float> values(1000 + random() % 600);
    float const step = std::ldexp(1.0f, -static_cast<int>(random() % 12));
    float level = 0.0f;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (random() % 50 == 0) {
            level = static_cast<float>(random() % 64);
        } else if (random() % 3 != 0) {
            level = std::max(0.0f, level - step * static_cast<float>(random() % 8));
        } else {
            level += step * static_cast<float>(random() % 4);
        }
        values[i] = level;
    }
    if (random() % 4 == 0) {
        constexpr float kOdd[] = {NAN, INFINITY, -INFINITY, -1.0f, 1e-45f, 3e38f};
        for (int i = 0; i < 5; ++i) {
            values[random() % values.size()] = kOdd[random() % std::size(kOdd)];
        }
    }
    return values;
}

using DetectProc = std::int32_t (*)(CPfPcmThumbnail const*, float, std::uint32_t, CPfImpactPoints*);

/// The points of a search with one whole scan for each threshold.
std::vector<std::int64_t> SearchByScans(CPfPcmThumbnail const& thumb, float threshold, int tries,
                                        DetectProc detect) {
    std::int32_t const target =
        static_cast<std::int32_t>(thumb.GetSampleCount() / 129073) * kPointsPerMeasure;
    CPfImpactPoints points(kEngineRateHz, 0);
    for (int i = 0; i < tries; ++i, threshold /= 1.2f) {
        points.RemoveAll();
        if (detect(&thumb, threshold, 4, &points) >= target) {
            break;
        }
    }
    points.Sort();
    return {points.Points().begin(), points.Points().end()};
}

} // namespace

TEST_F(ImpactSearchTest, FindsWhatWholeScansFind) {
    std::mt19937 random(5);
    for (int i = 0; i < 300; ++i) {
        std::vector<float> const values = MakeOddEnvelope(random);
        CPfPcmThumbnail const thumb = MakeEnvelope(values, kEngineRateHz, kSamplesPerElement);
        (void)Search(values);
        ASSERT_THAT(m_points.Points(),
                    ElementsAreArray(
                        SearchByScans(thumb, 2.44140625f, 62, CPfImpactFinder::FindImpactPoints)));
        (void)SearchRatios(values);
        ASSERT_THAT(m_points.Points(),
                    ElementsAreArray(
                        SearchByScans(thumb, 30.0f, 19, CPfImpactFinder::FindImpactPointsClassic)));
    }
}
