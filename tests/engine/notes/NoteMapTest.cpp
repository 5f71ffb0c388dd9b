// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/notes/NoteMap.h"

#include "support/NoteOracle.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace {

constexpr float kNoStrength = std::numeric_limits<float>::quiet_NaN();
constexpr std::int64_t kHalfSecond = 500000;

/// The notes of the items, in order.
std::vector<int> Notes(CPfNoteMap& map) {
    std::vector<int> notes;
    CPfNoteDetection* item = nullptr;
    for (std::int32_t i = 0; map.EnumItems(i, &item) == kStatusOk; ++i) {
        notes.push_back(item->m_nNote);
    }
    return notes;
}

/// Adds one note for each strength, numbered from 0 on, at times far apart.
void AddAll(CPfNoteMap& map, std::vector<float> const& strengths) {
    for (std::size_t i = 0; i < strengths.size(); ++i) {
        EXPECT_EQ(map.AddDetection(static_cast<std::uint32_t>(i),
                                   static_cast<std::int64_t>(i) * 1000000, strengths[i]),
                  kStatusOk);
    }
}

void ExpectSame(CPfNoteMap& map, COracleMap const& oracle) {
    std::vector<COracleNote> const& expected = oracle.GetNotes();
    ASSERT_EQ(map.GetCount(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        CPfNoteDetection* item = nullptr;
        ASSERT_EQ(map.EnumItems(static_cast<std::int32_t>(i), &item), kStatusOk);
        ASSERT_EQ(item->m_nTime, expected[i].m_nTime) << i;
        ASSERT_EQ(item->m_nNote, expected[i].m_nNote) << i;
        bool const bothLackStrength =
            std::isnan(item->m_fStrength) && std::isnan(expected[i].m_fStrength);
        ASSERT_TRUE(bothLackStrength || item->m_fStrength == expected[i].m_fStrength) << i;
    }
}

} // namespace

TEST(NoteMapTest, DetectionStartsAtZero) {
    CPfNoteDetection const empty;
    EXPECT_EQ(empty.m_nTime, 0);
    EXPECT_EQ(empty.m_nNote, 0);
    EXPECT_EQ(empty.m_fStrength, 0.0f);
    CPfNoteDetection const note(23, 5000000000, 0.1);
    EXPECT_EQ(note.m_nTime, 5000000000);
    EXPECT_EQ(note.m_nNote, 23);
    EXPECT_EQ(note.m_fStrength, 0.1f);
}

TEST(NoteMapTest, WeakerThanAllGoesLast) {
    CPfNoteMap map;
    AddAll(map, {0.9f, 0.8f, 0.7f});
    EXPECT_EQ(Notes(map), (std::vector<int>{0, 1, 2}));
}

TEST(NoteMapTest, MiddlingStrengthsFindTheirPlace) {
    CPfNoteMap map;
    AddAll(map, {0.9f, 0.5f, 0.7f, 0.6f, 0.8f});
    EXPECT_EQ(Notes(map), (std::vector<int>{0, 4, 2, 3, 1}));
}

TEST(NoteMapTest, NewestIsFirstAmongEquals) {
    CPfNoteMap map;
    AddAll(map, {0.9f, 0.5f, 0.7f, 0.7f, 0.7f, 0.5f});
    EXPECT_EQ(Notes(map), (std::vector<int>{0, 4, 3, 2, 5, 1}));
}

TEST(NoteMapTest, PinsFirstItemIsNeverCompared) {
    CPfNoteMap map;
    AddAll(map, {0.5f, 0.7f, 0.9f, 0.8f});
    // 0.7 comes to index 0 of a list of one; 0.9 and 0.8 no longer get in front of it.
    EXPECT_EQ(Notes(map), (std::vector<int>{1, 2, 3, 0}));
}

TEST(NoteMapTest, PinsNoteWithoutStrengthGoesSecond) {
    CPfNoteMap longer;
    AddAll(longer, {0.9f, 0.8f, 0.7f, kNoStrength});
    EXPECT_EQ(Notes(longer), (std::vector<int>{0, 3, 1, 2}));
    CPfNoteMap single;
    AddAll(single, {0.9f, kNoStrength});
    EXPECT_EQ(Notes(single), (std::vector<int>{1, 0}));
}

TEST(NoteMapTest, NothingIsWeakerThanAFirstNoteWithoutStrength) {
    // NaN is then the smallest strength, below which nothing compares: nothing is appended again.
    CPfNoteMap map;
    AddAll(map, {kNoStrength, 0.5f, 0.1f, 0.2f});
    EXPECT_EQ(Notes(map), (std::vector<int>{1, 3, 2, 0}));
}

