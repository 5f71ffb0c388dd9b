// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "FakeFileList.h"
#include "desktop/FileTableModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <chrono>
#include <gtest/gtest.h>

namespace {

/// Rows named after what they are: "done", "todo", "failed". Watched by Qt's own checker.
struct FileTableOrderTest : testing::Test {
    void add(std::u16string const& title) {
        list.append(title, u"", title == u"todo" ? u"" : u"120.00");
        setState(list.rows.size() - 1, title);
        model.takeAddedRows(kAllRows);
    }

    /// Makes row `id` what its title says, without telling the model.
    void setState(std::size_t id, std::u16string const& title) {
        list.rows[id].title = title;
        list.rows[id].state.m_bDone = title != u"todo";
        list.rows[id].state.m_outcome.m_problem =
            title == u"failed" ? EAnalysisProblem::NoBeat : EAnalysisProblem::None;
    }

    std::vector<std::string> titles() const {
        std::vector<std::string> texts;
        for (int row = 0; row < model.rowCount(); ++row) {
            texts.push_back(model.index(row, 0).data().toString().toStdString());
        }
        return texts;
    }

    FakeFileList list;
    CFileTableModel model{list};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

using Texts = std::vector<std::string>;

} // namespace

TEST_F(FileTableOrderTest, CountsAreThoseOfTheFilters) {
    add(u"done");
    add(u"todo");
    add(u"failed");
    add(u"todo");
    EXPECT_EQ(model.counts(), (CRowCounts{4, 2, 0, 0, 1}));
    setState(1, u"failed");
    model.reloadRow(1);
    EXPECT_EQ(model.counts(), (CRowCounts{4, 1, 0, 0, 2}));
}

TEST_F(FileTableOrderTest, AFilterShowsItsRowsInTheirOrder) {
    add(u"done");
    add(u"todo");
    add(u"failed");
    add(u"todo");
    model.setFilter(ERowFilter::ToDo);
    EXPECT_EQ(titles(), (Texts{"todo", "todo"}));
    EXPECT_EQ(model.idAt(0), 1U);
    EXPECT_EQ(model.idAt(1), 3U);
    EXPECT_EQ(model.rowOf(3), 1);
    EXPECT_EQ(model.rowOf(0), -1);
    model.setFilter(ERowFilter::Problems);
    EXPECT_EQ(titles(), (Texts{"failed"}));
    model.setFilter(ERowFilter::All);
    EXPECT_EQ(titles(), (Texts{"done", "todo", "failed", "todo"}));
}

TEST_F(FileTableOrderTest, ARowComesAndGoesAsItsStateChanges) {
    add(u"todo");
    add(u"todo");
    add(u"todo");
    model.setFilter(ERowFilter::ToDo);
    QSignalSpy const resets(&model, &QAbstractItemModel::modelReset);
    setState(1, u"done");
    model.reloadRow(1);
    EXPECT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.idAt(1), 2U);
    setState(1, u"todo");
    model.reloadRow(1);
    ASSERT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.idAt(1), 1U);
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(FileTableOrderTest, ARowThatComesBackTakesItsPlaceInTheSortedOrder) {
    add(u"todo");
    add(u"todo");
    model.setFilter(ERowFilter::Problems);
    model.sort(0, Qt::DescendingOrder);
    for (std::size_t const id : {0U, 1U}) {
        setState(id, u"failed");
        model.reloadRow(id);
    }
    // Equal titles keep the order of the list whichever way they are sorted.
    EXPECT_EQ(model.idAt(0), 0U);
    EXPECT_EQ(model.idAt(1), 1U);
}

TEST_F(FileTableOrderTest, RowsThatArriveAreFilteredToo) {
    add(u"done");
    model.setFilter(ERowFilter::ToDo);
    add(u"done");
    EXPECT_EQ(model.rowCount(), 0);
    add(u"todo");
    EXPECT_EQ(titles(), (Texts{"todo"}));
    EXPECT_EQ(model.counts(), (CRowCounts{3, 1, 0, 0, 0}));
}

TEST_F(FileTableOrderTest, WhenEveryRowMayHaveChangedTheFilterLooksAtAll) {
    add(u"done");
    add(u"done");
    model.setFilter(ERowFilter::ToDo);
    setState(0, u"todo");
    setState(1, u"todo");
    model.reloadAll();
    EXPECT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.counts(), (CRowCounts{2, 2, 0, 0, 0}));
}

TEST_F(FileTableOrderTest, AHiddenRowIsInNoFilterAndNoCount) {
    add(u"todo");
    add(u"failed");
    list.rows[0].state.m_bHidden = true;
    model.reloadAll();
    EXPECT_EQ(titles(), (Texts{"failed"}));
    EXPECT_EQ(model.counts(), (CRowCounts{1, 0, 0, 0, 1}));
    model.setFilter(ERowFilter::ToDo);
    EXPECT_EQ(model.rowCount(), 0);
    list.rows[0].state.m_bHidden = false;
    model.reloadAll();
    EXPECT_EQ(titles(), (Texts{"todo"}));
}

