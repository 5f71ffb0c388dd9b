// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/SongRecord.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

CSongFacts FullFacts() {
    CSongFacts facts;
    facts.m_nFrames = 5'000'000'000;
    facts.m_fBpm = 127.5f;
    facts.m_fHeardBpm = 63.75f;
    facts.m_key = {.m_eMode = EKeyMode::Minor, .m_nTonic = 11};
    facts.m_harmony = {
        .m_eMode = EKeyMode::Major, .m_nTonic = 3, .m_fConfidence = 0.5f, .m_fTuningCents = -9.0f};
    facts.m_beats.m_vHalfBeats = {{0.0, 0, true}, {0.234567, 1, false}, {3600.000001, 4, true}};
    facts.m_beats.m_nBeatsPerMeasure = 4;
    facts.m_beats.m_bSteady = true;
    facts.m_beats.m_fBeatConfidence = 0.75f;
    facts.m_beats.m_fDownbeatConfidence = 0.125f;
    facts.m_vEnergyAccents = {1.0f, -2.0f};
    facts.m_vBassAccents = {3.0f};
    facts.m_positions = {.m_vGrid = {0, 127, 128, 20'000, 5'000'000'000},
                         .m_vMarks = {-1, 7, 3}, // falling as well
                         .m_nIntroEnd = 21,
                         .m_nOutroStart = -22,
                         .m_vFades = {23},
                         .m_vIntroMixes = {std::numeric_limits<std::int64_t>::min(),
                                           std::numeric_limits<std::int64_t>::max()},
                         .m_vOutroMixes = {}};
    facts.m_print = {.m_nMicroseconds = 77, .m_vValues = {0.5f, 0.25f}};
    facts.m_opening = {.m_fTop = 2.0f, .m_nSamples = 256, .m_vLevels = {0, 255}};
    facts.m_energy = {.m_fTop = 3.0f, .m_nSamples = 257, .m_vLevels = {1, 2, 3}};
    facts.m_bass = {.m_fTop = 4.0f, .m_nSamples = 258, .m_vLevels = {4}};
    return facts;
}

/// A record in which no two fields are alike.
CSongRecord FullRecord() {
    CSongRecord record;
    record.m_tags = CReadTags();
    record.m_tags->m_shown.m_sTitle = "T\xC3\xADtulo";
    record.m_tags->m_shown.m_sArtist = std::string("a\0b", 3);
    record.m_tags->m_shown.m_sAlbum = "album";
    record.m_tags->m_shown.m_sKey = "Am";
    record.m_tags->m_shown.m_sTempo = "12800";
    record.m_tags->m_shown.m_tempo = {.m_worth = ETagTempo::TimesHundred, .m_dBpm = 128.0};
    // A lone surrogate is no text of UTF-8, and comes back all the same.
    record.m_tags->m_sTempoFrame = CString(std::u16string_view(u"1\xD800z"));
    CHeardSong heard;
    heard.m_outcome.m_problem = EAnalysisProblem::NoBeat;
    heard.m_outcome.m_report = {.m_problem = EDecodeProblem::Protected,
                                .m_nError = -7,
                                .m_sDetail = "detail",
                                .m_nPackets = 1'000'000'000'000,
                                .m_nBadPackets = 3,
                                .m_bBreaksOff = true,
                                .m_dPromisedSeconds = 0.1,
                                .m_dHeardSeconds = -0.0,
                                .m_container = EContainer::Caf,
                                .m_sCodec = "pcm_f32le",
                                .m_sDecoder = "pcm",
                                .m_nFileRate = 4'000'000'000U,
                                .m_nChannels = 6,
                                .m_nSkippedFrames = 1105,
                                .m_startNote = EStartNote::EncoderTag,
                                .m_identity = {1, 2, 3, -4, 5}};
    heard.m_sTempo = "127.99";
    heard.m_bByLength = true;
    heard.m_harmony = CHarmony{.m_eMode = EKeyMode::Minor,
                               .m_nTonic = 11,
                               .m_fConfidence = 0.625f,
                               .m_fTuningCents = -12.5f};
    heard.m_candidates = CTempoCandidates();
    heard.m_candidates->m_fConfidence = std::numeric_limits<float>::denorm_min();
    heard.m_candidates->m_vCandidates = {{120.0f, 1, 1, 0.75f}, {77.5f, 0, 0, 0.25f}};
    heard.m_facts = FullFacts();
    record.m_heard = heard;
    return record;
}

TEST(SongRecordTest, EveryFieldComesBack) {
    CSongRecord const record = FullRecord();
    EXPECT_EQ(SongRecordOf(BytesOf(record)), record);
}

TEST(SongRecordTest, PartsThatAreNothingStayNothing) {
    EXPECT_EQ(SongRecordOf(BytesOf({})), CSongRecord());
    CSongRecord tags = FullRecord();
    tags.m_heard.reset();
    EXPECT_EQ(SongRecordOf(BytesOf(tags)), tags);
    CSongRecord heard = FullRecord();
    heard.m_tags.reset();
    EXPECT_EQ(SongRecordOf(BytesOf(heard)), heard);
}

TEST(SongRecordTest, WhatIsCutShortOrTooLongIsNoRecord) {
    std::vector<std::uint8_t> const bytes = BytesOf(FullRecord());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        EXPECT_FALSE(SongRecordOf(std::span(bytes).first(i))) << i;
    }
    std::vector<std::uint8_t> longer = bytes;
    longer.push_back(0);
    EXPECT_FALSE(SongRecordOf(longer));
}

TEST(SongRecordTest, NoLengthIsBelieved) {
    // Form, tags there, and a title of 2^60 bytes.
    std::vector<std::uint8_t> const bytes = {4, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0,
                                             0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x10};
    EXPECT_FALSE(SongRecordOf(bytes));
    std::vector<std::uint8_t> otherForm = BytesOf({});
    otherForm[0] = 1;
    EXPECT_FALSE(SongRecordOf(otherForm));
}

} // namespace
