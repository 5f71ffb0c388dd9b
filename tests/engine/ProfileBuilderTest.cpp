// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/ProfileBuilder.h"

#include "base/NotificationCenter.h"
#include "engine/PcmReader.h"
#include "engine/ProfileObserver.h"
#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/print/Fingerprint.h"
#include "support/ClickTrack.h"
#include "support/FailingAllocation.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

/// A reader of its own rate over a float buffer, valid or not.
class CTestReader final : public IPcmReader {
public:
    explicit CTestReader(std::vector<float> const& samples)
        : m_reader(samples.data(), static_cast<std::int32_t>(samples.size())) {}

    CStatus IsValid() override { return m_nValid; }
    CStatus GetSampleRate(std::uint32_t* rate) override {
        if (m_nRate != 0) {
            *rate = m_nRate;
        }
        return kStatusOk;
    }
    CStatus GetStreamLength(std::int64_t* bytes) override {
        return m_reader.GetStreamLength(bytes);
    }
    CStatus GetSampleCount(std::int64_t* count) override { return m_reader.GetSampleCount(count); }
    CStatus GetFormatInfo(std::uint8_t*, std::uint32_t* bitRate) override {
        *bitRate = m_nBitRate;
        return kStatusOk;
    }
    CStatus LoadPcm(std::uint8_t* dest, std::int64_t byteOffset, std::uint32_t count) override {
        return m_reader.LoadPcm(dest, byteOffset, count);
    }

    CStatus m_nValid = kStatusOk;
    std::uint32_t m_nRate = 44100; // 0: leaves the caller's value
    std::uint32_t m_nBitRate = 1000;

private:
    CPcmReader m_reader;
};

/// One run with everything it left behind. `onProgress` is called with each text.
class CRun {
public:
    using OnProgress = std::function<void(std::string const&)>;

    explicit CRun(IPcmReader& reader, OnProgress onProgress = {})
        : m_onProgress(std::move(onProgress)) {
        CNotificationCenter& centre = CNotificationCenter::Default();
        centre.AddObserver(this, kFileProgressNotification, [this](CUserInfo const* userInfo) {
            m_vProgress.push_back(UserInfoText(userInfo, kPercentKey));
            if (m_onProgress) {
                m_onProgress(m_vProgress.back());
            }
        });
        m_print.Create();
        m_largePrint.Create();
        m_nReturned = m_builder.BuildProfile(&m_profiler, &reader, &m_results, m_print.Get(),
                                             m_largePrint.Get());
        centre.RemoveObserver(this, kFileProgressNotification);
    }
    CRun(CRun const&) = delete;
    CRun& operator=(CRun const&) = delete;
    ~CRun() = default;

    CProfileBuilder m_builder;
    CProfiler m_profiler{nullptr};
    CProfileResults m_results;
    CSmartPtr<CFingerprint> m_print;
    CSmartPtr<CFingerprint> m_largePrint;
    std::vector<std::string> m_vProgress;
    std::int32_t m_nReturned = -1;

private:
    OnProgress m_onProgress;
};

} // namespace

TEST(ProfileBuilderTest, ProgressStartsTwiceAndEndsAtAHundred) {
    std::vector<float> const samples = MakeClickTrack(120.0, 3.0);
    CTestReader reader(samples);
    CRun const run(reader);
    EXPECT_EQ(run.m_nReturned, 0);
    EXPECT_EQ(run.m_vProgress,
              (std::vector<std::string>{" 0%", " 0%", "95%", "98%", "99%", "100%"}));
}

TEST(ProfileBuilderTest, AnEmptyStreamHasNoTempoAndOneZero) {
    CPcmReader reader(nullptr, 0);
    CRun const run(reader);
    EXPECT_EQ(run.m_nReturned, 0);
    EXPECT_EQ(run.m_vProgress, (std::vector<std::string>{" 0%", "95%", "98%", "99%", "100%"}));
    EXPECT_EQ(run.m_results.GetBpm(), 0.0f);
    EXPECT_EQ(run.m_results.GetSampleRate(), 44100U);
    EXPECT_EQ(run.m_results.GetSampleCount(), 0);
    EXPECT_EQ(run.m_results.GetBitRate(), 1411200U);
}

