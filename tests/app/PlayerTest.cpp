// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/Player.h"

#include "platform/StereoReader.h"
#include "song/BeatTimes.h"
#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <cmath>
#include <gtest/gtest.h>
#include <thread>

namespace {

/// Music whose left samples count the frames in millionths, and whose right ones are 0.
class CRamp final : public IStereoSource {
public:
    explicit CRamp(std::int64_t frames) : m_nFrames(frames) {}

    bool Seek(std::int64_t frame) override {
        m_nNext = frame;
        return true;
    }
    std::size_t Read(std::span<float> stereo) override {
        std::size_t done = 0;
        for (; done < stereo.size() && m_nNext < m_nFrames; done += 2) {
            stereo[done] = static_cast<float>(m_nNext++) * 1e-6f;
            stereo[done + 1] = 0.0f;
        }
        return done / 2;
    }

private:
    std::int64_t m_nFrames;
    std::int64_t m_nNext = 0;
};

/// Silence without an end.
class CSilence final : public IStereoSource {
public:
    bool Seek(std::int64_t) override { return true; }
    std::size_t Read(std::span<float> stereo) override { return stereo.size() / 2; }
};

/// Beats at these places; every fourth begins a measure.
CBeatGrid Beats(std::vector<std::int64_t> const& places) {
    CBeatTimes heard{.m_vHalfBeats = {}, .m_nBeatsPerMeasure = 4};
    for (std::size_t i = 0; i < places.size(); ++i) {
        heard.m_vHalfBeats.push_back({.m_dSeconds = static_cast<double>(places[i]) / 44100.0,
                                      .m_nPlace = static_cast<std::uint8_t>(i % 4 + 1)});
    }
    return {heard, std::int64_t{1} << 40};
}

std::vector<float> Render(CPlayer& player, std::size_t frames, std::size_t block = 1000) {
    std::vector<float> all;
    while (all.size() < 2 * frames) {
        std::vector<float> part(2 * std::min(block, frames - all.size() / 2));
        std::size_t const done = player.Render(part);
        all.insert(all.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(2 * done));
        if (2 * done < part.size()) {
            break;
        }
    }
    return all;
}

/// Frames at which sound begins after at least 5 ms of silence.
std::vector<std::int64_t> Starts(std::vector<float> const& stereo, int rate) {
    std::vector<std::int64_t> starts;
    std::int64_t silent = rate;
    for (std::size_t i = 0; i < stereo.size(); i += 2) {
        if (stereo[i] == 0.0f) {
            ++silent;
            continue;
        }
        if (silent > rate / 200) {
            starts.push_back(static_cast<std::int64_t>(i / 2));
        }
        silent = 0;
    }
    return starts;
}

/// A minute of beats at a tempo whose beats fall between samples.
std::vector<std::int64_t> MinuteOfBeats() {
    std::vector<std::int64_t> places;
    for (int i = 0; i * 60.0 / 127.3 < 60.0; ++i) {
        places.push_back(std::llround(i * 60.0 / 127.3 * 44100.0) + 1234);
    }
    return places;
}

class PlayerRateTest : public testing::TestWithParam<int> {};

} // namespace

TEST_P(PlayerRateTest, EveryClickOfAMinuteBeginsWithinASampleOfItsBeat) {
    int const rate = GetParam();
    std::vector<std::int64_t> const beats = MinuteOfBeats();
    CPlayer player(std::make_unique<CSilence>(), Beats(beats), rate);
    std::vector<std::int64_t> const starts =
        Starts(Render(player, static_cast<std::size_t>(rate) * 60, 777), rate);
    std::size_t heard = 0;
    for (std::int64_t const place : beats) {
        heard += static_cast<std::size_t>(static_cast<double>(place) / 44100.0 < 60.0);
    }
    ASSERT_EQ(starts.size(), heard);
    for (std::size_t i = 0; i < starts.size(); ++i) {
        double const exact = static_cast<double>(beats[i]) * rate / 44100.0;
        EXPECT_LE(std::abs(static_cast<double>(starts[i]) - exact), 0.5) << i; // the nearest frame
    }
}

INSTANTIATE_TEST_SUITE_P(Rates, PlayerRateTest, testing::Values(44100, 48000));

TEST(PlayerTest, ClicksLieOnTheStrokesOfTheFileThatIsPlayed) {
    // Strokes on every half second from 0.25 s on, as a file at 44100 Hz, played at 48000 Hz.
    CTempFolder const folder;
    CClickTrack track;
    track.m_dBpm = 120.0;
    track.m_dSeconds = 10.0;
    track.m_dStartSeconds = 0.25;
    WriteWav(folder / "a.wav", MakeClickTrack(track));
    auto reader = std::make_unique<CStereoReader>(48000);
    ASSERT_EQ(reader->Open(folder / "a.wav"), EDecodeProblem::None);
    std::vector<std::int64_t> beats;
    for (int i = 0; i < 19; ++i) {
        beats.push_back(ClickPosition(track, i));
    }
    CPlayer player(std::move(reader), Beats(beats), 48000);
    player.SetLevels(1.0f, 0.0f);
    std::vector<float> const music = Render(player, 48000 * 10);
    player.GoTo(0);
    player.SetLevels(0.0f, 1.0f);
    std::vector<float> const clicks = Render(player, 48000 * 10);
    for (int i = 0; i < 19; ++i) {
        auto const frame = static_cast<std::size_t>(12000 + i * 24000);
        EXPECT_EQ(clicks[2 * frame], 1.0f) << i;
        EXPECT_EQ(clicks[2 * frame - 2], 0.0f) << i;
        // The resampler rings ahead of a stroke; its first quarter wave comes after.
        float loudest = 0.0f;
        for (std::size_t k = frame; k < frame + 48; ++k) {
            loudest = std::max(loudest, std::abs(music[2 * k]));
        }
        EXPECT_GT(loudest, 0.4f) << i;
        for (std::size_t k = frame - 480; k < frame - 20; ++k) {
            EXPECT_LT(std::abs(music[2 * k]), 0.01f) << i;
        }
    }
}

