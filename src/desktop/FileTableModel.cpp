// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The order shown is one vector of ids. A sort, rows that arrive in a sorted table and a tempo that
// changes in one all end in `rearrange`, which carries selection and current row along.

#include "desktop/FileTableModel.h"

#include "desktop/Glyphs.h"
#include "desktop/Texts.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kNoTempo = std::numeric_limits<double>::quiet_NaN(); // Fixed: sorts last.

} // namespace

CFileTableModel::CFileTableModel(IFileList const& list, QObject* parent)
    : QAbstractTableModel(parent), m_list(list), m_warning(WarningIcon()) {
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    m_collator.setNumericMode(true);
}

int CFileTableModel::rowCount(QModelIndex const& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_vOrder.size());
}

int CFileTableModel::columnCount(QModelIndex const& parent) const {
    return parent.isValid() ? 0 : kColumnCount;
}

std::size_t CFileTableModel::idAt(int row) const {
    return m_vOrder[static_cast<std::size_t>(row)];
}

QVariant CFileTableModel::data(QModelIndex const& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    std::size_t const id = idAt(index.row());
    bool const isTempo = index.column() == kTempoColumn;
    switch (role) {
    case Qt::DisplayRole:
        return textOf(id, index.column());
    case Qt::ToolTipRole:
        return tipOf(id);
    case Qt::TextAlignmentRole:
        return static_cast<int>((isTempo ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    case Qt::DecorationRole:
        return isTempo && HasProblem(m_list.rowState(id)) ? QVariant(m_warning) : QVariant();
    case Qt::AccessibleDescriptionRole:
        return descriptionOf(id, index.column());
    case kProblemRole:
        return ProblemText(m_list.rowState(id));
    case kPathRole:
        return ReadableText(m_list.rowState(id).m_sPath);
    case kPlaceholderRole:
        return index.column() == kTitleColumn ? placeholderOf(id) : QVariant();
    case kPercentRole: {
        int const percent = m_list.rowState(id).m_nPercent;
        return isTempo && percent >= 0 ? QVariant(percent) : QVariant();
    }
    default:
        return {};
    }
}

QString CFileTableModel::textOf(std::size_t id, int column) const {
    std::u16string const text = m_list.objectValueForTableColumn(column, id);
    return column == kTempoColumn ? TempoText(text) : ReadableText(text);
}

QVariant CFileTableModel::placeholderOf(std::size_t id) const {
    if (!m_list.objectValueForTableColumn(kTitleColumn, id).empty()) {
        return {};
    }
    return FileNameOf(ReadableText(m_list.rowState(id).m_sPath));
}

// Where the name is painted for want of a title, a screen reader has to say it too.
QString CFileTableModel::descriptionOf(std::size_t id, int column) const {
    QStringList parts;
    if (column == kTitleColumn) {
        parts << placeholderOf(id).toString();
    }
    parts << ProblemText(m_list.rowState(id));
    parts.removeAll(QString());
    return parts.join(QLatin1String(": "));
}

QString CFileTableModel::tipOf(std::size_t id) const {
    CRowState const state = m_list.rowState(id);
    QStringList lines{ReadableText(state.m_sPath)};
    lines << ProblemText(state);
    // Where there is no tempo, it matters little that files of this kind take none.
    if (!IsStoreFailure(state.m_writeProblem) && state.m_sFailure.empty()) {
        lines << NoteText(state);
    }
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}

QVariant CFileTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) {
        return {};
    }
    if (role == Qt::TextAlignmentRole) {
        auto const side = section == kTempoColumn ? Qt::AlignRight : Qt::AlignLeft;
        return static_cast<int>(side | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case kTitleColumn:
        return tr("Title");
    case kArtistColumn:
        return tr("Artist");
    case kTempoColumn:
        return tr("Tempo");
    default:
        return {};
    }
}

CFileTableModel::CSortKey CFileTableModel::makeKey(std::size_t id) const {
    std::u16string const text = m_list.objectValueForTableColumn(m_nSortColumn, id);
    if (m_nSortColumn == kTempoColumn) {
        bool const isPercentage = m_list.rowState(id).m_nPercent >= 0;
        return {std::nullopt, isPercentage ? kNoTempo : TempoValue(text)};
    }
    return {m_collator.sortKey(QString::fromStdU16String(text)), 0.0};
}

// Strict order with the list's own order behind it, so that equal rows never swap.
bool CFileTableModel::comesBefore(std::size_t left, std::size_t right) const {
    if (m_nSortColumn < 0) {
        return left < right;
    }
    CSortKey const& a = m_vKeys[left];
    CSortKey const& b = m_vKeys[right];
    if (m_nSortColumn == kTempoColumn) {
        bool const leftHasNone = std::isnan(a.m_fNumber);
        bool const rightHasNone = std::isnan(b.m_fNumber);
        if (leftHasNone || rightHasNone) {
            return leftHasNone == rightHasNone ? left < right : rightHasNone;
        }
    }
    int const order = m_nSortColumn == kTempoColumn
                          ? (a.m_fNumber > b.m_fNumber) - (a.m_fNumber < b.m_fNumber)
                          : a.m_text->compare(*b.m_text);
    if (order == 0) {
        return left < right;
    }
    return m_sortOrder == Qt::AscendingOrder ? order < 0 : order > 0;
}

void CFileTableModel::sort(int column, Qt::SortOrder order) {
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
    m_vKeys.reserve(m_vOrder.size());
    for (std::size_t id = m_vKeys.size(); id < m_vOrder.size(); ++id) {
        m_vKeys.push_back(makeKey(id));
    }
}

bool CFileTableModel::takeAddedRows(std::size_t limit) {
    std::size_t const shown = m_vOrder.size();
    std::size_t const waiting = m_list.numberOfRowsInTableView() - shown;
    std::size_t const taken = std::min(waiting, limit);
    if (taken == 0) {
        return false;
    }
    beginInsertRows({}, static_cast<int>(shown), static_cast<int>(shown + taken) - 1);
    for (std::size_t id = shown; id < shown + taken; ++id) {
        m_vOrder.push_back(id);
        m_vPlaces.push_back(id);
    }
    endInsertRows();
    if (m_nSortColumn >= 0) {
        addKeys();
        rearrange(shown);
    }
    return waiting > taken;
}

void CFileTableModel::reloadRow(std::size_t id) {
    if (id >= m_vPlaces.size()) {
        return;
    }
    refreshKey(id);
    QModelIndex const cell = index(static_cast<int>(m_vPlaces[id]), kTempoColumn);
    emit dataChanged(cell, cell);
}

// A percentage is no tempo: the row keeps its place until its result is there.
void CFileTableModel::refreshKey(std::size_t id) {
    if (m_nSortColumn != kTempoColumn || m_list.rowState(id).m_nPercent >= 0) {
        return;
    }
    CSortKey const key = makeKey(id);
    double const before = m_vKeys[id].m_fNumber;
    bool const same = std::isnan(key.m_fNumber) ? std::isnan(before) : key.m_fNumber == before;
    if (!same) {
        m_vKeys[id] = key;
        rearrange(0);
    }
}

void CFileTableModel::reloadAll() {
    if (!m_vOrder.empty()) {
        emit dataChanged(index(0, 0), index(rowCount() - 1, kColumnCount - 1));
    }
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
    for (std::size_t place = 0; place < m_vOrder.size(); ++place) {
        m_vPlaces[m_vOrder[place]] = place;
    }
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i) {
        int const row = static_cast<int>(m_vPlaces[ids[static_cast<std::size_t>(i)]]);
        after.push_back(index(row, before[i].column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}