TEST(NoteMapTest, EnumItemsStopsAtTheCount) {
    CPfNoteMap map;
    AddAll(map, {0.9f, 0.8f});
    CPfNoteDetection* item = nullptr;
    EXPECT_EQ(map.EnumItems(-1, &item), kStatusNothing);
    EXPECT_EQ(map.EnumItems(2, &item), kStatusNothing);
    EXPECT_EQ(item, nullptr);
    EXPECT_EQ(map.EnumItems(1, &item), kStatusOk);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->m_nTime, 1000000);
}

TEST(NoteMapTest, OrderIsThatOfTheVectorOnTiesAndNotesWithoutStrength) {
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        std::mt19937 random(seed);
        // From very few levels of strength to very many, with and without NaN.
        std::uint32_t const levels = 1U << (2 * (seed % 6));
        std::uint32_t const nanEvery = seed % 3 == 0 ? 0 : 7 + 100 * (seed % 5);
        CPfNoteMap map;
        COracleMap oracle;
        for (std::uint32_t i = 0; i < 6000; ++i) {
            bool const isNan = nanEvery != 0 && random() % nanEvery == 0;
            float const strength =
                isNan ? kNoStrength : 1.0f - static_cast<float>(random() % levels) * 0x1.0p-24f;
            auto const time = static_cast<std::int64_t>(i / 4) * 10000;
            map.AddDetection(i % 24, time, strength);
            oracle.Add(i % 24, time, strength);
        }
        ExpectSame(map, oracle);
        map.RemoveSimilarItems(kHalfSecond);
        oracle.Prune(kHalfSecond);
        ExpectSame(map, oracle);
    }
}

TEST(NoteMapTest, NewestGoesFirstThroughHundredsOfThousandsOfTies) {
    constexpr std::int32_t kCount = 300000;
    CPfNoteMap map;
    for (std::int32_t i = 0; i < kCount; ++i) {
        map.AddDetection(0, i, 1.0f);
    }
    // The second note came in front of the first, every later one behind the second.
    CPfNoteDetection* item = nullptr;
    map.EnumItems(0, &item);
    EXPECT_EQ(item->m_nTime, 1);
    for (std::int32_t i = 1; i < kCount - 1; ++i) {
        map.EnumItems(i, &item);
        ASSERT_EQ(item->m_nTime, kCount - i);
    }
    map.EnumItems(kCount - 1, &item);
    EXPECT_EQ(item->m_nTime, 0);
}

TEST(NoteMapTest, OfTwoNearNotesOnlyTheStrongerStays) {
    CPfNoteMap map;
    map.AddDetection(3, 1000000, 0.8f);
    map.AddDetection(17, 1400000, 0.9f);
    EXPECT_EQ(map.RemoveSimilarItems(kHalfSecond), kStatusOk);
    EXPECT_EQ(Notes(map), std::vector<int>{17});
}

TEST(NoteMapTest, WindowIncludesItsEnds) {
    for (std::int64_t const distance : {-500001, -500000, 500000, 500001}) {
        CPfNoteMap map;
        map.AddDetection(0, 5000000, 0.9f);
        map.AddDetection(1, 5000000 + distance, 0.8f);
        map.RemoveSimilarItems(kHalfSecond);
        EXPECT_EQ(map.GetCount(), std::abs(distance) == 500001 ? 2U : 1U) << distance;
    }
}

TEST(NoteMapTest, RemovedNotesSuppressNobody) {
    CPfNoteMap map;
    map.AddDetection(0, 1000000, 0.9f);
    map.AddDetection(1, 1400000, 0.8f); // removed by the first
    map.AddDetection(2, 1800000, 0.7f); // near the removed one only
    map.RemoveSimilarItems(kHalfSecond);
    EXPECT_EQ(Notes(map), (std::vector<int>{0, 2}));
}

TEST(NoteMapTest, PruningIsThatOfAllPairs) {
    for (std::uint32_t seed = 1; seed <= 6; ++seed) {
        std::mt19937 random(seed);
        CPfNoteMap map;
        COracleMap oracle;
        for (std::uint32_t i = 0; i < 3000; ++i) {
            float const strength = 1.0f - static_cast<float>(random() % 64) * 0x1.0p-24f;
            auto const time = static_cast<std::int64_t>(random() % 100000);
            map.AddDetection(i % 24, time, strength);
            oracle.Add(i % 24, time, strength);
        }
        std::int64_t const window = std::vector<std::int64_t>{-5, 0, 1, 30, 1000, 60000}[seed - 1];
        map.RemoveSimilarItems(window);
        oracle.Prune(window);
        ExpectSame(map, oracle);
    }
}

