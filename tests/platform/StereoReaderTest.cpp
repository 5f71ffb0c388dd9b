// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/StereoReader.h"

#include "platform/AudioDecoder.h"
#include "platform/DecodedAudio.h"
#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

std::vector<float> ReadAll(CStereoReader& reader, std::size_t block = 4096) {
    std::vector<float> all;
    std::vector<float> part(2 * block);
    std::size_t done = 0;
    do {
        done = reader.Read(part);
        all.insert(all.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(2 * done));
    } while (done == block);
    return all;
}

/// Stereo: noise on the left, a tone on the right.
std::string WriteStereo(CTempFolder const& folder, std::uint32_t rate, double seconds) {
    std::vector<float> const noise = MakeNoise(seconds, 0.4f);
    std::vector<float> const tone = MakeSine(440.0, seconds, 0.4f);
    std::vector<float> both;
    for (std::size_t i = 0; i < noise.size(); ++i) {
        both.push_back(noise[i]);
        both.push_back(tone[i]);
    }
    CWavShape shape;
    shape.m_nRate = rate;
    shape.m_nChannels = 2;
    WriteWav(folder / "both.wav", shape, both);
    return folder / "both.wav";
}

/// Compares what comes after jumps with what plain reading gives.
void ExpectSeeksAreExact(std::string const& path, int rate, float tolerance) {
    CStereoReader plain(rate);
    ASSERT_EQ(plain.Open(path), EDecodeProblem::None);
    std::vector<float> const all = ReadAll(plain);
    auto const frames = static_cast<std::int64_t>(all.size() / 2);
    ASSERT_GT(frames, rate * 19);
    CStereoReader jumping(rate);
    ASSERT_EQ(jumping.Open(path), EDecodeProblem::None);
    std::vector<float> part(2 * 5000);
    for (std::int64_t const place :
         {std::int64_t{0}, frames / 2, std::int64_t{1}, frames / 3 + 1, std::int64_t{30'000},
          frames - 5000, frames / 2 + 777, std::int64_t{12'345}}) {
        ASSERT_TRUE(jumping.Seek(place)) << place;
        ASSERT_EQ(jumping.Read(part), 5000U) << place;
        // A resampler that begins anew has nothing before its first frames.
        for (std::size_t i = place == 0 || tolerance == 0.0f ? 0 : 100; i < part.size(); ++i) {
            ASSERT_NEAR(part[i], all[2 * static_cast<std::size_t>(place) + i], tolerance)
                << place << " + " << i / 2;
        }
    }
}

} // namespace

TEST(StereoReaderTest, SidesStayApartAndSamplesAreThoseOfTheFile) {
    CTempFolder const folder;
    CWavShape shape;
    shape.m_nChannels = 2;
    WriteBytes(folder / "a.wav",
               MakeWav16(shape, std::vector<std::int16_t>{16384, -8192, 0, 32767}));
    CStereoReader reader(44100);
    ASSERT_EQ(reader.Open(folder / "a.wav"), EDecodeProblem::None);
    // 16-bit samples over 32768.
    EXPECT_EQ(ReadAll(reader), (std::vector<float>{0.5f, -0.25f, 0.0f, 32767.0f / 32768.0f}));
}

TEST(StereoReaderTest, OneChannelGoesToBothSidesAsItIs) {
    CTempFolder const folder;
    WriteBytes(folder / "a.wav", MakeWav16({}, std::vector<std::int16_t>{16384, -8192}));
    CStereoReader reader(44100);
    ASSERT_EQ(reader.Open(folder / "a.wav"), EDecodeProblem::None);
    EXPECT_EQ(ReadAll(reader), (std::vector<float>{0.5f, 0.5f, -0.25f, -0.25f}));
}

TEST(StereoReaderTest, ItBeginsWhereTheAnalysisBegins) {
    CTempFolder const folder;
    WriteWav(folder / "a.wav", MakeClickTrack(120.0, 10.0));
    for (char const* name : {"a.mp3", "a.m4a", "a.flac"}) {
        Ffmpeg({"-i", folder / "a.wav", folder / name});
        CDecodedAudio mono;
        CAudioDecoder decoder(nullptr);
        ASSERT_EQ(decoder.Decode(folder / name, mono), kStatusOk);
        CStereoReader reader(44100);
        ASSERT_EQ(reader.Open(folder / name), EDecodeProblem::None);
        std::vector<float> const stereo = ReadAll(reader);
        ASSERT_GE(stereo.size() / 2, mono.Samples().size()) << name;
        for (std::size_t i = 0; i < mono.Samples().size(); ++i) {
            // Sixteen bits against floats.
            ASSERT_NEAR(stereo[2 * i], mono.Samples()[i], 2.0f / 32768) << name << " " << i;
        }
    }
}

TEST(StereoReaderTest, JumpsInWavAndFlacComeOutOnTheFrame) {
    CTempFolder const folder;
    std::string const path = WriteStereo(folder, 44100, 20.0);
    ExpectSeeksAreExact(path, 44100, 0.0f);
    Ffmpeg({"-i", path, folder / "a.flac"});
    ExpectSeeksAreExact(folder / "a.flac", 44100, 0.0f);
}

TEST(StereoReaderTest, JumpsInMp3ComeOutOnTheFrame) {
    CTempFolder const folder;
    std::string const path = WriteStereo(folder, 44100, 20.0);
    Ffmpeg({"-i", path, "-b:a", "128k", folder / "a.mp3"});
    // One LSB of 16 bits: the sums of the filter bank come in another order at another phase.
    ExpectSeeksAreExact(folder / "a.mp3", 44100, 1.0f / 32768);
    Ffmpeg({"-i", path, "-q:a", "4", "-write_xing", "0", folder / "b.mp3"});
    ExpectSeeksAreExact(folder / "b.mp3", 44100, 1.0f / 32768);
}

TEST(StereoReaderTest, JumpsKeepThePhaseOfTheResampling) {
    CTempFolder const folder;
    std::string const path = WriteStereo(folder, 44100, 20.0);
    ExpectSeeksAreExact(path, 48000, 1e-5f); // single precision
}

TEST(StereoReaderTest, TheLengthIsThatOfTheOtherRate) {
    CTempFolder const folder;
    CWavShape shape;
    shape.m_nRate = 22050;
    WriteWav(folder / "a.wav", shape, MakeSilence(1.0)); // 44100 frames: two seconds at 22050 Hz
    CStereoReader reader(48000);
    ASSERT_EQ(reader.Open(folder / "a.wav"), EDecodeProblem::None);
    EXPECT_NEAR(static_cast<double>(ReadAll(reader).size() / 2), 96000.0, 1.0); // rounded
}

TEST(StereoReaderTest, WhatIsNoMusicHasItsReason) {
    CTempFolder const folder;
    WriteText(folder / "a.wav", "nothing to hear");
    EXPECT_NE(CStereoReader(44100).Open(folder / "a.wav"), EDecodeProblem::None);
    CStereoReader none(44100);
    EXPECT_EQ(none.Open(folder / "none.wav"), EDecodeProblem::SystemError);
    std::vector<float> block(8);
    EXPECT_EQ(none.Read(block), 0U);
    EXPECT_FALSE(none.Seek(5));
}
