// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BpmView.h"

#include <QKeySequence>
#include <QString>
#include <QStringList>
#include <string>

class QAction;

/// Sentences that the window shows, made from what the list tells. Everything is translated and
/// follows the user's locale.
/// Thread: main.

/// Text of the list for the screen: bytes that are no text become replacement characters, control
/// characters blanks.
QString ReadableText(std::u16string const& text);

/// The text as a tool tip that wraps; signs of mark-up in it are shown, not obeyed.
QString PlainTip(QString const& text);

/// Why a row's tempo is not in its file, or what else was done to its tag; empty when there is
/// nothing to tell.
QString NoteText(CRowState const& row);

/// What went wrong with a row; empty when nothing did. That a file of its kind takes no tag is
/// nothing wrong.
QString ProblemText(CRowState const& row);

/// What an action's menu entry says, without marks for its key and without the dots of a question.
QString PlainActionText(QAction const& action);

/// Why a tag could not be written; empty for `None`.
QString WriteProblemText(EWriteProblem problem);

/// The last component of a path.
QString FileNameOf(QString const& path);

/// A name as part of a sentence: where one of the two runs from right to left, neither changes the
/// order of the other's words.
QString Isolated(QString const& name);

/// Signs and figures that are read from left to right in every language: "8A", "×2", "Ctrl+,".
QString LeftToRight(QString const& text);

/// The keys as the desktop writes them.
QString ShortcutText(QKeySequence const& keys);

/// Parts of a sentence with commas between, or with semicolons, as the language writes them.
QString WithCommas(QStringList const& parts);
QString WithSemicolons(QStringList const& parts);

/// Facts in their order, with dots between; empty ones are left out.
QString JoinedFacts(QStringList facts);
