// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Sprockets from pairs of onsets. One element a sample and four samples a second: at 60 BPM a
// measure is 16 elements. A pulse of 3 stands on every element 10, 26, 42 ...; the onsets are the
// feet before them, 9, 25, 41 ... A pair of 16 measures is 256 samples long, give or take 256 /
// 200, that is one.

#include "engine/mix/MixParamGen.h"

#include "engine/ProfileResults.h"
#include "support/Envelope.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

using testing::ElementsAre;

namespace {

constexpr std::uint32_t kElementRate = 4;
constexpr float kElementBpm = 60.0f;
constexpr std::uint16_t kMeasures = 16;

std::vector<float> PulsesEachSecond(std::size_t count) {
    std::vector<float> elements(count, 0.0f);
    for (std::size_t i = 10; i < count; i += 16) {
        elements[i] = 3.0f;
    }
    return elements;
}

CProfileResults Sprockets(std::vector<float> const& elements, std::uint16_t measures = kMeasures) {
    CPfPcmThumbnail thumb = MakeEnvelope(elements, kElementRate, 1);
    thumb.ApplyBpm(kElementBpm);
    CCancelFlag const cancel;
    CProfileResults results;
    results.SetBpm(kElementBpm);
    EXPECT_TRUE(CPfMixParamGen::BuildBeatMixSprocketsClassic(&thumb, &cancel, measures, &results));
    return results;
}

std::vector<std::int64_t> Intro(CProfileResults const& results) {
    return {results.GetIntroSprockets().begin(), results.GetIntroSprockets().end()};
}

std::vector<std::int64_t> Outro(CProfileResults const& results) {
    return {results.GetOutroSprockets().begin(), results.GetOutroSprockets().end()};
}

} // namespace

TEST(MixSprocketsTest, PairsOfOnsetsLieNearestToBothEnds) {
    // The intro ends at 10, so the first onset behind it is 25. The last loud measure begins with
    // the last pulse, 1194, and its first quiet element is 1195; the last onset before it is 1193.
    CProfileResults const results = Sprockets(PulsesEachSecond(1200));
    EXPECT_THAT(Intro(results), ElementsAre(25, 281));
    EXPECT_THAT(Outro(results), ElementsAre(937, 1193));
}

TEST(MixSprocketsTest, ALengthMayBeLongByTheTolerance) {
    // From 282 on all pulses are one later: 282 takes the place of 281, 257 from 25.
    std::vector<float> elements = PulsesEachSecond(1200);
    elements.insert(elements.begin() + 280, 0.0f);
    EXPECT_THAT(Intro(Sprockets(elements)), ElementsAre(25, 282));
}

TEST(MixSprocketsTest, ALengthMustNotBeShortByTheTolerance) {
    // The pulses from 26 to 250 are one later, the one at 266 is missing: 26 to 281 are 255, and
    // more than 256 - 1 is asked for. So it goes for all of them; 281 begins the first pair.
    std::vector<float> elements = PulsesEachSecond(1200);
    elements.insert(elements.begin() + 20, 0.0f);
    elements.erase(elements.begin() + 270);
    elements[267] = 0.0f;
    EXPECT_THAT(Intro(Sprockets(elements)), ElementsAre(281, 537));
}

TEST(MixSprocketsTest, PairsThatCrossGiveWayToTheOuterOnes) {
    // Intro 25 to 281, outro 137 to 393. The intro's end is 10, the outro's start 395, the gap 385;
    // 256 twice does not fit, 128 does.
    CProfileResults const results = Sprockets(PulsesEachSecond(400));
    EXPECT_THAT(Intro(results), ElementsAre(10, 138));
    EXPECT_THAT(Outro(results), ElementsAre(395, 267));
}

TEST(MixSprocketsTest, PairsMayTouch) {
    // One pulse short of 16 + 16 + 1 onsets behind the intro's end: 25 to 281 and 281 to 537.
    CProfileResults const results = Sprockets(PulsesEachSecond(540));
    EXPECT_THAT(Intro(results), ElementsAre(25, 281));
    EXPECT_THAT(Outro(results), ElementsAre(281, 537));
}

TEST(MixSprocketsTest, LengthIsAProductOf32Bits) {
    // 0.001 BPM at 44100 Hz is 2^31 or more samples a measure, and twice that wraps around.
    CPfPcmThumbnail thumb = MakeEnvelope(std::vector<float>(400, 1.0f), 44100, 256);
    thumb.ApplyBpm(kElementBpm);
    CProfileResults results;
    results.SetBpm(0.001f);
    ASSERT_GT(thumb.SamPerMeas(0.001f), 0x80000000U);
    EXPECT_TRUE(CPfMixParamGen::BuildBeatMixSprocketsClassic(&thumb, nullptr, 2, &results));
    // No pair, and no gap of two such measures either.
    EXPECT_EQ(results.GetIntroSprockets().GetCount(), 1U);
    EXPECT_EQ(results.GetOutroSprockets().GetCount(), 1U);
}

TEST(MixSprocketsTest, WithoutATempoOnlyTheEndsAreLeft) {
    CPfPcmThumbnail thumb = MakeEnvelope(PulsesEachSecond(1200), kElementRate, 1);
    thumb.ApplyBpm(0.0f);
    CProfileResults results;
    EXPECT_TRUE(CPfMixParamGen::BuildBeatMixSprocketsClassic(&thumb, nullptr, 8, &results));
    // No running average: the first element above 0 ends the intro, and the outro follows at once.
    // A gap of nothing is not more than two measures of nothing.
    EXPECT_THAT(Intro(results), ElementsAre(10));
    EXPECT_THAT(Outro(results), ElementsAre(10));
}
