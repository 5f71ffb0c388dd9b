// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// At 44100 Hz and four periods to the measure the period is 32268 samples at 82 BPM (129073 / 4)
// and 29400 at 90 BPM (117600 / 4). A phase of 1 to a tenth of the period votes for the first bin.

#include "engine/tempo/BpmDetector.h"
#include "base/EngineRate.h"

#include "engine/envelope/ImpactPoints.h"
#include "support/ClickTrack.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <initializer_list>
#include <random>
#include <vector>

namespace {

constexpr std::int64_t kPeriodAt82 = 32'268;
constexpr std::int64_t kPeriodAt90 = 29'400;
constexpr std::uint16_t kFour = 4;
constexpr std::uint16_t kEight = 8;

CPfImpactPoints Points(std::initializer_list<std::int64_t> positions) {
    CPfImpactPoints points(kEngineRateHz, 0);
    for (std::int64_t const position : positions) {
        points.Add(position);
    }
    return points;
}

/// `count` points with the same distance, the first at `distance`.
CPfImpactPoints EvenPoints(int count, std::int64_t distance) {
    CPfImpactPoints points(kEngineRateHz, 0);
    for (int i = 1; i <= count; ++i) {
        points.Add(i * distance);
    }
    return points;
}

/// Clicks of a steady track of 60 s.
CPfImpactPoints Clicks(double bpm) {
    CClickTrack track;
    track.m_dBpm = bpm;
    CPfImpactPoints points(kEngineRateHz, static_cast<std::int64_t>(SamplesIn(60.0)));
    for (int i = 0; ClickPosition(track, i) < points.GetSampleCount(); ++i) {
        points.Add(ClickPosition(track, i));
    }
    return points;
}

/// The candidate at most 0.05 BPM above `bpm`, added up as the scan does.
float Candidate(float bpm) {
    float candidate = 82.0f;
    while (candidate < bpm - 0.05f) {
        candidate += 0.1f;
    }
    return candidate;
}

class BpmDetectorTest : public testing::Test {
protected:
    float Window(CPfImpactPoints const& points, std::int64_t start, std::int64_t length) {
        return m_detector.DetectBpmWindow(&points, start, length, kFour);
    }

    CCancelFlag m_cancel;
    CPfBpmDetector m_detector{&m_cancel};
};

} // namespace

TEST_F(BpmDetectorTest, PointsOnTheBoundsAreNotCounted) {
    CPfImpactPoints const points = Points({100, 100 + kPeriodAt82});
    EXPECT_EQ(Window(points, 99, kPeriodAt82 + 2), 82.0f);
    EXPECT_EQ(Window(points, 100, kPeriodAt82 + 1), 0.0f); // the first lies at the start
    EXPECT_EQ(Window(points, 99, kPeriodAt82 + 1), 0.0f);  // the second lies at the end
}

