// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "Language.h"
#include "WindowFixture.h"
#include "desktop/ColumnsMenu.h"
#include "desktop/NoticeBar.h"
#include "desktop/Settings.h"
#include "desktop/SongPane.h"
#include "support/TagFile.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QSignalSpy>
#include <QToolButton>

namespace {

/// The window whose columns nobody has changed before.
struct BpmWindowColumnsTest : CLanguage, WindowTest {
    BpmWindowColumnsTest() : CLanguage(QLocale(QLocale::English, QLocale::UnitedStates)) {
        CSettings().Clear();
    }
    ~BpmWindowColumnsTest() override { CSettings().Clear(); }

    std::string writeTagged(std::string const& name, std::string const& bpm) const {
        WriteBytes(folder / name,
                   Joined({TagOf(3, Frame23("TBPM", Latin1Text(bpm))), MpegAudio(4)}));
        return folder / name;
    }

    /// One file that is heard, and one that has its tempo already.
    void openTwo() {
        open({writeTagged("a.mp3", "90"), writeClip("b.wav")});
        ASSERT_TRUE(waitUntilIdle());
    }

    static std::string headsOf(BpmWindow const& shown) {
        auto const* table = shown.findChild<CFileTableView*>("fileTable");
        QHeaderView const* header = table->horizontalHeader();
        QStringList heads;
        for (int place = 0; place < header->count(); ++place) {
            heads << table->model()
                         ->headerData(header->logicalIndex(place), Qt::Horizontal)
                         .toString();
        }
        return heads.join(QLatin1Char(' ')).toStdString();
    }

    /// With the right button on the table's head, then with the left one on the entry.
    void choose(QString const& entry) const {
        QWidget* head = table->horizontalHeader();
        QPoint const place(20, 5);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, head->mapToGlobal(place));
        QApplication::sendEvent(table->horizontalHeader()->viewport(), &event);
        auto* menu = window.findChild<CColumnsMenu*>();
        ASSERT_TRUE(menu->isVisible());
        for (QAction* action : menu->actions()) {
            if (action->text() == entry) {
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
            }
        }
        EXPECT_FALSE(menu->isVisible());
    }

    /// Presses, moves and lets go in the table's head.
    void drag(int from, int to) const {
        QWidget* head = table->horizontalHeader()->viewport();
        int const y = head->height() / 2;
        QTest::mousePress(head, Qt::LeftButton, {}, {from, y});
        int const step = to > from ? 4 : -4;
        for (int x = from; (to - x) * step > 0; x += step) {
            QMouseEvent move(QEvent::MouseMove, QPointF(x, y), head->mapToGlobal(QPointF(x, y)),
                             Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(head, &move);
        }
        QTest::mouseRelease(head, Qt::LeftButton, {}, {to, y});
    }

    int widthOf(int column) const {
        return table->horizontalHeader()->sectionSize(
            static_cast<CFileTableModel*>(table->model())->sectionOf(column));
    }
};

} // namespace

TEST_F(BpmWindowColumnsTest, AtFirstThereAreThreeAndNothingIsStored) {
    openTwo();
    EXPECT_EQ(headsOf(window), "Title Artist Tempo");
    EXPECT_EQ(table->model()->columnCount(), 3);
    window.close();
    EXPECT_EQ(CSettings().Stored(), "");
}

TEST_F(BpmWindowColumnsTest, ColumnsComeByTheMenuOfTheHeadAndGoAgain) {
    openTwo();
    table->selectRow(1);
    choose("Length");
    EXPECT_EQ(headsOf(window), "Title Artist Tempo Length");
    EXPECT_EQ(cell(0, 3), ""); // nobody has heard it
    EXPECT_EQ(cell(1, 3), "0:01");
    choose("Stored");
    EXPECT_EQ(cell(0, 4), "yes");
    EXPECT_EQ(cell(1, 4), "no");
    EXPECT_EQ(table->selectedIds(), std::vector<std::size_t>{1}); // the selection stays
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "b.wav\t\t120.00\t0:01\tno\n");
    choose("Length");
    EXPECT_EQ(headsOf(window), "Title Artist Tempo Stored");
    EXPECT_EQ(table->selectedIds(), std::vector<std::size_t>{1});
}

