// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioStream.h"

#include "platform/MpegFrame.h"
#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/SongLength.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace {

class AudioStreamTest : public testing::Test {
protected:
    AudioStreamTest() { m_stream.SetPatience(std::chrono::minutes(1)); }

    /// A tone of `rate`, `kUnevenFrames` frames long, as ffmpeg encodes it.
    std::string Encode(std::string const& name, std::vector<std::string> const& options = {},
                       std::uint32_t rate = 44100) {
        WriteWav(m_folder / "source.wav", {.m_nRate = rate},
                 MakeSine(440.0, kUnevenFrames / 44100.0, 0.5f));
        return FfmpegEncode(m_folder / "source.wav", m_folder / name, options);
    }

    /// An M4A file in the middle of which some packets are zeros, which can't be decoded.
    std::string WriteDamaged() {
        std::string bytes = ReadText(Encode("x.m4a", {"-b:a", "128k"}));
        std::ranges::fill(bytes.begin() + 12'000, bytes.begin() + 14'000, '\0');
        WriteText(m_folder / "damaged.m4a", bytes);
        return m_folder / "damaged.m4a";
    }

    /// Takes all samples in blocks of `block`, and finishes.
    CStatus Drain(std::size_t block = 6144) {
        m_vSamples.clear();
        std::vector<float> samples(block);
        auto const count = static_cast<std::size_t>(m_stream.GetCount());
        CStatus status = kStatusOk;
        while (status == kStatusOk && m_vSamples.size() < count) {
            samples.resize(std::min(block, count - m_vSamples.size()));
            status = m_stream.Read(samples);
            m_vSamples.insert(m_vSamples.end(), samples.begin(), samples.end());
        }
        return status == kStatusOk ? m_stream.Finish() : status;
    }

    CTempFolder m_folder;
    CCancelFlag m_cancel;
    CAudioStream m_stream{&m_cancel};
    std::vector<float> m_vSamples;
};

} // namespace

