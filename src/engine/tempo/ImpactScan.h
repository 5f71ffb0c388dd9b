// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/envelope/ImpactPoints.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

/// The walk of both onset detectors over an envelope, from a high element down to a low one. It
/// remembers a peak ahead, and how many elements it still passes over. Where it stands says all
/// about how it goes on.
class CImpactScan {
public:
    /// Starts at element `high`; `hold` is the reach of the peak and of the rest behind a
    /// detection; the first `resting` elements are passed over.
    CImpactScan(std::span<float const> elements, std::uint32_t hold, std::int32_t high,
                std::uint32_t resting = 0)
        : m_elements(elements), m_nHold(hold), m_nPeak(high), m_nResting(resting) {}

    /// Goes on to element i, which is inside. Returns: false when it is passed over.
    bool MoveTo(std::int32_t i) {
        if (m_nResting > 0) {
            m_nPeak = i;
            --m_nResting;
            return false;
        }
        if (At(m_nPeak) < At(i)) {
            m_nPeak = i;
        }
        auto const last = static_cast<std::int64_t>(m_elements.size()) - 1;
        auto const bound =
            static_cast<std::int32_t>(std::min<std::int64_t>(std::int64_t{i} + m_nHold, last));
        if (m_nPeak > bound) {
            // Deliberate: the bound itself is left out, so a remembered peak that falls out of
            // sight gives way to one at most hold - 1 elements ahead.
            m_nPeak = FirstMaximum(i, bound);
        }
        return true;
    }

    /// Behind a detection at element i.
    void RestAt(std::int32_t i) {
        m_nPeak = i;
        m_nResting = m_nHold;
    }

    [[nodiscard]] std::int32_t GetPeak() const { return m_nPeak; }

    /// True when nothing is passed over and the peak is `peak`: so it stands, and so it is put.
    [[nodiscard]] bool Has(std::int32_t peak) const { return m_nResting == 0 && m_nPeak == peak; }
    void Put(std::int32_t peak) { m_nPeak = peak; }

private:
    [[nodiscard]] float At(std::int32_t i) const { return m_elements[static_cast<std::size_t>(i)]; }

    /// Index of the first of the largest elements in [first, end); `first` when that is empty.
    [[nodiscard]] std::int32_t FirstMaximum(std::int32_t first, std::int32_t end) const {
        std::int32_t best = first;
        for (std::int32_t i = first + 1; i < end; ++i) {
            if (At(best) < At(i)) {
                best = i;
            }
        }
        return best;
    }

    std::span<float const> m_elements;
    std::uint32_t m_nHold;
    std::int32_t m_nPeak;
    std::uint32_t m_nResting;
};

/// Many scans of one envelope with different thresholds. A first walk without any threshold notes,
/// for every few elements, where it stands before them and which thresholds find nothing there. A
/// scan that comes by in the same state goes the same way, so it need not go.
///
/// `Test` has `bool Fires(i, peak, threshold)`, `float Most(i, peak)`, which no threshold is below
/// that fires there, and `std::int64_t Position(i, peak)` of what is found.
template <typename Test>
class CImpactScans {
public:
    /// The elements must outlive it.
    CImpactScans(Test test, std::span<float const> elements, std::uint32_t hold)
        : m_test(test), m_elements(elements), m_nHold(hold) {
        CImpactScan scan = Start();
        m_vBlocks.reserve(elements.size() / kBlockElements + 1);
        for (std::int32_t high = Last(); high >= 0; high -= kBlockElements) {
            CBlock block{scan.GetPeak(), -std::numeric_limits<float>::infinity()};
            for (std::int32_t i = high; i >= LowOf(high); --i) {
                (void)scan.MoveTo(i);
                float const most = m_test.Most(i, scan.GetPeak());
                block.m_fMost = most > block.m_fMost ? most : block.m_fMost; // never NaN
            }
            m_vBlocks.push_back(block);
        }
    }

    /// Adds what the scan with `threshold` finds, from the end to the start. Returns: its number.
    std::int32_t Find(float threshold, CPfImpactPoints* points) const {
        CImpactScan scan = Start();
        std::int32_t found = 0;
        std::int32_t high = Last();
        for (std::size_t b = 0; b < m_vBlocks.size(); ++b, high -= kBlockElements) {
            if (!(m_vBlocks[b].m_fMost > threshold) && scan.Has(m_vBlocks[b].m_nPeak)) {
                scan.Put(b + 1 < m_vBlocks.size() ? m_vBlocks[b + 1].m_nPeak : 0);
                continue;
            }
            for (std::int32_t i = high; i >= LowOf(high); --i) {
                if (scan.MoveTo(i) && m_test.Fires(i, scan.GetPeak(), threshold)) {
                    points->Add(m_test.Position(i, scan.GetPeak()));
                    ++found;
                    scan.RestAt(i);
                }
            }
        }
        return found;
    }

private:
    // Tuned: BM_SlopeSearch; eight bytes for so many elements.
    static constexpr std::int32_t kBlockElements = 16;

    struct CBlock {
        std::int32_t m_nPeak; // before its first element
        float m_fMost;        // thresholds from here on find nothing in it
    };

    [[nodiscard]] std::int32_t Last() const {
        return static_cast<std::int32_t>(m_elements.size()) - 1;
    }
    [[nodiscard]] CImpactScan Start() const { return {m_elements, m_nHold, Last()}; }
    [[nodiscard]] static std::int32_t LowOf(std::int32_t high) {
        return std::max(high - kBlockElements + 1, 0);
    }

    Test m_test;
    std::span<float const> m_elements;
    std::uint32_t m_nHold;
    std::vector<CBlock> m_vBlocks; // from the end to the start
};
