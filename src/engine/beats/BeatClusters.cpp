// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// Steps of ClusterFilterPoints:
// 1. BuildNodes          a node per candidate, confidences stretched to 0..1
// 2. ProximityConfFilter of close neighbours the more confident stays
// 3. BestConnections     pairs up to 32 steps apart that fit the step, best first
//                        (BeatConnections.cpp)
// 4. LinkBestFirst       greedily, until 80 % of the nodes are chained (BeatLinker.cpp)
// 5. RankChains          by span and confidence
// 6. DropOverlaps, DropShortChains
// 7. MeasureStep         the step, from the best chain

#include "engine/beats/BeatBuilder.h"
#include "engine/beats/BeatLinker.h"

#include "base/Rounding.h"

#include <algorithm>
#include <list>
#include <map>
#include <optional>

namespace {

using Nodes = CPfBeatBuilder::Nodes;

constexpr float kProximitySteps = 0.45f;        // Fixed: reach of the proximity filter.
constexpr std::int32_t kLeastChainIndices = 32; // Fixed: shorter chains are dropped.

// Fixed: those of half an hour; 1.5 MB, and three times that while they are looked for.
constexpr std::size_t kConnectionsAtOnce = std::size_t{1} << 17U;

Nodes BuildNodes(CPfPcmThumbnail const& envelope, CPfImpactPoints const& candidates) {
    Nodes nodes;
    nodes.reserve(candidates.Points().size());
    float lowest = 0.0f;
    float highest = 0.0f;
    for (std::int64_t const position : candidates.Points()) {
        CPfBeatPoint node;
        node.m_nPosition = position;
        node.m_fConfidence = CPfBeatBuilder::CalcPointConfidence(&envelope, position);
        node.m_nIndex = static_cast<std::int32_t>(nodes.size());
        lowest = nodes.empty() ? node.m_fConfidence : std::min(lowest, node.m_fConfidence);
        highest = nodes.empty() ? node.m_fConfidence : std::max(highest, node.m_fConfidence);
        nodes.push_back(node);
    }
    float range = highest - lowest;
    if (range == 0.0f) {
        range = 1.0f;
    }
    for (CPfBeatPoint& node : nodes) {
        node.m_fConfidence = (node.m_fConfidence - lowest) / range;
    }
    return nodes;
}

/// Links the connections, best first, until that is enough. Returns: false when cancelled.
bool LinkAll(Nodes const& nodes, float step, CCancelFlag const* cancel, CPfBeatLinker* linker) {
    std::vector<CPfBeatConnection> connections;
    do {
        std::optional<CPfBeatConnection> const last =
            connections.empty() ? std::nullopt : std::optional(connections.back());
        connections = {}; // its memory goes before there is more
        connections = CPfBeatBuilder::BestConnections(nodes, step, last ? &*last : nullptr,
                                                      kConnectionsAtOnce);
        if (!linker->LinkBestFirst(connections, cancel)) {
            return false;
        }
    } while (connections.size() == kConnectionsAtOnce && !linker->IsEnough());
    return true;
}

std::vector<std::int64_t> Positions(Nodes const& nodes) {
    std::vector<std::int64_t> positions;
    positions.reserve(nodes.size());
    for (CPfBeatPoint const& node : nodes) {
        positions.push_back(node.m_nPosition);
    }
    return positions;
}

void MeasureChain(Nodes const& nodes, CPfBeatPointChain* chain) {
    if (chain->m_vPoints.empty()) {
        return;
    }
    auto const node = [&nodes](std::int32_t index) -> CPfBeatPoint const& {
        return nodes[static_cast<std::size_t>(index)];
    };
    chain->m_nSpan =
        node(chain->GetLastIndex()).m_nPosition - node(chain->GetFirstIndex()).m_nPosition;
    float sum = 0.0f;
    for (std::int32_t const index : chain->m_vPoints) {
        sum += node(index).m_fConfidence;
    }
    chain->m_fAverageConfidence = sum / static_cast<float>(chain->m_vPoints.size());
}

std::list<CPfBeatPointChain> RankChains(Nodes const& nodes, CPfBeatBuilder::Chains const& chains) {
    std::list<CPfBeatPointChain> ranked;
    for (auto const& [id, chain] : chains) {
        ranked.push_back(chain);
        MeasureChain(nodes, &ranked.back());
    }
    if (ranked.empty()) {
        return ranked;
    }
    std::int64_t largestSpan = ranked.front().m_nSpan;
    float smallest = ranked.front().m_fAverageConfidence;
    float largest = smallest;
    for (CPfBeatPointChain const& chain : ranked) {
        largestSpan = std::max(largestSpan, chain.m_nSpan);
        smallest = std::min(smallest, chain.m_fAverageConfidence);
        largest = std::max(largest, chain.m_fAverageConfidence);
    }
    largestSpan = largestSpan == 0 ? 1 : largestSpan;
    float const range = largest - smallest == 0.0f ? 1.0f : largest - smallest;
    for (CPfBeatPointChain& chain : ranked) {
        chain.m_fScore = (static_cast<float>(chain.m_nSpan) / static_cast<float>(largestSpan)) *
                         ((chain.m_fAverageConfidence - smallest) / range);
    }
    ranked.sort(BeatPointChainSort); // stable: equal scores keep ascending ids
    return ranked;
}

/// A chain goes when it overlaps one that ranks before it and stays. Those that stay don't overlap
/// each other, so of them only the last that begins before the chain's end can reach into it.
void DropOverlaps(std::list<CPfBeatPointChain>* ranked) {
    std::map<std::int32_t, CPfBeatPointChain const*> staying; // by first index
    for (auto chain = ranked->begin(); chain != ranked->end();) {
        auto const behind = staying.upper_bound(chain->GetLastIndex());
        if (behind != staying.begin() && std::prev(behind)->second->IsOverlapping(*chain)) {
            chain = ranked->erase(chain);
        } else {
            staying.emplace_hint(behind, chain->GetFirstIndex(), &*chain);
            ++chain;
        }
    }
}

void DropShortChains(std::list<CPfBeatPointChain>* ranked) {
    ranked->remove_if([](CPfBeatPointChain const& chain) {
        return chain.GetLastIndex() - chain.GetFirstIndex() < kLeastChainIndices;
    });
}

float MeasureStep(Nodes const& nodes, CPfBeatPointChain const& best, float step) {
    std::int64_t distances = 0;
    std::int64_t steps = 0;
    for (std::size_t i = 1; i < best.m_vPoints.size(); ++i) {
        std::int64_t const distance =
            nodes[static_cast<std::size_t>(best.m_vPoints[i])].m_nPosition -
            nodes[static_cast<std::size_t>(best.m_vPoints[i - 1])].m_nPosition;
        distances += distance;
        steps += CPfBeatBuilder::IntervalCount(distance, step);
    }
    return steps == 0 ? step : static_cast<float>(distances) / static_cast<float>(steps);
}

} // namespace

