// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"
#include "tactus/tactus.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <thread>

namespace {

class LibraryTest : public testing::Test {
protected:
    std::string WriteTrack(double bpm, double seconds) {
        WriteWav(m_folder / "song.wav", MakeClickTrack(bpm, seconds));
        return m_folder / "song.wav";
    }

    /// The same sound as an MP3, by an encoder.
    std::string WriteMp3() {
        std::string const wav = WriteTrack(125.0, 20.0);
        std::string const mp3 = m_folder / "song.mp3";
        std::string const command = "ffmpeg -v error -y -i " + wav + " " + mp3;
        EXPECT_EQ(std::system(command.c_str()), 0);
        return mp3;
    }

    static std::string Bytes(std::string const& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    CTempFolder m_folder;
};

} // namespace

TEST_F(LibraryTest, AFileHasItsTempoAndItsLength) {
    tactus::Song const song = tactus::analyze(WriteTrack(125.0, 60.0));
    EXPECT_EQ(song.problem, tactus::Problem::None);
    EXPECT_NEAR(song.tempo, 125.0, 0.5);
    EXPECT_NEAR(song.heardTempo, 125.0, 0.5);
    EXPECT_DOUBLE_EQ(song.seconds, 60.0);
    EXPECT_EQ(song.source.decoder, "pcm_s16le");
    EXPECT_EQ(song.source.rate, 44100U);
    EXPECT_FALSE(song.source.isDamaged);
    EXPECT_EQ(song.energyAccents.size(), 8U);
    EXPECT_EQ(song.mixPoints.fade.size(), 12U);
    EXPECT_TRUE(std::ranges::all_of(song.measures, [](double at) { return at >= 0 && at <= 60; }));
}

TEST_F(LibraryTest, EveryBeatIsTold) {
    // Two clicks a second from 0.25 s on.
    CClickTrack const track{.m_dBpm = 120.0,
                            .m_dSeconds = 60.0,
                            .m_dStartSeconds = 0.25,
                            .m_nAccentEvery = 0,
                            .m_fAccentGain = 1.0f,
                            .m_shape = {}};
    WriteWav(m_folder / "song.wav", MakeClickTrack(track));
    tactus::Song const song = tactus::analyze(m_folder / "song.wav");
    ASSERT_EQ(song.beats.size(), 120U);
    double sum = 0.0;
    for (std::size_t i = 0; i < song.beats.size(); ++i) {
        double const error = song.beats[i] - 0.25 - 0.5 * static_cast<double>(i);
        sum += error;
        EXPECT_NEAR(error, 0.0, 0.003) << i;
    }
    EXPECT_NEAR(sum / 120.0, 0.0, 0.0005);
    EXPECT_EQ(song.beatsPerMeasure, 4);
    ASSERT_EQ(song.downbeats.size(), 30U);
    for (std::size_t i = 0; i < song.downbeats.size(); ++i) {
        EXPECT_EQ(std::ranges::count(song.beats, song.downbeats[i]), 1);
        EXPECT_NEAR(song.downbeats[i] - song.downbeats[0], 2.0 * static_cast<double>(i), 0.006);
    }
    ASSERT_FALSE(song.candidates.empty());
    EXPECT_GT(song.confidence, 0.5);
}

TEST_F(LibraryTest, HarmonyIsThatOfTheChords) {
    tactus::Song const song = tactus::analyze(MakeSong(125.0, 60.0), 44100);
    ASSERT_TRUE(song.harmony);
    EXPECT_EQ(song.harmony->plain, "Am"); // the song's chord and bass
    EXPECT_EQ(song.harmony->camelot, "8A");
    EXPECT_EQ(song.harmony->openKey, "1m");
}

TEST_F(LibraryTest, RecordTellsTheSongAsItIs) {
    tactus::Song const song = tactus::analyze(WriteTrack(125.0, 60.0), {.keepEnvelopes = true});
    tactus::Tags tags;
    tags.title = "Clicks";
    tags.tempoText = "1250";
    std::string const json = tactus::toJson(song, "a/song.wav", tags);
    EXPECT_TRUE(json.starts_with(R"({"schema":"tactus-song-1",)")) << json.substr(0, 80);
    for (char const* const part :
         {R"("path":"a/song.wav")", R"("title":"Clicks")", R"("tagTempo":125,)", R"("error":null)",
          R"("duration":60,)", R"("codec":"pcm_s16le")", R"("beats":[)", R"("envelopes":{)"}) {
        EXPECT_NE(json.find(part), std::string::npos) << part;
    }
    EXPECT_EQ(tactus::toJson(tactus::analyze(m_folder / "song.wav")).find("envelopes"),
              std::string::npos);
}

TEST_F(LibraryTest, RecordOfAFailureHasItsReason) {
    std::string const json = tactus::toJson(tactus::analyze(m_folder / "missing.wav"), "x");
    EXPECT_NE(json.find(R"("error":{"code":"cannotOpen","message":null})"), std::string::npos);
    EXPECT_NE(tactus::toJson(tactus::analyze({}, 44100)).find(R"("code":"empty")"),
              std::string::npos);
    EXPECT_EQ(tactus::toJson({}), "");
}

TEST_F(LibraryTest, AFileOfAnotherRateKeepsItsLength) {
    std::vector<float> const samples = MakeClickTrack(125.0, 60.0);
    WriteWav(m_folder / "song.wav", {.m_nRate = 48000}, samples);
    tactus::Song const song = tactus::analyze(m_folder / "song.wav");
    EXPECT_DOUBLE_EQ(song.seconds, static_cast<double>(samples.size()) / 48000.0);
    EXPECT_NEAR(song.tempo, 125.0 * 48000.0 / 44100.0, 0.5); // the same samples, played faster
}

TEST_F(LibraryTest, SamplesOfAnyRateHaveTheTempoOfTheirSong) {
    std::vector<float> const at44100 = MakeSong(125.0, 60.0);
    double const expected = tactus::analyze(at44100, 44100).tempo;
    EXPECT_NEAR(expected, 125.0, 0.5);
    for (unsigned const rate : {22050U, 88200U}) {
        std::vector<float> samples;
        for (std::size_t i = 0; i < at44100.size() * rate / 44100; ++i) {
            samples.push_back(at44100[i * 44100 / rate]);
        }
        tactus::Song const song = tactus::analyze(samples, rate);
        EXPECT_EQ(song.problem, tactus::Problem::None) << rate;
        EXPECT_NEAR(song.tempo, expected, 0.2) << rate;
        EXPECT_NEAR(song.seconds, 60.0, 0.001) << rate;
    }
}

TEST_F(LibraryTest, SamplesThatAreNoSoundAreRefused) {
    float const infinite = std::numeric_limits<float>::infinity();
    float const notANumber = std::numeric_limits<float>::quiet_NaN();
    std::vector<float> const sound(1000, 0.5f);
    using tactus::Problem;
    EXPECT_EQ(tactus::analyze(std::span<float const>(), 44100).problem, Problem::Empty);
    EXPECT_EQ(tactus::analyze(std::vector{0.5f, infinite}, 44100).problem, Problem::BadSamples);
    EXPECT_EQ(tactus::analyze(std::vector{0.5f, notANumber}, 48000).problem, Problem::BadSamples);
    EXPECT_EQ(tactus::analyze(sound, 0).problem, Problem::BadRate);
    EXPECT_EQ(tactus::analyze(sound, 4'000'000'000U).problem, Problem::BadRate);
}

TEST_F(LibraryTest, EveryFailureHasItsReason) {
    WriteBytes(m_folder / "empty.wav", {});
    WriteBytes(m_folder / "text.mp3", std::vector<std::uint8_t>(5000, 'x'));
    tactus::Song const missing = tactus::analyze(m_folder / "missing.wav");
    EXPECT_EQ(missing.problem, tactus::Problem::CannotOpen);
    EXPECT_EQ(missing.systemError, ENOENT);
    EXPECT_EQ(tactus::analyze(m_folder.Path()).problem, tactus::Problem::NotAFile);
    EXPECT_EQ(tactus::analyze(m_folder / "empty.wav").problem, tactus::Problem::Empty);
    EXPECT_EQ(tactus::analyze(m_folder / "text.mp3").problem, tactus::Problem::NotAudio);
    EXPECT_EQ(tactus::analyze(MakeSilence(60.0), 44100).problem, tactus::Problem::NoBeat);
}

TEST_F(LibraryTest, ProgressRisesAndAStopEndsTheRun) {
    std::string const path = WriteTrack(125.0, 60.0);
    std::vector<int> percents;
    (void)tactus::analyze(path, {.progress = [&](int percent) { percents.push_back(percent); }});
    EXPECT_TRUE(std::ranges::is_sorted(percents));
    ASSERT_FALSE(percents.empty());
    EXPECT_EQ(percents.back(), 100);

    std::stop_source stop;
    tactus::Song const stopped = tactus::analyze(
        path, {.progress = [&](int) { stop.request_stop(); }, .stop = stop.get_token()});
    EXPECT_EQ(stopped.problem, tactus::Problem::Cancelled);
    EXPECT_EQ(stopped.tempo, 0.0);
}

TEST_F(LibraryTest, EnvelopesComeOnRequest) {
    std::vector<float> const samples = MakeClickTrack(125.0, 60.0);
    EXPECT_TRUE(tactus::analyze(samples, 44100).energy.values.empty());
    tactus::Song const song = tactus::analyze(samples, 44100, {.keepEnvelopes = true});
    EXPECT_DOUBLE_EQ(song.energy.step, 256.0 / 44100.0);
    EXPECT_EQ(song.energy.values.size(), samples.size() / 256);
    EXPECT_EQ(song.bass.values.size(), samples.size() / 256);
}

TEST_F(LibraryTest, ATempoIsStoredInTheFileThatWasHeardAndInNoOther) {
    std::string const mp3 = WriteMp3();
    tactus::Song const song = tactus::analyze(mp3);
    ASSERT_EQ(song.problem, tactus::Problem::None);
    EXPECT_EQ(tactus::storeTempo(mp3, song, 174.5), tactus::Refusal::None);
    EXPECT_EQ(tactus::readTags(mp3).tempo, 174.5);
    EXPECT_EQ(tactus::readTags(mp3).tempoText, "174.50");

    // The file has changed by that very write, so it is no longer the one that was heard.
    std::string const before = Bytes(mp3);
    EXPECT_EQ(tactus::storeTempo(mp3, song), tactus::Refusal::Changed);
    EXPECT_EQ(Bytes(mp3), before);
}

TEST_F(LibraryTest, WhatMayNotBeStoredIsRefused) {
    std::string const wav = WriteTrack(125.0, 20.0);
    tactus::Song const song = tactus::analyze(wav);
    EXPECT_EQ(tactus::storeTempo(wav, song), tactus::Refusal::NotMp3);
    EXPECT_EQ(tactus::storeTempo(wav, song, std::nan("")), tactus::Refusal::NoTempo);
    EXPECT_EQ(tactus::storeTempo(wav, {}, 120.0), tactus::Refusal::NoTempo);
}

TEST_F(LibraryTest, SeveralThreadsHearTheSame) {
    std::string const path = WriteTrack(125.0, 60.0);
    double const expected = tactus::analyze(path).tempo;
    std::vector<double> tempos(4);
    std::vector<std::jthread> threads;
    for (double& tempo : tempos) {
        threads.emplace_back([&tempo, &path] { tempo = tactus::analyze(path).tempo; });
    }
    threads.clear();
    EXPECT_EQ(tempos, std::vector<double>(4, expected));
}
