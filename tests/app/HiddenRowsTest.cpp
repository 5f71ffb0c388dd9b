// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "ControllerFixture.h"

namespace {

struct HiddenRowsTest : ControllerTest {
    /// Adds a clip without analysing it.
    std::string addClip(std::string const& name) {
        std::string file = writeClip(name);
        controller.addFile(path(file));
        return file;
    }

    bool isHidden(std::size_t row) const { return controller.rowState(row).m_bHidden; }
};

} // namespace

TEST_F(HiddenRowsTest, AHiddenRowStaysInTheListAndIsNotAnalysed) {
    std::string const first = addClip("a.mp3");
    addClip("b.mp3");
    auto const before = ReadBytes(first);
    controller.setHidden({0}, true);
    EXPECT_EQ(controller.numberOfRowsInTableView(), 2U);
    EXPECT_TRUE(isHidden(0));
    EXPECT_EQ(controller.status().m_nHidden, 1U);
    EXPECT_EQ(controller.status().m_nUndone, 1U);
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "");
    EXPECT_EQ(tempo(1), "120.00");
    EXPECT_EQ(ReadBytes(first), before);
}

TEST_F(HiddenRowsTest, ARowThatIsBroughtBackIsAnalysedAgain) {
    addClip("a.mp3");
    controller.setHidden({0}, true);
    controller.setHidden({0}, true);
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "");
    controller.setHidden({0}, false);
    EXPECT_EQ(controller.status().m_nHidden, 0U);
    EXPECT_EQ(controller.status().m_nUndone, 1U);
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
}

TEST_F(HiddenRowsTest, AddingAHiddenFileAgainBringsItBack) {
    std::string const file = addClip("a.mp3");
    controller.setHidden({0}, true);
    controller.openFile({path(file)});
    waitUntilIdle();
    EXPECT_FALSE(isHidden(0));
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(controller.numberOfRowsInTableView(), 1U);
    EXPECT_EQ(controller.status().m_nReturned, 1U);
    EXPECT_EQ(controller.status().m_nKnown, 0U);
}

TEST_F(HiddenRowsTest, HidingTheRunningRowGivesItUpAndTheBatchGoesOn) {
    controller.addFile(path(writeLong("a.wav")));
    addClip("b.mp3");
    controller.analyze();
    waitFor([this] { return controller.status().m_nPercent >= 0; });
    controller.setHidden({0}, true);
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "");
    EXPECT_EQ(controller.rowState(0).m_nPercent, -1);
    EXPECT_EQ(tempo(1), "120.00");
    EXPECT_EQ(controller.status().m_nUndone, 0U);
}

TEST_F(HiddenRowsTest, ARowThatComesBackDuringABatchIsReached) {
    addClip("a.mp3");
    controller.addFile(path(writeLong("b.wav")));
    controller.setHidden({0}, true);
    controller.analyze();
    waitFor([this] { return controller.status().m_nPercent >= 0; });
    EXPECT_EQ(controller.status().m_nBatchFiles, 1U);
    controller.setHidden({0}, false);
    EXPECT_EQ(controller.status().m_nBatchFiles, 2U);
    controller.setHidden({1}, true);
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
}

TEST_F(HiddenRowsTest, AnalyzingEverythingAgainLeavesHiddenRowsAlone) {
    addClip("a.mp3");
    addClip("b.mp3");
    controller.analyze();
    waitUntilIdle();
    std::string const first = folder / "a.mp3";
    controller.setHidden({0}, true);
    auto const before = ReadBytes(first);
    WriteText(folder / "b.mp3", "no music any more");
    controller.reScan();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(tempo(1), "0.00");
    EXPECT_EQ(ReadBytes(first), before);
}

TEST_F(HiddenRowsTest, RowsThatAreNotThereAreIgnored) {
    addClip("a.mp3");
    controller.setHidden({7}, true);
    EXPECT_EQ(controller.status().m_nHidden, 0U);
}
