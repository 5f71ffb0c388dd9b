// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioDecoder.h"

#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/SongLength.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numeric>
#include <vector>

// Files that ffmpeg's encoders made from one source: what comes back has the source's length where
// the container tells the padding, and the encoder's where it doesn't.

namespace {

constexpr std::int32_t kMp3Frame = 1152; // Standard: ISO/IEC 11172-3, samples of a frame.
constexpr std::int32_t kAacFrame = 1024; // Standard: ISO/IEC 14496-3, samples of a frame.

class CompressedAudioTest : public testing::Test {
protected:
    void SetUp() override {
        m_vSource = MakeSine(440.0, 91'875.0 / 44100.0, 0.5f);
        ASSERT_EQ(m_vSource.size(), static_cast<std::size_t>(kUnevenFrames));
        std::vector<float> stereo;
        for (float const sample : m_vSource) {
            stereo.insert(stereo.end(), {sample, sample});
        }
        WriteWav(m_folder / "source.wav", {.m_nChannels = 2}, stereo);
    }

    std::string Encode(std::string const& name, std::vector<std::string> const& options) {
        return FfmpegEncode(m_folder / "source.wav", m_folder / name, options);
    }

    CDecodedAudio Decode(std::string const& path) {
        CAudioDecoder decoder;
        CDecodedAudio audio;
        EXPECT_EQ(decoder.Decode(path, audio), kStatusOk)
            << static_cast<int>(decoder.GetReport().m_problem);
        m_report = decoder.GetReport();
        return audio;
    }

    /// Root mean square of the difference from the source, which starts `delay` samples late. The
    /// ends, where an encoder swings in and out, are left aside.
    double Distance(CDecodedAudio const& audio, std::int32_t delay = 0) {
        double sum = 0.0;
        auto const music = audio.Samples().subspan(static_cast<std::size_t>(delay));
        constexpr std::size_t kEnd = 3000;
        std::size_t const last = std::min(music.size(), m_vSource.size()) - kEnd;
        for (std::size_t i = kEnd; i < last; ++i) {
            double const difference =
                static_cast<double>(music[i]) - static_cast<double>(m_vSource[i]);
            sum += difference * difference;
        }
        return std::sqrt(sum / static_cast<double>(last - kEnd));
    }

    /// Copies the first `size` bytes of `from` to `to`.
    std::string CutFile(std::string const& from, std::string const& to, std::size_t size) {
        WriteText(m_folder / to, ReadText(from).substr(0, size));
        return m_folder / to;
    }

    CTempFolder m_folder;
    CDecodeReport m_report; // of the last decode
    std::vector<float> m_vSource;
};

// An encoder at these rates (LAME turns the volume down below 256 kbit/s) stays within a hundredth
// of a steady tone of a half; one sample too early or late would be 0.022 away.
constexpr double kLossy = 0.01;
// Rounding to 16 bits is off by up to half a step; the mix of two equal channels adds none.
constexpr double kLossless = 1.0 / 32767.0;

TEST_F(CompressedAudioTest, LosslessContainersKeepLengthAndSamples) {
    struct CCase {
        std::string m_sName;
        std::vector<std::string> m_vOptions;
    };
    for (CCase const& item :
         {CCase{"x.aiff", {}}, CCase{"x.aif", {"-f", "aiff"}}, CCase{"x.caf", {}},
          CCase{"alac.caf", {"-c:a", "alac"}}, CCase{"alac.m4a", {"-c:a", "alac"}},
          CCase{"float.wav", {"-c:a", "pcm_f32le"}}}) {
        CDecodedAudio const audio = Decode(Encode(item.m_sName, item.m_vOptions));
        EXPECT_EQ(audio.m_nCount, kUnevenFrames) << item.m_sName;
        EXPECT_LE(Distance(audio), kLossless) << item.m_sName;
        EXPECT_FALSE(m_report.IsDamaged()) << item.m_sName;
    }
}

TEST_F(CompressedAudioTest, Mp3WithEncoderNoteIsTrimmed) {
    for (std::vector<std::string> const& options :
         {std::vector<std::string>{"-c:a", "libmp3lame", "-b:a", "320k"},
          std::vector<std::string>{"-c:a", "libmp3lame", "-q:a", "2"}}) {
        CDecodedAudio const audio = Decode(Encode("x.mp3", options));
        EXPECT_EQ(audio.m_nCount, kUnevenFrames);
        EXPECT_LT(Distance(audio), kLossy);
        EXPECT_FALSE(m_report.IsDamaged());
    }
}

TEST_F(CompressedAudioTest, Mp3WithoutEncoderNoteKeepsItsPadding) {
    CDecodedAudio const audio =
        Decode(Encode("x.mp3", {"-c:a", "libmp3lame", "-b:a", "128k", "-write_xing", "0"}));
    // Whole frames: the music, the encoder's delay before it and the rest of the last frame.
    EXPECT_EQ(audio.m_nCount % kMp3Frame, 0);
    EXPECT_GT(audio.m_nCount, kUnevenFrames);
    EXPECT_LT(audio.m_nCount, kUnevenFrames + 3 * kMp3Frame);
}

TEST_F(CompressedAudioTest, TheReportSaysWhatWasSkippedAndWhy) {
    struct CCase {
        char const* m_sName;
        std::vector<std::string> m_vOptions;
        std::int64_t m_nSkipped;
        EStartNote m_note;
    };
    // LAME's delay is 576 samples, any decoder's of layer III 529; AAC has one frame of priming.
    for (CCase const& item :
         {CCase{"x.mp3", {"-c:a", "libmp3lame", "-b:a", "192k"}, 1105, EStartNote::EncoderTag},
          CCase{"x.mp3", {"-c:a", "libmp3lame", "-write_xing", "0"}, 0, EStartNote::None},
          CCase{"x.m4a", {"-c:a", "aac"}, kAacFrame, EStartNote::TrackTable},
          CCase{"x.m4a", {"-c:a", "aac", "-use_editlist", "0"}, 0, EStartNote::None},
          CCase{"x.wav", {}, 0, EStartNote::None}}) {
        (void)Decode(Encode(item.m_sName, item.m_vOptions));
        EXPECT_EQ(m_report.m_nSkippedFrames, item.m_nSkipped) << item.m_sName;
        EXPECT_EQ(m_report.m_startNote, item.m_note) << item.m_sName;
    }
}

TEST_F(CompressedAudioTest, AacInMp4LosesStartAndTail) {
    for (std::vector<std::string> const& options :
         {std::vector<std::string>{"-c:a", "aac"},
          std::vector<std::string>{"-c:a", "aac", "-movflags", "+faststart"}}) {
        CDecodedAudio const audio = Decode(Encode("x.m4a", options));
        EXPECT_EQ(audio.m_nCount, kUnevenFrames);
        EXPECT_LT(Distance(audio), kLossy);
    }
}

TEST_F(CompressedAudioTest, AacInMp4WithoutEditListKeepsTheStart) {
    CDecodedAudio const audio = Decode(Encode("x.m4a", {"-c:a", "aac", "-use_editlist", "0"}));
    // The track's table counts one frame of priming and the music.
    EXPECT_EQ(audio.m_nCount, kUnevenFrames + kAacFrame);
    EXPECT_LT(Distance(audio, kAacFrame), kLossy);
}

TEST_F(CompressedAudioTest, GaplessNoteDecidesAboutTheTail) {
    // 91 frames of which the first is priming: 92160 remain, 285 of them padding.
    CDecodedAudio const audio =
        Decode(Encode("x.m4a", {"-c:a", "aac", "-movflags", "use_metadata_tags", "-metadata",
                                "iTunSMPB= 00000000 00000400 00000200 0000000000016600 00000000"}));
    // The note of this file says 512 of padding: delay 1024 and 91648 frames of music.
    EXPECT_EQ(audio.m_nCount, 92'160 - 512);
}

TEST_F(CompressedAudioTest, FasterAacEndsInZerosFromItsEndOn) {
    CDecodedAudio const audio = Decode(Encode("x.m4a", {"-c:a", "aac", "-ar", "48000"}));
    // 91875 x 480 / 441 = 100000 frames, which are 91875 samples again.
    ASSERT_EQ(audio.m_nCount, 100'000);
    EXPECT_LT(Distance(audio), kLossy);
    for (float const sample : audio.Samples().subspan(kUnevenFrames)) {
        ASSERT_EQ(sample, 0.0f);
    }
}

TEST_F(CompressedAudioTest, AProtectedFileIsCalledSo) {
    std::string const path = Encode("x.m4a", {"-c:a", "aac"});
    std::string bytes = ReadText(path);
    std::size_t const entry = bytes.find("mp4a");
    ASSERT_NE(entry, std::string::npos);
    for (char const* kind : {"drms", "enca"}) {
        WriteText(path, bytes.replace(entry, 4, kind));
        CAudioDecoder decoder;
        CDecodedAudio audio;
        EXPECT_EQ(decoder.Decode(path, audio), kStatusFailure);
        EXPECT_EQ(decoder.GetReport().m_problem, EDecodeProblem::Protected) << kind;
    }
}

TEST_F(CompressedAudioTest, ASongThatItsShopEncryptedIsProtected) {
    std::string const path =
        Encode("x.m4a", {"-c:a", "aac", "-encryption_scheme", "cenc-aes-ctr", "-encryption_key",
                         "76a6c65c5ea762046bd749a2e632ccbb", "-encryption_kid",
                         "a7e61c373e219033c21091fa607bf3b8"});
    CAudioDecoder decoder;
    CDecodedAudio audio;
    EXPECT_EQ(decoder.Decode(path, audio), kStatusFailure);
    EXPECT_EQ(decoder.GetReport().m_problem, EDecodeProblem::Protected);
}

TEST_F(CompressedAudioTest, AFreeFormatMp3IsCalledSo) {
    std::string bytes = ReadText(Encode("x.mp3", {"-c:a", "libmp3lame", "-b:a", "128k",
                                                  "-write_xing", "0", "-id3v2_version", "0"}));
    // Every frame of 417 or 418 bytes has its bit rate, the upper half of the third byte, taken
    // off.
    for (std::size_t i = 0; i + 3 < bytes.size();) {
        auto const third = static_cast<unsigned char>(bytes[i + 2]);
        bytes[i + 2] = static_cast<char>(third & 0x0FU);
        i += 417 + ((third >> 1U) & 1U);
    }
    for (std::string const& tag :
         {std::string(), "ID3" + std::string("\3\0\0\0\0\1\0", 7) + std::string(128, '\0')}) {
        WriteText(m_folder / "free.mp3", tag + bytes);
        CAudioDecoder decoder;
        CDecodedAudio audio;
        EXPECT_EQ(decoder.Decode(m_folder / "free.mp3", audio), kStatusFailure);
        EXPECT_EQ(decoder.GetReport().m_problem, EDecodeProblem::FreeFormat);
    }
}

TEST_F(CompressedAudioTest, FreeFormatIsCalledSoAlsoWhereChanceHasFrames) {
    std::string const open = std::string("\xFF\xFB\x00\x64", 4) + std::string(500, '\0');
    // 128 kbit/s at 44100 Hz: 417 bytes.
    std::string const usual = std::string("\xFF\xFB\x90\x64", 4) + std::string(413, '\0');
    std::string bytes;
    for (int i = 0; i < 2000; ++i) {
        bytes += open;
    }
    for (int i = 0; i < 8; ++i) {
        WriteText(m_folder / "free.mp3", bytes);
        CAudioDecoder decoder;
        CDecodedAudio audio;
        EXPECT_EQ(decoder.Decode(m_folder / "free.mp3", audio), kStatusFailure);
        EXPECT_EQ(decoder.GetReport().m_problem, EDecodeProblem::FreeFormat) << i;
        bytes += usual;
    }
}

TEST_F(CompressedAudioTest, TheReportNamesTheContainer) {
    struct CCase {
        std::string m_sName;
        std::vector<std::string> m_vOptions;
        EContainer m_container;
        std::string m_sDecoder;
    };
    for (CCase const& item :
         {CCase{"x.mp3", {"-c:a", "libmp3lame"}, EContainer::MpegAudio, "mp3float"},
          CCase{"x.m4a", {"-c:a", "aac"}, EContainer::Mp4, "aac"},
          CCase{"x.aac", {"-c:a", "aac"}, EContainer::AdtsAac, "aac"},
          CCase{"x.aiff", {}, EContainer::Aiff, "pcm_s16be"},
          CCase{"x.caf", {}, EContainer::Caf, "pcm_s16be"},
          CCase{"x.w64", {}, EContainer::Wave64, "pcm_s16le"},
          CCase{"x.flac", {}, EContainer::Flac, "flac"},
          CCase{"x.ogg", {"-c:a", "flac"}, EContainer::Ogg, "flac"}}) {
        (void)Decode(Encode(item.m_sName, item.m_vOptions));
        EXPECT_EQ(m_report.m_container, item.m_container) << item.m_sName;
        EXPECT_EQ(m_report.m_sDecoder, item.m_sDecoder) << item.m_sName;
        EXPECT_EQ(m_report.m_nChannels, 2) << item.m_sName;
        EXPECT_FALSE(m_report.IsDamaged()) << item.m_sName;
    }
}

TEST_F(CompressedAudioTest, CoverAndSecondStreamAreNoObstacle) {
    Ffmpeg({"-f", "lavfi", "-i", "color=red:s=64x64", "-frames:v", "1", m_folder / "cover.png"});
    std::string const mp3 = Encode("x.mp3", {"-c:a", "libmp3lame"});
    Ffmpeg({"-i", mp3, "-i", m_folder / "cover.png", "-map", "0", "-map", "1", "-c", "copy",
            "-disposition:v", "attached_pic", m_folder / "cover.mp3"});
    EXPECT_EQ(Decode(m_folder / "cover.mp3").m_nCount, kUnevenFrames);
    Ffmpeg({"-i", m_folder / "source.wav", "-i", m_folder / "cover.png", "-map", "1", "-map", "0",
            "-c:v", "copy", "-disposition:v", "attached_pic", m_folder / "cover.m4a"});
    EXPECT_EQ(Decode(m_folder / "cover.m4a").m_nCount, kUnevenFrames);
    Ffmpeg({"-i", m_folder / "source.wav", "-f", "lavfi", "-i", "sine=880:d=1", "-map", "0", "-map",
            "1", m_folder / "two.m4a"});
    EXPECT_EQ(Decode(m_folder / "two.m4a").m_nCount, kUnevenFrames);
}

TEST_F(CompressedAudioTest, BrokenOffMp3GivesWhatIsThereAndSaysSo) {
    std::string const whole =
        Encode("x.mp3", {"-c:a", "libmp3lame", "-b:a", "128k", "-write_xing", "0"});
    CDecodedAudio const audio = Decode(CutFile(whole, "cut.mp3", 20'100));
    EXPECT_TRUE(m_report.m_bBreaksOff);
    EXPECT_EQ(m_report.m_nBadPackets, 0);
    // 128 kbit/s are 16000 bytes a second.
    EXPECT_NEAR(audio.m_nCount / 44100.0, 20'100.0 / 16'000.0, 0.1);
}

TEST_F(CompressedAudioTest, BrokenOffMp4GivesWhatIsThereAndSaysSo) {
    std::string const whole = Encode("x.m4a", {"-c:a", "aac", "-movflags", "+faststart"});
    std::size_t const half = ReadText(whole).size() / 2;
    CDecodedAudio const audio = Decode(CutFile(whole, "cut.m4a", half));
    EXPECT_GT(m_report.m_nBadPackets, 0);
    EXPECT_GT(audio.m_nCount, kUnevenFrames / 4);
    EXPECT_LT(audio.m_nCount, kUnevenFrames * 3 / 4);
}

TEST_F(CompressedAudioTest, AFileThatIsCutSaysHowMuchOfItIsThere) {
    struct CCase {
        std::string m_sName;
        std::vector<std::string> m_vOptions;
    };
    double const length = 91'875.0 / 44'100.0;
    for (CCase const& item :
         {CCase{"x.mp3", {"-c:a", "libmp3lame", "-b:a", "128k"}},
          CCase{"vbr.mp3", {"-c:a", "libmp3lame", "-q:a", "4"}}, CCase{"x.wav", {}},
          CCase{"x.aiff", {}}, CCase{"x.caf", {}}, CCase{"x.flac", {}},
          CCase{"x.wv", {"-c:a", "wavpack"}}, CCase{"x.au", {}},
          CCase{"x.m4a", {"-c:a", "aac", "-movflags", "+faststart"}},
          CCase{"alac.m4a", {"-c:a", "alac", "-movflags", "+faststart"}}}) {
        std::string const whole = Encode(item.m_sName, item.m_vOptions);
        (void)Decode(whole);
        EXPECT_FALSE(m_report.EndsEarly()) << item.m_sName;
        EXPECT_NEAR(m_report.m_dPromisedSeconds, length, 0.1) << item.m_sName; // encoder's padding
        (void)Decode(CutFile(whole, "cut-" + item.m_sName, ReadText(whole).size() / 2));
        EXPECT_TRUE(m_report.EndsEarly()) << item.m_sName;
        EXPECT_NEAR(m_report.m_dPromisedSeconds, length, 0.1) << item.m_sName;
        // Half of the bytes, of which a table or padding at the start takes some.
        EXPECT_NEAR(m_report.m_dHeardSeconds, length / 2.0, 0.3) << item.m_sName;
    }
}

TEST_F(CompressedAudioTest, AShortSongIsWhole) {
    for (char const* seconds : {"0.1", "0.3", "0.7"}) {
        for (auto const& [name, codec] : std::initializer_list<std::pair<char const*, char const*>>{
                 {"x.mp3", "libmp3lame"}, {"x.m4a", "aac"}, {"x.wav", "pcm_s16le"}}) {
            (void)Decode(Encode(name, {"-t", seconds, "-c:a", codec}));
            EXPECT_FALSE(m_report.IsDamaged()) << name << " " << seconds;
        }
    }
}

TEST_F(CompressedAudioTest, AStreamsLengthIsNoPromise) {
    // The sizes that programs write which can't go back to the header.
    for (std::uint32_t const size : {0xFFFFFFFFU, 0x7FFFFFFFU, 0x7FFFF000U, 0x7F000000U}) {
        WriteWav(m_folder / "x.wav", {.m_nClaimedData = size}, m_vSource);
        (void)Decode(m_folder / "x.wav");
        EXPECT_FALSE(m_report.IsDamaged()) << size;
    }
}

TEST_F(CompressedAudioTest, NoiseInTheMiddleCountsAsMuchAsItIsLong) {
    for (char const* note : {"0", "1"}) {
        std::string bytes =
            ReadText(Encode("x.mp3", {"-c:a", "libmp3lame", "-b:a", "320k", "-write_xing", note}));
        std::size_t const size = bytes.size() / 5;
        // No byte of this noise begins a frame.
        for (std::size_t i = bytes.size() / 2; i < bytes.size() / 2 + size; ++i) {
            bytes[i] = static_cast<char>(i * 37 % 200);
        }
        WriteText(m_folder / "noise.mp3", bytes);
        (void)Decode(m_folder / "noise.mp3");
        double const share =
            static_cast<double>(m_report.m_nBadPackets) / static_cast<double>(m_report.m_nPackets);
        EXPECT_NEAR(share, 0.2, 0.03) << note; // a frame or two more at either end of it
    }
}

TEST_F(CompressedAudioTest, BytesBehindAnMp3AreNoDamage) {
    std::string const whole = Encode("x.mp3", {"-c:a", "libmp3lame", "-write_xing", "0"});
    CDecodedAudio const clean = Decode(whole);
    WriteText(m_folder / "tail.mp3", ReadText(whole) + std::string(3000, 'x'));
    CDecodedAudio const audio = Decode(m_folder / "tail.mp3");
    EXPECT_FALSE(m_report.IsDamaged());
    EXPECT_EQ(audio.m_nCount, clean.m_nCount);
}

TEST_F(CompressedAudioTest, ForgedLengthAllocatesNothing) {
    std::string const whole = Encode("x.mp3", {"-c:a", "libmp3lame", "-b:a", "128k"});
    std::string bytes = ReadText(whole);
    std::size_t const note = bytes.find("Info");
    ASSERT_NE(note, std::string::npos);
    // The four bytes behind the name are flags, the next four the number of frames.
    bytes.replace(note + 8, 4, "\x7F\xFF\xFF\xFF");
    WriteText(m_folder / "forged.mp3", bytes);
    CDecodedAudio const audio = Decode(m_folder / "forged.mp3");
    EXPECT_GE(audio.m_nCount, kUnevenFrames);
    EXPECT_LT(audio.m_nCount, kUnevenFrames + 3 * kMp3Frame);
}

} // namespace