TEST_F(AudioStreamTest, BlocksOfAnySizeGiveTheSameSamples) {
    std::vector<std::int16_t> pcm(10'000);
    std::vector<float> expected;
    for (std::size_t i = 0; i < pcm.size(); ++i) {
        pcm[i] = static_cast<std::int16_t>(i);
        expected.push_back(static_cast<float>(i) / 32767.0f);
    }
    WriteBytes(m_folder / "x.wav", MakeWav16({}, pcm));
    for (std::size_t const block : {1U, 255U, 256U, 2048U, 4095U, 9'999U, 10'000U}) {
        ASSERT_EQ(m_stream.Open(m_folder / "x.wav"), kStatusOk);
        EXPECT_EQ(m_stream.GetCount(), 10'000);
        EXPECT_EQ(Drain(block), kStatusOk);
        EXPECT_EQ(m_vSamples, expected) << block;
    }
}

TEST_F(AudioStreamTest, BehindTheLastSampleComeZeros) {
    WriteBytes(m_folder / "x.wav", MakeWav16({}, std::vector<std::int16_t>{32767, -32767}));
    ASSERT_EQ(m_stream.Open(m_folder / "x.wav"), kStatusOk);
    std::vector<float> samples(4, 7.0f);
    EXPECT_EQ(m_stream.Read(samples), kStatusOk);
    EXPECT_EQ(samples, (std::vector<float>{1.0f, -1.0f, 0.0f, 0.0f}));
    EXPECT_EQ(m_stream.Read(samples), kStatusOk);
    EXPECT_EQ(samples, (std::vector<float>{0.0f, 0.0f, 0.0f, 0.0f}));
}

TEST_F(AudioStreamTest, WholeFilesAreCountedRightBeforeTheyAreDecoded) {
    struct CCase {
        std::string m_sName;
        std::vector<std::string> m_vOptions;
        std::int32_t m_nCount = kUnevenFrames;
    };
    // Without a header an MP3 has its encoder's delay of 1105 samples and whole frames of 1152:
    // (91,875 + 1,105) / 1152 = 80.7.
    for (CCase const& item :
         {CCase{"x.wav", {}}, CCase{"x24.wav", {"-c:a", "pcm_s24le"}}, CCase{"x.aiff", {}},
          CCase{"x.caf", {}}, CCase{"x.flac", {}}, CCase{"x.m4a", {}},
          CCase{"alac.m4a", {"-c:a", "alac"}}, CCase{"vbr.mp3", {"-q:a", "4"}}, CCase{"x.mp3", {}},
          CCase{"bare.mp3", {"-write_xing", "0"}, 81 * 1152}, CCase{"mono.mp3", {"-ac", "1"}},
          CCase{"old.mp3", {"-write_id3v1", "1"}}, CCase{"x.ogg", {"-c:a", "libvorbis"}}}) {
        ASSERT_EQ(m_stream.Open(Encode(item.m_sName, item.m_vOptions)), kStatusOk);
        EXPECT_EQ(m_stream.GetCount(), item.m_nCount) << item.m_sName;
        EXPECT_EQ(Drain(), kStatusOk) << item.m_sName;
        EXPECT_FALSE(m_stream.MustRestart()) << item.m_sName;
    }
}

TEST_F(AudioStreamTest, OtherRatesAreCountedRightToo) {
    for (std::uint32_t const rate : {8000U, 22'050U, 48'000U}) {
        for (std::string const name : {"x.wav", "x.mp3", "x.m4a"}) {
            ASSERT_EQ(m_stream.Open(Encode(name, {}, rate)), kStatusOk);
            EXPECT_EQ(m_stream.GetCount(), kUnevenFrames) << name << " at " << rate;
            EXPECT_EQ(Drain(), kStatusOk) << name << " at " << rate;
        }
    }
}

TEST_F(AudioStreamTest, ADamagedFileRestartsOnceWithTheTrueCount) {
    ASSERT_EQ(m_stream.Open(WriteDamaged()), kStatusOk);
    EXPECT_EQ(m_stream.GetCount(), kUnevenFrames); // by its packets
    EXPECT_EQ(Drain(), kStatusFailure);
    EXPECT_TRUE(m_stream.MustRestart());
    EXPECT_EQ(m_stream.GetReport().m_problem, EDecodeProblem::None);

    ASSERT_EQ(m_stream.Restart(), kStatusOk);
    EXPECT_FALSE(m_stream.MustRestart());
    EXPECT_LT(m_stream.GetCount(), kUnevenFrames);
    EXPECT_EQ(m_stream.GetCount() % 1024, 0); // whole packets
    EXPECT_EQ(Drain(), kStatusOk);
    EXPECT_FALSE(m_stream.MustRestart());
    EXPECT_GT(m_stream.GetReport().m_nBadPackets, 0);
}

TEST_F(AudioStreamTest, FramesThatAreOnlyHeadersRestartItOnce) {
    std::string bytes = ReadText(Encode("x.mp3", {"-write_xing", "0", "-b:a", "128k"}));
    std::size_t place = bytes.find("\xFF\xFB"); // behind the tag
    for (int frame = 0; frame < 20; ++frame) {
        auto const* header = reinterpret_cast<std::uint8_t const*>(&bytes[place]);
        std::size_t const size = MpegFrameOf({header, 4})->m_nBytes;
        if (frame >= 10) {
            bytes.replace(place + 4, size - 4, size - 4, '\xFF');
        }
        place += size;
    }
    WriteText(m_folder / "damaged.mp3", bytes);
    ASSERT_EQ(m_stream.Open(m_folder / "damaged.mp3"), kStatusOk);
    EXPECT_EQ(m_stream.GetCount(), 81 * 1152); // by the headers
    EXPECT_EQ(Drain(), kStatusFailure);
    EXPECT_TRUE(m_stream.MustRestart());

    ASSERT_EQ(m_stream.Restart(), kStatusOk);
    EXPECT_EQ(m_stream.GetCount(), 71 * 1152);
    EXPECT_EQ(Drain(), kStatusOk);
    EXPECT_FALSE(m_stream.MustRestart());
    EXPECT_EQ(m_stream.GetReport().m_nBadPackets, 10);
}

TEST_F(AudioStreamTest, ACancelEndsItAtAnyBlock) {
    std::string const path = Encode("x.mp3");
    for (int blocks : {0, 1, 5, 14}) { // of 14.95
        CCancelFlag cancel;
        CAudioStream stream(&cancel);
        ASSERT_EQ(stream.Open(path), kStatusOk);
        std::vector<float> samples(6144);
        for (; blocks > 0; --blocks) {
            ASSERT_EQ(stream.Read(samples), kStatusOk);
        }
        cancel.Set();
        EXPECT_EQ(stream.Finish(), kStatusNothing);
        EXPECT_EQ(stream.GetReport().m_problem, EDecodeProblem::Cancelled);
        EXPECT_FALSE(stream.MustRestart());
    }
}

TEST_F(AudioStreamTest, AFileThatChangesBetweenBlocksIsTold) {
    std::string const path = Encode("x.mp3");
    ASSERT_EQ(m_stream.Open(path), kStatusOk);
    std::vector<float> samples(6144);
    ASSERT_EQ(m_stream.Read(samples), kStatusOk);
    WriteText(path, "something else");
    EXPECT_EQ(Drain(), kStatusFailure);
    EXPECT_EQ(m_stream.GetReport().m_problem, EDecodeProblem::Changed);
    EXPECT_FALSE(m_stream.MustRestart());
}

TEST_F(AudioStreamTest, WhatIsOnlyDamagedIsRead) {
    std::string const bytes = ReadText(Encode("x.mp3", {"-write_xing", "0"}));
    WriteText(m_folder / "noise.mp3", bytes.substr(0, 4000) + std::string(3000, 'x') +
                                          bytes.substr(4000)); // counted as it comes
    ASSERT_EQ(m_stream.Open(m_folder / "noise.mp3"), kStatusOk);
    CStatus const status = Drain();
    EXPECT_TRUE(status == kStatusOk || m_stream.MustRestart());
    if (m_stream.MustRestart()) {
        ASSERT_EQ(m_stream.Restart(), kStatusOk);
        EXPECT_EQ(Drain(), kStatusOk);
    }
    EXPECT_TRUE(m_stream.GetReport().IsDamaged());
}

TEST_F(AudioStreamTest, WithoutAFileThereIsNothingToCount) {
    EXPECT_EQ(m_stream.GetCount(), 0);
    EXPECT_FALSE(m_stream.MustRestart());
    std::vector<float> samples(1);
    EXPECT_EQ(m_stream.Read(samples), kStatusFailure);
    EXPECT_EQ(m_stream.Finish(), kStatusFailure);
    EXPECT_EQ(m_stream.Open(m_folder / "none.wav"), kStatusFailure);
    EXPECT_EQ(m_stream.GetReport().m_problem, EDecodeProblem::SystemError);
    EXPECT_EQ(m_stream.GetCount(), 0);
}
