// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/Corrector.h"

#include "ControllerFixture.h"

#include "IDTag/TagStore.h"
#include "song/SongTags.h"
#include "song/StoreTempo.h"

#include <cstdlib>
#include <filesystem>

namespace {

/// A journal that nobody has written into.
struct COwnState {
    COwnState() { (void)::setenv("XDG_STATE_HOME", (m_state / "s").c_str(), 1); }
    ~COwnState() { (void)::setenv("XDG_STATE_HOME", m_before.c_str(), 1); }

    CTempFolder m_state;
    std::string m_before = std::getenv("XDG_STATE_HOME");
};

struct CorrectorTest : COwnState, ControllerTest {
    CorrectorTest() { corrector.emplace(controller); }
    ~CorrectorTest() override { corrector.reset(); }

    std::string addTagged(std::string const& name, std::string const& bpm) {
        std::string file = writeClip(name, Tag(3, {TextFrame("TBPM", bpm)}));
        controller.addFile(path(file));
        return file;
    }

    /// Waits until all that was asked for is done, as the end of the program does, and begins anew
    /// over the same rows.
    void settle() {
        corrector->End();
        corrector.emplace(controller);
    }

    /// Waits until the worker is done, and keeps what is remembered of this session.
    void wait() {
        waitFor([this] { return corrector->IsIdle(); });
    }

    void undo() {
        corrector->Undo();
        wait();
    }
    void redo() {
        corrector->Redo();
        wait();
    }

    static std::string tag(std::string const& file) {
        CString text;
        return ReadTagText(CString::FromPath(file), "TBPM", text) == kStatusOk ? text.ToUtf8()
                                                                               : "<none>";
    }

    /// A song of another kind, with this tempo in its tag where there is one.
    std::string writeOther(std::string const& name, char const* bpm) const {
        WriteWav(folder / "clip", MakeClickTrack(120.0, 1.0));
        Ffmpeg({"-i", folder / "clip", "-map_metadata", "-1", folder / name});
        if (bpm != nullptr) {
            EXPECT_EQ(StoreGivenTempo(path(folder / name), bpm, {}), EWriteProblem::None);
        }
        return folder / name;
    }

    static double shownTempo(std::string const& file) {
        return ReadShownTags(CString::FromPath(file)).m_tempo.m_dBpm;
    }

    void correct(std::vector<std::size_t> const& rows, char const* word) {
        ASSERT_TRUE(corrector->Correct(rows, TempoFixOf(word).value()));
        wait();
    }

    std::optional<CCorrector> corrector;
};

} // namespace

TEST(CorrectorRefusalTest, RowsMustStayFrom20To999) {
    CTempoSpread const spread{
        .m_nRows = 2, .m_nRunning = 0, .m_dSlowest = 40.0, .m_dFastest = 499.5};
    EXPECT_EQ(RefusalOf(spread, {.m_nTimes = 2, .m_nOver = 1}), ECorrectionRefusal::None);
    EXPECT_EQ(RefusalOf(spread, {.m_nTimes = 1, .m_nOver = 2}), ECorrectionRefusal::None);
    EXPECT_EQ(RefusalOf({1, 0, 39.9, 39.9}, {.m_nTimes = 1, .m_nOver = 2}),
              ECorrectionRefusal::TooSlow);
    EXPECT_EQ(RefusalOf({2, 0, 40.0, 499.6}, {.m_nTimes = 2, .m_nOver = 1}),
              ECorrectionRefusal::TooFast);
    EXPECT_EQ(RefusalOf({}, {.m_nTimes = 2, .m_nOver = 1}), ECorrectionRefusal::NoTempo);
    EXPECT_EQ(RefusalOf({0, 1, 0.0, 0.0}, {.m_nTimes = 2, .m_nOver = 1}),
              ECorrectionRefusal::Running);
}

