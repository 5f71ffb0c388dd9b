// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/CommandTest.h"

#include "support/Chords.h"

#include <gmock/gmock.h>
#include <regex>

// The program from outside: clips under 30 s, whose tempo follows from their length; and the key.

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

class AnalyzeClipsTest : public CCommandTest {
protected:
    std::string Tempo(std::string const& name) {
        return Tactus({"tag", "get", name, "TBPM"}).m_sOut;
    }
};

TEST_F(AnalyzeClipsTest, LengthIsTheSourceAndWhatWasHeardStandsAmongTheReadings) {
    // 240 / 10 is 24, doubled twice 96.
    WriteWav(m_folder / "clip.wav", MakeClickTrack(125.0, 10.0));
    std::string const row =
        Tactus({"analyze", "--candidates", "--format", "jsonl", "clip.wav"}).m_sOut;
    EXPECT_THAT(row, HasSubstr("\"tempo\":96.0"));
    EXPECT_THAT(row, HasSubstr("\"source\":\"length\""));
    EXPECT_THAT(row, ContainsRegex("\"bpm\":12[3456][.0-9]*,\"ratio\":null"));
    EXPECT_THAT(Tactus({"analyze", "clip.wav"}).m_sOut, HasSubstr("  length\n"));
    // From half a minute on, what is heard is told.
    WriteWav(m_folder / "song.wav", MakeClickTrack(125.0, 30.0));
    EXPECT_THAT(Tactus({"analyze", "song.wav"}).m_sOut, HasSubstr("  analysis\n"));
}

TEST_F(AnalyzeClipsTest, ATempoByLengthIsStoredOnRequestOnly) {
    WriteMp3("clip.mp3");
    std::string const before = ReadText(m_folder / "clip.mp3");
    // Twice: what is remembered is treated alike.
    for (int i = 0; i < 2; ++i) {
        CProcessResult const left = Tactus({"analyze", "-w", "--format", "jsonl", "clip.mp3"});
        EXPECT_EQ(left.m_nExit, 0);
        EXPECT_THAT(left.m_sOut,
                    HasSubstr("\"written\":false,\"notWritten\":\"its tempo follows from its "
                              "length: --short stores it\""));
        EXPECT_THAT(left.m_sErr, testing::StartsWith("tactus: 1 heard, 0 stored, 1 too short in "));
    }
    EXPECT_THAT(Tactus({"analyze", "-w", "clip.mp3"}).m_sOut, HasSubstr("  length, not stored\n"));
    EXPECT_THAT(Tactus({"analyze", "--dry-run", "clip.mp3"}).m_sOut,
                ContainsRegex("^skip\t9[0-9.]+\tclip.mp3\tits tempo follows from its length"));
    EXPECT_EQ(ReadText(m_folder / "clip.mp3"), before);
    EXPECT_THAT(Tactus({"analyze", "-w", "--short", "clip.mp3"}).m_sOut,
                HasSubstr("  length, stored\n"));
    EXPECT_THAT(Tempo("clip.mp3"), ContainsRegex("^9[0-9.]+\n$"));
}

TEST_F(AnalyzeClipsTest, KeyIsToldInAllWaysAndRemembered) {
    CChords chords;
    chords.PlayCadence(9, true);
    chords.PlayCadence(9, true);
    WriteWav(m_folder / "a.wav", chords.Samples());
    EXPECT_THAT(Tactus({"analyze", "a.wav"}).m_sOut, Not(HasSubstr("  Key\n")));
    CProcessResult const asked = Tactus({"analyze", "--harmony", "a.wav"});
    EXPECT_THAT(asked.m_sOut, HasSubstr("  Key\n"));
    EXPECT_THAT(asked.m_sOut, HasSubstr("  Am 8A 1m\n"));
    CProcessResult const csv = Tactus({"analyze", "--harmony", "--format", "csv", "a.wav"});
    EXPECT_THAT(csv.m_sOut, HasSubstr(",Am,8A,1m\n"));
    EXPECT_EQ(Tactus({"analyze", "--harmony", "--no-cache", "--format", "csv", "a.wav"}).m_sOut,
              csv.m_sOut);
    // Readings that are asked for later don't make the key be forgotten.
    EXPECT_THAT(
        Tactus({"analyze", "--candidates", "--harmony", "--format", "jsonl", "a.wav"}).m_sOut,
        ContainsRegex(
            "\"confidence\":[0-9.e-]+,\"harmony\":[{]\"plain\":\"Am\",\"camelot\":"
            "\"8A\",\"openKey\":\"1m\",\"confidence\":[0-9.]+,\"tuning\":[-0-9.e]+[}][}]"));
}

} // namespace
