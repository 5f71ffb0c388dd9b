// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/ThumbnailBuilder.h"

#include "support/FailingAllocation.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

CPfPcmThumbnail Thumbnail(std::vector<float> const& values, std::uint32_t rate = 44100) {
    CPfPcmThumbnail thumb;
    EXPECT_TRUE(thumb.Initialize(static_cast<std::int64_t>(values.size()), rate, 1));
    for (std::size_t i = 0; i < values.size(); ++i) {
        thumb.SetAt(static_cast<std::int32_t>(i), values[i]);
    }
    return thumb;
}

std::vector<float> ValuesOf(CPfPcmThumbnail const& thumb) {
    return {thumb.Elements().begin(), thumb.Elements().end()};
}

std::vector<float> Smooth(std::vector<float> const& values) {
    CPfPcmThumbnail thumb = Thumbnail(values);
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    CPfPcmThumbnail built = Thumbnail({5.0f});
    EXPECT_TRUE(builder.BuildSmoothThumbnail(thumb, &built));
    EXPECT_EQ(ValuesOf(thumb), values);
    EXPECT_TRUE(builder.SmoothThumbnail(&thumb));
    EXPECT_EQ(ValuesOf(built), ValuesOf(thumb));
    EXPECT_EQ(built.GetSampleRate(), thumb.GetSampleRate());
    return ValuesOf(thumb);
}

/// Rates at which a sixteenth of a measure at 164 BPM, 60 / 164 * 4 / 16 = 0.0915 s, has 4 elements
/// of one sample each, or none: 64 / 16 and 15 / 16 of (rate / 0.6833).
constexpr std::uint32_t kHoldOfFourRate = 44; // 44 / (41 / 60) = 64.39 elements per measure
constexpr std::uint32_t kNoHoldRate = 10;     // 14.6 elements per measure

std::vector<float> Hold(std::vector<float> const& values) {
    CPfPcmThumbnail thumb = Thumbnail(values, kHoldOfFourRate);
    EXPECT_TRUE(CPcmThumbnailBuilder(nullptr, 44100.0).PeakHoldThumbnail(&thumb));
    return ValuesOf(thumb);
}

/// Hoods of four elements: 8 elements per measure, divisor 2. 8 samples per second at 240 BPM.
std::vector<float> Hood(std::vector<float> const& values) {
    CPfPcmThumbnail thumb = Thumbnail(values, 8);
    thumb.ApplyBpm(240.0f);
    EXPECT_EQ(thumb.GetElePerMeas(0.0f), 8U);
    EXPECT_TRUE(CPcmThumbnailBuilder(nullptr, 44100.0).ApplyPeakHoods(&thumb, 2));
    return ValuesOf(thumb);
}

} // namespace

TEST(ThumbnailShapesTest, FewElementsAreAveragedTogether) {
    EXPECT_EQ(Smooth({1.0f, 2.0f, 6.0f}), (std::vector<float>{3.0f, 3.0f, 3.0f}));
    EXPECT_EQ(Smooth({4.0f}), (std::vector<float>{4.0f}));
    EXPECT_TRUE(Smooth({}).empty());
    std::vector<float> eight(8, 0.0f);
    eight[7] = 8.0f;
    EXPECT_EQ(Smooth(eight), std::vector<float>(8, 1.0f));
}

TEST(ThumbnailShapesTest, TenElementsNeverSlide) {
    // Window of nine: elements 0..8. k = i + 1 would have to be above 4 and below 10 - 5.
    std::vector<float> ten(10, 0.0f);
    ten[8] = 9.0f;
    ten[9] = 900.0f;
    EXPECT_EQ(Smooth(ten), std::vector<float>(10, 1.0f));
}

TEST(ThumbnailShapesTest, PinsSmoothingNeverAddsElementNine) {
    // 22 elements: slides after outputs 4 .. 15 (k = 5 .. 16), twelve in all. Element 9 is 90, all
    // others 0. It is never added; the tenth slide (after output 13) takes it off.
    std::vector<float> values(22, 0.0f);
    values[9] = 90.0f;
    std::vector<float> expected(22, 0.0f);
    for (std::size_t i = 14; i < 22; ++i) {
        expected[i] = -10.0f;
    }
    EXPECT_EQ(Smooth(values), expected);
}

