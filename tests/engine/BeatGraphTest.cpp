// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/BeatGraph.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

namespace {

std::vector<CPfBeatPoint> MakeNodes(std::int32_t count) {
    std::vector<CPfBeatPoint> nodes(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        nodes[static_cast<std::size_t>(i)].m_nIndex = i;
    }
    return nodes;
}

void Link(CPfBeatPoint& a, CPfBeatPoint& b) {
    a.Connect(&b);
    b.Connect(&a);
}

CPfBeatPointChain MakeChain(std::vector<std::int32_t> const& indices) {
    CPfBeatPointChain chain;
    for (std::int32_t const index : indices) {
        chain.AddPoint(index);
    }
    return chain;
}

} // namespace

TEST(BeatGraphTest, UnlinkedNodeIsItsOwnEarliestAndLatest) {
    CPfBeatPoint node;
    EXPECT_EQ(node.GetEarliestLink(), -1);
    EXPECT_EQ(node.GetLatestLink(), -1);
    node.m_nIndex = 5;
    EXPECT_EQ(node.GetEarliestLink(), 5);
    EXPECT_EQ(node.GetLatestLink(), 5);
}

TEST(BeatGraphTest, ConnectIsOneSidedAndSortsByIndex) {
    auto nodes = MakeNodes(3);
    nodes[1].Connect(&nodes[0]);
    nodes[1].Connect(&nodes[2]);
    EXPECT_EQ(nodes[1].m_vPrevLinks, (std::vector<CPfBeatPoint*>{&nodes[0]}));
    EXPECT_EQ(nodes[1].m_vNextLinks, (std::vector<CPfBeatPoint*>{&nodes[2]}));
    EXPECT_TRUE(nodes[0].m_vNextLinks.empty());
    EXPECT_TRUE(nodes[2].m_vPrevLinks.empty());
}

TEST(BeatGraphTest, EqualIndexCountsAsNext) {
    auto nodes = MakeNodes(2);
    nodes[1].m_nIndex = 0;
    nodes[0].Connect(&nodes[1]);
    EXPECT_EQ(nodes[0].m_vNextLinks.size(), 1U);
    EXPECT_TRUE(nodes[0].m_vPrevLinks.empty());
}

TEST(BeatGraphTest, DisconnectTakesTheFirstOfSeveralAndNothingElse) {
    auto nodes = MakeNodes(3);
    nodes[0].Connect(&nodes[1]);
    nodes[0].Connect(&nodes[2]);
    nodes[0].Connect(&nodes[1]);
    nodes[0].Disconnect(&nodes[1]);
    EXPECT_EQ(nodes[0].m_vNextLinks, (std::vector<CPfBeatPoint*>{&nodes[2], &nodes[1]}));
    nodes[2].Disconnect(&nodes[1]);
    EXPECT_TRUE(nodes[2].m_vNextLinks.empty());
}

TEST(BeatGraphTest, DisconnectAllRemovesTheBackLinksOfItsSideOnly) {
    auto nodes = MakeNodes(3);
    Link(nodes[0], nodes[1]);
    Link(nodes[1], nodes[2]);
    nodes[1].DisconnectAllNext();
    EXPECT_TRUE(nodes[1].m_vNextLinks.empty());
    EXPECT_TRUE(nodes[2].m_vPrevLinks.empty());
    EXPECT_EQ(nodes[1].m_vPrevLinks.size(), 1U);
    nodes[1].DisconnectAllPrev();
    EXPECT_TRUE(nodes[1].m_vPrevLinks.empty());
    EXPECT_TRUE(nodes[0].m_vNextLinks.empty());
    EXPECT_TRUE(nodes[0].m_bActive);
}

TEST(BeatGraphTest, DeactivatingReachesTheWholeRunButNotTheStart) {
    auto nodes = MakeNodes(4);
    Link(nodes[0], nodes[1]);
    Link(nodes[1], nodes[2]);
    Link(nodes[2], nodes[3]);
    EXPECT_EQ(nodes[1].DeactivateAllNext(), 2);
    EXPECT_TRUE(nodes[0].m_bActive);
    EXPECT_TRUE(nodes[1].m_bActive);
    EXPECT_FALSE(nodes[2].m_bActive);
    EXPECT_FALSE(nodes[3].m_bActive);
    EXPECT_EQ(nodes[1].m_vNextLinks.size(), 1U);
    EXPECT_EQ(nodes[1].DeactivateAllPrev(), 1);
    EXPECT_FALSE(nodes[0].m_bActive);
    EXPECT_EQ(nodes[1].DeactivateAllNext(), 0);
}

