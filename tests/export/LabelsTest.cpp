// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/Labels.h"
#include "export/DecimalText.h"
#include "export/MadeSong.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(LabelsTest, BeatsAndPartsAreLinesInOrder) {
    CTakenSong song = MadeSong(120.0, 0.5, 4, 4);
    song.m_dIntroEnd = 1.0;
    song.m_dOutroStart = 1.75;
    EXPECT_EQ(LabelsOf(song), "0.000000\t1.000000\tintro\n"
                              "0.500000\t0.500000\t0.4\n"
                              "1.000000\t1.000000\t1.1 downbeat\n"
                              "1.500000\t1.500000\t1.2\n"
                              "1.750000\t60.000000\toutro\n"
                              "2.000000\t2.000000\t1.3\n");
}

TEST(LabelsTest, NothingIsToldOfASongWithoutBeatsAndParts) {
    CTakenSong song;
    song.m_dSeconds = 10.0;
    song.m_dOutroStart = 10.0;
    EXPECT_EQ(LabelsOf(song), "");
}

TEST(DecimalTextTest, HasItsDecimalsAndAPoint) {
    EXPECT_EQ(DecimalText(128.1, 2), "128.10");
    EXPECT_EQ(DecimalText(-0.5, 0), "-0"); // to even, as the standard says
    EXPECT_EQ(DecimalText(std::numeric_limits<double>::infinity(), 2), "0");
    EXPECT_EQ(DecimalText(std::numeric_limits<double>::quiet_NaN(), 2), "0");
}

} // namespace
