// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "ControllerFixture.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <unistd.h>

// Rows whose file is not theirs alone.

namespace {

struct SharedRowsTest : ControllerTest {
    std::string tempoInTag(std::string const& file) const {
        CBPMFile row(path(file));
        return ReadRowTags(row).ToUtf8();
    }

    /// How many files were analysed.
    std::size_t turns() const { return view.canClose().size() / 2; }

    void expectStored(std::size_t row) const {
        EXPECT_EQ(tempo(row), "120.00") << row;
        EXPECT_TRUE(isDone(row)) << row;
        EXPECT_EQ(controller.rowState(row).m_writeProblem, EWriteProblem::None) << row;
    }
};

} // namespace

TEST_F(SharedRowsTest, ATempoThatSomebodySetMeanwhileStaysAndIsTaken) {
    std::string const file = writeClip("a.mp3");
    controller.addFile(path(file));
    // Another program sets a tempo, and a title, after the row was made.
    writeClip("a.mp3", Tag(3, {TextFrame("TBPM", "87"), TextFrame("TIT2", "Song")}));
    Bytes const before = ReadBytes(file);
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "87");
    EXPECT_EQ(title(0), "Song");
    EXPECT_TRUE(controller.rowState(0).m_bFromTag);
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::None);
    EXPECT_EQ(controller.status().m_nNotStored, 0U);
    EXPECT_EQ(controller.status().m_nUndone, 0U);
    EXPECT_EQ(ReadBytes(file), before);
    // Analysing everything again is a wish to replace what stands there.
    controller.reScan();
    waitUntilIdle();
    expectStored(0);
    EXPECT_EQ(tempoInTag(file), "120.00");
}

TEST_F(SharedRowsTest, ATagWithAnotherTextThatIsNoTempoIsWrittenInTheSecondAttempt) {
    std::string const file = writeClip("a.mp3");
    controller.addFile(path(file));
    writeClip("a.mp3", Tag(3, {TextFrame("TBPM", "fast")}));
    controller.analyze();
    waitUntilIdle();
    expectStored(0);
    EXPECT_EQ(turns(), 2U);
    EXPECT_EQ(tempoInTag(file), "120.00");
    EXPECT_EQ(controller.status().m_nUndone, 0U);
}

TEST_F(SharedRowsTest, AFileThatIsReplacedWhileItIsHeardIsHeardAnew) {
    std::string const file = writeLong("a.mp3");
    std::string const other = writeClip("other");
    controller.openFile({path(file)});
    waitFor([this] { return controller.rowState(0).m_bReading; });
    std::filesystem::rename(other, file);
    waitUntilIdle();
    expectStored(0);
    EXPECT_EQ(controller.rowState(0).m_outcome.m_problem, EAnalysisProblem::None);
    EXPECT_EQ(tempoInTag(file), "120.00");
}

TEST_F(SharedRowsTest, AFileThatIsLockedForAMomentIsWrittenAfterIt) {
    std::string const file = writeClip("a.mp3");
    int const locked = ::open(file.c_str(), O_RDONLY);
    ASSERT_EQ(::flock(locked, LOCK_EX), 0);
    controller.openFile({path(file)});
    waitFor([this] { return turns() > 0 || controller.status().m_bRunning; });
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    ::close(locked);
    waitUntilIdle();
    expectStored(0);
    EXPECT_EQ(tempoInTag(file), "120.00");
}

TEST_F(SharedRowsTest, AFileThatStaysLockedIsToldInTheEnd) {
    std::string const file = writeClip("a.mp3");
    Bytes const before = ReadBytes(file);
    int const locked = ::open(file.c_str(), O_RDONLY);
    ASSERT_EQ(::flock(locked, LOCK_EX), 0);
    controller.openFile({path(file)});
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::InUse);
    EXPECT_EQ(controller.status().m_nNotStored, 1U);
    EXPECT_EQ(ReadBytes(file), before);
    ::close(locked);
}

TEST_F(SharedRowsTest, NamesOfOneFileAreHeardOnceAndAllHaveTheirRow) {
    // The tag has room for the tempo, which is written in place.
    std::string const file = writeClip("a.mp3", Tag(3, {TextFrame("TIT2", "Song"), Bytes(100, 0)}));
    std::filesystem::create_hard_link(file, folder / "b.mp3");
    std::filesystem::create_symlink("a.mp3", folder / "c.mp3");
    for (char const* name : {"a.mp3", "b.mp3", "c.mp3"}) {
        controller.addFile(path(folder / name));
    }
    for (std::size_t round = 1; round <= 2; ++round) {
        round == 1 ? controller.analyze() : controller.reScan();
        waitUntilIdle();
        EXPECT_EQ(turns(), round);
        for (std::size_t row = 0; row < 3; ++row) {
            expectStored(row);
        }
        EXPECT_EQ(controller.status().m_nUndone, 0U);
    }
    EXPECT_EQ(tempoInTag(folder / "b.mp3"), "120.00");
}

TEST_F(SharedRowsTest, ANameThatKeepsTheOldFileIsHeardItself) {
    // Without a tag there is no room for one: a new version takes the place of one name.
    std::string const file = writeClip("a.mp3");
    std::filesystem::create_hard_link(file, folder / "b.mp3");
    controller.addFile(path(file));
    controller.addFile(path(folder / "b.mp3"));
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(turns(), 2U);
    expectStored(0);
    expectStored(1);
    EXPECT_EQ(tempoInTag(file), "120.00");
    EXPECT_EQ(tempoInTag(folder / "b.mp3"), "120.00");
}

TEST_F(SharedRowsTest, AllNamesOfABrokenFileFail) {
    WriteText(folder / "a.mp3", "this is no music at all");
    std::filesystem::create_hard_link(folder / "a.mp3", folder / "b.mp3");
    controller.openFile({path(folder / "a.mp3"), path(folder / "b.mp3")});
    waitUntilIdle();
    EXPECT_EQ(turns(), 1U);
    EXPECT_EQ(controller.status().m_nFailed, 2U);
    EXPECT_EQ(tempo(1), "0.00");
}

TEST_F(SharedRowsTest, IdsThatGetOtherNamesAreKnown) {
    // Version 2.2: three characters and three bytes of size; encoding 0, the text.
    controller.openFile(
        {path(writeClip("a.mp3", Tag(2, {Bytes{'G', 'P', '1', 0, 0, 2, 0, 'x'}})))});
    waitUntilIdle();
    expectStored(0);
    ASSERT_EQ(controller.rowState(0).m_vConverted.size(), 1U);
    EXPECT_EQ(controller.rowState(0).m_vConverted[0].m_sOld, "GP1");
    EXPECT_EQ(controller.rowState(0).m_vConverted[0].m_sNew, "GRP1");
}

TEST_F(SharedRowsTest, AHiddenNameIsLeftAlone) {
    WriteWav(folder / "a.wav", MakeClickTrack(120.0, 1.0));
    std::filesystem::create_hard_link(folder / "a.wav", folder / "b.wav");
    controller.addFile(path(folder / "a.wav"));
    controller.addFile(path(folder / "b.wav"));
    controller.setHidden({1}, true);
    controller.analyze();
    waitUntilIdle();
    EXPECT_FALSE(isDone(1));
    EXPECT_EQ(controller.status().m_nUndone, 0U);
    controller.setHidden({1}, false);
    EXPECT_EQ(controller.status().m_nUndone, 1U);
}
