// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "ControllerFixture.h"
#include "app/MacThread.h"

#include <atomic>
#include <filesystem>

namespace {

struct BPMControllerTest : ControllerTest {
    /// Adds a clip without starting the analysis.
    std::string addClip(std::string const& name) {
        std::string file = writeClip(name);
        controller.addFile(path(file));
        return file;
    }

    CUserInfo infoOf(std::size_t row, char const* key, std::string text) const {
        return {{kUserDataKey, static_cast<void*>(controller.fileAtRow(row))},
                {key, std::move(text)}};
    }

    void waitUntilRunning() const {
        waitFor([this] { return controller.status().m_nPercent >= 0; });
    }
};

using Flags = std::vector<bool>;
using Rows = std::vector<std::size_t>;

} // namespace

TEST_F(BPMControllerTest, WorksThroughTheRowsOneAfterTheOther) {
    addClip("a.mp3");
    addClip("b.mp3");
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(tempo(1), "120.00");
    EXPECT_TRUE(isDone(0));
    EXPECT_TRUE(isDone(1));
    // For each file: forbidden before it starts, allowed when it is through.
    EXPECT_EQ(view.canClose(), (Flags{false, true, false, true}));
}

TEST_F(BPMControllerTest, StoresTheTempoInTheTag) {
    std::string const file = addClip("a.mp3");
    controller.analyze();
    waitUntilIdle();
    BPMController other(view);
    other.addFile(path(file));
    EXPECT_EQ(CString(other.objectValueForTableColumn(2, 0)), "120.00");
    EXPECT_TRUE(other.rowState(0).m_bDone);
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::None);
    EXPECT_EQ(controller.status().m_nProblems, 0U);
}

TEST_F(BPMControllerTest, WithEveryRowDoneAnalyzeDoesNothingAndReScanDoesAll) {
    addClip("a.mp3");
    controller.addFile(path(writeClip("b.mp3", Tag(3, {TextFrame("TBPM", "99")}))));
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(tempo(1), "99");
    std::size_t const before = view.canClose().size();
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(view.canClose().size(), before);

    controller.reScan();
    waitUntilIdle();
    EXPECT_EQ(view.canClose().size(), before + 4);
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(tempo(1), "120.00");
}

TEST_F(BPMControllerTest, AnalyzeWithoutRowsDoesNothing) {
    controller.analyze();
    controller.reScan();
    EXPECT_TRUE(view.canClose().empty());
    EXPECT_FALSE(controller.status().m_bRunning);
}

TEST_F(BPMControllerTest, AProgressNotificationShowsItsTextInOneRow) {
    addClip("a.mp3");
    addClip("b.mp3");
    CUserInfo const info = infoOf(1, kPercentKey, " 7%");
    controller.onProfilerFileProgress(&info);
    EXPECT_EQ(tempo(1), " 7%");
    EXPECT_EQ(tempo(0), "");
    EXPECT_EQ(controller.rowState(1).m_nPercent, 7);
    EXPECT_EQ(view.reloaded(), (Rows{1}));
    EXPECT_FALSE(isDone(1));
}

TEST_F(BPMControllerTest, NotificationsWithoutARowAreIgnored) {
    addClip("a.mp3");
    CBPMFile stranger(path("/elsewhere.mp3"));
    CUserInfo const strange{{kUserDataKey, static_cast<void*>(&stranger)},
                            {kPercentKey, std::string("50%")},
                            {kBpmKey, std::string("99.00")}};
    CUserInfo const empty;
    for (CUserInfo const* info : {&strange, &empty, static_cast<CUserInfo const*>(nullptr)}) {
        controller.onProfilerFileProgress(info);
        controller.onFileComplete(info);
    }
    EXPECT_EQ(tempo(0), "");
    EXPECT_FALSE(isDone(0));
    EXPECT_TRUE(view.reloaded().empty());
}

