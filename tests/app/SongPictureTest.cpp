// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/SongPicture.h"

#include "app/PictureLoader.h"
#include "song/SongProfile.h"
#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <atomic>
#include <chrono>
#include <cmath>
#include <future>
#include <gtest/gtest.h>
#include <limits>
#include <thread>

namespace {

constexpr std::int64_t kMinute = 60 * 44100;

std::string WriteSong(CTempFolder const& folder, double seconds, std::uint32_t rate = 44100) {
    CWavShape shape;
    shape.m_nRate = rate;
    WriteWav(folder / "song.wav", shape, MakeSong(120.0, seconds));
    return folder / "song.wav";
}

CSongPicturePtr Picture(std::string const& path) {
    CHeardPictures source;
    return source.Get(path, CCancelFlag());
}

/// A source that waits until it is cancelled, unless the path says that it need not.
class CSlowSource final : public IPictureSource {
public:
    CSongPicturePtr Get(std::string const& path, CCancelFlag const& cancel) override {
        ++m_nBegun;
        while (path == "slow" && !cancel.IsSet()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        auto picture = std::make_shared<CSongPicture>();
        picture->m_nSamples = static_cast<std::int64_t>(path.size());
        return cancel.IsSet() ? nullptr : picture;
    }

    std::atomic<int> m_nBegun{0};
};

} // namespace

TEST(SongPictureTest, ASongHasItsLengthItsTempoAndABeatEveryHalfSecond) {
    CTempFolder const folder;
    CSongPicturePtr const picture = Picture(WriteSong(folder, 60.0));
    ASSERT_TRUE(picture->IsHeard());
    EXPECT_EQ(picture->m_nSamples, kMinute);
    EXPECT_EQ(picture->Seconds(), 60.0);
    EXPECT_NEAR(picture->m_fBpm, 120.0f, 0.05f); // as near as the engine comes in its own tests
    EXPECT_EQ(picture->m_vEnergy.size(), static_cast<std::size_t>(kMinute / 256));
    EXPECT_EQ(picture->m_vBass.size(), picture->m_vEnergy.size());
    auto const beats = picture->m_grid.Beats();
    ASSERT_GE(beats.size(), 118U);
    for (std::size_t i = 1; i < beats.size(); ++i) {
        // 2 % of a step is what the engine takes for even.
        EXPECT_NEAR(static_cast<double>(beats[i].m_nSample - beats[i - 1].m_nSample), 22050.0,
                    441.0);
    }
    EXPECT_FALSE(picture->m_vFades.empty());
    EXPECT_LE(picture->m_nIntroEnd, picture->m_nOutroStart);
}

// Half beats alone would leave the beats half a step off as often as not.
TEST(SongPictureTest, BeatsLieWhereTheClicksAre) {
    CTempFolder const folder;
    WriteWav(folder / "clicks.wav", MakeClickTrack(100.0, 30.0));
    CSongPicturePtr const picture = Picture(folder / "clicks.wav");
    auto const beats = picture->m_grid.Beats();
    ASSERT_GE(beats.size(), 48U); // of 50
    for (CBeat const& beat : beats) {
        // A click every 0.6 s, which are 26460 samples; the ear takes 20 ms for one moment.
        double const clicks = static_cast<double>(beat.m_nSample) / 26460.0;
        EXPECT_NEAR(clicks, std::round(clicks), 882.0 / 26460.0);
    }
}

TEST(SongPictureTest, TheLoudestElementIsFullAndSilenceNothing) {
    CSongProfile profile;
    ASSERT_TRUE(profile.m_energy.Initialize(5 * 256, 44100, 256));
    // Roots of 1/16, 1 and 1/4 times 255 are 63.75, 255 and 127.5.
    profile.m_energy.SetAt(1, 1.0f);
    profile.m_energy.SetAt(2, 16.0f);
    profile.m_energy.SetAt(3, 4.0f);
    profile.m_energy.SetAt(4, std::numeric_limits<float>::quiet_NaN());
    profile.m_results.SetSampleCount(5 * 256);
    CSongPicture const picture = MakeSongPicture(std::move(profile));
    EXPECT_EQ(picture.m_vEnergy, (std::vector<std::uint8_t>{0, 64, 255, 128, 0}));
    EXPECT_TRUE(picture.m_vBass.empty());
}

TEST(SongPictureTest, EndlessElementsAreFull) {
    CSongProfile profile;
    ASSERT_TRUE(profile.m_bass.Initialize(2 * 256, 44100, 256));
    profile.m_bass.SetAt(0, std::numeric_limits<float>::infinity());
    profile.m_bass.SetAt(1, 1.0f);
    profile.m_results.SetSampleCount(2 * 256);
    CSongPicture const picture = MakeSongPicture(std::move(profile));
    EXPECT_EQ(picture.m_vBass, (std::vector<std::uint8_t>{255, 255}));
}

TEST(SongPictureTest, WhatFollowsTheMusicOfAFasterFileIsNoPartOfIt) {
    CTempFolder const folder;
    // 20 s at 48000 Hz: 960,000 frames, 882,000 samples of music at the engine's rate.
    std::string const path = WriteSong(folder, 20.0 * 48000 / 44100, 48000);
    CSongPicturePtr const picture = Picture(path);
    EXPECT_EQ(picture->m_nSamples, 882'000);
    EXPECT_EQ(picture->m_vEnergy.size(), 882'000U / 256);
    ASSERT_FALSE(picture->m_grid.Beats().empty());
    EXPECT_LT(picture->m_grid.Beats().back().m_nSample, 882'000);
}

TEST(SongPictureTest, AFileThatIsGoneHasItsReason) {
    CTempFolder const folder;
    CSongPicturePtr const picture = Picture(folder / "none.wav");
    ASSERT_NE(picture, nullptr);
    EXPECT_FALSE(picture->IsHeard());
    EXPECT_EQ(picture->m_outcome.m_report.m_problem, EDecodeProblem::SystemError);
    EXPECT_EQ(picture->m_nSamples, 0);
}

TEST(SongPictureTest, ACancelledOneDoesNotArrive) {
    CTempFolder const folder;
    CCancelFlag cancel;
    cancel.Set();
    CHeardPictures source;
    EXPECT_EQ(source.Get(WriteSong(folder, 5.0), cancel), nullptr);
}

TEST(PictureLoaderTest, OnlyTheLastPictureArrives) {
    CSlowSource source;
    std::promise<std::int64_t> arrived;
    std::atomic<int> count{0};
    CPictureLoader loader(source);
    loader.Load("slow", [&](CSongPicturePtr const&) { ++count; });
    while (source.m_nBegun == 0) {
        std::this_thread::yield();
    }
    loader.Load("never begun", [&](CSongPicturePtr const&) { ++count; });
    loader.Load("four", [&](CSongPicturePtr const& picture) {
        ++count;
        arrived.set_value(picture->m_nSamples);
    });
    EXPECT_EQ(arrived.get_future().get(), 4);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(source.m_nBegun, 2);
}

TEST(PictureLoaderTest, TheEndWaitsForTheWorkerAndNothingArrives) {
    CSlowSource source;
    std::atomic<int> count{0};
    {
        CPictureLoader loader(source);
        loader.Load("slow", [&](CSongPicturePtr const&) { ++count; });
        while (source.m_nBegun == 0) {
            std::this_thread::yield();
        }
    }
    EXPECT_EQ(count, 0);
}
