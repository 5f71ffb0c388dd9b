// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "CommandTest.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class FixTest : public CCommandTest {
protected:
    void WriteSong(std::string const& name, std::string const& tempo) {
        WriteBytes(m_folder / name,
                   Joined({TagOf(3, Frame23("TBPM", Latin1Text(tempo))), MpegAudio(4)}));
    }
    std::string Tempo(std::string const& name) {
        return Tactus({"tag", "get", name, "TBPM"}).m_sOut;
    }
};

TEST_F(FixTest, WritesTheTempoTimesTheRatio) {
    WriteSong("a.mp3", "87.04");
    CProcessResult const fixed = Tactus({"fix", "x2", "a.mp3"});
    EXPECT_EQ(fixed.m_nExit, 0) << fixed.m_sErr;
    EXPECT_EQ(fixed.m_sOut, "a.mp3: 87.04 -> 174.08\n");
    EXPECT_EQ(Tempo("a.mp3"), "174.08\n");
    EXPECT_EQ(Tactus({"fix", "3:4", "a.mp3"}).m_sOut, "a.mp3: 174.08 -> 130.56\n");
    EXPECT_EQ(Tactus({"undo", "a.mp3"}).m_nExit, 0);
    EXPECT_EQ(Tempo("a.mp3"), "174.08\n");
}

TEST_F(FixTest, TakesFoldersAndAValue) {
    std::filesystem::create_directory(m_folder / "songs");
    WriteSong("songs/a.mp3", "87");
    WriteBytes(m_folder / "songs/b.mp3", MpegAudio(4));
    CProcessResult const fixed = Tactus({"fix", "=174.5", "songs"});
    EXPECT_EQ(fixed.m_nExit, 0) << fixed.m_sErr;
    EXPECT_EQ(fixed.m_sOut, "songs/a.mp3: 87.00 -> 174.50\nsongs/b.mp3: nothing -> 174.50\n");
    EXPECT_EQ(Tempo("songs/b.mp3"), "174.50\n");
}

TEST_F(FixTest, DryRunWritesNothing) {
    WriteSong("a.mp3", "87");
    std::string const before = ReadText(m_folder / "a.mp3");
    EXPECT_EQ(Tactus({"fix", "-n", "x2", "a.mp3"}).m_sOut, "a.mp3: 87.00 -> 174.00\n");
    EXPECT_EQ(ReadText(m_folder / "a.mp3"), before);
}

TEST_F(FixTest, WhatCannotBePutRightIsTold) {
    WriteBytes(m_folder / "none.mp3", MpegAudio(4));
    WriteSong("fast.mp3", "600");
    WriteClip("clip.caf");
    CProcessResult const refused = Tactus({"fix", "x2", "none.mp3", "fast.mp3", "gone.mp3"});
    EXPECT_EQ(refused.m_nExit, 1);
    EXPECT_EQ(refused.m_sOut, "");
    EXPECT_THAT(refused.m_sErr, HasSubstr("none.mp3: has no tempo that could be put right"));
    EXPECT_THAT(refused.m_sErr, HasSubstr("fast.mp3: isn't written: 1200.00 is no tempo"));
    EXPECT_THAT(refused.m_sErr, HasSubstr("gone.mp3: "));
    CProcessResult const clip = Tactus({"fix", "=100", "clip.caf"});
    EXPECT_EQ(clip.m_nExit, 1);
    EXPECT_THAT(clip.m_sErr, HasSubstr("clip.caf: isn't written: "));
    EXPECT_EQ(Tactus({"fix", "x7", "none.mp3"}).m_nExit, 2);
}

TEST_F(FixTest, OtherKindsAreWrittenTakenBackAndTold) {
    (void)::setenv("XDG_STATE_HOME", (m_folder / "state").c_str(), 1);
    WriteClip("source.wav");
    for (std::string const name : {"a.flac", "a.m4a", "a.ogg"}) {
        Ffmpeg({"-i", m_folder / "source.wav", "-metadata", "title=Song", m_folder / name});
        std::string const before = ReadText(m_folder / name);
        CProcessResult const fixed = Tactus({"fix", "=87.5", name});
        EXPECT_EQ(fixed.m_nExit, 0) << fixed.m_sErr;
        EXPECT_EQ(fixed.m_sOut, name + ": nothing -> 87.50\n");
        EXPECT_EQ(Tactus({"fix", "x2", name}).m_sOut, name + ": 87.50 -> 175.00\n");
        EXPECT_THAT(Tactus({"analyze", "--format", "jsonl", name}).m_sOut,
                    HasSubstr("\"before\":\"175.00\",\"setBy\":\"hand\""));
        // Neither is what a person set replaced.
        EXPECT_THAT(Tactus({"analyze", "-f", "-w", "--short", "--write-types", "all", "--format",
                            "jsonl", name})
                        .m_sOut,
                    HasSubstr("set by hand: --overwrite-hand"));
        EXPECT_THAT(Tactus({"history", name}).m_sOut, HasSubstr("TBPM '87.50' -> '175.00'"));
        EXPECT_EQ(Tactus({"undo", name}).m_sOut, name + ": TBPM '175.00' -> '87.50'\n");
        EXPECT_EQ(Tactus({"history", "--clear"}).m_nExit, 0);
        WriteText(m_folder / name, before);
        ASSERT_EQ(Tactus({"fix", "=87.5", name}).m_nExit, 0);
        EXPECT_EQ(Tactus({"undo", name}).m_sOut, name + ": TBPM '87.50' -> nothing\n");
        EXPECT_EQ(ReadText(m_folder / name), before);
    }
}

TEST_F(FixTest, TempoOfAnEarlierAnalysisIsPutRightToo) {
    WriteMp3("a.mp3");
    CProcessResult const heard = Tactus({"analyze", "--format", "jsonl", "a.mp3"});
    EXPECT_THAT(heard.m_sOut, HasSubstr("\"source\":\"length\""));
    std::string const tempo =
        heard.m_sOut.substr(heard.m_sOut.find("\"tempo\":") + 8, 5); // as in 95.43
    CProcessResult const fixed = Tactus({"fix", "-n", "x2", "a.mp3"});
    EXPECT_THAT(fixed.m_sOut, HasSubstr("a.mp3: " + tempo + " -> 1"));
}

} // namespace