TEST(NoteMapTest, WhatIsThinnedWhileItGrowsComesOutTheSame) {
    constexpr std::uint32_t kStrongest = 300;
    constexpr std::uint32_t kAtTheEnd = 140; // fewer than half of them
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        std::mt19937 random(seed);
        std::uint32_t const levels = 1U << (2 * (seed % 6));
        CPfNoteMap map;
        COracleMap oracle;
        // Three notes at a time.
        constexpr std::int64_t kSpacing = 60'000;
        auto const startOf = [](std::uint32_t i) { return std::int64_t{i / 3} * kSpacing; };
        auto const add = [&](std::uint32_t i, float strength) {
            std::int64_t const time = startOf(i) + std::int64_t{i / 3} * 7919 % kSpacing;
            map.AddDetection(i % 24, time, strength);
            oracle.Add(i % 24, time, strength);
        };
        auto const level = [&] { return 1.0f - static_cast<float>(random() % levels) * 0x1p-24f; };
        constexpr std::uint32_t kNotes = 5000;
        for (std::uint32_t i = 0; i < kNotes; ++i) {
            add(i, level());
            if (i % (100 * seed) == 0) {
                map.Thin(kHalfSecond, startOf(i + 1), kStrongest);
            }
        }
        ASSERT_EQ(map.GetHeardCount(), kNotes);
        EXPECT_LT(map.GetCount(), kNotes / 2);
        for (std::uint32_t i = 0; i < kAtTheEnd; ++i) {
            add(kNotes + i, random() % 3 == 0 ? kNoStrength : level());
        }
        map.Thin(kHalfSecond, startOf(kNotes + kAtTheEnd), kStrongest);
        EXPECT_EQ(map.GetHeardCount(), oracle.GetNotes().size());
        map.RemoveSimilarItems(kHalfSecond);
        oracle.Prune(kHalfSecond);
        ExpectSame(map, oracle);
        EXPECT_EQ(map.GetHeardCount(), map.GetCount());
    }
}

TEST(NoteMapTest, ThinningKeepsWhatALaterNoteMaySave) {
    CPfNoteMap map;
    AddAll(map, {0.99f, 0.98f}); // at 0 and 1 s: the strongest, which stay
    map.AddDetection(2, 5'000'000, 0.9f);
    map.AddDetection(3, 5'400'000, 0.8f); // near note 2, which a stronger one may remove
    map.AddDetection(4, 9'000'000, 0.1f); // the last
    map.Thin(kHalfSecond, 5'500'000, 2);
    EXPECT_EQ(Notes(map), (std::vector<int>{0, 1, 2, 3, 4}));
    map.Thin(kHalfSecond, 5'500'001, 2); // nothing that is to come is near note 2
    EXPECT_EQ(Notes(map), (std::vector<int>{0, 1, 2, 4}));
    EXPECT_EQ(map.GetHeardCount(), 5U);
}

TEST(NoteMapTest, OfNotesAtTheSameTimeOnlyTheFirstCanStay) {
    CPfNoteMap map;
    AddAll(map, {0.99f, 0.98f});
    map.AddDetection(2, 5'000'000, 0.9f);
    map.AddDetection(3, 5'000'000, 0.8f);
    map.AddDetection(4, 5'000'001, 0.7f);
    map.AddDetection(5, 5'100'000, 0.1f);
    map.Thin(kHalfSecond, 5'200'000, 2);
    EXPECT_EQ(Notes(map), (std::vector<int>{0, 1, 2, 4, 5}));
}

TEST(NoteMapTest, WindowReachesTheEndsOfTime) {
    constexpr std::int64_t kEnd = std::numeric_limits<std::int64_t>::max();
    CPfNoteMap map;
    map.AddDetection(0, kEnd - 5, 0.9f);
    map.AddDetection(1, -kEnd, 0.8f);
    map.RemoveSimilarItems(kHalfSecond);
    EXPECT_EQ(map.GetCount(), 2U);
    map.RemoveSimilarItems(kEnd);
    EXPECT_EQ(map.GetCount(), 2U) << "they are almost twice as far apart";
}

TEST(NoteMapTest, PrunedMapGoesOnTakingNotes) {
    CPfNoteMap map;
    AddAll(map, {0.9f, 0.7f});
    map.AddDetection(2, 1000001, 0.8f);
    map.RemoveSimilarItems(kHalfSecond);
    EXPECT_EQ(Notes(map), (std::vector<int>{0, 2}));
    // The smallest strength is still 0.7, so 0.75 isn't weaker than all and lands before the last.
    map.AddDetection(3, 9000000, 0.75f);
    EXPECT_EQ(Notes(map), (std::vector<int>{0, 3, 2}));
}
