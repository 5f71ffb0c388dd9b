// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/xml/Rekordbox.h"
#include "export/MadeSong.h"
#include "export/xml/SongDrawing.h"
#include "export/xml/XmlText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

// Readers of other makers are held to whole files in tests/cli/other_readers.py.

namespace {

using testing::HasSubstr;
using testing::Not;

CTakenSong LateSong() {
    CTakenSong song = MadeSong(125.0, 0.5, 100, 2);
    song.m_outcome.m_report.m_container = EContainer::MpegAudio;
    song.m_outcome.m_report.m_startNote = EStartNote::EncoderTag;
    song.m_outcome.m_report.m_nFileRate = 44'100;
    song.m_outcome.m_report.m_nSkippedFrames = 1105;
    song.m_dIntroEnd = 8.0;
    song.m_dOutroStart = 52.0;
    return song;
}

TEST(RekordboxTest, EncoderDelayThatIsPlayedThereIsAdded) {
    // 1105 frames at 44100 Hz are 25.057 ms.
    EXPECT_NEAR(RekordboxOffset(LateSong()), 0.025057, 1e-6); // rounded here
    std::string const xml = RekordboxOf(std::vector{LateSong()}, {});
    EXPECT_THAT(xml, HasSubstr(R"(<TEMPO Inizio="0.525" Bpm="125.00" Metro="4/4" Battito="2" />)"));
    EXPECT_THAT(xml, HasSubstr(R"(Name="Intro end" Type="0" Start="8.025" Num="-1")"));
    EXPECT_THAT(xml, HasSubstr(R"(Name="Outro" Type="0" Start="52.025" Num="-1")"));
    CTakenSong song = LateSong();
    song.m_outcome.m_report.m_container = EContainer::Mp4;
    EXPECT_EQ(RekordboxOffset(song), 0.0);
}

TEST(RekordboxTest, OffsetThatIsSaidTakesItsPlace) {
    std::string const xml = RekordboxOf(std::vector{LateSong()}, {.m_offsetSeconds = -0.01});
    EXPECT_THAT(xml, HasSubstr(R"(<TEMPO Inizio="0.490")"));
}

TEST(RekordboxTest, SongsBelowTheBaseAreToldElsewhere) {
    CTakenSong song = LateSong();
    song.m_sPath = "/music/Ho\xC3\xBCse/a b.mp3";
    EXPECT_THAT(RekordboxOf(std::vector{song}, {}),
                HasSubstr(R"(Location="file://localhost/music/Ho%C3%BCse/a%20b.mp3")"));
    EXPECT_THAT(
        RekordboxOf(std::vector{song}, {.m_sBaseHere = "/music/", .m_sBaseThere = "D:\\My Music"}),
        HasSubstr(R"(Location="file://localhost/D:/My%20Music/Ho%C3%BCse/a%20b.mp3")"));
    EXPECT_THAT(RekordboxOf(std::vector{song}, {.m_sBaseHere = "/mus", .m_sBaseThere = "/x"}),
                HasSubstr(R"(Location="file://localhost/music/)"));
}

TEST(RekordboxTest, EachFolderIsAPlaylistNamedFromTheCommonOneOn) {
    std::vector<CTakenSong> songs(4, LateSong());
    songs[0].m_sPath = "/music/House/a.mp3";
    songs[1].m_sPath = "/music/c.mp3";
    songs[2].m_sPath = "/music/House/Deep/b.mp3";
    songs[3].m_sPath = "/music/House/unheard.mp3";
    songs[3].m_dSeconds = 0.0;
    std::string const xml = RekordboxOf(songs, {});
    EXPECT_THAT(xml, HasSubstr(R"(<COLLECTION Entries="3">)"));
    EXPECT_THAT(xml, HasSubstr(R"(<NODE Type="0" Name="ROOT" Count="3">)"));
    EXPECT_THAT(xml, HasSubstr("<NODE Name=\"House\" Type=\"1\" KeyType=\"0\" Entries=\"1\">\n"
                               "        <TRACK Key=\"1\" />"));
    EXPECT_THAT(xml, HasSubstr(R"(<NODE Name="music" Type="1" KeyType="0" Entries="1">)"));
    EXPECT_THAT(xml, HasSubstr(R"(<NODE Name="House/Deep" Type="1")"));
    EXPECT_THAT(xml, Not(HasSubstr("unheard")));
}

TEST(RekordboxTest, NoSongsMakeAnEmptyCollection) {
    EXPECT_THAT(RekordboxOf({}, {}), HasSubstr(R"(<COLLECTION Entries="0" />)"));
}

TEST(XmlTextTest, HoldsNothingThatXmlCannot) {
    EXPECT_EQ(XmlText("a\x01\tb\xEF\xBF\xBFz"), "a \tb z");
    EXPECT_EQ(XmlText("\xC3\xBC"), "\xC3\xBC");
    EXPECT_EQ(XmlText("a\xFF"), "a?");
}

TEST(SongDrawingTest, ShowsWhatThereIs) {
    CTakenSong song = LateSong();
    song.m_sTitle = "A < B";
    song.m_vFades = {1.0, 2.0};
    song.m_energy.m_vLevels = {0, 255, 128};
    std::string const svg = SongDrawingOf(song);
    EXPECT_THAT(svg, HasSubstr("<title>A &lt; B</title>"));
    EXPECT_THAT(svg, HasSubstr("prefers-color-scheme: dark"));
    EXPECT_THAT(svg, HasSubstr(R"(<polygon class="energy")"));
    EXPECT_THAT(svg, Not(HasSubstr(R"(<polygon class="bass")")));
    EXPECT_THAT(svg, HasSubstr(R"(<line class="measure")"));
    EXPECT_THAT(svg, HasSubstr("125.00 BPM"));
    EXPECT_THAT(SongDrawingOf(CTakenSong()), HasSubstr("</svg>"));
}

} // namespace
