// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/TagFile.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The program from outside: `tactus analyze` and the tags of files.

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

class AnalyzeTagsTest : public testing::Test {
protected:
    CProcessResult Tactus(std::vector<std::string> const& arguments) {
        CProcessSetup setup;
        setup.m_vArguments = {TACTUS_PROGRAM};
        setup.m_vArguments.insert(setup.m_vArguments.end(), arguments.begin(), arguments.end());
        setup.m_sFolder = m_folder.Path();
        return RunProcess(setup);
    }

    /// Writes an mp3 of `seconds` without a sound; `metadata` as "key=value".
    void WriteMp3(std::string const& name, double seconds,
                  std::vector<std::string> const& metadata = {}) {
        WriteWav(m_folder / "source.wav", MakeSilence(seconds));
        std::vector<std::string> arguments = {"-i", m_folder / "source.wav", "-c:a", "libmp3lame"};
        for (std::string const& item : metadata) {
            arguments.insert(arguments.end(), {"-metadata", item});
        }
        arguments.push_back(m_folder / name);
        Ffmpeg(arguments);
    }

    /// The same without a tag and without the encoder's note on padding.
    void WriteBareMp3(std::string const& name, double seconds) {
        WriteWav(m_folder / "source.wav", MakeSilence(seconds));
        Ffmpeg({"-i", m_folder / "source.wav", "-c:a", "libmp3lame", "-write_xing", "0",
                "-id3v2_version", "0", m_folder / name});
    }

    std::string TempoTag(std::string const& name) {
        return Tactus({"tag", "get", name, "TBPM"}).m_sOut;
    }

    CTempFolder m_folder;
};

TEST_F(AnalyzeTagsTest, TempoOfTheTagIsTakenUnlessForced) {
    WriteMp3("a.mp3", 10.0, {"TBPM=133.333", "title=Song", "artist=Someone"});
    CProcessResult const tagged = Tactus({"analyze", "--format", "csv", "a.mp3"});
    EXPECT_EQ(tagged.m_nExit, 0);
    EXPECT_THAT(tagged.m_sOut, HasSubstr("\na.mp3,Song,Someone,133.33,tag,,,,,,,,,,,\n"));
    CProcessResult const forced = Tactus({"analyze", "-f", "--format", "csv", "a.mp3"});
    EXPECT_THAT(forced.m_sOut, HasSubstr("\na.mp3,Song,Someone,96.00,length,,,,,,,,,,,\n"));
    EXPECT_EQ(TempoTag("a.mp3"), "133.333\n");
}

TEST_F(AnalyzeTagsTest, TitleOfTheTagIsShownWithATempoAndWithout) {
    WriteMp3("a.mp3", 10.0, {"title=Song", "artist=Someone"});
    WriteMp3("b.mp3", 10.0, {"TBPM=unknown", "title=Song", "artist=Someone"});
    WriteMp3("c.mp3", 10.0, {"TBPM=0", "title=Song"});
    CProcessResult const result = Tactus({"analyze", "--format", "csv", "a.mp3", "b.mp3", "c.mp3"});
    EXPECT_EQ(result.m_sOut,
              "path,title,artist,tempo,source,error,written,notWritten,album,tagKey,tempoNote,"
              "candidates,confidence,harmony,camelot,openKey\n"
              "a.mp3,Song,Someone,96.00,length,,,,,,,,,,,\n"
              "b.mp3,Song,Someone,96.00,length,,,,,,,,,,,\n"
              "c.mp3,Song,,96.00,length,,,,,,,,,,,\n");
}

