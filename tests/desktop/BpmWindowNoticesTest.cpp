// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/ID3Reader.h"
#include "Language.h"
#include "WindowFixture.h"
#include "desktop/ChipsLine.h"
#include "desktop/FileTableModel.h"
#include "desktop/NoticeBar.h"
#include "desktop/StatusLine.h"

#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

namespace {

/// The window, and what a person reads in its notices.
struct BpmWindowNoticesTest : WindowTest {
    CLanguage const english{QLocale(QLocale::English, QLocale::UnitedStates)};

    void add(std::vector<std::string> const& files) {
        window.addPaths(files);
        ASSERT_TRUE(waitUntilIdle());
    }

    std::string notice() const {
        auto const* bar = window.findChild<CNoticeBar*>();
        return bar->isVisible() ? bar->findChild<QLabel*>("noticeText")->text().toStdString() : "";
    }

    QPushButton* button(char const* text) const {
        for (QPushButton* button : window.findChild<CNoticeBar*>()->findChildren<QPushButton*>()) {
            if (button->isVisible() && button->text().remove('&') == text) {
                return button;
            }
        }
        ADD_FAILURE() << "no button " << text;
        return nullptr;
    }

    std::string reason() const {
        auto const* line = window.findChild<QLabel*>("reason");
        return line->isVisible() ? line->text().toStdString() : "";
    }

    /// An MP3 file whose tag has this tempo.
    std::string writeTagged(std::string const& name, char const* tempo) const {
        std::string const file = folder / name;
        WriteText(file, std::string(4096, '\0'));
        CID3Reader::SetTagString(CString::FromPath(file), "TBPM", CString(tempo));
        return file;
    }

    /// Answers the next question with the button of this role; counts the questions.
    void answer(QMessageBox::ButtonRole role) {
        QObject::connect(&timer, &QTimer::timeout, &window, [this, role] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr) {
                return;
            }
            ++questions;
            question = box->text().toStdString();
            for (QAbstractButton* choice : box->buttons()) {
                if (box->buttonRole(choice) == role) {
                    choice->click();
                    return;
                }
            }
        });
        timer.start(10);
    }

    QTimer timer;
    int questions = 0;
    std::string question;
};

std::string const kLongName = std::string(75, 'm') + ".wav";

} // namespace

TEST_F(BpmWindowNoticesTest, ClosingIsRefusedInABarThatHasRoomBesideALongName) {
    window.resize(760, 460);
    window.addPaths({writeLong(kLongName)});
    ASSERT_TRUE(waitUntilRunning());
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(notice(), "Still working on 1 file.");
    auto const* text = window.findChild<QLabel*>("noticeText");
    EXPECT_LE(text->fontMetrics().horizontalAdvance(text->text()), text->width());
    button("Keep going")->click();
    EXPECT_EQ(notice(), "");
    EXPECT_TRUE(controller.status().m_bRunning);
}

TEST_F(BpmWindowNoticesTest, StopAndCloseDoesBoth) {
    window.addPaths({writeLong("a.wav")});
    ASSERT_TRUE(waitUntilRunning());
    QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(button("Keep going")->hasFocus());
    button("Stop and close")->click();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window.isVisible(); }, 60'000));
    EXPECT_EQ(cell(0, 2), "");
}

TEST_F(BpmWindowNoticesTest, TheRefusalGoesWhenTheWindowCanClose) {
    window.addPaths({writeLong("a.wav")});
    ASSERT_TRUE(waitUntilRunning());
    EXPECT_FALSE(window.close());
    QTest::keyClick(&window, Qt::Key_Escape);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(notice(), "");
    EXPECT_TRUE(window.close());
}

TEST_F(BpmWindowNoticesTest, AnAdditionTellsWhatWasInTheListAlready) {
    writeClip("a.wav");
    writeClip("b.wav");
    add({folder.Path()});
    EXPECT_EQ(notice(), "");
    writeClip("c.wav");
    add({folder.Path()});
    EXPECT_EQ(notice(), "1 added, 2 already in the list.");
    button("Close")->click();
    EXPECT_EQ(notice(), "");
}

TEST_F(BpmWindowNoticesTest, ADropThatBringsNothingSaysSo) {
    std::filesystem::create_directory(folder / "texts");
    WriteText(folder / "texts/notes.txt", "");
    drop({folder / "texts"});
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !notice().empty(); }));
    EXPECT_EQ(notice(), "Nothing added: no music in “texts” (wav, mp3, aiff, aif, caf, m4a).");
}