TEST(ProfileBuilderTest, AnInvalidSourceLeavesTheRecordAlone) {
    std::vector<float> const samples = MakeClickTrack(120.0, 3.0);
    CTestReader reader(samples);
    for (CStatus const status : {kStatusNothing, kStatusFailure}) {
        reader.m_nValid = status;
        CRun const run(reader);
        EXPECT_EQ(run.m_nReturned, 0);
        EXPECT_EQ(run.m_vProgress, std::vector<std::string>{" 0%"});
        EXPECT_TRUE(run.m_results == CProfileResults());
        EXPECT_TRUE(run.m_largePrint->GetValues().empty());
    }
}

TEST(ProfileBuilderTest, StoresLengthRateAndBitRateOfTheReader) {
    std::vector<float> const samples = MakeClickTrack(120.0, 3.0);
    CTestReader reader(samples);
    CRun const run(reader);
    EXPECT_EQ(run.m_results.GetSampleCount(), 132300);
    EXPECT_EQ(run.m_results.GetSampleRate(), 44100U);
    EXPECT_EQ(run.m_results.GetBitRate(), 1000U);
}

TEST(ProfileBuilderTest, AReaderWithoutRateOrBitRateKeepsTheDefaults) {
    // Few samples: at one sample a second the bass envelope has 44100 times as many.
    std::vector<float> const samples(1000, 0.5f);
    CTestReader reader(samples);
    reader.m_nRate = 0;
    reader.m_nBitRate = 0;
    CRun const run(reader);
    EXPECT_EQ(run.m_results.GetSampleRate(), 1U);
    EXPECT_EQ(run.m_results.GetBitRate(), 0U);
}

TEST(ProfileBuilderTest, ACancelledPassKeepsKeyAndBitRateAlone) {
    // A bass line on A: the key is A minor, 9 and 1. Cancelled in the report of frame 2000.
    std::vector<float> const samples = MakeSine(55.0, 30.0, 0.5f);
    CTestReader reader(samples);
    CProfileBuilder builder;
    CProfiler profiler(nullptr);
    CProfileResults results;
    std::vector<std::string> progress;
    CNotificationCenter& centre = CNotificationCenter::Default();
    centre.AddObserver(&progress, kFileProgressNotification, [&](CUserInfo const* userInfo) {
        progress.push_back(UserInfoText(userInfo, kPercentKey));
        if (progress.size() == 3) {
            EXPECT_TRUE(builder.CancelProfiling());
        }
    });
    EXPECT_EQ(builder.BuildProfile(&profiler, &reader, &results, nullptr, nullptr), 0);
    centre.RemoveObserver(&progress, kFileProgressNotification);
    // 30 s are 5167 frames: 2000 * 94 / 5167 = 36.4.
    EXPECT_EQ(progress, (std::vector<std::string>{" 0%", " 0%", "36%"}));
    CProfileResults expected;
    expected.SetBitRate(1000);
    expected.SetKey(9, 1);
    EXPECT_TRUE(results == expected);
}

TEST(ProfileBuilderTest, ACancelledProfilerHasNoKey) {
    std::vector<float> const samples = MakeSine(55.0, 30.0, 0.5f);
    CTestReader reader(samples);
    CProfileBuilder builder;
    CProfiler profiler(nullptr);
    profiler.CancelProfile();
    CProfileResults results;
    EXPECT_EQ(builder.BuildProfile(&profiler, &reader, &results, nullptr, nullptr), 0);
    std::uint16_t tonic = 7;
    std::uint16_t mode = 7;
    EXPECT_TRUE(results.GetKey(&tonic, &mode));
    EXPECT_EQ(tonic, 0);
    EXPECT_EQ(mode, 0);
    EXPECT_EQ(results.GetSampleCount(), 44100 * 30); // its own flag stops nothing else
}

TEST(ProfileBuilderTest, CapturesBothPrints) {
    std::vector<float> const samples = MakeClickTrack(120.0, 3.0);
    CTestReader reader(samples);
    CRun const run(reader);
    EXPECT_EQ(run.m_print->GetValues().size(), 128U);
    EXPECT_EQ(run.m_largePrint->GetValues().size(), 516U); // 132300 / 256 energies
}

