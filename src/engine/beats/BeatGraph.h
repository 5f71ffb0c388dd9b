// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <vector>

/// One candidate position with its confidence. Units: samples.
struct CPfImpactPoint {
    std::int64_t m_nPosition = 0;
    float m_fConfidence = 0.0f;
};

/// One node of the beat graph. Links are one-sided and not owned: they point into the one vector of
/// nodes that the builder holds, which must not move once the first link is made. A copy takes the
/// values but never the links; assignment leaves the target's own links alone.
/// Thread: one thread at a time.
class CPfBeatPoint {
public:
    CPfBeatPoint() = default;
    CPfBeatPoint(CPfBeatPoint const& other);
    CPfBeatPoint& operator=(CPfBeatPoint const& other);
    ~CPfBeatPoint() = default;

    /// Adds `other` to the previous links when its index is lower than this node's, else to the
    /// next links. Duplicates are not refused; the other node is not changed.
    void Connect(CPfBeatPoint* other);

    /// Removes the first link to `other` from the next links and the first from the previous ones.
    void Disconnect(CPfBeatPoint* other);

    /// Removes the back-links of every next (previous) node to this one, then this node's own.
    void DisconnectAllNext();
    void DisconnectAllPrev();

    /// Switches off every node that can be reached over next (previous) links; not this one. No
    /// link is removed.
    /// Returns: how many active nodes went off.
    std::int32_t DeactivateAllNext();
    std::int32_t DeactivateAllPrev();

    /// Lowest index reached over previous links (highest over next links), this node's included.
    [[nodiscard]] std::int32_t GetEarliestLink() const;
    [[nodiscard]] std::int32_t GetLatestLink() const;

    std::int64_t m_nPosition = 0;            // samples
    float m_fConfidence = 0.0f;              // 0 to 1 over all nodes of a run
    std::vector<CPfBeatPoint*> m_vNextLinks; // later nodes, by index
    std::vector<CPfBeatPoint*> m_vPrevLinks; // earlier nodes, by index
    std::int32_t m_nChainId = -1;            // -1: in no chain
    bool m_bActive = true;                   // false once cut out of consideration
    std::int32_t m_nIndex = -1;              // place in the builder's vector
};

/// A candidate link between two nodes, named by index.
struct CPfBeatConnection {
    std::int32_t m_nFirst = -1;
    std::int32_t m_nSecond = -1;
    float m_fQuality = 0.0f; // above 0 for every link that is kept
};

/// A chain of linked nodes: their indices in ascending order, and its aggregate figures.
class CPfBeatPointChain {
public:
    /// Adds an index and keeps the order; duplicates are not refused.
    void AddPoint(std::int32_t nodeIndex);

    /// Removes the first index equal to `nodeIndex`, if any.
    void RemovePoint(std::int32_t nodeIndex);

    /// Drops the indices; the figures keep their values.
    void RemoveAll();

    /// True and the i-th index for 0 <= i < count; else false, `nodeIndex` untouched.
    bool EnumItems(std::int32_t i, std::int32_t* nodeIndex) const;

    /// Lowest and highest index. The chain must not be empty.
    [[nodiscard]] std::int32_t GetFirstIndex() const { return m_vPoints.front(); }
    [[nodiscard]] std::int32_t GetLastIndex() const { return m_vPoints.back(); }

    /// True when the closed ranges of indices share at least one. Neither chain may be empty.
    [[nodiscard]] bool IsOverlapping(CPfBeatPointChain const& other) const;

    std::vector<std::int32_t> m_vPoints;
    std::int32_t m_nId = -1;
    float m_fAverageConfidence = 0.0f;
    float m_fScore = 0.0f;
    std::int64_t m_nSpan = 0; // samples from the first to the last member
};

/// Descending confidence. It holds for equal confidences as well, so it is no strict order and must
/// not be handed to `std::sort`.
[[nodiscard]] bool ImpactPointConfSort(CPfImpactPoint const& a, CPfImpactPoint const& b);

/// Descending quality.
[[nodiscard]] bool BeatConQualitySort(CPfBeatConnection const& a, CPfBeatConnection const& b);

/// Descending score.
[[nodiscard]] bool BeatPointChainSort(CPfBeatPointChain const& a, CPfBeatPointChain const& b);