TEST_F(FileTableOrderTest, WithoutAFilterNothingIsResetWhenAllRowsAreReloaded) {
    add(u"done");
    QSignalSpy const resets(&model, &QAbstractItemModel::modelReset);
    setState(0, u"todo");
    model.reloadAll();
    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(model.rowCount(), 1);
}

// The bound is that of a person who presses a key: a tenth of a second.
TEST_F(FileTableOrderTest, FiftyThousandRowsAreFilteredAtOnce) {
    for (int i = 0; i < 50'000; ++i) {
        list.append(u"a", u"", u"120.00");
        list.rows.back().state.m_bDone = i % 2 == 0;
    }
    CFileTableModel plain(list);
    plain.takeAddedRows(kAllRows);
    auto const start = std::chrono::steady_clock::now();
    plain.setFilter(ERowFilter::ToDo);
    auto const took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(plain.rowCount(), 25'000);
    RecordProperty("milliseconds",
                   static_cast<int>(std::chrono::duration<double, std::milli>(took).count()));
    EXPECT_LT(took, std::chrono::milliseconds(100));
}

TEST_F(FileTableOrderTest, RowsToReviewAndThoseSetByHandHaveFiltersOfTheirOwn) {
    add(u"one");
    add(u"two");
    add(u"three");
    list.rows[0].state.m_bToReview = true;
    list.rows[2].state.m_bByHand = true;
    model.reloadRow(0);
    model.reloadRow(2);
    EXPECT_EQ(model.counts(), (CRowCounts{3, 0, 1, 1, 0}));
    model.setFilter(ERowFilter::ToReview);
    EXPECT_EQ(titles(), (Texts{"one"}));
    model.setFilter(ERowFilter::ByHand);
    EXPECT_EQ(titles(), (Texts{"three"}));
    list.rows[2].state.m_bByHand = false;
    model.reloadRow(2);
    EXPECT_EQ(titles(), (Texts{}));
}

TEST_F(FileTableOrderTest, AQueryFindsRowsAmongThoseOfTheFilter) {
    add(u"done");
    add(u"todo");
    list.rows[0].artist = u"Some band";
    model.setQuery("band");
    EXPECT_EQ(titles(), (Texts{"done"}));
    model.setFilter(ERowFilter::ToDo);
    EXPECT_EQ(titles(), (Texts{}));
    model.setQuery("");
    EXPECT_EQ(titles(), (Texts{"todo"}));
}

TEST_F(FileTableOrderTest, RowsThatComeOrChangeMeetTheQueryToo) {
    add(u"one");
    model.setQuery("120-121 one");
    add(u"two");
    add(u"one");
    EXPECT_EQ(titles(), (Texts{"one", "one"}));
    list.rows[0].tempo = u"240.00";
    model.reloadRow(0);
    EXPECT_EQ(titles(), (Texts{"one"}));
    EXPECT_EQ(model.idAt(0), 2U);
    list.rows[1].title = u"one more";
    model.reloadRow(1);
    EXPECT_EQ(titles(), (Texts{"one more", "one"}));
    EXPECT_EQ(model.counts().m_nAll, 3U); // a query changes no count
}

TEST_F(FileTableOrderTest, AFurtherColumnIsSortedByItsNumbersWithTheUnknownLast) {
    for (char16_t const* title : {u"9:00", u"unknown", u"10:00"}) {
        add(title);
    }
    for (std::size_t const id : {0U, 2U}) {
        list.rows[id].state.m_outcome.m_report.m_nFileRate = 44100;
        list.rows[id].state.m_outcome.m_report.m_dHeardSeconds = id == 0 ? 540.0 : 600.0;
    }
    model.addColumn(kStateColumn);
    model.addColumn(kLengthColumn);
    EXPECT_EQ(model.sectionOf(kLengthColumn), 4);
    EXPECT_EQ(model.index(0, 4).data().toString(), "9:00");
    model.sort(4, Qt::DescendingOrder);
    EXPECT_EQ(titles(), (Texts{"10:00", "9:00", "unknown"}));
    model.sort(4, Qt::AscendingOrder);
    EXPECT_EQ(titles(), (Texts{"9:00", "10:00", "unknown"}));
    list.rows[1].state.m_outcome.m_report.m_nFileRate = 44100;
    list.rows[1].state.m_outcome.m_report.m_dHeardSeconds = 570.0;
    model.reloadRow(1);
    EXPECT_EQ(titles(), (Texts{"9:00", "unknown", "10:00"}));
    model.removeColumn(kStateColumn);
    EXPECT_EQ(model.columnCount(), 4);
    EXPECT_EQ(model.index(0, 3).data().toString(), "9:00");
}

TEST_F(FileTableOrderTest, StatesThatChangeAtOnceAreSortedAnew) {
    add(u"done");
    add(u"todo");
    model.addColumn(kStateColumn);
    model.sort(3, Qt::AscendingOrder);
    EXPECT_EQ(titles(), (Texts{"done", "todo"})); // "analyzed", "to do"
    setState(0, u"todo");
    setState(1, u"done");
    model.reloadAll();
    EXPECT_EQ(titles(), (Texts{"done", "todo"}));
    EXPECT_EQ(model.idAt(0), 1U);
}