TEST_F(BPMControllerTest, ACompleteFileGetsItsTempoInItsRow) {
    std::string const file = addClip("a.mp3");
    Bytes const before = ReadBytes(file);
    CUserInfo const progress = infoOf(0, kPercentKey, "99%");
    CUserInfo const complete = infoOf(0, kBpmKey, "101.50");
    controller.onProfilerFileProgress(&progress);
    controller.onFileComplete(&complete);
    EXPECT_EQ(tempo(0), "101.50");
    EXPECT_EQ(controller.rowState(0).m_nPercent, -1);
    EXPECT_TRUE(isDone(0));
    // Nothing was heard of this file, so nothing is written into it.
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::NotMpegAudio);
    EXPECT_EQ(ReadBytes(file), before);
}

TEST_F(BPMControllerTest, AnAnalysedFileGetsItsTempoInRowAndTag) {
    std::string const file = addClip("a.mp3");
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::None);
    CBPMFile again(path(file));
    EXPECT_EQ(ReadRowTags(again), "120.00");
}

TEST_F(BPMControllerTest, WhatIsNoMpegAudioIsNotWrittenWhateverItsName) {
    WriteWav(folder / "a.mp3", MakeClickTrack(120.0, 1.0));
    Bytes const before = ReadBytes(folder / "a.mp3");
    controller.openFile({path(folder / "a.mp3")});
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::NotMpegAudio);
    EXPECT_EQ(ReadBytes(folder / "a.mp3"), before);
}

TEST_F(BPMControllerTest, ALinkToAnotherKindIsNotWrittenThrough) {
    std::string const target = writeClip("target.key");
    std::filesystem::create_symlink(target, folder / "a.mp3");
    Bytes const before = ReadBytes(target);
    controller.openFile({path(folder / "a.mp3")});
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::LinkTarget);
    EXPECT_EQ(ReadBytes(target), before);
}

TEST_F(BPMControllerTest, PinsAFailedFileIsDoneWithZeroInItsRow) {
    std::string const file = folder / "a.mp3";
    WriteText(file, "this is a text and no music at all");
    controller.openFile({path(file)});
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "0.00");
    EXPECT_TRUE(isDone(0));
    EXPECT_EQ(controller.rowState(0).m_outcome.m_problem, EAnalysisProblem::NotDecoded);
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::None);
    EXPECT_EQ(ReadText(file), "this is a text and no music at all");
    EXPECT_EQ(controller.status().m_nFailed, 1U);
    EXPECT_EQ(controller.status().m_nProblems, 1U);
    EXPECT_EQ(controller.status().m_nProblemRow, 0U);
    // It isn't tried again until everything is.
    std::size_t const turns = view.canClose().size();
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(view.canClose().size(), turns);
    controller.reScan();
    waitUntilIdle();
    EXPECT_GT(view.canClose().size(), turns);
    EXPECT_EQ(controller.status().m_nFailed, 1U);
}

TEST_F(BPMControllerTest, ASilentFileHasNoTempoAndAReason) {
    std::string const file = writeLong("a.wav");
    controller.openFile({path(file)});
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "0.00");
    EXPECT_EQ(controller.rowState(0).m_outcome.m_problem, EAnalysisProblem::NoBeat);
}

TEST_F(BPMControllerTest, ARowThatIsStartedHasProgressAtOnce) {
    controller.openFile({path(writeLong("a.wav"))});
    waitUntilRunning();
    EXPECT_GE(controller.rowState(0).m_nPercent, 0);
    EXPECT_GE(view.reloaded().size(), 1U);
    controller.stop();
    waitUntilIdle();
    EXPECT_EQ(controller.rowState(0).m_nPercent, -1);
}

TEST_F(BPMControllerTest, AFileIsBeingReadUntilItsFirstPercentage) {
    controller.openFile({path(writeLong("a.wav"))});
    waitFor([this] { return controller.rowState(0).m_bReading; });
    EXPECT_EQ(tempo(0), "");
    EXPECT_TRUE(controller.status().m_bReading);
    waitFor([this] { return !controller.rowState(0).m_bReading; });
    EXPECT_TRUE(tempo(0).ends_with('%')) << tempo(0);
    EXPECT_FALSE(controller.status().m_bReading);
    controller.stop();
    waitUntilIdle();
    EXPECT_FALSE(controller.rowState(0).m_bReading);
}

