// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/EngineRate.h"
#include "engine/beats/BeatBuilder.h"

#include "support/Envelope.h"
#include "support/PlainLinking.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <random>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::uint16_t kElementSamples = 10;

/// Nodes of (position, confidence), numbered in order.
CPfBeatBuilder::Nodes
Nodes(std::initializer_list<std::pair<std::int64_t, float>> const& candidates) {
    CPfBeatBuilder::Nodes nodes;
    for (auto const& [position, confidence] : candidates) {
        CPfBeatPoint node;
        node.m_nPosition = position;
        node.m_fConfidence = confidence;
        node.m_nIndex = static_cast<std::int32_t>(nodes.size());
        nodes.push_back(node);
    }
    return nodes;
}

std::vector<std::int64_t> PositionsOf(CPfBeatBuilder::Nodes const& nodes) {
    std::vector<std::int64_t> positions;
    for (CPfBeatPoint const& node : nodes) {
        positions.push_back(node.m_nPosition);
    }
    return positions;
}

/// What the filter leaves at a step of 1000, that is a reach of 450 samples.
std::vector<std::int64_t> Thinned(CPfBeatBuilder::Nodes nodes) {
    EXPECT_TRUE(CPfBeatBuilder::ProximityConfFilter(1000.0f, &nodes));
    return PositionsOf(nodes);
}

struct CClusters {
    std::vector<std::int64_t> m_vPoints;
    float m_fStep;

    bool operator==(CClusters const&) const = default;
};

CClusters Cluster(CPfPcmThumbnail const& envelope, float interval,
                  std::vector<std::int64_t> const& candidates) {
    CPfImpactPoints in(kEngineRateHz, 0);
    for (std::int64_t const position : candidates) {
        in.Add(position);
    }
    CCancelFlag const cancel;
    CPfImpactPoints out(kEngineRateHz, 0);
    float step = -1.0f;
    EXPECT_TRUE(CPfBeatBuilder(&cancel).ClusterFilterPoints(&envelope, interval, &in, &out, &step));
    return {{out.Points().begin(), out.Points().end()}, step};
}

/// Beats 1000 samples apart, each a single element of 1. The first one lies on element 0, which
/// also stands for everything before it, so it has no rise and no confidence; all others have 1.
CClusters ClusterBeats(std::int64_t count, float interval) {
    std::vector<float> elements(static_cast<std::size_t>(count) * 100, 0.0f);
    std::vector<std::int64_t> candidates;
    for (std::int64_t i = 0; i < count; ++i) {
        elements[static_cast<std::size_t>(i) * 100] = 1.0f;
        candidates.push_back(i * 1000);
    }
    return Cluster(MakeEnvelope(elements, kEngineRateHz, kElementSamples), interval, candidates);
}

} // namespace

TEST(BeatClustersTest, ConfidenceIsTheRiseOverEightElementsOnEachSide) {
    std::vector<float> elements(32, 0.0f);
    for (std::size_t i = 4; i < 20; ++i) {
        elements[i] = i < 12 ? 1.0f : 3.0f;
    }
    CPfPcmThumbnail const envelope = MakeEnvelope(elements, kEngineRateHz, kElementSamples);
    // Element 12: 12 to 19 hold 3 each, 4 to 11 hold 1 each.
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&envelope, 120), 16.0f);
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&envelope, 129), 16.0f);
    // Element 13: 13 to 20 hold 21, 5 to 12 hold 10.
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&envelope, 130), 11.0f);
}

TEST(BeatClustersTest, ConfidenceCountsTheEndsOnceForAllThatLiesOutside) {
    CPfPcmThumbnail const ones =
        MakeEnvelope(std::vector<float>(32, 1.0f), kEngineRateHz, kElementSamples);
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&ones, 0), 7.0f);    // 0 to 7 less 0
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&ones, -9), 7.0f);   // truncated to element 0
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&ones, 30), 5.0f);   // 3 to 10 less 0 to 2
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&ones, 310), -7.0f); // 31 less 23 to 30
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&ones, 400), 0.0f);  // 31 less 31
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&ones, -100), 0.0f); // 0 less 0
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&ones, INT64_MAX), 0.0f);
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&ones, INT64_MIN), 0.0f);
}

TEST(BeatClustersTest, ConfidenceOfNoEnvelopeIsNone) {
    CPfPcmThumbnail const none;
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&none, 0), 0.0f);
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&none, 1000), 0.0f);
}

