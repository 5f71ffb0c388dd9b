// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/SongJson.h"

#include "export/TakenSong.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

/// Two seconds with every kind of value in it.
CTakenSong SmallSong() {
    CTakenSong song;
    song.m_sPath = "a/b.mp3";
    song.m_sTitle = "A \"b\"";
    song.m_sArtist = "Somebody";
    song.m_sTagKey = "8A";
    song.m_dTagTempo = 128.1;
    CDecodeReport& report = song.m_outcome.m_report;
    report.m_sCodec = "mp3";
    report.m_container = EContainer::MpegAudio;
    report.m_nFileRate = 48'000;
    report.m_nChannels = 2;
    report.m_nSkippedFrames = 1'105;
    report.m_startNote = EStartNote::EncoderTag;
    song.m_dSeconds = 2.0;
    song.m_dBitsPerSecond = 128'000.4;
    song.m_dTempo = static_cast<double>(120.1f);
    song.m_tempoSource = ETempoSource::Analysis;
    song.m_dHeardTempo = song.m_dTempo;
    song.m_candidates.m_fConfidence = 0.5f;
    song.m_candidates.m_vCandidates = {{120.1f, 1, 1, 0.75f}, {77.5f, 0, 0, 0.25f}};
    song.m_key = {.m_eMode = EKeyMode::Minor, .m_nTonic = 9};
    song.m_harmony = {
        .m_eMode = EKeyMode::Major, .m_nTonic = 0, .m_fConfidence = 0.9f, .m_fTuningCents = -3.5f};
    song.m_beats.m_nBeatsPerMeasure = 3;
    song.m_beats.m_bSteady = true;
    song.m_beats.m_fBeatConfidence = 1.0f;
    song.m_beats.m_fDownbeatConfidence = 0.25f;
    song.m_beats.m_vHalfBeats = {
        {0.25, 3, false}, {0.5, 0, true}, {0.7500004, 1, true}, {1.0000006, 0, false}, {1.25, 2}};
    song.m_vEnergyAccents = {1.0f, 0.5f};
    song.m_vBassAccents = {0.1f};
    song.m_dIntroEnd = 0.5;
    song.m_dOutroStart = 1.5;
    song.m_vFades = {0.1, 0.2};
    song.m_vIntroMixes = {0.75};
    song.m_print = {.m_nMicroseconds = 250'000, .m_vValues = {0.5f, 1.0f}};
    song.m_opening = {.m_fTop = 2.0f, .m_nSamples = 441, .m_vLevels = {0, 255}};
    song.m_energy = song.m_opening;
    song.m_positions = {.m_vGrid = {0, 11'025},
                        .m_vMarks = {11'025},
                        .m_nIntroEnd = 22'050,
                        .m_nOutroStart = 66'150,
                        .m_vFades = {4'410},
                        .m_vIntroMixes = {33'075},
                        .m_vOutroMixes = {}};
    return song;
}

constexpr char kUsual[] =
    R"({"schema":"tactus-song-1","engine":")" TACTUS_VERSION R"(","path":"a/b.mp3",)"
    R"("title":"A \"b\"","artist":"Somebody","album":null,"tagKey":"8A","tagTempo":128.1,)"
    R"("error":null,"warning":null,"duration":2,)"
    R"("source":{"codec":"mp3","container":"mpeg","rate":48000,"channels":2,"bitRate":128000,)"
    R"("start":{"samples":1105,"from":"encoderTag"},"damaged":false},)"
    R"("tempo":120.1,"tempoSource":"analysis","heardTempo":120.1,"confidence":0.5,)"
    R"("candidates":[{"tempo":120.1,"ratio":"1:1","score":0.75},)"
    R"({"tempo":77.5,"ratio":null,"score":0.25}],)"
    R"("key":{"plain":"Am","camelot":"8A","openKey":"1m"},)"
    R"("harmony":{"plain":"C","camelot":"8B","openKey":"1d","confidence":0.9,"tuning":-3.5},)"
    R"("meter":{"beatsPerMeasure":3,"steady":true,"beatConfidence":1,"downbeatConfidence":0.25},)"
    R"("beats":[0.25,0.75,1.25],"downbeats":[0.75],"marks":[0.5,0.75],)"
    R"("accents":{"energy":[1,0.5],"bass":[0.1]},"intro":{"end":0.5,"mixPoints":[0.75]},)"
    R"("outro":{"start":1.5,"mixPoints":[]},"fades":[0.1,0.2]})";

TEST(SongJsonTest, RecordHasEveryUsualFieldInItsUnit) {
    EXPECT_EQ(SongJson(SmallSong()), kUsual);
}

TEST(SongJsonTest, OtherFieldsComeOnRequest) {
    EXPECT_EQ(SongJson(SmallSong(), {.m_vOnly = {"halfBeats"}}),
              R"({"path":"a/b.mp3","halfBeats":[0.5,1.000001]})");
    EXPECT_EQ(SongJson(SmallSong(), {.m_vOnly = {"fingerprint"}}),
              R"({"path":"a/b.mp3","fingerprint":{"start":0.25,"values":[0.5,1],)"
              R"("opening":{"step":0.01,"top":2,"levels":[0,255]}}})");
    EXPECT_EQ(SongJson(SmallSong(), {.m_vOnly = {"envelopes"}}),
              R"({"path":"a/b.mp3","envelopes":{"energy":{"step":0.01,"top":2,"levels":[0,255]},)"
              R"("bass":{"step":0,"top":0,"levels":[]}}})");
    EXPECT_EQ(SongJson(SmallSong(), {.m_vOnly = {"samples"}}),
              R"({"path":"a/b.mp3","samples":{"rate":44100,"grid":[0,11025],"marks":[11025],)"
              R"("introEnd":22050,"outroStart":66150,"fades":[4410],"introMixPoints":[33075],)"
              R"("outroMixPoints":[]}})");
    std::string const whole = SongJson(SmallSong(), {.m_vMore = {"samples", "halfBeats"}});
    EXPECT_NE(whole.find(R"("halfBeats":[)"), std::string::npos);
    EXPECT_NE(whole.find(R"("samples":{)"), std::string::npos);
    EXPECT_EQ(whole.find(R"("envelopes":{)"), std::string::npos);
}

TEST(SongJsonTest, SomeFieldsAloneKeepTheirOrder) {
    EXPECT_EQ(SongJson(SmallSong(), {.m_vOnly = {"beats", "tempo"}}),
              R"({"path":"a/b.mp3","tempo":120.1,"beats":[0.25,0.75,1.25]})");
}

TEST(SongJsonTest, FailureIsARecordToo) {
    CTakenSong song;
    song.m_sPath = "b.txt";
    song.m_sMessage = "no audio";
    song.m_outcome.m_problem = EAnalysisProblem::NotDecoded;
    song.m_outcome.m_report.m_problem = EDecodeProblem::NotAudio;
    EXPECT_EQ(SongJson(song),
              R"({"schema":"tactus-song-1","engine":")" TACTUS_VERSION
              R"(","path":"b.txt","title":null,"artist":null,"album":null,"tagKey":null,)"
              R"("tagTempo":null,"error":{"code":"notAudio","message":"no audio"}})");
    EXPECT_EQ(SongJson(song, {.m_vOnly = {"tempo"}}),
              R"({"path":"b.txt","error":{"code":"notAudio","message":"no audio"}})");
}

TEST(SongJsonTest, SongWithoutABeatHasItsLength) {
    CTakenSong song;
    song.m_sPath = "b.wav";
    song.m_outcome.m_problem = EAnalysisProblem::NoBeat;
    song.m_dSeconds = 3.0;
    EXPECT_EQ(SongJson(song, {.m_vOnly = {"duration", "tempo", "key", "meter", "beats"}}),
              R"({"path":"b.wav","error":{"code":"noBeat","message":null},"duration":3,)"
              R"("tempo":null,"key":null,"meter":null,"beats":[]})");
}

TEST(SongJsonTest, DamageIsAWarning) {
    CTakenSong song = SmallSong();
    song.m_sMessage = "ends early";
    song.m_outcome.m_report.m_nBadPackets = 1;
    std::string const json = SongJson(song);
    EXPECT_NE(json.find(R"("error":null,"warning":"ends early")"), std::string::npos);
    EXPECT_NE(json.find(R"("damaged":true)"), std::string::npos);
}

TEST(SongJsonTest, PathThatIsNoTextHasItsUri) {
    CTakenSong song = SmallSong();
    song.m_sPath = "/m/\xFF.mp3";
    EXPECT_EQ(SongJson(song, {.m_vOnly = {"path"}}),
              "{\"path\":\"/m/\xEF\xBF\xBD.mp3\",\"uri\":\"file:///m/%FF.mp3\"}");
}

TEST(SongJsonTest, EveryFieldHasItsNameOnce) {
    std::vector<std::string_view> names = SongJsonFields();
    EXPECT_EQ(std::ranges::count(names, "beats"), 1);
    std::ranges::sort(names);
    EXPECT_EQ(std::ranges::adjacent_find(names), names.end());
}

} // namespace
