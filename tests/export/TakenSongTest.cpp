// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/TakenSong.h"

#include <gtest/gtest.h>

namespace {

/// Ten seconds at 48 kHz, with silence behind them for the engine: it hears 480,000 samples at
/// 44100 Hz, 10.88 s.
CHeardSong HeardAt48() {
    CHeardSong heard;
    heard.m_outcome.m_report.m_nFileRate = 48'000;
    heard.m_outcome.m_report.m_identity.m_nSize = 160'000;
    heard.m_sTempo = "120.00";
    heard.m_facts = CSongFacts();
    CSongFacts& facts = *heard.m_facts;
    facts.m_nFrames = 480'000;
    facts.m_fBpm = 120.25f;
    facts.m_positions = {.m_vGrid = {0, 11'025},
                         .m_vMarks = {0},
                         .m_nIntroEnd = 44'100,
                         .m_nOutroStart = 470'000,
                         .m_vFades = {22'050, 450'000},
                         .m_vIntroMixes = {88'200},
                         .m_vOutroMixes = {441'000, 441'001}};
    return heard;
}

TEST(TakenSongTest, SecondsAreTrueAtEveryRate) {
    CTakenSong const song = TakenSongOf("a/b.wav", {}, HeardAt48());
    EXPECT_EQ(song.m_dSeconds, 10.0);
    EXPECT_EQ(song.m_dBitsPerSecond, 128'000.0);
    EXPECT_EQ(song.m_dIntroEnd, 1.0);
    EXPECT_EQ(song.m_vIntroMixes, std::vector{2.0});
}

TEST(TakenSongTest, NothingLiesBehindTheSong) {
    CTakenSong const song = TakenSongOf("a/b.wav", {}, HeardAt48());
    EXPECT_EQ(song.m_dOutroStart, 10.0);
    EXPECT_EQ(song.m_vFades, std::vector{0.5});
    EXPECT_EQ(song.m_vOutroMixes, std::vector{10.0}); // the end itself counts
    EXPECT_EQ(song.m_positions, HeardAt48().m_facts->m_positions);
}

TEST(TakenSongTest, TempoIsTheOneHeardToTheLastBit) {
    CTakenSong const song = TakenSongOf("b.wav", {}, HeardAt48());
    EXPECT_EQ(song.m_dTempo, 120.25);
    EXPECT_EQ(song.m_dHeardTempo, 120.25);
    EXPECT_EQ(song.m_tempoSource, ETempoSource::Analysis);
    CHeardSong heard = HeardAt48();
    heard.m_facts.reset();
    EXPECT_EQ(TakenSongOf("b.wav", {}, heard).m_dTempo, 120.0);
}

TEST(TakenSongTest, SongWithoutABeatSaysSo) {
    CHeardSong heard = HeardAt48();
    heard.m_facts->m_fBpm = 0.0f;
    CTakenSong const song = TakenSongOf("b.wav", {}, heard);
    EXPECT_EQ(song.m_outcome.m_problem, EAnalysisProblem::NoBeat);
    EXPECT_EQ(song.m_tempoSource, ETempoSource::None);
    EXPECT_EQ(song.m_dTempo, 0.0);
    EXPECT_EQ(song.m_dSeconds, 10.0);
}

TEST(TakenSongTest, SongThatCannotBeHeardHasItsNamesAndTheReason) {
    CHeardSong heard = HeardAt48();
    heard.m_outcome.m_problem = EAnalysisProblem::NotDecoded;
    heard.m_outcome.m_report.m_problem = EDecodeProblem::NotAudio;
    CShownTags tags;
    tags.m_sTitle = "title";
    tags.m_tempo = {.m_worth = ETagTempo::TimesTen, .m_dBpm = 128.0};
    CTakenSong const song = TakenSongOf("/music/b.wav", tags, heard);
    EXPECT_EQ(song.m_sPath, "/music/b.wav");
    EXPECT_EQ(song.m_sFolder, "/music");
    EXPECT_EQ(song.m_sTitle, "title");
    EXPECT_EQ(song.m_dTagTempo, 128.0);
    EXPECT_EQ(song.m_outcome, heard.m_outcome);
    EXPECT_EQ(song.m_dSeconds, 0.0);
    EXPECT_EQ(song.m_dTempo, 0.0);
}

TEST(TakenSongTest, PathWithoutAFolderHasNone) {
    EXPECT_EQ(TakenSongOf("b.wav", {}, HeardAt48()).m_sFolder, "");
    EXPECT_EQ(TakenSongOf("-", {}, HeardAt48()).m_sFolder, "");
}

TEST(TakenSongTest, TempoThatNoSongHasIsNotTaken) {
    CShownTags tags;
    tags.m_tempo = {.m_worth = ETagTempo::Unlikely, .m_dBpm = 5.0};
    EXPECT_EQ(TakenSongOf("b.wav", tags, HeardAt48()).m_dTagTempo, 0.0);
}

TEST(TakenSongTest, KeysAreWrittenAsInTags) {
    EXPECT_EQ(PlainKey({}), "");
    EXPECT_EQ(PlainKey({.m_eMode = EKeyMode::Minor, .m_nTonic = 9}), "Am");
    EXPECT_EQ(PlainKey({.m_eMode = EKeyMode::Major, .m_nTonic = 6}), "F#");
}

} // namespace
