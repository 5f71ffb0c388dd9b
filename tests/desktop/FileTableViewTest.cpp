// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/FileTableView.h"

#include "FakeFileList.h"
#include "desktop/FileTableModel.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

namespace {

constexpr std::size_t kAllRows = 1'000'000;

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

    static std::string clipboard() { return QApplication::clipboard()->text().toStdString(); }

    FakeFileList list;
    CFileTableModel model{list};
    CFileTableView view{model};
};

} // namespace

TEST_F(FileTableViewTest, AnEmptyTableSaysWhatToDoUntilItHasRows) {
    auto const* hint = view.findChild<QLabel*>("emptyHint");
    ASSERT_NE(hint, nullptr);
    EXPECT_TRUE(hint->isVisible());
    EXPECT_EQ(view.accessibleDescription(), "Drop music files or folders here");
    add(u"a", u"", u"");
    EXPECT_FALSE(hint->isVisible());
    EXPECT_EQ(view.accessibleDescription(), "");
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

TEST_F(FileTableViewTest, TheTitleTakesTheRoomAndGrowsWithTheWindow) {
    QHeaderView const* header = view.horizontalHeader();
    EXPECT_EQ(widthOfAllColumns(), view.viewport()->width());
    EXPECT_GT(header->sectionSize(0), header->sectionSize(1));
    EXPECT_GT(header->sectionSize(1), header->sectionSize(2));
    int const artist = header->sectionSize(1);
    view.resize(900, 400);
    EXPECT_EQ(widthOfAllColumns(), view.viewport()->width());
    EXPECT_EQ(header->sectionSize(1), artist);
}

TEST_F(FileTableViewTest, AResizedColumnTakesFromItsNeighbourAndTheTableStaysFull) {
    QHeaderView* header = view.horizontalHeader();
    int const title = header->sectionSize(0);
    int const artist = header->sectionSize(1);
    header->resizeSection(0, title - 50);
    EXPECT_EQ(header->sectionSize(0), title - 50);
    EXPECT_EQ(header->sectionSize(1), artist + 50);
    EXPECT_EQ(widthOfAllColumns(), view.viewport()->width());
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
