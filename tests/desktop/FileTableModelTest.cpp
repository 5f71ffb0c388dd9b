// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/FileTableModel.h"

#include "FakeFileList.h"

#include <QAbstractItemModelTester>
#include <QItemSelectionModel>
#include <QLocale>
#include <QSignalSpy>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

/// A model over hand-written rows, watched by Qt's own checker, which aborts on a breach.
struct ModelFixture : testing::Test {
    void show() {
        while (model.takeAddedRows(kAllRows)) {
        }
    }

    std::string text(int row, int column) const {
        return model.index(row, column).data().toString().toStdString();
    }

    std::vector<std::string> column(int column) const {
        std::vector<std::string> texts;
        for (int row = 0; row < model.rowCount(); ++row) {
            texts.push_back(text(row, column));
        }
        return texts;
    }

    FakeFileList list;
    CFileTableModel model{list};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

using FileTableModelTest = ModelFixture;
using Texts = std::vector<std::string>;

} // namespace

TEST_F(FileTableModelTest, HasTheColumnsTitleArtistTempo) {
    EXPECT_EQ(model.headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), "Title");
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), "Artist");
    EXPECT_EQ(model.headerData(2, Qt::Horizontal, Qt::DisplayRole).toString(), "Tempo");
    EXPECT_EQ(model.columnCount(), 3);
}

TEST_F(FileTableModelTest, ShowsRowsOnlyOnceTheyAreTaken) {
    list.append(u"a", u"x", u"120");
    EXPECT_EQ(model.rowCount(), 0);
    show();
    ASSERT_EQ(model.rowCount(), 1);
    EXPECT_EQ(text(0, 0), "a");
    EXPECT_EQ(text(0, 1), "x");
    EXPECT_EQ(text(0, 2), "120");
}

TEST_F(FileTableModelTest, TakesAtMostTheLimitAndSaysThatMoreAreWaiting) {
    for (int i = 0; i < 5; ++i) {
        list.append(u"a", u"", u"");
    }
    EXPECT_TRUE(model.takeAddedRows(2));
    EXPECT_EQ(model.rowCount(), 2);
    EXPECT_TRUE(model.takeAddedRows(2));
    EXPECT_FALSE(model.takeAddedRows(2));
    EXPECT_EQ(model.rowCount(), 5);
    EXPECT_FALSE(model.takeAddedRows(2));
}

TEST_F(FileTableModelTest, TempoSortsAsANumber) {
    list.append(u"a", u"", u"100.00");
    list.append(u"b", u"", u"99.50");
    list.append(u"c", u"", u"120.10");
    show();
    model.sort(2, Qt::AscendingOrder);
    EXPECT_EQ(column(0), (Texts{"b", "a", "c"}));
    model.sort(2, Qt::DescendingOrder);
    EXPECT_EQ(column(0), (Texts{"c", "a", "b"}));
}

TEST_F(FileTableModelTest, RowsWithoutATempoComeLastBothWays) {
    list.append(u"none", u"", u"");
    list.append(u"words", u"", u"fast");
    list.append(u"zero", u"", u"0.00");
    list.append(u"slow", u"", u"82");
    list.append(u"quick", u"", u"163.9");
    show();
    model.sort(2, Qt::AscendingOrder);
    EXPECT_EQ(column(0), (Texts{"slow", "quick", "none", "words", "zero"}));
    model.sort(2, Qt::DescendingOrder);
    EXPECT_EQ(column(0), (Texts{"quick", "slow", "none", "words", "zero"}));
}

TEST_F(FileTableModelTest, TitlesSortWithoutCaseAndTiesKeepTheOrderAdded) {
    list.append(u"beta", u"1", u"");
    list.append(u"Alpha", u"2", u"");
    list.append(u"alpha", u"3", u"");
    list.append(u"Track 10", u"4", u"");
    list.append(u"track 9", u"5", u"");
    show();
    model.sort(0, Qt::AscendingOrder);
    EXPECT_EQ(column(1), (Texts{"2", "3", "1", "5", "4"}));
    model.sort(0, Qt::DescendingOrder);
    EXPECT_EQ(column(1), (Texts{"4", "5", "1", "2", "3"}));
}

TEST_F(FileTableModelTest, TheOrderAddedReturnsWhenSortingIsCleared) {
    list.append(u"b", u"", u"");
    list.append(u"a", u"", u"");
    show();
    model.sort(0, Qt::AscendingOrder);
    model.sort(-1, Qt::AscendingOrder);
    EXPECT_EQ(column(0), (Texts{"b", "a"}));
    EXPECT_EQ(model.idAt(0), 0U);
}

