// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/ReadKinds.h"

#include "platform/AudioDecoder.h"
#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/SongLength.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

// Kinds of files beside those of the window's list, made by ffmpeg's encoders or by hand.

namespace {

class ReadKindsTest : public testing::Test {
protected:
    void SetUp() override {
        WriteWav(m_folder / "source.wav", MakeSine(440.0, 91'875.0 / 44100.0, 0.5f));
    }

    std::string Encode(std::string const& name, std::vector<std::string> const& options) {
        return FfmpegEncode(m_folder / "source.wav", m_folder / name, options);
    }

    /// Decodes a file, be it with success or not.
    CDecodedAudio Decode(std::string const& path) {
        CAudioDecoder decoder;
        CDecodedAudio audio;
        (void)decoder.Decode(path, audio);
        m_report = decoder.GetReport();
        return audio;
    }

    CTempFolder m_folder;
    CDecodeReport m_report; // of the last decode
};

struct CCase {
    std::string m_sName;
    std::vector<std::string> m_vOptions;
    EContainer m_container;
    std::string m_sDecoder;
};

TEST_F(ReadKindsTest, KindsWithoutLossGiveEverySampleBack) {
    CDecodedAudio const source = Decode(m_folder / "source.wav");
    ASSERT_EQ(source.m_nCount, kUnevenFrames);
    for (CCase const& item :
         {CCase{"x.wv", {"-c:a", "wavpack"}, EContainer::WavPack, "wavpack"},
          CCase{"x.tta", {"-c:a", "tta"}, EContainer::TrueAudio, "tta"},
          CCase{"x.flac", {"-c:a", "flac"}, EContainer::Flac, "flac"},
          CCase{"x.oga", {"-c:a", "flac"}, EContainer::Ogg, "flac"},
          CCase{"x.mka", {"-c:a", "flac"}, EContainer::Matroska, "flac"},
          CCase{"x.mov", {"-c:a", "alac"}, EContainer::Mp4, "alac"},
          CCase{"x.au", {}, EContainer::Au, "pcm_s16be"},
          CCase{"x.rf64", {"-f", "wav", "-rf64", "always"}, EContainer::Wav, "pcm_s16le"}}) {
        CDecodedAudio const audio = Decode(Encode(item.m_sName, item.m_vOptions));
        EXPECT_TRUE(std::ranges::equal(audio.Samples(), source.Samples())) << item.m_sName;
        EXPECT_EQ(m_report.m_container, item.m_container) << item.m_sName;
        EXPECT_EQ(m_report.m_sDecoder, item.m_sDecoder) << item.m_sName;
        EXPECT_FALSE(m_report.IsDamaged()) << item.m_sName;
    }
}

TEST_F(ReadKindsTest, KindsWithLossGiveTheSongsLength) {
    constexpr double kSeconds = 91'875.0 / 44'100.0;
    for (CCase const& item : {CCase{"x.ogg", {"-c:a", "libvorbis"}, EContainer::Ogg, "vorbis"},
                              CCase{"x.opus", {"-c:a", "libopus"}, EContainer::Ogg, "opus"},
                              CCase{"x.webm", {"-c:a", "libopus"}, EContainer::Matroska, "opus"},
                              CCase{"x.mp2", {"-c:a", "mp2"}, EContainer::MpegAudio, "mp2"},
                              CCase{"x.aac", {"-c:a", "aac"}, EContainer::AdtsAac, "aac"},
                              CCase{"x.mp4", {"-c:a", "aac"}, EContainer::Mp4, "aac"},
                              CCase{"x.m4b", {"-f", "mp4", "-c:a", "aac"}, EContainer::Mp4, "aac"},
                              CCase{"x.wma", {"-c:a", "wmav2"}, EContainer::Asf, "wmav2"}}) {
        CDecodedAudio const audio = Decode(Encode(item.m_sName, item.m_vOptions));
        // The buffer has as many samples as the file has frames at its own rate. The codecs of old
        // tell no padding: two frames of 2048 at most.
        EXPECT_NEAR(audio.m_nCount, kSeconds * m_report.m_nFileRate, 4096) << item.m_sName;
        EXPECT_EQ(m_report.m_container, item.m_container) << item.m_sName;
        EXPECT_EQ(m_report.m_sDecoder, item.m_sDecoder) << item.m_sName;
        EXPECT_FALSE(m_report.IsDamaged()) << item.m_sName;
    }
}

std::string LowFirst(std::uint32_t value, int bytes = 4) {
    std::string text;
    for (int i = 0; i < bytes; ++i) {
        text += static_cast<char>(value >> (8 * i) & 0xFF);
    }
    return text;
}

TEST_F(ReadKindsTest, MonkeysAudioIsRead) {
    // No free program writes this kind, but a frame of silence is a few words long.
    std::string const frame = LowFirst(0x80000000) + // its sum, and that flags follow
                              LowFirst(3) +          // silence in every channel
                              LowFirst(0) + LowFirst(0);
    std::string const file =
        "MAC " + LowFirst(3990, 2) + LowFirst(0, 2) +    // version, padding
        LowFirst(52) + LowFirst(24) + LowFirst(4) +      // the lengths of this header,
        LowFirst(0) +                                    // the next, the table, a WAV's
        LowFirst(16) + LowFirst(0) + LowFirst(0) +       // frames, and a WAV's end
        std::string(16, '\0') +                          // digest
        LowFirst(1000, 2) + LowFirst(0, 2) +             // compression: fast; flags
        LowFirst(73'728) + LowFirst(50'000) +            // samples of a frame, the last
        LowFirst(1) + LowFirst(16, 2) + LowFirst(1, 2) + // frames, bits, channels
        LowFirst(44'100) + LowFirst(80) + frame;         // rate; place of the frame
    WriteText(m_folder / "x.ape", file);
    CDecodedAudio const audio = Decode(m_folder / "x.ape");
    EXPECT_EQ(audio.m_nCount, 50'000);
    EXPECT_EQ(m_report.m_container, EContainer::MonkeysAudio);
    EXPECT_EQ(m_report.m_sDecoder, "ape");
    EXPECT_TRUE(std::ranges::all_of(audio.Samples(), [](float sample) { return sample == 0.0f; }));
}

TEST_F(ReadKindsTest, AFilmGivesItsSoundAlone) {
    Ffmpeg({"-i", m_folder / "source.wav", "-f", "lavfi", "-i", "color=red:s=64x64:d=2", "-c:a",
            "flac", "-c:v", "mpeg4", m_folder / "x.mkv"});
    EXPECT_EQ(Decode(m_folder / "x.mkv").m_nCount, kUnevenFrames);
    Ffmpeg({"-f", "lavfi", "-i", "color=red:s=64x64:d=1", "-c:v", "mpeg4", m_folder / "mute.mp4"});
    (void)Decode(m_folder / "mute.mp4");
    EXPECT_EQ(m_report.m_problem, EDecodeProblem::NoAudio);
}

TEST_F(ReadKindsTest, ADecoderThatIsNotOfTheListIsNotUsed) {
    (void)Decode(Encode("x.wav", {"-c:a", "adpcm_swf"}));
    EXPECT_EQ(m_report.m_problem, EDecodeProblem::UnknownCodec);
}

TEST_F(ReadKindsTest, AnEncryptedWindowsMediaFileIsProtected) {
    std::string file = ReadText(Encode("x.wma", {"-c:a", "wmav2"}));
    // Standard: ASF Specification, section 3.14: GUID, size, then texts with their lengths.
    std::string const object = std::string("\xFB\xB3\x11\x22\x23\xBD\xD2\x11"
                                           "\xB4\xB7\x00\xA0\xC9\x55\xFC\x6E",
                                           16) +
                               LowFirst(16 + 8 + 4 * 4 + 4 + 4) + LowFirst(0) + // size
                               LowFirst(4) + "key." + LowFirst(4) + std::string("DRM\0", 4) +
                               LowFirst(0) + LowFirst(0);
    constexpr std::size_t kHeaderBytes = 30; // GUID, size, count, two reserved bytes
    auto const size = static_cast<std::uint32_t>(static_cast<unsigned char>(file[16]) +
                                                 256 * static_cast<unsigned char>(file[17]));
    file.replace(16, 4, LowFirst(size + static_cast<std::uint32_t>(object.size())));
    file.insert(kHeaderBytes, object);
    WriteText(m_folder / "x.wma", file);
    (void)Decode(m_folder / "x.wma");
    EXPECT_EQ(m_report.m_problem, EDecodeProblem::Protected);
}

TEST_F(ReadKindsTest, PartOfANameIsNoDecoder) {
    EXPECT_TRUE(IsReadDecoder("mp1"));
    EXPECT_TRUE(IsReadDecoder("gsm_ms")); // the last one
    for (char const* name : {"", "mp", "pcm", "mp1,mp1float", "h264", "s8"}) {
        EXPECT_FALSE(IsReadDecoder(name)) << name;
    }
    EXPECT_EQ(ContainerOf("matroska,webm"), EContainer::Matroska);
    EXPECT_EQ(ContainerOf("hls"), EContainer::Unknown);
}

} // namespace