TEST_F(BPMControllerTest, ATempoOfTheTagIsKnownAsSuchUntilOursReplacesIt) {
    controller.addFile(path(writeClip("a.mp3", Tag(3, {TextFrame("TBPM", "99")}))));
    addClip("b.mp3");
    controller.analyze();
    waitUntilIdle();
    EXPECT_TRUE(controller.rowState(0).m_bFromTag);
    EXPECT_FALSE(controller.rowState(1).m_bFromTag);
    controller.reScan();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_FALSE(controller.rowState(0).m_bFromTag);
}

TEST_F(BPMControllerTest, AFailureIsForgottenWhenTheFileWorksLater) {
    std::string const file = folder / "a.mp3";
    WriteText(file, "");
    controller.openFile({path(file)});
    waitUntilIdle();
    EXPECT_EQ(controller.status().m_nFailed, 1U);
    writeClip("a.mp3");
    controller.reScan();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(controller.rowState(0).m_outcome.m_problem, EAnalysisProblem::None);
    EXPECT_EQ(controller.status().m_nFailed, 0U);
}

TEST_F(BPMControllerTest, ATempoThatCouldNotBeStoredIsTold) {
    std::string const file = addClip("a.mp3");
    // The new file of the tag is built under this name; a folder there keeps it from being made.
    std::filesystem::create_directory(folder / "a.MP~");
    Bytes const before = ReadBytes(file);
    controller.analyze();
    waitUntilIdle();
    EXPECT_TRUE(isDone(0));
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::NoTemporaryFile);
    EXPECT_EQ(controller.status().m_nNotStored, 1U);
    EXPECT_EQ(controller.status().m_nProblems, 1U);
    EXPECT_EQ(ReadBytes(file), before);
}

TEST_F(BPMControllerTest, AFileOfAnotherTypeIsNotWrittenAndThatIsNoProblem) {
    WriteWav(folder / "a.wav", MakeClickTrack(120.0, 1.0));
    Bytes const before = ReadBytes(folder / "a.wav");
    controller.openFile({path(folder / "a.wav")});
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::OtherExtension);
    EXPECT_EQ(controller.status().m_nProblems, 0U);
    EXPECT_EQ(ReadBytes(folder / "a.wav"), before);
}

TEST_F(BPMControllerTest, StopLeavesTheRunningFileAndThoseBehindItUntouched) {
    std::string const first = writeLong("a.wav");
    std::string const second = writeClip("b.mp3");
    controller.openFile({path(first), path(second)});
    waitUntilRunning();
    Bytes const before = ReadBytes(second);
    controller.stop();
    EXPECT_EQ(tempo(0), "");
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "");
    EXPECT_EQ(tempo(1), "");
    EXPECT_FALSE(isDone(0));
    EXPECT_FALSE(isDone(1));
    EXPECT_EQ(controller.rowState(0).m_nPercent, -1);
    EXPECT_EQ(controller.rowState(0).m_outcome.m_problem, EAnalysisProblem::None);
    EXPECT_EQ(controller.status().m_nUndone, 2U);
    EXPECT_EQ(ReadBytes(second), before);
    EXPECT_EQ(view.canClose(), (Flags{false, true}));
}

TEST_F(BPMControllerTest, StoppingARescanShowsTheOldTempoAgain) {
    std::string const file = writeLong("a.wav");
    controller.addFile(path(file));
    CUserInfo const complete = infoOf(0, kBpmKey, "97.00");
    controller.onFileComplete(&complete);
    controller.reScan();
    waitFor([this] { return tempo(0) != "97.00"; });
    controller.stop();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "97.00");
    EXPECT_FALSE(isDone(0));
}

