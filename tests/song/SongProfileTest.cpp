// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongProfile.h"

#include "engine/PcmReader.h"
#include "engine/ProfileBuilder.h"
#include "platform/AudioDecoder.h"
#include "support/Chords.h"
#include "support/ClickTrack.h"
#include "support/FailingAllocation.h"
#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

class SongProfileTest : public testing::Test {
protected:
    std::string Write(std::vector<float> const& samples) {
        WriteWav(m_folder / "song.wav", samples);
        return m_folder / "song.wav";
    }

    CTempFolder m_folder;
};

/// Tempo of the file at `path` when all samples are there before the engine begins.
float TempoOfSamples(std::string const& path) {
    CDecodedAudio audio;
    EXPECT_EQ(CAudioDecoder().Decode(path, audio), kStatusOk);
    CPcmReader reader(audio.m_pSamples.get(), audio.m_nCount);
    CProfileResults results;
    CFingerprint print;
    CFingerprint largePrint;
    CProfileBuilder().BuildProfile(nullptr, &reader, &results, &print, &largePrint);
    EXPECT_GT(results.GetBpm(), 0.0f);
    return results.GetBpm();
}

} // namespace

TEST_F(SongProfileTest, ASongHasItsTempo) {
    CSongProfile const profile = ProfileSong(Write(MakeClickTrack(125.0, 60.0)), {});
    EXPECT_TRUE(profile.IsHeard());
    EXPECT_FALSE(profile.m_bCancelled);
    EXPECT_NEAR(profile.m_results.GetBpm(), 125.0f, 0.5f);
    EXPECT_EQ(profile.m_results.GetSampleCount(), 60 * 44100);
}

TEST_F(SongProfileTest, WhatCannotBeDecodedHasAReasonAndNoRecord) {
    CSongProfile const profile = ProfileSong(m_folder / "missing.wav", {});
    EXPECT_FALSE(profile.IsHeard());
    EXPECT_EQ(profile.m_outcome.m_problem, EAnalysisProblem::NotDecoded);
    EXPECT_EQ(profile.m_outcome.m_report.m_problem, EDecodeProblem::SystemError);
    EXPECT_EQ(profile.m_results.GetBpm(), 0.0f);
}

TEST_F(SongProfileTest, PercentsRiseTo100OnTheCallingThread) {
    std::vector<int> percents;
    bool isOtherThread = false;
    std::thread::id const caller = std::this_thread::get_id();
    (void)ProfileSong(Write(MakeClickTrack(125.0, 60.0)), {.m_progress = [&](std::uint8_t percent) {
                          percents.push_back(percent);
                          isOtherThread |= std::this_thread::get_id() != caller;
                      }});
    ASSERT_FALSE(percents.empty());
    EXPECT_TRUE(std::ranges::is_sorted(percents));
    EXPECT_EQ(percents.front(), 0);
    EXPECT_EQ(percents.back(), 100);
    EXPECT_FALSE(isOtherThread);
}

TEST_F(SongProfileTest, ACancelFromWithinEndsTheRun) {
    CCancelFlag cancel;
    std::vector<int> percents;
    CSongProfile const profile = ProfileSong(
        Write(MakeClickTrack(125.0, 60.0)), {.m_pCancel = &cancel, .m_progress = [&](auto percent) {
                                                 percents.push_back(percent);
                                                 cancel.Set();
                                             }});
    EXPECT_TRUE(profile.m_bCancelled);
    EXPECT_EQ(profile.m_results.GetBpm(), 0.0f);
    EXPECT_EQ(percents, std::vector<int>{0});
}

TEST_F(SongProfileTest, ACancelBeforehandLeavesTheFileUnread) {
    CCancelFlag cancel;
    cancel.Set();
    CSongProfile const profile =
        ProfileSong(Write(MakeClickTrack(125.0, 10.0)), {.m_pCancel = &cancel});
    EXPECT_TRUE(profile.m_bCancelled);
    EXPECT_FALSE(profile.IsHeard());
}

TEST_F(SongProfileTest, EnvelopesAreKeptOnRequestOnly) {
    std::string const path = Write(MakeClickTrack(125.0, 60.0));
    EXPECT_EQ(ProfileSong(path, {}).m_energy.GetCount(), 0);
    CSongProfile const profile = ProfileSong(path, {.m_bKeepEnvelopes = true});
    constexpr int kElements = 60 * 44100 / 256;
    EXPECT_EQ(profile.m_energy.GetCount(), kElements);
    EXPECT_EQ(profile.m_bass.GetCount(), kElements);
}

TEST_F(SongProfileTest, HarmonyIsHeardOnRequestOnly) {
    CChords chords;
    chords.PlayCadence(10, true);
    std::string const path = Write(chords.Samples());
    EXPECT_FALSE(ProfileSong(path, {}).m_harmony.has_value());
    CSongProfile const profile = ProfileSong(path, {.m_bHarmony = true});
    ASSERT_TRUE(profile.m_harmony.has_value());
    EXPECT_EQ(profile.m_harmony->m_eMode, EKeyMode::Minor);
    EXPECT_EQ(profile.m_harmony->m_nTonic, 10);
    // The file holds 16 bits, the chords more: not the same bits, but the same tones.
    CHarmonyEar ear;
    ear.Add(chords.Samples());
    EXPECT_NEAR(profile.m_harmony->m_fConfidence, ear.Finish().m_fConfidence, 0.02f);
}