TEST(BeatClustersTest, ConfidenceAddsUpInAscendingOrder) {
    // 2^24 + 1 is 2^24 in single precision, seven times over; 7 + 2^24 would be more.
    std::vector<float> elements(32, 0.0f);
    elements[16] = 16'777'216.0f;
    for (std::size_t i = 17; i < 24; ++i) {
        elements[i] = 1.0f;
    }
    CPfPcmThumbnail const envelope = MakeEnvelope(elements, kEngineRateHz, kElementSamples);
    EXPECT_EQ(CPfBeatBuilder::CalcPointConfidence(&envelope, 160), 16'777'216.0f);
}

TEST(BeatClustersTest, WeakerNeighbourGoes) {
    EXPECT_THAT(Thinned(Nodes({{0, 0.2f}, {449, 0.9f}})), ElementsAre(449));
    EXPECT_THAT(Thinned(Nodes({{0, 0.9f}, {449, 0.2f}})), ElementsAre(0));
    EXPECT_THAT(Thinned(Nodes({{0, 0.2f}, {450, 0.9f}})), ElementsAre(0, 450)); // out of reach
}

TEST(BeatClustersTest, EquallyConfidentNeighboursStay) {
    EXPECT_THAT(Thinned(Nodes({{0, 0.5f}, {100, 0.5f}, {200, 0.5f}})), ElementsAre(0, 100, 200));
}

TEST(BeatClustersTest, AnErasedNodeNoLongerOutshinesThoseBehindIt) {
    // 400 goes for 0; 800 is then alone within its reach.
    EXPECT_THAT(Thinned(Nodes({{0, 0.5f}, {400, 0.4f}, {800, 0.3f}})), ElementsAre(0, 800));
    // Ahead all still stand: 0 goes for 400, which goes for 800.
    EXPECT_THAT(Thinned(Nodes({{0, 0.3f}, {400, 0.4f}, {800, 0.5f}})), ElementsAre(800));
}

TEST(BeatClustersTest, WithoutReachNothingIsThinned) {
    for (float const interval : {0.0f, -1.0f, 2.0f, std::numeric_limits<float>::quiet_NaN()}) {
        CPfBeatBuilder::Nodes nodes = Nodes({{0, 0.2f}, {1, 0.9f}}); // a reach of 0 samples
        EXPECT_TRUE(CPfBeatBuilder::ProximityConfFilter(interval, &nodes));
        EXPECT_EQ(nodes.size(), 2U) << interval;
    }
}

TEST(BeatClustersTest, ThinsLikeAListThatIsWalkedInBothDirections) {
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        CPfBeatBuilder::Nodes nodes(40);
        std::int64_t position = 0;
        for (CPfBeatPoint& node : nodes) {
            position += static_cast<std::int64_t>(random() % 400);
            node.m_nPosition = position;
            node.m_fConfidence = static_cast<float>(random() % 10) / 10.0f;
        }
        CPfBeatBuilder::Nodes expected = nodes;
        plain::Thin(1000.0f, &expected);
        CPfBeatBuilder::ProximityConfFilter(1000.0f, &nodes);
        ASSERT_EQ(PositionsOf(nodes), PositionsOf(expected)) << round;
    }
}

TEST(BeatClustersTest, CoverageIsTheChainedShareOfTheActiveNodes) {
    CPfBeatBuilder::Nodes nodes(5);
    EXPECT_EQ(CPfBeatBuilder::CalcCoverage(nodes), 0.0f);
    nodes[0].m_nChainId = 1;
    nodes[1].m_nChainId = 2;
    nodes[2].m_nChainId = 1;
    nodes[2].m_bActive = false; // counts on neither side
    EXPECT_EQ(CPfBeatBuilder::CalcCoverage(nodes), 0.5f);
    for (CPfBeatPoint& node : nodes) {
        node.m_bActive = false;
    }
    EXPECT_EQ(CPfBeatBuilder::CalcCoverage(nodes), 0.0f);
}

TEST(BeatClustersTest, RebuiltChainHoldsItsActiveNodes) {
    CPfBeatBuilder::Nodes nodes = Nodes({{0, 0.0f}, {1, 0.0f}, {2, 0.0f}, {3, 0.0f}});
    nodes[0].m_nChainId = 3;
    nodes[2].m_nChainId = 3;
    nodes[3].m_nChainId = 3;
    nodes[2].m_bActive = false;
    CPfBeatBuilder::Chains chains;
    chains[3].m_nId = 3;
    chains[3].AddPoint(1);
    CPfBeatBuilder::RebuildChain(3, nodes, &chains);
    EXPECT_THAT(chains[3].m_vPoints, ElementsAre(0, 3));
    CPfBeatBuilder::RebuildChain(4, nodes, &chains);
    EXPECT_EQ(chains.size(), 1U);
}

