// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "Language.h"
#include "WindowFixture.h"
#include "desktop/NoticeBar.h"
#include "desktop/Settings.h"
#include "desktop/SongPane.h"
#include "support/Process.h"
#include "support/TagFile.h"

#include "IDTag/TagStore.h"
#include "song/SongTags.h"
#include "song/StoreTempo.h"

#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>
#include <cstdlib>

namespace {

/// A journal that nobody has written into.
struct COwnState {
    COwnState() { (void)::setenv("XDG_STATE_HOME", (m_state / "s").c_str(), 1); }
    ~COwnState() { (void)::setenv("XDG_STATE_HOME", m_before.c_str(), 1); }

    CTempFolder m_state;
    std::string m_before = std::getenv("XDG_STATE_HOME");
};

struct BpmWindowCorrectTest : COwnState, CLanguage, WindowTest {
    BpmWindowCorrectTest() : CLanguage(QLocale(QLocale::English, QLocale::UnitedStates)) {}

    /// Writes an MP3 file whose tag has this tempo.
    std::string writeTagged(std::string const& name, std::string const& bpm) const {
        WriteBytes(folder / name,
                   Joined({TagOf(3, Frame23("TBPM", Latin1Text(bpm))), MpegAudio(4)}));
        return folder / name;
    }

    std::string tag(std::string const& name) const {
        CString text;
        return ReadTagText(CString::FromPath(folder / name), "TBPM", text) == kStatusOk
                   ? text.ToUtf8()
                   : "<none>";
    }