TEST_F(SongProfileTest, ItIsKnownWhetherTheLengthDecided) {
    // 240 / 20 is 12, doubled three times 96: another tempo than that of the clicks.
    EXPECT_TRUE(ProfileSong(Write(MakeClickTrack(125.0, 20.0)), {}).m_bByLength);
    EXPECT_FALSE(ProfileSong(Write(MakeClickTrack(125.0, 31.0)), {}).m_bByLength);
    EXPECT_FALSE(ProfileSong(m_folder / "missing.wav", {}).m_bByLength);
}

TEST_F(SongProfileTest, AClipKeepsTheTempoThatWasHeard) {
    CSongProfile const profile = ProfileSong(Write(MakeClickTrack(125.0, 10.0)), {});
    // The grid may move either by a little.
    EXPECT_NEAR(profile.m_fHeardBpm, 125.0f, 1.5f);
    EXPECT_NEAR(profile.m_results.GetBpm(), 96.0f, 1.5f); // four measures in its ten seconds
}

TEST_F(SongProfileTest, WithoutMemoryThereIsNoTempoAndAReason) {
    CSongAudio song = LoadSong(Write(MakeClickTrack(125.0, 10.0)), nullptr);
    ASSERT_EQ(song.m_outcome.m_problem, EAnalysisProblem::None);
    CFailingAllocation const failing;
    CSongProfile const profile = ProfileAudio(std::move(song), {});
    EXPECT_EQ(profile.m_outcome.m_problem, EAnalysisProblem::NoMemory);
    EXPECT_EQ(profile.m_results.GetBpm(), 0.0f);
}

TEST_F(SongProfileTest, ASongThatChangesWhileItIsReadAheadIsNotHeard) {
    std::string const path = Write(MakeClickTrack(125.0, 60.0));
    CSongProfile const profile =
        ProfileSong(path, {.m_progress = [&](std::uint8_t) { WriteText(path, "something else"); },
                           .m_bReadAhead = true});
    EXPECT_EQ(profile.m_outcome.m_report.m_problem, EDecodeProblem::Changed);
    EXPECT_EQ(profile.m_results.GetBpm(), 0.0f);
}

TEST_F(SongProfileTest, ADamagedSongIsHeardAtTheLengthThatItTurnsOutToHave) {
    Write(MakeClickTrack(125.0, 60.0));
    Ffmpeg({"-i", m_folder / "song.wav", "-b:a", "128k", m_folder / "song.m4a"});
    std::string bytes = ReadText(m_folder / "song.m4a");
    std::ranges::fill(bytes.begin() + 300'000, bytes.begin() + 302'000, '\0');
    WriteText(m_folder / "song.m4a", bytes);
    std::vector<int> percents;
    CSongProfile const profile =
        ProfileSong(m_folder / "song.m4a",
                    {.m_progress = [&](std::uint8_t percent) { percents.push_back(percent); }});
    EXPECT_TRUE(profile.IsHeard());
    EXPECT_GT(profile.m_outcome.m_report.m_nBadPackets, 0);
    EXPECT_LT(profile.m_results.GetSampleCount(), 60 * 44100);
    EXPECT_EQ(profile.m_results.GetBpm(), TempoOfSamples(m_folder / "song.m4a"));
    // The first hearing's percents are told, and not kept.
    EXPECT_FALSE(std::ranges::is_sorted(percents));
    EXPECT_TRUE(std::ranges::is_sorted(profile.m_vPercents));
    EXPECT_EQ(profile.m_vPercents.back(), 100);
}

TEST_F(SongProfileTest, ASongThatChangesWhileItIsHeardIsNotHeard) {
    std::string const path = Write(MakeClickTrack(125.0, 60.0));
    CSongProfile const profile =
        ProfileSong(path, {.m_progress = [&](std::uint8_t) { WriteText(path, "something else"); }});
    EXPECT_EQ(profile.m_outcome.m_problem, EAnalysisProblem::NotDecoded);
    EXPECT_EQ(profile.m_outcome.m_report.m_problem, EDecodeProblem::Changed);
    EXPECT_EQ(profile.m_results.GetBpm(), 0.0f);
}

TEST_F(SongProfileTest, ReadingAheadChangesNothing) {
    std::string const path = Write(MakeClickTrack(125.0, 60.0));
    CSongProfile const plain = ProfileSong(path, {.m_bKeepEnvelopes = true});
    CSongProfile const ahead = ProfileSong(path, {.m_bKeepEnvelopes = true, .m_bReadAhead = true});
    EXPECT_TRUE(ahead.IsHeard());
    EXPECT_EQ(ahead.m_results.GetBpm(), plain.m_results.GetBpm());
    EXPECT_EQ(ahead.m_vPercents, plain.m_vPercents);
    EXPECT_EQ(ahead.m_outcome.m_report, plain.m_outcome.m_report);
    EXPECT_TRUE(std::ranges::equal(ahead.m_energy.Elements(), plain.m_energy.Elements()));
    EXPECT_TRUE(std::ranges::equal(ahead.m_bass.Elements(), plain.m_bass.Elements()));
}

TEST_F(SongProfileTest, ACancelEndsASongThatIsReadAhead) {
    CCancelFlag cancel;
    CSongProfile const profile = ProfileSong(
        Write(MakeClickTrack(125.0, 60.0)),
        {.m_pCancel = &cancel, .m_progress = [&](auto) { cancel.Set(); }, .m_bReadAhead = true});
    EXPECT_TRUE(profile.m_bCancelled);
    EXPECT_EQ(profile.m_results.GetBpm(), 0.0f);
}
