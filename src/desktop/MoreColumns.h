// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BpmView.h"

#include <QString>
#include <cstddef>
#include <limits>

/// The columns that the table can have beside title, artist and tempo. Their numbers follow those
/// of the three.
/// Thread: main.
enum EMoreColumn {
    kOtherColumn = 3, ///< The likeliest other reading of the tempo, where there is doubt.
    kKeyColumn,
    kLengthColumn,
    kStateColumn,
    kKindColumn,
    kFolderColumn,
    kStoredColumn, ///< Whether the tempo is in the file.
    kAllColumns,
};

/// What a cell shows, and what it is sorted by.
struct CMoreCell {
    QString m_sText; ///< Empty when nothing is known.
    /// Of cells with a number; else NaN, and the text counts.
    double m_fNumber = std::numeric_limits<double>::quiet_NaN();
};

[[nodiscard]] CMoreCell MoreCell(EMoreColumn column, IFileList const& list, std::size_t id);

/// True when the column is sorted by numbers.
[[nodiscard]] bool HasNumbers(EMoreColumn column);

/// True when its texts stand at their column's end, as numbers do.
[[nodiscard]] bool IsAtEnd(EMoreColumn column);

/// What its head says, in as few letters as will do.
[[nodiscard]] QString HeadText(EMoreColumn column);

/// What it is, in words.
[[nodiscard]] QString ColumnText(EMoreColumn column);

/// Letters that most of its texts fit into.
[[nodiscard]] int UsualLetters(EMoreColumn column);