    bool waitForTag(std::string const& name, std::string const& text) const {
        return QTest::qWaitFor([&] { return tag(name) == text; }, 10'000);
    }

    /// Three rows with tempos of their own.
    void openThree() {
        open({writeTagged("a.mp3", "90"), writeTagged("b.mp3", "128.5"),
              writeTagged("c.mp3", "600")});
        ASSERT_TRUE(waitUntilIdle());
        table->setFocus();
    }

    /// Whatever keys the test before has held down.
    void select(int row) {
        table->selectionModel()->setCurrentIndex(table->model()->index(row, 0),
                                                 QItemSelectionModel::ClearAndSelect |
                                                     QItemSelectionModel::Rows);
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }

    QLineEdit* editor() const { return table->findChild<QLineEdit*>("tempoEditor"); }

    bool waitForCell(int row, std::string const& text) const {
        return QTest::qWaitFor([&] { return cell(row, 2) == text; }, 10'000);
    }

    bool waitForUndo(QString const& text) const {
        return QTest::qWaitFor([&] { return action("actionUndo")->text() == text; }, 10'000);
    }
};

} // namespace

TEST_F(BpmWindowCorrectTest, KeysCorrectTheSelectionAndTheFiles) {
    openThree();
    select(0);
    press(Qt::Key_D);
    EXPECT_EQ(cell(0, 2), "180.00");
    EXPECT_TRUE(waitForTag("a.mp3", "180.00"));
    press(Qt::Key_H);
    EXPECT_TRUE(waitForTag("a.mp3", "90.00"));
    press(Qt::Key_3);
    EXPECT_TRUE(waitForTag("a.mp3", "135.00"));
    press(Qt::Key_3, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(waitForTag("a.mp3", "90.00"));
    press(Qt::Key_4);
    EXPECT_TRUE(waitForTag("a.mp3", "120.00"));
    press(Qt::Key_4, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(waitForTag("a.mp3", "90.00"));
    EXPECT_EQ(tag("b.mp3"), "128.5");
}

TEST_F(BpmWindowCorrectTest, ATempoIsTypedAtTheColumnsEndInMirroredWindowsToo) {
    openThree();
    for (auto const direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QGuiApplication::setLayoutDirection(direction);
        select(0);
        QTest::keyClick(table, Qt::Key_F2);
        auto* editor = table->findChild<QLineEdit*>("tempoEditor");
        ASSERT_NE(editor, nullptr);
        (void)editor->grab(); // which is when it finds its place
        int const cursor = editor->inputMethodQuery(Qt::ImCursorRectangle).toRect().center().x();
        EXPECT_EQ(cursor < editor->width() / 2, direction == Qt::RightToLeft)
            << cursor << " of " << editor->width();
        QTest::keyClick(editor, Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(editor, QEvent::DeferredDelete);
    }
}

TEST_F(BpmWindowCorrectTest, UndoAndRedoHaveNamesAndKeys) {
    openThree();
    EXPECT_FALSE(action("actionUndo")->isEnabled());
    auto const before = ReadBytes(folder / "b.mp3");
    select(0);
    QTest::keyClick(table, Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_H);
    EXPECT_TRUE(waitForTag("b.mp3", "64.25"));
    ASSERT_TRUE(waitForUndo("Undo: ÷2 on 2 files"));
    press(Qt::Key_Z);
    EXPECT_TRUE(waitForTag("a.mp3", "90"));
    EXPECT_TRUE(waitForTag("b.mp3", "128.5"));
    EXPECT_EQ(ReadBytes(folder / "b.mp3"), before);
    ASSERT_TRUE(waitForUndo("Undo"));
    EXPECT_EQ(cell(0, 2), "90");
    EXPECT_EQ(action("actionRedo")->text(), "Redo: ÷2 on 2 files");
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(waitForTag("a.mp3", "45.00"));
    EXPECT_TRUE(waitForUndo("Undo: ÷2 on 2 files"));
    EXPECT_FALSE(action("actionRedo")->isEnabled());
}

TEST_F(BpmWindowCorrectTest, WhatWouldLeaveTheRangeIsDisabledWithItsReason) {
    openThree();
    EXPECT_FALSE(action("actionDouble")->isEnabled());
    EXPECT_TRUE(action("actionDouble")->toolTip().endsWith("No row is selected."));
    select(2); // 600
    EXPECT_FALSE(action("actionDouble")->isEnabled());
    EXPECT_TRUE(action("actionDouble")->toolTip().endsWith("A tempo would be above 999."));
    EXPECT_TRUE(action("actionHalve")->isEnabled());
    EXPECT_TRUE(action("actionHalve")->toolTip().endsWith("(Ctrl+H)"));
    table->selectAll();
    EXPECT_FALSE(action("actionDouble")->isEnabled());
    EXPECT_TRUE(action("action4To3")->isEnabled());
    press(Qt::Key_D);
    EXPECT_EQ(cell(0, 2), "90");
    press(Qt::Key_H);
    press(Qt::Key_H); // 22.5, 32.125, 150
    EXPECT_EQ(cell(0, 2), "22.50");
    EXPECT_FALSE(action("actionHalve")->isEnabled());
    EXPECT_TRUE(action("actionHalve")->toolTip().endsWith("A tempo would be below 20."));
}

TEST_F(BpmWindowCorrectTest, ATempoIsTypedWithCommaOrPoint) {
    openThree();
    select(1);
    press(Qt::Key_F2, Qt::NoModifier);
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->text(), "128.5");
    EXPECT_EQ(editor()->selectedText(), "128.5");
    QTest::keyClicks(editor(), "64,27");
    press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_TRUE(waitForCell(1, "64.27"));
    EXPECT_TRUE(waitForTag("b.mp3", "64.27"));
    EXPECT_TRUE(waitForUndo("Undo: tempo of 1 file"));
    EXPECT_EQ(table->model()->index(1, 2).data(Qt::AccessibleDescriptionRole), "set by hand");
}

TEST_F(BpmWindowCorrectTest, EscapeLeavesTheTempoAsItWas) {
    openThree();
    auto const before = ReadBytes(folder / "a.mp3");
    select(0);
    press(Qt::Key_F2, Qt::NoModifier);
    QTest::keyClicks(editor(), "77");
    press(Qt::Key_Escape, Qt::NoModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return editor() == nullptr; }));
    EXPECT_EQ(cell(0, 2), "90");
    press(Qt::Key_F2, Qt::NoModifier); // looked at, and confirmed as it is
    press(Qt::Key_Return, Qt::NoModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return editor() == nullptr; }));
    window.endCorrections();
    EXPECT_EQ(ReadBytes(folder / "a.mp3"), before);
    EXPECT_EQ(table->model()->index(0, 2).data(CFileTableModel::kMarksRole), 0);
}

TEST_F(BpmWindowCorrectTest, WhatIsNoTempoIsNotTaken) {
    openThree();
    select(0);
    press(Qt::Key_F2, Qt::NoModifier);
    for (char const* const text : {"19.99", "999.1", "fast", "1e2", "12.3.4"}) {
        editor()->selectAll();
        QTest::keyClicks(editor(), text);
        press(Qt::Key_Return, Qt::NoModifier);
        ASSERT_TRUE(editor()->isVisible()) << text;
        EXPECT_EQ(cell(0, 2), "90");
    }
    QTest::keyClicks(editor(), "100");
    press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_TRUE(waitForCell(0, "100.00"));
}

TEST_F(BpmWindowCorrectTest, ADoubleClickOnTheTempoOpensTheField) {
    openThree();
    auto const at = [this](int column) {
        return table->visualRect(table->model()->index(0, column)).center();
    };
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, at(0));
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, at(0));
    EXPECT_EQ(editor(), nullptr);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, at(2));
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, at(2));
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->text(), "90");
}

