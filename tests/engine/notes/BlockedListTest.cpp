// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/notes/BlockedList.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

template <typename List>
std::vector<int> Items(List& list) {
    std::vector<int> items;
    for (std::uint32_t i = 0; i < list.GetCount(); ++i) {
        items.push_back(list.At(i));
    }
    return items;
}

} // namespace

TEST(BlockedListTest, StartsEmpty) {
    CBlockedList<int, 4> list;
    EXPECT_EQ(list.GetCount(), 0U);
    EXPECT_TRUE(Items(list).empty());
    EXPECT_EQ(list.Bisect([](int) { return true; }), 0U);
}

TEST(BlockedListTest, KeepsTheOrderOfInsertionsAcrossBlocks) {
    CBlockedList<int, 2> list;
    list.Append(1);
    list.Append(4);
    list.InsertAt(1, 2); // splits the full block
    list.InsertAt(2, 3);
    list.InsertAt(0, 0);
    list.Append(5);
    EXPECT_EQ(Items(list), (std::vector<int>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(list.GetCount(), 6U);
    for (std::uint32_t i = 0; i < 6; ++i) {
        EXPECT_EQ(list.At(i), static_cast<int>(i));
    }
}

TEST(BlockedListTest, RandomInsertionsAreThoseOfAVector) {
    std::mt19937 random(1);
    CBlockedList<int, 8> list;
    std::vector<int> expected;
    for (int value = 0; value < 5000; ++value) {
        auto const rank = static_cast<std::uint32_t>(random() % (expected.size() + 1));
        list.InsertAt(rank, value);
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(rank), value);
    }
    EXPECT_EQ(Items(list), expected);
    for (std::uint32_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(list.At(i), expected[i]) << i;
    }
}

TEST(BlockedListTest, KeepsWhatItIsAskedToInOrderAndGoesOn) {
    std::mt19937 random(3);
    for (std::uint32_t const oneIn : {1U, 2U, 5U, 1'000'000U}) {
        CBlockedList<int, 8> list;
        std::vector<int> expected;
        for (int round = 0; round < 4; ++round) {
            for (int value = 0; value < 300; ++value) {
                auto const rank = static_cast<std::uint32_t>(random() % (expected.size() + 1));
                list.InsertAt(rank, value);
                expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(rank), value);
            }
            std::vector<int> asked;
            auto const isKept = [oneIn](int item) {
                return static_cast<std::uint32_t>(item * 7 + 1) % oneIn == 0;
            };
            list.KeepIf([&](int item) {
                asked.push_back(item);
                return isKept(item);
            });
            EXPECT_EQ(asked, expected);
            std::erase_if(expected, [&](int item) { return !isKept(item); });
            ASSERT_EQ(Items(list), expected) << oneIn;
            ASSERT_EQ(list.GetCount(), expected.size());
        }
    }
}

TEST(BlockedListTest, BisectionAsksTheVeryItemsOfAPlainOne) {
    // The items are in no order, so only the same questions lead to the same place.
    std::mt19937 random(2);
    CBlockedList<int, 4> list;
    std::vector<int> plain;
    for (int i = 0; i < 1000; ++i) {
        int const threshold = static_cast<int>(random() % 100);
        std::size_t low = 0;
        std::size_t high = plain.empty() ? 0 : plain.size() - 1;
        while (high - low > 1) {
            std::size_t const middle = (low + high) / 2;
            (threshold < plain[middle] ? low : high) = middle;
        }
        ASSERT_EQ(list.Bisect([threshold](int item) { return threshold < item; }), high);
        auto const rank = static_cast<std::uint32_t>(random() % (plain.size() + 1));
        list.InsertAt(rank, threshold);
        plain.insert(plain.begin() + static_cast<std::ptrdiff_t>(rank), threshold);
    }
}

TEST(BlockedListTest, BisectionNeverAsksTheFirstAndTheLastItem) {
    CBlockedList<int, 4> list;
    for (int i = 0; i < 50; ++i) {
        list.Append(i);
    }
    std::vector<int> asked;
    EXPECT_EQ(list.Bisect([&](int item) {
        asked.push_back(item);
        return false;
    }),
              1U);
    EXPECT_EQ(asked.back(), 1);
    asked.clear();
    EXPECT_EQ(list.Bisect([&](int item) {
        asked.push_back(item);
        return true;
    }),
              49U);
    EXPECT_EQ(asked.back(), 48);
}
