// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The order shown is one vector of ids. A sort, rows that arrive in a sorted table and a tempo that
// changes in one all end in `rearrange`, which carries selection and current row along. A filter
// that is switched fills the order anew and resets the model; a single row comes and goes by
// itself.

#include "desktop/FileTableModel.h"

#include "desktop/Numbers.h"
#include "desktop/Texts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr double kNoTempo = std::numeric_limits<double>::quiet_NaN(); // Fixed: sorts last.

} // namespace

CFileTableModel::CSortKey CFileTableModel::makeKey(std::size_t id) const {
    if (m_nSortColumn == kTempoColumn) {
        bool const isPercentage = m_list.rowState(id).m_nPercent >= 0;
        std::u16string const text = m_list.objectValueForTableColumn(kTempoColumn, id);
        double const tempo = isPercentage ? kNoTempo : TempoValue(text);
        return {std::nullopt, tempo, std::isnan(tempo)};
    }
    if (m_nSortColumn < kColumnCount) {
        return {m_collator.sortKey(textOf(id, m_nSortColumn)), 0.0, false};
    }
    auto const column = static_cast<EMoreColumn>(m_nSortColumn);
    CMoreCell const cell = MoreCell(column, m_list, id);
    return HasNumbers(column)
               ? CSortKey{std::nullopt, cell.m_fNumber, cell.m_sText.isEmpty()}
               : CSortKey{m_collator.sortKey(cell.m_sText), 0.0, cell.m_sText.isEmpty()};
}

// Only keys of one column are compared.
int CFileTableModel::compare(CSortKey const& left, CSortKey const& right) {
    return left.m_text ? left.m_text->compare(*right.m_text)
                       : (left.m_fNumber > right.m_fNumber) - (left.m_fNumber < right.m_fNumber);
}

// Strict order with the list's own order behind it, so that equal rows never swap.
bool CFileTableModel::comesBefore(std::size_t left, std::size_t right) const {
    if (m_nSortColumn < 0) {
        return left < right;
    }
    CSortKey const& a = m_vKeys[left];
    CSortKey const& b = m_vKeys[right];
    if (a.m_bMissing || b.m_bMissing) {
        return a.m_bMissing == b.m_bMissing ? left < right : b.m_bMissing;
    }
    int const order = compare(a, b);
    if (order == 0) {
        return left < right;
    }
    return m_sortOrder == Qt::AscendingOrder ? order < 0 : order > 0;
}

void CFileTableModel::sort(int section, Qt::SortOrder order) {
    int const column = columnAt(section);
    bool const sameKeys = column == m_nSortColumn;
    m_nSortColumn = column;
    m_sortOrder = order;
    if (!sameKeys) {
        m_vKeys.clear();
        addKeys();
    }
    rearrange(0);
}

void CFileTableModel::addKeys() {
    if (m_nSortColumn < 0) {
        return;
    }
    m_vKeys.reserve(m_vMarks.size());
    for (std::size_t id = m_vKeys.size(); id < m_vMarks.size(); ++id) {
        m_vKeys.push_back(makeKey(id));
    }
}

CFileTableModel::CMarks CFileTableModel::marksOf(std::size_t id) const {
    CRowState const state = m_list.rowState(id);
    CMarks marks;
    marks.m_bToDo = !state.m_bDone;
    marks.m_bToReview = state.m_bToReview;
    marks.m_bByHand = state.m_bByHand;
    marks.m_bNotInFile = state.m_bNotInFile || IsStoreFailure(state.m_writeProblem);
    marks.m_bProblem = HasProblem(state);
    marks.m_bHidden = state.m_bHidden;
    return marks;
}

bool CFileTableModel::isWanted(std::size_t id) const {
    CMarks const& marks = m_vMarks[id];
    if (marks.m_bHidden || !isFound(id)) {
        return false;
    }
    switch (m_filter) {
    case ERowFilter::All:
        break;
    case ERowFilter::ToDo:
        return marks.m_bToDo;
    case ERowFilter::ToReview:
        return marks.m_bToReview;
    case ERowFilter::ByHand:
        return marks.m_bByHand;
    case ERowFilter::Problems:
        return marks.m_bProblem;
    }
    return true;
}

