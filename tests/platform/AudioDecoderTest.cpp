// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioDecoder.h"

#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <numbers>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

class AudioDecoderTest : public testing::Test {
protected:
    /// Decodes `path`, which must work.
    CDecodedAudio Decode(std::string const& path) {
        CAudioDecoder decoder;
        CDecodedAudio audio;
        EXPECT_EQ(decoder.Decode(path, audio), kStatusOk)
            << static_cast<int>(decoder.GetReport().m_problem);
        m_report = decoder.GetReport();
        return audio;
    }

    /// Decodes `path`, which must fail. Returns: why.
    EDecodeProblem Fail(std::string const& path) {
        CAudioDecoder decoder;
        CDecodedAudio audio;
        EXPECT_EQ(decoder.Decode(path, audio), kStatusFailure);
        EXPECT_EQ(audio.m_pSamples, nullptr);
        EXPECT_EQ(audio.m_nCount, 0);
        m_report = decoder.GetReport();
        EXPECT_NE(m_report.m_problem, EDecodeProblem::None);
        return m_report.m_problem;
    }

    std::string Write16(CWavShape const& shape, std::vector<std::int16_t> const& samples) {
        WriteBytes(m_folder / "x.wav", MakeWav16(shape, samples));
        return m_folder / "x.wav";
    }

    CTempFolder m_folder;
    CDecodeReport m_report; // of the last decode
};

/// A tone of 100 Hz with an amplitude of a half, as a file of `rate` holds it.
std::vector<float> ToneAt(std::uint32_t rate, std::size_t frames) {
    std::vector<float> samples(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        double const turns = 100.0 * static_cast<double>(i) / rate;
        samples[i] = static_cast<float>(0.5 * std::sin(2.0 * std::numbers::pi * turns));
    }
    return samples;
}

/// Largest difference between `audio` and the tone at 44100 Hz in [from, to).
float DistanceFromTone(CDecodedAudio const& audio, std::size_t from, std::size_t to) {
    std::vector<float> const tone = ToneAt(44100, to);
    float largest = 0.0f;
    for (std::size_t i = from; i < to; ++i) {
        largest = std::max(largest, std::abs(audio.Samples()[i] - tone[i]));
    }
    return largest;
}

TEST_F(AudioDecoderTest, DividesBy32767) {
    CDecodedAudio const audio = Decode(Write16({}, {0, 1, -1, 12345, 32767, -32768}));
    ASSERT_EQ(audio.m_nCount, 6);
    EXPECT_EQ(m_report.m_nFileRate, 44100U);
    EXPECT_EQ(audio.Samples()[0], 0.0f);
    EXPECT_EQ(audio.Samples()[1], 1.0f / 32767.0f);
    EXPECT_EQ(audio.Samples()[2], -1.0f / 32767.0f);
    EXPECT_EQ(audio.Samples()[3], 12345.0f / 32767.0f);
    EXPECT_EQ(audio.Samples()[4], 1.0f);
    EXPECT_EQ(audio.Samples()[5], -1.0000305f);
}

TEST_F(AudioDecoderTest, AveragesTwoChannels) {
    CDecodedAudio const audio =
        Decode(Write16({.m_nChannels = 2}, {1000, 3000, -8, 2, 32767, -32767}));
    ASSERT_EQ(audio.m_nCount, 3);
    EXPECT_EQ(audio.Samples()[0], 2000.0f / 32767.0f);
    EXPECT_EQ(audio.Samples()[1], -3.0f / 32767.0f);
    EXPECT_EQ(audio.Samples()[2], 0.0f);
}

TEST_F(AudioDecoderTest, FullScaleStereoDoesNotClip) {
    CDecodedAudio const audio = Decode(Write16({.m_nChannels = 2}, {32767, 32767, -32768, -32768}));
    ASSERT_EQ(audio.m_nCount, 2);
    EXPECT_EQ(audio.Samples()[0], 1.0f);
    EXPECT_EQ(audio.Samples()[1], -1.0000305f);
}

TEST_F(AudioDecoderTest, TwelveChannelsCountAlike) {
    // Twelve samples of 1200 x (1 + ... + 12) / 12 = 1200 x 6.5 on the average.
    std::vector<std::int16_t> frame;
    for (int i = 1; i <= 12; ++i) {
        frame.push_back(static_cast<std::int16_t>(1200 * i));
    }
    CDecodedAudio const audio = Decode(Write16({.m_nChannels = 12}, frame));
    ASSERT_EQ(audio.m_nCount, 1);
    // The mix may round the last bit either way.
    EXPECT_NEAR(audio.Samples()[0], 7800.0f / 32767.0f, 1.0f / 32767.0f);
}

