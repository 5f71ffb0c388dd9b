// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/FileTableView.h"

#include "FakeFileList.h"
#include "desktop/FileTableModel.h"
#include "desktop/Tints.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

struct FileTableViewTest : testing::Test {
    FileTableViewTest() {
        view.resize(700, 400);
        view.show();
    }

    void add(std::u16string title, std::u16string artist, std::u16string tempo) {
        list.append(std::move(title), std::move(artist), std::move(tempo));
        model.takeAddedRows(kAllRows);
    }

    int widthOfAllColumns() const {
        QHeaderView const* header = view.horizontalHeader();
        return header->sectionSize(0) + header->sectionSize(1) + header->sectionSize(2);
    }

    /// The best contrast that any pixel of this part of the table has to `ground`.
    double bestContrastIn(QRect const& part, QColor const& ground) {
        QImage const image = view.viewport()->grab().toImage();
        double best = 1.0;
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x) {
                best = std::max(best, Contrast(image.pixelColor(x, y), ground));
            }
        }
        return best;
    }

    /// The rightmost pixel in `cell` that isn't its ground; -1 when all are.
    static int lastInk(QImage const& image, QRect const& cell) {
        for (int x = cell.right(); x >= cell.left(); --x) {
            for (int y = cell.top() + 2; y < cell.bottom() - 2; ++y) {
                if (image.pixelColor(x, y) != image.pixelColor(cell.left() + 1, cell.top() + 2)) {
                    return x;
                }
            }
        }
        return -1;
    }

    static std::string clipboard() { return QApplication::clipboard()->text().toStdString(); }

    FakeFileList list;
    CFileTableModel model{list};
    CFileTableView view{model};
};

} // namespace

TEST_F(FileTableViewTest, AnEmptyTableSaysWhatTheProgramDoesAndThatItWrites) {
    auto const* hint = view.findChild<QLabel*>("emptyHint");
    ASSERT_NE(hint, nullptr);
    EXPECT_TRUE(hint->isVisible());
    EXPECT_EQ(hint->text(), "Finds the tempo of music and writes it into MP3 tags");
    EXPECT_TRUE(view.accessibleDescription().startsWith(hint->text()));
    add(u"a", u"", u"");
    EXPECT_FALSE(hint->isVisible());
    EXPECT_EQ(view.accessibleDescription(), "");
}

TEST_F(FileTableViewTest, TheButtonOfTheEmptyTableAsksForMusic) {
    QSignalSpy const asked(&view, &CFileTableView::addRequested);
    QTest::mouseClick(view.findChild<QPushButton*>("emptyAdd"), Qt::LeftButton);
    EXPECT_EQ(asked.count(), 1);
}

TEST_F(FileTableViewTest, AFilterThatShowsNothingDoesNotAskForMusic) {
    add(u"a", u"", u"120.00");
    model.setFilter(ERowFilter::Problems);
    EXPECT_EQ(view.findChild<QLabel*>("emptyHint")->text(), "Nothing here");
    EXPECT_TRUE(view.findChild<QLabel*>("emptyHint")->isVisible());
    EXPECT_FALSE(view.findChild<QPushButton*>("emptyAdd")->isVisible());
}

TEST_F(FileTableViewTest, SelectionAndCurrentRowOutliveAFilter) {
    add(u"a", u"", u"120.00");
    add(u"b", u"", u"");
    add(u"c", u"", u"");
    add(u"d", u"", u"");
    for (int const row : {0, 2, 3}) {
        view.selectionModel()->select(model.index(row, 0),
                                      QItemSelectionModel::Rows | QItemSelectionModel::Select);
    }
    view.selectionModel()->setCurrentIndex(model.index(3, 0), QItemSelectionModel::NoUpdate);
    model.setFilter(ERowFilter::ToDo);
    auto const selected = [this] {
        std::string titles;
        for (int row = 0; row < model.rowCount(); ++row) {
            if (view.selectionModel()->isRowSelected(row, {})) {
                titles += model.index(row, 0).data().toString().toStdString();
            }
        }
        return titles;
    };
    EXPECT_EQ(selected(), "cd");
    EXPECT_EQ(view.currentIndex().data().toString(), "d");
    model.setFilter(ERowFilter::All);
    EXPECT_EQ(selected(), "cd");
    EXPECT_EQ(view.currentIndex().data().toString(), "d");
}

