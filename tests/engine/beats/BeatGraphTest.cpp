// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/beats/BeatGraph.h"

#include <algorithm>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Nodes 0, 1 ... count - 1, each 1000 samples after the one before, without links.
std::vector<CPfBeatPoint> Nodes(std::int32_t count) {
    std::vector<CPfBeatPoint> nodes(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        nodes[static_cast<std::size_t>(i)].m_nIndex = i;
        nodes[static_cast<std::size_t>(i)].m_nPosition = i * 1000;
    }
    return nodes;
}

void Link(CPfBeatPoint& a, CPfBeatPoint& b) {
    a.Connect(&b);
    b.Connect(&a);
}

CPfBeatPointChain Chain(std::initializer_list<std::int32_t> indices) {
    CPfBeatPointChain chain;
    for (std::int32_t const index : indices) {
        chain.AddPoint(index);
    }
    return chain;
}

} // namespace

TEST(BeatGraphTest, NodeStartsActiveAlone) {
    CPfBeatPoint const node;
    EXPECT_EQ(node.m_nPosition, 0);
    EXPECT_EQ(node.m_fConfidence, 0.0f);
    EXPECT_EQ(node.m_nChainId, -1);
    EXPECT_TRUE(node.m_bActive);
    EXPECT_EQ(node.m_nIndex, -1);
    EXPECT_THAT(node.m_vNextLinks, IsEmpty());
    EXPECT_THAT(node.m_vPrevLinks, IsEmpty());
    EXPECT_EQ(node.GetEarliestLink(), -1);
    EXPECT_EQ(node.GetLatestLink(), -1);
}

TEST(BeatGraphTest, NodeWithoutLinksReachesItself) {
    std::vector<CPfBeatPoint> const nodes = Nodes(3);
    EXPECT_EQ(nodes[1].GetEarliestLink(), 1);
    EXPECT_EQ(nodes[1].GetLatestLink(), 1);
}

TEST(BeatGraphTest, ConnectIsOneSidedAndFilesByIndex) {
    std::vector<CPfBeatPoint> nodes = Nodes(3);
    nodes[1].Connect(&nodes[0]);
    nodes[1].Connect(&nodes[2]);
    nodes[1].Connect(&nodes[2]); // no check for duplicates
    EXPECT_THAT(nodes[1].m_vPrevLinks, ElementsAre(&nodes[0]));
    EXPECT_THAT(nodes[1].m_vNextLinks, ElementsAre(&nodes[2], &nodes[2]));
    EXPECT_THAT(nodes[0].m_vNextLinks, IsEmpty());
    EXPECT_THAT(nodes[2].m_vPrevLinks, IsEmpty());
}

TEST(BeatGraphTest, ConnectOfAnEqualIndexIsNext) {
    std::vector<CPfBeatPoint> nodes = Nodes(2);
    nodes[1].m_nIndex = 0;
    nodes[0].Connect(&nodes[1]);
    EXPECT_THAT(nodes[0].m_vNextLinks, ElementsAre(&nodes[1]));
    EXPECT_THAT(nodes[0].m_vPrevLinks, IsEmpty());
}

TEST(BeatGraphTest, DisconnectRemovesTheFirstLinkOnly) {
    std::vector<CPfBeatPoint> nodes = Nodes(4);
    nodes[1].m_vNextLinks = {&nodes[3], &nodes[2], &nodes[3]};
    nodes[1].m_vPrevLinks = {&nodes[3], &nodes[0]};
    nodes[1].Disconnect(&nodes[3]);
    EXPECT_THAT(nodes[1].m_vNextLinks, ElementsAre(&nodes[2], &nodes[3]));
    EXPECT_THAT(nodes[1].m_vPrevLinks, ElementsAre(&nodes[0]));
}

TEST(BeatGraphTest, DisconnectOfAStrangerChangesNothing) {
    std::vector<CPfBeatPoint> nodes = Nodes(3);
    Link(nodes[0], nodes[1]);
    nodes[0].Disconnect(&nodes[2]);
    EXPECT_THAT(nodes[0].m_vNextLinks, ElementsAre(&nodes[1]));
}

TEST(BeatGraphTest, DisconnectAllNextRemovesBackLinksToo) {
    std::vector<CPfBeatPoint> nodes = Nodes(4);
    Link(nodes[0], nodes[1]);
    Link(nodes[1], nodes[2]);
    Link(nodes[1], nodes[3]);
    nodes[1].m_nChainId = 7;
    nodes[1].DisconnectAllNext();
    EXPECT_THAT(nodes[1].m_vNextLinks, IsEmpty());
    EXPECT_THAT(nodes[2].m_vPrevLinks, IsEmpty());
    EXPECT_THAT(nodes[3].m_vPrevLinks, IsEmpty());
    EXPECT_THAT(nodes[1].m_vPrevLinks, ElementsAre(&nodes[0]));
    EXPECT_TRUE(nodes[2].m_bActive);
    EXPECT_EQ(nodes[1].m_nChainId, 7);
}

