// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"
#include "engine/beats/BeatBuilder.h"

#include <cstdint>
#include <vector>

/// Greedy linking of beat nodes, best connection first, into chains. Every chain is one run of
/// active nodes, each linked to the one before and the one after; `CPfBeatLinker` keeps the ends of
/// every run and the counts behind the coverage, so that one connection costs next to nothing
/// however long the chains are. The results are those of walking the links each time.
/// Thread: worker.
class CPfBeatLinker {
public:
    /// `nodes` must be in position order, numbered 0, 1, 2 ... and stay where they are.
    explicit CPfBeatLinker(CPfBeatBuilder::Nodes* nodes);

    /// Links `connections` in their order until 80 % of the active nodes are in a chain.
    /// Returns: false when the run was cancelled in between. `cancel` may be null.
    bool LinkBestFirst(std::vector<CPfBeatConnection> const& connections,
                       CCancelFlag const* cancel);

    /// True once 80 % of the active nodes are in a chain.
    [[nodiscard]] bool IsEnough() const;

    /// Takes the next best connection into account.
    /// Returns: false when it was passed over because one of its ends is inactive.
    bool Link(CPfBeatConnection const& connection);

    /// Fraction of the active nodes that are in a chain; 0 when none is active.
    [[nodiscard]] float Coverage() const;

    /// The chains that stand, by id, with their members.
    [[nodiscard]] CPfBeatBuilder::Chains TakeChains() const;

private:
    /// Ends of a run, and the id it goes by. Index in the list: the id the run was begun with.
    struct CRun {
        std::int32_t m_nParent; // run that this one was joined to; itself when it was not
        std::uint32_t m_nId;
        std::int32_t m_nEarliest;
        std::int32_t m_nLatest;
        bool m_bStands;
    };

    CRun& RunOf(CPfBeatPoint const& node);
    void BeginRun(CPfBeatPoint& a, CPfBeatPoint& b);
    void Prepend(CPfBeatPoint& a, CPfBeatPoint& b);
    void Append(CPfBeatPoint& a, CPfBeatPoint& b);
    void MeetRuns(CPfBeatPoint& a, CPfBeatPoint& b);
    void JoinRuns(CPfBeatPoint& a, CPfBeatPoint& b);
    void DropRun(CPfBeatPoint& node);
    void CutForward(CPfBeatPoint& node);
    void CutBackward(CPfBeatPoint& node);
    void SwitchedOff(std::int32_t count);

    CPfBeatBuilder::Nodes* m_pNodes;
    std::vector<CRun> m_vRuns;
    std::int32_t m_nActive;
    std::int32_t m_nChained = 0;
};
