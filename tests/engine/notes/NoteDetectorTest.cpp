// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/notes/NoteDetector.h"

#include "engine/PcmReader.h"
#include "engine/Profiler.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/ThumbnailBuilder.h"
#include "engine/kernels/Kernels.h"
#include "engine/signal/IIRFilt.h"
#include "support/ClickTrack.h"
#include "support/FailingAllocation.h"
#include "support/NoteOracle.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kFrame = 256;

/// A detector over a stream, with what it needs.
struct CListening {
    explicit CListening(std::vector<float> const& stream)
        : m_reader(stream.data(), static_cast<std::int32_t>(stream.size())),
          m_builder(nullptr, 44100.0),
          m_detector(&m_reader, &m_builder, &m_thumb) {}

    void PushFrames(std::vector<float> const& stream, std::size_t from, std::size_t to) {
        for (std::size_t pos = from; pos + kFrame <= to; pos += kFrame) {
            ASSERT_EQ(m_detector.PushPcm(&stream[pos], kFrame), kStatusOk);
        }
    }

    void PushAll(std::vector<float> const& stream) { PushFrames(stream, 0, stream.size()); }

    CPcmReader m_reader;
    CPcmThumbnailBuilder m_builder;
    CPfPcmThumbnail m_thumb;
    CPfNoteDetector m_detector;
};

/// The stream as the detector's own filter leaves it, section by section.
std::vector<float> FilteredBass(std::vector<float> stream) {
    CIIRFilt filter;
    filter.Init(44100);
    filter.SetSectionCount(3);
    for (int i = 0; i < 3; ++i) {
        filter.SetSection(i, CIIRFilt::kLowPass, 120.0f, 1.25f);
    }
    filter.setfilt();
    filter.flPlain(stream.data(), 0, static_cast<std::int32_t>(stream.size()), 1);
    return stream;
}

/// What differs between the map and the expected notes, empty when nothing does.
std::string Difference(CPfNoteMap& map, COracleMap const& oracle) {
    std::vector<COracleNote> const& expected = oracle.GetNotes();
    if (map.GetCount() != expected.size()) {
        return "count " + std::to_string(map.GetCount()) + " instead of " +
               std::to_string(expected.size());
    }
    for (std::size_t i = 0; i < expected.size(); ++i) {
        CPfNoteDetection* item = nullptr;
        map.EnumItems(static_cast<std::int32_t>(i), &item);
        bool const sameStrength =
            item->m_fStrength == expected[i].m_fStrength ||
            (std::isnan(item->m_fStrength) && std::isnan(expected[i].m_fStrength));
        if (item->m_nTime != expected[i].m_nTime || item->m_nNote != expected[i].m_nNote ||
            !sameStrength) {
            return "item " + std::to_string(i);
        }
    }
    return {};
}

/// Two quiet sines and a louder one with a fade, none of them a note exactly.
std::vector<float> BassMix(double seconds) {
    std::vector<float> mix = MakeSine(41.0, seconds, 0.3f);
    std::vector<float> const high = MakeSine(82.6, seconds, 0.2f);
    std::vector<float> const middle = MakeSine(55.1, seconds, 0.5f);
    for (std::size_t i = 0; i < mix.size(); ++i) {
        float const fade = static_cast<float>(i % 30000) / 30000.0f;
        mix[i] += high[i] + middle[i] * (1.0f - fade);
    }
    return mix;
}

} // namespace

TEST(NoteDetectorTest, PeriodsAreTheseSamples) {
    CListening const listening({});
    std::vector<std::int32_t> const periods(listening.m_detector.GetPeriods().begin(),
                                            listening.m_detector.GetPeriods().end());
    EXPECT_EQ(periods, kOraclePeriods);
}

TEST(NoteDetectorTest, PeriodsAreThoseOfEqualTemperament) {
    CListening const listening({});
    for (std::size_t k = 0; k < 24; ++k) {
        double const hertz = 55.0 * std::pow(2.0, (static_cast<double>(k) - 9.0) / 12.0);
        EXPECT_EQ(listening.m_detector.GetPeriods()[k], static_cast<std::int32_t>(44100.0 / hertz))
            << k;
    }
}

TEST(NoteDetectorTest, SizesTheThumbnail) {
    std::vector<float> const stream(10 * 256 + 100);
    CListening const listening(stream);
    EXPECT_EQ(listening.m_thumb.GetCount(), 10);
    EXPECT_EQ(listening.m_thumb.GetSamplesPerElement(), 256);
    EXPECT_EQ(listening.m_thumb.GetSampleRate(), 44100U);
}

TEST(NoteDetectorTest, SilenceHasNoNotes) {
    std::vector<float> const stream = MakeSilence(3.0);
    CListening listening(stream);
    listening.PushAll(stream);
    CProfiler profiler(nullptr);
    EXPECT_EQ(listening.m_detector.FinalizeNoteDetection(&profiler), kStatusOk);
    EXPECT_EQ(listening.m_detector.GetNoteMap()->GetCount(), 0U);
    EXPECT_EQ(listening.m_detector.GetFoundCount(), 0U);
}