TEST(BeatGraphTest, DisconnectAllPrevRemovesBackLinksToo) {
    std::vector<CPfBeatPoint> nodes = Nodes(4);
    Link(nodes[0], nodes[2]);
    Link(nodes[1], nodes[2]);
    Link(nodes[2], nodes[3]);
    nodes[2].DisconnectAllPrev();
    EXPECT_THAT(nodes[2].m_vPrevLinks, IsEmpty());
    EXPECT_THAT(nodes[0].m_vNextLinks, IsEmpty());
    EXPECT_THAT(nodes[1].m_vNextLinks, IsEmpty());
    EXPECT_THAT(nodes[2].m_vNextLinks, ElementsAre(&nodes[3]));
}

TEST(BeatGraphTest, DeactivateAllNextLeavesTheStartActive) {
    std::vector<CPfBeatPoint> nodes = Nodes(4);
    Link(nodes[0], nodes[1]);
    Link(nodes[1], nodes[2]);
    Link(nodes[2], nodes[3]);
    nodes[2].m_bActive = false; // was off before, doesn't count, doesn't stop the walk
    EXPECT_EQ(nodes[1].DeactivateAllNext(), 1);
    EXPECT_TRUE(nodes[0].m_bActive);
    EXPECT_TRUE(nodes[1].m_bActive);
    EXPECT_FALSE(nodes[2].m_bActive);
    EXPECT_FALSE(nodes[3].m_bActive);
    EXPECT_THAT(nodes[1].m_vNextLinks, ElementsAre(&nodes[2])); // no link is removed
}

TEST(BeatGraphTest, DeactivateAllPrevIsTheMirror) {
    std::vector<CPfBeatPoint> nodes = Nodes(4);
    Link(nodes[0], nodes[1]);
    Link(nodes[1], nodes[2]);
    Link(nodes[2], nodes[3]);
    EXPECT_EQ(nodes[2].DeactivateAllPrev(), 2);
    EXPECT_FALSE(nodes[0].m_bActive);
    EXPECT_FALSE(nodes[1].m_bActive);
    EXPECT_TRUE(nodes[2].m_bActive);
    EXPECT_TRUE(nodes[3].m_bActive);
}

TEST(BeatGraphTest, LinksAreFollowedOverForks) {
    // 0 - 1 - 2 - 5 and 1 - 3 - 5; 4 hangs on 2 from before.
    std::vector<CPfBeatPoint> nodes = Nodes(6);
    for (auto const& [a, b] : {std::pair{0, 1}, {1, 2}, {1, 3}, {2, 5}, {3, 5}, {2, 4}}) {
        Link(nodes[static_cast<std::size_t>(a)], nodes[static_cast<std::size_t>(b)]);
    }
    EXPECT_EQ(nodes[1].GetLatestLink(), 5);
    EXPECT_EQ(nodes[4].GetEarliestLink(), 0);
    EXPECT_EQ(nodes[4].GetLatestLink(), 4);
    EXPECT_EQ(nodes[1].DeactivateAllNext(), 4);
}

TEST(BeatGraphTest, ForksThatMeetAgainTakeNoTimeEach) {
    // 40 diamonds in a row have 2^40 paths.
    std::vector<CPfBeatPoint> nodes = Nodes(121);
    for (std::size_t i = 0; i + 3 < nodes.size(); i += 3) {
        Link(nodes[i], nodes[i + 1]);
        Link(nodes[i], nodes[i + 2]);
        Link(nodes[i + 1], nodes[i + 3]);
        Link(nodes[i + 2], nodes[i + 3]);
    }
    EXPECT_EQ(nodes[0].GetLatestLink(), 120);
    EXPECT_EQ(nodes[120].GetEarliestLink(), 0);
    EXPECT_EQ(nodes[0].DeactivateAllNext(), 120);
}

