// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/FileIdentity.h"
#include "cli/CommandTest.h"
#include "support/Chords.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sstream>

// The record of songs, from outside: `tactus profile`, and `tactus analyze --full`.

namespace {

using OrderedJson = nlohmann::ordered_json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class RecordTest : public CCommandTest {
protected:
    static std::vector<OrderedJson> Lines(std::string const& text) {
        std::vector<OrderedJson> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(OrderedJson::parse(line));
        }
        return lines;
    }

    /// The one record that `profile` prints of the file, with all its fields.
    OrderedJson RecordOf(std::string const& name) {
        CProcessResult const result = Tactus({"profile", "--half-beats", "--samples", name});
        EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
        std::vector<OrderedJson> const lines = Lines(result.m_sOut);
        return lines.size() == 1 ? lines.front() : OrderedJson();
    }

    /// What the schema says against the records in `text`.
    void ExpectValid(std::string const& text, std::size_t count) {
        WriteText(m_folder / "records.jsonl", text);
        CProcessSetup setup;
        setup.m_vArguments = {"/usr/bin/python3", RECORD_VALIDATOR, RECORD_SCHEMA};
        setup.m_sInput = m_folder / "records.jsonl";
        CProcessResult const result = RunProcess(setup);
        EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
        EXPECT_EQ(result.m_sOut, std::to_string(count) + " records\n");
    }

    /// Two clicks a second from 0.25 s on, at `rate`.
    void WriteClicks(std::string const& name, std::uint32_t rate, double seconds) {
        std::vector<float> samples(static_cast<std::size_t>(seconds * rate));
        for (int i = 0; 0.25 + 0.5 * i < seconds; ++i) {
            auto const start = static_cast<std::size_t>(std::lround((0.25 + 0.5 * i) * rate));
            for (std::size_t k = 0; k < rate / 100 && start + k < samples.size(); ++k) {
                double const time = static_cast<double>(k) / rate;
                samples[start + k] += static_cast<float>(0.5 * std::exp(-time / 0.002) *
                                                         std::cos(2.0 * M_PI * 2000.0 * time));
            }
        }
        WriteWav(m_folder / name, {.m_nRate = rate}, samples);
    }
};

/// Errors of `beats` against 0.25, 0.75, ... in seconds.
std::vector<double> ErrorsOf(std::vector<double> const& beats) {
    std::vector<double> errors;
    for (std::size_t i = 0; i < beats.size(); ++i) {
        errors.push_back(beats[i] - 0.25 - 0.5 * static_cast<double>(i));
    }
    return errors;
}