TEST_F(BpmWindowNoticesTest, TheReasonOfTheSelectedRowHasALineOfItsOwn) {
    window.resize(760, 460);
    WriteText(folder / kLongName, "");
    add({folder / kLongName, writeClip("good.wav")});
    EXPECT_EQ(reason(), "");
    table->selectRow(0);
    EXPECT_TRUE(reason().starts_with("No tempo: ")) << reason();
    auto const* line = window.findChild<QLabel*>("reason");
    EXPECT_GE(line->height(), line->heightForWidth(line->width()));
    table->selectRow(1);
    EXPECT_EQ(reason(), "");
}

TEST_F(BpmWindowNoticesTest, ProblemsAreCountedInOnePlaceAndFiltered) {
    WriteText(folder / "a.wav", "");
    WriteText(folder / "b.wav", "no music");
    add({folder / "a.wav", folder / "b.wav", writeClip("c.wav")});
    EXPECT_EQ(label("activity"), "3 files · 2 problems");
    EXPECT_EQ(window.findChild<QToolButton*>("chipProblems")->text(), "Problems 2");
    QTest::keyClick(&window, Qt::Key_5, Qt::AltModifier);
    EXPECT_EQ(table->model()->rowCount(), 2);
    QTest::keyClick(&window, Qt::Key_1, Qt::AltModifier);
    EXPECT_EQ(table->model()->rowCount(), 3);
}

TEST_F(BpmWindowNoticesTest, FiltersAreThereOnceThereAreRows) {
    EXPECT_FALSE(window.findChild<CChipsLine*>()->isVisible());
    add({writeClip("a.wav")});
    EXPECT_TRUE(window.findChild<CChipsLine*>()->isVisible());
}

TEST_F(BpmWindowNoticesTest, AnUnreadableFolderHidesNoReason) {
    WriteText(folder / "a.wav", "");
    add({folder / "a.wav"});
    table->selectRow(0);
    std::string const before = reason();
    add({folder / "gone"});
    EXPECT_EQ(reason(), before);
}

TEST_F(BpmWindowNoticesTest, TemposThatCameWithTheFilesAreReplacedOnlyAfterAQuestion) {
    std::string const file = writeTagged("a.mp3", "99.00");
    add({file});
    EXPECT_EQ(cell(0, 2), "99.00");
    answer(QMessageBox::RejectRole);
    QTest::keyClick(&window, Qt::Key_F5, Qt::ShiftModifier);
    EXPECT_EQ(questions, 1);
    EXPECT_EQ(question, "1 tempo came with the files. Replace it?");
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(cell(0, 2), "99.00");
}

TEST_F(BpmWindowNoticesTest, AYesAnalysesThemAndTheNextTimeNothingIsAsked) {
    add({writeTagged("a.mp3", "99.00")});
    answer(QMessageBox::AcceptRole);
    QTest::keyClick(&window, Qt::Key_F5, Qt::ShiftModifier);
    EXPECT_EQ(questions, 1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return cell(0, 2) == "0.00"; }));
    ASSERT_TRUE(waitUntilIdle());
    QTest::keyClick(&window, Qt::Key_F5, Qt::ShiftModifier);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(questions, 1);
}

TEST_F(BpmWindowNoticesTest, AStoppedSecondAnalysisLeavesTheTempoFaint) {
    std::string const file = writeClip("a.wav");
    add({file});
    EXPECT_EQ(cell(0, 2), "120.00");
    std::filesystem::remove(file);
    writeLong("a.wav");
    QTest::keyClick(&window, Qt::Key_F5, Qt::ShiftModifier);
    ASSERT_TRUE(waitUntilRunning());
    QTest::keyClick(&window, Qt::Key_Escape);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(cell(0, 2), "120.00");
    EXPECT_TRUE(table->model()->index(0, 2).data(CFileTableModel::kAwaitsRole).toBool());
    EXPECT_EQ(label("activity"), "1 file · 1 to do");
}

TEST_F(BpmWindowNoticesTest, ASingleFileThatIsReadShowsLifeInstead) {
    // The line alone: how long a file is read is nothing to wait for.
    CStatusLine line;
    auto const* progress = line.findChild<QProgressBar*>();
    CBatchStatus status;
    status.m_bRunning = true;
    status.m_bReading = true;
    status.m_nBatchFiles = 1;
    status.m_nBatchPlace = 1;
    status.m_sRunningName = u"a.wav";
    line.setStatus(status, 0);
    EXPECT_EQ(line.findChild<QLabel*>("activity")->text(), "Reading “a.wav” · 1 of 1");
    EXPECT_EQ(progress->maximum(), 0);
    status.m_bReading = false;
    line.setStatus(status, 0);
    EXPECT_EQ(line.findChild<QLabel*>("activity")->text(), "Analyzing “a.wav” · 1 of 1");
    EXPECT_EQ(progress->maximum(), 100);
}

