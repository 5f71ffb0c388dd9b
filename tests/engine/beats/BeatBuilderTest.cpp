// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/beats/BeatBuilder.h"
#include "base/EngineRate.h"

#include "engine/tempo/ImpactFinder.h"
#include "support/Envelope.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::uint16_t kPerElement = 256;
constexpr std::int64_t kMinute = 2'646'000;
constexpr std::int64_t kFirstPulse = 20; // element
constexpr std::int64_t kSpacing = 43;    // elements
constexpr std::int64_t kStep = 43 * 256; // samples: 11008, half a beat at 120.19 BPM
constexpr float kRoughBpm = 120.3f;

/// A minute of pulses of height 3 on every step; the third one is weaker, so that confidences
/// differ. Pulses beside the list `missing` are left out.
CPfPcmThumbnail Pulses(std::vector<std::int64_t> const& missing = {}) {
    std::vector<float> elements(static_cast<std::size_t>(kMinute / kPerElement), 0.0f);
    for (std::int64_t i = 0; kFirstPulse + i * kSpacing < kMinute / kPerElement; ++i) {
        elements[static_cast<std::size_t>(kFirstPulse + i * kSpacing)] = i == 2 ? 2.9f : 3.0f;
    }
    for (std::int64_t const i : missing) {
        elements[static_cast<std::size_t>(kFirstPulse + i * kSpacing)] = 0.0f;
    }
    return MakeEnvelope(elements, kEngineRateHz, kPerElement);
}

/// bpm = 60 / (a beat's seconds), a beat being two steps, each operation in single precision.
float BpmOf(float step) {
    return 60.0f / (step * 8.0f * 0.25f / 44100.0f);
}

class BeatBuilderTest : public testing::Test {
protected:
    std::vector<std::int64_t> Build(CPfPcmThumbnail const& thumb) {
        EXPECT_TRUE(m_builder.BuildBeatPointsAlt(&thumb, &thumb, &m_fBpm, &m_out));
        return {m_out.Points().begin(), m_out.Points().end()};
    }

    CCancelFlag m_cancel;
    CPfBeatBuilder m_builder{&m_cancel};
    CPfImpactPoints m_out{1, 2};
    float m_fBpm = kRoughBpm;
};

} // namespace

