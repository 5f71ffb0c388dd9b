// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/FileTableModel.h"

#include "desktop/Glyphs.h"
#include "desktop/Numbers.h"
#include "desktop/Texts.h"

#include <QStringList>

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

int CFileTableModel::rowOf(std::size_t id) const {
    return id < m_vPlaces.size() && m_vPlaces[id] != kNowhere ? static_cast<int>(m_vPlaces[id])
                                                              : -1;
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
    case kReadingRole:
        return isTempo && m_list.rowState(id).m_bReading;
    case kMarksRole:
        return isTempo ? marksRoleOf(id) : 0;
    case kUntitledRole:
        return index.column() == kTitleColumn && isUntitled(id);
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
    QStringList lines{ReadableText(state.m_sPath)};
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
