// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/beats/BeatBuilder.h"

#include "support/PlainLinking.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace {

/// Two nodes `distance` apart.
float Quality(std::int64_t distance, float interval, float confidenceA = 1.0f,
              float confidenceB = 1.0f) {
    CPfBeatBuilder::Nodes nodes(2);
    nodes[1].m_nPosition = distance;
    nodes[0].m_fConfidence = confidenceA;
    nodes[1].m_fConfidence = confidenceB;
    EXPECT_EQ(CPfBeatBuilder::CalcConQuality(nodes, interval, 0, 1),
              CPfBeatBuilder::CalcConQuality(nodes, interval, 1, 0)); // |distance|
    return CPfBeatBuilder::CalcConQuality(nodes, interval, 0, 1);
}

bool AreEqual(std::vector<CPfBeatConnection> const& a, std::vector<CPfBeatConnection> const& b) {
    return std::ranges::equal(a, b, [](CPfBeatConnection const& x, CPfBeatConnection const& y) {
        return x.m_nFirst == y.m_nFirst && x.m_nSecond == y.m_nSecond &&
               x.m_fQuality == y.m_fQuality;
    });
}

std::vector<CPfBeatConnection> All(CPfBeatBuilder::Nodes const& nodes, float step) {
    return CPfBeatBuilder::BestConnections(nodes, step, nullptr, 1000 * nodes.size());
}

/// All of them, `most` from each call.
std::vector<CPfBeatConnection> AFewAtATime(CPfBeatBuilder::Nodes const& nodes, float step,
                                           std::size_t most) {
    std::vector<CPfBeatConnection> all;
    for (std::size_t before = 1; before != all.size();) {
        before = all.size();
        std::vector<CPfBeatConnection> const next =
            CPfBeatBuilder::BestConnections(nodes, step, all.empty() ? nullptr : &all.back(), most);
        EXPECT_LE(next.size(), most);
        all.insert(all.end(), next.begin(), next.end());
    }
    return all;
}

std::vector<CPfBeatConnection> Ranked(std::vector<CPfBeatConnection> connections) {
    std::ranges::stable_sort(connections, BeatConQualitySort);
    return connections;
}

} // namespace

TEST(BeatConnectionsTest, WholeStepsUpToAMeasureAreWorthOne) {
    EXPECT_EQ(Quality(1000, 1000.0f), 1.0f);
    EXPECT_EQ(Quality(8000, 1000.0f), 1.0f);
}

