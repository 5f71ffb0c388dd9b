// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/envelope/ThumbnailBuilder.h"

#include "base/NotificationCenter.h"
#include "engine/PcmReader.h"
#include "engine/Profiler.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/notes/NoteDetector.h"
#include "engine/print/Fingerprint.h"
#include "engine/signal/SpecEngBuilder.h"
#include "support/ClickTrack.h"
#include "support/FailingAllocation.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace {

/// A reader of any rate and length, whose stream may differ from its sample count.
class COddReader final : public IPcmReader {
public:
    COddReader(std::int64_t count, std::uint32_t rate) : m_nCount(count), m_nRate(rate) {}

    CStatus IsValid() override { return kStatusOk; }
    CStatus GetSampleRate(std::uint32_t* rate) override {
        *rate = m_nRate;
        return kStatusOk;
    }
    CStatus GetStreamLength(std::int64_t* bytes) override {
        *bytes = m_nStreamBytes;
        return kStatusOk;
    }
    CStatus GetSampleCount(std::int64_t* count) override {
        *count = m_nCount;
        return kStatusOk;
    }
    CStatus GetFormatInfo(std::uint8_t*, std::uint32_t*) override { return kStatusOk; }
    CStatus LoadPcm(std::uint8_t* dest, std::int64_t byteOffset, std::uint32_t count) override {
        m_vLoads.emplace_back(byteOffset, count);
        std::fill_n(dest, count, std::uint8_t{0});
        return m_vLoads.size() > m_nGoodLoads ? kStatusFailure : kStatusOk;
    }

    std::int64_t m_nStreamBytes = 0;
    std::size_t m_nGoodLoads = 1000; // those behind them fail
    std::vector<std::pair<std::int64_t, std::uint32_t>> m_vLoads;

private:
    std::int64_t m_nCount;
    std::uint32_t m_nRate;
};

/// One spectral pass over `samples`, with the progress texts that it sent.
struct CPass {
    explicit CPass(std::vector<float> const& samples, std::uint16_t frameLength = 256) {
        CPcmReader reader(samples.data(), static_cast<std::int32_t>(samples.size()));
        Run(reader, frameLength);
    }

    CPass(COddReader& reader, std::uint16_t frameLength) { Run(reader, frameLength); }

    CPfPcmThumbnail m_thumb;
    bool m_bResult = false;
    std::vector<std::string> m_vProgress;

private:
    void Run(IPcmReader& reader, std::uint16_t frameLength) {
        CNotificationCenter& centre = CNotificationCenter::Default();
        centre.AddObserver(this, kFileProgressNotification, [this](CUserInfo const* userInfo) {
            m_vProgress.push_back(UserInfoText(userInfo, kPercentKey));
        });
        CProfiler profiler(nullptr);
        CPcmThumbnailBuilder builder(nullptr, 44100.0);
        m_bResult =
            builder.BuildSpecEng(&profiler, &reader, frameLength, &m_thumb, nullptr, nullptr);
        centre.RemoveObserver(this, kFileProgressNotification);
    }
};

} // namespace

TEST(ThumbnailBuilderTest, OneEnergyPerWholeFrame) {
    std::vector<float> samples = MakeNoise(1.0, 0.5f);
    samples.resize(256 * 30 + 255); // more than one read of 24 frames, and a tail
    CPass const pass(samples);
    ASSERT_TRUE(pass.m_bResult);
    ASSERT_EQ(pass.m_thumb.GetCount(), 30);
    EXPECT_EQ(pass.m_thumb.GetSampleCount(), 256 * 30 + 255);
    EXPECT_EQ(pass.m_thumb.GetSampleRate(), 44100U);
    EXPECT_EQ(pass.m_thumb.GetSamplesPerElement(), 256U);
    CPfSpecEngBuilder specEng(256);
    for (std::int32_t i = 0; i < 30; ++i) {
        EXPECT_EQ(pass.m_thumb.GetAt(i), specEng.GetSpecEnergy(samples.data() + i * 256)) << i;
    }
}

