// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// A connection (a, b), a the earlier node, meets one of four cases:
// neither in a chain: BeginRun; only b: Prepend; only a: Append; both: MeetRuns, which joins two
// runs, drops the one that lies within the other, or leaves both.

#include "engine/beats/BeatLinker.h"

#include <utility>

namespace {

constexpr float kEnoughCoverage = 0.8f; // Fixed: linking stops here.

} // namespace

CPfBeatLinker::CPfBeatLinker(CPfBeatBuilder::Nodes* nodes)
    : m_pNodes(nodes), m_nActive(static_cast<std::int32_t>(nodes->size())) {
}

bool CPfBeatLinker::LinkBestFirst(std::vector<CPfBeatConnection> const& connections,
                                  CCancelFlag const* cancel) {
    for (CPfBeatConnection const& connection : connections) {
        if (cancel != nullptr && cancel->IsSet()) {
            return false;
        }
        if (Link(connection) && IsEnough()) {
            break;
        }
    }
    return true;
}

bool CPfBeatLinker::IsEnough() const {
    return Coverage() >= kEnoughCoverage;
}

bool CPfBeatLinker::Link(CPfBeatConnection const& connection) {
    CPfBeatPoint* a = &(*m_pNodes)[static_cast<std::size_t>(connection.m_nFirst)];
    CPfBeatPoint* b = &(*m_pNodes)[static_cast<std::size_t>(connection.m_nSecond)];
    if (b->m_nIndex < a->m_nIndex) {
        std::swap(a, b);
    }
    if (!a->m_bActive || !b->m_bActive) {
        return false;
    }
    if (a->m_nChainId == -1 && b->m_nChainId == -1) {
        BeginRun(*a, *b);
    } else if (a->m_nChainId == -1) {
        Prepend(*a, *b);
    } else if (b->m_nChainId == -1) {
        Append(*a, *b);
    } else {
        MeetRuns(*a, *b);
    }
    return true;
}

float CPfBeatLinker::Coverage() const {
    return m_nActive == 0 ? 0.0f : static_cast<float>(m_nChained) / static_cast<float>(m_nActive);
}

CPfBeatBuilder::Chains CPfBeatLinker::TakeChains() const {
    CPfBeatBuilder::Chains chains;
    for (CRun const& run : m_vRuns) {
        if (!run.m_bStands) {
            continue;
        }
        CPfBeatPointChain& chain = chains[run.m_nId];
        chain.m_nId = static_cast<std::int32_t>(run.m_nId);
        CPfBeatPoint const* node = &(*m_pNodes)[static_cast<std::size_t>(run.m_nEarliest)];
        chain.m_vPoints.push_back(node->m_nIndex);
        while (!node->m_vNextLinks.empty()) {
            node = node->m_vNextLinks.front();
            chain.m_vPoints.push_back(node->m_nIndex);
        }
    }
    return chains;
}

// The run of a node in a chain. A node's chain id names the run that it was begun with; runs that
// were joined point to the one that took them in, and the way there is halved on each search.
CPfBeatLinker::CRun& CPfBeatLinker::RunOf(CPfBeatPoint const& node) {
    std::int32_t at = node.m_nChainId - 1;
    auto const run = [this](std::int32_t i) -> CRun& {
        return m_vRuns[static_cast<std::size_t>(i)];
    };
    while (run(at).m_nParent != at) {
        run(at).m_nParent = run(run(at).m_nParent).m_nParent;
        at = run(at).m_nParent;
    }
    return run(at);
}

void CPfBeatLinker::BeginRun(CPfBeatPoint& a, CPfBeatPoint& b) {
    auto const place = static_cast<std::int32_t>(m_vRuns.size());
    std::int32_t const id = place + 1;
    m_vRuns.push_back({place, static_cast<std::uint32_t>(id), a.m_nIndex, b.m_nIndex, true});
    a.m_nChainId = id;
    b.m_nChainId = id;
    m_nChained += 2;
    a.Connect(&b);
    b.Connect(&a);
}

void CPfBeatLinker::Prepend(CPfBeatPoint& a, CPfBeatPoint& b) {
    CRun& run = RunOf(b);
    if (a.m_nIndex >= run.m_nEarliest) {
        return;
    }
    CutBackward(b);
    a.m_nChainId = b.m_nChainId;
    ++m_nChained;
    run.m_nEarliest = a.m_nIndex;
    a.Connect(&b);
    b.Connect(&a);
}

void CPfBeatLinker::Append(CPfBeatPoint& a, CPfBeatPoint& b) {
    CRun& run = RunOf(a);
    if (run.m_nLatest >= b.m_nIndex) {
        return;
    }
    CutForward(a);
    b.m_nChainId = a.m_nChainId;
    ++m_nChained;
    run.m_nLatest = b.m_nIndex;
    a.Connect(&b);
    b.Connect(&a);
}

void CPfBeatLinker::MeetRuns(CPfBeatPoint& a, CPfBeatPoint& b) {
    CRun const& runA = RunOf(a);
    CRun const& runB = RunOf(b);
    if (&runA == &runB) {
        return;
    }
    bool const startsEarlier = runA.m_nEarliest < runB.m_nEarliest;
    bool const endsEarlier = runA.m_nLatest < runB.m_nLatest;
    if (startsEarlier && endsEarlier) {
        JoinRuns(a, b);
    } else if (!startsEarlier && runB.m_nLatest < runA.m_nLatest) {
        // Runs are disjoint, so their starts differ: b's run starts and ends earlier, they cross.
        return;
    } else if (startsEarlier) {
        DropRun(b);
    } else {
        DropRun(a);
    }
}

void CPfBeatLinker::JoinRuns(CPfBeatPoint& a, CPfBeatPoint& b) {
    CutForward(a);
    CutBackward(b);
    CRun& runA = RunOf(a);
    CRun& runB = RunOf(b);
    runA.m_nLatest = runB.m_nLatest;
    runB.m_nParent = runA.m_nParent;
    runB.m_bStands = false;
    a.Connect(&b);
    b.Connect(&a);
}

void CPfBeatLinker::DropRun(CPfBeatPoint& node) {
    RunOf(node).m_bStands = false;
    CutBackward(node);
    CutForward(node);
    node.m_bActive = false;
    SwitchedOff(1);
}

void CPfBeatLinker::CutForward(CPfBeatPoint& node) {
    SwitchedOff(node.DeactivateAllNext());
    node.DisconnectAllNext();
}

void CPfBeatLinker::CutBackward(CPfBeatPoint& node) {
    SwitchedOff(node.DeactivateAllPrev());
    node.DisconnectAllPrev();
}

// Only nodes in a chain have links, so each one that goes off counted on both sides.
void CPfBeatLinker::SwitchedOff(std::int32_t count) {
    m_nActive -= count;
    m_nChained -= count;
}