TEST(BeatConnectionsTest, LongerDistancesLoseATwentyFourthAStep) {
    EXPECT_EQ(Quality(9000, 1000.0f), 23.0f / 24.0f);
    EXPECT_EQ(Quality(20'000, 1000.0f), 12.0f / 24.0f);
    EXPECT_EQ(Quality(31'000, 1000.0f), 1.0f / 24.0f);
    EXPECT_EQ(Quality(32'000, 1000.0f), 0.0f); // (32 - 32) / 24
    EXPECT_EQ(Quality(33'000, 1000.0f), 0.0f);
    EXPECT_EQ(Quality(1'000'000, 1000.0f), 0.0f);
}

TEST(BeatConnectionsTest, LessThanHalfAStepIsNoLink) {
    EXPECT_EQ(Quality(0, 1000.0f), 0.0f);
    EXPECT_EQ(Quality(499, 1000.0f), 0.0f);
    EXPECT_EQ(Quality(500, 1000.0f), 0.0f); // one step, but half of it off
}

TEST(BeatConnectionsTest, ClosenessOfExactlyFourFifthsIsWorthNothing) {
    // 4 / 5 of a step is 0.8 of one; 1 - |0.8 - 1| is the same float again.
    EXPECT_EQ(Quality(4, 5.0f), 0.0f);
    EXPECT_GT(Quality(801, 1000.0f), 0.0f);
    EXPECT_EQ(Quality(799, 1000.0f), 0.0f);
}

TEST(BeatConnectionsTest, ClosenessOfExactly98HundredthsIsOnTheSlope) {
    EXPECT_EQ(Quality(49, 50.0f), (0.98f - 0.8f) / 0.18f); // about 1
    EXPECT_EQ(Quality(981, 1000.0f), 1.0f);
}

TEST(BeatConnectionsTest, ClosenessInBetweenRisesEvenly) {
    EXPECT_NEAR(Quality(890, 1000.0f), 0.5f, 1e-6f);  // (0.89 - 0.8) / 0.18; float steps of it
    EXPECT_NEAR(Quality(1110, 1000.0f), 0.5f, 1e-6f); // as far off on the other side
}

TEST(BeatConnectionsTest, BothConfidencesCount) {
    EXPECT_EQ(Quality(1000, 1000.0f, 0.5f, 0.25f), 0.125f);
    EXPECT_EQ(Quality(1000, 1000.0f, 0.0f, 1.0f), 0.0f);
}

TEST(BeatConnectionsTest, IntervalsWithoutStepsGiveNoLinks) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    for (float const interval : {0.0f, -1000.0f, kInfinity, -kInfinity, kNaN}) {
        EXPECT_EQ(Quality(1000, interval), 0.0f) << interval;
        EXPECT_EQ(Quality(0, interval), 0.0f) << interval;
    }
}

TEST(BeatConnectionsTest, EqualPairsComeByFirstThenSecondNode) {
    CPfBeatBuilder::Nodes nodes(3);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        nodes[i].m_nPosition = static_cast<std::int64_t>(i) * 1000;
        nodes[i].m_fConfidence = 1.0f;
    }
    EXPECT_TRUE(AreEqual(All(nodes, 1000.0f), {{0, 1, 1.0f}, {0, 2, 1.0f}, {1, 2, 1.0f}}));
}

TEST(BeatConnectionsTest, PairsAtAndBeyond32StepsAreNone) {
    CPfBeatBuilder::Nodes nodes(4);
    nodes[1].m_nPosition = 31'000;
    nodes[2].m_nPosition = 32'000;
    nodes[3].m_nPosition = 33'000;
    for (CPfBeatPoint& node : nodes) {
        node.m_fConfidence = 1.0f;
    }
    EXPECT_TRUE(AreEqual(All(nodes, 1000.0f),
                         {{1, 2, 1.0f}, {1, 3, 1.0f}, {2, 3, 1.0f}, {0, 1, 1.0f / 24.0f}}));
}

TEST(BeatConnectionsTest, EveryPairHasTheQualityAskedForAlone) {
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        float const step = 3.0f + static_cast<float>(random() % 100'000) / 7.0f;
        CPfBeatBuilder::Nodes nodes(60);
        std::int64_t position = 0;
        for (CPfBeatPoint& node : nodes) {
            position += 1 + static_cast<std::int64_t>(step * static_cast<float>(random() % 100) /
                                                      static_cast<float>(20 + random() % 100));
            node.m_nPosition = position;
            node.m_fConfidence = static_cast<float>(random() % 11) / 10.0f;
        }
        std::vector<CPfBeatConnection> const expected = Ranked(plain::Connections(nodes, step));
        ASSERT_TRUE(AreEqual(All(nodes, step), expected)) << round;
        for (std::size_t const most : {1U, 2U, 7U, 50U}) {
            ASSERT_TRUE(AreEqual(AFewAtATime(nodes, step, most), expected)) << round << ' ' << most;
        }
    }
}

TEST(BeatConnectionsTest, OfEqualOnesTheFirstAreHandedOutFirst) {
    CPfBeatBuilder::Nodes nodes(5);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        nodes[i].m_nPosition = static_cast<std::int64_t>(i) * 1000;
        nodes[i].m_fConfidence = 1.0f;
    }
    std::vector<CPfBeatConnection> const first =
        CPfBeatBuilder::BestConnections(nodes, 1000.0f, nullptr, 3);
    EXPECT_TRUE(AreEqual(first, {{0, 1, 1.0f}, {0, 2, 1.0f}, {0, 3, 1.0f}}));
    EXPECT_TRUE(AreEqual(CPfBeatBuilder::BestConnections(nodes, 1000.0f, &first.back(), 3),
                         {{0, 4, 1.0f}, {1, 2, 1.0f}, {1, 3, 1.0f}}));
}

TEST(BeatConnectionsTest, BestConnectionsGoFirstAndEqualOnesKeepTheirOrder) {
    std::vector<CPfBeatConnection> connections = {
        {0, 1, 0.25f}, {0, 2, 1.0f}, {1, 2, 0.25f}, {2, 3, 0.5f}, {3, 4, 1.0f}};
    CPfBeatBuilder::RankConnections(&connections);
    EXPECT_TRUE(AreEqual(connections,
                         {{0, 2, 1.0f}, {3, 4, 1.0f}, {2, 3, 0.5f}, {0, 1, 0.25f}, {1, 2, 0.25f}}));
}

TEST(BeatConnectionsTest, RanksLikeAStableSort) {
    std::mt19937 random(1);
    for (std::size_t const count : {0U, 1U, 2U, 1000U, 20'000U}) {
        std::vector<CPfBeatConnection> connections;
        for (std::size_t i = 0; i < count; ++i) {
            float quality = static_cast<float>(1 + random() % 500) / 500.0f;
            if (random() % 8 == 0) {
                quality *= 1e-39f; // below the normal floats
            } else if (random() % 8 == 0) {
                quality *= 1e30f;
            }
            connections.push_back({static_cast<std::int32_t>(i), 0, quality});
        }
        std::vector<CPfBeatConnection> expected = connections;
        plain::Rank(&expected);
        CPfBeatBuilder::RankConnections(&connections);
        EXPECT_TRUE(AreEqual(connections, expected)) << count;
    }
}
