// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/beats/BeatBuilder.h"

#include <algorithm>
#include <list>
#include <vector>

// The clustering of candidates, rule after rule, with every figure computed anew whenever it is
// needed. Slow, and meant to be compared with what the engine does.

namespace plain {

using Nodes = CPfBeatBuilder::Nodes;
using Chains = CPfBeatBuilder::Chains;

inline void ConnectBoth(CPfBeatPoint& a, CPfBeatPoint& b) {
    a.Connect(&b);
    b.Connect(&a);
}

inline void CutNext(CPfBeatPoint& node) {
    node.DeactivateAllNext();
    node.DisconnectAllNext();
}

inline void CutPrev(CPfBeatPoint& node) {
    node.DeactivateAllPrev();
    node.DisconnectAllPrev();
}

inline void Drop(CPfBeatPoint& node, Chains* chains) {
    CutPrev(node);
    CutNext(node);
    node.m_bActive = false;
    chains->erase(static_cast<std::uint32_t>(node.m_nChainId));
}

inline void Meet(CPfBeatPoint& a, CPfBeatPoint& b, Nodes* nodes, Chains* chains) {
    if (a.m_nChainId == b.m_nChainId) {
        return;
    }
    std::int32_t const earliestA = a.GetEarliestLink();
    std::int32_t const latestA = a.GetLatestLink();
    std::int32_t const earliestB = b.GetEarliestLink();
    std::int32_t const latestB = b.GetLatestLink();
    if (earliestA < earliestB && latestA < latestB) {
        CutNext(a);
        CutPrev(b);
        std::int32_t const left = b.m_nChainId;
        for (CPfBeatPoint& node : *nodes) {
            if (node.m_nChainId == left) {
                node.m_nChainId = a.m_nChainId;
            }
        }
        chains->erase(static_cast<std::uint32_t>(left));
        CPfBeatBuilder::RebuildChain(static_cast<std::uint32_t>(a.m_nChainId), *nodes, chains);
        ConnectBoth(a, b);
    } else if (earliestB < earliestA && latestB < latestA) {
        return;
    } else if ((earliestB < earliestA && latestB >= latestA) ||
               (earliestB == earliestA && latestB > latestA)) {
        Drop(a, chains);
    } else if (earliestB >= earliestA && latestB <= latestA) {
        Drop(b, chains);
    }
}

/// Links the connections in their order. Returns: how many were looked at.
inline std::size_t Link(std::vector<CPfBeatConnection> const& connections, Nodes* nodes,
                        Chains* chains) {
    std::uint32_t nextId = 1;
    std::size_t looked = 0;
    for (CPfBeatConnection const& connection : connections) {
        ++looked;
        CPfBeatPoint& first = (*nodes)[static_cast<std::size_t>(connection.m_nFirst)];
        CPfBeatPoint& second = (*nodes)[static_cast<std::size_t>(connection.m_nSecond)];
        CPfBeatPoint& a = first.m_nIndex < second.m_nIndex ? first : second;
        CPfBeatPoint& b = first.m_nIndex < second.m_nIndex ? second : first;
        if (!a.m_bActive || !b.m_bActive) {
            continue;
        }
        if (a.m_nChainId == -1 && b.m_nChainId == -1) {
            a.m_nChainId = b.m_nChainId = static_cast<std::int32_t>(nextId);
            CPfBeatPointChain& chain = (*chains)[nextId];
            chain.m_nId = static_cast<std::int32_t>(nextId++);
            chain.AddPoint(a.m_nIndex);
            chain.AddPoint(b.m_nIndex);
            ConnectBoth(a, b);
        } else if (a.m_nChainId == -1) {
            if (a.m_nIndex < b.GetEarliestLink()) {
                CutPrev(b);
                a.m_nChainId = b.m_nChainId;
                CPfBeatBuilder::RebuildChain(static_cast<std::uint32_t>(b.m_nChainId), *nodes,
                                             chains);
                ConnectBoth(a, b);
            }
        } else if (b.m_nChainId == -1) {
            if (a.GetLatestLink() < b.m_nIndex) {
                CutNext(a);
                b.m_nChainId = a.m_nChainId;
                CPfBeatBuilder::RebuildChain(static_cast<std::uint32_t>(a.m_nChainId), *nodes,
                                             chains);
                ConnectBoth(a, b);
            }
        } else {
            Meet(a, b, nodes, chains);
        }
        if (CPfBeatBuilder::CalcCoverage(*nodes) >= 0.8f) {
            break;
        }
    }
    return looked;
}

/// Every pair, its quality asked for one by one.
inline std::vector<CPfBeatConnection> Connections(Nodes const& nodes, float step) {
    std::vector<CPfBeatConnection> connections;
    auto const count = static_cast<std::int32_t>(nodes.size());
    for (std::int32_t i = 0; i < count; ++i) {
        for (std::int32_t j = i + 1; j < count; ++j) {
            float const quality = CPfBeatBuilder::CalcConQuality(nodes, step, i, j);
            if (quality > 0.0f) {
                connections.push_back({i, j, quality});
            }
        }
    }
    return connections;
}

inline void Rank(std::vector<CPfBeatConnection>* connections) {
    std::ranges::stable_sort(*connections, BeatConQualitySort);
}

/// The chains that stay, best first.
inline std::list<CPfBeatPointChain> RankChains(Nodes const& nodes, Chains const& chains) {
    auto const at = [&nodes](std::int32_t i) { return nodes[static_cast<std::size_t>(i)]; };
    std::list<CPfBeatPointChain> ranked;
    std::int64_t largestSpan = 0;
    float smallest = 0.0f;
    float largest = 0.0f;
    for (auto const& [id, filed] : chains) {
        CPfBeatPointChain chain = filed;
        chain.m_nSpan =
            at(chain.GetLastIndex()).m_nPosition - at(chain.GetFirstIndex()).m_nPosition;
        float sum = 0.0f;
        for (std::int32_t const index : chain.m_vPoints) {
            sum += at(index).m_fConfidence;
        }
        chain.m_fAverageConfidence = sum / static_cast<float>(chain.m_vPoints.size());
        bool const isFirst = ranked.empty();
        largestSpan = isFirst ? chain.m_nSpan : std::max(largestSpan, chain.m_nSpan);
        smallest =
            isFirst ? chain.m_fAverageConfidence : std::min(smallest, chain.m_fAverageConfidence);
        largest =
            isFirst ? chain.m_fAverageConfidence : std::max(largest, chain.m_fAverageConfidence);
        ranked.push_back(chain);
    }
    float const range = largest == smallest ? 1.0f : largest - smallest;
    for (CPfBeatPointChain& chain : ranked) {
        float const span = static_cast<float>(chain.m_nSpan) /
                           static_cast<float>(largestSpan == 0 ? 1 : largestSpan);
        chain.m_fScore = span * ((chain.m_fAverageConfidence - smallest) / range);
    }
    ranked.sort(BeatPointChainSort);
    for (auto a = ranked.begin(); a != ranked.end(); ++a) {
        for (auto b = std::next(a); b != ranked.end();) {
            b = a->IsOverlapping(*b) ? ranked.erase(b) : std::next(b);
        }
    }
    ranked.remove_if([](CPfBeatPointChain const& chain) {
        return chain.GetLastIndex() - chain.GetFirstIndex() < 32;
    });
    return ranked;
}

/// Of each node: is one of strictly higher confidence within reach? Erased at once if so.
inline void Thin(float interval, Nodes* nodes) {
    auto const reach = static_cast<std::int64_t>(interval * 0.45f);
    std::list<CPfBeatPoint> left(nodes->begin(), nodes->end());
    for (auto p = left.begin(); p != left.end();) {
        auto best = p;
        for (auto q = p; p->m_nPosition - q->m_nPosition < reach; --q) {
            best = q->m_fConfidence > best->m_fConfidence ? q : best;
            if (q == left.begin()) {
                break;
            }
        }
        for (auto q = p; q != left.end() && q->m_nPosition - p->m_nPosition < reach; ++q) {
            best = q->m_fConfidence > best->m_fConfidence ? q : best;
        }
        p = best != p && p->m_fConfidence < best->m_fConfidence ? left.erase(p) : std::next(p);
    }
    nodes->assign(left.begin(), left.end());
}

} // namespace plain
