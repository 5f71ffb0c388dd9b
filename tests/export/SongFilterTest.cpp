// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/SongFilter.h"
#include "export/MadeSong.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

CTakenSong SongInAMinor() {
    CTakenSong song = MadeSong(125.0, 0.5, 8);
    song.m_sTitle = "Some Title";
    song.m_harmony = MadeKey(EKeyMode::Minor, 9); // 8A
    return song;
}

bool Accepts(std::string_view text, CTakenSong const& song) {
    CFilterProblem problem;
    auto const filter = CSongFilter::Parse(text, problem);
    EXPECT_TRUE(filter) << text << ": " << problem.m_sWord;
    return filter && filter->Accepts(song);
}

void ExpectProblem(std::string_view text, EFilterProblem expected, std::string const& word) {
    CFilterProblem problem;
    EXPECT_FALSE(CSongFilter::Parse(text, problem)) << text;
    EXPECT_EQ(problem.m_problem, expected) << text;
    EXPECT_EQ(problem.m_sWord, word) << text;
}

TEST(SongFilterTest, NumbersAreCompared) {
    CTakenSong const song = SongInAMinor();
    for (char const* text : {"tempo=125", "tempo == 125.0", "tempo>=125", "tempo<=125", "tempo>124",
                             "tempo<126", "tempo!=124", "tempo>=120 and tempo<=130"}) {
        EXPECT_TRUE(Accepts(text, song)) << text;
    }
    for (char const* text : {"tempo!=125", "tempo>125", "tempo<125", "tempo=124.99"}) {
        EXPECT_FALSE(Accepts(text, song)) << text;
    }
}

TEST(SongFilterTest, AndBindsCloserThanOrAndBracketsCloser) {
    CTakenSong const song = SongInAMinor();
    EXPECT_TRUE(Accepts("tempo=125 or tempo=1 and tempo=2", song));
    EXPECT_FALSE(Accepts("(tempo=125 or tempo=1) and tempo=2", song));
    EXPECT_TRUE(Accepts("not (tempo=1) AND NOT tempo=2", song));
}

TEST(SongFilterTest, TextsAreEqualOrHoldAPart) {
    CTakenSong const song = SongInAMinor();
    EXPECT_TRUE(Accepts("title='Some Title'", song));
    EXPECT_FALSE(Accepts("title='some title'", song));
    EXPECT_TRUE(Accepts("title~\"ME tit\"", song));
    EXPECT_FALSE(Accepts("title~other", song));
}

TEST(SongFilterTest, APartIsFoundInTheOtherCaseOfEveryScript) {
    CTakenSong song = SongInAMinor();
    song.m_sTitle = "BJÖRK и Песня";
    EXPECT_TRUE(Accepts("title~björk", song));
    EXPECT_TRUE(Accepts("title~ПЕСНЯ", song));
    EXPECT_FALSE(Accepts("title~bjork", song));
}

TEST(SongFilterTest, WhatIsMissingIsInNoComparisonButThatWithNothing) {
    CTakenSong const song = SongInAMinor();
    EXPECT_FALSE(Accepts("artist~a or artist!=a or artist<a", song));
    EXPECT_TRUE(Accepts("artist=''", song));
    EXPECT_FALSE(Accepts("artist!=''", song));
    EXPECT_TRUE(Accepts("title!='' and tagTempo='' and tempo!=''", song));
}

TEST(SongFilterTest, KeysThatMixWellAreNeighboursOnTheWheel) {
    CTakenSong const song = SongInAMinor();
    for (char const* key : {"8A", "7a", "9A", "8B", "1m", "12m", "1d", "Am", "C", "Em", "dm"}) {
        EXPECT_TRUE(Accepts(std::string("harmony~") + key, song)) << key;
        EXPECT_TRUE(Accepts(std::string("key~") + key, song)) << key;
    }
    for (char const* key : {"10A", "9B", "7B", "2A", "A"}) {
        EXPECT_FALSE(Accepts(std::string("harmony~") + key, song)) << key;
    }
    EXPECT_TRUE(Accepts("harmony=8A and key=Am and openKey=1m", song));
    EXPECT_FALSE(Accepts("harmony~8A", CTakenSong()));
}

TEST(SongFilterTest, WhatCannotBeReadIsNamed) {
    ExpectProblem("", EFilterProblem::UnknownColumn, "");
    ExpectProblem("bpm>3", EFilterProblem::UnknownColumn, "bpm");
    ExpectProblem("tempo 3", EFilterProblem::NoOperator, "3");
    ExpectProblem("tempo =< 3", EFilterProblem::NoOperator, "=<");
    ExpectProblem("tempo>", EFilterProblem::NoValue, ">");
    ExpectProblem("tempo>x", EFilterProblem::NoNumber, "x");
    ExpectProblem("tempo~3", EFilterProblem::NotForNumbers, "tempo");
    ExpectProblem("harmony~13A", EFilterProblem::NoKey, "13A");
    ExpectProblem("(tempo>3", EFilterProblem::NoClosing, "");
    ExpectProblem("title='x", EFilterProblem::NoClosing, "title='x");
    ExpectProblem("tempo>3)", EFilterProblem::Unexpected, ")");
    ExpectProblem("tempo>3 tempo<4", EFilterProblem::Unexpected, "tempo");
    ExpectProblem(std::string(1000, '('), EFilterProblem::Unexpected, "(");
}

TEST(SongOrderTest, SortsByColumnsAndTellsNumbersInTexts) {
    std::vector<CTakenSong> songs(4);
    songs[0].m_sPath = "none";
    songs[1].m_sPath = "10A";
    songs[1].m_harmony = MadeKey(EKeyMode::Minor, 11);
    songs[2].m_sPath = "2A";
    songs[2].m_harmony = MadeKey(EKeyMode::Minor, 3);
    songs[3].m_sPath = "2A again";
    songs[3].m_harmony = songs[2].m_harmony;
    CFilterProblem problem;
    auto const paths = [&songs] {
        std::vector<std::string> result;
        for (CTakenSong const& song : songs) {
            result.push_back(song.m_sPath);
        }
        return result;
    };
    CSongOrder::Parse("harmony", problem)->Sort(songs);
    EXPECT_THAT(paths(), testing::ElementsAre("2A", "2A again", "10A", "none"));
    CSongOrder::Parse("-harmony,-path", problem)->Sort(songs);
    EXPECT_THAT(paths(), testing::ElementsAre("10A", "2A again", "2A", "none"));
    EXPECT_FALSE(CSongOrder::Parse("tempo,", problem));
    EXPECT_EQ(problem.m_problem, EFilterProblem::UnknownColumn);
    EXPECT_FALSE(CSongOrder::Parse("-bpm", problem));
    EXPECT_EQ(problem.m_sWord, "bpm");
}

} // namespace