TEST_F(AudioDecoderTest, ReadsEveryDepth) {
    for (std::uint16_t const bits : std::initializer_list<std::uint16_t>{8, 16, 24, 32}) {
        WriteWav(m_folder / "x.wav", {.m_nBits = bits}, ToneAt(44100, 4410));
        CDecodedAudio const audio = Decode(m_folder / "x.wav");
        ASSERT_EQ(audio.m_nCount, 4410);
        // Half a step of the file, and up to one of the 16 bits that it is turned into.
        float const step = 1.0f / std::ldexp(1.0f, bits - 1);
        EXPECT_LE(DistanceFromTone(audio, 0, 4410), step + 2.0f / 32767.0f) << bits;
    }
}

TEST_F(AudioDecoderTest, PinsFasterFileEndsInZeros) {
    WriteWav(m_folder / "x.wav", {.m_nRate = 48000}, ToneAt(48000, 48000));
    CDecodedAudio const audio = Decode(m_folder / "x.wav");
    // 48000 frames are a second, which is 44100 samples; the rest is empty.
    ASSERT_EQ(audio.m_nCount, 48000);
    EXPECT_EQ(m_report.m_nFileRate, 48000U);
    // In phase: the resampler's passband ripple is far below a hundredth.
    EXPECT_LT(DistanceFromTone(audio, 0, 44000), 0.005f);
    for (std::size_t i = 44101; i < 48000; ++i) {
        ASSERT_EQ(audio.Samples()[i], 0.0f) << i;
    }
}

TEST_F(AudioDecoderTest, PinsSlowerFileIsCutShort) {
    WriteWav(m_folder / "x.wav", {.m_nRate = 8000}, ToneAt(8000, 16000));
    CDecodedAudio const audio = Decode(m_folder / "x.wav");
    ASSERT_EQ(audio.m_nCount, 16000);
    EXPECT_EQ(m_report.m_nFileRate, 8000U);
    // The resampler swings in over its filter's length, some 16 frames of the file.
    EXPECT_LT(DistanceFromTone(audio, 100, 16000), 0.005f);
}

TEST_F(AudioDecoderTest, ReadsTheFastestRates) {
    WriteWav(m_folder / "x.wav", {.m_nRate = 192000}, ToneAt(192000, 192000));
    CDecodedAudio const audio = Decode(m_folder / "x.wav");
    ASSERT_EQ(audio.m_nCount, 192000);
    EXPECT_LT(DistanceFromTone(audio, 0, 44000), 0.005f);
    EXPECT_EQ(audio.Samples()[191999], 0.0f);
}

