// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The run asks for hoods on copies that have no tempo yet, so that no stage ever sees any. On this
// track hoods would show: its bass is loud for 20 s and then soft.

#include "audio/ProfiledTrack.h"
#include "engine/beats/BeatBuilder.h"
#include "engine/envelope/ThumbnailBuilder.h"
#include "engine/mix/MixParamGen.h"
#include "support/ClickTrack.h"

#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr double kBpm = 90.0;
constexpr std::int64_t kMeasure = 117600; // 4 * 60 / 90 s

/// Clicks from 0.2 s on; a bass drum on each for 20 s, then a soft one on the third of every four.
std::vector<float> LoudThenSoftBass() {
    constexpr CClickShape kLoud{60.0, 0.1, 0.4, 0.9f};
    constexpr CClickShape kSoft{60.0, 0.1, 0.4, 0.12f};
    CClickTrack clicks;
    clicks.m_dBpm = kBpm;
    clicks.m_dStartSeconds = 0.2;
    std::vector<float> samples = MakeClickTrack(clicks);
    auto const end = static_cast<std::int64_t>(samples.size());
    for (int i = 0; ClickPosition(clicks, i) < end; ++i) {
        std::int64_t const position = ClickPosition(clicks, i);
        if (position < 20 * 44100) {
            AddClick(samples, position, kLoud);
        } else if (i % 4 == 2) {
            AddClick(samples, position, kSoft);
        }
    }
    return samples;
}

/// Sprockets of the track's grid on its energy, with hoods or without.
CProfileResults Sprockets(CProfiledTrack const& track, bool hoods) {
    float const bpm = track.m_results.GetBpm();
    CPfImpactPoints grid(44100, track.m_energy.GetSampleCount());
    for (std::int64_t const position : track.m_vBeats) {
        grid.Add(position);
    }
    grid.SetResolution(8);
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    CPfPcmThumbnail attacks(track.m_bass);
    EXPECT_TRUE(builder.PeakHoldThumbnail(&attacks));
    attacks.ApplyBpm(bpm);
    EXPECT_TRUE(CPfBeatBuilder::BuildMeasStartMarks(&track.m_bass, &attacks, &grid));

    CPfPcmThumbnail envelope(track.m_energy);
    envelope.ApplyBpm(bpm);
    if (hoods) {
        EXPECT_TRUE(builder.ApplyPeakHoods(&envelope, 2));
        envelope.ApplyBpm(bpm);
    }
    CProfileResults results;
    results.SetBpm(bpm);
    EXPECT_TRUE(CPfMixParamGen::BuildBeatMixSprockets(&envelope, &grid, 8, nullptr, &results));
    return results;
}

} // namespace

TEST(HoodsTest, PinsMeasuresAreFoundWithoutHoods) {
    // Soft drums are attacks as long as the loudest running average is that of bare drums; under
    // hoods it would be several times as high and the loud first one alone would count, on the
    // first beat. So the marks lie on the third beats: 0.2 s + 2 beats = 67620 samples.
    CProfiledTrack const track(LoudThenSoftBass());
    ASSERT_GT(track.m_results.GetMeasMarks().GetCount(), 0U);
    for (std::int64_t const mark : track.m_results.GetMeasMarks()) {
        std::int64_t const nearest = (mark - 67620 + kMeasure / 2) / kMeasure * kMeasure + 67620;
        EXPECT_LE(std::abs(mark - nearest), 512) << mark; // two elements
    }
}

TEST(HoodsTest, PinsSprocketsAreFoundWithoutHoods) {
    CProfiledTrack const track(LoudThenSoftBass());
    CProfileResults const plain = Sprockets(track, false);
    CProfileResults const hooded = Sprockets(track, true);
    EXPECT_EQ(track.m_results.GetIntroSprockets(), plain.GetIntroSprockets());
    EXPECT_EQ(track.m_results.GetOutroSprockets(), plain.GetOutroSprockets());
    EXPECT_FALSE(plain.GetOutroSprockets() == hooded.GetOutroSprockets()); // hoods would show
}
