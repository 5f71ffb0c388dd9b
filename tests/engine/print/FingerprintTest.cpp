// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/print/Fingerprint.h"

#include "support/ClickTrack.h"

#include <cmath>
#include <cstddef>
#include <gtest/gtest.h>
#include <vector>

namespace {

/// A print with these values and extremes, whatever their truth.
void Capture(CFingerprint& print, std::vector<float> const& values, float min, float max) {
    std::vector<float> data;
    for (float const value : values) {
        data.insert(data.end(), {value, 99.0f, 99.0f, 99.0f});
    }
    print.CapturePrint(data.data(), static_cast<std::uint32_t>(data.size()), 0, min, max);
}

void CaptureRaw(CFingerprint& print, std::vector<float> const& values) {
    print.CaptureRawPrint(values.data(), static_cast<std::uint32_t>(values.size()));
}

/// Puts a print's values at every fourth sample from `pos` on into silence.
std::vector<float> DataWith(std::vector<float> const& values, std::size_t pos, std::size_t count) {
    std::vector<float> data(count, 0.0f);
    for (std::size_t i = 0; i < values.size(); ++i) {
        data[pos + 4 * i] = values[i];
    }
    return data;
}

struct CFound {
    bool m_bFound = false;
    std::int32_t m_nPos = -7;
};

CFound Find(CFingerprint const& print, std::vector<float> const& data, std::int32_t from,
            std::int32_t to) {
    CFound result;
    result.m_bFound = print.DoesPrintMatch(data.data(), static_cast<std::uint32_t>(data.size()),
                                           from, to, &result.m_nPos);
    return result;
}

} // namespace

TEST(FingerprintTest, RawPrintTakesEveryValueAtTimeZero) {
    CFingerprint print;
    print.CapturePrint(nullptr, 0, 5, 1.0f, 2.0f);
    CaptureRaw(print, {0.5f, -0.25f, 1.5f});
    EXPECT_EQ(print.GetValues(), (std::vector<float>{0.5f, -0.25f, 1.5f}));
    EXPECT_EQ(print.GetTime(), 0);
    EXPECT_EQ(print.GetMin(), -0.25f);
    EXPECT_EQ(print.GetMax(), 1.5f);
}

