// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/BandStrokes.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

/// A second of quiet in all bands; the bass is louder from half a second on.
CBandRows BassStroke() {
    CBandRows rows(172, {100, 100, 100, 100});
    for (std::size_t i = 86; i < rows.size(); ++i) {
        rows[i][0] = 130;
    }
    return rows;
}

constexpr double kStrokeSeconds = 86.0 * 256.0 / 44100.0;

} // namespace

TEST(BandStrokesTest, AStrokeRisesInItsBand) {
    CBandRows const rows = BassStroke();
    CBandStroke const stroke = CBandStrokes(rows).At(kStrokeSeconds);
    EXPECT_EQ(stroke.m_rise, (std::array<double, kBeatBands>{30.0, 0.0, 0.0, 0.0}));
    // 120 levels below the loudest of each band are its floor: 10, and 0 where that is less.
    EXPECT_EQ(stroke.m_top, (std::array<double, kBeatBands>{120.0, 100.0, 100.0, 100.0}));
}

TEST(BandStrokesTest, TheMeanIsOverTheMomentsAndTheSumOverTheBands) {
    CBandRows rows = BassStroke();
    for (std::size_t i = 86; i < rows.size(); ++i) {
        rows[i][3] = 110;
    }
    // 30 and 10 at one moment, nothing at the other.
    EXPECT_EQ(CBandStrokes(rows).MeanRise(std::vector<double>{0.2, kStrokeSeconds}), 20.0);
}

TEST(BandStrokesTest, SilenceAndMomentsOutsideTheSongDoNotRise) {
    CBandRows const none;
    EXPECT_EQ(CBandStrokes(none).MeanRise(std::vector<double>{0.0, 1.0}), 0.0);
    EXPECT_EQ(CBandStrokes(none).MeanRise({}), 0.0);
    CBandRows const rows = BassStroke();
    EXPECT_EQ(CBandStrokes(rows).MeanRise(std::vector<double>{-5.0, 1e6}), 0.0);
}
