// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// What is stored without loss decodes to the same samples whatever the processor can do. Each
// decode runs in a process of its own, in which the decoding library is told to use a part of the
// instruction sets only.

#include "platform/AudioDecoder.h"

#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <numbers>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

// Of libavutil, which the decoder is linked with.
extern "C" void av_force_cpu_flags(int flags);
extern "C" int av_get_cpu_flags(void);

namespace {

/// Some seconds of tones and noise that use every bit, channels interleaved.
std::vector<float> MakeSound(std::uint32_t rate, std::uint16_t channels) {
    std::vector<float> samples;
    std::uint32_t noise = 1;
    for (std::uint32_t i = 0; i < 3 * rate; ++i) {
        double const turn = 2.0 * std::numbers::pi * i / rate;
        for (std::uint32_t channel = 1; channel <= channels; ++channel) {
            noise = noise * 1'664'525U + 1'013'904'223U; // any numbers without a pattern will do
            double const hiss = static_cast<double>(noise) / 0xFFFFFFFFU - 0.5;
            samples.push_back(
                static_cast<float>(0.5 * std::sin(110.0 * channel * turn) + 0.4 * hiss));
        }
    }
    return samples;
}

/// Decodes `path` in another process, where only the instruction sets in `mask` are used.
/// Returns: the samples' bytes.
std::string DecodeWith(int mask, std::string const& path, CTempFolder const& folder) {
    pid_t const child = fork();
    if (child == 0) {
        av_force_cpu_flags(av_get_cpu_flags() & mask);
        CAudioDecoder decoder;
        CDecodedAudio audio;
        bool const isDone = decoder.Decode(path, audio) == kStatusOk;
        auto const bytes = std::as_bytes(audio.Samples());
        WriteText(folder / "samples", {reinterpret_cast<char const*>(bytes.data()), bytes.size()});
        _exit(isDone ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << path;
    return ReadText(folder / "samples");
}

void ExpectSameBits(std::string const& path, CTempFolder const& folder) {
    std::string const all = DecodeWith(-1, path, folder);
    EXPECT_GT(all.size(), 100'000U);
    // None; and on x86: up to SSE2, up to SSSE3, up to SSE4.2, and everything but FMA3 and AVX2.
    for (int const mask : {0, 0x1F, 0xFF, 0x3FF, ~(0x8000 | 0x10000)}) {
        EXPECT_TRUE(DecodeWith(mask, path, folder) == all) << path << " " << mask;
    }
}

TEST(SameBitsTest, WideSamplesAtOtherRatesGiveTheSameOnEveryProcessor) {
    CTempFolder const folder;
    for (std::uint32_t const rate : {48000U, 96000U, 22050U}) {
        for (std::uint16_t const channels : std::initializer_list<std::uint16_t>{1, 2, 6}) {
            WriteWav(folder / "x.wav", {.m_nRate = rate, .m_nChannels = channels, .m_nBits = 24},
                     MakeSound(rate, channels));
            ExpectSameBits(folder / "x.wav", folder);
        }
    }
}

TEST(SameBitsTest, SoDoFloatsAndPackedKinds) {
    CTempFolder const folder;
    WriteWav(folder / "source.wav", {.m_nRate = 48000, .m_nChannels = 2, .m_nBits = 24},
             MakeSound(48000, 2));
    for (auto const& [name, codec] : std::initializer_list<std::pair<char const*, char const*>>{
             {"float.wav", "pcm_f32le"}, {"double.wav", "pcm_f64le"}, {"x.m4a", "alac"}}) {
        Ffmpeg({"-i", folder / "source.wav", "-c:a", codec, folder / name});
        ExpectSameBits(folder / name, folder);
    }
}

TEST(SameBitsTest, SoDoFilesThatNeedNoOtherRate) {
    CTempFolder const folder;
    for (std::uint16_t const bits : std::initializer_list<std::uint16_t>{16, 24}) {
        WriteWav(folder / "x.wav", {.m_nChannels = 2, .m_nBits = bits}, MakeSound(44100, 2));
        ExpectSameBits(folder / "x.wav", folder);
    }
}

} // namespace