void CFileTableModel::count(CMarks const& marks, bool comes) {
    auto const change = [comes](std::size_t& number, bool counts) {
        if (counts) {
            number = comes ? number + 1 : number - 1;
        }
    };
    change(m_counts.m_nAll, !marks.m_bHidden);
    change(m_counts.m_nToDo, marks.m_bToDo && !marks.m_bHidden);
    change(m_counts.m_nToReview, marks.m_bToReview && !marks.m_bHidden);
    change(m_counts.m_nByHand, marks.m_bByHand && !marks.m_bHidden);
    change(m_counts.m_nProblems, marks.m_bProblem && !marks.m_bHidden);
}

// Returns: true when they have changed.
bool CFileTableModel::refreshMarks(std::size_t id) {
    CMarks const marks = marksOf(id);
    if (marks == m_vMarks[id]) {
        return false;
    }
    count(m_vMarks[id], false);
    count(marks, true);
    m_vMarks[id] = marks;
    return true;
}

bool CFileTableModel::takeAddedRows(std::size_t limit) {
    std::size_t const known = m_vMarks.size();
    std::size_t const waiting = m_list.numberOfRowsInTableView() - known;
    std::size_t const taken = std::min(waiting, limit);
    if (taken == 0) {
        return false;
    }
    Ids wanted;
    for (std::size_t id = known; id < known + taken; ++id) {
        m_vMarks.push_back(marksOf(id));
        m_vPlaces.push_back(kNowhere);
        count(m_vMarks.back(), true);
        if (m_bSearched) {
            m_vSearchTexts.push_back(searchTextOf(id));
        }
        if (isWanted(id)) {
            wanted.push_back(id);
        }
    }
    addKeys();
    std::size_t const shown = m_vOrder.size();
    if (!wanted.empty()) {
        beginInsertRows({}, static_cast<int>(shown), static_cast<int>(shown + wanted.size()) - 1);
        m_vOrder.insert(m_vOrder.end(), wanted.begin(), wanted.end());
        numberPlaces(shown);
        endInsertRows();
    }
    if (m_nSortColumn >= 0 && !wanted.empty()) {
        rearrange(shown);
    }
    emit countsChanged();
    return waiting > taken;
}

void CFileTableModel::numberPlaces(std::size_t first) {
    for (std::size_t place = first; place < m_vOrder.size(); ++place) {
        m_vPlaces[m_vOrder[place]] = place;
    }
}

void CFileTableModel::setFilter(ERowFilter filter) {
    if (filter != m_filter) {
        beginResetModel();
        m_filter = filter;
        fillOrder();
        endResetModel();
    }
}

void CFileTableModel::setQuery(QString const& text) {
    CRowQuery query(text);
    if (query.isEmpty() && m_query.isEmpty()) {
        return;
    }
    m_bSearched = true;
    for (std::size_t id = m_vSearchTexts.size(); id < m_vMarks.size(); ++id) {
        m_vSearchTexts.push_back(searchTextOf(id));
    }
    beginResetModel();
    m_query = std::move(query);
    fillOrder();
    endResetModel();
}

QString CFileTableModel::searchTextOf(std::size_t id) const {
    QString const name = FileNameOf(ReadableText(m_list.rowState(id).m_sPath));
    return FoldedText(textOf(id, kTitleColumn) + QLatin1Char('\n') + textOf(id, kArtistColumn) +
                      QLatin1Char('\n') + name);
}

void CFileTableModel::refreshSearchText(std::size_t id) {
    if (id < m_vSearchTexts.size()) {
        m_vSearchTexts[id] = searchTextOf(id);
    }
}

bool CFileTableModel::isFound(std::size_t id) const {
    if (m_query.isEmpty()) {
        return true;
    }
    CMarks const& marks = m_vMarks[id];
    CRowFacts row;
    row.m_sText = m_vSearchTexts[id];
    row.m_bToDo = marks.m_bToDo;
    row.m_bToReview = marks.m_bToReview;
    row.m_bByHand = marks.m_bByHand;
    row.m_bNotInFile = marks.m_bNotInFile;
    row.m_bProblem = marks.m_bProblem;
    row.m_fBpm = m_query.asksForTempo()
                     ? TempoValue(m_list.objectValueForTableColumn(kTempoColumn, id))
                     : kNoTempo;
    if (m_query.asksForKey()) {
        row.m_sKey = QString::fromStdString(m_list.rowState(id).m_sKey);
    }
    return m_query.matches(row);
}

