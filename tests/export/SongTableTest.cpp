// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/SongTable.h"
#include "export/Columns.h"
#include "export/MadeSong.h"
#include "export/Playlist.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

TEST(SongTableTest, FieldsAreQuotedWhereTheyHaveTo) {
    CTakenSong song = MadeSong(120.0, 0.5, 4);
    song.m_sTitle = "a \"b\";\nc";
    song.m_sArtist = "plain, here";
    CTableShape shape{.m_vColumns = {FindColumn("title"), FindColumn("artist"), FindColumn("tempo"),
                                     FindColumn("album"), FindColumn("beats")},
                      .m_cDelimiter = ';',
                      .m_bMark = true};
    EXPECT_EQ(SongTableOf(std::vector{song}, shape), "\xEF\xBB\xBFtitle;artist;tempo;album;beats\n"
                                                     "\"a \"\"b\"\";\nc\";plain, here;120.00;;4\n");
}

TEST(SongTableTest, WhatIsNotKnownIsEmpty) {
    CTakenSong unheard;
    unheard.m_sPath = "x.mp3";
    for (CColumn const& column : Columns()) {
        std::string const text = TextOf(column, column.m_pCellOf(unheard));
        bool const isName =
            column.m_sName == "path" || column.m_sName == "uri" || column.m_sName == "file";
        EXPECT_EQ(text.empty(), !isName) << column.m_sName << ": " << text;
    }
}

TEST(SongTableTest, ColumnsHaveNamesOfTheirOwn) {
    for (CColumn const& column : Columns()) {
        EXPECT_EQ(FindColumn(column.m_sName), &column);
    }
    EXPECT_EQ(FindColumn("bpm"), nullptr);
}

TEST(PlaylistTest, SongsHaveTheirLengthAndName) {
    std::vector<CTakenSong> songs(2, MadeSong(120.0, 0.5, 4));
    songs[0].m_dSeconds = 59.6;
    songs[0].m_sTitle = "Title\nin two";
    songs[0].m_sArtist = "Artist";
    songs[1].m_sPath = "/music/#1.mp3";
    EXPECT_EQ(PlaylistOf(songs, ""), "#EXTM3U\n# made by Tactus\n"
                                     "#EXTINF:60,Artist - Title in two\n/music/House/song.mp3\n"
                                     "#EXTINF:60,#1.mp3\n/music/#1.mp3\n");
    EXPECT_EQ(PlaylistOf(songs, "/music"), "#EXTM3U\n# made by Tactus\n"
                                           "#EXTINF:60,Artist - Title in two\nHouse/song.mp3\n"
                                           "#EXTINF:60,#1.mp3\n./#1.mp3\n");
}

TEST(PlaylistTest, NamesThatAListCannotHoldAreUris) {
    std::vector<CTakenSong> songs(3, MadeSong(120.0, 0.5, 4));
    songs[0].m_sPath = "/a\nb.mp3";
    songs[1].m_sPath = "/a\xFF.mp3";
    songs[2].m_dSeconds = 0.0; // couldn't be heard
    std::string const list = PlaylistOf(songs, "");
    EXPECT_NE(list.find("\nfile:///a%0Ab.mp3\n"), std::string::npos);
    EXPECT_NE(list.find("\nfile:///a%FF.mp3\n"), std::string::npos);
    EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 6);
}

} // namespace
