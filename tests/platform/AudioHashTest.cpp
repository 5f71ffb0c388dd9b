// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioHash.h"

#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

class AudioHashTest : public testing::Test {
protected:
    AudioHashTest() { WriteWav(m_folder / "source.wav", MakeSine(440.0, 1.0, 0.5f)); }

    std::optional<CAudioHash> Hash(std::string const& name) {
        int const file = open((m_folder / name).c_str(), O_RDONLY | O_CLOEXEC);
        std::optional<CAudioHash> const hash = HashAudio(file);
        close(file);
        return hash;
    }

    void Encode(std::string const& name, std::vector<std::string> const& options) {
        FfmpegEncode(m_folder / "source.wav", m_folder / name, options);
    }

    CTempFolder m_folder;
};

TEST_F(AudioHashTest, TagsDoNotCount) {
    for (auto const& [ending, codec] :
         std::initializer_list<std::pair<char const*, char const*>>{{".flac", "flac"},
                                                                    {".ogg", "libvorbis"},
                                                                    {".opus", "libopus"},
                                                                    {".m4a", "aac"},
                                                                    {".wv", "wavpack"},
                                                                    {".aiff", "pcm_s16be"}}) {
        std::string const one = std::string("one") + ending;
        std::string const two = std::string("two") + ending;
        Encode(one, {"-c:a", codec});
        Ffmpeg({"-i", m_folder / one, "-c", "copy", "-metadata", "title=Other", "-metadata",
                "comment=" + std::string(5000, 'x'), "-write_id3v2", "1", m_folder / two});
        ASSERT_TRUE(Hash(one).has_value()) << ending;
        EXPECT_EQ(Hash(one), Hash(two)) << ending;
    }
}

TEST_F(AudioHashTest, EveryByteOfTheSoundCounts) {
    Encode("x.flac", {"-c:a", "flac"});
    std::string bytes = ReadText(m_folder / "x.flac");
    std::optional<CAudioHash> const before = Hash("x.flac");
    bytes[bytes.size() - 20] = static_cast<char>(bytes[bytes.size() - 20] ^ 1);
    WriteText(m_folder / "x.flac", bytes);
    EXPECT_NE(Hash("x.flac"), before);
    WriteText(m_folder / "x.flac", bytes.substr(0, bytes.size() - 200));
    EXPECT_NE(Hash("x.flac"), before);
}

TEST_F(AudioHashTest, WhatHasNoSoundHasNoHash) {
    WriteText(m_folder / "x.txt", "no sound");
    EXPECT_FALSE(Hash("x.txt").has_value());
    EXPECT_FALSE(HashAudio(-1).has_value());
}

} // namespace