void CFileTableModel::fillOrder() {
    m_vOrder.clear();
    m_vPlaces.assign(m_vMarks.size(), kNowhere);
    for (std::size_t id = 0; id < m_vMarks.size(); ++id) {
        if (isWanted(id)) {
            m_vOrder.push_back(id);
        }
    }
    std::sort(m_vOrder.begin(), m_vOrder.end(),
              [this](std::size_t left, std::size_t right) { return comesBefore(left, right); });
    numberPlaces(0);
}

void CFileTableModel::reloadRow(std::size_t id) {
    if (id >= m_vMarks.size()) {
        return;
    }
    refreshKey(id);
    refreshSearchText(id);
    bool const isNews = refreshMarks(id);
    if (isNews || !m_query.isEmpty()) {
        showOrHide(id);
    }
    if (isNews) {
        emit countsChanged();
    }
    if (m_vPlaces[id] != kNowhere) {
        int const row = rowOf(id);
        emit dataChanged(index(row, kTempoColumn), index(row, columnCount() - 1));
    }
}

// The row's place is where the order shown wants it.
void CFileTableModel::showOrHide(std::size_t id) {
    bool const isShown = m_vPlaces[id] != kNowhere;
    if (isShown == isWanted(id)) {
        return;
    }
    auto const place = isShown ? m_vOrder.begin() + rowOf(id)
                               : std::lower_bound(m_vOrder.begin(), m_vOrder.end(), id,
                                                  [this](std::size_t left, std::size_t right) {
                                                      return comesBefore(left, right);
                                                  });
    auto const row = place - m_vOrder.begin();
    if (isShown) {
        beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row));
        m_vOrder.erase(place);
        m_vPlaces[id] = kNowhere;
        numberPlaces(static_cast<std::size_t>(row));
        endRemoveRows();
    } else {
        beginInsertRows({}, static_cast<int>(row), static_cast<int>(row));
        m_vOrder.insert(place, id);
        numberPlaces(static_cast<std::size_t>(row));
        endInsertRows();
    }
}

// A percentage is no result: the row keeps its place until that is there. Titles and artists don't
// change. Returns: true when the row has another key now.
bool CFileTableModel::takeKey(std::size_t id) {
    if (m_nSortColumn < kTempoColumn || m_list.rowState(id).m_nPercent >= 0) {
        return false;
    }
    CSortKey key = makeKey(id);
    CSortKey& before = m_vKeys[id];
    bool const same =
        key.m_bMissing == before.m_bMissing && (key.m_bMissing || compare(key, before) == 0);
    if (!same) {
        before = std::move(key);
    }
    return !same;
}

void CFileTableModel::refreshKey(std::size_t id) {
    if (takeKey(id) && m_vPlaces[id] != kNowhere) {
        rearrange(0);
    }
}

void CFileTableModel::reloadAll() {
    bool areSame = true;
    bool isOtherOrder = false;
    for (std::size_t id = 0; id < m_vMarks.size(); ++id) {
        isOtherOrder = takeKey(id) || isOtherOrder;
        refreshMarks(id);
        refreshSearchText(id);
        areSame = areSame && isWanted(id) == (m_vPlaces[id] != kNowhere);
    }
    if (!areSame) {
        beginResetModel();
        fillOrder();
        endResetModel();
    } else if (!m_vOrder.empty()) {
        if (isOtherOrder) {
            rearrange(0);
        }
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    }
    emit countsChanged();
}

// Rows before `sortedCount` are in order already; the rest is sorted and merged into them.
void CFileTableModel::rearrange(std::size_t sortedCount) {
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    QModelIndexList const before = persistentIndexList();
    Ids ids;
    ids.reserve(static_cast<std::size_t>(before.size()));
    for (QModelIndex const& cell : before) {
        ids.push_back(idAt(cell.row()));
    }
    auto const earlier = [this](std::size_t left, std::size_t right) {
        return comesBefore(left, right);
    };
    auto const middle = m_vOrder.begin() + static_cast<std::ptrdiff_t>(sortedCount);
    std::sort(middle, m_vOrder.end(), earlier);
    std::inplace_merge(m_vOrder.begin(), middle, m_vOrder.end(), earlier);
    numberPlaces(0);
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i) {
        int const row = static_cast<int>(m_vPlaces[ids[static_cast<std::size_t>(i)]]);
        after.push_back(index(row, before[i].column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}
