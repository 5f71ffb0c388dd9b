// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/TempoCandidates.h"

#include "engine/beats/BeatPattern.h"
#include "engine/envelope/PcmThumbnail.h"
#include "song/TempoFeatures.h"
#include "song/TempoModel.h"
#include "support/Envelope.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 44100;
constexpr std::uint16_t kElement = 256;

/// Noise below 0.05 with a stroke every beat at `bpm` that dies away in 50 ms.
CPfPcmThumbnail Beats(double bpm, double seconds, double strokes = 1.0) {
    double const elementSeconds = static_cast<double>(kElement) / kRate;
    std::vector<float> values(static_cast<std::size_t>(seconds / elementSeconds));
    std::uint32_t state = 7;
    for (std::size_t i = 0; i < values.size(); ++i) {
        state = state * 1664525U + 1013904223U; // Numerical Recipes' generator
        double const beat = static_cast<double>(i) * elementSeconds * bpm * strokes / 60.0;
        double const since = (beat - std::floor(beat)) * 60.0 / (bpm * strokes);
        values[i] = static_cast<float>(std::exp(-since / 0.05)) +
                    0.05f * static_cast<float>(state >> 8U) / 16777216.0f;
    }
    return MakeEnvelope(values, kRate, kElement);
}

CPfBeatPattern EvenPattern() {
    CPfBeatPattern pattern;
    pattern.Initialize(8);
    for (std::int32_t i = 0; i < 8; i += 2) {
        pattern.SetBeatWeight(i, 1.0f);
    }
    return pattern;
}

class TempoCandidatesTest : public ::testing::Test {
protected:
    void Play(double bpm, double seconds) {
        m_energy = Beats(bpm, seconds, 2.0);
        m_bass = Beats(bpm, seconds);
    }
    [[nodiscard]] CTempoSource Source(float reported, float heard) const {
        return {&m_energy, &m_bass, &m_pattern, &m_pattern, reported, heard};
    }
    [[nodiscard]] CTempoCandidates Find(float reported) const {
        return FindTempoCandidates(Source(reported, reported));
    }

    CPfPcmThumbnail m_energy;
    CPfPcmThumbnail m_bass;
    CPfBeatPattern m_pattern = EvenPattern();
};

CTempoCandidate const* WithRatio(CTempoCandidates const& found, std::int32_t times,
                                 std::int32_t over) {
    auto const place =
        std::find_if(found.m_vCandidates.begin(), found.m_vCandidates.end(),
                     [times, over](CTempoCandidate const& candidate) {
                         return candidate.m_nTimes == times && candidate.m_nOver == over;
                     });
    return place == found.m_vCandidates.end() ? nullptr : &*place;
}

CTempoCandidate const* Near(CTempoCandidates const& found, float bpm) {
    auto const place = std::find_if(found.m_vCandidates.begin(), found.m_vCandidates.end(),
                                    [bpm](CTempoCandidate const& candidate) {
                                        return std::abs(candidate.m_fBpm - bpm) < 0.01f * bpm;
                                    });
    return place == found.m_vCandidates.end() ? nullptr : &*place;
}

} // namespace

TEST_F(TempoCandidatesTest, ListsTheReportedTempoAndItsRatios) {
    Play(120.0, 60.0);
    CTempoCandidates const found = Find(120.0f);
    struct CExpected {
        std::int32_t m_nTimes;
        std::int32_t m_nOver;
        float m_fBpm;
    };
    for (CExpected const& expected :
         {CExpected{1, 1, 120.0f}, CExpected{2, 1, 240.0f}, CExpected{1, 2, 60.0f},
          CExpected{3, 2, 180.0f}, CExpected{2, 3, 80.0f}, CExpected{4, 3, 160.0f},
          CExpected{3, 4, 90.0f}}) {
        CTempoCandidate const* const candidate =
            WithRatio(found, expected.m_nTimes, expected.m_nOver);
        ASSERT_NE(candidate, nullptr) << expected.m_nTimes << ":" << expected.m_nOver;
        EXPECT_EQ(candidate->m_fBpm, expected.m_fBpm);
    }
}

