// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/Wishes.h"

#include "ControllerFixture.h"
#include "song/SongTags.h"
#include "song/TempoCandidates.h"

#include <filesystem>

namespace {

std::string Wished(CWishes const& wishes, char const* heard, CTempoCandidates const& found = {}) {
    return WishedTempo(wishes, heard, found).ToUtf8();
}

struct WishedRowsTest : ControllerTest {
    /// Adds and analyses `file` with these wishes.
    void analyse(std::string const& file, CWishes const& wishes) {
        controller.setWishes(wishes);
        controller.openFile({path(file)});
        waitUntilIdle();
    }

    /// A clip without a beat in it.
    std::string writeSilence(std::string const& name) const {
        WriteWav(folder / "silence.wav", MakeSilence(40.0));
        Ffmpeg({"-i", folder / "silence.wav", "-map_metadata", "-1", "-id3v2_version", "0",
                folder / name});
        return folder / name;
    }

    std::string tempoInTag(std::string const& file) const {
        return ReadShownTags(path(file)).m_sTempo;
    }
};

} // namespace

TEST(WishesTest, TheFactoryStateKeepsEveryText) {
    for (char const* text : {"94.99", "0.00", "20.00", "999.00"}) {
        EXPECT_EQ(Wished({}, text), text);
    }
}

TEST(WishesTest, TheLikeliestReadingCountsOnlyWhenWishedFor) {
    CTempoCandidates const found{{{.m_fBpm = 190.0f}, {.m_fBpm = 95.0f}}, 1.0f};
    EXPECT_EQ(Wished({}, "95.00", found), "95.00");
    EXPECT_EQ(Wished({.m_bLikelyOctave = true}, "95.00", found), "190.00");
    EXPECT_EQ(Wished({.m_bLikelyOctave = true}, "95.00"), "95.00");
}

TEST(WishesTest, ATempoIsFoldedThenRounded) {
    EXPECT_EQ(Wished({.m_dSlowest = 70.0, .m_dFastest = 180.0}, "189.98"), "94.99");
    EXPECT_EQ(Wished({.m_dSlowest = 70.0, .m_dFastest = 180.0}, "120.00"), "120.00");
    EXPECT_EQ(Wished({.m_nDecimals = 0, .m_dSlowest = 70.0, .m_dFastest = 180.0}, "189.98"), "95");
    EXPECT_EQ(Wished({.m_nDecimals = 1}, "94.95"), "95.0");
}

TEST(WishesTest, WhereThereIsNoTempoZerosCanBeLeftOut) {
    EXPECT_EQ(Wished({.m_bZeros = false}, "0.00"), "");
    EXPECT_EQ(Wished({.m_nDecimals = 0}, "0.00"), "0.00");
}

TEST_F(WishedRowsTest, OtherKindsAreLeftOutOfFoldersAndCounted) {
    for (char const* name : {"a.mp3", "b.flac", "c.OGG", "._b.flac", "cover.jpg"}) {
        WriteText(folder / name, "");
    }
    controller.add(path(folder.Path()));
    controller.add(path(folder.Path()));
    EXPECT_EQ(controller.numberOfRowsInTableView(), 1U);
    EXPECT_EQ(controller.status().m_nLeftOut, 2U);
    EXPECT_EQ(controller.takeLeftOut(),
              (std::vector{path(folder / "b.flac"), path(folder / "c.OGG")}));
    EXPECT_EQ(controller.status().m_nLeftOut, 0U);
}

TEST_F(WishedRowsTest, AStopForgetsWhatWasLeftOut) {
    WriteText(folder / "b.flac", "");
    controller.add(path(folder.Path()));
    controller.stop();
    EXPECT_EQ(controller.status().m_nLeftOut, 0U);
    EXPECT_TRUE(controller.takeLeftOut().empty());
}

TEST_F(WishedRowsTest, OtherKindsComeInWithTheirOwnTags) {
    WriteWav(folder / "clip.wav", MakeClickTrack(120.0, 1.0));
    std::filesystem::create_directory(folder / "album");
    Ffmpeg({"-i", folder / "clip.wav", "-metadata", "title=Song", "-metadata", "artist=Singer",
            folder / "album/a.flac"});
    Ffmpeg({"-i", folder / "clip.wav", "-metadata", "BPM=128,5", folder / "album/b.ogg"});
    EXPECT_FALSE(controller.panelShouldShowFilename(path(folder / "album/a.flac")));
    analyse(folder / "album", {.m_bOtherKinds = true});
    ASSERT_EQ(controller.numberOfRowsInTableView(), 2U);
    EXPECT_EQ(title(0), "Song");
    EXPECT_EQ(artist(0), "Singer");
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(title(1), "b.ogg");
    EXPECT_EQ(tempo(1), "128.50");
    EXPECT_EQ(controller.status().m_nLeftOut, 0U);
    EXPECT_EQ(tempoInTag(folder / "album/a.flac"), "");
    EXPECT_TRUE(controller.panelShouldShowFilename(path(folder / "album/a.flac")));
    EXPECT_TRUE(controller.panelCanChooseFilename(path(folder / "album/a.flac")));
}

