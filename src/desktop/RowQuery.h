// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <utility>
#include <vector>

/// What a filter knows of a row.
struct CRowFacts {
    QString m_sText;     ///< Title, artist and file name as `FoldedText` makes them.
    double m_fBpm = 0.0; ///< NaN for none.
    QString m_sKey;      ///< As tags have it, "Am"; empty for none.
    bool m_bToDo = false;
    bool m_bToReview = false;
    bool m_bByHand = false;
    bool m_bNotInFile = false;
    bool m_bProblem = false;
};

/// Text in which upper and lower case, and letters with marks and without, are the same.
QString FoldedText(QString const& text);

/// What a person typed to find rows: words, all of which must be there; a range of tempos
/// ("120-130"); a key in letters, Camelot or Open Key ("key:8A"); a state ("state:todo", "review",
/// "hand", "unstored", "problem"). A part that is not complete yet lets every row through.
/// Thread: any.
class CRowQuery {
public:
    CRowQuery() = default;
    explicit CRowQuery(QString const& text);

    [[nodiscard]] bool isEmpty() const;
    [[nodiscard]] bool asksForTempo() const { return !m_vRanges.empty(); }
    [[nodiscard]] bool asksForKey() const { return !m_vKeys.empty(); }
    [[nodiscard]] bool matches(CRowFacts const& row) const;

private:
    void take(QString const& word);
    [[nodiscard]] static bool isInState(QString const& state, CRowFacts const& row);

    QStringList m_vWords;
    QStringList m_vStates;
    std::vector<QString> m_vKeys; // Each must be the row's; empty: nobody's.
    std::vector<std::pair<double, double>> m_vRanges;
};