TEST_F(TempoCandidatesTest, RatiosStayBetween40And250) {
    Play(160.0, 60.0);
    // 320 lies above; 80, 240, 106.67, 213.33 and 120 don't.
    CTempoCandidates const fast = Find(160.0f);
    EXPECT_EQ(WithRatio(fast, 2, 1), nullptr);
    EXPECT_NE(WithRatio(fast, 3, 2), nullptr);
    for (CTempoCandidate const& candidate : fast.m_vCandidates) {
        EXPECT_GE(candidate.m_fBpm, 40.0f);
        EXPECT_LE(candidate.m_fBpm, 250.0f);
    }
    // 125 doubled is the edge, which belongs to the range.
    EXPECT_NE(WithRatio(Find(125.0f), 2, 1), nullptr);
    EXPECT_NE(WithRatio(Find(80.0f), 1, 2), nullptr);
    EXPECT_EQ(WithRatio(Find(79.0f), 1, 2), nullptr);
}

TEST_F(TempoCandidatesTest, ScoresAddUpToOneAndFall) {
    for (double const bpm : {60.0, 97.3, 128.0, 174.0}) {
        Play(bpm, 45.0);
        CTempoCandidates const found = Find(static_cast<float>(bpm));
        ASSERT_FALSE(found.m_vCandidates.empty());
        float sum = 0.0f;
        float last = 1.0f;
        for (CTempoCandidate const& candidate : found.m_vCandidates) {
            EXPECT_GT(candidate.m_fScore, 0.0f);
            EXPECT_LE(candidate.m_fScore, last);
            last = candidate.m_fScore;
            sum += candidate.m_fScore;
        }
        // About ten numbers below 1, each rounded to 24 bits.
        EXPECT_NEAR(sum, 1.0f, 1e-6f) << bpm;
        EXPECT_GE(found.m_fConfidence, 0.0f);
        EXPECT_LE(found.m_fConfidence, 1.0f);
    }
}

TEST_F(TempoCandidatesTest, ATempoThatTheReportMissesIsARunnerUp) {
    Play(100.0, 60.0);
    // 71 has no simple ratio to 100: the nearest are 94.67 and 106.5.
    CTempoCandidates const found = Find(71.0f);
    CTempoCandidate const* const runnerUp = Near(found, 100.0f);
    ASSERT_NE(runnerUp, nullptr);
    EXPECT_EQ(runnerUp->m_nTimes, 0);
    EXPECT_EQ(runnerUp->m_nOver, 0);
}

TEST_F(TempoCandidatesTest, ARunnerUpIsExactToAThousandth) {
    Play(100.0, 60.0);
    // The frames are 23 ms, a period is 600: only its multiples place it so well.
    CTempoCandidates const found = Find(71.0f);
    EXPECT_TRUE(std::any_of(found.m_vCandidates.begin(), found.m_vCandidates.end(),
                            [](CTempoCandidate const& candidate) {
                                return std::abs(candidate.m_fBpm - 100.0f) < 0.1f;
                            }));
}

TEST_F(TempoCandidatesTest, NoTwoCandidatesAreTheSameTempo) {
    Play(123.0, 60.0);
    CTempoCandidates const found = Find(123.0f);
    for (std::size_t i = 0; i < found.m_vCandidates.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            float const a = found.m_vCandidates[i].m_fBpm;
            float const b = found.m_vCandidates[j].m_fBpm;
            EXPECT_GT(std::abs(a - b) / std::min(a, b), 0.029f) << a << " " << b;
        }
    }
}

TEST_F(TempoCandidatesTest, TheHeardTempoOfAShortClipIsListed) {
    Play(110.0, 10.0);
    // A clip of 10 s is one measure: 24 BPM, doubled into the band 96. It was heard at 133.
    CTempoCandidates const found = FindTempoCandidates(Source(96.0f, 133.0f));
    ASSERT_NE(WithRatio(found, 1, 1), nullptr);
    EXPECT_EQ(WithRatio(found, 1, 1)->m_fBpm, 96.0f);
    EXPECT_TRUE(
        std::any_of(found.m_vCandidates.begin(), found.m_vCandidates.end(),
                    [](CTempoCandidate const& candidate) { return candidate.m_fBpm == 133.0f; }));
}