TEST_F(CorrectorTest, TheWholeSelectionIsCorrectedAndWritten) {
    std::string const a = addTagged("a.mp3", "94.99");
    std::string const b = addTagged("b.mp3", "128");
    std::string const c = addTagged("c.mp3", "87");
    correct({0, 1}, "x2");
    EXPECT_EQ(tempo(0), "189.98");
    EXPECT_EQ(tempo(1), "256.00");
    EXPECT_EQ(tempo(2), "87");
    EXPECT_EQ(tag(a), "189.98");
    EXPECT_EQ(tag(b), "256.00");
    EXPECT_EQ(tag(c), "87");
    EXPECT_TRUE(controller.rowState(0).m_bByHand);
    EXPECT_FALSE(controller.rowState(2).m_bByHand);
    EXPECT_FALSE(controller.rowState(0).m_bFromTag);
}

TEST_F(CorrectorTest, NothingIsRoundedButTheText) {
    addTagged("a.mp3", "100.01");
    correct({0}, "2:3");
    EXPECT_EQ(tempo(0), "66.67"); // 66.6733
    correct({0}, "3:2");
    EXPECT_EQ(tempo(0), "100.01"); // from 66.67 it would be 100.00 or 100.01, by the rounding
    correct({0}, "2:3");
    correct({0}, "2:3");
    EXPECT_EQ(tempo(0), "44.45"); // 44.4489
    correct({0}, "3:2");
    correct({0}, "3:2");
    EXPECT_EQ(tempo(0), "100.01"); // from 44.45 it would be 100.02
}

TEST_F(CorrectorTest, WhatLeadsOutOfTheRangeIsRefusedAndChangesNothing) {
    std::string const a = addTagged("a.mp3", "94.99");
    std::string const b = addTagged("b.mp3", "600");
    auto const before = ReadBytes(a);
    EXPECT_FALSE(corrector->Correct({0, 1}, *TempoFixOf("x2")));
    EXPECT_FALSE(corrector->Correct({0}, {.m_dBpm = 19.9}));
    EXPECT_FALSE(corrector->Correct({}, *TempoFixOf("x2")));
    wait();
    EXPECT_EQ(tempo(0), "94.99");
    EXPECT_EQ(ReadBytes(a), before);
    EXPECT_FALSE(corrector->State().m_undo);
}

TEST_F(CorrectorTest, RowsWithoutATempoAreLeftOut) {
    addTagged("a.mp3", "90");
    controller.addFile(path(writeClip("b.mp3")));
    correct({0, 1}, "x2");
    EXPECT_EQ(tempo(0), "180.00");
    EXPECT_EQ(tempo(1), "");
    EXPECT_EQ(corrector->State().m_undo->m_nFiles, 1U);
}

TEST_F(CorrectorTest, ATypedTempoTakesARowOutOfTheWork) {
    std::string const a = writeClip("a.mp3");
    controller.addFile(path(a));
    ASSERT_TRUE(corrector->Correct({0}, {.m_dBpm = 174.5}));
    wait();
    EXPECT_EQ(tempo(0), "174.50");
    EXPECT_EQ(tag(a), "174.50");
    EXPECT_EQ(controller.status().m_nUndone, 0U);
    undo();
    EXPECT_EQ(tempo(0), "");
    EXPECT_FALSE(isDone(0));
    EXPECT_EQ(controller.status().m_nUndone, 1U);
    EXPECT_EQ(tag(a), "<none>");
}