TEST_F(BpmWindowCorrectTest, HidingAndCorrectionsAreTakenBackInTheirOrder) {
    openThree();
    select(0);
    press(Qt::Key_D);
    ASSERT_TRUE(waitForUndo("Undo: ×2 on 1 file"));
    press(Qt::Key_Delete, Qt::NoModifier);
    ASSERT_TRUE(waitForUndo("Undo: hiding 1 file"));
    press(Qt::Key_Z);
    ASSERT_TRUE(waitForUndo("Undo: ×2 on 1 file"));
    EXPECT_EQ(table->model()->rowCount(), 3);
    EXPECT_EQ(tag("a.mp3"), "180.00");
    press(Qt::Key_Z);
    EXPECT_TRUE(waitForTag("a.mp3", "90"));
}

TEST_F(BpmWindowCorrectTest, WhatUndoLeavesIsTold) {
    openThree();
    select(0);
    press(Qt::Key_D);
    ASSERT_TRUE(waitForUndo("Undo: ×2 on 1 file"));
    ASSERT_EQ(StoreTagText(CString::FromPath(folder / "a.mp3"), "TBPM", CString("77"), {}),
              EWriteProblem::None);
    press(Qt::Key_Z);
    auto* bar = window.findChild<CNoticeBar*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return bar->has(ENotice::Undone); }, 10'000));
    EXPECT_EQ(label("noticeText"),
              "“a.mp3” was left as it is: its tag says something else by now.");
    EXPECT_EQ(tag("a.mp3"), "77");
    EXPECT_TRUE(waitForUndo("Undo"));
}

TEST_F(BpmWindowCorrectTest, TheButtonsAreThereWhereTheWindowHasRoom) {
    auto* button = window.findChild<QWidget*>("button_actionDouble");
    ASSERT_NE(button, nullptr);
    window.resize(900, 400);
    EXPECT_TRUE(QTest::qWaitFor([&] { return button->isVisible(); }));
    EXPECT_EQ(button->accessibleName(), "Tempo ×2");
    window.resize(window.minimumSize());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !button->isVisible(); }));
}

TEST_F(BpmWindowCorrectTest, AnalyzeAgainAsksWhenATempoWasSetByHand) {
    open({writeClip("a.wav")});
    ASSERT_TRUE(waitUntilIdle());
    select(0);
    table->setFocus();
    press(Qt::Key_D);
    EXPECT_EQ(cell(0, 2), "240.00");
    bool isAsked = false;
    QTimer::singleShot(0, [&] {
        auto* question = window.findChild<QDialog*>("askBeforeReplacing");
        isAsked = question != nullptr;
        if (isAsked) {
            question->reject();
        }
    });
    action("actionRescan")->trigger();
    EXPECT_TRUE(isAsked);
    EXPECT_EQ(cell(0, 2), "240.00");
}

