// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/FileTableModel.h"

#include "desktop/Glyphs.h"
#include "desktop/Numbers.h"
#include "desktop/Texts.h"

#include <QStringList>
#include <algorithm>

namespace {

static_assert(static_cast<int>(kOtherColumn) == static_cast<int>(CFileTableModel::kColumnCount));

Qt::Alignment AlignmentOf(int column) {
    bool const isAtEnd = column < CFileTableModel::kColumnCount
                             ? column == CFileTableModel::kTempoColumn
                             : IsAtEnd(static_cast<EMoreColumn>(column));
    return (isAtEnd ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

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
    return parent.isValid() ? 0 : kColumnCount + static_cast<int>(m_vMore.size());
}

void CFileTableModel::addColumn(EMoreColumn column) {
    int const section = columnCount();
    beginInsertColumns({}, section, section);
    m_vMore.push_back(column);
    endInsertColumns();
}

void CFileTableModel::removeColumn(EMoreColumn column) {
    int const section = sectionOf(column);
    if (section >= 0) {
        beginRemoveColumns({}, section, section);
        m_vMore.erase(m_vMore.begin() + (section - kColumnCount));
        endRemoveColumns();
    }
}

int CFileTableModel::columnAt(int section) const {
    if (section < kColumnCount) {
        return section;
    }
    auto const place = static_cast<std::size_t>(section - kColumnCount);
    return place < m_vMore.size() ? m_vMore[place] : -1;
}

int CFileTableModel::sectionOf(int column) const {
    if (column < kColumnCount) {
        return column;
    }
    auto const place = std::find(m_vMore.begin(), m_vMore.end(), column);
    return place == m_vMore.end() ? -1 : kColumnCount + static_cast<int>(place - m_vMore.begin());
}

std::size_t CFileTableModel::idAt(int row) const {
    return m_vOrder[static_cast<std::size_t>(row)];
}

int CFileTableModel::rowOf(std::size_t id) const {
    return id < m_vPlaces.size() && m_vPlaces[id] != kNowhere ? static_cast<int>(m_vPlaces[id])
                                                              : -1;
}

QVariant CFileTableModel::data(QModelIndex const& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    std::size_t const id = idAt(index.row());
    int const column = columnAt(index.column());
    bool const isTempo = column == kTempoColumn;
    switch (role) {
    case Qt::DisplayRole:
        return textOf(id, column);
    case Qt::ToolTipRole:
        return tipOf(id);
    case Qt::TextAlignmentRole:
        return static_cast<int>(AlignmentOf(column));
    case Qt::DecorationRole:
        return isTempo && HasProblem(m_list.rowState(id)) ? QVariant(m_warning) : QVariant();
    case Qt::AccessibleDescriptionRole:
        return descriptionOf(id, column);
    case kProblemRole:
        return ProblemText(m_list.rowState(id));
    case kPathRole:
        return ReadableText(m_list.rowState(id).m_sPath);
    case kPlaceRole:
        return column == kFolderColumn;
    case kReadingRole:
        return isTempo && m_list.rowState(id).m_bReading;
    case kMarksRole:
        return isTempo ? marksRoleOf(id) : 0;
    case kUntitledRole:
        return column == kTitleColumn && isUntitled(id);
    case kAwaitsRole:
        return isTempo && awaitsAnalysis(id);
    case kPercentRole: {
        int const percent = m_list.rowState(id).m_nPercent;
        return isTempo && percent >= 0 ? QVariant(percent) : QVariant();
    }
    default:
        return {};
    }
}

QString CFileTableModel::textOf(std::size_t id, int column) const {
    if (column >= kColumnCount) {
        return MoreCell(static_cast<EMoreColumn>(column), m_list, id).m_sText;
    }
    std::u16string const text = m_list.objectValueForTableColumn(column, id);
    if (column == kTempoColumn) {
        return tempoTextOf(id, text);
    }
    bool const isUntitled = column == kTitleColumn && text.empty();
    return isUntitled ? FileNameOf(ReadableText(m_list.rowState(id).m_sPath)) : ReadableText(text);
}

QString CFileTableModel::tempoTextOf(std::size_t id, std::u16string const& tempo) const {
    CRowState const state = m_list.rowState(id);
    if (state.m_bReading) {
        return tr("reading");
    }
    return state.m_nPercent >= 0 ? PercentText(state.m_nPercent) : TempoText(tempo);
}

bool CFileTableModel::isUntitled(std::size_t id) const {
    return m_list.objectValueForTableColumn(kTitleColumn, id).empty();
}

bool CFileTableModel::awaitsAnalysis(std::size_t id) const {
    CRowState const state = m_list.rowState(id);
    return !state.m_bDone && state.m_nPercent < 0 &&
           !m_list.objectValueForTableColumn(kTempoColumn, id).empty();
}

// A tempo can be typed over, unless its row is analysed at this moment.
Qt::ItemFlags CFileTableModel::flags(QModelIndex const& index) const {
    Qt::ItemFlags const usual = QAbstractTableModel::flags(index);
    bool const isTempo = index.isValid() && index.column() == kTempoColumn;
    return isTempo && m_list.rowState(idAt(index.row())).m_nPercent < 0 ? usual | Qt::ItemIsEditable
                                                                        : usual;
}

// That a tempo could not be stored has a mark of its own.
int CFileTableModel::marksRoleOf(std::size_t id) const {
    CRowState const state = m_list.rowState(id);
    bool const isAlone = state.m_bNotInFile && !HasProblem(state);
    return (state.m_bByHand ? kByHand : 0) | (isAlone ? kNotInFile : 0);
}

// Faint letters and marks say it to the eye only.
QString CFileTableModel::descriptionOf(std::size_t id, int column) const {
    QStringList parts;
    if (column == kTempoColumn && awaitsAnalysis(id)) {
        parts << tr("still to be analyzed again");
    }
    int const marks = column == kTempoColumn ? marksRoleOf(id) : 0;
    if ((marks & kByHand) != 0) {
        parts << tr("set by hand");
    }
    if ((marks & kNotInFile) != 0) {
        parts << tr("not in the file");
    }
    parts << ProblemText(m_list.rowState(id));
    parts.removeAll(QString());
    return parts.join(QLatin1String(": "));
}

QString CFileTableModel::tipOf(std::size_t id) const {
    CRowState const state = m_list.rowState(id);
    QStringList lines{Isolated(ReadableText(state.m_sPath))};
    lines << ProblemText(state);
    if (awaitsAnalysis(id)) {
        lines << tr("This tempo is still to be analyzed again.");
    }
    if (state.m_bByHand) {
        lines << tr("This tempo was set by hand.");
    }
    if ((marksRoleOf(id) & kNotInFile) != 0) {
        lines << tr("The file doesn't have it in its tag.");
    }
    // Where there is no tempo, it matters little that files of this kind take none.
    if (!IsStoreFailure(state.m_writeProblem) &&
        state.m_outcome.m_problem == EAnalysisProblem::None) {
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
        return static_cast<int>(AlignmentOf(columnAt(section)));
    }
    bool const isMore = columnAt(section) >= kColumnCount;
    if (isMore && (role == Qt::ToolTipRole || role == Qt::AccessibleTextRole)) {
        return ColumnText(static_cast<EMoreColumn>(columnAt(section)));
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    if (isMore) {
        return HeadText(static_cast<EMoreColumn>(columnAt(section)));
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
