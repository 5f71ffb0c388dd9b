// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Bass lines of known key between C at 32.7 Hz and B at 123.5 Hz through note search and key
// detection: plucked notes of 0.75 s, each line twice, then silence, so that no note without
// strength falls on the end.

#include "engine/PcmReader.h"
#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/ThumbnailBuilder.h"
#include "engine/notes/KeyDetector.h"
#include "engine/notes/NoteDetector.h"
#include "support/ClickTrack.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace {

using CLine = std::vector<int>; // semitones above the tonic

CLine const kMinorScale{0, 2, 3, 5, 7, 8, 10, 12, 10, 8, 7, 5, 3, 2};
CLine const kMajorScale{0, 2, 4, 5, 7, 9, 11, 12, 11, 9, 7, 5, 4, 2};
CLine const kMinorTriad{0, 3, 7, 12, 7, 3};
CLine const kMajorTriad{0, 4, 7, 12, 7, 4};
CLine const kMinorRoots{0, 0, 3, 0, 7, 0, 0, 7};
CLine const kMajorRoots{0, 0, 4, 0, 7, 0, 0, 7};
// Tonic, third, fourth, fifth and leading tone about 5 : 3 : 5 : 2 : 5.
CLine const kMajorCadences{0, 5, 11, 0, 4, 5, 11, 0, 7, 5, 11, 4, 0, 5, 11, 0, 7, 5, 11, 4};

struct CHeard {
    std::uint16_t m_nTonic = 99;
    std::uint16_t m_nMode = 99;
    std::array<int, 12> m_nCounts{}; // kept notes of each pitch class, C first
};

/// Adds a sine of a semitone above C at 32.7 Hz that decays to 1/e in 0.4 s.
void AddPluck(std::vector<float>& stream, int semitone) {
    constexpr double kSeconds = 0.75;
    double const hertz = 55.0 * std::pow(2.0, (semitone - 9) / 12.0);
    for (int i = 0; i < static_cast<int>(kSeconds * 44100.0); ++i) {
        double const t = i / 44100.0;
        double const edges = std::min({1.0, t / 0.005, (kSeconds - t) / 0.02});
        stream.push_back(static_cast<float>(0.6 * edges * std::exp(-t / 0.4) *
                                            std::sin(2.0 * std::numbers::pi * hertz * t)));
    }
}

CHeard Hear(CLine const& line, int tonic) {
    std::vector<float> stream;
    for (int repeat = 0; repeat < 2; ++repeat) {
        for (int const step : line) {
            AddPluck(stream, (tonic + step) % 24);
        }
    }
    std::vector<float> const silence = MakeSilence(1.0);
    stream.insert(stream.end(), silence.begin(), silence.end());

    CPcmReader reader(stream.data(), static_cast<std::int32_t>(stream.size()));
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    CPfPcmThumbnail thumb;
    CPfNoteDetector detector(&reader, &builder, &thumb);
    for (std::size_t pos = 0; pos + 256 <= stream.size(); pos += 256) {
        detector.PushPcm(&stream[pos], 256);
    }
    CProfiler profiler(nullptr);
    detector.FinalizeNoteDetection(&profiler);
    CProfileResults results;
    CPfKeyDetector::DetectKey(&profiler, detector.GetNoteMap(), &results);

    CHeard heard;
    results.GetKey(&heard.m_nTonic, &heard.m_nMode);
    CPfNoteDetection* item = nullptr;
    for (std::int32_t i = 0; detector.GetNoteMap()->EnumItems(i, &item) == kStatusOk; ++i) {
        ++heard.m_nCounts[item->m_nNote % 12];
    }
    return heard;
}

/// The line's key is heard as the key `above` semitones above its tonic, for all twelve tonics.
void ExpectEverywhere(CLine const& line, int above, std::uint16_t mode) {
    for (int tonic = 0; tonic < 12; ++tonic) {
        CHeard const heard = Hear(line, tonic);
        EXPECT_EQ(heard.m_nTonic, (tonic + above) % 12) << tonic;
        EXPECT_EQ(heard.m_nMode, mode) << tonic;
    }
}

} // namespace

TEST(BassLineTest, EveryTonicIsHeardWithItsScaleAlone) {
    for (int tonic = 0; tonic < 12; ++tonic) {
        CHeard const heard = Hear(kMajorScale, tonic);
        for (std::size_t pitch = 0; pitch < 12; ++pitch) {
            int const step = (static_cast<int>(pitch) + 12 - tonic) % 12;
            bool const inScale =
                std::ranges::any_of(kMajorScale, [step](int other) { return other % 12 == step; });
            EXPECT_EQ(heard.m_nCounts[pitch] > 0, inScale) << tonic << ' ' << pitch;
        }
    }
}

TEST(BassLineTest, MinorScalesComeOutRight) {
    ExpectEverywhere(kMinorScale, 0, CPfKeyDetector::kMinor);
}

TEST(BassLineTest, MinorTriadsComeOutRight) {
    ExpectEverywhere(kMinorTriad, 0, CPfKeyDetector::kMinor);
}

TEST(BassLineTest, MinorRootsComeOutRight) {
    ExpectEverywhere(kMinorRoots, 0, CPfKeyDetector::kMinor);
}

TEST(BassLineTest, MajorScalesComeOutAsTheirRelativeMinor) {
    // Evenly spread over the scale a major key has 0.84 / 7, its relative minor 0.998 / 7.
    ExpectEverywhere(kMajorScale, 9, CPfKeyDetector::kMinor);
}

TEST(BassLineTest, MajorTriadsComeOutAsTheMinorOnTheirThird) {
    // Root 5, third 4, fifth 4: the minor key on the third has 5 * 0.034 + 4 * 0.352 + 4 * 0.176 =
    // 2.282, the one on the root 5 * 0.352 + 4 * 0.066 = 2.024, the major key 0.8 + 0.8 = 1.6.
    for (int tonic = 0; tonic < 11; ++tonic) {
        CHeard const heard = Hear(kMajorTriad, tonic);
        EXPECT_EQ(heard.m_nTonic, (tonic + 4) % 12) << tonic;
        EXPECT_EQ(heard.m_nMode, CPfKeyDetector::kMinor) << tonic;
    }
    // The high B is kept twice a time. Root 7: on the third 7 * 0.034 + 2.112 = 2.35, on the root
    // 7 * 0.352 + 0.264 = 2.728.
    CHeard const b = Hear(kMajorTriad, 11);
    EXPECT_EQ(b.m_nCounts[11], 7);
    EXPECT_EQ(b.m_nTonic, 11);
    EXPECT_EQ(b.m_nMode, CPfKeyDetector::kMinor);
}

TEST(BassLineTest, MajorRootsComeOutAsTheirParallelMinor) {
    // The root alone gives minor 0.352 and major 0.16.
    ExpectEverywhere(kMajorRoots, 0, CPfKeyDetector::kMinor);
}

TEST(BassLineTest, MajorCadencesComeOutRight) {
    ExpectEverywhere(kMajorCadences, 0, CPfKeyDetector::kMajor);
}