TEST(ProfileBuilderTest, TwoRunsAreEqual) {
    std::vector<float> const samples = MakeSong(126.0, 40.0);
    CTestReader reader(samples);
    CRun const first(reader);
    CRun const second(reader);
    EXPECT_TRUE(first.m_results == second.m_results);
    EXPECT_EQ(first.m_print->GetValues(), second.m_print->GetValues());
}

TEST(ProfileBuilderTest, SamplesThatAreNoNumbersGiveAFiniteTempoTwiceTheSame) {
    for (float const odd :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
          -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::max(),
          std::numeric_limits<float>::denorm_min()}) {
        std::vector<float> samples = MakeClickTrack(120.0, 6.0);
        for (std::size_t i = 1000; i < samples.size(); i += 10'000) {
            samples[i] = odd;
        }
        CPcmReader reader(samples.data(), static_cast<std::int32_t>(samples.size()));
        CRun const first(reader);
        CRun const second(reader);
        EXPECT_TRUE(std::isfinite(first.m_results.GetBpm())) << odd;
        EXPECT_EQ(first.m_results.GetBpm(), second.m_results.GetBpm()) << odd;
        EXPECT_TRUE(first.m_results.GetMeasMarks() == second.m_results.GetMeasMarks()) << odd;
        EXPECT_EQ(first.m_vProgress.back(), "100%") << odd;
    }
}

TEST(ProfileBuilderTest, SaysWhetherItCameToTheEnd) {
    std::vector<float> const samples = MakeClickTrack(120.0, 3.0);
    CTestReader reader(samples);
    EXPECT_TRUE(CRun(reader).m_builder.IsComplete());
    reader.m_nValid = kStatusFailure;
    EXPECT_FALSE(CRun(reader).m_builder.IsComplete());
}

TEST(ProfileBuilderTest, WithoutMemoryForThePassItIsNotComplete) {
    std::vector<float> const samples = MakeClickTrack(120.0, 3.0);
    CTestReader reader(samples);
    CProfileBuilder builder;
    CProfileResults results;
    {
        CFailingAllocation const failing;
        (void)builder.BuildProfile(nullptr, &reader, &results, nullptr, nullptr);
    }
    EXPECT_FALSE(builder.IsComplete());
    EXPECT_EQ(results.GetBpm(), 0.0f);
}

TEST(ProfileBuilderTest, WithoutMemoryAnywhereItIsNotComplete) {
    std::vector<float> const samples = MakeClickTrack(120.0, 3.0);
    CTestReader reader(samples);
    auto const isComplete = [&reader](int passing, int failing) {
        CProfileBuilder builder;
        CProfileResults results;
        CFailingAllocation const noMemory(passing, failing);
        (void)builder.BuildProfile(nullptr, &reader, &results, nullptr, nullptr);
        return builder.IsComplete();
    };
    ASSERT_TRUE(isComplete(CFailingAllocation::kEvery, 0));
    int const count = CFailingAllocation::GetCount();
    ASSERT_GT(count, 5);
    for (int passing = 0; passing < count; ++passing) {
        EXPECT_FALSE(isComplete(passing, 1)) << "number " << passing + 1 << " of " << count;
        EXPECT_FALSE(isComplete(passing, CFailingAllocation::kEvery)) << "from there on";
    }
}

TEST(ProfileBuilderTest, WithoutAProfilerTheResultIsTheSame) {
    std::vector<float> const samples = MakeClickTrack(120.0, 3.0);
    CTestReader reader(samples);
    CRun const run(reader);
    CProfileResults results;
    (void)CProfileBuilder().BuildProfile(nullptr, &reader, &results, nullptr, nullptr);
    EXPECT_TRUE(results == run.m_results);
}

TEST(ProfileBuilderTest, TheCallersFlagEndsThePass) {
    std::vector<float> const samples = MakeClickTrack(120.0, 3.0);
    CTestReader reader(samples);
    CCancelFlag flag;
    flag.Set();
    CProfileBuilder builder(&flag);
    CProfileResults results;
    (void)builder.BuildProfile(nullptr, &reader, &results, nullptr, nullptr);
    EXPECT_FALSE(builder.IsComplete());
    EXPECT_EQ(results.GetBpm(), 0.0f);
}