TEST(ThumbnailShapesTest, SmoothingFirstAddsElementTen) {
    // Element 10 enters with the first slide (after output 4) and leaves with the eleventh (after
    // output 14).
    std::vector<float> values(22, 0.0f);
    values[10] = 9.0f;
    std::vector<float> expected(22, 0.0f);
    for (std::size_t i = 5; i <= 14; ++i) {
        expected[i] = 1.0f;
    }
    EXPECT_EQ(Smooth(values), expected);
}

TEST(ThumbnailShapesTest, SmoothingKeepsTheRunningSumsRounding) {
    // The sum 2^24 + 1 rounds to 2^24, so what comes off later leaves 0 where a fresh sum has 1.
    std::vector<float> values(22, 0.0f);
    values[0] = 16777216.0f;
    values[1] = 1.0f;
    std::vector<float> const smooth = Smooth(values);
    EXPECT_EQ(smooth[4], 16777216.0f / 9.0f);
    EXPECT_EQ(smooth[5], 0.0f);         // element 0 is off, the 1 was lost
    EXPECT_EQ(smooth[6], -1.0f / 9.0f); // element 1 is off
}

TEST(ThumbnailShapesTest, SmoothingWithoutMemoryChangesNothing) {
    std::vector<float> const values{1.0f, 2.0f, 6.0f};
    CPfPcmThumbnail thumb = Thumbnail(values);
    CCancelFlag cancel;
    CPcmThumbnailBuilder builder(&cancel, 44100.0);
    CFailingAllocation const noMemory;
    EXPECT_TRUE(builder.SmoothThumbnail(&thumb));
    CPfPcmThumbnail built;
    EXPECT_FALSE(builder.BuildSmoothThumbnail(thumb, &built));
    EXPECT_TRUE(built.LacksMemory());
    cancel.Set();
    EXPECT_FALSE(builder.SmoothThumbnail(&thumb));
    EXPECT_EQ(thumb.GetAt(0), 1.0f);
}

TEST(ThumbnailShapesTest, HoldFallsLinearlyFromAPeakAndBelowZero) {
    // Peak 4, decay 1: levels 3, 2, 1, 0, then -1 lies under the element's own 0.
    // A new value above the level takes over with its own decay.
    EXPECT_EQ(Hold({0.0f, 4.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f}),
              (std::vector<float>{0.0f, 4.0f, 3.0f, 2.0f, 1.0f, 0.0f, 0.0f}));
    EXPECT_EQ(Hold({0.0f, 4.0f, 0.0f, 2.5f, 0.0f}),
              (std::vector<float>{0.0f, 4.0f, 3.0f, 2.5f, 1.875f}));
    EXPECT_EQ(Hold({0.0f, 4.0f, 3.0f, 2.0f}), (std::vector<float>{0.0f, 4.0f, 3.0f, 2.0f}));
}

TEST(ThumbnailShapesTest, HoldStartsFromTheMinimum) {
    // Minimum -2 is the first level, without decay: elements up to it stay at it.
    EXPECT_EQ(Hold({-2.0f, -2.0f, -1.0f}), (std::vector<float>{-2.0f, -2.0f, -1.0f}));
    // 3 is above the minimum 1, so it holds: 3, then 2.25 > 1.
    EXPECT_EQ(Hold({3.0f, 1.0f}), (std::vector<float>{3.0f, 2.25f}));
}

TEST(ThumbnailShapesTest, HoldAfterItsEndLeavesQuietValues) {
    // Peak 4 with decay 1; five elements later the level is -1, and 0.5 is a peak of its own.
    EXPECT_EQ(Hold({0.0f, 4.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.5f, 0.0f}),
              (std::vector<float>{0.0f, 4.0f, 3.0f, 2.0f, 1.0f, 0.0f, 0.5f, 0.375f}));
}

TEST(ThumbnailShapesTest, HoldWithoutLengthChangesNothing) {
    CPfPcmThumbnail thumb = Thumbnail({0.0f, 4.0f, 0.0f}, kNoHoldRate);
    EXPECT_FALSE(CPcmThumbnailBuilder(nullptr, 44100.0).PeakHoldThumbnail(&thumb));
    EXPECT_EQ(ValuesOf(thumb), (std::vector<float>{0.0f, 4.0f, 0.0f}));
}