TEST_F(BpmWindowCorrectTest, ControlFFindsRowsAndEscapeShowsThemAll) {
    openThree();
    press(Qt::Key_F);
    auto* field = window.findChild<QLineEdit*>("query");
    ASSERT_TRUE(field->hasFocus());
    QTest::keyClicks(field, "100-200");
    ASSERT_EQ(table->model()->rowCount(), 1);
    EXPECT_EQ(cell(0, 2), "128.5");
    press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_TRUE(table->hasFocus());
    EXPECT_EQ(table->model()->rowCount(), 1);
    press(Qt::Key_F);
    press(Qt::Key_Escape, Qt::NoModifier);
    EXPECT_EQ(table->model()->rowCount(), 3);
    EXPECT_TRUE(table->hasFocus());
}

TEST_F(BpmWindowCorrectTest, ChipsShowWhatWasSetByHand) {
    openThree();
    select(1);
    press(Qt::Key_D);
    EXPECT_EQ(cell(1, 2), "257.00");
    auto const* chip = window.findChild<QToolButton*>("chipByHand");
    ASSERT_TRUE(QTest::qWaitFor([&] { return chip->text() == "By hand 1"; }));
    QTest::keyClick(&window, Qt::Key_4, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return table->model()->rowCount() == 1; }));
    EXPECT_EQ(cell(0, 2), "257.00");
    press(Qt::Key_H);
    EXPECT_EQ(cell(0, 2), "128.50");
}

TEST_F(BpmWindowCorrectTest, ATempoIsTappedInThePaneAndAltReturnTakesReadings) {
    std::string const file = folder / "song.wav";
    WriteWav(file, MakeSong(128.0, 12.0));
    open({file});
    ASSERT_TRUE(waitUntilIdle());
    std::string const found = cell(0, 2);
    window.openPaneAtStart();
    auto* pane = window.findChild<CSongPane*>("songPane");
    QSignalSpy settled(pane, &CSongPane::settled);
    select(0);
    ASSERT_TRUE(settled.wait(20'000));
    pane->takeFocus();
    for (std::uint64_t const time : {1'000U, 1'600U, 2'200U, 2'800U}) {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_T, {}, "t");
        key.setTimestamp(time);
        QApplication::sendEvent(pane, &key);
    }
    press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ(cell(0, 2), "100.00");
    table->setFocus();
    press(Qt::Key_Return, Qt::AltModifier); // none of the readings is on: the likeliest
    std::vector<CTempoCandidate> const readings = controller.rowCandidates(0);
    ASSERT_GE(readings.size(), 2U);
    EXPECT_NEAR(std::stod(cell(0, 2)), static_cast<double>(readings[0].m_fBpm), 0.0051);
    press(Qt::Key_Return, Qt::AltModifier);
    EXPECT_NEAR(std::stod(cell(0, 2)), static_cast<double>(readings[1].m_fBpm), 0.0051);
    EXPECT_NE(found, "");
}

TEST_F(BpmWindowCorrectTest, TheLineAtTheBottomOffersToTakeACorrectionBackAndTellsThatItIs) {
    auto* button = window.findChild<QToolButton*>("statusUndo");
    openThree();
    EXPECT_FALSE(button->isVisible());
    select(0);
    press(Qt::Key_D);
    ASSERT_TRUE(waitForTag("a.mp3", "180.00"));
    ASSERT_TRUE(waitForUndo("Undo: ×2 on 1 file"));
    EXPECT_TRUE(button->isVisible());
    EXPECT_EQ(button->text(), "Undo: ×2 on 1 file");
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_TRUE(waitForTag("a.mp3", "90"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return label("summary") == "Undone: ×2 on 1 file"; }));
    EXPECT_FALSE(button->isVisible());
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return label("summary") == "Done again: ×2 on 1 file"; }));
    EXPECT_TRUE(button->isVisible());
    press(Qt::Key_D);
    EXPECT_EQ(label("summary"), ""); // that was the step before
}

TEST_F(BpmWindowCorrectTest, WhatARunStoredIsNotOfferedToBeTakenBack) {
    Ffmpeg({"-i", writeClip("clip.wav"), "-map_metadata", "-1", folder / "a.mp3"});
    open({folder / "a.mp3"});
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_TRUE(waitForUndo("Undo: 1 stored tempo"));
    EXPECT_FALSE(window.findChild<QToolButton*>("statusUndo")->isVisible());
    table->setFocus();
    select(0);
    press(Qt::Key_Delete, Qt::NoModifier);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return window.findChild<QToolButton*>("statusUndo")->isVisible(); }));
}