TEST_F(BPMControllerTest, AnalyzeAfterAStopGoesOnWhereItStood) {
    controller.openFile({path(writeLong("a.wav"))});
    waitUntilRunning();
    controller.stop();
    waitUntilIdle();
    // A short file takes the long one's place.
    WriteWav(folder / "a.wav", MakeClickTrack(120.0, 1.0));
    controller.analyze();
    waitUntilIdle();
    EXPECT_EQ(tempo(0), "120.00");
}

TEST_F(BPMControllerTest, AnalyzeWhileAStopIsWindingDownIsNotForgotten) {
    controller.openFile({path(writeLong("a.wav"))});
    waitUntilRunning();
    WriteWav(folder / "b.wav", MakeClickTrack(120.0, 1.0));
    controller.addFile(path(folder / "b.wav"));
    controller.stop();
    WriteWav(folder / "a.wav", MakeClickTrack(120.0, 1.0));
    controller.analyze();
    waitUntilIdle();
    EXPECT_TRUE(isDone(0));
    EXPECT_TRUE(isDone(1));
}

TEST_F(BPMControllerTest, StopEndsAnAdditionToo) {
    std::filesystem::create_directory(folder / "many");
    for (int i = 0; i < 1'000; ++i) {
        WriteText(folder / ("many/" + std::to_string(i) + ".mp3"), "");
    }
    controller.acceptDrop({path(folder / "many")});
    waitFor([this] { return controller.numberOfRowsInTableView() > 0; });
    controller.stop();
    waitUntilIdle();
    EXPECT_LT(controller.numberOfRowsInTableView(), 1'000U);
    EXPECT_TRUE(view.canClose().empty());
}

TEST_F(BPMControllerTest, RowsAddedDuringABatchAreReached) {
    controller.openFile({path(writeClip("a.mp3"))});
    for (int i = 0; i < 10; ++i) {
        controller.acceptDrop({path(writeClip(std::to_string(i) + ".mp3"))});
    }
    waitUntilIdle();
    ASSERT_EQ(controller.numberOfRowsInTableView(), 11U);
    for (std::size_t row = 0; row < 11; ++row) {
        EXPECT_TRUE(isDone(row)) << row;
    }
}

TEST_F(BPMControllerTest, ABatchHoldsTwoThreadObjectsAtMost) {
    std::vector<CString> files;
    for (int i = 0; i < 200; ++i) {
        WriteText(folder / (std::to_string(i) + ".wav"), "no music");
        files.push_back(path(folder / (std::to_string(i) + ".wav")));
    }
    int const before = MacThread::getObjectCount();
    std::atomic<int> most{0};
    CNotificationCenter::Default().AddObserver(&most, kFileCompleteNotification,
                                               [&](CUserInfo const*) {
                                                   int const now = MacThread::getObjectCount();
                                                   most = std::max(most.load(), now - before);
                                               });
    controller.openFile(std::move(files));
    waitUntilIdle();
    CNotificationCenter::Default().RemoveObserver(&most, kFileCompleteNotification);
    EXPECT_EQ(controller.status().m_nUndone, 0U);
    EXPECT_GE(most, 1);
    EXPECT_LE(most, 2);
}

TEST_F(BPMControllerTest, DropsDuringABatchOfFiftyFilesRaceWithNothing) {
    std::vector<CString> files;
    for (int i = 0; i < 50; ++i) {
        files.push_back(path(writeClip("batch" + std::to_string(i) + ".mp3")));
    }
    controller.openFile(files);
    std::thread reader([this] {
        for (int i = 0; i < 2'000; ++i) {
            std::size_t const row = static_cast<std::size_t>(i) % 60;
            (void)controller.objectValueForTableColumn(2, row);
            (void)controller.rowState(row);
            (void)controller.status();
        }
    });
    for (int i = 0; i < 30; ++i) {
        controller.acceptDrop({path(writeClip("drop" + std::to_string(i) + ".mp3"))});
        controller.analyze();
    }
    reader.join();
    waitUntilIdle();
    EXPECT_EQ(controller.numberOfRowsInTableView(), 80U);
    EXPECT_EQ(controller.status().m_nUndone, 0U);
}

TEST_F(BPMControllerTest, TheStatusCountsTheBatch) {
    addClip("a.mp3");
    addClip("b.mp3");
    controller.addFile(path(writeClip("c.mp3", Tag(3, {TextFrame("TBPM", "99")}))));
    CBatchStatus status = controller.status();
    EXPECT_EQ(status.m_nRows, 3U);
    EXPECT_EQ(status.m_nUndone, 2U);
    EXPECT_FALSE(status.m_bRunning);
    std::size_t most = 0;
    std::string running;
    std::vector<std::size_t> places;
    CNotificationCenter::Default().AddObserver(
        &most, kFileProgressNotification, [&](CUserInfo const*) {
            CBatchStatus const now = controller.status();
            if (places.empty() || places.back() != now.m_nBatchPlace) {
                places.push_back(now.m_nBatchPlace);
            }
            most = std::max(most, now.m_nBatchFiles);
            if (running.empty()) {
                running = CString(now.m_sRunningName).ToUtf8();
            }
        });
    controller.analyze();
    waitUntilIdle();
    CNotificationCenter::Default().RemoveObserver(&most, kFileProgressNotification);
    EXPECT_EQ(most, 2U);
    EXPECT_EQ(running, "a.mp3");
    EXPECT_EQ(places, (Rows{1, 2}));
    status = controller.status();
    EXPECT_EQ(status.m_nUndone, 0U);
    EXPECT_EQ(status.m_nBatchFiles, 0U);
    EXPECT_EQ(status.m_nPercent, -1);
    EXPECT_EQ(status.m_nBatchPlace, 0U);
}

TEST_F(BPMControllerTest, TerminationCancelsTheRunningFileAndWaitsForIt) {
    std::string const file = writeLong("a.wav");
    controller.openFile({path(file)});
    waitUntilRunning();
    int const before = MacThread::getObjectCount();
    EXPECT_GE(before, 1);
    controller.applicationWillTerminate();
    EXPECT_EQ(MacThread::getObjectCount(), 0);
    EXPECT_EQ(controller.numberOfRowsInTableView(), 0U);
    controller.applicationWillTerminate();
    // Nothing works any more, and nothing breaks.
    controller.analyze();
    controller.reScan();
    controller.stop();
    controller.addFile(path(file));
    controller.acceptDrop({path(file)});
    EXPECT_EQ(controller.numberOfRowsInTableView(), 0U);
}

TEST_F(BPMControllerTest, TerminationEndsAnAddition) {
    std::filesystem::create_directory(folder / "many");
    for (int i = 0; i < 2'000; ++i) {
        WriteText(folder / ("many/" + std::to_string(i) + ".mp3"), "");
    }
    controller.acceptDrop({path(folder / "many")});
    controller.applicationWillTerminate();
    EXPECT_EQ(controller.numberOfRowsInTableView(), 0U);
}

TEST_F(BPMControllerTest, TerminationDuringATagWriteLetsItFinish) {
    std::string const file = addClip("a.mp3");
    // The row is done a moment before its tag is written.
    controller.analyze();
    waitFor([&] { return isDone(0); });
    controller.applicationWillTerminate();
    CBPMFile again(path(file));
    (void)ReadRowTags(again);
    EXPECT_EQ(again.GetTempo(), "120.00");
}

TEST_F(BPMControllerTest, HelpOpensTheHomePage) {
    controller.onHelp();
    EXPECT_EQ(view.helps(), 1);
}

TEST_F(BPMControllerTest, TheProgramEndsWithItsLastWindow) {
    EXPECT_TRUE(controller.applicationShouldTerminateAfterLastWindowClosed());
    EXPECT_TRUE(controller.applicationShouldTerminate());
}