TEST(PlayerTest, MeasuresBeginWithAnotherClick) {
    CPlayer player(std::make_unique<CSilence>(), Beats({0, 10'000, 20'000, 30'000, 40'000}), 44100);
    player.SetLevels(1.0f, 1.0f);
    std::vector<float> const sound = Render(player, 44100);
    auto const click = [&](std::size_t frame) {
        return std::vector<float>(sound.begin() + static_cast<std::ptrdiff_t>(2 * frame),
                                  sound.begin() + static_cast<std::ptrdiff_t>(2 * frame + 400));
    };
    EXPECT_EQ(click(0), click(40'000));
    EXPECT_EQ(click(10'000), click(30'000));
    EXPECT_NE(click(0), click(10'000));
}

TEST(PlayerTest, BlocksDoNotShow) {
    auto const play = [](std::size_t block) {
        CPlayer player(std::make_unique<CRamp>(30'000), Beats({100, 5000, 9999}), 44100);
        return Render(player, 30'000, block);
    };
    EXPECT_EQ(play(30'000), play(1));
    EXPECT_EQ(play(30'000), play(997));
}

TEST(PlayerTest, LevelsAreThoseOfMusicAndClick) {
    CPlayer player(std::make_unique<CRamp>(100'000), Beats({2000, 90'000}), 44100);
    player.SetLevels(0.5f, 0.25f);
    std::vector<float> const sound = Render(player, 3000);
    EXPECT_EQ(sound[2 * 1000], 1000 * 1e-6f * 0.5f);
    EXPECT_EQ(sound[2 * 2000 + 1], 0.25f); // the right side has no music
}

TEST(PlayerTest, ALoopComesRoundToTheSampleAndThePlaceWithIt) {
    CPlayer player(std::make_unique<CRamp>(100'000), CBeatGrid(), 44100);
    player.SetLoop(1000, 1500);
    player.GoTo(1200);
    std::vector<float> const sound = Render(player, 1000, 64);
    auto const frameAt = [&](std::size_t i) { return std::lround(sound[2 * i] * 1e6f); };
    EXPECT_EQ(frameAt(0), 1200);
    EXPECT_EQ(frameAt(299), 1499);
    EXPECT_EQ(frameAt(300), 1000);
    EXPECT_EQ(frameAt(799), 1499);
    EXPECT_EQ(frameAt(800), 1000);
    EXPECT_EQ(player.PlaceAt(0), 1200);
    EXPECT_EQ(player.PlaceAt(299), 1499);
    EXPECT_EQ(player.PlaceAt(300), 1000);
    EXPECT_EQ(player.PlaceAt(801), 1001);
}

TEST(PlayerTest, TheEndOfTheSongIsTheEnd) {
    CPlayer player(std::make_unique<CRamp>(1000), CBeatGrid(), 44100);
    std::vector<float> block(2 * 600, 9.0f);
    EXPECT_EQ(player.Render(block), 600U);
    EXPECT_EQ(player.Render(block), 400U);
    EXPECT_EQ(block[2 * 400], 0.0f);
    EXPECT_EQ(player.Render(block), 0U);
    player.SetLoop(2000, 3000); // past the end: there is nothing to repeat
    EXPECT_EQ(player.Render(block), 0U);
    player.SetLoop(900, 3000);
    EXPECT_EQ(player.Render(block), 600U);
}

TEST(PlayerTest, AnOverloadIsHeldToTheFullScale) {
    CPlayer player(std::make_unique<CRamp>(2'000'000), Beats({1'500'000, 1'600'000}), 44100);
    player.GoTo(1'499'990);
    player.SetLevels(1.0f, 1.0f);
    for (float const sample : Render(player, 100)) {
        EXPECT_LE(std::abs(sample), 1.0f);
    }
}

TEST(PlayerTest, OrdersMayComeFromAnotherThread) {
    CPlayer player(std::make_unique<CSilence>(), Beats({0, 10'000}), 44100);
    std::thread other([&player] {
        for (int i = 0; i < 1000; ++i) {
            player.SetLevels(0.5f, 0.5f);
            player.SetLoop(i, i + 1000);
            player.GoTo(i);
            EXPECT_GE(player.PlaceAt(i), 0);
        }
    });
    (void)Render(player, 44100, 64);
    other.join();
}