TEST_F(WishedRowsTest, OtherKindsAreWrittenWhenWishedFor) {
    WriteWav(folder / "clip.wav", MakeClickTrack(120.0, 1.0));
    Ffmpeg({"-i", folder / "clip.wav", folder / "a.flac"});
    analyse(folder / "a.flac", {.m_bWriteOtherKinds = true});
    EXPECT_EQ(tempoInTag(folder / "a.flac"), "120.00");
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::None);
}

TEST_F(WishedRowsTest, TheAnalysisReplacesNoTempoThatARowDoesNotShow) {
    WriteWav(folder / "clip.wav", MakeClickTrack(120.0, 1.0));
    Ffmpeg({"-i", folder / "clip.wav", "-metadata", "BPM=95", folder / "a.flac"});
    controller.addFile(path(folder / "a.flac"));
    ASSERT_FALSE(isDone(0)); // the list by itself reads no tempo of this kind
    analyse(folder / "a.flac", {.m_bWriteOtherKinds = true});
    EXPECT_EQ(tempoInTag(folder / "a.flac"), "95");
    EXPECT_EQ(tempo(0), "95.00");
    EXPECT_TRUE(controller.rowState(0).m_bFromTag);
}

TEST_F(WishedRowsTest, ATempoThatARowDoesNotShowIsForeignWhereItWouldBeReplaced) {
    WriteWav(folder / "clip.wav", MakeClickTrack(120.0, 1.0));
    Ffmpeg({"-i", folder / "clip.wav", "-metadata", "BPM=95", folder / "a.flac"});
    analyse(folder / "a.flac", {});
    ASSERT_EQ(tempo(0), "120.00");
    EXPECT_EQ(controller.countForeignTempos(), 0U);
    controller.setWishes({.m_bWriteOtherKinds = true});
    EXPECT_EQ(controller.countForeignTempos(), 1U);
}

TEST_F(WishedRowsTest, OnlyLookingChangesNoByteAndIsNoProblem) {
    std::string const file = writeClip("a.mp3");
    Bytes const before = ReadBytes(file);
    analyse(file, {.m_bOnlyLook = true});
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(ReadBytes(file), before);
    EXPECT_FALSE(HasProblem(controller.rowState(0)));
}

TEST_F(WishedRowsTest, DecimalsRangeAndTimeCountInTheTag) {
    std::string const file = writeClip("a.mp3");
    auto const time = std::filesystem::last_write_time(file) - std::chrono::hours(1);
    std::filesystem::last_write_time(file, time);
    analyse(file, {.m_bKeepTime = true, .m_nDecimals = 0, .m_dSlowest = 40.0, .m_dFastest = 80.0});
    EXPECT_EQ(tempo(0), "60");
    EXPECT_EQ(tempoInTag(file), "60");
    EXPECT_EQ(std::filesystem::last_write_time(file), time);
}

TEST_F(WishedRowsTest, ASongWithoutABeatGetsNoZeroWhenNoneIsWishedFor) {
    std::string const file = writeSilence("a.mp3");
    Bytes const before = ReadBytes(file);
    analyse(file, {.m_bZeros = false});
    EXPECT_EQ(tempo(0), "");
    EXPECT_TRUE(isDone(0));
    EXPECT_EQ(controller.rowState(0).m_outcome.m_problem, EAnalysisProblem::NoBeat);
    EXPECT_EQ(ReadBytes(file), before);
}

TEST_F(WishedRowsTest, OnlyTemposOfOthersAreForeign) {
    std::string const ours = writeClip("a.mp3");
    analyse(ours, {});
    writeClip("b.mp3", Tag(3, {TextFrame("TBPM", "99")}));
    BPMController later(view); // as in another session, with the same journal
    later.add(path(folder.Path()));
    ASSERT_EQ(later.numberOfRowsInTableView(), 2U);
    EXPECT_EQ(later.countForeignTempos(), 1U);
    later.setHidden({1}, true);
    EXPECT_EQ(later.countForeignTempos(), 0U);
}
