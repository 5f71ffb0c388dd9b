// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/VectorArray.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <vector>

namespace {

CVectorArray<std::int64_t> ArrayOf(std::initializer_list<std::int64_t> values) {
    CVectorArray<std::int64_t> array;
    for (std::int64_t const value : values) {
        array.Add(value);
    }
    return array;
}

} // namespace

TEST(VectorArrayTest, AddReturnsTheNewIndex) {
    CVectorArray<std::int32_t> array;
    EXPECT_EQ(array.Add(7), 0);
    EXPECT_EQ(array.Add(8), 1);
    EXPECT_EQ(array.GetCount(), 2U);
    EXPECT_EQ(array[0], 7);
    EXPECT_EQ(array[1], 8);
}

TEST(VectorArrayTest, AddTakesAnElementOfItsOwn) {
    CVectorArray<std::int64_t> array = ArrayOf({5});
    for (int i = 0; i < 100; ++i) {
        array.Add(array[0]);
    }
    EXPECT_EQ(array[100], 5);
}

TEST(VectorArrayTest, InsertsBeforeTheElementAtTheIndex) {
    CVectorArray<std::int64_t> array = ArrayOf({1, 3});
    array.InsertAt(1, 2);
    array.InsertAt(0, 0);
    EXPECT_EQ(array, ArrayOf({0, 1, 2, 3}));
}

TEST(VectorArrayTest, InsertingAtOrPastTheEndAppends) {
    CVectorArray<std::int64_t> array;
    array.InsertAt(0, 1);
    array.InsertAt(1, 2);
    array.InsertAt(9, 3);
    EXPECT_EQ(array, ArrayOf({1, 2, 3}));
}

TEST(VectorArrayTest, InsertingAtANegativeIndexAppends) {
    CVectorArray<std::int64_t> array = ArrayOf({1, 2});
    array.InsertAt(-1, 3);
    array.InsertAt(std::numeric_limits<std::int32_t>::min(), 4);
    EXPECT_EQ(array, ArrayOf({1, 2, 3, 4}));
}

TEST(VectorArrayTest, AppendsInOrderAlsoItself) {
    CVectorArray<std::int64_t> array = ArrayOf({1, 2});
    array.Append(ArrayOf({9, 8, 7}));
    EXPECT_EQ(array, ArrayOf({1, 2, 9, 8, 7}));
    array.Append(array);
    EXPECT_EQ(array, ArrayOf({1, 2, 9, 8, 7, 1, 2, 9, 8, 7}));
    array.Append({});
    EXPECT_EQ(array.GetCount(), 10U);
}

TEST(VectorArrayTest, DataIsNullWhenEmpty) {
    CVectorArray<std::int64_t> array;
    CVectorArray<std::int64_t> const& read = array;
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(read.GetData(), nullptr);
    EXPECT_TRUE(array.IsEmpty());
    array.Add(4);
    EXPECT_EQ(array.GetData(), &array[0]);
    EXPECT_EQ(*read.GetData(), 4);
    array.RemoveAll(); // The block stays, the answer doesn't tell.
    EXPECT_EQ(array.GetData(), nullptr);
}

TEST(VectorArrayTest, WalksItsElements) {
    std::vector<std::int64_t> seen;
    for (std::int64_t const value : ArrayOf({3, 1, 2})) {
        seen.push_back(value);
    }
    EXPECT_EQ(seen, (std::vector<std::int64_t>{3, 1, 2}));
}