TEST(ThumbnailBuilderTest, FramesMayStraddleReads) {
    // 6144 floats per read are 1.5 frames of 4096.
    std::vector<float> samples = MakeNoise(1.0, 0.5f);
    samples.resize(4096 * 4);
    CPass const pass(samples, 4096);
    ASSERT_TRUE(pass.m_bResult);
    ASSERT_EQ(pass.m_thumb.GetCount(), 4);
    CPfSpecEngBuilder specEng(4096);
    for (std::int32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(pass.m_thumb.GetAt(i), specEng.GetSpecEnergy(samples.data() + i * 4096)) << i;
    }
}

TEST(ThumbnailBuilderTest, ReadsTheStreamInChunksAndIgnoresAPartialFloat) {
    COddReader reader(6144 + 256, 44100);
    reader.m_nStreamBytes = 24576 + 1024 + 3;
    CPass const pass(reader, 256);
    EXPECT_TRUE(pass.m_bResult);
    ASSERT_EQ(reader.m_vLoads.size(), 2U);
    EXPECT_EQ(reader.m_vLoads[0], (std::pair<std::int64_t, std::uint32_t>{0, 24576}));
    EXPECT_EQ(reader.m_vLoads[1], (std::pair<std::int64_t, std::uint32_t>{24576, 1027}));
    EXPECT_EQ(pass.m_thumb.GetCount(), 25);
}

TEST(ThumbnailBuilderTest, AStreamLongerThanItsCountWritesNothingPastTheThumbnail) {
    COddReader reader(256, 44100);
    reader.m_nStreamBytes = 24576;
    CPass const pass(reader, 256);
    EXPECT_TRUE(pass.m_bResult);
    EXPECT_EQ(pass.m_thumb.GetCount(), 1);
}

TEST(ThumbnailBuilderTest, ASourceThatFailsEndsThePass) {
    COddReader reader(3 * 6144, 44100);
    reader.m_nStreamBytes = std::int64_t{3} * 24576;
    reader.m_nGoodLoads = 1;
    CPass const pass(reader, 256);
    EXPECT_FALSE(pass.m_bResult);
    EXPECT_EQ(reader.m_vLoads.size(), 2U);
}

TEST(ThumbnailBuilderTest, ReportsEvery2000FramesUpTo94) {
    // 4500 frames: 0 * 94 / 4500 = 0, 2000 * 94 / 4500 = 41.7, 4000 * 94 / 4500 = 83.5.
    CPass const pass(std::vector<float>(256 * 4500, 0.0f));
    EXPECT_EQ(pass.m_vProgress, (std::vector<std::string>{" 0%", "41%", "83%"}));
    // 2001 frames: 2000 * 94 / 2001 = 93.95.
    CPass const last(std::vector<float>(256 * 2001, 0.0f));
    EXPECT_EQ(last.m_vProgress, (std::vector<std::string>{" 0%", "93%"}));
}

TEST(ThumbnailBuilderTest, AnUnknownLengthReportsZero) {
    COddReader reader(0, 44100);
    reader.m_nStreamBytes = 1024;
    EXPECT_EQ(CPass(reader, 256).m_vProgress, std::vector<std::string>{" 0%"});
}

TEST(ThumbnailBuilderTest, AnEmptyStreamPassesWithoutReport) {
    CPass const pass(std::vector<float>{});
    EXPECT_TRUE(pass.m_bResult);
    EXPECT_TRUE(pass.m_vProgress.empty());
    EXPECT_EQ(pass.m_thumb.GetCount(), 0);
}

TEST(ThumbnailBuilderTest, SilenceHasNoEnergy) {
    CPass const pass(MakeSilence(0.5));
    EXPECT_EQ(pass.m_thumb.GetMaxValue(), 0.0f);
    EXPECT_EQ(pass.m_thumb.GetMinValue(), 0.0f);
}

TEST(ThumbnailBuilderTest, RefusesFrameLengthsThatCannotBeTransformed) {
    EXPECT_FALSE(CPass(MakeSilence(0.1), 0).m_bResult);
    EXPECT_FALSE(CPass(MakeSilence(0.1), 100).m_bResult);
}