TEST(BeatGraphTest, LongChainsDoNotExhaustTheStack) {
    std::vector<CPfBeatPoint> nodes = Nodes(200'000);
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        Link(nodes[i - 1], nodes[i]);
    }
    EXPECT_EQ(nodes.front().GetLatestLink(), 199'999);
    EXPECT_EQ(nodes.back().GetEarliestLink(), 0);
    EXPECT_EQ(nodes.front().DeactivateAllNext(), 199'999);
    EXPECT_EQ(nodes.back().DeactivateAllPrev(), 1); // only the first was left
}

TEST(BeatGraphTest, LinksOfEqualIndicesEnd) {
    std::vector<CPfBeatPoint> nodes(2); // both -1
    Link(nodes[0], nodes[1]);
    EXPECT_EQ(nodes[0].GetLatestLink(), -1);
    EXPECT_EQ(nodes[0].GetEarliestLink(), -1);
}

TEST(BeatGraphTest, CopiedNodeHasNoLinks) {
    std::vector<CPfBeatPoint> nodes = Nodes(3);
    Link(nodes[0], nodes[1]);
    Link(nodes[1], nodes[2]);
    nodes[1].m_fConfidence = 0.5f;
    nodes[1].m_nChainId = 4;
    nodes[1].m_bActive = false;
    CPfBeatPoint const copy(nodes[1]);
    EXPECT_EQ(copy.m_nPosition, 1000);
    EXPECT_EQ(copy.m_fConfidence, 0.5f);
    EXPECT_EQ(copy.m_nChainId, 4);
    EXPECT_FALSE(copy.m_bActive);
    EXPECT_EQ(copy.m_nIndex, 1);
    EXPECT_THAT(copy.m_vNextLinks, IsEmpty());
    EXPECT_THAT(copy.m_vPrevLinks, IsEmpty());
}

TEST(BeatGraphTest, PinsCopiesNeverTakeLinks) {
    std::vector<CPfBeatPoint> nodes = Nodes(4);
    Link(nodes[0], nodes[1]);
    Link(nodes[2], nodes[3]);
    nodes[2].m_nChainId = 4;
    nodes[0] = nodes[2];
    EXPECT_EQ(nodes[0].m_nPosition, 2000);
    EXPECT_EQ(nodes[0].m_nChainId, 4);
    EXPECT_EQ(nodes[0].m_nIndex, 2);
    EXPECT_THAT(nodes[0].m_vNextLinks, ElementsAre(&nodes[1]));
}

TEST(BeatGraphTest, ChainKeepsItsPointsInOrder) {
    CPfBeatPointChain chain = Chain({7, 3, 5});
    EXPECT_THAT(chain.m_vPoints, ElementsAre(3, 5, 7));
    EXPECT_EQ(chain.GetFirstIndex(), 3);
    EXPECT_EQ(chain.GetLastIndex(), 7);
    chain.RemovePoint(9);
    EXPECT_THAT(chain.m_vPoints, ElementsAre(3, 5, 7));
    chain.AddPoint(5); // duplicates are not refused
    EXPECT_THAT(chain.m_vPoints, ElementsAre(3, 5, 5, 7));
    chain.RemovePoint(5);
    EXPECT_THAT(chain.m_vPoints, ElementsAre(3, 5, 7));
}

TEST(BeatGraphTest, RemovalAndAdditionPutAChainInOrder) {
    CPfBeatPointChain chain;
    chain.m_vPoints = {9, 1, 5};
    chain.RemovePoint(2);
    EXPECT_THAT(chain.m_vPoints, ElementsAre(1, 5, 9));
    chain.m_vPoints = {9, 1, 5};
    chain.AddPoint(3);
    EXPECT_THAT(chain.m_vPoints, ElementsAre(1, 3, 5, 9));
}

TEST(BeatGraphTest, ChainEnumeratesInsideOnly) {
    CPfBeatPointChain const chain = Chain({7, 3});
    std::int32_t index = -5;
    EXPECT_FALSE(chain.EnumItems(-1, &index));
    EXPECT_FALSE(chain.EnumItems(2, &index));
    EXPECT_EQ(index, -5);
    EXPECT_TRUE(chain.EnumItems(1, &index));
    EXPECT_EQ(index, 7);
}

TEST(BeatGraphTest, RemoveAllKeepsTheFigures) {
    CPfBeatPointChain chain = Chain({7, 3});
    chain.m_nId = 4;
    chain.m_fScore = 0.5f;
    chain.RemoveAll();
    EXPECT_THAT(chain.m_vPoints, IsEmpty());
    EXPECT_EQ(chain.m_nId, 4);
    EXPECT_EQ(chain.m_fScore, 0.5f);
}

TEST(BeatGraphTest, ChainsThatTouchOverlap) {
    EXPECT_TRUE(Chain({2, 5}).IsOverlapping(Chain({5, 9})));
    EXPECT_TRUE(Chain({5, 9}).IsOverlapping(Chain({2, 5})));
    EXPECT_TRUE(Chain({2, 9}).IsOverlapping(Chain({4, 5})));
    EXPECT_FALSE(Chain({2, 4}).IsOverlapping(Chain({5, 9})));
    EXPECT_FALSE(Chain({5, 9}).IsOverlapping(Chain({2, 4})));
}

TEST(BeatGraphTest, PinsConfidenceSortHoldsForEquals) {
    CPfImpactPoint const a{1, 0.5f};
    CPfImpactPoint const b{2, 0.5f};
    CPfImpactPoint const c{3, 0.25f};
    EXPECT_TRUE(ImpactPointConfSort(a, b));
    EXPECT_TRUE(ImpactPointConfSort(b, a));
    EXPECT_TRUE(ImpactPointConfSort(a, c));
    EXPECT_FALSE(ImpactPointConfSort(c, a));
}

TEST(BeatGraphTest, BetterConnectionsAndChainsGoFirst) {
    CPfBeatConnection const good{0, 1, 0.75f};
    CPfBeatConnection const poor{0, 2, 0.5f};
    EXPECT_TRUE(BeatConQualitySort(good, poor));
    EXPECT_FALSE(BeatConQualitySort(poor, good));
    EXPECT_FALSE(BeatConQualitySort(good, good));
    CPfBeatPointChain high;
    high.m_fScore = 0.75f;
    CPfBeatPointChain const low;
    EXPECT_TRUE(BeatPointChainSort(high, low));
    EXPECT_FALSE(BeatPointChainSort(low, high));
    EXPECT_FALSE(BeatPointChainSort(high, high));
}
