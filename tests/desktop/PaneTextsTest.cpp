// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/PaneTexts.h"

#include "Language.h"
#include "song/BeatTimes.h"

#include <gtest/gtest.h>
#include <set>

namespace {

/// A minute at 120 BPM: half beats every 11025 samples, the downbeat at 0.
CSongPicture Minute() {
    CSongPicture picture;
    picture.m_nSamples = 60 * 44100;
    picture.m_fBpm = 120.0f;
    picture.m_nTonic = 9;
    picture.m_nMode = 1;
    picture.m_outcome.m_report.m_container = EContainer::MpegAudio;
    CBeatTimes heard{.m_vHalfBeats = {}, .m_nBeatsPerMeasure = 4};
    for (int i = 0; i < 240; ++i) {
        heard.m_vHalfBeats.push_back(
            {.m_dSeconds = i / 4.0,
             .m_nPlace = static_cast<std::uint8_t>(i % 2 == 0 ? i / 2 % 4 + 1 : 0)});
    }
    picture.m_grid = CBeatGrid(heard, picture.m_nSamples);
    return picture;
}

std::string Text(QString const& text) {
    return text.toStdString();
}

} // namespace

TEST(PaneTextsTest, PlacesHaveMinutesSecondsAndTenths) {
    EXPECT_EQ(Text(PlaceText(0)), "0:00.0");
    EXPECT_EQ(Text(PlaceText(44100 * 12 + 17640)), "0:12.4"); // 0.4 s are 17640 samples
    EXPECT_EQ(Text(PlaceText(44100 * 60 - 1)), "0:59.9");
    EXPECT_EQ(Text(PlaceText(44100LL * 3 * 3600)), "180:00.0");
    EXPECT_EQ(Text(PlaceText(-5)), "0:00.0");
}

TEST(PaneTextsTest, LengthsAreRoundedToSeconds) {
    EXPECT_EQ(Text(LengthText(288.4)), "4:48");
    EXPECT_EQ(Text(LengthText(59.6)), "1:00");
}

TEST(PaneTextsTest, FactsAreKindLengthKeyAndMetre) {
    CSongPicture picture = Minute();
    EXPECT_EQ(Text(FactsText(picture)), "MP3 · 1:00 · A minor (8A) · 4/4");
    picture.m_nMode = 0;
    picture.m_grid = {};
    EXPECT_EQ(Text(FactsText(picture)), "MP3 · 1:00");
    picture.m_outcome.m_report.m_identity.m_nSize = 1'440'000; // 60 s of 24,000 bytes each
    EXPECT_EQ(Text(FactsText(picture)), "MP3 192 kbit/s · 1:00");
    // With half a second that the encoder added at the ends.
    picture.m_outcome.m_report.m_dHeardSeconds = 60.5;
    picture.m_outcome.m_report.m_identity.m_nSize = 1'452'000;
    EXPECT_EQ(Text(FactsText(picture)), "MP3 192 kbit/s · 1:00");
}

TEST(PaneTextsTest, WhatTheTagSaysIsToldInWords) {
    EXPECT_EQ(Text(TagText("94.99")), "in the tag: 94.99");
    EXPECT_EQ(Text(TagText("")), "no tempo in the tag");
}

TEST(PaneTextsTest, EveryKeyHasANameOfItsOwn) {
    std::set<std::string> names;
    for (std::uint16_t tonic = 0; tonic < 12; ++tonic) {
        names.insert(Text(SpokenKey(tonic, 1)));
        names.insert(Text(SpokenKey(tonic, 2)));
    }
    EXPECT_EQ(names.size(), 24U);
    EXPECT_EQ(names.count(""), 0U);
    EXPECT_EQ(Text(SpokenKey(0, 2)), "C major");
    EXPECT_EQ(Text(SpokenKey(11, 1)), "B minor");
    EXPECT_EQ(Text(SpokenKey(3, 0)), "");
    EXPECT_EQ(Text(SpokenKey(12, 1)), "");
}

TEST(PaneTextsTest, APlaceTellsItsMeasureAndBeat) {
    CSongPicture const picture = Minute();
    // A measure takes 88200 samples, a beat 22050: 12.25 s is the second beat of measure 7.
    EXPECT_EQ(Text(MusicalPlaceText(picture, 540225 + 22050)), "0:12.7 · measure 7, beat 2");
    EXPECT_EQ(Text(MusicalPlaceText(picture, 0)), "0:00.0 · measure 1, beat 1");
}

TEST(PaneTextsTest, APictureIsToldAsAWhole) {
    CLanguage const english(QLocale(QLocale::English, QLocale::UnitedStates));
    CSongPicture picture = Minute();
    picture.m_nIntroEnd = 44100;
    picture.m_nOutroStart = 50 * 44100;
    picture.m_vMixesIn = {0, 88200};
    picture.m_vMixesOut = {49 * 44100};
    picture.m_vFades = {44100, 5 * 44100};
    picture.m_fAccentsA = {1.0f, 0.0f, 0.5f, 0.0f, 0.25f, 0.0f, 0.0f, 0.0f};
    EXPECT_EQ(Text(PictureText(picture)),
              "MP3 · 1:00 · A minor (8A) · 4/4 · 120.00 BPM found · 30 measures "
              "The intro ends at 0:01.0. The outro starts at 0:50.0. "
              "2 mix points into the song: 0:00.0, 0:02.0. 1 mix point out of it: 0:49.0. "
              "The song before fades out from 0:01.0 to 0:05.0. "
              "Accents A, in percent for each half beat: 100 0 50 0 25 0 0 0.");
}

TEST(PaneTextsTest, ASongWithoutABeatSaysSo) {
    CSongPicture picture;
    picture.m_nSamples = 44100;
    EXPECT_EQ(Text(TempoLineText(picture)), "No beat was found.");
    EXPECT_EQ(Text(MusicalPlaceText(picture, 22050)), "0:00.5");
}

TEST(PaneTextsTest, GermanHasItsOwnNamesForKeys) {
    CLanguage const german(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(Text(SpokenKey(11, 2)), "H-Dur");
    EXPECT_EQ(Text(SpokenKey(10, 2)), "B-Dur");
    EXPECT_EQ(Text(SpokenKey(9, 1)), "a-Moll");
    EXPECT_EQ(Text(MusicalPlaceText(Minute(), 88200)), "0:02,0 · Takt 2, Schlag 1");
}

TEST(PaneTextsTest, OtherDigitsAreUsedThroughout) {
    CLanguage const arabic(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(Text(PlaceText(44100 * 62 + 4410)), "١:٠٢٫١");
    EXPECT_EQ(Text(TempoLineText(Minute())),
              "\u200F\u2068وُجدت ١٢٠٫٠٠ BPM\u2069 · \u2068٣٠ مازورة\u2069");
    EXPECT_EQ(Text(MusicalPlaceText(Minute(), 0)),
              "\u200F\u2068٠:٠٠٫٠\u2069 · \u2068المازورة ١، النبضة ١\u2069");
}

// Each fact has its own direction, and codes that begin with a figure keep it in front.
TEST(PaneTextsTest, FactsKeepTheirOrderFromRightToLeft) {
    CLanguage const arabic(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(Text(FactsText(Minute())),
              "\u200F\u2068MP3\u2069 · \u2068١:٠٠\u2069 · "
              "\u2068لا الصغير (\u20668A\u2069)\u2069 · \u2068٤/٤\u2069");
}