TEST_F(FileTableViewTest, HomeAndEndGoToTheFirstAndTheLastRow) {
    add(u"a", u"", u"");
    add(u"b", u"", u"");
    add(u"c", u"", u"");
    view.selectRow(1);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(view.currentIndex().row(), 2);
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(view.currentIndex().row(), 0);
    QTest::keyClick(&view, Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(view.selectionModel()->selectedRows().size(), 3);
}

TEST_F(FileTableViewTest, AKeySortsLikeAClickOnTheHead) {
    add(u"b", u"", u"");
    add(u"c", u"", u"");
    add(u"a", u"", u"");
    auto const first = [&] { return model.index(0, 0).data().toString().toStdString(); };
    view.sortByNext(0);
    EXPECT_EQ(first(), "a");
    view.sortByNext(0);
    EXPECT_EQ(first(), "c");
    view.sortByNext(0);
    EXPECT_EQ(first(), "b");
    view.sortByNext(2);
    view.sortByNext(0);
    EXPECT_EQ(first(), "a");
}

TEST_F(FileTableViewTest, AnUntitledRowIsCopiedAndSpokenAsItIsShown) {
    add(u"", u"x", u"120.00");
    list.rows[0].state.m_sPath = u"/music/a.mp3";
    view.selectAll();
    view.copySelection();
    EXPECT_EQ(clipboard(), "a.mp3\tx\t120.00\n");
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->tableInterface()->cellAt(0, 0)->text(QAccessible::Name), "a.mp3");
}

TEST_F(FileTableViewTest, AToolTipShowsFileNamesAsTheyAre) {
    add(u"<b>bold</b>.mp3", u"", u"");
    QPoint const place = view.visualRect(model.index(0, 0)).center();
    QHelpEvent help(QEvent::ToolTip, place, view.viewport()->mapToGlobal(place));
    QApplication::sendEvent(view.viewport(), &help);
    EXPECT_TRUE(QToolTip::text().contains("&lt;b&gt;bold&lt;/b&gt;.mp3"))
        << QToolTip::text().toStdString();
}

TEST_F(FileTableViewTest, HintsAreLegibleInADarkPaletteThatLeavesThemUnset) {
    QPalette dark;
    dark.setColor(QPalette::Text, QColor(252, 252, 252));
    dark.setColor(QPalette::Base, QColor(27, 30, 32));
    dark.setColor(QPalette::AlternateBase, QColor(27, 30, 32));
    dark.setColor(QPalette::PlaceholderText, Qt::black);
    view.setPalette(dark);
    QRect const way = view.findChild<QLabel*>("emptyWay")->geometry();
    EXPECT_GE(bestContrastIn(way, dark.color(QPalette::Base)), 4.5);
    add(u"", u"", u"120.00");
    list.rows[0].state.m_sPath = u"/music/a.mp3";
    model.reloadAll();
    EXPECT_GE(bestContrastIn(view.visualRect(model.index(0, 0)), dark.color(QPalette::Base)), 4.5);
}

TEST_F(FileTableViewTest, DecimalPointsStandBelowEachOther) {
    add(u"a", u"", u"94.99");
    add(u"b", u"", u"136");
    add(u"c", u"", u"174.5");
    QImage const image = view.viewport()->grab().toImage();
    // The last column of ink in front of the point: that of "136" ends where the "4" of "174.5" and
    // of "94.99" do, give or take the shape of a figure.
    int const end = lastInk(image, view.visualRect(model.index(1, 2)));
    int const decimals = lastInk(image, view.visualRect(model.index(0, 2)));
    EXPECT_GT(decimals - end, view.fontMetrics().horizontalAdvance(u'0'));
    EXPECT_LT(lastInk(image, view.visualRect(model.index(2, 2))), decimals);
}

TEST_F(FileTableViewTest, ATableWithRowsHasACurrentRowButNoSelection) {
    EXPECT_FALSE(view.currentIndex().isValid());
    add(u"a", u"", u"");
    EXPECT_EQ(view.currentIndex().row(), 0);
    EXPECT_FALSE(view.selectionModel()->hasSelection());
}

TEST_F(FileTableViewTest, CopiesSelectedRowsInTheOrderShownAsTabSeparatedText) {
    add(u"b", u"second", u"120.00");
    add(u"c", u"third", u"");
    add(u"a\tx", u"first", u"90.00");
    view.sortByColumn(0, Qt::AscendingOrder);
    view.selectionModel()->select(model.index(1, 0),
                                  QItemSelectionModel::Rows | QItemSelectionModel::Select);
    view.selectionModel()->select(model.index(0, 0),
                                  QItemSelectionModel::Rows | QItemSelectionModel::Select);
    view.copySelection();
    EXPECT_EQ(clipboard(), "a x\tfirst\t90.00\nb\tsecond\t120.00\n");
}

TEST_F(FileTableViewTest, CopyingNothingLeavesTheClipboardAlone) {
    add(u"a", u"", u"");
    QApplication::clipboard()->setText("kept");
    view.copySelection();
    EXPECT_EQ(clipboard(), "kept");
}

