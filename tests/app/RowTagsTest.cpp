// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/RowTags.h"

#include "ControllerFixture.h"

namespace {

using RowTagsTest = ControllerTest;

} // namespace

TEST_F(RowTagsTest, ATempoOf120IsDoneAndSkipped) {
    std::string const file = writeClip("a.mp3", Tag(3, {TextFrame("TBPM", "120")}));
    Bytes const before = ReadBytes(file);
    controller.openFile({path(file)});
    waitUntilIdle();
    EXPECT_TRUE(isDone(0));
    EXPECT_EQ(tempo(0), "120");
    EXPECT_TRUE(view.canClose().empty());
    EXPECT_EQ(ReadBytes(file), before);
}

TEST_F(RowTagsTest, ATempoOfZeroIsAnalysed) {
    controller.addFile(path(writeClip("a.mp3", Tag(3, {TextFrame("TBPM", "0")}))));
    EXPECT_FALSE(isDone(0));
    EXPECT_EQ(tempo(0), "");
    controller.analyze();
    waitUntilIdle();
    EXPECT_TRUE(isDone(0));
    EXPECT_EQ(tempo(0), "120.00");
}

TEST_F(RowTagsTest, ATempoThatIsNoNumberIsAnalysed) {
    controller.addFile(path(writeClip("a.mp3", Tag(3, {TextFrame("TBPM", "fast")}))));
    EXPECT_FALSE(isDone(0));
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
}

TEST_F(RowTagsTest, TitleAndArtistComeFromATagWithATempo) {
    controller.addFile(
        path(writeClip("a.mp3", Tag(3, {TextFrame("TIT2", "Song"), TextFrame("TPE1", "Singer"),
                                        TextFrame("TBPM", "97.5")}))));
    EXPECT_EQ(title(0), "Song");
    EXPECT_EQ(artist(0), "Singer");
    EXPECT_EQ(tempo(0), "97.5");
    // Any other column is the title's.
    EXPECT_EQ(text(7, 0), "Song");
    EXPECT_EQ(text(-1, 0), "Song");
}

TEST_F(RowTagsTest, PinsTitleFollowsTheTempoText) {
    // A title without a tempo is not taken ...
    controller.addFile(path(writeClip("a.mp3", Tag(3, {TextFrame("TIT2", "Song")}))));
    EXPECT_EQ(title(0), "a.mp3");
    // ... and with any tempo text, be it no number, even an empty title is.
    controller.addFile(path(writeClip("b.mp3", Tag(3, {TextFrame("TBPM", "fast")}))));
    EXPECT_EQ(title(1), "");
    controller.addFile(
        path(writeClip("c.mp3", Tag(3, {TextFrame("TIT2", "Song"), TextFrame("TBPM", "fast")}))));
    EXPECT_EQ(title(2), "Song");
}

TEST_F(RowTagsTest, PinsYearOfAnOldTrailerPassesForATempo) {
    // 128 bytes at the end: "TAG", title, album, artist (30 each), year (4), comment (30), genre.
    // The year overwrites whatever is asked for unless the genre is a known one, up to 125.
    std::string trailer = "TAGSong";
    trailer.resize(93, ' ');
    trailer += "1999";
    trailer.resize(127, ' ');
    std::string const file = writeClip("a.mp3");
    WriteText(file, ReadText(file) + trailer + '\xFF');
    controller.addFile(path(file));
    EXPECT_TRUE(isDone(0));
    EXPECT_EQ(tempo(0), "1999");
    EXPECT_EQ(title(0), "1999");
    // With a known genre everything ends empty.
    std::string const other = writeClip("b.mp3");
    WriteText(other, ReadText(other) + trailer + '\x11');
    controller.addFile(path(other));
    EXPECT_FALSE(isDone(1));
    EXPECT_EQ(title(1), "b.mp3");
}

TEST_F(RowTagsTest, TheArtistIsTakenWithoutATempoToo) {
    controller.addFile(path(writeClip("a.mp3", Tag(3, {TextFrame("TPE1", "Singer")}))));
    EXPECT_EQ(artist(0), "Singer");
}

TEST_F(RowTagsTest, AFileThatCannotBeReadIsListedUnderItsName) {
    controller.addFile(path(folder / "missing.mp3"));
    EXPECT_EQ(title(0), "missing.mp3");
    EXPECT_EQ(artist(0), "");
    EXPECT_EQ(tempo(0), "");
    EXPECT_FALSE(isDone(0));
}

TEST_F(RowTagsTest, ATagWithUnknownOldIdsIsReadAndNotWritten) {
    // Version 2.2: three characters of id, three bytes of size. "ZZZ" has no name in 2.3.
    Bytes const titleFrame{'T', 'T', '2', 0, 0, 4, 0, 'a', 'b', 'c'};
    Bytes const tempoFrame{'T', 'B', 'P', 0, 0, 4, 0, '1', '2', '8'};
    Bytes const unknownFrame{'Z', 'Z', 'Z', 0, 0, 2, 0, 'x'};
    std::string const file = writeClip("a.mp3", Tag(2, {unknownFrame, titleFrame, tempoFrame}));
    Bytes const before = ReadBytes(file);
    controller.addFile(path(file));
    EXPECT_EQ(title(0), "abc");
    EXPECT_EQ(tempo(0), "128");
    EXPECT_TRUE(isDone(0));
    controller.reScan();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::UnknownFrameId);
    EXPECT_EQ(ReadBytes(file), before);
}