TEST(NoteDetectorTest, FailsWithoutMemoryForItsBuffer) {
    std::vector<float> const stream(1000, 0.5f);
    CPcmReader reader(stream.data(), 1000);
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    CPfPcmThumbnail thumb;
    std::unique_ptr<CPfNoteDetector> detector;
    {
        CFailingAllocation const failing;
        detector = std::make_unique<CPfNoteDetector>(&reader, &builder, &thumb);
    }
    CProfiler profiler(nullptr);
    EXPECT_EQ(detector->PushPcm(stream.data(), 256), kStatusFailure);
    EXPECT_EQ(detector->FinalizeNoteDetection(&profiler), kStatusFailure);
    EXPECT_EQ(detector->GetNoteMap()->GetCount(), 0U);
}

TEST(NoteDetectorTest, CancelledProfilerLeavesTheMapAsItIs) {
    std::vector<float> const stream = BassMix(3.0);
    CListening listening(stream);
    listening.PushAll(stream);
    std::uint32_t const found = listening.m_detector.GetNoteMap()->GetCount();
    ASSERT_GT(found, 10U);
    CProfiler profiler(nullptr);
    profiler.CancelProfile();
    EXPECT_EQ(listening.m_detector.FinalizeNoteDetection(&profiler), kStatusNothing);
    EXPECT_EQ(listening.m_detector.GetNoteMap()->GetCount(), found);
    EXPECT_EQ(listening.m_thumb.GetAt(listening.m_thumb.GetCount() - 1), 0.0f);
}

TEST(NoteDetectorTest, SearchesOnceItHolds61440Samples) {
    std::vector<float> const stream = MakeSine(65.0, 3.0, 0.8f);
    std::vector<float> const filtered = FilteredBass(stream);
    CListening listening(stream);
    listening.PushFrames(stream, 0, 61440 - 256);
    EXPECT_EQ(listening.m_detector.GetNoteMap()->GetCount(), 0U);
    listening.PushFrames(stream, 61440 - 256, 61440);
    COracleMap expected;
    OracleSearch(filtered.data(), 32768, 61440, 0, &expected);
    EXPECT_EQ(Difference(*listening.m_detector.GetNoteMap(), expected), "");
    EXPECT_GT(expected.GetNotes().size(), 10U);
}

TEST(NoteDetectorTest, FindsWhatThePlainRulesFind) {
    std::vector<std::vector<float>> const streams = {
        BassMix(8.0), MakeSong(128.0, 20.0), MakeNoise(6.0, 0.9f), MakeSine(65.4, 5.0, 0.8f),
        MakeClickTrack(120.0, 5.0)};
    CProfiler profiler(nullptr);
    for (std::size_t i = 0; i < streams.size(); ++i) {
        CListening listening(streams[i]);
        listening.PushAll(streams[i]);
        ASSERT_EQ(listening.m_detector.FinalizeNoteDetection(&profiler), kStatusOk);
        COracleMap expected;
        OracleStream(FilteredBass(streams[i]), &expected);
        EXPECT_EQ(listening.m_detector.GetFoundCount(), expected.GetNotes().size()) << i;
        expected.Prune(500000);
        EXPECT_EQ(Difference(*listening.m_detector.GetNoteMap(), expected), "") << i;
    }
}

TEST(NoteDetectorTest, ThumbnailHoldsThePeaksOfTheFilteredSignal) {
    std::vector<float> const stream = BassMix(4.0);
    std::vector<float> const filtered = FilteredBass(stream);
    CListening listening(stream);
    listening.PushAll(stream);
    CProfiler profiler(nullptr);
    listening.m_detector.FinalizeNoteDetection(&profiler);
    ASSERT_EQ(listening.m_thumb.GetCount(), static_cast<std::int32_t>(stream.size() / kFrame));
    for (std::int32_t i = 0; i < listening.m_thumb.GetCount(); ++i) {
        float peak = 0.0f;
        for (std::size_t k = 0; k < kFrame; ++k) {
            peak = std::max(peak, std::abs(filtered[static_cast<std::size_t>(i) * kFrame + k]));
        }
        ASSERT_EQ(listening.m_thumb.GetAt(i), peak) << i;
    }
}

TEST(NoteDetectorTest, FilterRunsOnThroughPushesOfAnyLength) {
    std::vector<float> const stream = BassMix(1.0);
    CListening frames(stream);
    CListening whole(stream);
    frames.PushAll(stream);
    for (std::size_t pos = 0; pos < stream.size() / kFrame * kFrame;) {
        std::size_t const n =
            std::min<std::size_t>(1 + pos % 997, stream.size() / kFrame * kFrame - pos);
        whole.m_detector.PushPcm(&stream[pos], static_cast<std::uint32_t>(n));
        pos += n;
    }
    CProfiler profiler(nullptr);
    frames.m_detector.FinalizeNoteDetection(&profiler);
    whole.m_detector.FinalizeNoteDetection(&profiler);
    EXPECT_GT(frames.m_detector.GetFoundCount(), 0U);
    EXPECT_EQ(whole.m_detector.GetFoundCount(), frames.m_detector.GetFoundCount());
    for (std::int32_t i = 0; i < frames.m_thumb.GetCount(); ++i) {
        ASSERT_EQ(whole.m_thumb.GetAt(i), frames.m_thumb.GetAt(i)) << i;
    }
}

