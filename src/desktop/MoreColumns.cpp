// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/MoreColumns.h"

#include "desktop/FileTableModel.h"
#include "desktop/Numbers.h"
#include "desktop/PaneTexts.h"
#include "desktop/SoundNames.h"
#include "desktop/Texts.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>
#include <algorithm>
#include <cmath>

namespace {

class CMoreColumns {
    Q_DECLARE_TR_FUNCTIONS(MoreColumns)
};

/// A tempo that was set by hand was doubted by whoever set it.
CMoreCell OtherCell(IFileList const& list, std::size_t id) {
    CRowState const state = list.rowState(id);
    if (!state.m_bToReview && !state.m_bByHand) {
        return {};
    }
    double const bpm =
        TempoValue(list.objectValueForTableColumn(CFileTableModel::kTempoColumn, id));
    std::vector<CTempoCandidate> const readings = list.rowCandidates(id);
    auto const other = std::ranges::find_if(readings, [bpm](CTempoCandidate const& reading) {
        return !AreSameTempo(static_cast<double>(reading.m_fBpm), bpm);
    });
    if (other == readings.end()) {
        return {};
    }
    auto const number = static_cast<double>(other->m_fBpm);
    return {QLocale().toString(number, 'f', kTempoDecimals), number};
}

/// Sorted around the circle of fifths, so that what mixes well stands together.
CMoreCell KeyCell(CRowState const& state) {
    QString const camelot = CamelotName(state.m_sKey);
    if (camelot.isEmpty()) {
        return {};
    }
    double const half = camelot.endsWith(QLatin1Char('B')) ? 0.5 : 0.0;
    return {QString("%1 · %2").arg(QString::fromStdString(state.m_sKey), camelot),
            camelot.chopped(1).toDouble() + half};
}

CMoreCell LengthCell(CRowState const& state) {
    CDecodeReport const& report = state.m_outcome.m_report;
    if (report.m_dHeardSeconds <= 0.0 || report.m_nFileRate == 0) {
        return {};
    }
    double const seconds = report.m_dHeardSeconds - static_cast<double>(report.m_nSkippedFrames) /
                                                        static_cast<double>(report.m_nFileRate);
    return {LengthText(seconds), seconds};
}

QString StateText(CRowState const& state) {
    if (state.m_nPercent >= 0) {
        return state.m_bReading ? CMoreColumns::tr("reading") : CMoreColumns::tr("analyzing");
    }
    if (!state.m_bDone) {
        return CMoreColumns::tr("to do");
    }
    if (state.m_bByHand) {
        return CMoreColumns::tr("by hand");
    }
    if (state.m_bFromTag) {
        return CMoreColumns::tr("from the tag");
    }
    switch (state.m_outcome.m_problem) {
    case EAnalysisProblem::None:
        break;
    case EAnalysisProblem::NoBeat:
        return CMoreColumns::tr("no beat");
    default:
        return CMoreColumns::tr("failed");
    }
    if (state.m_outcome.m_report.IsDamaged()) {
        return CMoreColumns::tr("damaged");
    }
    return state.m_bToReview ? CMoreColumns::tr("to review") : CMoreColumns::tr("analyzed");
}

/// By the sound where the file was heard, else by its name.
QString KindText(CRowState const& state) {
    QString const kind = KindName(state.m_outcome.m_report);
    QString const path = ReadableText(state.m_sPath);
    return kind.isEmpty() ? QFileInfo(path).suffix().toUpper() : kind;
}

QString StoredText(CRowState const& state) {
    if (!state.m_bDone || state.m_nPercent >= 0) {
        return {};
    }
    return state.m_bInFile ? CMoreColumns::tr("yes") : CMoreColumns::tr("no");
}

} // namespace

CMoreCell MoreCell(EMoreColumn column, IFileList const& list, std::size_t id) {
    switch (column) {
    case kOtherColumn:
        return OtherCell(list, id);
    case kKeyColumn:
        return KeyCell(list.rowState(id));
    case kLengthColumn:
        return LengthCell(list.rowState(id));
    case kStateColumn:
        return {.m_sText = StateText(list.rowState(id))};
    case kKindColumn:
        return {.m_sText = KindText(list.rowState(id))};
    case kFolderColumn:
        return {.m_sText = QFileInfo(ReadableText(list.rowState(id).m_sPath)).path()};
    case kStoredColumn:
        return {.m_sText = StoredText(list.rowState(id))};
    case kAllColumns:
        break;
    }
    return {};
}

bool HasNumbers(EMoreColumn column) {
    return column == kOtherColumn || column == kKeyColumn || column == kLengthColumn;
}

bool IsAtEnd(EMoreColumn column) {
    return column == kOtherColumn || column == kLengthColumn;
}

QString HeadText(EMoreColumn column) {
    return column == kOtherColumn ? CMoreColumns::tr("Or", "another tempo") : ColumnText(column);
}

QString ColumnText(EMoreColumn column) {
    switch (column) {
    case kOtherColumn:
        return CMoreColumns::tr("Other reading");
    case kKeyColumn:
        return CMoreColumns::tr("Key", "of music");
    case kLengthColumn:
        return CMoreColumns::tr("Length");
    case kStateColumn:
        return CMoreColumns::tr("State");
    case kKindColumn:
        return CMoreColumns::tr("Kind");
    case kFolderColumn:
        return CMoreColumns::tr("Folder");
    case kStoredColumn:
        return CMoreColumns::tr("Stored");
    case kAllColumns:
        break;
    }
    return {};
}

int UsualLetters(EMoreColumn column) {
    switch (column) {
    case kOtherColumn:
    case kLengthColumn:
        return 7;
    case kKeyColumn:
        return 11;
    case kStateColumn:
        return 14;
    case kFolderColumn:
        return 24;
    default:
        return 8;
    }
}