TEST_F(AudioDecoderTest, RefusesAbsurdRates) {
    // One frame a second would become 44100 samples each.
    WriteWav(m_folder / "x.wav", {.m_nRate = 1}, std::vector<float>(100'000));
    EXPECT_EQ(Fail(m_folder / "x.wav"), EDecodeProblem::BadRate);
    WriteWav(m_folder / "x.wav", {.m_nRate = 2'000'000'000}, std::vector<float>(100));
    Fail(m_folder / "x.wav");
}

TEST_F(AudioDecoderTest, CountsFramesInsteadOfBelievingTheHeader) {
    std::vector<float> const second = ToneAt(44100, 44100);
    for (std::uint32_t const claimed : {0xFFFFFFFFU, 0x7FFFFFFFU, 400'000U}) {
        WriteWav(m_folder / "x.wav", {.m_nClaimedData = claimed}, second);
        EXPECT_EQ(Decode(m_folder / "x.wav").m_nCount, 44100) << claimed;
    }
}

TEST_F(AudioDecoderTest, ContentDecidesNotTheName) {
    WriteWav(m_folder / "x.mp3", ToneAt(44100, 1000));
    EXPECT_EQ(Decode(m_folder / "x.mp3").m_nCount, 1000);
}

TEST_F(AudioDecoderTest, PathsAreBytes) {
    WriteWav(m_folder / "na\xEFve \xFF%20:#?.wav", ToneAt(44100, 1000));
    EXPECT_EQ(Decode(m_folder / "na\xEFve \xFF%20:#?.wav").m_nCount, 1000);
}

TEST_F(AudioDecoderTest, NamesTheReasonForWhatIsNoFile) {
    EXPECT_EQ(Fail(m_folder / "none.wav"), EDecodeProblem::SystemError);
    EXPECT_EQ(m_report.m_nError, ENOENT);
    EXPECT_EQ(Fail(m_folder.Path()), EDecodeProblem::IsFolder);
    ASSERT_EQ(mkfifo((m_folder / "pipe.wav").c_str(), 0600), 0);
    EXPECT_EQ(Fail(m_folder / "pipe.wav"), EDecodeProblem::NotRegular);
    EXPECT_EQ(Fail("/dev/zero"), EDecodeProblem::NotRegular);
}

TEST_F(AudioDecoderTest, NamesTheReasonForWhatIsNoAudio) {
    WriteText(m_folder / "x.mp3", "");
    EXPECT_EQ(Fail(m_folder / "x.mp3"), EDecodeProblem::Empty);
    WriteText(m_folder / "x.mp3", std::string(5000, 'a'));
    EXPECT_EQ(Fail(m_folder / "x.mp3"), EDecodeProblem::NotAudio);
    WriteText(m_folder / "x.mp3", std::string(100'000, '\0'));
    Fail(m_folder / "x.mp3");
    WriteWav(m_folder / "x.wav", std::vector<float>());
    EXPECT_EQ(Fail(m_folder / "x.wav"), EDecodeProblem::NoAudio);
    WriteWav(m_folder / "x.wav", {.m_nClaimedData = 0xFFFFFFF0}, std::vector<float>());
    EXPECT_EQ(Fail(m_folder / "x.wav"), EDecodeProblem::NoAudio);
    WriteWav(m_folder / "x.wav", {.m_nChannels = 0}, std::vector<float>(1000));
    Fail(m_folder / "x.wav");
}

TEST_F(AudioDecoderTest, KindsThatAreKnownAndNotReadAreToldFromWhatIsNoAudio) {
    // The first bytes of a Musepack, of an AC-3 file and of an AVI film, and nothing sensible
    // behind.
    WriteText(m_folder / "x.mp3", "MPCK" + std::string(5000, 'a'));
    EXPECT_EQ(Fail(m_folder / "x.mp3"), EDecodeProblem::OtherKind);
    WriteText(m_folder / "x.mp3", "\x0B\x77" + std::string(5000, 'a'));
    EXPECT_EQ(Fail(m_folder / "x.mp3"), EDecodeProblem::OtherKind);
    WriteText(m_folder / "x.wav", "RIFF....AVI " + std::string(5000, 'a'));
    EXPECT_EQ(Fail(m_folder / "x.wav"), EDecodeProblem::OtherKind);
    EXPECT_EQ(m_report.m_container, EContainer::Unknown);
}

TEST_F(AudioDecoderTest, AContainerThatCannotBeReadIsDamagedOrIncomplete) {
    WriteText(m_folder / "x.m4a",
              std::string("\0\0\0\x18", 4) + "ftypM4A " + std::string(5000, 'a'));
    EXPECT_EQ(Fail(m_folder / "x.m4a"), EDecodeProblem::BrokenContainer);
}

TEST_F(AudioDecoderTest, ADecoderThatWillNotOpenIsTold) {
    std::vector<std::uint8_t> wav = MakeWav16({}, std::vector<std::int16_t>(4096));
    constexpr std::size_t kFormatTag = 20; // 0x11: ADPCM, which never has 16 bits a sample
    wav[kFormatTag] = 0x11;
    WriteBytes(m_folder / "x.wav", wav);
    EXPECT_EQ(Fail(m_folder / "x.wav"), EDecodeProblem::Undecodable);
    EXPECT_EQ(m_report.m_sDecoder, "");
}

TEST_F(AudioDecoderTest, TheReportTellsWhatReadTheFileAndWhichItWas) {
    WriteWav(m_folder / "x.mp3", {.m_nRate = 48000, .m_nChannels = 2}, ToneAt(48000, 96000));
    (void)Decode(m_folder / "x.mp3");
    EXPECT_EQ(m_report.m_container, EContainer::Wav);
    EXPECT_EQ(m_report.m_sDecoder, "pcm_s16le");
    EXPECT_EQ(m_report.m_nFileRate, 48000U);
    EXPECT_EQ(m_report.m_nChannels, 2);
    EXPECT_EQ(m_report.m_dHeardSeconds, 1.0); // 48,000 frames of two samples
    EXPECT_EQ(m_report.m_dPromisedSeconds, 1.0);
    EXPECT_FALSE(m_report.IsDamaged());
    EXPECT_EQ(m_report.m_identity, IdentityAt(m_folder / "x.mp3"));
}

TEST_F(AudioDecoderTest, OpensNoOtherFile) {
    WriteWav(m_folder / "x.wav", ToneAt(44100, 1000));
    std::string const target = m_folder / "x.wav";
    for (std::string const& text : {
             "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\n" + target + "\n#EXT-X-ENDLIST\n",
             "ffconcat version 1.0\nfile " + target + "\n",
             "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\nt=0 0\nm=audio 5004 RTP/AVP "
             "0\n" +
                 std::string(),
             "[playlist]\nFile1=" + target + "\nNumberOfEntries=1\n",
         }) {
        WriteText(m_folder / "x.mp3", text);
        EXPECT_EQ(Fail(m_folder / "x.mp3"), EDecodeProblem::NotAudio) << text;
    }
}

TEST_F(AudioDecoderTest, CancelEndsTheRun) {
    WriteWav(m_folder / "x.wav", ToneAt(44100, 44100));
    CCancelFlag cancel;
    cancel.Set();
    CAudioDecoder decoder(&cancel);
    CDecodedAudio audio;
    EXPECT_EQ(decoder.Decode(m_folder / "x.wav", audio), kStatusNothing);
    EXPECT_EQ(audio.m_nCount, 0);
    EXPECT_EQ(decoder.GetReport().m_problem, EDecodeProblem::Cancelled);
}

TEST_F(AudioDecoderTest, PatienceEnds) {
    WriteWav(m_folder / "x.wav", ToneAt(44100, 44100));
    CAudioDecoder decoder;
    decoder.SetPatience(std::chrono::milliseconds(0));
    CDecodedAudio audio;
    EXPECT_EQ(decoder.Decode(m_folder / "x.wav", audio), kStatusFailure);
    EXPECT_EQ(decoder.GetReport().m_problem, EDecodeProblem::NoAudioForTooLong);
    decoder.SetPatience(std::chrono::minutes(1));
    EXPECT_EQ(decoder.Decode(m_folder / "x.wav", audio), kStatusOk);
    EXPECT_EQ(decoder.GetReport().m_problem, EDecodeProblem::None);
    EXPECT_EQ(audio.m_nCount, 44100);
}

TEST_F(AudioDecoderTest, AStopOfTheProgramUsesUpNoPatience) {
    // Five minutes; the child has a tenth of a second's patience and is stopped for longer, again
    // and again.
    WriteWav(m_folder / "x.wav", ToneAt(44100, 44100 * 300));
    pid_t const child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        CAudioDecoder decoder;
        decoder.SetPatience(std::chrono::milliseconds(100));
        CDecodedAudio audio;
        _exit(decoder.Decode(m_folder / "x.wav", audio) == kStatusOk ? 0 : 1);
    }
    int stops = 0;
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        kill(child, SIGSTOP);
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        kill(child, SIGCONT);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        ++stops;
    }
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "after " << stops << " stops";
    EXPECT_GT(stops, 1);
}

TEST_F(AudioDecoderTest, NoticesThatTheFileChanges) {
    WriteWav(m_folder / "x.wav", ToneAt(44100, 441'000));
    std::atomic<bool> isDone = false;
    std::atomic<int> touches = 0;
    std::thread toucher([&] {
        while (!isDone) {
            timespec const times[2] = {{1'000'000 + touches, 0}, {1'000'000 + touches, 0}};
            utimensat(AT_FDCWD, (m_folder / "x.wav").c_str(), times, 0);
            ++touches;
        }
    });
    while (touches == 0) {
        std::this_thread::yield();
    }
    // A decode takes many times as long as a touch, but a busy machine may hold the other thread
    // up for a while.
    EDecodeProblem problem = EDecodeProblem::None;
    for (int i = 0; i < 1000 && problem == EDecodeProblem::None; ++i) {
        CAudioDecoder decoder;
        CDecodedAudio audio;
        decoder.Decode(m_folder / "x.wav", audio);
        problem = decoder.GetReport().m_problem;
    }
    isDone = true;
    toucher.join();
    EXPECT_EQ(problem, EDecodeProblem::Changed);
}

TEST_F(AudioDecoderTest, ParallelDecodesGiveTheSame) {
    constexpr std::size_t kThreads = 8;
    WriteWav(m_folder / "x.wav", {.m_nRate = 48000}, ToneAt(48000, 48000));
    std::vector<CDecodedAudio> results(kThreads);
    std::vector<std::thread> threads;
    for (CDecodedAudio& result : results) {
        threads.emplace_back(
            [&] { EXPECT_EQ(CAudioDecoder().Decode(m_folder / "x.wav", result), kStatusOk); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (CDecodedAudio const& result : results) {
        ASSERT_EQ(result.m_nCount, results[0].m_nCount);
        EXPECT_TRUE(std::ranges::equal(result.Samples(), results[0].Samples()));
    }
}

} // namespace