TEST_F(TempoCandidatesTest, NothingThereMeansNoCandidates) {
    m_energy = MakeEnvelope(std::vector<float>(5000, 0.0f), kRate, kElement);
    m_bass = m_energy;
    CTempoCandidates const silence = Find(120.0f);
    EXPECT_TRUE(silence.m_vCandidates.empty());
    EXPECT_EQ(silence.m_fConfidence, 0.0f);

    Play(120.0, 30.0);
    EXPECT_TRUE(Find(0.0f).m_vCandidates.empty());
    EXPECT_TRUE(Find(-1.0f).m_vCandidates.empty());
    EXPECT_TRUE(Find(std::numeric_limits<float>::quiet_NaN()).m_vCandidates.empty());
    EXPECT_TRUE(Find(std::numeric_limits<float>::infinity()).m_vCandidates.empty());
}

TEST_F(TempoCandidatesTest, ClicksAreTrustedMoreThanNoise) {
    Play(120.0, 60.0);
    float const clicks = Find(120.0f).m_fConfidence;
    std::vector<float> noise(10000);
    std::uint32_t state = 3;
    for (float& value : noise) {
        state = state * 1664525U + 1013904223U;
        value = 0.5f + 0.1f * static_cast<float>(state >> 8U) / 16777216.0f;
    }
    m_energy = MakeEnvelope(noise, kRate, kElement);
    m_bass = m_energy;
    EXPECT_GT(clicks, 0.5f);
    EXPECT_LT(Find(120.0f).m_fConfidence, 0.5f);
}

TEST_F(TempoCandidatesTest, TheSameInputGivesTheSameBits) {
    Play(131.0, 60.0);
    CTempoCandidates const once = Find(131.0f);
    CTempoCandidates const again = Find(131.0f);
    ASSERT_EQ(once.m_vCandidates.size(), again.m_vCandidates.size());
    for (std::size_t i = 0; i < once.m_vCandidates.size(); ++i) {
        EXPECT_EQ(once.m_vCandidates[i].m_fBpm, again.m_vCandidates[i].m_fBpm);
        EXPECT_EQ(once.m_vCandidates[i].m_fScore, again.m_vCandidates[i].m_fScore);
    }
    EXPECT_EQ(once.m_fConfidence, again.m_fConfidence);
}

TEST_F(TempoCandidatesTest, HostileEnvelopesGiveFiniteScores) {
    Play(120.0, 30.0);
    m_energy.SetAt(100, std::numeric_limits<float>::infinity());
    m_energy.SetAt(101, std::numeric_limits<float>::quiet_NaN());
    m_bass.SetAt(200, std::numeric_limits<float>::max());
    m_pattern.SetBeatWeight(0, std::numeric_limits<float>::infinity());
    for (CTempoCandidate const& candidate : Find(120.0f).m_vCandidates) {
        EXPECT_TRUE(std::isfinite(candidate.m_fScore));
    }
}

TEST_F(TempoCandidatesTest, AnEnvelopeOfTwoFramesIsNoReasonToFail) {
    for (std::size_t const count : {0U, 1U, 7U, 8U, 12U, 40U}) {
        std::vector<float> values(count, 0.0f);
        for (std::size_t i = 0; i < count; i += 9) {
            values[i] = 1.0f;
        }
        m_energy = MakeEnvelope(values, kRate, kElement);
        m_bass = m_energy;
        for (CTempoCandidate const& candidate : Find(120.0f).m_vCandidates) {
            EXPECT_TRUE(std::isfinite(candidate.m_fScore)) << count;
        }
    }
}

TEST_F(TempoCandidatesTest, TheTablesFitTheFeatures) {
    Play(120.0, 30.0);
    CTempoSource const source = Source(120.0f, 120.0f);
    CTempoEvidence const evidence = GatherTempoEvidence(source);
    for (CTempoReading const& reading : ListReadings(source, evidence)) {
        EXPECT_EQ(ReadingFeatures(source, evidence, reading).size(), ReadingWeights().size());
    }
    EXPECT_EQ(SongFeatures(evidence, {120.0f, 1, 1, 0.5f}).size() + 1, ConfidenceWeights().size());
}
