// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BpmView.h"
#include "app/Wishes.h"
#include "base/CString.h"

#include <QString>
#include <QStringList>
#include <cstddef>
#include <cstdint>
#include <set>

/// What the window tells about the list as a whole. Everything is translated and follows the
/// user's locale.
/// Thread: main.

/// What is going on, for the status bar; `problems` counts the rows that have one.
QString ActivityText(CBatchStatus const& status, std::size_t problems);

/// Overall progress of the batch in percent, 0 to 100. Without a batch it is 0.
int OverallPercent(CBatchStatus const& status);

/// What came of an addition: `added` rows, `known` paths that were in the list already. Empty when
/// all went as everybody expects. `wishes` tells which kinds count as music.
QString AddedText(std::size_t added, std::size_t known, QStringList const& names,
                  CWishes const& wishes);

/// How many files were left out for their kind, the kinds with the most first.
QString LeftOutText(std::set<CString> const& files);

/// What came of a run.
struct CRunSummary {
    std::size_t m_nHeard = 0;    ///< Files whose analysis came to an end.
    std::size_t m_nStored = 0;   ///< Of these, files that got the tempo in their tag.
    std::size_t m_nProblems = 0; ///< Things that went wrong.
    std::int64_t m_nMilliseconds = 0;
};

/// "301 analyzed in 1 min 9 s, 298 stored, 3 problems".
QString SummaryText(CRunSummary const& summary);

/// Why the window stays open.
QString ClosingText(CBatchStatus const& status);

/// How many rows are hidden, and that no file is harmed.
QString HiddenText(std::size_t count);

/// Folders that could not be read, the last of them by name.
QString FoldersText(std::size_t count, QString const& last);