TEST(NoteDetectorTest, BlockThatDoesNotFitIsDropped) {
    std::vector<float> const stream = BassMix(2.0);
    std::vector<float> const loud(70000, 1.0f);
    CListening listening(stream);
    listening.m_detector.PushPcm(stream.data(), 61439);
    // 61439 + 4097 reaches the buffer's 65536 samples.
    EXPECT_EQ(listening.m_detector.PushPcm(loud.data(), 4097), kStatusOk);
    EXPECT_EQ(listening.m_detector.PushPcm(loud.data(), 70000), kStatusOk);
    EXPECT_EQ(listening.m_detector.GetNoteMap()->GetCount(), 0U);
    EXPECT_EQ(listening.m_detector.PushPcm(&stream[61439], 1), kStatusOk);
    COracleMap expected;
    OracleSearch(FilteredBass(stream).data(), 32768, 61440, 0, &expected);
    EXPECT_EQ(Difference(*listening.m_detector.GetNoteMap(), expected), "");
}

TEST(NoteDetectorTest, PinsCrossingBetweenStridesIsNeverTested) {
    // Put silence in front of a steady tone until a crossing of the filtered signal falls on sample
    // 32768, where the second stride begins.
    std::vector<float> const tone = MakeSine(65.0, 4.0, 0.8f);
    std::vector<float> const reference = FilteredBass(tone);
    std::size_t crossing = 20000;
    while (!(reference[crossing - 1] < 0.0f && reference[crossing] >= 0.0f)) {
        ++crossing;
    }
    CProfiler profiler(nullptr);
    for (std::size_t const shift : {0U, 1U}) {
        std::vector<float> stream(32768 + shift - crossing, 0.0f);
        stream.insert(stream.end(), tone.begin(), tone.end());
        CListening listening(stream);
        listening.PushAll(stream);
        // Still unpruned: the second stride has been searched as well.
        std::int64_t const time =
            (std::int64_t{32768 + static_cast<std::int64_t>(shift)} * 1000000 + 22050) / 44100;
        bool seen = false;
        CPfNoteDetection* item = nullptr;
        for (std::int32_t i = 0;
             listening.m_detector.GetNoteMap()->EnumItems(i, &item) == kStatusOk; ++i) {
            seen = seen || item->m_nTime == time;
        }
        EXPECT_EQ(seen, shift == 1) << shift;
    }
}

TEST(NoteDetectorTest, HalfAMinuteAtOnceIsFilteredAsOneStream) {
    // Longer than what waits for the filter, so that it works before the end, too.
    std::vector<float> stream = MakeSong(128.0, 45.0);
    std::fill(stream.begin() + 500'000, stream.begin() + 800'000, 0.0f);
    std::vector<float> const filtered = FilteredBass(stream);
    COracleMap expected;
    OracleStream(filtered, &expected);
    for (CKernelTarget const& target : GetKernelTargets()) {
        CForceKernels const forced(target);
        CListening listening(stream);
        listening.PushAll(stream);
        CProfiler profiler(nullptr);
        ASSERT_EQ(listening.m_detector.FinalizeNoteDetection(&profiler), kStatusOk);
        EXPECT_EQ(listening.m_detector.GetFoundCount(), expected.GetNotes().size());
        for (std::int32_t i = 0; i < listening.m_thumb.GetCount(); ++i) {
            float peak = 0.0f;
            for (std::size_t k = 0; k < kFrame; ++k) {
                peak = std::max(peak, std::abs(filtered[static_cast<std::size_t>(i) * kFrame + k]));
            }
            ASSERT_EQ(listening.m_thumb.GetAt(i), peak) << i;
        }
    }
}

TEST(NoteDetectorTest, ACancelAtAnyFrameLeavesTheStridesThatWereComplete) {
    std::vector<float> const stream = BassMix(6.0);
    std::vector<float> const filtered = FilteredBass(stream);
    CProfiler profiler(nullptr);
    profiler.CancelProfile();
    for (std::size_t const frames : {0U, 1U, 239U, 240U, 241U, 367U, 368U, 600U, 1000U}) {
        CListening listening(stream);
        listening.PushFrames(stream, 0, frames * kFrame);
        EXPECT_EQ(listening.m_detector.FinalizeNoteDetection(&profiler), kStatusNothing);
        COracleMap expected;
        std::size_t start = 0;
        for (; start + 61440 <= frames * kFrame; start += 32768) {
            OracleSearch(&filtered[start], 32768, 61440, static_cast<std::int32_t>(start),
                         &expected);
        }
        EXPECT_EQ(Difference(*listening.m_detector.GetNoteMap(), expected), "") << frames;
        std::size_t const measured = start / kFrame;
        EXPECT_EQ(listening.m_thumb.GetAt(static_cast<std::int32_t>(measured)), 0.0f) << frames;
    }
}