TEST_F(BpmDetectorTest, OnePointHasNoTempo) {
    EXPECT_EQ(Window(Points({100}), 0, 882'000), 0.0f);
    EXPECT_EQ(Window(Points({}), 0, 882'000), 0.0f);
}

TEST_F(BpmDetectorTest, NothingScoresAtPhaseZero) {
    // A bin must start below the phase, and the first one starts at 0.
    EXPECT_EQ(Window(Points({0, 0}), -1, 882'000), 0.0f);
}

TEST_F(BpmDetectorTest, PinsTieGoesToTheSlowerTempo) {
    // Both points vote for the first bin at every tempo whose period is above 20.
    EXPECT_EQ(Window(Points({10, 20}), 0, 882'000), 82.0f);
}

TEST_F(BpmDetectorTest, WinnerIsTheCandidateInPhase) {
    // The first two points have phase 1 at every tempo; the third joins them once the period is
    // short enough, at 29400 samples. A candidate below 90 may just have it too.
    EXPECT_EQ(Window(Points({1, 1, kPeriodAt90 + 1}), 0, 882'000), Candidate(90.0f));
}

TEST_F(BpmDetectorTest, PhasesDoNotWrapAround) {
    // At 82 BPM the third point is 2867 samples short of a period, within the tolerance of 3226 of
    // phase 1 if phases went round in a circle.
    static_assert(kPeriodAt82 - kPeriodAt90 - 1 == 2867);
    EXPECT_GT(Window(Points({1, 1, kPeriodAt90 + 1}), 0, 882'000), 89.0f);
}

TEST_F(BpmDetectorTest, CandidatesAddUpInSinglePrecision) {
    float last = 82.0f;
    for (int i = 0; i < 819; ++i) {
        last += 0.1f;
    }
    // Only the shortest period of all brings the third point to phase 1.
    CPfImpactPoints points = Points({1, 1});
    std::int64_t const period = points.SamPerMeas(last) / kFour;
    points.Add(period + 1);
    EXPECT_EQ(Window(points, 0, 882'000), last);
    EXPECT_NE(last, 163.9f);
}

TEST_F(BpmDetectorTest, CountsTheFirst512PointsOfAWindow) {
    CPfImpactPoints points(kEngineRateHz, 0);
    points.Add(-5); // outside: not one of the 512
    for (int i = 0; i < 511; ++i) {
        points.Add(1);
    }
    points.Add(kPeriodAt90 + 1); // the 512th
    EXPECT_EQ(Window(points, 0, 882'000), Candidate(90.0f));
    CPfImpactPoints more(kEngineRateHz, 0);
    for (int i = 0; i < 512; ++i) {
        more.Add(1);
    }
    more.Add(kPeriodAt90 + 1); // the 513th: unheard, so all tempos tie
    EXPECT_EQ(Window(more, 0, 882'000), 82.0f);
}

TEST_F(BpmDetectorTest, TooShortAPeriodEndsTheScan) {
    // At 200 samples a second a measure at 82 BPM has 585 samples, a fourth of it 146, a bin 3. At
    // 20 samples a second it has 58, a fourth of it 14, a bin 0.
    CPfImpactPoints slow(200, 0);
    slow.Add(1);
    slow.Add(2);
    EXPECT_EQ(Window(slow, 0, 882'000), 82.0f);
    CPfImpactPoints slower(20, 0);
    slower.Add(1);
    slower.Add(2);
    EXPECT_EQ(Window(slower, 0, 882'000), 0.0f);
}

TEST_F(BpmDetectorTest, NoDivisionsHaveNoTempo) {
    CPfImpactPoints const points = Points({10, 20});
    EXPECT_EQ(m_detector.DetectBpmWindow(&points, 0, 882'000, 0), 0.0f);
}

TEST_F(BpmDetectorTest, FarEndsOfAWindowDoNotOverflow) {
    CPfImpactPoints const points = Points({10, 20});
    EXPECT_EQ(Window(points, 5, INT64_MAX), 82.0f);
    EXPECT_EQ(Window(points, INT64_MIN, INT64_MAX), 0.0f); // ends at -1
    EXPECT_EQ(Window(points, 5, -1), 0.0f);
}

TEST_F(BpmDetectorTest, CancelledDetectionHasNoTempo) {
    CPfImpactPoints points = EvenPoints(100, 22'050);
    m_cancel.Set();
    EXPECT_EQ(Window(points, 0, 882'000), 0.0f);
    EXPECT_EQ(m_detector.DetectBaseBpm(&points), 0.0f);
}

TEST_F(BpmDetectorTest, MedianOfAnEvenNumberIsTheUpperOne) {
    EXPECT_EQ(CPfBpmDetector::UpperMedian({240.0f, 120.0f, 118.0f, 120.0f}), 120.0f);
    EXPECT_EQ(CPfBpmDetector::UpperMedian({90.0f, 130.0f, 120.0f, 140.0f}), 130.0f);
    EXPECT_EQ(CPfBpmDetector::UpperMedian({121.0f, 90.0f, 120.0f}), 120.0f);
    EXPECT_EQ(CPfBpmDetector::UpperMedian({121.0f}), 121.0f);
    EXPECT_EQ(CPfBpmDetector::UpperMedian({}), 0.0f);
}

TEST_F(BpmDetectorTest, BaseTempoIsTheMedianOfNineWindowsAndTwoDivisions) {
    // Clicks that speed up all the time give every window another tempo.
    constexpr std::int64_t kLength = 9'000'000;
    CPfImpactPoints points(kEngineRateHz, kLength);
    for (std::int64_t at = 50, distance = 32'000; at < kLength; at += distance, distance -= 30) {
        points.Add(at);
    }
    std::vector<float> tempos;
    for (int k = 1; k <= 9; ++k) {
        for (std::uint16_t const divisions : {kFour, kEight}) {
            float const bpm = m_detector.DetectBpmWindow(&points, 900'000 * k, 882'000, divisions);
            ASSERT_NE(bpm, 0.0f);
            tempos.push_back(bpm);
        }
    }
    std::ranges::sort(tempos);
    ASSERT_NE(tempos.front(), tempos.back());
    EXPECT_EQ(m_detector.DetectBaseBpm(&points), tempos[9]);
}

TEST_F(BpmDetectorTest, ShortTracksHaveNineWindowsToo) {
    // Windows start at 10, 20 ... 90 and reach far past the end. Five hold both points; the four
    // from 60 on hold none and don't count.
    CPfImpactPoints points(kEngineRateHz, 100);
    points.Add(55);
    points.Add(56);
    EXPECT_EQ(m_detector.DetectBaseBpm(&points), 82.0f);
    CPfImpactPoints early(kEngineRateHz, 100);
    early.Add(5);
    early.Add(10); // not strictly inside the first window
    EXPECT_EQ(m_detector.DetectBaseBpm(&early), 0.0f);
}

TEST_F(BpmDetectorTest, AnEmptyListHasNoTempo) {
    CPfImpactPoints const none(kEngineRateHz, 9'000'000);
    EXPECT_EQ(m_detector.DetectBaseBpm(&none), 0.0f);
}

// The bpm / 3 clicks of a window stay in one bin at a slower candidate as long as they drift by
// less than a tenth of its period altogether: bpm - candidate < 0.1 * bpm / (bpm / 3) = 0.3, half
// of that at eight divisions. Ties go to the slowest of those. One step of 0.1 above is the most
// that the candidates can miss.
TEST_F(BpmDetectorTest, SteadyClicksComeOutAtMostThreeTenthsSlower) {
    for (double const bpm :
         {82.0, 90.0, 97.3, 100.0, 110.5, 120.0, 128.0, 133.33, 140.0, 150.0, 160.0}) {
        CPfImpactPoints const points = Clicks(bpm);
        float const found = m_detector.DetectBaseBpm(&points);
        EXPECT_GE(found, bpm - 0.3) << bpm;
        EXPECT_LE(found, bpm + 0.1) << bpm;
    }
}

// At 163.9 BPM and eight divisions every second period at 82 BPM holds a click, so half of the
// results tie at 82.0, and the upper median is the lowest of the other half. That is the last
// window's: 6 s hold 16 clicks, which may drift from 163.9 * 0.1 / 16 = 1.02 BPM below.
TEST_F(BpmDetectorTest, FastestClicksTieWithTheSlowestTempoAtEightDivisions) {
    CPfImpactPoints const points = Clicks(163.9);
    std::int64_t const step = points.GetSampleCount() / 10;
    EXPECT_EQ(m_detector.DetectBpmWindow(&points, step, 882'000, kEight), 82.0f);
    float const found = m_detector.DetectBaseBpm(&points);
    EXPECT_GE(found, 163.9 - 1.02);
    EXPECT_EQ(found, m_detector.DetectBpmWindow(&points, 9 * step, 882'000, kFour));
}

// Half a beat at 100 BPM: 105840 / 8 = 13230 samples, give or take a fifth: 2646.
TEST_F(BpmDetectorTest, FoldsUpTo100BpmOnly) {
    CPfImpactPoints const points = EvenPoints(50, 13'230);
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&points, 100.0f), 200.0f);
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&points, 100.1f), 100.1f);
    CPfImpactPoints const beats = EvenPoints(50, 26'460);
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&beats, 100.0f), 100.0f);
}

TEST_F(BpmDetectorTest, HalfBeatsLieStrictlyWithinAFifth) {
    CPfImpactPoints const low = EvenPoints(50, 13'230 - 2646);
    CPfImpactPoints const high = EvenPoints(50, 13'230 + 2646);
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&low, 100.0f), 100.0f);
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&high, 100.0f), 100.0f);
    CPfImpactPoints const above = EvenPoints(50, 13'230 - 2645);
    CPfImpactPoints const below = EvenPoints(50, 13'230 + 2645);
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&above, 100.0f), 200.0f);
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&below, 100.0f), 200.0f);
}

TEST_F(BpmDetectorTest, PinsExactly53PercentDoNotDouble) {
    // 100 intervals. 53 / 100 * 100 is 52.9999962 in single precision, but 53 would not do either.
    auto const withHalfBeats = [](int count) {
        CPfImpactPoints points(kEngineRateHz, 0);
        std::int64_t at = 0;
        points.Add(at);
        for (int i = 0; i < 100; ++i) {
            at += i < count ? 13'230 : 26'460;
            points.Add(at);
        }
        return points;
    };
    CPfImpactPoints const exactly = withHalfBeats(53);
    CPfImpactPoints const more = withHalfBeats(54);
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&exactly, 100.0f), 100.0f);
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&more, 100.0f), 200.0f);
}

TEST_F(BpmDetectorTest, FoldNeedsAnInterval) {
    CPfImpactPoints const none = Points({});
    CPfImpactPoints const one = Points({13'230});
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&none, 90.0f), 90.0f);
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&one, 90.0f), 90.0f);
}

TEST_F(BpmDetectorTest, FoldMeasuresIntervalsInTheirLow32Bits) {
    CPfImpactPoints const points = Points({0xFFFFFFFF, 0x500000000 + 13'229});
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&points, 100.0f), 200.0f);
}

TEST_F(BpmDetectorTest, NoTempoStaysNone) {
    CPfImpactPoints const points = EvenPoints(50, 13'230);
    EXPECT_EQ(CPfBpmDetector::FoldUpBpm(&points, 0.0f), 0.0f);
}

namespace {

/// The scan of a window with every vote cast one by one.
float PlainWindow(CPfImpactPoints const& points, std::uint16_t divisions) {
    int best = 0;
    float bestBpm = 0.0f;
    float bpm = 82.0f;
    for (int candidate = 0; candidate < 820; ++candidate, bpm += 0.1f) {
        std::uint32_t const period = points.SamPerMeas(bpm) / divisions;
        std::uint32_t const bin = period / 40;
        std::uint32_t const tolerance = period / 10;
        if (bin == 0) {
            break;
        }
        std::vector<int> counts(40, 0);
        for (std::int64_t const position : points.Points()) {
            std::uint32_t const phase = static_cast<std::uint32_t>(position) % period;
            for (std::uint32_t j = 0; j < 40 && bin * j < phase; ++j) {
                counts[j] += phase < tolerance + bin * j ? 1 : 0;
            }
        }
        int const highest = *std::ranges::max_element(counts);
        if (highest > best) {
            best = highest;
            bestBpm = bpm;
        }
    }
    return bestBpm;
}

} // namespace

TEST_F(BpmDetectorTest, CountsLikeAScanThatCastsEveryVote) {
    std::mt19937 engine(1);
    auto const random = [&engine](std::uint32_t bound) {
        return static_cast<std::uint32_t>(engine()) % bound;
    };
    for (int round = 0; round < 40; ++round) {
        std::uint32_t const rate = round % 4 == 0 ? 300 + random(2000) : kEngineRateHz;
        // Low 32 bits near their end now and then.
        std::int64_t const origin = round % 3 == 0 ? 0xFFF00000 : 0x100000000;
        CPfImpactPoints points(rate, 0);
        std::uint32_t const count = 3 + random(60);
        for (std::uint32_t i = 0; i < count; ++i) {
            points.Add(origin + random(rate * 20));
        }
        for (std::uint16_t const divisions : {kFour, kEight}) {
            EXPECT_EQ(m_detector.DetectBpmWindow(&points, 0, INT64_MAX, divisions),
                      PlainWindow(points, divisions))
                << round;
        }
    }
}