TEST(BeatClustersTest, IntervalIsTheAverageOfOneToThreeSteps) {
    // 1000, 1991 / 2 = 995 (truncated) and 3030 / 3 = 1010 count. 4000 is four steps, 1200 is more
    // than 5 % off, 100 is none.
    EXPECT_EQ(
        CPfBeatBuilder::AverageInterval(1000.0f, {0, 1000, 2991, 6021, 10'021, 11'221, 11'321}),
        3005.0f / 3.0f);
    EXPECT_EQ(CPfBeatBuilder::AverageInterval(1000.0f, {0, 4000, 5200}), 1000.0f);
    EXPECT_EQ(CPfBeatBuilder::AverageInterval(1000.0f, {5}), 1000.0f);
    EXPECT_EQ(CPfBeatBuilder::AverageInterval(1000.0f, {}), 1000.0f);
}

TEST(BeatClustersTest, OddIntervalsHaveNoAverage) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(CPfBeatBuilder::AverageInterval(0.0f, {0, 0, 1000}), 0.0f);
    EXPECT_EQ(CPfBeatBuilder::AverageInterval(kInfinity, {0, 1000}), kInfinity);
    EXPECT_TRUE(std::isnan(
        CPfBeatBuilder::AverageInterval(std::numeric_limits<float>::quiet_NaN(), {0, 1000})));
}

// Sixty beats. Connections of quality 1 go from each node but the first to the eight behind it, in
// order of the nodes. 1-2 begins a chain, 1-3 cuts 2 off ... 1-9 cuts 8 off; 2 to 8 are inactive
// then and passed over. 9-10 ... 9-17 do the same, and so on to 57. Then 0, 58 and 59 are loose, 8
// of 11 active nodes are chained, and 57-58 makes that 9, which is above 80 %.
TEST(BeatClustersTest, PerfectBeatsMakeASparseChain) {
    CClusters const clusters = ClusterBeats(60, 1000.0f);
    EXPECT_THAT(clusters.m_vPoints,
                ElementsAre(1000, 9000, 17'000, 25'000, 33'000, 41'000, 49'000, 57'000, 58'000));
    EXPECT_EQ(clusters.m_fStep, 1000.0f);
}

TEST(BeatClustersTest, StepIsMeasuredFromTheNodes) {
    EXPECT_EQ(ClusterBeats(60, 1010.0f).m_fStep, 1000.0f);
}

// As above, 34 beats give 1, 9, 17, 25, 33 and 33 give 1, 9, 17, 25, 32: 32 and 31 indices long.
TEST(BeatClustersTest, ChainsOfLessThan32IndicesAreDropped) {
    CClusters const kept = ClusterBeats(34, 1010.0f);
    EXPECT_THAT(kept.m_vPoints, ElementsAre(1000, 9000, 17'000, 25'000, 33'000));
    CClusters const dropped = ClusterBeats(33, 1010.0f);
    EXPECT_THAT(dropped.m_vPoints, IsEmpty());
    EXPECT_EQ(dropped.m_fStep, 1000.0f); // the average over the nodes stays
}

TEST(BeatClustersTest, FewerThanTwoCandidatesGiveNothing) {
    CPfPcmThumbnail const envelope =
        MakeEnvelope(std::vector<float>(100, 1.0f), kEngineRateHz, kElementSamples);
    EXPECT_EQ(Cluster(envelope, 1010.0f, {}), (CClusters{{}, 1010.0f}));
    EXPECT_EQ(Cluster(envelope, 1010.0f, {500}), (CClusters{{}, 1010.0f}));
}

TEST(BeatClustersTest, CandidatesOfEqualConfidenceGiveNothing) {
    // A range of 0 becomes 1, and all confidences are 0.
    CPfPcmThumbnail const flat =
        MakeEnvelope(std::vector<float>(10'000, 1.0f), kEngineRateHz, kElementSamples);
    std::vector<std::int64_t> candidates;
    for (std::int64_t i = 1; i < 90; ++i) {
        candidates.push_back(i * 1000);
    }
    EXPECT_EQ(Cluster(flat, 1010.0f, candidates), (CClusters{{}, 1000.0f}));
}

TEST(BeatClustersTest, CancelLeavesTheOutputsAlone) {
    CCancelFlag cancel;
    cancel.Set();
    CPfPcmThumbnail const envelope =
        MakeEnvelope(std::vector<float>(100, 1.0f), kEngineRateHz, kElementSamples);
    CPfImpactPoints const in(kEngineRateHz, 0);
    CPfImpactPoints out(kEngineRateHz, 0);
    out.Add(7);
    float step = -1.0f;
    EXPECT_FALSE(CPfBeatBuilder(&cancel).ClusterFilterPoints(&envelope, 1000.0f, &in, &out, &step));
    EXPECT_THAT(out.Points(), ElementsAre(7));
    EXPECT_EQ(step, -1.0f);
}

TEST(BeatClustersTest, IntervalsWithoutStepsGiveNothing) {
    for (float const interval : {0.0f, -1000.0f, std::numeric_limits<float>::infinity()}) {
        EXPECT_EQ(ClusterBeats(60, interval), (CClusters{{}, interval}));
    }
}

namespace {

/// The whole clustering out of its plain parts.
CClusters PlainCluster(CPfPcmThumbnail const& envelope, float interval,
                       std::vector<std::int64_t> const& candidates) {
    plain::Nodes nodes;
    for (std::int64_t const position : candidates) {
        CPfBeatPoint node;
        node.m_nPosition = position;
        node.m_fConfidence = CPfBeatBuilder::CalcPointConfidence(&envelope, position);
        nodes.push_back(node);
    }
    auto const [lowest, highest] =
        std::ranges::minmax(nodes, {}, [](CPfBeatPoint const& node) { return node.m_fConfidence; });
    float const least = lowest.m_fConfidence;
    float const range = highest.m_fConfidence == least ? 1.0f : highest.m_fConfidence - least;
    for (CPfBeatPoint& node : nodes) {
        node.m_fConfidence = (node.m_fConfidence - least) / range;
    }
    plain::Thin(interval, &nodes);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        nodes[i].m_nIndex = static_cast<std::int32_t>(i);
    }
    float const step = CPfBeatBuilder::AverageInterval(interval, PositionsOf(nodes));
    std::vector<CPfBeatConnection> connections = plain::Connections(nodes, step);
    plain::Rank(&connections);
    plain::Chains chains;
    plain::Link(connections, &nodes, &chains);
    CClusters result{{}, step};
    std::int64_t distances = 0;
    std::int64_t steps = 0;
    for (CPfBeatPointChain const& chain : plain::RankChains(nodes, chains)) {
        bool const isBest = result.m_vPoints.empty();
        for (std::size_t i = 0; i < chain.m_vPoints.size(); ++i) {
            result.m_vPoints.push_back(
                nodes[static_cast<std::size_t>(chain.m_vPoints[i])].m_nPosition);
            if (isBest && i > 0) {
                std::int64_t const distance = result.m_vPoints[i] - result.m_vPoints[i - 1];
                distances += distance;
                steps += CPfBeatBuilder::IntervalCount(distance, step);
            }
        }
    }
    if (steps != 0) {
        result.m_fStep = static_cast<float>(distances) / static_cast<float>(steps);
    }
    return result;
}

} // namespace

TEST(BeatClustersTest, ClustersLikeTheRulesCarriedOutOneByOne) {
    std::mt19937 random(1);
    int withChains = 0;
    for (int round = 0; round < 150; ++round) {
        // Beats of two tempos, one after the other or mixed, with stray candidates between them.
        std::vector<float> elements(12'000);
        for (float& element : elements) {
            element = static_cast<float>(random() % 100) / 1000.0f;
        }
        std::vector<std::int64_t> candidates;
        std::int64_t position = 0;
        while (position < 110'000) {
            std::int64_t const step = round % 3 == 0 && position > 50'000 ? 1030 : 1000;
            position += random() % 6 == 0 ? static_cast<std::int64_t>(random() % 700) : step;
            position += static_cast<std::int64_t>(random() % 40);
            candidates.push_back(position);
            elements[static_cast<std::size_t>(position / kElementSamples)] +=
                static_cast<float>(1 + random() % 4) / 4.0f;
        }
        CPfPcmThumbnail const envelope = MakeEnvelope(elements, kEngineRateHz, kElementSamples);
        CClusters const clusters = Cluster(envelope, 1010.0f, candidates);
        CClusters const expected = PlainCluster(envelope, 1010.0f, candidates);
        ASSERT_EQ(clusters.m_vPoints, expected.m_vPoints) << round;
        ASSERT_EQ(clusters.m_fStep, expected.m_fStep) << round;
        withChains += clusters.m_vPoints.empty() ? 0 : 1;
    }
    EXPECT_GT(withChains, 50); // the comparison is about something
}