TEST_F(AnalyzeTagsTest, WriteStoresTheTempoInMp3FilesAlone) {
    WriteMp3("a.mp3", 10.0, {"title=Song"});
    WriteMp3("B.MP3", 10.0);
    WriteWav(m_folder / "c.wav", MakeSilence(10.0));
    std::string const wav = ReadText(m_folder / "c.wav");
    CProcessResult const result =
        Tactus({"analyze", "-w", "--short", "--format", "csv", "a.mp3", "B.MP3", "c.wav"});
    EXPECT_EQ(result.m_nExit, 0) << result.m_sErr;
    EXPECT_THAT(result.m_sErr, StartsWith("tactus: 2 tags of version 2.4 became version 2.3; --id3 "
                                          "keep keeps them\ntactus: 3 heard, 2 stored in "));
    EXPECT_EQ(std::count(result.m_sErr.begin(), result.m_sErr.end(), '\n'), 2);
    EXPECT_THAT(result.m_sOut, HasSubstr("\na.mp3,Song,,96.00,length,,true,,,,,,,,,\n"
                                         "B.MP3,B.MP3,,96.00,length,,true,,,,,,,,,\n"
                                         "c.wav,c.wav,,96.00,length,,false,"));
    EXPECT_EQ(TempoTag("a.mp3"), "96.00\n");
    EXPECT_EQ(TempoTag("B.MP3"), "96.00\n");
    EXPECT_EQ(ReadText(m_folder / "c.wav"), wav);
    EXPECT_EQ(Tactus({"tag", "get", "a.mp3", "TIT2"}).m_sOut, "Song\n");
    // The next run reads what this one wrote, the title with it.
    EXPECT_THAT(Tactus({"analyze", "-w", "--short", "--format", "csv", "a.mp3"}).m_sOut,
                HasSubstr("\na.mp3,Song,,96.00,tag,,,,,,,,,,,\n"));
}

TEST_F(AnalyzeTagsTest, TextInUtf8IsShownDecoded) {
    TagBytes const title = Frame24("TIT2", Joined({{3}, Ascii("\xC3\xA9\xE2\x82\xAC")}));
    TagBytes const tempo = Frame24("TBPM", Joined({{3}, Ascii("128,5")}));
    WriteBytes(m_folder / "a.mp3", TagOf(4, Joined({title, tempo})));
    EXPECT_THAT(Tactus({"analyze", "--format", "csv", "a.mp3"}).m_sOut,
                HasSubstr("\na.mp3,\xC3\xA9\xE2\x82\xAC,,128.50,tag,"));
    EXPECT_EQ(Tactus({"tag", "get", "a.mp3", "TIT2"}).m_sOut, "\xC3\xA9\xE2\x82\xAC\n");
    EXPECT_THAT(Tactus({"tag", "list", "a.mp3"}).m_sOut, HasSubstr("\xC3\xA9\xE2\x82\xAC\n"));
}

TEST_F(AnalyzeTagsTest, ATempoThatNoSongHasIsHeardAnewOnRequest) {
    WriteMp3("a.mp3", 10.0, {"TBPM=5"});
    EXPECT_THAT(Tactus({"analyze", "--format", "csv", "a.mp3"}).m_sOut,
                HasSubstr(",5.00,tag,,,,,,unlikely,,,,,\n"));
    EXPECT_THAT(Tactus({"analyze", "--recheck", "--format", "csv", "a.mp3"}).m_sOut,
                HasSubstr(",96.00,length,,,,,,,,,,,\n"));
}

TEST_F(AnalyzeTagsTest, TempoOfZeroIsNeverWritten) {
    // Half a minute of silence has no onset, hence no tempo.
    WriteMp3("a.mp3", 31.0);
    std::string const before = ReadText(m_folder / "a.mp3");
    CProcessResult const result = Tactus({"analyze", "-w", "--short", "--format", "csv", "a.mp3"});
    EXPECT_EQ(result.m_nExit, 0);
    EXPECT_THAT(result.m_sOut,
                HasSubstr("\na.mp3,a.mp3,,,analysis,,false,no beat was found,,,noBeat,,,,,\n"));
    EXPECT_EQ(ReadText(m_folder / "a.mp3"), before);
}

TEST_F(AnalyzeTagsTest, WithoutWriteNoFileIsTouched) {
    WriteMp3("a.mp3", 10.0);
    std::string const before = ReadText(m_folder / "a.mp3");
    auto const time = std::filesystem::last_write_time(m_folder / "a.mp3");
    EXPECT_EQ(Tactus({"analyze", "a.mp3"}).m_nExit, 0);
    EXPECT_EQ(ReadText(m_folder / "a.mp3"), before);
    EXPECT_EQ(std::filesystem::last_write_time(m_folder / "a.mp3"), time);
}

