// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/KeyText.h"

#include <gtest/gtest.h>

namespace {

TEST(KeyTextTest, KeysHaveTheirUsualNamesInThreeLetters) {
    EXPECT_EQ(KeyText(0, 2), "C");
    EXPECT_EQ(KeyText(9, 1), "Am");
    EXPECT_EQ(KeyText(3, 1), "Ebm");
    EXPECT_EQ(KeyText(1, 2), "Db");
    EXPECT_EQ(KeyText(1, 1), "C#m");
    EXPECT_EQ(KeyText(6, 2), "F#");
    EXPECT_EQ(KeyText(11, 1), "Bm");
}

TEST(KeyTextTest, NoKeyHasNoName) {
    EXPECT_EQ(KeyText(0, 0), "");
    EXPECT_EQ(KeyText(12, 1), "");
    EXPECT_EQ(KeyText(3, 3), "");
}

} // namespace