TEST(ThumbnailBuilderTest, FailsWithoutMemoryForItsBuffers) {
    std::vector<float> const samples = MakeSilence(0.1);
    CPcmReader reader(samples.data(), static_cast<std::int32_t>(samples.size()));
    CProfiler profiler(nullptr);
    CPfPcmThumbnail thumb;
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    CFailingAllocation const noMemory;
    EXPECT_FALSE(builder.BuildSpecEng(&profiler, &reader, 256, &thumb, nullptr, nullptr));
}

TEST(ThumbnailBuilderTest, ACancelStopsThePassBeforeTheNextFrame) {
    // Cancelled from within the report of frame 2000.
    std::vector<float> const samples(256 * 4500, 0.5f);
    CPcmReader reader(samples.data(), static_cast<std::int32_t>(samples.size()));
    CCancelFlag cancel;
    int reports = 0;
    CNotificationCenter& centre = CNotificationCenter::Default();
    centre.AddObserver(&cancel, kFileProgressNotification, [&](CUserInfo const*) {
        if (++reports == 2) {
            cancel.Set();
        }
    });
    CProfiler profiler(nullptr);
    CPfPcmThumbnail thumb;
    CPcmThumbnailBuilder builder(&cancel, 44100.0);
    EXPECT_FALSE(builder.BuildSpecEng(&profiler, &reader, 256, &thumb, nullptr, nullptr));
    centre.RemoveObserver(&cancel, kFileProgressNotification);
    EXPECT_EQ(reports, 2);
    EXPECT_GT(thumb.GetAt(2000), 0.0f);
    EXPECT_EQ(thumb.GetAt(2001), 0.0f);
}

TEST(ThumbnailBuilderTest, ACancelledEmptyStreamFails) {
    CCancelFlag cancel;
    cancel.Set();
    CPcmReader reader(nullptr, 0);
    CProfiler profiler(nullptr);
    CPfPcmThumbnail thumb;
    CPcmThumbnailBuilder builder(&cancel, 44100.0);
    EXPECT_FALSE(builder.BuildSpecEng(&profiler, &reader, 256, &thumb, nullptr, nullptr));
}

TEST(ThumbnailBuilderTest, TheWorkingRateIsTruncated) {
    CPcmReader reader(nullptr, 0);
    CProfiler profiler(nullptr);
    CPfPcmThumbnail thumb;
    CPcmThumbnailBuilder builder(nullptr, 22050.9);
    EXPECT_TRUE(builder.BuildSpecEng(&profiler, &reader, 256, &thumb, nullptr, nullptr));
    EXPECT_EQ(thumb.GetSampleRate(), 22050U);
}

TEST(ThumbnailBuilderTest, SizesAThumbnailFor44100) {
    CPcmThumbnailBuilder builder(nullptr, 22050.0);
    CPfPcmThumbnail thumb;
    COddReader half(1000, 22050);
    EXPECT_TRUE(builder.InitThumbnail(&half, 256, &thumb));
    EXPECT_EQ(thumb.GetSampleCount(), 2000);
    EXPECT_EQ(thumb.GetSampleRate(), 44100U);
    EXPECT_EQ(thumb.GetCount(), 7);
    COddReader third(10, 3 * 44100); // 10 / 3, truncated
    EXPECT_TRUE(builder.InitThumbnail(&third, 1, &thumb));
    EXPECT_EQ(thumb.GetSampleCount(), 3);
}

TEST(ThumbnailBuilderTest, RefusesToSizeWithoutRateOrGroup) {
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    CPfPcmThumbnail thumb;
    COddReader noRate(1000, 0);
    EXPECT_FALSE(builder.InitThumbnail(&noRate, 256, &thumb));
    COddReader reader(1000, 44100);
    EXPECT_FALSE(builder.InitThumbnail(&reader, 0, &thumb));
    EXPECT_EQ(thumb.GetSampleCount(), 0);
}