TEST_F(BpmWindowNoticesTest, DeleteHidesTheSelectedRowsAndControlZBringsThemBack) {
    std::string const file = writeClip("a.wav");
    add({file, writeClip("b.wav"), writeClip("c.wav")});
    table->selectRow(1);
    QTest::keyClick(table, Qt::Key_Delete);
    ASSERT_TRUE(QTest::qWaitFor([this] { return table->model()->rowCount() == 2; }));
    EXPECT_EQ(cell(1, 0), "c.wav");
    EXPECT_EQ(table->currentIndex().row(), 1);
    EXPECT_TRUE(table->selectionModel()->isRowSelected(1, {}));
    EXPECT_EQ(notice(), "1 file hidden and left out. Nothing was deleted.");
    EXPECT_EQ(label("activity"), "2 files");
    EXPECT_EQ(controller.numberOfRowsInTableView(), 3U);
    EXPECT_TRUE(std::filesystem::exists(file));
    QTest::keyClick(table, Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return table->model()->rowCount() == 3; }));
    EXPECT_EQ(cell(1, 0), "b.wav");
    EXPECT_EQ(notice(), "");
}

TEST_F(BpmWindowNoticesTest, HidingIsTakenBackStepByStepAndByTheButton) {
    add({writeClip("a.wav"), writeClip("b.wav"), writeClip("c.wav")});
    for (int i = 0; i < 2; ++i) {
        table->selectRow(0);
        QTest::keyClick(table, Qt::Key_Delete);
        ASSERT_TRUE(QTest::qWaitFor([&] { return table->model()->rowCount() == 2 - i; }));
    }
    EXPECT_EQ(cell(0, 0), "c.wav");
    button("Bring back")->click();
    ASSERT_TRUE(QTest::qWaitFor([this] { return table->model()->rowCount() == 2; }));
    EXPECT_EQ(cell(0, 0), "b.wav");
    action("actionBringBack")->trigger();
    ASSERT_TRUE(QTest::qWaitFor([this] { return table->model()->rowCount() == 3; }));
    EXPECT_FALSE(action("actionBringBack")->isEnabled());
}

TEST_F(BpmWindowNoticesTest, DroppingAHiddenFileAgainBringsItBack) {
    std::string const file = writeClip("a.wav");
    add({file, writeClip("b.wav")});
    table->selectRow(0);
    QTest::keyClick(table, Qt::Key_Delete);
    ASSERT_TRUE(QTest::qWaitFor([this] { return table->model()->rowCount() == 1; }));
    drop({file});
    ASSERT_TRUE(QTest::qWaitFor([this] { return table->model()->rowCount() == 2; }));
    EXPECT_EQ(cell(0, 0), "a.wav");
    EXPECT_EQ(notice(), "");
}

TEST_F(BpmWindowNoticesTest, ADraggedWebAddressIsRefused) {
    QMimeData data;
    data.setUrls({QUrl("https://example.org/song.mp3")});
    QDragEnterEvent enter({100, 100}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&window, &enter);
    EXPECT_FALSE(enter.isAccepted());
    QDragMoveEvent move({110, 100}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&window, &move);
    EXPECT_FALSE(move.isAccepted());
}

TEST_F(BpmWindowNoticesTest, ControlWAndDigitsWorkFromTheKeyboard) {
    WriteText(folder / "b.wav", "");
    add({folder / "b.wav", writeClip("a.wav")});
    QTest::keyClick(&window, Qt::Key_1, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(cell(0, 0), "a.wav");
    QTest::keyClick(&window, Qt::Key_3, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(cell(0, 2), "120.00");
    QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(BpmWindowNoticesTest, AnalyzeAgainIsInTheMenuAndNotBesideStop) {
    auto* button = window.findChild<QToolButton*>("menuButton");
    ASSERT_NE(button, nullptr);
    EXPECT_TRUE(button->menu()->actions().contains(action("actionRescan")));
    EXPECT_EQ(action("actionRescan")->text(), "Analyze all again …");
}