TEST_F(RecordTest, BeatsOfAClickTrackLieOnItsClicksAtEveryRate) {
    for (std::uint32_t const rate : {44'100U, 48'000U, 96'000U}) {
        WriteClicks("a.wav", rate, 60.0);
        OrderedJson const record = RecordOf("a.wav");
        EXPECT_EQ(record["duration"], 60.0) << rate;
        EXPECT_EQ(record["source"]["rate"], rate);
        EXPECT_EQ(record["source"]["codec"], "pcm_s16le");
        EXPECT_EQ(record["source"]["container"], "wav");
        std::vector<double> const errors = ErrorsOf(record["beats"]);
        ASSERT_EQ(errors.size(), 120U) << rate;
        double sum = 0.0;
        std::size_t near = 0;
        for (double const error : errors) {
            sum += error;
            near += std::abs(error) <= 0.003 ? 1U : 0U;
        }
        EXPECT_LT(std::abs(sum / 120.0), 0.0005) << rate;
        EXPECT_GE(near, 114U) << rate; // 95 %
        std::vector<double> const downbeats = record["downbeats"];
        ASSERT_EQ(downbeats.size(), 30U) << rate;
        // Measures of four beats, whichever begins one.
        EXPECT_NEAR(downbeats.back() - downbeats.front(), 58.0, 0.006) << rate;
        EXPECT_EQ(record["meter"]["beatsPerMeasure"], 4);
        // 0.5 to 59.5; those at both ends may lie a millisecond outside.
        EXPECT_NEAR(static_cast<double>(record["halfBeats"].size()), 120.0, 1.0) << rate;
        EXPECT_LE(record["outro"]["start"], 60.0);
    }
}

TEST_F(RecordTest, SamplesAreTheEnginesOwnPositions) {
    WriteClicks("a.wav", 44'100, 40.0);
    OrderedJson const record = RecordOf("a.wav");
    OrderedJson const trace = OrderedJson::parse(Tactus({"profile", "--trace", "a.wav"}).m_sOut);
    EXPECT_EQ(record["samples"]["grid"], trace["beats"]);
    EXPECT_EQ(record["samples"]["marks"], trace["measureMarks"]);
    EXPECT_EQ(record["samples"]["introEnd"], trace["introEnd"]);
    EXPECT_EQ(record["samples"]["fades"], trace["introFadePoints"]);
    EXPECT_EQ(record["tempo"].get<float>(), trace["bpm"].get<float>());
    // The same in seconds, to the microsecond.
    EXPECT_NEAR(record["intro"]["end"], trace["introEnd"].get<double>() / 44'100, 0.5e-6);
    EXPECT_FALSE(record["marks"].empty());
}

TEST_F(RecordTest, EveryRecordKeepsToTheSchema) {
    WriteWav(m_folder / "song.wav", MakeSong(125.0, 40.0));
    WriteClip("silence.wav");
    WriteText(m_folder / "text.wav", "no sound");
    WriteMp3("clip.mp3");
    std::vector<std::string> const paths = {"song.wav", "silence.wav", "text.wav", "clip.mp3",
                                            "none.wav"};
    std::vector<std::string> arguments = {"profile", "--half-beats", "--fingerprint", "--envelopes",
                                          "--samples"};
    arguments.insert(arguments.end(), paths.begin(), paths.end());
    CProcessResult const whole = Tactus(arguments);
    EXPECT_EQ(whole.m_nExit, 1);
    ExpectValid(whole.m_sOut, 5);
    arguments = {"analyze", "--format", "jsonl", "--full", "."};
    ExpectValid(Tactus(arguments).m_sOut, 5); // the clip's source is there as well
}

TEST_F(RecordTest, SchemaRefusesWhatIsNoRecord) {
    WriteClip("a.wav");
    std::string line = Tactus({"profile", "a.wav"}).m_sOut;
    for (auto const& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"tactus-song-1", "tactus-song-2"},
             {R"("duration":10)", R"("duration":"10")"},
             {R"("album":null,)", ""},
             {R"("fades":)", R"("tempi":)"}}) {
        std::string wrong = line;
        ASSERT_NE(wrong.find(from), std::string::npos) << line;
        WriteText(m_folder / "wrong", wrong.replace(wrong.find(from), from.size(), to));
        CProcessSetup setup;
        setup.m_vArguments = {"/usr/bin/python3", RECORD_VALIDATOR, RECORD_SCHEMA};
        setup.m_sInput = m_folder / "wrong";
        EXPECT_EQ(RunProcess(setup).m_nExit, 1) << from;
    }
}

TEST_F(RecordTest, FailuresAreRecordsWithTheirReason) {
    WriteText(m_folder / "text.wav", "no sound");
    CProcessResult const result = Tactus({"profile", "text.wav", "none.wav"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_THAT(result.m_sErr, HasSubstr("tactus: none.wav: No such file or directory\n"));
    std::vector<OrderedJson> const lines = Lines(result.m_sOut);
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_EQ(lines[0]["path"], "text.wav");
    EXPECT_EQ(lines[0]["error"]["code"], "notAudio");
    EXPECT_FALSE(lines[0].contains("tempo"));
    EXPECT_EQ(lines[1]["error"]["code"], "cannotOpen");
    EXPECT_EQ(lines[1]["error"]["message"], "No such file or directory");
}

TEST_F(RecordTest, FoldersAreSearchedAndRecordsComeInOrder) {
    WriteClip("b.wav");
    WriteClip("a.wav");
    CProcessResult const result = Tactus({"profile", "-j", "2", "--fields", "duration", "."});
    EXPECT_EQ(result.m_sErr, "");
    EXPECT_EQ(result.m_sOut, "{\"path\":\"./a.wav\",\"duration\":10}\n"
                             "{\"path\":\"./b.wav\",\"duration\":10}\n");
}

TEST_F(RecordTest, SecondRunPrintsTheSameBytesWithoutHearingAnything) {
    CTempFolder const cache;
    (void)::setenv("XDG_CACHE_HOME", cache.Path().c_str(), 1);
    WriteWav(m_folder / "a.wav", MakeSong(125.0, 40.0));
    WaitUntilChangesShow(*IdentityAt(m_folder / "a.wav"));
    std::vector<std::string> const first = {"profile",     "--half-beats", "--fingerprint",
                                            "--envelopes", "--samples",    "a.wav"};
    std::vector<std::string> fresh = first;
    fresh.insert(fresh.begin() + 1, "--no-cache");
    std::string const heard = Tactus(fresh).m_sOut;
    EXPECT_EQ(Tactus(first).m_sOut, heard);
    EXPECT_EQ(Tactus(first).m_sOut, heard);
    CProcessResult const again = Tactus(
        {"analyze", "--format", "jsonl", "--fields", "envelopes", "--progress", "json", "a.wav"});
    EXPECT_THAT(again.m_sErr, HasSubstr(R"("heard":1,)"));
    EXPECT_THAT(again.m_sErr, HasSubstr(R"("rate":null)")); // nothing was listened to
    EXPECT_EQ(Tactus({"analyze", "--format", "jsonl", "--full", "a.wav"}).m_sOut,
              Tactus({"profile", "--no-cache", "a.wav"}).m_sOut);
}

TEST_F(RecordTest, WhatIsKeptOfLessIsHeardAgain) {
    CTempFolder const cache;
    (void)::setenv("XDG_CACHE_HOME", cache.Path().c_str(), 1);
    WriteClip("a.wav");
    WaitUntilChangesShow(*IdentityAt(m_folder / "a.wav"));
    ASSERT_EQ(Tactus({"analyze", "a.wav"}).m_nExit, 0); // a tempo alone
    std::string const full = Tactus({"profile", "a.wav"}).m_sOut;
    EXPECT_EQ(full, Tactus({"profile", "--no-cache", "a.wav"}).m_sOut);
    EXPECT_EQ(Tactus({"profile", "--envelopes", "a.wav"}).m_sOut,
              Tactus({"profile", "--no-cache", "--envelopes", "a.wav"}).m_sOut);
    EXPECT_EQ(Tactus({"profile", "a.wav"}).m_sOut, full);
}

TEST_F(RecordTest, WhatIsHeardForLessTakesNothingAway) {
    CTempFolder const cache;
    (void)::setenv("XDG_CACHE_HOME", cache.Path().c_str(), 1);
    WriteClip("a.wav");
    WaitUntilChangesShow(*IdentityAt(m_folder / "a.wav"));
    std::string const whole = Tactus({"profile", "--envelopes", "a.wav"}).m_sOut;
    // The key isn't remembered, so these hear the file again.
    ASSERT_EQ(Tactus({"analyze", "--write-key", "a.wav"}).m_nExit, 0);
    ASSERT_EQ(Tactus({"analyze", "--write-key", "--format", "jsonl", "--full", "a.wav"}).m_nExit,
              0);
    CProcessResult const again = Tactus(
        {"analyze", "--format", "jsonl", "--fields", "envelopes", "--progress", "json", "a.wav"});
    EXPECT_THAT(again.m_sErr, HasSubstr(R"("rate":null)"));
    EXPECT_EQ(Tactus({"profile", "--envelopes", "a.wav"}).m_sOut, whole);
}

TEST_F(RecordTest, SongFromStandardInputHasNoNames) {
    WriteClip("a.wav");
    CProcessSetup setup = Prepare({"profile", "--fields", "title,duration", "-"});
    setup.m_sInput = m_folder / "a.wav";
    EXPECT_EQ(RunProcess(setup).m_sOut, "{\"path\":\"-\",\"title\":null,\"duration\":10}\n");
}

TEST_F(RecordTest, AnalyzeTellsTheTagsTempoAndKeepsIt) {
    WriteMp3("a.mp3");
    ASSERT_EQ(Tactus({"tag", "set", "a.mp3", "TBPM", "174"}).m_nExit, 0);
    CProcessResult const result =
        Tactus({"analyze", "--format", "jsonl", "--full", "--write", "-q", "a.mp3"});
    EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
    std::vector<OrderedJson> const lines = Lines(result.m_sOut);
    ASSERT_THAT(lines, SizeIs(1));
    EXPECT_EQ(lines[0]["tempo"], 174);
    EXPECT_EQ(lines[0]["tempoSource"], "tag");
    EXPECT_EQ(lines[0]["tagTempo"], 174);
    EXPECT_NEAR(lines[0]["heardTempo"], 96.0, 1.0);
    EXPECT_EQ(lines[0]["source"]["codec"], "mp3");
    EXPECT_THAT(Tactus({"tag", "get", "a.mp3", "TBPM"}).m_sOut, HasSubstr("174"));
}

TEST_F(RecordTest, ChosenFieldsComeAlone) {
    WriteClip("a.wav");
    CProcessResult const result =
        Tactus({"analyze", "--format", "json", "--fields", "tempoSource,duration", "a.wav"});
    EXPECT_EQ(result.m_sOut,
              "[\n{\"path\":\"a.wav\",\"duration\":10,\"tempoSource\":\"length\"}\n]\n");
    CProcessResult const wrong = Tactus({"profile", "--fields", "tempo,bmp", "a.wav"});
    EXPECT_EQ(wrong.m_nExit, 2);
    EXPECT_THAT(wrong.m_sErr, HasSubstr("'bmp' is none of schema"));
    EXPECT_EQ(Tactus({"analyze", "--full", "a.wav"}).m_nExit, 2);
}

TEST_F(RecordTest, HarmonyIsPrintedInAllNotations) {
    CChords chords;
    chords.PlayCadence(6, true); // F sharp minor: 11A, 4m
    WriteWav(m_folder / "a.wav", chords.Samples());
    OrderedJson const harmony = RecordOf("a.wav")["harmony"];
    EXPECT_EQ(harmony["plain"], "F#m");
    EXPECT_EQ(harmony["camelot"], "11A");
    EXPECT_EQ(harmony["openKey"], "4m");
    EXPECT_GT(harmony["confidence"], 0.5);
}

TEST_F(RecordTest, OneFileUnderTwoNamesHasTwoRecords) {
    WriteClip("a.wav");
    std::filesystem::create_hard_link(m_folder / "a.wav", m_folder / "b.wav");
    CProcessResult const result = Tactus({"profile", "--fields", "tempo", "a.wav", "b.wav"});
    std::vector<OrderedJson> const lines = Lines(result.m_sOut);
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_EQ(lines[0]["path"], "a.wav");
    EXPECT_EQ(lines[1]["path"], "b.wav");
    EXPECT_EQ(lines[0]["tempo"], lines[1]["tempo"]);
}

TEST_F(RecordTest, RecordsGoToAFileAndReplaceRecordsAlone) {
    WriteClip("a.wav");
    ASSERT_EQ(Tactus({"profile", "-o", "r.jsonl", "a.wav"}).m_nExit, 0);
    std::string const first = ReadText(m_folder / "r.jsonl");
    EXPECT_THAT(first, testing::StartsWith(R"({"schema":"tactus-song-1")"));
    EXPECT_EQ(Tactus({"profile", "-o", "r.jsonl", "a.wav"}).m_nExit, 0);
    EXPECT_EQ(ReadText(m_folder / "r.jsonl"), first);
    WriteText(m_folder / "letter.txt", "dear");
    EXPECT_NE(Tactus({"profile", "-o", "letter.txt", "a.wav"}).m_nExit, 0);
    EXPECT_EQ(ReadText(m_folder / "letter.txt"), "dear");
}

} // namespace