TEST_F(CorrectorTest, UndoAndRedoGoThereAndBackByteForByte) {
    std::vector<std::string> files;
    std::vector<Bytes> before;
    for (std::string const name : {"a.mp3", "b.mp3", "c.mp3"}) {
        files.push_back(addTagged(name, "94.99"));
        before.push_back(ReadBytes(files.back()));
    }
    files.push_back(writeClip("d.mp3")); // without any tag
    before.push_back(ReadBytes(files.back()));
    controller.addFile(path(files.back()));
    correct({0, 1, 2}, "x2");
    ASSERT_TRUE(corrector->Correct({0, 1, 2, 3}, {.m_dBpm = 100.0}));
    wait();
    std::optional<CUndoStep> const step = corrector->State().m_undo;
    ASSERT_TRUE(step);
    EXPECT_EQ(step->m_kind, EStepKind::Tempo);
    EXPECT_EQ(step->m_nFiles, 4U);
    EXPECT_FALSE(corrector->State().m_redo);
    undo();
    EXPECT_EQ(tempo(0), "189.98");
    EXPECT_EQ(tag(files[0]), "189.98");
    EXPECT_EQ(corrector->State().m_undo->m_kind, EStepKind::Ratio);
    EXPECT_EQ(corrector->State().m_undo->m_ratio, *TempoFixOf("x2"));
    EXPECT_EQ(corrector->State().m_undo->m_nFiles, 3U);
    EXPECT_EQ(corrector->State().m_redo->m_nFiles, 4U);
    undo();
    EXPECT_EQ(tempo(0), "94.99");
    EXPECT_FALSE(controller.rowState(0).m_bByHand);
    EXPECT_TRUE(controller.rowState(0).m_bFromTag);
    for (std::size_t i = 0; i < files.size(); ++i) {
        EXPECT_EQ(ReadBytes(files[i]), before[i]) << files[i];
    }
    EXPECT_FALSE(corrector->State().m_undo);
    redo();
    EXPECT_EQ(tempo(2), "189.98");
    EXPECT_TRUE(controller.rowState(2).m_bByHand);
    EXPECT_EQ(tag(files[2]), "189.98");
    redo();
    EXPECT_EQ(tag(files[3]), "100.00");
    EXPECT_FALSE(corrector->State().m_redo);
}

TEST_F(CorrectorTest, AStepAfterAnUndoEndsWhatCouldBeDoneAgain) {
    addTagged("a.mp3", "90");
    correct({0}, "x2");
    undo();
    ASSERT_TRUE(corrector->State().m_redo);
    correct({0}, "3:2");
    EXPECT_FALSE(corrector->State().m_redo);
    redo();
    EXPECT_EQ(tempo(0), "135.00");
}

TEST_F(CorrectorTest, WhatSomebodyElseWroteStays) {
    std::string const a = addTagged("a.mp3", "90");
    std::string const b = addTagged("b.mp3", "60");
    correct({0, 1}, "x2");
    ASSERT_EQ(StoreTagText(path(a), "TBPM", CString("77"), {}), EWriteProblem::None);
    undo();
    EXPECT_EQ(tag(a), "77");
    EXPECT_EQ(tempo(0), "180.00");
    EXPECT_EQ(tag(b), "60");
    EXPECT_EQ(tempo(1), "60");
    std::optional<CUndoReport> const report = corrector->TakeReport();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->m_nLeft, 1U);
    EXPECT_EQ(report->m_eReason, EUndo::OtherText);
    EXPECT_EQ(report->m_sPath, a);
    EXPECT_FALSE(corrector->TakeReport());
}

TEST_F(CorrectorTest, ATempoThatSomebodySetMeanwhileIsNotReplaced) {
    std::string const a = addTagged("a.mp3", "90");
    ASSERT_EQ(StoreTagText(path(a), "TBPM", CString("77"), {}), EWriteProblem::None);
    correct({0}, "x2");
    EXPECT_EQ(tag(a), "77");
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::TempoChanged);
    EXPECT_TRUE(controller.rowState(0).m_bNotInFile);
    ASSERT_TRUE(corrector->Correct({0}, {.m_dBpm = 100.0})); // now it is meant
    wait();
    EXPECT_EQ(tag(a), "100.00");
    EXPECT_FALSE(controller.rowState(0).m_bNotInFile);
}

TEST_F(CorrectorTest, StepsSurviveTheEndOfTheProgram) {
    std::string const a = addTagged("a.mp3", "94.99");
    auto const before = ReadBytes(a);
    correct({0}, "x2");
    settle();
    EXPECT_FALSE(corrector->State().m_undo); // it hasn't looked yet
    corrector->Refresh();
    wait();
    ASSERT_TRUE(corrector->State().m_undo);
    EXPECT_EQ(corrector->State().m_undo->m_kind, EStepKind::Ratio);
    EXPECT_EQ(corrector->State().m_undo->m_ratio, *TempoFixOf("x2"));
    undo();
    EXPECT_EQ(ReadBytes(a), before);
    EXPECT_EQ(tempo(0), "94.99");
    redo();
    EXPECT_EQ(tag(a), "189.98");
    EXPECT_EQ(tempo(0), "189.98");
    EXPECT_TRUE(controller.rowState(0).m_bByHand);
}