TEST(ThumbnailBuilderTest, PeaksOfWholeGroupsLandAtTheirPosition) {
    CPfPcmThumbnail thumb;
    ASSERT_TRUE(thumb.Initialize(20, 44100, 4));
    std::vector<float> const pcm{0.1f, -0.5f, 0.2f, 0.0f, 0.3f, 0.3f, 0.0f, -0.25f, 0.9f, 0.9f};
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    EXPECT_TRUE(builder.BuildPcmThumbnailRange(pcm.data(), 10, 8, &thumb));
    EXPECT_EQ(thumb.GetAt(1), 0.0f);
    EXPECT_EQ(thumb.GetAt(2), 0.5f);
    EXPECT_EQ(thumb.GetAt(3), 0.3f);
    EXPECT_EQ(thumb.GetAt(4), 0.0f); // the tail of two is left out
    EXPECT_TRUE(builder.BuildPcmThumbnailRange(pcm.data(), 4, 18, &thumb)); // 18 / 4 = 4
    EXPECT_EQ(thumb.GetAt(4), 0.5f);
    EXPECT_TRUE(builder.BuildPcmThumbnailRange(pcm.data(), 4, std::int64_t{4} << 32, &thumb));
    EXPECT_EQ(thumb.GetAt(0), 0.0f); // far behind the end
}

TEST(ThumbnailBuilderTest, TheLargestAbsoluteValue) {
    std::vector<float> const pcm{0.1f, -0.5f, 0.25f};
    EXPECT_EQ(CPcmThumbnailBuilder::GetMaxValue(pcm.data(), 3), 0.5f);
    EXPECT_EQ(CPcmThumbnailBuilder::GetMaxValue(pcm.data(), 1), 0.1f);
    EXPECT_EQ(CPcmThumbnailBuilder::GetMaxValue(nullptr, 0), 0.0f);
}

TEST(ThumbnailBuilderTest, BothListenersHearEveryFrame) {
    std::vector<float> const samples = MakeSine(55.0, 2.5, 0.5f);
    CPcmReader reader(samples.data(), static_cast<std::int32_t>(samples.size()));
    CProfiler profiler(nullptr);
    CPcmThumbnailBuilder builder(nullptr, 44100.0);
    CPfPcmThumbnail energy;
    CPfPcmThumbnail bass;
    CPfNoteDetector notes(&reader, &builder, &bass);
    CSmartPtr<CFingerprint> print;
    print.Create();
    CPfFingerprintBuilder prints(print.Get(), nullptr, nullptr);
    ASSERT_TRUE(builder.BuildSpecEng(&profiler, &reader, 256, &energy, &notes, &prints));
    EXPECT_EQ(notes.FinalizeNoteDetection(&profiler), kStatusOk);
    // Each of the three sections w^2 / (s^2 + 1.25 w s + w^2) at x = 55 / 120 of its edge has the
    // gain ((1 - x^2)^2 + (1.25 x)^2)^-1/2 = 1.0248: 0.5 * 1.0762 in all. A crest lies within half
    // a sample of some sample: cos(pi * 55 / 44100) is 1 - 8e-6.
    std::int32_t const half = bass.GetCount() / 2;
    EXPECT_NEAR(static_cast<double>(bass.GetMaxRangeValue(half, half + 10)), 0.5381, 1e-4);
    EXPECT_GT(bass.GetMaxRangeValue(bass.GetCount() - 5, bass.GetCount() - 1), 0.5f);
    // The first capture is at the first frame that starts past the first second: position 44288,
    // (44288 * 1000000 + 22050) / 44100 = 1004263 us. Wider excerpts may replace it later.
    EXPECT_GE(print->GetTime(), 1004263);
    EXPECT_EQ(print->GetValues().size(), 128U);
}

// The largest may stand in any lane or in the rest, and NaN never counts.
TEST(ThumbnailBuilderTest, LargestAbsoluteValueAtAnyPlacePassesNanOver) {
    for (std::uint32_t n = 1; n <= 19; ++n) {
        for (std::uint32_t place = 0; place < n; ++place) {
            std::vector<float> samples(n, 0.25f);
            samples[place] = -0.5f;
            if (place + 1 < n) {
                samples[place + 1] = std::numeric_limits<float>::quiet_NaN();
            }
            EXPECT_EQ(CPcmThumbnailBuilder::GetMaxValue(samples.data(), n), 0.5f)
                << place << " of " << n;
        }
    }
    EXPECT_EQ(CPcmThumbnailBuilder::GetMaxValue(nullptr, 0), 0.0f);
}
