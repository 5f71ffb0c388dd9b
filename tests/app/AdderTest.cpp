// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "ControllerFixture.h"

#include <filesystem>
#include <latch>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Root may read everything, so for its lifetime root is somebody else.
class CNobody {
public:
    CNobody() { (void)seteuid(kNobody); }
    ~CNobody() { (void)seteuid(m_nBefore); }
    CNobody(CNobody const&) = delete;
    CNobody& operator=(CNobody const&) = delete;

private:
    static constexpr uid_t kNobody = 65534; // Standard: the user without rights on Linux.
    uid_t const m_nBefore = geteuid();
};

struct AdderTest : ControllerTest {
    /// The titles of all rows, in order.
    std::vector<std::string> titles() const {
        std::vector<std::string> all;
        for (std::size_t row = 0; row < controller.numberOfRowsInTableView(); ++row) {
            all.push_back(title(row));
        }
        return all;
    }

    void makeFolder(std::string const& name) const {
        std::filesystem::create_directories(folder / name);
    }

    bool isShown(char const* name) const {
        return controller.panelShouldShowFilename(path(folder / name));
    }

    bool canChoose(char const* name) const {
        return controller.panelCanChooseFilename(path(folder / name));
    }
};

using Texts = std::vector<std::string>;

/// A window that holds the adding worker at its first row until it is let go.
class HoldingView : public FakeView {
public:
    void rowsAdded() override {
        FakeView::rowsAdded();
        m_seen.count_down(added() == 1 ? 1 : 0);
        m_released.wait();
    }

    void AwaitRow() { m_seen.wait(); }
    void Release() { m_released.count_down(); }

private:
    std::latch m_seen{1};
    std::latch m_released{1};
};

} // namespace

TEST_F(AdderTest, TheSamePathTwiceKeepsOneRow) {
    std::string const file = writeClip("a.mp3");
    controller.addFile(path(file));
    controller.addFile(path(file));
    controller.add(path(file));
    EXPECT_EQ(controller.numberOfRowsInTableView(), 1U);
    EXPECT_EQ(view.added(), 1);
}

TEST_F(AdderTest, PathsThatAreInTheListAlreadyAreCounted) {
    writeClip("a.mp3");
    writeClip("b.mp3");
    controller.add(path(folder.Path()));
    EXPECT_EQ(controller.status().m_nKnown, 0U);
    writeClip("c.mp3");
    controller.add(path(folder.Path()));
    EXPECT_EQ(controller.numberOfRowsInTableView(), 3U);
    EXPECT_EQ(controller.status().m_nKnown, 2U);
}

TEST_F(AdderTest, PathsAreComparedAsTheyAreWritten) {
    writeClip("a.mp3");
    controller.addFile(path(folder / "a.mp3"));
    controller.addFile(path(folder / "./a.mp3"));
    EXPECT_EQ(controller.numberOfRowsInTableView(), 2U);
}

TEST_F(AdderTest, AFolderGivesEveryMatchingFileBelowIt) {
    makeFolder("album/disc 2");
    WriteText(folder / "album/b.WAV", "");
    WriteText(folder / "album/cover.jpg", "");
    WriteText(folder / "album/disc 2/c.aif", "");
    WriteText(folder / "album/disc 2/d.m4a", "");
    WriteText(folder / "album/disc 2/e.caf", "");
    WriteText(folder / "album/disc 2/notes", "");
    WriteText(folder / "other.mp3", "");
    controller.add(path(folder / "album"));
    EXPECT_EQ(titles(), (Texts{"b.WAV", "c.aif", "d.m4a", "e.caf"}));
}

TEST_F(AdderTest, ADroppedFolderIsAddedAndAnalysed) {
    makeFolder("album/deep/deeper");
    writeClip("album/deep/deeper/a.mp3");
    EXPECT_TRUE(controller.acceptDrop({path(folder / "album")}));
    waitUntilIdle();
    ASSERT_EQ(controller.numberOfRowsInTableView(), 1U);
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_TRUE(isDone(0));
}

TEST_F(AdderTest, DroppedPathsAreAddedInTheirOrder) {
    writeClip("z.mp3");
    writeClip("a.mp3");
    controller.acceptDrop({path(folder / "z.mp3"), path(folder / "a.mp3")});
    waitUntilIdle();
    EXPECT_EQ(titles(), (Texts{"z.mp3", "a.mp3"}));
}

TEST_F(AdderTest, AFileThatIsNamedItselfNeedsNoKnownExtension) {
    WriteText(folder / "readme.txt", "no music");
    controller.add(path(folder / "readme.txt"));
    EXPECT_EQ(titles(), (Texts{"readme.txt"}));
}

TEST_F(AdderTest, AFolderWithAMatchingNameIsARowToo) {
    makeFolder("album/live.mp3");
    WriteText(folder / "album/live.mp3/a.wav", "");
    controller.add(path(folder / "album"));
    EXPECT_EQ(titles(), (Texts{"live.mp3", "a.wav"}));
}

TEST_F(AdderTest, ThePanelShowsFoldersAndSupportedFiles) {
    makeFolder("folder.txt");
    EXPECT_TRUE(isShown("folder.txt"));
    EXPECT_TRUE(isShown("a.wav"));
    EXPECT_TRUE(isShown("a.MP3"));
    EXPECT_TRUE(isShown("a.aiff"));
    EXPECT_TRUE(isShown("a.m4a"));
    EXPECT_FALSE(isShown("a.txt"));
    EXPECT_FALSE(isShown("a.ogg"));
    EXPECT_FALSE(isShown("a"));
    EXPECT_FALSE(isShown("a."));
    EXPECT_FALSE(isShown("mp3"));
}

