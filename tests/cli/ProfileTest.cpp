// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/Chords.h"
#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

// The program from outside: `tactus profile --trace`.

namespace {

using OrderedJson = nlohmann::ordered_json;
using testing::ElementsAre;

class ProfileTest : public testing::Test {
protected:
    CProcessResult Profile(std::vector<std::string> const& arguments) {
        CProcessSetup setup;
        setup.m_vArguments = {TACTUS_PROGRAM, "profile", "--trace"};
        setup.m_vArguments.insert(setup.m_vArguments.end(), arguments.begin(), arguments.end());
        setup.m_sFolder = m_folder.Path();
        return RunProcess(setup);
    }

    static std::vector<std::string> KeysOf(OrderedJson const& object) {
        std::vector<std::string> keys;
        for (auto const& [key, value] : object.items()) {
            keys.push_back(key);
        }
        return keys;
    }

    CTempFolder m_folder;
};

TEST_F(ProfileTest, TraceHasTheEnginesRecordAndWhatTheStagesHandOn) {
    WriteWav(m_folder / "a.wav", MakeClickTrack(120.0, 40.0));
    CProcessResult const result = Profile({"a.wav"});
    ASSERT_EQ(result.m_nExit, 0) << result.m_sErr;
    EXPECT_EQ(result.m_sErr, "");
    EXPECT_EQ(std::count(result.m_sOut.begin(), result.m_sOut.end(), '\n'), 1);
    OrderedJson const json = OrderedJson::parse(result.m_sOut);
    std::vector<std::string> const keys = KeysOf(json);
    ASSERT_EQ(keys.size(), 27U);
    EXPECT_THAT(std::vector<std::string>(keys.begin(), keys.begin() + 18),
                ElementsAre("file", "bpm", "key", "sampleRate", "sampleCount", "bitRate",
                            "peakLevel", "introEnd", "outroStart", "introFadePoints",
                            "introSprockets", "outroSprockets", "measureMarks", "beatPatternA",
                            "beatPatternB", "fingerprint", "largePrint", "progress"));
    EXPECT_EQ(json["file"], "a.wav");
    EXPECT_EQ(json["sampleRate"], 44100);
    EXPECT_EQ(json["sampleCount"], 40 * 44100);
    EXPECT_EQ(json["bitRate"], 44100 * 32);
    EXPECT_EQ(json["introFadePoints"].size(), 12U);
    EXPECT_EQ(json["beatPatternA"].size(), 8U);
    EXPECT_EQ(json["beatPatternB"].size(), 8U);
    EXPECT_THAT(KeysOf(json["key"]), ElementsAre("tonic", "mode", "name"));
    EXPECT_THAT(KeysOf(json["fingerprint"]), ElementsAre("time", "min", "max", "values"));
    EXPECT_EQ(json["fingerprint"]["values"].size(), 128U);
    EXPECT_EQ(json["largePrint"]["values"].size(), 4096U);
    // 0 from the driver; frames 0, 2000, 4000 and 6000 of 6890 from the pass, 94 x 2000 / 6890 =
    // 27.3 and so on; then the driver's last four.
    EXPECT_THAT(std::vector<int>(json["progress"]), ElementsAre(0, 0, 27, 54, 81, 95, 98, 99, 100));
    EXPECT_THAT(std::vector<std::string>(keys.begin() + 18, keys.end()),
                ElementsAre("baseBpm", "foldedBpm", "shortClipBpm", "beats", "impactPoints",
                            "classicPoints", "energy", "bass", "noteCount"));
    // 40 s have 1764000 / 256 = 6890 elements.
    EXPECT_EQ(json["energy"].size(), 6890U);
    EXPECT_EQ(json["bass"].size(), 6890U);
    // Onsets lie on whole elements of 256 samples, 1.2 % of a beat.
    EXPECT_NEAR(json["baseBpm"].get<double>(), 120.0, 1.2);
    EXPECT_THAT(KeysOf(json["noteCount"]), ElementsAre("found", "kept"));
}

TEST_F(ProfileTest, TwoRunsGiveTheSameBytes) {
    WriteWav(m_folder / "a.wav", MakeSong(128.0, 40.0));
    EXPECT_EQ(Profile({"a.wav"}).m_sOut, Profile({"a.wav"}).m_sOut);
}

TEST_F(ProfileTest, HarmonyIsPrintedInThreeNotations) {
    CChords chords;
    chords.PlayCadence(6, true); // F sharp minor: 11A, 4m
    WriteWav(m_folder / "a.wav", chords.Samples());
    OrderedJson const json = OrderedJson::parse(Profile({"--harmony", "a.wav"}).m_sOut);
    EXPECT_THAT(KeysOf(json["harmony"]),
                ElementsAre("name", "camelot", "openKey", "confidence", "tuningCents"));
    EXPECT_EQ(json["harmony"]["name"], "F# minor");
    EXPECT_EQ(json["harmony"]["camelot"], "11A");
    EXPECT_EQ(json["harmony"]["openKey"], "4m");
    EXPECT_GT(json["harmony"]["confidence"].get<double>(), 0.5);
    EXPECT_FALSE(OrderedJson::parse(Profile({"a.wav"}).m_sOut).contains("harmony"));
}

TEST_F(ProfileTest, HarmonyOfSilenceIsNull) {
    WriteWav(m_folder / "a.wav", MakeSilence(10.0));
    EXPECT_TRUE(OrderedJson::parse(Profile({"--harmony", "a.wav"}).m_sOut)["harmony"].is_null());
}

TEST_F(ProfileTest, SilenceHasNoKey) {
    WriteWav(m_folder / "a.wav", MakeSilence(10.0));
    OrderedJson const json = OrderedJson::parse(Profile({"a.wav"}).m_sOut);
    EXPECT_EQ(json["key"]["tonic"], 0);
    EXPECT_EQ(json["key"]["mode"], 0);
    EXPECT_TRUE(json["key"]["name"].is_null());
    // The beat grid's samples per measure are whole numbers, which moves the last decimals.
    EXPECT_NEAR(json["bpm"].get<double>(), 96.0, 0.005);
}

TEST_F(ProfileTest, OneObjectAFileAndAMessageForTheOthers) {
    WriteWav(m_folder / "a\xFF.wav", MakeSilence(1.0));
    CProcessResult const result = Profile({"a\xFF.wav", "none.wav", ".", "a\xFF.wav"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_EQ(result.m_sErr, "tactus: none.wav: No such file or directory\n"
                             "tactus: .: is a folder, not a file\n");
    EXPECT_EQ(std::count(result.m_sOut.begin(), result.m_sOut.end(), '\n'), 1);
    OrderedJson const json = OrderedJson::parse(result.m_sOut);
    EXPECT_EQ(json["file"], "a\xEF\xBF\xBD.wav");
    EXPECT_THAT(json["uri"].get<std::string>(), testing::EndsWith("/a%FF.wav"));
}

TEST_F(ProfileTest, DamagedFileIsAWarning) {
    WriteWav(m_folder / "whole.wav", MakeSilence(10.0));
    Ffmpeg({"-i", m_folder / "whole.wav", "-c:a", "libmp3lame", "-b:a", "128k", "-write_xing", "0",
            "-id3v2_version", "0", m_folder / "whole.mp3"});
    WriteText(m_folder / "cut.mp3", ReadText(m_folder / "whole.mp3").substr(0, 100'000));
    CProcessResult const result = Profile({"cut.mp3"});
    EXPECT_EQ(result.m_nExit, 4);
    EXPECT_EQ(result.m_sErr, "tactus: cut.mp3: breaks off in the middle of a frame\n");
    EXPECT_EQ(Profile({"cut.mp3", "none.mp3"}).m_nExit, 1);
}

TEST_F(ProfileTest, OutputThatCannotBeWrittenIsFive) {
    WriteWav(m_folder / "a.wav", MakeSilence(1.0));
    CProcessSetup setup;
    setup.m_vArguments = {TACTUS_PROGRAM, "profile", "--trace", m_folder / "a.wav"};
    setup.m_sOutput = "/dev/full";
    EXPECT_EQ(RunProcess(setup).m_nExit, 5);
}

} // namespace
