// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "export/Columns.h"
#include "song/Harmony.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

enum class EFilterProblem {
    None,
    UnknownColumn, // the word isn't the name of one
    NoOperator,    // none follows the column; the word does
    NoValue,       // none follows the operator
    NoNumber,      // the word is no number, and the column has numbers
    NoKey,         // the word is no key in any notation
    NotForNumbers, // the word is a column of numbers, which "~" isn't for
    NoClosing,     // a bracket or a quotation mark is left open
    Unexpected,    // the word has no place where it stands
};

/// Why a filter or an order can't be read.
struct CFilterProblem {
    EFilterProblem m_problem = EFilterProblem::None;
    std::string m_sWord; // where it shows
};

/// Chooses songs by what columns tell of them, such as
///     tempo>=120 and tempo<=130 and (harmony~8A or not artist='Some One')
/// Comparisons are = != < <= > >= and ~, which for "harmony", "openKey" and "key" means a key that
/// mixes well with the one named (the same, a fifth up or down, the relative one) and for other
/// texts that the value is a part, whatever the case of ASCII letters. "and" binds closer than
/// "or". What a song doesn't have is in no comparison but = and != with an empty text.
class CSongFilter {
public:
    /// Returns: nothing, and why, when `text` can't be read.
    static std::optional<CSongFilter> Parse(std::string_view text, CFilterProblem& problem);

    [[nodiscard]] bool Accepts(CTakenSong const& song) const;

    enum class EKind { And, Or, Not, Equal, NotEqual, Less, LessOrEqual, More, MoreOrEqual, Like };

    /// One operation; a comparison has a column and a value, the others have parts.
    struct CNode {
        EKind m_kind = EKind::And;
        std::vector<CNode> m_vParts = {};
        CColumn const* m_pColumn = nullptr;
        CCell m_value = {};
        CHarmony m_key = {}; // of `Like` for a column of keys
    };

private:
    CNode m_root;
};

/// The key that `word` names in any of the notations, in either case; nothing when there is none.
[[nodiscard]] std::optional<CHarmony> KeyNamed(std::string_view word);

/// True when songs in the two keys mix well: the same key, a fifth up or down, or the relative one.
[[nodiscard]] bool DoKeysMix(CHarmony const& a, CHarmony const& b);

/// An order of songs: columns, each upwards or, with "-" before it, downwards.
class CSongOrder {
public:
    /// `text`: names with commas between, such as "tempo,-title". Returns: as `CSongFilter::Parse`.
    static std::optional<CSongOrder> Parse(std::string_view text, CFilterProblem& problem);

    /// Puts songs in this order; what the columns don't tell apart stays as it is. Numbers that
    /// texts begin with count as such, so that 2A comes before 10A; songs without come last.
    void Sort(std::vector<CTakenSong>& songs) const;

private:
    struct CKey {
        CColumn const* m_pColumn;
        bool m_bDown;
    };

    std::vector<CKey> m_vKeys;
};
