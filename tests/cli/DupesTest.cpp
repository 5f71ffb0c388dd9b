// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/CommandTest.h"
#include "support/Chords.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <set>

// The program from outside: `tactus dupes`. Copies of one song and other songs are made.

namespace {

using PlainJson = nlohmann::json;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class DupesTest : public CCommandTest {
protected:
    /// A song of 30 s and, besides, strokes of noise at times that `seed` draws.
    void WriteSong(std::string const& name, double bpm, std::uint32_t seed) {
        std::vector<float> song = MakeSong(bpm, 30.0);
        std::uint32_t draw = seed;
        for (std::size_t at = 0; at + 4000 < song.size();) {
            draw = draw * 1664525U + 1013904223U;
            AddClick(song, static_cast<std::int64_t>(at), {.m_dToneHz = 300.0 + (draw >> 20U)},
                     0.2f + static_cast<float>(draw >> 24U) / 512.0f);
            at += 6000 + (draw >> 17U);
        }
        WriteWav(m_folder / name, song);
    }

    void Convert(std::string const& from, std::vector<std::string> options, std::string const& to) {
        std::vector<std::string> arguments = {"-i", m_folder / from};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.push_back(m_folder / to);
        Ffmpeg(arguments);
    }

    /// The names of the groups' files, and what is told of each by its name.
    std::vector<std::set<std::string>> Groups(std::vector<std::string> const& arguments) {
        std::vector<std::string> all = {"dupes", "--json", "-q"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        CProcessResult const result = Tactus(all);
        EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
        std::vector<std::set<std::string>> groups;
        PlainJson const found = PlainJson::parse(result.m_sOut);
        for (PlainJson const& group : found["groups"]) {
            std::set<std::string> names;
            for (PlainJson const& file : group) {
                names.insert(file["path"]);
                m_files[file["path"]] = file;
            }
            groups.push_back(names);
        }
        return groups;
    }

    std::map<std::string, PlainJson> m_files;
};

TEST_F(DupesTest, CopiesAreFoundHoweverTheyAreCodedLevelledEqualisedOrCut) {
    WriteSong("a.wav", 120.0, 1);
    WriteSong("other.wav", 120.0, 2);
    Convert("a.wav", {"-c:a", "libmp3lame", "-b:a", "128k"}, "a.mp3");
    Convert("a.wav", {"-c:a", "aac", "-b:a", "96k"}, "a.m4a");
    Convert("a.wav", {"-ss", "0.5", "-c:a", "libvorbis", "-q:a", "3"}, "cut.ogg");
    Convert("a.wav", {"-af", "volume=-12dB", "-ar", "48000"}, "quiet.flac");
    Convert("a.wav",
            {"-af", "equalizer=f=80:t=o:w=1:g=5,equalizer=f=8000:t=o:w=1.5:g=5,volume=-6dB"},
            "remaster.mp3");
    auto const groups = Groups({"."});
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_THAT(groups[0], UnorderedElementsAre("./a.wav", "./a.mp3", "./a.m4a", "./cut.ogg",
                                                "./quiet.flac", "./remaster.mp3"));
    // Without loss and whole; of the two the one with the higher bit rate.
    for (auto const& [name, file] : m_files) {
        EXPECT_EQ(file["keep"], name == "./a.wav") << name;
    }
    // Half a second is missing; an element of the shape is 5.8 ms, and coders may be one off.
    EXPECT_NEAR(m_files["./cut.ogg"]["offset"].get<double>(), -0.5, 0.012);
    EXPECT_NEAR(m_files["./a.m4a"]["offset"].get<double>(), 0.0, 0.012);
}

TEST_F(DupesTest, TableMarksWhatToKeepAndSecondRunHearsNothing) {
    WriteSong("a.wav", 126.0, 3);
    Convert("a.wav", {"-c:a", "libmp3lame", "-b:a", "192k"}, "b.mp3");
    CProcessResult const first = Tactus({"dupes", "a.wav", "b.mp3", "-o", "list.txt"});
    EXPECT_EQ(first.m_nExit, 0) << first.m_sErr;
    std::string const table = ReadText(m_folder / "list.txt");
    EXPECT_THAT(table, HasSubstr("Group  Keep  Offset s  Likeness  Codec      kbit/s  Path\n"
                                 "    1  keep     0.000     1.000  pcm_s16le     706  a.wav\n"
                                 "    1"));
    EXPECT_THAT(table, HasSubstr("  b.mp3\n"));
    EXPECT_EQ(Tactus({"dupes", "a.wav", "b.mp3", "-o", "list.txt"}).m_nExit, 0); // its own text
    EXPECT_EQ(ReadText(m_folder / "list.txt"), table);
}

TEST_F(DupesTest, NothingTwiceIsAnEmptyList) {
    WriteClip("silence.wav");
    WriteClip("silence2.wav");
    EXPECT_TRUE(Groups({"silence.wav", "silence2.wav"}).empty());
    EXPECT_EQ(Tactus({"dupes", "silence.wav"}).m_sOut,
              "Group  Keep  Offset s  Likeness  Codec      kbit/s  Path\n");
}

TEST_F(DupesTest, FileThatCannotBeHeardIsNamedAndTheOthersAreCompared) {
    WriteSong("a.wav", 120.0, 1);
    Convert("a.wav", {"-c:a", "flac"}, "a.flac");
    WriteText(m_folder / "no.mp3", "no music");
    CProcessResult const result = Tactus({"dupes", "a.wav", "no.mp3", "a.flac"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_THAT(result.m_sErr, HasSubstr("tactus: no.mp3: "));
    EXPECT_THAT(result.m_sOut, HasSubstr("  a.flac\n"));
}

TEST_F(DupesTest, OtherPeoplesFilesAreNotWrittenOver) {
    WriteClip("a.wav");
    WriteText(m_folder / "mine.txt", "mine");
    EXPECT_EQ(Tactus({"dupes", "a.wav", "-o", "mine.txt"}).m_nExit, 2);
    EXPECT_EQ(ReadText(m_folder / "mine.txt"), "mine");
}

} // namespace