TEST_F(BeatBuilderTest, EvenPulsesGiveTheGridOfTheirFeet) {
    // Pulses at elements 20, 63 ...; their feet are one element before, from 19 * 256 = 4864 on.
    std::vector<std::int64_t> expected;
    for (std::int64_t at = (kFirstPulse - 1) * kPerElement; at < kMinute; at += kStep) {
        expected.push_back(at);
    }
    EXPECT_EQ(Build(Pulses()), expected);
    EXPECT_EQ(m_fBpm, BpmOf(11'008.0f));
    EXPECT_EQ(m_out.GetResolution(), 8U);
    EXPECT_EQ(m_out.GetSampleRate(), kEngineRateHz);
    EXPECT_EQ(m_out.GetSampleCount(), kMinute / kPerElement * kPerElement);
}

TEST_F(BeatBuilderTest, GapsAndEndsAreFilledOnTheGrid) {
    std::vector<std::int64_t> const whole = Build(Pulses());
    // Without the first ten pulses, twenty in the middle and the last five or so.
    std::vector<std::int64_t> missing;
    for (std::int64_t i = 0; i < 240; ++i) {
        if (i < 10 || (i >= 100 && i < 120) || i >= 235) {
            missing.push_back(i);
        }
    }
    m_fBpm = kRoughBpm;
    CPfPcmThumbnail weak = Pulses(missing);
    weak.SetAt(static_cast<std::int32_t>(kFirstPulse + 50 * kSpacing), 2.9f);
    EXPECT_EQ(Build(weak), whole);
    EXPECT_EQ(m_fBpm, BpmOf(11'008.0f));
}

TEST_F(BeatBuilderTest, OutIsReplacedWithItsMarks) {
    m_out.Add(7);
    m_out.AddMeasStartMark(7);
    std::vector<std::int64_t> const grid = Build(Pulses());
    EXPECT_EQ(grid.front(), (kFirstPulse - 1) * kPerElement);
    EXPECT_THAT(m_out.MeasStartMarks(), IsEmpty());
}

TEST_F(BeatBuilderTest, SilenceHasNoGridAndKeepsTheTempoOfItsStep) {
    // 44100 / (120.3 / 240) is 87980.05 samples a measure; an eighth, truncated, is 10997.
    EXPECT_THAT(Build(MakeEnvelope(std::vector<float>(10'335, 0.0f), kEngineRateHz, kPerElement)),
                IsEmpty());
    EXPECT_EQ(m_fBpm, BpmOf(10'997.0f));
    EXPECT_EQ(m_out.GetResolution(), 8U);
}

TEST_F(BeatBuilderTest, AnEmptyTrackHasNoGrid) {
    EXPECT_THAT(Build(MakeEnvelope({}, kEngineRateHz, kPerElement)), IsEmpty());
    EXPECT_EQ(m_out.GetResolution(), 8U);
}

TEST_F(BeatBuilderTest, WithoutATempoTheOnsetsAreTheGrid) {
    CPfPcmThumbnail const pulses = Pulses();
    CPfImpactPoints onsets(kEngineRateHz, kMinute);
    CPfImpactFinder(nullptr).BuildImpactPoints(&pulses, 8, &onsets);
    onsets.SortAndFilterDupes();
    ASSERT_GT(onsets.GetUpperBound(), 160); // 20 measures at 82 BPM, eight points each
    m_fBpm = 0.0f;
    std::vector<std::int64_t> const grid = Build(pulses);
    EXPECT_TRUE(std::ranges::equal(grid, onsets.Points()));
    EXPECT_EQ(m_fBpm, 0.0f);
    EXPECT_EQ(m_out.GetResolution(), 8U);
}

TEST_F(BeatBuilderTest, TemposWithoutAStepAreLeftAlone) {
    // Beyond 44100 * 240 / 8 BPM a measure has fewer than eight samples.
    for (float const bpm : {-120.0f, 2e6f, std::numeric_limits<float>::infinity()}) {
        m_fBpm = bpm;
        EXPECT_EQ(Build(Pulses()).front(), (kFirstPulse - 1) * kPerElement) << bpm;
        EXPECT_EQ(m_fBpm, bpm);
        EXPECT_EQ(m_out.GetResolution(), 8U);
    }
    m_fBpm = std::numeric_limits<float>::quiet_NaN();
    Build(Pulses());
    EXPECT_TRUE(std::isnan(m_fBpm));
}

TEST_F(BeatBuilderTest, VerySlowTemposAreNoTrouble) {
    m_fBpm = 1e-30f; // a measure of more samples than 32 bits can count
    std::vector<std::int64_t> const grid = Build(Pulses());
    EXPECT_THAT(grid, IsEmpty());             // no two onsets are a step apart
    EXPECT_EQ(m_fBpm, BpmOf(536'870'911.0f)); // (2^32 - 1) / 8, truncated
}

TEST_F(BeatBuilderTest, CancelGivesTheTempoOfTheFirstStepAndNoGrid) {
    m_cancel.Set();
    EXPECT_THAT(Build(Pulses()), IsEmpty());
    EXPECT_EQ(m_fBpm, BpmOf(10'997.0f));
    EXPECT_EQ(m_out.GetResolution(), 8U);
}

TEST_F(BeatBuilderTest, OnsetsAreScoredOnTheOtherThumbnail) {
    // All scores are 0 where the envelope is flat, so nothing is chained; but the step is the
    // onsets' own.
    CPfPcmThumbnail const pulses = Pulses();
    CPfPcmThumbnail const flat =
        MakeEnvelope(std::vector<float>(10'335, 1.0f), kEngineRateHz, kPerElement);
    EXPECT_TRUE(m_builder.BuildBeatPointsAlt(&flat, &pulses, &m_fBpm, &m_out));
    EXPECT_THAT(m_out.Points(), IsEmpty());
    EXPECT_EQ(m_fBpm, BpmOf(11'008.0f));
}
