// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/beats/BeatGraph.h"

#include <algorithm>
#include <unordered_set>

namespace {

using Links = std::vector<CPfBeatPoint*> CPfBeatPoint::*;

// Visits everything that can be reached from `start` over one side's links, with a list of our own
// instead of recursion: a chain may hold thousands of nodes.
template <typename Visit>
void WalkLinks(CPfBeatPoint const& start, Links side, Visit visit) {
    // Every chain is a plain run, which needs no list at all.
    CPfBeatPoint const* at = &start;
    while ((at->*side).size() == 1 && (at->*side).front()->m_nIndex != at->m_nIndex) {
        CPfBeatPoint* const next = (at->*side).front();
        visit(*next);
        at = next;
    }
    // Where paths fork they may meet again; each node is visited once all the same.
    std::vector<CPfBeatPoint*> open(at->*side);
    std::unordered_set<CPfBeatPoint const*> seen;
    while (!open.empty()) {
        CPfBeatPoint* const node = open.back();
        open.pop_back();
        if (seen.insert(node).second) {
            visit(*node);
            open.insert(open.end(), (node->*side).begin(), (node->*side).end());
        }
    }
}

std::int32_t Deactivate(CPfBeatPoint const& start, Links side) {
    std::int32_t count = 0;
    WalkLinks(start, side, [&count](CPfBeatPoint& node) {
        count += node.m_bActive ? 1 : 0;
        node.m_bActive = false;
    });
    return count;
}

void EraseFirst(std::vector<CPfBeatPoint*>& links, CPfBeatPoint const* other) {
    auto const found = std::find(links.begin(), links.end(), other);
    if (found != links.end()) {
        links.erase(found);
    }
}

} // namespace

CPfBeatPoint::CPfBeatPoint(CPfBeatPoint const& other)
    : m_nPosition(other.m_nPosition),
      m_fConfidence(other.m_fConfidence),
      m_nChainId(other.m_nChainId),
      m_bActive(other.m_bActive),
      m_nIndex(other.m_nIndex) {
}

// Deliberate: the target keeps its own links, so that a copied node is never linked to anything
// that it was not linked to before.
CPfBeatPoint& CPfBeatPoint::operator=(CPfBeatPoint const& other) {
    if (this == &other) {
        return *this;
    }
    m_nPosition = other.m_nPosition;
    m_fConfidence = other.m_fConfidence;
    m_nChainId = other.m_nChainId;
    m_bActive = other.m_bActive;
    m_nIndex = other.m_nIndex;
    return *this;
}

void CPfBeatPoint::Connect(CPfBeatPoint* other) {
    if (other->m_nIndex < m_nIndex) {
        m_vPrevLinks.push_back(other);
    } else {
        m_vNextLinks.push_back(other);
    }
}

void CPfBeatPoint::Disconnect(CPfBeatPoint* other) {
    EraseFirst(m_vNextLinks, other);
    EraseFirst(m_vPrevLinks, other);
}

void CPfBeatPoint::DisconnectAllNext() {
    for (CPfBeatPoint* const node : std::vector<CPfBeatPoint*>(m_vNextLinks)) {
        node->Disconnect(this);
    }
    m_vNextLinks.clear();
}

void CPfBeatPoint::DisconnectAllPrev() {
    for (CPfBeatPoint* const node : std::vector<CPfBeatPoint*>(m_vPrevLinks)) {
        node->Disconnect(this);
    }
    m_vPrevLinks.clear();
}

std::int32_t CPfBeatPoint::DeactivateAllNext() {
    return Deactivate(*this, &CPfBeatPoint::m_vNextLinks);
}

std::int32_t CPfBeatPoint::DeactivateAllPrev() {
    return Deactivate(*this, &CPfBeatPoint::m_vPrevLinks);
}

std::int32_t CPfBeatPoint::GetEarliestLink() const {
    std::int32_t earliest = m_nIndex;
    WalkLinks(*this, &CPfBeatPoint::m_vPrevLinks, [&earliest](CPfBeatPoint const& node) {
        earliest = std::min(earliest, node.m_nIndex);
    });
    return earliest;
}

std::int32_t CPfBeatPoint::GetLatestLink() const {
    std::int32_t latest = m_nIndex;
    WalkLinks(*this, &CPfBeatPoint::m_vNextLinks,
              [&latest](CPfBeatPoint const& node) { latest = std::max(latest, node.m_nIndex); });
    return latest;
}

void CPfBeatPointChain::AddPoint(std::int32_t nodeIndex) {
    m_vPoints.push_back(nodeIndex);
    std::sort(m_vPoints.begin(), m_vPoints.end());
}

void CPfBeatPointChain::RemovePoint(std::int32_t nodeIndex) {
    auto const found = std::find(m_vPoints.begin(), m_vPoints.end(), nodeIndex);
    if (found != m_vPoints.end()) {
        m_vPoints.erase(found);
    }
    std::sort(m_vPoints.begin(), m_vPoints.end());
}

void CPfBeatPointChain::RemoveAll() {
    m_vPoints.clear();
}

bool CPfBeatPointChain::EnumItems(std::int32_t i, std::int32_t* nodeIndex) const {
    if (i < 0 || static_cast<std::size_t>(i) >= m_vPoints.size()) {
        return false;
    }
    *nodeIndex = m_vPoints[static_cast<std::size_t>(i)];
    return true;
}

bool CPfBeatPointChain::IsOverlapping(CPfBeatPointChain const& other) const {
    return other.GetLastIndex() >= GetFirstIndex() && GetLastIndex() >= other.GetFirstIndex();
}

// Deliberate: greater or equal. Points of equal confidence rank in no particular order; callers
// sort with the strict ">" and keep the order of equals.
bool ImpactPointConfSort(CPfImpactPoint const& a, CPfImpactPoint const& b) {
    return a.m_fConfidence >= b.m_fConfidence;
}

bool BeatConQualitySort(CPfBeatConnection const& a, CPfBeatConnection const& b) {
    return a.m_fQuality > b.m_fQuality;
}

bool BeatPointChainSort(CPfBeatPointChain const& a, CPfBeatPointChain const& b) {
    return a.m_fScore > b.m_fScore;
}