TEST_F(BpmWindowCorrectTest, OtherKindsAreWrittenWhenThePreferenceSaysSo) {
    controller.setWishes({.m_bOtherKinds = true, .m_bWriteOtherKinds = true});
    std::string const wav = writeClip("clip.wav");
    auto const shown = [this](char const* name) {
        return ReadShownTags(CString::FromPath(folder / name)).m_tempo.m_dBpm;
    };
    auto const waitFor = [&](char const* name, double bpm) {
        return QTest::qWaitFor([&] { return shown(name) == bpm; }, 10'000);
    };
    for (char const* const name : {"a.flac", "b.m4a"}) {
        Ffmpeg({"-i", wav, "-map_metadata", "-1", folder / name});
        ASSERT_EQ(StoreGivenTempo(CString::FromPath(folder / name), "95", {}), EWriteProblem::None);
    }
    std::string const before = ReadText(folder / "a.flac");
    open({folder / "a.flac", folder / "b.m4a"});
    ASSERT_TRUE(waitUntilIdle());
    table->setFocus();
    table->selectAll();
    press(Qt::Key_D);
    EXPECT_TRUE(waitFor("a.flac", 190.0));
    EXPECT_TRUE(waitFor("b.m4a", 190.0));
    select(1);
    press(Qt::Key_F2, Qt::NoModifier);
    ASSERT_NE(editor(), nullptr);
    QTest::keyClicks(editor(), "174,5");
    press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_TRUE(waitFor("b.m4a", 174.5));
    EXPECT_TRUE(waitForUndo("Undo: tempo of 1 file"));
    EXPECT_EQ(table->model()->index(1, 2).data(Qt::AccessibleDescriptionRole), "set by hand");
    press(Qt::Key_Z);
    EXPECT_TRUE(waitFor("b.m4a", 190.0));
    EXPECT_TRUE(waitForUndo("Undo: ×2 on 2 files"));
    press(Qt::Key_Z);
    EXPECT_TRUE(waitFor("b.m4a", 95.0));
    EXPECT_TRUE(waitForCell(1, "95.00"));
    EXPECT_EQ(ReadText(folder / "a.flac"), before);
}

TEST_F(BpmWindowCorrectTest, WithoutThePreferenceRowsOfOtherKindsSayThatTheyAreNotWritten) {
    open({writeClip("a.wav")});
    ASSERT_TRUE(waitUntilIdle());
    table->setFocus();
    select(0);
    std::string const before = ReadText(folder / "a.wav");
    press(Qt::Key_D);
    EXPECT_TRUE(waitForUndo("Undo: ×2 on 1 file"));
    EXPECT_EQ(cell(0, 2), "240.00");
    EXPECT_EQ(ReadText(folder / "a.wav"), before);
    EXPECT_EQ(table->model()->index(0, 2).data(Qt::AccessibleDescriptionRole),
              "set by hand: not in the file");
    EXPECT_EQ(table->model()->index(0, 2).data(Qt::ToolTipRole).toString().toStdString(),
              folder / "a.wav" + std::string("\nThis tempo was set by hand.\nThe file doesn't have "
                                             "it in its tag.\nTempo not stored: only MP3 files "
                                             "are tagged"));
}

TEST_F(BpmWindowCorrectTest, ThePaneTellsWhatTheTagSaysNow) {
    Ffmpeg({"-i", writeClip("b.wav"), "-map_metadata", "-1", folder / "a.mp3"});
    open({folder / "a.mp3", folder / "b.wav"});
    ASSERT_TRUE(waitUntilIdle());
    auto const waitFor = [this](char const* text) {
        return QTest::qWaitFor([&] { return label("paneTag") == text; }, 10'000);
    };
    table->setFocus();
    press(Qt::Key_F9, Qt::NoModifier);
    select(0);
    EXPECT_TRUE(waitFor("in the tag: 120.00"));
    press(Qt::Key_D);
    EXPECT_TRUE(waitFor("in the tag: 240.00"));
    press(Qt::Key_Z);
    EXPECT_TRUE(waitFor("in the tag: 120.00"));
    select(1);
    EXPECT_TRUE(waitFor("no tempo in the tag"));
    CSettings().Clear();
}
