// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Nodes are named by their indices; "2-5" is a connection. A chain is linked from each of its
// members to the next, so linking 0-8 in a chain 0, 4, 8 would leave 4 out.

#include "engine/beats/BeatLinker.h"

#include "support/PlainLinking.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <map>
#include <random>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

CPfBeatBuilder::Nodes UnlinkedNodes(std::int32_t count) {
    CPfBeatBuilder::Nodes nodes(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        nodes[static_cast<std::size_t>(i)].m_nIndex = i;
        nodes[static_cast<std::size_t>(i)].m_nPosition = i * 1000;
    }
    return nodes;
}

std::map<std::uint32_t, std::vector<std::int32_t>> Members(CPfBeatBuilder::Chains const& chains) {
    std::map<std::uint32_t, std::vector<std::int32_t>> members;
    for (auto const& [id, chain] : chains) {
        EXPECT_EQ(chain.m_nId, static_cast<std::int32_t>(id));
        members[id] = chain.m_vPoints;
    }
    return members;
}

/// Ten nodes, linked by the connections in turn.
class BeatLinkerTest : public testing::Test {
protected:
    void Link(std::initializer_list<std::pair<std::int32_t, std::int32_t>> connections) {
        for (auto const& [first, second] : connections) {
            m_linker.Link({first, second, 1.0f});
        }
    }

    [[nodiscard]] std::map<std::uint32_t, std::vector<std::int32_t>> Chains() const {
        return Members(m_linker.TakeChains());
    }

    [[nodiscard]] std::vector<std::int32_t> Inactive() const {
        std::vector<std::int32_t> indices;
        for (CPfBeatPoint const& node : m_nodes) {
            if (!node.m_bActive) {
                indices.push_back(node.m_nIndex);
            }
        }
        return indices;
    }

    CPfBeatBuilder::Nodes m_nodes = UnlinkedNodes(10);
    CPfBeatLinker m_linker{&m_nodes};
};

} // namespace

TEST_F(BeatLinkerTest, NothingIsLinkedAtFirst) {
    EXPECT_THAT(Chains(), IsEmpty());
    EXPECT_EQ(m_linker.Coverage(), 0.0f);
}

TEST_F(BeatLinkerTest, TwoLooseNodesBeginAChain) {
    Link({{2, 5}, {6, 7}});
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(2, 5)), Pair(2, ElementsAre(6, 7))));
    EXPECT_THAT(m_nodes[2].m_vNextLinks, ElementsAre(&m_nodes[5]));
    EXPECT_THAT(m_nodes[5].m_vPrevLinks, ElementsAre(&m_nodes[2]));
    EXPECT_EQ(m_linker.Coverage(), 0.4f); // 4 of 10
}

TEST_F(BeatLinkerTest, TheOrderOfAPairDoesNotMatter) {
    Link({{5, 2}, {2, 0}});
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(0, 2, 5))));
}

TEST_F(BeatLinkerTest, LooseNodeBeforeAChainGoesInFront) {
    Link({{2, 5}, {0, 2}});
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(0, 2, 5))));
    EXPECT_THAT(Inactive(), IsEmpty());
}

TEST_F(BeatLinkerTest, LooseNodeCutsOffWhatLiesBetween) {
    Link({{2, 5}, {5, 7}, {0, 5}}); // 0 < 2: 2 is cut off
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(0, 5, 7))));
    EXPECT_THAT(Inactive(), ElementsAre(2));
    EXPECT_THAT(m_nodes[2].m_vNextLinks, IsEmpty());
    EXPECT_EQ(m_linker.Coverage(), 3.0f / 9.0f);
}

TEST_F(BeatLinkerTest, LooseNodeInsideAChainIsNotTakenInBackwards) {
    Link({{2, 5}, {3, 5}}); // 3 is not before 2
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(2, 5))));
    EXPECT_EQ(m_nodes[3].m_nChainId, -1);
    EXPECT_TRUE(m_nodes[3].m_bActive);
}

TEST_F(BeatLinkerTest, LooseNodeBehindAChainGoesToItsEnd) {
    Link({{2, 5}, {5, 7}});
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(2, 5, 7))));
    EXPECT_THAT(Inactive(), IsEmpty());
}

TEST_F(BeatLinkerTest, LooseNodeBehindAChainCutsOffWhatLiesBetween) {
    Link({{2, 5}, {5, 6}, {2, 8}}); // 6 < 8: 5 and 6 are cut off
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(2, 8))));
    EXPECT_THAT(Inactive(), ElementsAre(5, 6));
}

TEST_F(BeatLinkerTest, LooseNodeInsideAChainIsNotTakenInForwards) {
    Link({{2, 5}, {2, 4}}); // 5 is not before 4
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(2, 5))));
    EXPECT_EQ(m_nodes[4].m_nChainId, -1);
}

TEST_F(BeatLinkerTest, InactiveNodesArePassedOver) {
    Link({{2, 5}, {0, 5}}); // 2 is cut off
    EXPECT_FALSE(m_linker.Link({1, 2, 1.0f}));
    EXPECT_FALSE(m_linker.Link({2, 9, 1.0f}));
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(0, 5))));
    EXPECT_EQ(m_nodes[1].m_nChainId, -1);
}

TEST_F(BeatLinkerTest, NodesOfOneChainStayAsTheyAre) {
    Link({{0, 4}, {4, 8}, {0, 8}});
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(0, 4, 8))));
    EXPECT_THAT(Inactive(), IsEmpty());
}