TEST(ThumbnailShapesTest, HoldCompletesItsPassWhenCancelled) {
    CCancelFlag cancel;
    cancel.Set();
    CPfPcmThumbnail thumb = Thumbnail({0.0f, 4.0f, 0.0f}, kHoldOfFourRate);
    EXPECT_FALSE(CPcmThumbnailBuilder(&cancel, 44100.0).PeakHoldThumbnail(&thumb));
    EXPECT_EQ(ValuesOf(thumb), (std::vector<float>{0.0f, 4.0f, 3.0f}));
}

TEST(ThumbnailShapesTest, HoodDecaysWithTheFourthPower) {
    // p = 256, L = 4: k = 1 takes the bare peak; then p - p (k / 4)^4 = 255, 240, 175, 0 for
    // k = 1 .. 4, each written one element further on. The last 0 is not below the hood of 0.
    EXPECT_EQ(Hood({256.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f}),
              (std::vector<float>{256.0f, 256.0f, 255.0f, 240.0f, 175.0f, 0.0f, 0.0f}));
}

TEST(ThumbnailShapesTest, HoodStopsAtTheFirstElementThatIsNotBelowIt) {
    // Backwards: 260 at 2 makes its own hood of 260, 260 - 260/256, ... The hood of 256 reaches
    // element 1 only.
    std::vector<float> const hooded = Hood({256.0f, 0.0f, 260.0f, 0.0f});
    EXPECT_EQ(hooded, (std::vector<float>{256.0f, 256.0f, 260.0f, 260.0f}));
    // An element equal to the hood stops it too.
    EXPECT_EQ(Hood({256.0f, 256.0f, 0.0f}), (std::vector<float>{256.0f, 256.0f, 256.0f}));
}

TEST(ThumbnailShapesTest, HoodsAreAppliedFromTheEnd) {
    // Element 1 (16) first: its hood 16 onto 2, 16 - 16/256 = 15.9375 onto 3. Then element 0 (256):
    // 256 onto 1, 255 onto 2, 240 onto 3. Forwards, element 1 would have been 256 when hooded.
    EXPECT_EQ(Hood({256.0f, 16.0f, 0.0f, 0.0f}),
              (std::vector<float>{256.0f, 256.0f, 255.0f, 240.0f}));
}

TEST(ThumbnailShapesTest, HoodsNeedALengthAndNoCancel) {
    CCancelFlag cancel;
    CPcmThumbnailBuilder builder(&cancel, 44100.0);
    CPfPcmThumbnail thumb = Thumbnail({4.0f, 0.0f}, 8);
    EXPECT_FALSE(builder.ApplyPeakHoods(&thumb, 2)); // no tempo applied yet
    thumb.ApplyBpm(240.0f);
    EXPECT_FALSE(builder.ApplyPeakHoods(&thumb, 0));
    EXPECT_FALSE(builder.ApplyPeakHoods(&thumb, 9)); // 8 / 9 = 0
    cancel.Set();
    EXPECT_FALSE(builder.ApplyPeakHoods(&thumb, 2));
    EXPECT_EQ(ValuesOf(thumb), (std::vector<float>{4.0f, 0.0f}));
}

TEST(ThumbnailShapesTest, ACancelledSmoothingLeavesTheThumbnail) {
    CCancelFlag cancel;
    cancel.Set();
    CPfPcmThumbnail thumb = Thumbnail({1.0f, 2.0f, 6.0f});
    CPcmThumbnailBuilder builder(&cancel, 44100.0);
    EXPECT_FALSE(builder.SmoothThumbnail(&thumb));
    CPfPcmThumbnail built;
    EXPECT_FALSE(builder.BuildSmoothThumbnail(thumb, &built));
    EXPECT_EQ(ValuesOf(thumb), (std::vector<float>{1.0f, 2.0f, 6.0f}));
}

TEST(ThumbnailShapesTest, SlopeIsTheFirstDifference) {
    CPfPcmThumbnail const source = Thumbnail({1.0f, 4.0f, 2.0f});
    CPfPcmThumbnail target = Thumbnail({9.0f, 9.0f, 9.0f});
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    EXPECT_TRUE(builder.BuildSlopeThumbnail(&source, &target));
    EXPECT_EQ(ValuesOf(target), (std::vector<float>{3.0f, -2.0f, 9.0f}));
    CPfPcmThumbnail shorter = Thumbnail({9.0f});
    EXPECT_TRUE(builder.BuildSlopeThumbnail(&source, &shorter));
    EXPECT_EQ(ValuesOf(shorter), (std::vector<float>{3.0f}));
}