TEST_F(BpmWindowColumnsTest, TheSongOfTheRowStaysWhenAColumnGoes) {
    openTwo();
    QTest::keyClick(&window, Qt::Key_F9);
    auto* pane = window.findChild<CSongPane*>("songPane");
    QSignalSpy settled(pane, &CSongPane::settled);
    table->selectRow(1);
    ASSERT_TRUE(settled.wait(20'000));
    CSongPicture const* const picture = pane->picture();
    ASSERT_NE(picture, nullptr);
    choose("Length");
    choose("Length");
    EXPECT_EQ(pane->picture(), picture);
    EXPECT_TRUE(action("actionDouble")->isEnabled());
}

TEST_F(BpmWindowColumnsTest, TheyFillTheTableAndAreInTheMenuToo) {
    auto const* menu = window.findChild<QToolButton*>("menuButton")->menu();
    EXPECT_TRUE(menu->actions().contains(window.findChild<CColumnsMenu*>()->menuAction()));
    choose("Key");
    choose("Kind");
    EXPECT_EQ(table->horizontalHeader()->length(), table->viewport()->width());
    window.resize(900, 500);
    EXPECT_EQ(table->horizontalHeader()->length(), table->viewport()->width());
}

TEST_F(BpmWindowColumnsTest, AKeySortsByAColumnThatIsThere) {
    openTwo();
    EXPECT_FALSE(action("actionSort9")->isEnabled());
    choose("Folder");
    choose("Stored");
    EXPECT_EQ(action("actionSort10")->shortcut(), QKeySequence("Ctrl+Alt+0"));
    action("actionSort10")->trigger();
    EXPECT_EQ(cell(0, 4), "no");
    choose("Folder"); // which moves the sorted one
    EXPECT_EQ(cell(0, 3), "no");
    EXPECT_EQ(table->horizontalHeader()->sortIndicatorSection(), 3);
    choose("Stored");
    EXPECT_EQ(table->horizontalHeader()->sortIndicatorSection(), -1);
    EXPECT_EQ(cell(0, 2), "90"); // as added
}

TEST_F(BpmWindowColumnsTest, OrderAndWidthsAreRemembered) {
    openTwo();
    choose("Key");
    QHeaderView const* header = table->horizontalHeader();
    int const key = widthOf(kKeyColumn);
    int const border = header->sectionPosition(3) - 1;
    drag(border, border - 20);
    EXPECT_GT(widthOf(kKeyColumn), key + 10);
    drag(header->sectionPosition(3) + 20, header->sectionPosition(1) + 10);
    EXPECT_EQ(headsOf(window), "Title Key Artist Tempo");
    table->selectRow(0);
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "a.mp3\t\t\t90\n");
    int const kept = widthOf(kKeyColumn);
    window.close();
    EXPECT_EQ(CSettings().Columns().toStdString(), QString("title key:%1 artist tempo:%2")
                                                       .arg(kept)
                                                       .arg(widthOf(CFileTableModel::kTempoColumn))
                                                       .toStdString());
    BpmWindow again(controller);
    again.show();
    EXPECT_EQ(headsOf(again), "Title Key Artist Tempo");
    auto const* shown = again.findChild<CFileTableView*>("fileTable");
    EXPECT_EQ(shown->horizontalHeader()->sectionSize(3), kept);
}

TEST_F(BpmWindowColumnsTest, AsAtFirstForgetsThem) {
    int const tempo = widthOf(CFileTableModel::kTempoColumn);
    choose("State");
    int const border = table->horizontalHeader()->sectionPosition(3) - 1;
    drag(border, border - 16);
    window.close();
    EXPECT_NE(CSettings().Columns(), "");
    window.show();
    choose("As at first");
    EXPECT_EQ(headsOf(window), "Title Artist Tempo");
    EXPECT_EQ(widthOf(CFileTableModel::kTempoColumn), tempo);
    window.close();
    EXPECT_EQ(CSettings().Stored(), "");
}