TEST(BeatGraphTest, LinksLeadAlongForks) {
    auto nodes = MakeNodes(5);
    Link(nodes[0], nodes[2]);
    Link(nodes[1], nodes[2]);
    Link(nodes[2], nodes[3]);
    Link(nodes[2], nodes[4]);
    EXPECT_EQ(nodes[2].GetEarliestLink(), 0);
    EXPECT_EQ(nodes[2].GetLatestLink(), 4);
    EXPECT_EQ(nodes[3].GetEarliestLink(), 0);
    EXPECT_EQ(nodes[1].GetLatestLink(), 4);
}

TEST(BeatGraphTest, LongChainsDontExhaustTheStack) {
    constexpr std::int32_t kNodes = 200'000;
    auto nodes = MakeNodes(kNodes);
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        Link(nodes[i - 1], nodes[i]);
    }
    EXPECT_EQ(nodes.front().GetLatestLink(), kNodes - 1);
    EXPECT_EQ(nodes.back().GetEarliestLink(), 0);
    EXPECT_EQ(nodes.front().DeactivateAllNext(), kNodes - 1);
}

TEST(BeatGraphTest, PinsCopiesNeverTakeLinks) {
    auto nodes = MakeNodes(2);
    Link(nodes[0], nodes[1]);
    nodes[0].m_nPosition = 7;
    nodes[0].m_fConfidence = 0.5f;
    nodes[0].m_nChainId = 3;
    nodes[0].m_bActive = false;
    CPfBeatPoint const copy(nodes[0]);
    EXPECT_EQ(copy.m_nPosition, 7);
    EXPECT_EQ(copy.m_fConfidence, 0.5f);
    EXPECT_EQ(copy.m_nChainId, 3);
    EXPECT_FALSE(copy.m_bActive);
    EXPECT_EQ(copy.m_nIndex, 0);
    EXPECT_TRUE(copy.m_vNextLinks.empty());
    nodes[1] = copy;
    EXPECT_EQ(nodes[1].m_nPosition, 7);
    EXPECT_EQ(nodes[1].m_vPrevLinks, (std::vector<CPfBeatPoint*>{&nodes[0]}));
}

TEST(BeatGraphTest, ChainKeepsItsIndicesAscending) {
    CPfBeatPointChain chain = MakeChain({7, 3, 5});
    EXPECT_EQ(chain.m_vPoints, (std::vector<std::int32_t>{3, 5, 7}));
    EXPECT_EQ(chain.GetFirstIndex(), 3);
    EXPECT_EQ(chain.GetLastIndex(), 7);
    chain.RemovePoint(9);
    EXPECT_EQ(chain.m_vPoints.size(), 3U);
    chain.AddPoint(5);
    chain.RemovePoint(5);
    EXPECT_EQ(chain.m_vPoints, (std::vector<std::int32_t>{3, 5, 7}));
}

TEST(BeatGraphTest, ChainEnumeratesUntilItsEnd) {
    CPfBeatPointChain chain = MakeChain({7, 3});
    chain.m_fScore = 0.5f;
    std::int32_t index = -7;
    EXPECT_TRUE(chain.EnumItems(1, &index));
    EXPECT_EQ(index, 7);
    EXPECT_FALSE(chain.EnumItems(2, &index));
    EXPECT_FALSE(chain.EnumItems(-1, &index));
    EXPECT_EQ(index, 7);
    chain.RemoveAll();
    EXPECT_FALSE(chain.EnumItems(0, &index));
    EXPECT_EQ(chain.m_fScore, 0.5f);
}

TEST(BeatGraphTest, ChainsThatTouchOverlap) {
    CPfBeatPointChain const middle = MakeChain({5, 9});
    EXPECT_TRUE(MakeChain({2, 5}).IsOverlapping(middle));
    EXPECT_TRUE(middle.IsOverlapping(MakeChain({2, 5})));
    EXPECT_TRUE(MakeChain({6, 7}).IsOverlapping(middle));
    EXPECT_FALSE(MakeChain({2, 4}).IsOverlapping(middle));
    EXPECT_FALSE(middle.IsOverlapping(MakeChain({2, 4})));
}

TEST(BeatGraphTest, PinsConfidenceSortHoldsForEquals) {
    CPfImpactPoint const a{0, 0.5f};
    CPfImpactPoint const b{1, 0.5f};
    EXPECT_TRUE(ImpactPointConfSort(a, b));
    EXPECT_TRUE(ImpactPointConfSort(b, a));
    EXPECT_FALSE(ImpactPointConfSort(a, {2, 0.75f}));
}

TEST(BeatGraphTest, QualityAndScoreDescendStrictly) {
    EXPECT_TRUE(BeatConQualitySort({0, 1, 0.5f}, {0, 2, 0.25f}));
    EXPECT_FALSE(BeatConQualitySort({0, 1, 0.5f}, {0, 2, 0.5f}));
    CPfBeatPointChain better;
    better.m_fScore = 1.0f;
    EXPECT_TRUE(BeatPointChainSort(better, CPfBeatPointChain{}));
    EXPECT_FALSE(BeatPointChainSort(better, better));
}
