// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"
#include "tactus/tactus.h"
#include "tactus/tactus_c.h"

#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

using CSongPtr = std::unique_ptr<tactus_song, decltype(&tactus_free_song)>;

CSongPtr AnalyzeFile(std::string const& path, tactus_progress progress = nullptr,
                     void* user = nullptr) {
    return {tactus_analyze_file(path.c_str(), progress, user), tactus_free_song};
}

} // namespace

TEST(LibraryCTest, SaysWhatTheOtherFaceSays) {
    CTempFolder const folder;
    WriteWav(folder / "song.wav", MakeSong(125.0, 60.0));
    tactus::Song const expected = tactus::analyze(folder / "song.wav");
    CSongPtr const song = AnalyzeFile(folder / "song.wav");
    ASSERT_NE(song, nullptr);
    EXPECT_EQ(song->problem, TACTUS_PROBLEM_NONE);
    EXPECT_EQ(song->tempo, expected.tempo);
    EXPECT_EQ(song->seconds, 60.0);
    EXPECT_EQ(song->tonic, expected.key ? expected.key->tonic : -1);
    ASSERT_EQ(song->measures.count, expected.measures.size());
    EXPECT_TRUE(
        std::equal(expected.measures.begin(), expected.measures.end(), song->measures.values));
    EXPECT_EQ(song->energy_accents.count, 8U);
    EXPECT_EQ(song->fade_points.count, 12U);
}

TEST(LibraryCTest, BeatsReadingsAndTheRecordAreTold) {
    CTempFolder const folder;
    WriteWav(folder / "song.wav", MakeSong(125.0, 60.0));
    tactus::Song const expected = tactus::analyze(folder / "song.wav");
    CSongPtr const song = AnalyzeFile(folder / "song.wav");
    ASSERT_NE(song, nullptr);
    ASSERT_EQ(song->beats.count, expected.beats.size());
    EXPECT_TRUE(std::equal(expected.beats.begin(), expected.beats.end(), song->beats.values));
    EXPECT_EQ(song->downbeats.count, expected.downbeats.size());
    EXPECT_EQ(song->beats_per_measure, expected.beatsPerMeasure);
    EXPECT_EQ(song->harmony_tonic, expected.harmony ? expected.harmony->key.tonic : -1);
    ASSERT_EQ(song->candidate_count, expected.candidates.size());
    ASSERT_GT(song->candidate_count, 0U);
    EXPECT_EQ(song->candidates[0].tempo, expected.candidates[0].tempo);
    EXPECT_EQ(song->confidence, expected.confidence);

    using CTextPtr = std::unique_ptr<char, decltype(&tactus_free_text)>;
    CTextPtr const json(tactus_to_json(song.get(), "b.wav", nullptr), tactus_free_text);
    ASSERT_NE(json, nullptr);
    EXPECT_EQ(json.get(), tactus::toJson(expected, "b.wav"));
    tactus_free_text(nullptr);
}

TEST(LibraryCTest, SamplesAreHeard) {
    std::vector<float> const samples = MakeClickTrack(125.0, 60.0);
    CSongPtr const song(
        tactus_analyze_samples(samples.data(), samples.size(), 44100, nullptr, nullptr),
        tactus_free_song);
    ASSERT_NE(song, nullptr);
    EXPECT_NEAR(song->tempo, 125.0, 0.5);
}

TEST(LibraryCTest, TheProgressFunctionMayStop) {
    CTempFolder const folder;
    WriteWav(folder / "song.wav", MakeClickTrack(125.0, 60.0));
    int calls = 0;
    auto const stopAtOnce = [](int, void* user) {
        ++*static_cast<int*>(user);
        return 1;
    };
    CSongPtr const song = AnalyzeFile(folder / "song.wav", stopAtOnce, &calls);
    ASSERT_NE(song, nullptr);
    EXPECT_EQ(song->problem, TACTUS_PROBLEM_CANCELLED);
    EXPECT_EQ(calls, 1);
}

TEST(LibraryCTest, WhatIsNotThereIsEmptyAndNotNull) {
    CTempFolder const folder;
    std::string const missing = folder / "missing.mp3";
    CSongPtr const song = AnalyzeFile(missing);
    ASSERT_NE(song, nullptr);
    EXPECT_EQ(song->problem, TACTUS_PROBLEM_CANNOT_OPEN);
    EXPECT_EQ(song->measures.values, nullptr);
    EXPECT_EQ(tactus_store_tempo(missing.c_str(), song.get(), 120.0), TACTUS_REFUSAL_NOT_MP3);

    std::unique_ptr<tactus_tags, decltype(&tactus_free_tags)> const tags(
        tactus_read_tags(missing.c_str()), tactus_free_tags);
    ASSERT_NE(tags, nullptr);
    EXPECT_STREQ(tags->title, "");
    EXPECT_STREQ(tags->album, "");
    EXPECT_STREQ(tags->key, "");
    EXPECT_EQ(tags->tempo, 0.0);
}