TEST_F(CorrectorTest, ABatchOfTheAnalysisIsAStep) {
    std::string const a = writeClip("a.mp3");
    std::string const b = writeClip("b.mp3");
    auto const before = ReadBytes(a);
    controller.addFile(path(a));
    controller.addFile(path(b));
    controller.analyze();
    waitUntilIdle();
    corrector->Refresh();
    wait();
    ASSERT_TRUE(corrector->State().m_undo);
    EXPECT_EQ(corrector->State().m_undo->m_kind, EStepKind::Analysis);
    EXPECT_EQ(corrector->State().m_undo->m_nFiles, 2U);
    undo();
    EXPECT_EQ(ReadBytes(a), before);
    // What was heard isn't lost, and nobody hears it again unasked.
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_TRUE(isDone(0));
    EXPECT_TRUE(controller.rowState(0).m_bNotInFile);
    redo();
    EXPECT_EQ(tag(a), "120.00");
    EXPECT_FALSE(controller.rowState(0).m_bNotInFile);
}

TEST_F(CorrectorTest, AnalyzeAgainIsAStepThatBringsHandSetTemposBack) {
    std::string const a = addTagged("a.mp3", "90");
    correct({0}, "x2");
    controller.reScan();
    waitUntilIdle();
    EXPECT_EQ(tag(a), "120.00");
    EXPECT_FALSE(controller.rowState(0).m_bByHand);
    undo();
    EXPECT_EQ(tag(a), "180.00");
    EXPECT_EQ(tempo(0), "180.00");
    EXPECT_TRUE(controller.rowState(0).m_bByHand);
    undo();
    EXPECT_EQ(tag(a), "90");
}

TEST_F(CorrectorTest, FilesThatTakeNoTagAreCorrectedInTheListAlone) {
    WriteWav(folder / "a.wav", MakeClickTrack(120.0, 1.0));
    auto const before = ReadBytes(folder / "a.wav");
    controller.addFile(path(folder / "a.wav"));
    controller.analyze();
    waitUntilIdle();
    EXPECT_FALSE(controller.rowState(0).m_bNotInFile);
    correct({0}, "/2");
    EXPECT_EQ(tempo(0), "60.00");
    EXPECT_TRUE(controller.rowState(0).m_bNotInFile);
    EXPECT_EQ(ReadBytes(folder / "a.wav"), before);
    EXPECT_FALSE(HasProblem(controller.rowState(0)));
    undo();
    EXPECT_EQ(tempo(0), "120.00");
    EXPECT_FALSE(controller.rowState(0).m_bNotInFile);
    redo();
    EXPECT_EQ(tempo(0), "60.00");
    EXPECT_TRUE(controller.rowState(0).m_bByHand);
}

TEST_F(CorrectorTest, OtherKindsAreWrittenWhenWishedForAndTakenBackByteForByte) {
    controller.setWishes({.m_bOtherKinds = true, .m_bWriteOtherKinds = true});
    std::vector<std::string> files;
    std::vector<Bytes> before;
    for (char const* const name : {"a.flac", "b.m4a", "c.wav"}) {
        files.push_back(writeOther(name, "95"));
        before.push_back(ReadBytes(files.back()));
        controller.addFile(path(files.back()));
    }
    ASSERT_EQ(tempo(0), "95.00");
    correct({0, 1, 2}, "x2");
    for (std::size_t row = 0; row < files.size(); ++row) {
        EXPECT_EQ(shownTempo(files[row]), 190.0) << files[row];
        EXPECT_EQ(tempo(row), "190.00");
        EXPECT_FALSE(controller.rowState(row).m_bNotInFile);
        EXPECT_TRUE(controller.rowState(row).m_bInFile) << files[row];
        EXPECT_EQ(controller.rowState(row).m_writeProblem, EWriteProblem::None) << files[row];
    }
    // MP4 has the whole number 190, which is the tempo that was written.
    correct({0, 1, 2}, "3:4");
    for (std::size_t row = 0; row < files.size(); ++row) {
        EXPECT_EQ(shownTempo(files[row]), 142.5) << files[row];
    }
    undo();
    undo();
    for (std::size_t row = 0; row < files.size(); ++row) {
        EXPECT_EQ(shownTempo(files[row]), 95.0) << files[row];
        EXPECT_EQ(tempo(row), "95.00");
    }
    EXPECT_EQ(ReadBytes(files[0]), before[0]);
    redo();
    EXPECT_EQ(shownTempo(files[1]), 190.0);
}

