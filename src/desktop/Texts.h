// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BpmView.h"

#include <QString>
#include <string>

/// Sentences that the window shows, made from what the list tells. Everything is translated and
/// follows the user's locale.
/// Thread: main.

/// Text of the list for the screen: bytes that are no text become replacement characters, control
/// characters blanks.
QString ReadableText(std::u16string const& text);

/// A tempo as the user writes numbers: only the decimal point changes. Anything else than a plain
/// number, such as a percentage, stays as it is.
QString TempoText(std::u16string const& tempo);

/// The number in a tempo text, as the list reads it; NaN when there is none above 0.
double TempoValue(std::u16string const& tempo);

/// Why a row's tempo is not in its file; empty when it is, or when there is none yet.
QString NoteText(CRowState const& row);

/// What went wrong with a row; empty when nothing did. That a file of its kind takes no tag is
/// nothing wrong.
QString ProblemText(CRowState const& row);

/// What is going on, for the status bar.
QString ActivityText(CBatchStatus const& status);

/// Overall progress of the batch in percent, 0 to 100. Without a batch it is 0.
int OverallPercent(CBatchStatus const& status);

/// The last component of a path.
QString FileNameOf(QString const& path);