bool CPfBeatBuilder::ClusterFilterPoints(CPfPcmThumbnail const* envelope, float interval,
                                         CPfImpactPoints const* in, CPfImpactPoints* out,
                                         float* intervalOut) const {
    if (IsCancelled()) {
        return false;
    }
    Nodes nodes = BuildNodes(*envelope, *in);
    ProximityConfFilter(interval, &nodes);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        nodes[i].m_nIndex = static_cast<std::int32_t>(i);
    }
    float const step = AverageInterval(interval, Positions(nodes));

    CPfBeatLinker linker(&nodes);
    if (!LinkAll(nodes, step, m_pCancel, &linker)) {
        return false;
    }
    std::list<CPfBeatPointChain> ranked = RankChains(nodes, linker.TakeChains());
    DropOverlaps(&ranked);
    DropShortChains(&ranked);
    for (CPfBeatPointChain const& chain : ranked) {
        for (std::int32_t const index : chain.m_vPoints) {
            out->Add(nodes[static_cast<std::size_t>(index)].m_nPosition);
        }
    }
    *intervalOut = ranked.empty() ? step : MeasureStep(nodes, ranked.front(), step);
    return true;
}

bool CPfBeatBuilder::ProximityConfFilter(float interval, Nodes* nodes) {
    std::int64_t const reach = TruncateTo<std::int64_t>(interval * kProximitySteps);
    Nodes left;
    left.reserve(nodes->size());
    for (std::size_t i = 0; i < nodes->size(); ++i) {
        CPfBeatPoint const& node = (*nodes)[i];
        bool outshone = false;
        // Backwards only those count that are left; forwards all.
        for (std::size_t k = left.size();
             k-- > 0 && node.m_nPosition - left[k].m_nPosition < reach && !outshone;) {
            outshone = left[k].m_fConfidence > node.m_fConfidence;
        }
        for (std::size_t k = i + 1;
             k < nodes->size() && (*nodes)[k].m_nPosition - node.m_nPosition < reach && !outshone;
             ++k) {
            outshone = (*nodes)[k].m_fConfidence > node.m_fConfidence;
        }
        if (!outshone) {
            left.push_back(node);
        }
    }
    nodes->swap(left);
    return true;
}

float CPfBeatBuilder::CalcCoverage(Nodes const& nodes) {
    std::int32_t active = 0;
    std::int32_t chained = 0;
    for (CPfBeatPoint const& node : nodes) {
        active += node.m_bActive ? 1 : 0;
        chained += node.m_bActive && node.m_nChainId != -1 ? 1 : 0;
    }
    return active == 0 ? 0.0f : static_cast<float>(chained) / static_cast<float>(active);
}

void CPfBeatBuilder::RebuildChain(std::uint32_t chainId, Nodes const& nodes, Chains* chains) {
    auto const found = chains->find(chainId);
    if (found == chains->end()) {
        return;
    }
    CPfBeatPointChain& chain = found->second;
    chain.RemoveAll();
    for (CPfBeatPoint const& node : nodes) {
        if (node.m_bActive && node.m_nChainId == chain.m_nId) {
            chain.AddPoint(node.m_nIndex);
        }
    }
}

float CPfBeatBuilder::AverageInterval(float estimate, std::vector<std::int64_t> const& positions) {
    constexpr float kTolerance = 0.05f;     // Fixed: a step this far off doesn't count.
    constexpr std::uint32_t kMostSteps = 3; // Fixed: nor does a distance of more steps.
    std::int64_t const lower = TruncateTo<std::int64_t>(estimate * (1.0f - kTolerance));
    std::int64_t const upper = TruncateTo<std::int64_t>(estimate * (1.0f + kTolerance));
    std::int64_t sum = 0;
    std::int64_t count = 0;
    for (std::size_t i = 1; i < positions.size(); ++i) {
        std::int64_t const distance = positions[i] - positions[i - 1];
        std::uint32_t const steps = IntervalCount(distance, estimate);
        if (steps < 1 || steps > kMostSteps) {
            continue;
        }
        std::int64_t const step = distance / steps;
        if (lower <= step && step <= upper) {
            sum += step;
            ++count;
        }
    }
    return count == 0 ? estimate : static_cast<float>(sum) / static_cast<float>(count);
}
