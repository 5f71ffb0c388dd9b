// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// Sequence with access by rank and insertion anywhere. It is cut into blocks, so that an insertion
/// moves the items of one block and adds 1 to the start ranks of the blocks behind it; a plain
/// array would move everything behind the place.
/// Pointers to items hold until the next insertion.
/// Thread: one thread at a time.
template <typename T, std::uint32_t kBlockItems>
class CBlockedList {
    static_assert(kBlockItems >= 2);

public:
    [[nodiscard]] std::uint32_t GetCount() const { return m_nCount; }

    /// `rank` must be below the count.
    [[nodiscard]] T& At(std::uint32_t rank) {
        std::size_t const block = BlockOf(rank, 0, m_vStarts.size());
        return m_vBlocks[block]->m_vItems[rank - m_vStarts[block]];
    }

    /// Puts `value` before the item of that rank; a rank of the count appends.
    void InsertAt(std::uint32_t rank, T const& value) {
        if (m_vBlocks.empty()) {
            m_vBlocks.push_back(std::make_unique<CBlock>());
            m_vStarts.push_back(0);
        }
        std::size_t block = BlockOf(rank, 0, m_vStarts.size());
        if (m_vBlocks[block]->m_nCount == kBlockItems) {
            Split(block);
            if (rank >= m_vStarts[block + 1]) {
                ++block;
            }
        }
        CBlock& target = *m_vBlocks[block];
        auto const place = target.m_vItems.begin() + (rank - m_vStarts[block]);
        auto const end = target.m_vItems.begin() + target.m_nCount;
        std::move_backward(place, end, end + 1);
        *place = value;
        ++target.m_nCount;
        ++m_nCount;
        for (std::size_t i = block + 1; i < m_vStarts.size(); ++i) {
            ++m_vStarts[i];
        }
    }

    void Append(T const& value) { InsertAt(m_nCount, value); }

    /// Halves the ranks between the first and the last item until they are neighbours: an item for
    /// which `goesBehind` holds becomes the lower end, any other the upper one. Neither the first
    /// nor the last item is asked, and the items need not be in any order.
    /// Returns: the rank of the upper end; 0 with fewer than two items.
    template <typename Predicate>
    [[nodiscard]] std::uint32_t Bisect(Predicate goesBehind) const {
        if (m_nCount < 2) {
            return 0;
        }
        std::uint32_t low = 0;
        std::uint32_t high = m_nCount - 1;
        std::size_t firstBlock = 0;
        std::size_t endBlock = m_vStarts.size();
        while (high - low > 1) {
            std::uint32_t const middle = low + (high - low) / 2;
            std::size_t const block = BlockOf(middle, firstBlock, endBlock);
            if (goesBehind(m_vBlocks[block]->m_vItems[middle - m_vStarts[block]])) {
                low = middle;
                firstBlock = block;
            } else {
                high = middle;
                endBlock = block + 1;
            }
        }
        return high;
    }

    /// Asks `isKept` of every item in order and drops those of which it doesn't hold, in place.
    template <typename Predicate>
    void KeepIf(Predicate isKept) {
        std::size_t target = 0; // never behind the block that is read
        std::uint32_t fill = 0;
        for (std::size_t block = 0; block < m_vBlocks.size(); ++block) {
            std::uint32_t const count = m_vBlocks[block]->m_nCount;
            for (std::uint32_t i = 0; i < count; ++i) {
                T const item = m_vBlocks[block]->m_vItems[i];
                if (!isKept(item)) {
                    continue;
                }
                if (fill == kBlockItems) {
                    m_vBlocks[target]->m_nCount = fill;
                    ++target;
                    fill = 0;
                }
                m_vBlocks[target]->m_vItems[fill++] = item;
            }
        }
        if (target < m_vBlocks.size()) {
            m_vBlocks[target]->m_nCount = fill;
        }
        m_vBlocks.resize(fill > 0 ? target + 1 : 0);
        Recount();
    }

private:
    struct CBlock {
        std::uint32_t m_nCount = 0;
        std::array<T, kBlockItems> m_vItems;
    };

    void Recount() {
        m_vStarts.clear();
        m_nCount = 0;
        for (auto const& block : m_vBlocks) {
            m_vStarts.push_back(m_nCount);
            m_nCount += block->m_nCount;
        }
    }

    /// The block that holds `rank`, among blocks [first, end); the last of them for a rank behind.
    [[nodiscard]] std::size_t BlockOf(std::uint32_t rank, std::size_t first,
                                      std::size_t end) const {
        auto const begin = m_vStarts.begin() + static_cast<std::ptrdiff_t>(first) + 1;
        auto const stop = m_vStarts.begin() + static_cast<std::ptrdiff_t>(end);
        return static_cast<std::size_t>(std::upper_bound(begin, stop, rank) - m_vStarts.begin()) -
               1;
    }

    /// Moves the upper half of a full block to a new one behind it.
    void Split(std::size_t block) {
        constexpr std::uint32_t kKept = kBlockItems / 2;
        auto upper = std::make_unique<CBlock>();
        CBlock& lower = *m_vBlocks[block];
        std::move(lower.m_vItems.begin() + kKept, lower.m_vItems.end(), upper->m_vItems.begin());
        upper->m_nCount = kBlockItems - kKept;
        lower.m_nCount = kKept;
        auto const behind = static_cast<std::ptrdiff_t>(block) + 1;
        m_vBlocks.insert(m_vBlocks.begin() + behind, std::move(upper));
        m_vStarts.insert(m_vStarts.begin() + behind, m_vStarts[block] + kKept);
    }

    std::vector<std::unique_ptr<CBlock>> m_vBlocks;
    std::vector<std::uint32_t> m_vStarts; // rank of each block's first item
    std::uint32_t m_nCount = 0;
};