TEST_F(CorrectorTest, AnAnalysedSongOfAnotherKindCanBeCorrected) {
    controller.setWishes({.m_bOtherKinds = true, .m_bWriteOtherKinds = true});
    std::string const file = writeOther("a.m4a", nullptr);
    controller.addFile(path(file));
    controller.analyze();
    waitUntilIdle();
    ASSERT_EQ(shownTempo(file), 120.0);
    correct({0}, "/2");
    EXPECT_EQ(shownTempo(file), 60.0);
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::None);
}

TEST_F(CorrectorTest, OtherKindsKeepTheirBytesWhenTheyAreNotToBeWritten) {
    controller.setWishes({.m_bOtherKinds = true});
    std::string const file = writeOther("a.flac", "95");
    Bytes const before = ReadBytes(file);
    controller.addFile(path(file));
    correct({0}, "x2");
    EXPECT_EQ(tempo(0), "190.00");
    EXPECT_TRUE(controller.rowState(0).m_bNotInFile);
    EXPECT_FALSE(controller.rowState(0).m_bInFile);
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::OtherExtension);
    EXPECT_EQ(ReadBytes(file), before);
}

TEST_F(CorrectorTest, AnotherTempoThatAFileOfAnotherKindGotMeanwhileStays) {
    controller.setWishes({.m_bOtherKinds = true, .m_bWriteOtherKinds = true});
    std::string const file = writeOther("a.flac", "95");
    controller.addFile(path(file));
    ASSERT_EQ(StoreGivenTempo(path(file), CString("77"), {}), EWriteProblem::None);
    correct({0}, "x2");
    EXPECT_EQ(shownTempo(file), 77.0);
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::TempoChanged);
    EXPECT_TRUE(controller.rowState(0).m_bNotInFile);
}

TEST_F(CorrectorTest, ATempoThatARowDoesNotShowGivesWayOnceOtherKindsAreToBeWritten) {
    std::vector<std::string> files;
    for (char const* const name : {"a.flac", "b.m4a", "c.wav"}) {
        files.push_back(writeOther(name, "95"));
        controller.addFile(path(files.back()));
    }
    ASSERT_EQ(tempo(1), ""); // the list by itself reads no tempo of these kinds
    controller.setWishes({.m_bWriteOtherKinds = true});
    ASSERT_TRUE(corrector->Correct({0, 1, 2}, {.m_dBpm = 174.5}));
    wait();
    for (std::size_t row = 0; row < files.size(); ++row) {
        EXPECT_EQ(controller.rowState(row).m_writeProblem, EWriteProblem::None) << files[row];
        EXPECT_EQ(shownTempo(files[row]), 174.5) << files[row];
    }
    undo();
    for (std::size_t row = 0; row < files.size(); ++row) {
        EXPECT_EQ(shownTempo(files[row]), 95.0) << files[row];
    }
}

TEST_F(CorrectorTest, WhatSomebodySetSinceStaysAlsoWhereTheRowShowedNothing) {
    std::string const file = writeOther("a.flac", "95");
    controller.addFile(path(file));
    controller.setWishes({.m_bWriteOtherKinds = true});
    ASSERT_EQ(StoreGivenTempo(path(file), CString("77"), {}), EWriteProblem::None);
    ASSERT_TRUE(corrector->Correct({0}, {.m_dBpm = 174.5}));
    wait();
    EXPECT_EQ(shownTempo(file), 77.0);
    EXPECT_EQ(controller.rowState(0).m_writeProblem, EWriteProblem::TempoChanged);
}