TEST_F(BeatLinkerTest, ChainsOneBehindTheOtherAreJoined) {
    Link({{0, 2}, {3, 6}, {2, 3}});
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(0, 2, 3, 6))));
    EXPECT_THAT(Inactive(), IsEmpty());
}

TEST_F(BeatLinkerTest, JoiningCutsOffWhatLiesBetween) {
    Link({{0, 2}, {2, 4}, {3, 6}, {6, 8}, {2, 6}}); // 4 behind 2 and 3 before 6
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(0, 2, 6, 8))));
    EXPECT_THAT(Inactive(), ElementsAre(3, 4));
}

TEST_F(BeatLinkerTest, TheEarlierChainGivesItsNameToTheJoined) {
    Link({{6, 8}, {0, 2}, {2, 6}}); // the chain of 0 and 2 has id 2
    EXPECT_THAT(Chains(), ElementsAre(Pair(2, ElementsAre(0, 2, 6, 8))));
    Link({{8, 9}}); // 8 belongs to it now
    EXPECT_THAT(Chains(), ElementsAre(Pair(2, ElementsAre(0, 2, 6, 8, 9))));
}

TEST_F(BeatLinkerTest, ChainsThatCrossTheOtherWayStay) {
    // a is 3 in 3, 6; b is 4 in 0, 4, which begins and ends earlier.
    Link({{3, 6}, {0, 4}, {3, 4}});
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(3, 6)), Pair(2, ElementsAre(0, 4))));
    EXPECT_THAT(Inactive(), IsEmpty());
}

TEST_F(BeatLinkerTest, ChainWithinTheLaterNodesChainIsDropped) {
    Link({{3, 5}, {0, 8}, {3, 8}}); // a is 3 in 3, 5, within 0, 8
    EXPECT_THAT(Chains(), ElementsAre(Pair(2, ElementsAre(0, 8))));
    EXPECT_THAT(Inactive(), ElementsAre(3, 5));
    EXPECT_EQ(m_linker.Coverage(), 2.0f / 8.0f);
}

TEST_F(BeatLinkerTest, ChainWithinTheEarlierNodesChainIsDropped) {
    Link({{0, 8}, {3, 5}, {5, 7}, {0, 5}}); // b is 5 in 3, 5, 7, within 0, 8
    EXPECT_THAT(Chains(), ElementsAre(Pair(1, ElementsAre(0, 8))));
    EXPECT_THAT(Inactive(), ElementsAre(3, 5, 7));
}

TEST_F(BeatLinkerTest, LinkingStopsAtFourFifths) {
    // 0-1, 2-3, 4-5 and 6-7 chain 8 of 10 nodes; 8-9 is not looked at any more.
    CCancelFlag cancel;
    EXPECT_TRUE(m_linker.LinkBestFirst(
        {{0, 1, 1.0f}, {2, 3, 1.0f}, {4, 5, 1.0f}, {6, 7, 1.0f}, {8, 9, 1.0f}}, &cancel));
    EXPECT_EQ(Chains().size(), 4U);
    EXPECT_EQ(m_linker.Coverage(), 0.8f);
}

TEST_F(BeatLinkerTest, CancelledLinkingFails) {
    CCancelFlag cancel;
    cancel.Set();
    EXPECT_FALSE(m_linker.LinkBestFirst({{0, 1, 1.0f}}, &cancel));
    EXPECT_THAT(Chains(), IsEmpty());
    EXPECT_TRUE(m_linker.LinkBestFirst({}, &cancel)); // there was nothing to cancel
}

TEST_F(BeatLinkerTest, WithoutActiveNodesNothingIsCovered) {
    CPfBeatBuilder::Nodes none;
    EXPECT_EQ(CPfBeatLinker(&none).Coverage(), 0.0f);
}

TEST_F(BeatLinkerTest, LinksLikeTheRulesCarriedOutOneByOne) {
    std::mt19937 engine(1);
    auto const random = [&engine](std::int32_t bound) {
        return static_cast<std::int32_t>(engine() % static_cast<std::uint32_t>(bound));
    };
    for (int round = 0; round < 3000; ++round) {
        std::int32_t const count = 2 + random(24);
        std::vector<CPfBeatConnection> connections;
        for (std::int32_t i = 1 + random(80); i > 0; --i) {
            std::int32_t const first = random(count);
            std::int32_t const second = random(count);
            if (first != second) {
                connections.push_back({first, second, 1.0f});
            }
        }
        CPfBeatBuilder::Nodes nodes = UnlinkedNodes(count);
        CPfBeatLinker linker(&nodes);
        ASSERT_TRUE(linker.LinkBestFirst(connections, nullptr));
        plain::Nodes plainNodes = UnlinkedNodes(count);
        plain::Chains plainChains;
        plain::Link(connections, &plainNodes, &plainChains);

        ASSERT_EQ(Members(linker.TakeChains()), Members(plainChains)) << round;
        ASSERT_EQ(linker.Coverage(), CPfBeatBuilder::CalcCoverage(plainNodes)) << round;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            ASSERT_EQ(nodes[i].m_bActive, plainNodes[i].m_bActive) << round;
            ASSERT_EQ(nodes[i].m_nChainId == -1, plainNodes[i].m_nChainId == -1) << round;
        }
    }
}
