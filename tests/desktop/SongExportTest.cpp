// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/SongExport.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

/// Four seconds at 120 BPM in 4/4.
CTakenSong Song() {
    CTakenSong song;
    song.m_sPath = "/m/a.mp3";
    song.m_sTitle = "Song";
    song.m_dSeconds = 4.0;
    song.m_dTempo = 120.0;
    song.m_beats.m_nBeatsPerMeasure = 4;
    for (int i = 0; i < 16; ++i) {
        song.m_beats.m_vHalfBeats.push_back(
            {.m_dSeconds = i / 4.0,
             .m_nPlace = static_cast<std::uint8_t>(i % 2 == 0 ? i / 2 % 4 + 1 : 0)});
    }
    return song;
}

std::string TextOf(ESongFormat format, std::size_t songs = 1) {
    return SongsText(std::vector<CTakenSong>(songs, Song()), format, "1.2");
}

std::size_t CountOf(std::string const& text, std::string const& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace

TEST(SongExportTest, SomeFormatsHaveOneFileForAllSongs) {
    std::string const collection = TextOf(ESongFormat::Rekordbox, 2);
    EXPECT_EQ(CountOf(collection, "<TEMPO Inizio=\"0.000\" Bpm=\"120.00\""), 2U) << collection;
    EXPECT_EQ(CountOf(collection, "Version=\"1.2\""), 1U);
    EXPECT_EQ(CountOf(TextOf(ESongFormat::Playlist, 2), "#EXTINF:4,Song\n/m/a.mp3\n"), 2U);
    EXPECT_EQ(CountOf(TextOf(ESongFormat::Record, 2), "\n"), 2U);
    EXPECT_FALSE(IsOneASong(ESongFormat::Record));
}

TEST(SongExportTest, OthersHaveOneForEach) {
    EXPECT_TRUE(TextOf(ESongFormat::Labels).starts_with("0.000000\t0.000000\t1.1 downbeat\n"));
    EXPECT_TRUE(TextOf(ESongFormat::Midi).starts_with("MThd"));
    EXPECT_TRUE(TextOf(ESongFormat::Jams).ends_with("}\n"));
    EXPECT_NE(TextOf(ESongFormat::Drawing).find("<svg"), std::string::npos);
    for (ESongFormat const format :
         {ESongFormat::Labels, ESongFormat::Midi, ESongFormat::Jams, ESongFormat::Drawing}) {
        EXPECT_TRUE(IsOneASong(format));
        EXPECT_EQ(TextOf(format, 0), "");
    }
}

TEST(SongExportTest, OnlyDrawingsNeedEnvelopes) {
    EXPECT_TRUE(NeedsEnvelopes(ESongFormat::Drawing));
    EXPECT_FALSE(NeedsEnvelopes(ESongFormat::Jams));
}
