// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/KeyCodes.h"

#include <array>
#include <gtest/gtest.h>

TEST(KeyCodesTest, NumbersGoRoundTheCircleOfFifths) {
    struct CRow {
        std::int32_t m_nTonic; // 0 for C
        char const* m_camelotMajor;
        char const* m_openMajor;
        char const* m_camelotMinor;
        char const* m_openMinor;
    };
    // The published wheels, from C up in semitones.
    constexpr std::array<CRow, 12> kWheel = {{{0, "8B", "1d", "5A", "10m"},
                                              {1, "3B", "8d", "12A", "5m"},
                                              {2, "10B", "3d", "7A", "12m"},
                                              {3, "5B", "10d", "2A", "7m"},
                                              {4, "12B", "5d", "9A", "2m"},
                                              {5, "7B", "12d", "4A", "9m"},
                                              {6, "2B", "7d", "11A", "4m"},
                                              {7, "9B", "2d", "6A", "11m"},
                                              {8, "4B", "9d", "1A", "6m"},
                                              {9, "11B", "4d", "8A", "1m"},
                                              {10, "6B", "11d", "3A", "8m"},
                                              {11, "1B", "6d", "10A", "3m"}}};
    for (CRow const& row : kWheel) {
        CHarmony const major{EKeyMode::Major, row.m_nTonic, 0.5f, 0.0f};
        CHarmony const minor{EKeyMode::Minor, row.m_nTonic, 0.5f, 0.0f};
        EXPECT_EQ(CamelotCode(major), row.m_camelotMajor);
        EXPECT_EQ(OpenKeyCode(major), row.m_openMajor);
        EXPECT_EQ(CamelotCode(minor), row.m_camelotMinor);
        EXPECT_EQ(OpenKeyCode(minor), row.m_openMinor);
    }
}

TEST(KeyCodesTest, NoKeyHasNoCode) {
    EXPECT_EQ(CamelotCode({}), "");
    EXPECT_EQ(OpenKeyCode({}), "");
}