TEST_F(FileTableModelTest, RowsThatArriveInASortedTableTakeTheirPlaces) {
    list.append(u"d", u"", u"");
    list.append(u"b", u"", u"");
    show();
    model.sort(0, Qt::AscendingOrder);
    list.append(u"c", u"", u"");
    list.append(u"a", u"", u"");
    show();
    EXPECT_EQ(column(0), (Texts{"a", "b", "c", "d"}));
    EXPECT_EQ(model.idAt(0), 3U);
    EXPECT_EQ(model.idAt(3), 0U);
}

TEST_F(FileTableModelTest, SelectionStaysOnItsFileWhenTheOrderChanges) {
    list.append(u"b", u"", u"");
    list.append(u"a", u"", u"");
    show();
    QItemSelectionModel selection(&model);
    selection.select(model.index(0, 0), QItemSelectionModel::Rows | QItemSelectionModel::Select);
    model.sort(0, Qt::AscendingOrder);
    ASSERT_EQ(selection.selectedRows().size(), 1);
    EXPECT_EQ(selection.selectedRows().first().data().toString(), "b");
    EXPECT_EQ(selection.selectedRows().first().row(), 1);
}

TEST_F(FileTableModelTest, OneProgressNotificationRepaintsOneCell) {
    for (int i = 0; i < 100; ++i) {
        list.append(u"a", u"", u"");
    }
    show();
    QSignalSpy const changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy const layout(&model, &QAbstractItemModel::layoutChanged);
    list.rows[42].tempo = u" 7%";
    list.rows[42].state.m_nPercent = 7;
    model.reloadRow(42);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex(), model.index(42, 2));
    EXPECT_EQ(changed[0][1].toModelIndex(), model.index(42, 2));
    EXPECT_EQ(layout.count(), 0);
    EXPECT_EQ(model.index(42, 2).data(CFileTableModel::kPercentRole).toInt(), 7);
    EXPECT_FALSE(model.index(42, 0).data(CFileTableModel::kPercentRole).isValid());
}

TEST_F(FileTableModelTest, APercentageDoesNotMoveARowThatIsSortedByTempo) {
    list.append(u"a", u"", u"150.00");
    list.append(u"b", u"", u"90.00");
    show();
    model.sort(2, Qt::AscendingOrder);
    QSignalSpy const layout(&model, &QAbstractItemModel::layoutChanged);
    list.rows[0].tempo = u" 5%";
    list.rows[0].state.m_nPercent = 5;
    model.reloadRow(0);
    EXPECT_EQ(layout.count(), 0);
    EXPECT_EQ(column(0), (Texts{"b", "a"}));
    list.rows[0].tempo = u"85.00";
    list.rows[0].state.m_nPercent = -1;
    model.reloadRow(0);
    EXPECT_EQ(layout.count(), 1);
    EXPECT_EQ(column(0), (Texts{"a", "b"}));
}

TEST_F(FileTableModelTest, ARunningRowThatArrivesSortedHasNoTempoYet) {
    list.append(u"done", u"", u"90.00");
    show();
    model.sort(2, Qt::AscendingOrder);
    list.append(u"running", u"", u" 5%");
    list.rows[1].state.m_nPercent = 5;
    show();
    EXPECT_EQ(column(0), (Texts{"done", "running"}));
}

TEST_F(FileTableModelTest, ARowOfTheListThatIsNotShownYetIsNotReloaded) {
    list.append(u"a", u"", u"");
    QSignalSpy const changed(&model, &QAbstractItemModel::dataChanged);
    model.reloadRow(0);
    model.reloadAll();
    EXPECT_EQ(changed.count(), 0);
}

TEST_F(FileTableModelTest, TheToolTipHasThePathAndWhatWentWrong) {
    list.append(u"a.mp3", u"", u"0.00");
    list.rows[0].state.m_outcome.m_problem = EAnalysisProblem::NoBeat;
    list.rows[0].state.m_writeProblem = EWriteProblem::DiskFull;
    show();
    EXPECT_EQ(model.index(0, 0).data(Qt::ToolTipRole).toString(),
              "/music/a.mp3\nNo tempo: no beat was found in it");
    EXPECT_TRUE(model.index(0, 2).data(Qt::DecorationRole).isValid());
}

TEST_F(FileTableModelTest, AFileThatTakesNoTagHasNoWarning) {
    list.append(u"a.wav", u"", u"120.00");
    list.rows[0].state.m_writeProblem = EWriteProblem::OtherExtension;
    show();
    EXPECT_FALSE(model.index(0, 2).data(Qt::DecorationRole).isValid());
    EXPECT_TRUE(model.index(0, 2).data(Qt::ToolTipRole).toString().contains("only MP3"));
    list.rows[0].state.m_outcome.m_problem = EAnalysisProblem::NoBeat;
    EXPECT_EQ(model.index(0, 2).data(Qt::ToolTipRole).toString(),
              "/music/a.wav\nNo tempo: no beat was found in it");
}