TEST_F(FileTableViewTest, TitleAndArtistShareTheRoomThreeToTwo) {
    QHeaderView const* header = view.horizontalHeader();
    for (int const width : {700, 900, 1300}) {
        view.resize(width, 400);
        EXPECT_EQ(widthOfAllColumns(), view.viewport()->width());
        // Within the pixel that a third of it is.
        EXPECT_NEAR(2 * header->sectionSize(0), 3 * header->sectionSize(1), 3);
    }
}

TEST_F(FileTableViewTest, AResizedColumnTakesFromItsNeighbourAndTheTableStaysFull) {
    QHeaderView* header = view.horizontalHeader();
    int const title = header->sectionSize(0);
    int const artist = header->sectionSize(1);
    header->resizeSection(0, title - 50);
    EXPECT_EQ(header->sectionSize(0), title - 50);
    EXPECT_EQ(header->sectionSize(1), artist + 50);
    EXPECT_EQ(widthOfAllColumns(), view.viewport()->width());
    double const share = static_cast<double>(title - 50) / (title + artist);
    view.resize(1400, 400);
    // The user's shares stay; half a pixel is lost to rounding.
    EXPECT_NEAR(header->sectionSize(0), share * (header->sectionSize(0) + header->sectionSize(1)),
                0.6);
}

TEST_F(FileTableViewTest, AClickOnTheHeaderSortsAndTheThirdRestoresTheOrderAdded) {
    add(u"b", u"", u"");
    add(u"c", u"", u"");
    add(u"a", u"", u"");
    QHeaderView* header = view.horizontalHeader();
    QPoint const title(header->sectionViewportPosition(0) + 20, header->height() / 2);
    auto const first = [&] { return model.index(0, 0).data().toString().toStdString(); };
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, title);
    EXPECT_EQ(first(), "a");
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, title);
    EXPECT_EQ(first(), "c");
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, title);
    EXPECT_EQ(first(), "b");
}

TEST_F(FileTableViewTest, AScreenReaderReadsHeadersAndCells) {
    add(u"Song", u"Singer", u"128.00");
    view.setAccessibleName("Files");
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->text(QAccessible::Name), "Files");
    QAccessibleTableInterface* cells = table->tableInterface();
    ASSERT_NE(cells, nullptr);
    EXPECT_EQ(cells->rowCount(), 1);
    EXPECT_EQ(cells->columnCount(), 3);
    EXPECT_EQ(cells->columnDescription(2), "Tempo");
    EXPECT_EQ(cells->cellAt(0, 0)->text(QAccessible::Name), "Song");
    EXPECT_EQ(cells->cellAt(0, 1)->text(QAccessible::Name), "Singer");
    EXPECT_EQ(cells->cellAt(0, 2)->text(QAccessible::Name), "128.00");
}

TEST_F(FileTableViewTest, ARunningCellIsPaintedWithABarAsLongAsItsPercentage) {
    add(u"a", u"", u"50%");
    list.rows[0].state.m_nPercent = 50;
    model.reloadRow(0);
    QImage const image = view.viewport()->grab().toImage();
    QRect const cell = view.visualRect(model.index(0, 2));
    // Left of the text lies the filled part of the bar, right of it the empty one.
    QColor const filled = image.pixelColor(cell.left() + 8, cell.top() + 6);
    QColor const empty = image.pixelColor(cell.right() - 8, cell.top() + 6);
    EXPECT_NE(filled, empty);
    QColor const highlight = view.palette().color(QPalette::Highlight);
    auto const distance = [&](QColor const& color) {
        return std::abs(color.red() - highlight.red()) +
               std::abs(color.green() - highlight.green()) +
               std::abs(color.blue() - highlight.blue());
    };
    EXPECT_LT(distance(filled), distance(empty));
}

TEST_F(FileTableViewTest, AFolderWithoutRoomShowsItsEnd) {
    for (char16_t const* const path : {u"/home/someone/music/of some years/first/a.mp3",
                                       u"/home/someone/music/of some years/other/a.mp3",
                                       u"/mnt/music of somebody else, some years/first/a.mp3"}) {
        add(u"", u"", u"");
        list.rows.back().state.m_sPath = path;
    }
    view.showColumn(kFolderColumn, true);
    int const section = model.sectionOf(kFolderColumn);
    view.horizontalHeader()->resizeSection(section, view.fontMetrics().averageCharWidth() * 14);
    auto const picture = [&](int row) {
        QRect const cell = view.visualRect(model.index(row, section));
        return view.viewport()->grab(cell.adjusted(1, 2, -1, -2)).toImage();
    };
    view.setAlternatingRowColors(false);
    EXPECT_NE(picture(0), picture(1));
    EXPECT_EQ(picture(0), picture(2));
}