TEST_F(AdderTest, PinsExtensionIsSearchedInTheJoinedList) {
    EXPECT_TRUE(isShown("a.if"));
    EXPECT_TRUE(isShown("a.m4"));
    EXPECT_TRUE(isShown("a.v"));
    EXPECT_TRUE(isShown("a.wav;mp3"));
    makeFolder("odd");
    WriteText(folder / "odd/a.if", "");
    WriteText(folder / "odd/b.xyz", "");
    controller.add(path(folder / "odd"));
    EXPECT_EQ(titles(), (Texts{"a.if"}));
}

TEST_F(AdderTest, ThePanelLetsThreeTypesAndFoldersBeChosen) {
    makeFolder("folder");
    EXPECT_TRUE(canChoose("folder"));
    EXPECT_TRUE(canChoose("a.wav"));
    EXPECT_TRUE(canChoose("a.Mp3"));
    EXPECT_TRUE(canChoose("a.aiff"));
    EXPECT_FALSE(canChoose("a.aif"));
    EXPECT_FALSE(canChoose("a.m4a"));
    EXPECT_FALSE(canChoose("a.caf"));
}

TEST_F(AdderTest, DropsOfFileNamesAreTakenAsACopyAndOthersRefused) {
    CDropAnswer const taken = controller.validateDrop(true, 7);
    EXPECT_EQ(taken.m_operation, EDropOperation::Copy);
    EXPECT_EQ(taken.m_nRow, 7);
    EXPECT_EQ(controller.validateDrop(false, 7).m_operation, EDropOperation::None);
}

TEST_F(AdderTest, AFifoIsListedWithoutWaitingForIt) {
    std::string const fifo = folder / "pipe.mp3";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    controller.acceptDrop({path(fifo)});
    waitUntilIdle();
    EXPECT_EQ(title(0), "pipe.mp3");
    EXPECT_EQ(tempo(0), "0.00");
    EXPECT_EQ(controller.rowState(0).m_outcome.m_problem, EAnalysisProblem::NotDecoded);
}

TEST_F(AdderTest, ANameThatIsNotUtf8IsAddedAndAnalysed) {
    std::string const name = "caf\xE9.mp3";
    std::string const file = writeClip(name);
    controller.acceptDrop({path(file)});
    waitUntilIdle();
    ASSERT_EQ(controller.numberOfRowsInTableView(), 1U);
    EXPECT_EQ(CString(controller.objectValueForTableColumn(0, 0)).ToPath(), name);
    EXPECT_EQ(tempo(0), "120.00");
}

TEST_F(AdderTest, AStopEndsADropOfPlainFiles) {
    std::vector<CString> paths;
    for (int i = 0; i < 300; ++i) {
        paths.push_back(path(folder / ("no song " + std::to_string(i) + ".mp3")));
    }
    HoldingView holding;
    BPMController held{holding};
    held.acceptDrop(paths);
    holding.AwaitRow();
    held.stop();
    holding.Release();
    waitFor([&] { return !held.status().m_bAdding; });
    EXPECT_EQ(held.numberOfRowsInTableView(), 1U);
    EXPECT_FALSE(held.status().m_bRunning);
}

TEST_F(AdderTest, AStopKeepsFurtherFoldersOfADropFromBeingWalked) {
    makeFolder("closed");
    std::filesystem::permissions(folder.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(folder / "closed", std::filesystem::perms::none);
    CNobody const nobody;
    HoldingView holding;
    BPMController held{holding};
    held.acceptDrop({path(folder / "no song.mp3"), path(folder / "closed")});
    holding.AwaitRow();
    held.stop();
    holding.Release();
    waitFor([&] { return !held.status().m_bAdding; });
    EXPECT_EQ(held.status().m_nUnreadFolders, 0U); // a walk would have met one
}

TEST_F(AdderTest, WhatIsDroppedAfterAStopIsAdded) {
    controller.stop();
    controller.acceptDrop({path(writeClip("one.mp3"))});
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
}

TEST_F(AdderTest, AFolderThatCannotBeReadIsTold) {
    makeFolder("open/closed");
    WriteText(folder / "open/a.mp3", "");
    std::filesystem::permissions(folder.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(folder / "open/closed", std::filesystem::perms::none);
    {
        CNobody const nobody;
        controller.add(path(folder / "open"));
    }
    EXPECT_EQ(titles(), (Texts{"a.mp3"}));
    CBatchStatus const status = controller.status();
    EXPECT_EQ(status.m_nUnreadFolders, 1U);
    EXPECT_EQ(CString(status.m_sUnreadFolder).ToPath(), folder / "open/closed");
}

TEST_F(AdderTest, FiftyThousandRowsAndAsManyDuplicatesKeepOneRowEach) {
    // Paths that don't exist cost no reading: what is left is the search for duplicates, which
    // would take minutes if every path were compared with every row.
    constexpr int kRows = 50'000;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < kRows; ++i) {
            controller.addFile(path("/missing/" + std::to_string(i) + ".mp3"));
        }
    }
    EXPECT_EQ(controller.numberOfRowsInTableView(), static_cast<std::size_t>(kRows));
}