TEST_F(AnalyzeTagsTest, TempoThatCannotBeStoredIsAFailure) {
    WriteBareMp3("a.mp3", 10.0);
    // Without a tag there is no room for one, and a folder keeps the new file from being made.
    std::filesystem::create_directory(m_folder / "a.MP~");
    std::string const before = ReadText(m_folder / "a.mp3");
    CProcessResult const result =
        Tactus({"analyze", "-w", "--short", "--format", "jsonl", "a.mp3"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_THAT(result.m_sErr, ContainsRegex("^tactus: a.mp3: isn't written: "));
    EXPECT_THAT(result.m_sOut, ContainsRegex("\"tempo\":9[0-9.]+,\"source\":\"length\""));
    EXPECT_THAT(result.m_sOut, HasSubstr("\"error\":null,\"written\":false,"
                                         "\"notWritten\":\"no new file can be made beside it\""));
    EXPECT_THAT(result.m_sErr, HasSubstr("\ntactus: 1 heard, 0 stored, 1 not stored in "));
    EXPECT_EQ(ReadText(m_folder / "a.mp3"), before);
}

TEST_F(AnalyzeTagsTest, TagWithAnUnknownFrameIsLeftAlone) {
    WriteBareMp3("bare.mp3", 10.0);
    // "ZZZ" has no name in version 2.3.
    TagBytes const tag =
        TagOf(2, Joined({Frame22("ZZZ", Zeros(4)), Frame22("TT2", Latin1Text("X"))}));
    WriteBytes(m_folder / "a.mp3", Joined({tag, ReadBytes(m_folder / "bare.mp3")}));
    std::string const before = ReadText(m_folder / "a.mp3");

    CProcessResult const read = Tactus({"analyze", "--format", "csv", "a.mp3"});
    EXPECT_EQ(read.m_nExit, 0);
    EXPECT_EQ(read.m_sErr, "");
    EXPECT_THAT(read.m_sOut, ContainsRegex("\na.mp3,X,,9[0-9.]+,length,,,,,,,,,,,\n"));

    CProcessResult const write = Tactus({"analyze", "-w", "--short", "--format", "csv", "a.mp3"});
    EXPECT_EQ(write.m_nExit, 1);
    EXPECT_THAT(write.m_sErr,
                StartsWith("tactus: a.mp3: isn't written: its ID3v2.2 tag holds an unknown kind of "
                           "frame\ntactus: 1 heard, 0 stored, 1 not stored in "));
    EXPECT_EQ(ReadText(m_folder / "a.mp3"), before);
}

TEST_F(AnalyzeTagsTest, IdsOfPlayersThatGetOtherNamesAreTold) {
    WriteBareMp3("bare.mp3", 10.0);
    TagBytes const tag = TagOf(2, Frame22("GP1", Latin1Text("Group")));
    WriteText(m_folder / "a.mp3",
              std::string(tag.begin(), tag.end()) + ReadText(m_folder / "bare.mp3"));
    CProcessResult const result =
        Tactus({"analyze", "-w", "--short", "-q", "--format", "jsonl", "a.mp3"});
    EXPECT_EQ(result.m_nExit, 0);
    EXPECT_THAT(result.m_sOut, HasSubstr("\"error\":null,\"written\":true,\"notWritten\":null"));
    EXPECT_EQ(result.m_sErr, "tactus: a.mp3: its ID3v2.2 tag became one of version 2.3: GP1 is now "
                             "GRP1\n");
}

TEST_F(AnalyzeTagsTest, OnlyWhatWasReadAsMpegAudioIsWritten) {
    // A WAV file, and a web page, under an MP3's name.
    WriteWav(m_folder / "wav.mp3", MakeClickTrack(96.0, 10.0));
    WriteText(m_folder / "page.mp3", "<!DOCTYPE html><title>not found</title>");
    std::string const wav = ReadText(m_folder / "wav.mp3");
    std::string const page = ReadText(m_folder / "page.mp3");
    CProcessResult const result =
        Tactus({"analyze", "-w", "--short", "--format", "csv", "wav.mp3", "page.mp3"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_THAT(result.m_sOut, ContainsRegex("\nwav.mp3,wav.mp3,,9[0-9.]+,length,,false,"));
    EXPECT_EQ(ReadText(m_folder / "wav.mp3"), wav);
    EXPECT_EQ(ReadText(m_folder / "page.mp3"), page);
}

TEST_F(AnalyzeTagsTest, AnArchiveOfOneSongIsHeardAndNotWritten) {
    WriteMp3("song.mp3", 10.0);
    // The first block of a tape archive; the decoding library passes over it.
    TagBytes const head = Joined({Ascii("song.mp3"), Zeros(249), Ascii("ustar"), Zeros(250)});
    std::string const archive =
        std::string(head.begin(), head.end()) + ReadText(m_folder / "song.mp3");
    WriteText(m_folder / "archive.mp3", archive);
    CProcessResult const result =
        Tactus({"analyze", "-w", "--short", "--format", "csv", "archive.mp3"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_THAT(result.m_sOut, ContainsRegex("\narchive.mp3,[^,]*,,9[56].[0-9]+,length,,false,"));
    EXPECT_THAT(result.m_sErr, StartsWith("tactus: archive.mp3: isn't written: it isn't MPEG"));
    EXPECT_EQ(ReadText(m_folder / "archive.mp3"), archive);
}

TEST_F(AnalyzeTagsTest, WhatIsCutShortIsHeardAndNotWritten) {
    WriteMp3("whole.mp3", 40.0);
    // The header still promises forty seconds.
    std::string const whole = ReadText(m_folder / "whole.mp3");
    WriteText(m_folder / "cut.mp3", whole.substr(0, whole.size() / 2));
    std::string const before = ReadText(m_folder / "cut.mp3");
    CProcessResult const result =
        Tactus({"analyze", "-w", "--short", "--format", "csv", "cut.mp3"});
    EXPECT_THAT(result.m_sOut, ContainsRegex("\ncut.mp3,cut.mp3,,[0-9.]+,length,"));
    EXPECT_NE(result.m_nExit, 0);
    EXPECT_EQ(ReadText(m_folder / "cut.mp3"), before);
}

TEST_F(AnalyzeTagsTest, RowsAndAClosingLineTellWhatWasStored) {
    WriteMp3("a.mp3", 10.0);
    WriteMp3("b.mp3", 10.0, {"TBPM=120"});
    CProcessResult const table = Tactus({"analyze", "-w", "--short", "a.mp3", "b.mp3", "none.mp3"});
    EXPECT_EQ(table.m_nExit, 1);
    EXPECT_THAT(table.m_sOut, HasSubstr("  96.00  length, stored\n"));
    EXPECT_THAT(table.m_sOut, HasSubstr(" 120.00  tag\n"));
    EXPECT_THAT(table.m_sErr, ContainsRegex("\ntactus: 1 heard, 1 stored, 1 kept, 1 failed in "
                                            "[0-9.]+ s, [0-9.]+ times real time\n$"));
    CProcessResult const json =
        Tactus({"analyze", "-w", "--short", "-f", "--format", "jsonl", "a.mp3", "none.mp3"});
    EXPECT_THAT(json.m_sOut, HasSubstr("\"error\":null,\"written\":true,\"notWritten\":null,"
                                       "\"album\":\"\",\"tagKey\":null,\"tempoNote\":null,"
                                       "\"before\":\"96.00\",\"setBy\":\"tactus\",\"plan\":null}"));
    EXPECT_THAT(json.m_sOut, HasSubstr("\"written\":null,\"notWritten\":null,\"album\":\"\","
                                       "\"tagKey\":null,\"tempoNote\":null,\"before\":null,"
                                       "\"setBy\":null,\"plan\":null}\n"));
    CProcessResult const quiet = Tactus({"analyze", "-w", "--short", "-q", "a.mp3"});
    EXPECT_EQ(quiet.m_sErr, "");
}

} // namespace