TEST_F(CorrectorTest, StepsOverOtherKindsSurviveTheEndOfTheProgram) {
    CWishes const wishes{.m_bOtherKinds = true, .m_bWriteOtherKinds = true};
    controller.setWishes(wishes);
    std::string const file = writeOther("a.m4a", "95");
    controller.addFile(path(file));
    correct({0}, "x2");
    settle();
    FakeView other;
    BPMController later(other);
    CCorrector sees(later);
    later.setWishes(wishes);
    later.addFile(path(file));
    sees.LookAtNewRows();
    waitFor([&] { return sees.IsIdle(); });
    EXPECT_TRUE(later.rowState(0).m_bByHand);
    sees.Undo();
    waitFor([&] { return sees.IsIdle(); });
    EXPECT_EQ(shownTempo(file), 95.0);
    EXPECT_EQ(CString(later.objectValueForTableColumn(2, 0)).ToUtf8(), "95.00");
}

TEST_F(CorrectorTest, RowsKnowWhoSetThemInAnEarlierSession) {
    std::string const a = addTagged("a.mp3", "90");
    correct({0}, "x2");
    settle();
    FakeView other;
    BPMController later(other);
    CCorrector sees(later);
    later.addFile(path(a));
    later.addFile(path(writeClip("b.mp3", Tag(3, {TextFrame("TBPM", "180.00")}))));
    sees.LookAtNewRows();
    waitFor([&] { return sees.IsIdle(); });
    EXPECT_TRUE(later.rowState(0).m_bByHand);
    EXPECT_FALSE(later.rowState(1).m_bByHand);
}

TEST_F(CorrectorTest, TheEndWaitsForWhatWasAskedFor) {
    std::vector<std::string> files;
    std::vector<std::size_t> rows;
    for (std::size_t i = 0; i < 8; ++i) {
        files.push_back(addTagged(std::to_string(i) + ".mp3", "90"));
        rows.push_back(i);
    }
    ASSERT_TRUE(corrector->Correct(rows, *TempoFixOf("x2")));
    corrector->End();
    for (std::string const& file : files) {
        EXPECT_EQ(tag(file), "180.00");
    }
    EXPECT_TRUE(corrector->IsIdle());
}

TEST_F(CorrectorTest, NothingIsWrittenWhereOnlyLookingIsWished) {
    std::string const a = addTagged("a.mp3", "90");
    auto const before = ReadBytes(a);
    correct({0}, "3:2");
    undo();
    controller.setWishes({.m_bOnlyLook = true});
    correct({0}, "x2");
    EXPECT_EQ(tempo(0), "180.00");
    EXPECT_TRUE(controller.rowState(0).m_bNotInFile);
    EXPECT_EQ(ReadBytes(a), before);
    undo();
    EXPECT_EQ(tempo(0), "90");
    EXPECT_FALSE(corrector->State().m_undo);
}

TEST_F(CorrectorTest, ManyRowsTimesTwoAndUndoneAreByteIdentical) {
    char const* const wished = std::getenv("TACTUS_MANY_ROWS");
    std::size_t const count = wished != nullptr ? std::stoul(wished) : 12;
    std::vector<std::string> files;
    std::vector<Bytes> before;
    std::vector<std::size_t> rows;
    for (std::size_t i = 0; i < count; ++i) {
        files.push_back(addTagged(std::to_string(i) + ".mp3", std::to_string(60 + i % 300)));
        before.push_back(ReadBytes(files.back()));
        rows.push_back(i);
    }
    correct(rows, "x2");
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_EQ(tag(files[i]), std::to_string(2 * (60 + i % 300)) + ".00");
    }
    EXPECT_EQ(corrector->State().m_undo->m_nFiles, count);
    undo();
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_EQ(ReadBytes(files[i]), before[i]) << files[i];
    }
}