TEST(FingerprintTest, CaptureTakesEveryFourthSampleBelowTheCount) {
    std::vector<float> const data{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    CFingerprint print;
    print.CapturePrint(data.data(), 9, 1234567, -3.0f, 7.0f);
    EXPECT_EQ(print.GetValues(), (std::vector<float>{0, 4, 8}));
    EXPECT_EQ(print.GetTime(), 1234567);
    EXPECT_EQ(print.GetMin(), -3.0f);
    EXPECT_EQ(print.GetMax(), 7.0f);
    print.CapturePrint(data.data(), 8, 1, 0.0f, 0.0f);
    EXPECT_EQ(print.GetValues(), (std::vector<float>{0, 4}));
}

TEST(FingerprintTest, PinsExtremesIncludeZero) {
    CFingerprint print;
    CaptureRaw(print, {2.0f, 3.0f});
    EXPECT_EQ(print.GetMin(), 0.0f);
    EXPECT_EQ(print.GetMax(), 3.0f);
    CaptureRaw(print, {-2.0f, -1.0f});
    EXPECT_EQ(print.GetMin(), -2.0f);
    EXPECT_EQ(print.GetMax(), 0.0f);
}

TEST(FingerprintTest, AverageIsSummedInSinglePrecision) {
    CFingerprint print;
    EXPECT_EQ(print.GetAvgValue(), 0.0f);
    CaptureRaw(print, {1.0f, 2.0f, 6.0f});
    EXPECT_EQ(print.GetAvgValue(), 3.0f);
    // 2^24 + 1 rounds back to 2^24.
    CaptureRaw(print, {16777216.0f, 1.0f});
    EXPECT_EQ(print.GetAvgValue(), 8388608.0f);
}

TEST(FingerprintTest, PrintIsSmallerOnlyWhenItsRangeIs) {
    CFingerprint print;
    CaptureRaw(print, {-1.0f, 1.0f});
    EXPECT_FALSE(print.IsPrintSmaller(-1.0f, 1.0f));
    EXPECT_FALSE(print.IsPrintSmaller(0.0f, 1.9f));
    EXPECT_TRUE(print.IsPrintSmaller(-0.5f, 2.0f));
}

TEST(FingerprintTest, AveragesTooFarApartNeverMatch) {
    CFingerprint one;
    CFingerprint other;
    CaptureRaw(one, std::vector<float>(400, 1.0f));
    CaptureRaw(other, std::vector<float>(400, 1.4f)); // 1.0 * 1.333 < 1.4
    float a = -1.0f;
    float b = -1.0f;
    EXPECT_FALSE(one.IsMatching(&other, &a, &b));
    EXPECT_EQ(a, 0.0f);
    EXPECT_EQ(b, 0.0f);
    EXPECT_FALSE(other.IsMatching(&one, &a, &b));
    EXPECT_EQ(a, 0.0f);
}

TEST(FingerprintTest, PeakMatchesItselfAndItsShiftedCopy) {
    // Width 1 in 400: the same at one lag, all or nothing apart at the others.
    std::vector<float> values(400, 0.0f);
    values[200] = 1.0f;
    CFingerprint one;
    CaptureRaw(one, values);
    float a = 0.0f;
    float b = 0.0f;
    EXPECT_TRUE(one.IsMatching(&one, &a, &b));
    EXPECT_EQ(a, 1.0f / 400.0f);
    EXPECT_EQ(b, 1.0f / 400.0f);

    std::vector<float> shifted(400, 0.0f);
    shifted[250] = 1.0f;
    CFingerprint other;
    CaptureRaw(other, shifted);
    EXPECT_TRUE(one.IsMatching(&other, &a, &b));
    EXPECT_TRUE(other.IsMatching(&one, &a, &b));
}

TEST(FingerprintTest, MatchReachesThreeHundredAndFortyFourValues) {
    // Uniform noise in [0, 1): two unrelated stretches are 1/3 apart, 0.67 of the mean; related
    // ones are equal.
    std::vector<float> noise = MakeNoise(0.1, 0.5f);
    for (float& value : noise) {
        value += 0.5f;
    }
    auto const from = [&noise](std::ptrdiff_t start) {
        return std::vector<float>(noise.begin() + start, noise.begin() + start + 500);
    };
    float a = 0.0f;
    float b = 0.0f;
    for (std::ptrdiff_t const lag : {344, 345}) {
        CFingerprint early;
        CFingerprint late;
        CaptureRaw(early, from(lag));
        CaptureRaw(late, from(0));
        EXPECT_EQ(late.IsMatching(&early, &a, &b), lag == 344) << lag;
        EXPECT_EQ(early.IsMatching(&late, &a, &b), lag == 344) << lag;
    }
}

TEST(FingerprintTest, EvenPrintHasNoContrast) {
    // Every lag is as good as the best one, 0.
    CFingerprint print;
    CaptureRaw(print, std::vector<float>(100, 1.0f));
    float a = 0.0f;
    float b = 0.0f;
    EXPECT_FALSE(print.IsMatching(&print, &a, &b));
    EXPECT_EQ(a, 1.0f);
}

TEST(FingerprintTest, EmptyPrintMatchesNothing) {
    CFingerprint empty;
    float a = -1.0f;
    float b = -1.0f;
    EXPECT_FALSE(empty.IsMatching(&empty, &a, &b));
    EXPECT_EQ(a, 0.0f);
    EXPECT_EQ(b, 0.0f);
}

TEST(FingerprintTest, PinsOwnMinimumCountsTwice) {
    // One value each, so there is one lag, and its distance 0.1 / 1.05 = 0.095 is the average as
    // well. The best starts from (0.02 - 0) + 0.02 - 0 = 0.04 and stays there: 0.095 / 0.04 > 2.
    // The other's minimum of -5 would make it start from 5.04.
    CFingerprint one;
    CFingerprint other;
    Capture(one, {1.0f}, 0.0f, 0.02f);
    Capture(other, {1.1f}, -5.0f, 0.02f);
    float a = 0.0f;
    float b = 0.0f;
    EXPECT_TRUE(one.IsMatching(&other, &a, &b));
    // The other way round: (0.02 + 5) + 0.02 + 5, so the distance is the best, and no better
    // than the average.
    EXPECT_FALSE(other.IsMatching(&one, &a, &b));
    EXPECT_EQ(a, 1.1f);
    EXPECT_EQ(b, 1.0f);
}

TEST(FingerprintTest, NegativeBestIsNoMatch) {
    // (0 - 1) + 0 - 1 = -2 is below every distance.
    CFingerprint one;
    CFingerprint other;
    Capture(one, {1.0f}, 1.0f, 0.0f);
    Capture(other, {1.0f}, 0.0f, 0.0f);
    float a = 0.0f;
    float b = 0.0f;
    EXPECT_FALSE(one.IsMatching(&other, &a, &b));
}

TEST(FingerprintTest, FindsThePrintWhereItIs) {
    std::vector<float> const values{0.5f, -0.5f, 0.25f};
    CFingerprint print;
    CaptureRaw(print, values);
    std::vector<float> const data = DataWith(values, 17, 60);
    CFound const found = Find(print, data, 0, 40);
    EXPECT_TRUE(found.m_bFound);
    EXPECT_EQ(found.m_nPos, 17);
    EXPECT_TRUE(Find(print, data, 17, 17).m_bFound) << "both ends belong to the range";
    EXPECT_FALSE(Find(print, data, 0, 16).m_bFound);
    CFound const missed = Find(print, data, 18, 40);
    EXPECT_FALSE(missed.m_bFound);
    EXPECT_EQ(missed.m_nPos, -7);
}

TEST(FingerprintTest, FirstOfEqualPlacesWins) {
    std::vector<float> const values{1.0f, -1.0f};
    CFingerprint print;
    CaptureRaw(print, values);
    std::vector<float> data = DataWith(values, 5, 60);
    data[30] = 1.0f;
    data[34] = -1.0f;
    EXPECT_EQ(Find(print, data, 0, 50).m_nPos, 5);
    data[5] = 0.98f; // now the later place is the better one
    EXPECT_EQ(Find(print, data, 0, 50).m_nPos, 30);
}

TEST(FingerprintTest, OneValueMayBeOffByHalfTheRange) {
    // Ten values with range 1: one off by 0.5 is a mean of 0.05, below 0.06.
    std::vector<float> values(10, 0.0f);
    values[0] = 1.0f;
    CFingerprint print;
    CaptureRaw(print, values);
    std::vector<float> data = DataWith(values, 0, 40);
    data[20] = 0.5f;
    EXPECT_TRUE(Find(print, data, 0, 0).m_bFound);
    data[20] = std::nextafter(0.5f, 1.0f);
    EXPECT_FALSE(Find(print, data, 0, 0).m_bFound);
    // Two off by 0.4 are a mean of 0.08.
    data[20] = 0.4f;
    data[24] = 0.4f;
    EXPECT_FALSE(Find(print, data, 0, 0).m_bFound);
}

TEST(FingerprintTest, PrintLongerThanTheDataIsNotFound) {
    CFingerprint print;
    CaptureRaw(print, {0.5f, -0.5f, 0.25f});
    std::vector<float> const data = DataWith(print.GetValues(), 0, 11);
    EXPECT_FALSE(Find(print, data, 0, 0).m_bFound) << "3 values take 12 samples";
    EXPECT_FALSE(Find(CFingerprint(), data, 0, 0).m_bFound);
}

TEST(FingerprintTest, PositionsOutsideTheDataArePassedOver) {
    std::vector<float> const values{0.5f, -0.5f};
    CFingerprint print;
    CaptureRaw(print, values);
    std::vector<float> const data = DataWith(values, 5, 10); // the last sample is the last value
    CFound const found = Find(print, data, -100, 1000);
    EXPECT_TRUE(found.m_bFound);
    EXPECT_EQ(found.m_nPos, 5);
}