TEST_F(FileTableModelTest, TheTempoIsWrittenInTheUsersForm) {
    list.append(u"a", u"", u"128.05");
    list.append(u"b", u"", u"128");
    list.append(u"c", u"", u"ca. 128.5");
    show();
    QLocale const before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(column(2), (Texts{"128,05", "128", "ca. 128.5"}));
    QLocale::setDefault(before);
}

TEST_F(FileTableModelTest, BytesThatAreNoTextAreShownAsReplacementCharacters) {
    list.append(u"caf\xDCE9.mp3", u"", u"");
    show();
    EXPECT_EQ(text(0, 0), "caf\xEF\xBF\xBD.mp3");
}

TEST_F(FileTableModelTest, AnUntitledRowShowsItsFileNameAndSaysSo) {
    list.append(u"", u"", u"120");
    list.rows[0].state.m_sPath = u"/music/a.mp3";
    list.append(u"Song", u"", u"120");
    show();
    auto const isUntitled = [this](int row, int column) {
        return model.index(row, column).data(CFileTableModel::kUntitledRole).toBool();
    };
    EXPECT_EQ(text(0, 0), "a.mp3");
    EXPECT_TRUE(isUntitled(0, 0));
    EXPECT_FALSE(isUntitled(0, 1));
    EXPECT_FALSE(isUntitled(1, 0));
}

TEST_F(FileTableModelTest, UntitledRowsSortByTheNameTheyShow) {
    list.append(u"Zebra", u"", u"");
    list.append(u"", u"", u"120");
    list.rows[1].state.m_sPath = u"/music/middle.mp3";
    list.append(u"Apple", u"", u"");
    show();
    model.sort(0, Qt::AscendingOrder);
    EXPECT_EQ(column(0), (Texts{"Apple", "middle.mp3", "Zebra"}));
}

TEST_F(FileTableModelTest, AScreenReaderHearsWhatIsWrongWithARow) {
    list.append(u"", u"", u"0.00");
    list.rows[0].state.m_sPath = u"/music/a.mp3";
    list.rows[0].state.m_bDone = true;
    show();
    auto const description = [this](int column) {
        return model.index(0, column).data(Qt::AccessibleDescriptionRole).toString().toStdString();
    };
    EXPECT_EQ(description(0), "");
    list.rows[0].state.m_outcome.m_problem = EAnalysisProblem::NoBeat;
    EXPECT_EQ(description(0), "No tempo: no beat was found in it");
    EXPECT_EQ(description(2), "No tempo: no beat was found in it");
}

TEST_F(FileTableModelTest, ARowThatIsReadSaysSoUntilItsFirstPercentage) {
    list.append(u"a", u"", u"99.00");
    list.rows[0].state.m_nPercent = 0;
    list.rows[0].state.m_bReading = true;
    show();
    EXPECT_EQ(text(0, 2), "reading");
    EXPECT_TRUE(model.index(0, 2).data(CFileTableModel::kReadingRole).toBool());
    list.rows[0].tempo = u" 0%";
    list.rows[0].state.m_bReading = false;
    EXPECT_EQ(text(0, 2), " 0%");
    EXPECT_FALSE(model.index(0, 2).data(CFileTableModel::kReadingRole).toBool());
}

TEST_F(FileTableModelTest, ATempoThatAwaitsAnotherAnalysisIsMarked) {
    list.append(u"a", u"", u"120.00");
    list.append(u"b", u"", u"120.00");
    list.append(u"c", u"", u"");
    list.append(u"d", u"", u"50%");
    list.rows[0].state.m_bDone = false;
    list.rows[3].state.m_bDone = false;
    list.rows[3].state.m_nPercent = 50;
    show();
    auto const awaits = [this](int row, int column) {
        return model.index(row, column).data(CFileTableModel::kAwaitsRole).toBool();
    };
    EXPECT_TRUE(awaits(0, 2));
    EXPECT_FALSE(awaits(0, 0));
    EXPECT_FALSE(awaits(1, 2));
    EXPECT_FALSE(awaits(2, 2));
    EXPECT_FALSE(awaits(3, 2));
    QString const spoken = model.index(0, 2).data(Qt::AccessibleDescriptionRole).toString();
    EXPECT_EQ(spoken, "still to be analyzed again");
}

TEST_F(FileTableModelTest, LineEndsInATitleDoNotBreakTheRow) {
    list.append(u"two\nlines\tand a tab", u"", u"");
    show();
    EXPECT_EQ(text(0, 0), "two lines and a tab");
}

TEST_F(FileTableModelTest, FiftyThousandRowsArriveInPortionsAndReadNoTextOnTheWay) {
    for (int i = 0; i < 50'000; ++i) {
        list.append(u"a", u"", u"");
    }
    list.textReads = 0;
    CFileTableModel plain(list);
    int portions = 1;
    while (plain.takeAddedRows(2'000)) {
        ++portions;
    }
    EXPECT_EQ(portions, 25);
    EXPECT_EQ(plain.rowCount(), 50'000);
    EXPECT_EQ(list.textReads, 0U);
}
