// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/RowQuery.h"

#include "desktop/Numbers.h"
#include "export/SongFilter.h"
#include "export/TakenSong.h"

#include <QRegularExpression>
#include <algorithm>
#include <optional>

namespace {

constexpr char kKeyMark[] = "key:";
constexpr char kStateMark[] = "state:";

/// The key, as tags have it, that a person means by `word`; empty for none.
QString KeyOf(QString const& word) {
    std::optional<CHarmony> const key = KeyNamed(word.toStdString());
    return key ? QString::fromStdString(PlainKey(*key)) : QString();
}

} // namespace

QString FoldedText(QString const& text) {
    constexpr char16_t kFirstWithMarks = 0x80; // Standard: Unicode; below are plain letters.
    if (std::all_of(text.begin(), text.end(),
                    [](QChar letter) { return letter.unicode() < kFirstWithMarks; })) {
        return text.toCaseFolded();
    }
    QString folded;
    for (QChar const letter : text.normalized(QString::NormalizationForm_KD)) {
        if (letter.category() != QChar::Mark_NonSpacing) {
            folded += letter;
        }
    }
    return folded.toCaseFolded();
}

CRowQuery::CRowQuery(QString const& text) {
    static QRegularExpression const blanks(QStringLiteral("\\s+"));
    for (QString const& word : text.split(blanks, Qt::SkipEmptyParts)) {
        take(word);
    }
}

void CRowQuery::take(QString const& word) {
    static QRegularExpression const range(
        QStringLiteral("^(\\d+(?:\\.\\d+)?)[-\u2013](\\d+(?:\\.\\d+)?)$"));
    QRegularExpressionMatch const numbers = range.match(WithPlainDigits(word));
    if (numbers.hasMatch()) {
        m_vRanges.emplace_back(numbers.captured(1).toDouble(), numbers.captured(2).toDouble());
    } else if (word.startsWith(QLatin1String(kKeyMark), Qt::CaseInsensitive)) {
        QString const key = word.mid(static_cast<qsizetype>(sizeof kKeyMark) - 1);
        if (!key.isEmpty()) {
            m_vKeys.push_back(KeyOf(key));
        }
    } else if (word.startsWith(QLatin1String(kStateMark), Qt::CaseInsensitive)) {
        m_vStates << word.mid(static_cast<qsizetype>(sizeof kStateMark) - 1).toLower();
        m_vStates.removeAll(QString());
    } else {
        m_vWords << FoldedText(word);
    }
}

bool CRowQuery::isEmpty() const {
    return m_vWords.isEmpty() && m_vStates.isEmpty() && m_vKeys.empty() && m_vRanges.empty();
}

// The beginning of a state's name is enough.
bool CRowQuery::isInState(QString const& state, CRowFacts const& row) {
    auto const is = [&](char const* name, bool isSo) {
        return isSo && QLatin1String(name).startsWith(state);
    };
    return is("todo", row.m_bToDo) || is("review", row.m_bToReview) || is("hand", row.m_bByHand) ||
           is("unstored", row.m_bNotInFile) || is("problem", row.m_bProblem);
}

bool CRowQuery::matches(CRowFacts const& row) const {
    return std::all_of(m_vRanges.begin(), m_vRanges.end(),
                       [&](auto const& range) {
                           return row.m_fBpm >= range.first && row.m_fBpm <= range.second;
                       }) &&
           std::all_of(m_vStates.begin(), m_vStates.end(),
                       [&](QString const& state) { return isInState(state, row); }) &&
           std::all_of(m_vKeys.begin(), m_vKeys.end(),
                       [&](QString const& key) { return !key.isEmpty() && key == row.m_sKey; }) &&
           std::all_of(m_vWords.begin(), m_vWords.end(),
                       [&](QString const& word) { return row.m_sText.contains(word); });
}
