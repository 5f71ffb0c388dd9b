// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The text becomes words; a descent through "or", "and", "not" and comparisons makes the
// operations.

#include "export/SongFilter.h"

#include "base/Utf16.h"
#include "export/TakenSong.h"
#include "song/KeyCodes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

namespace {

using CNode = CSongFilter::CNode;
using EKind = CSongFilter::EKind;

constexpr int kMostNested = 100; // Fixed: brackets and nots in each other.
constexpr std::string_view kSpaces = " \t\r\n";
constexpr std::string_view kOperatorSigns = "=!<>~";

constexpr std::array<std::pair<std::string_view, EKind>, 8> kOperators = {
    {{"=", EKind::Equal},
     {"==", EKind::Equal},
     {"!=", EKind::NotEqual},
     {"<", EKind::Less},
     {"<=", EKind::LessOrEqual},
     {">", EKind::More},
     {">=", EKind::MoreOrEqual},
     {"~", EKind::Like}}};

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::ranges::for_each(
        lower, [](char& c) { c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return lower;
}

/// True when `text` holds `part`, in upper or lower case of any script.
bool Holds(std::string_view text, std::string_view part) {
    return LowerCase(DecodePath(text)).find(LowerCase(DecodePath(part))) != std::u16string::npos;
}

bool IsColumnOfKeys(CColumn const& column) {
    return column.m_sName == "harmony" || column.m_sName == "openKey" || column.m_sName == "key";
}

/// One word: a name or a value, an operator, or a bracket.
struct CWord {
    std::string m_sText;
    bool m_bQuoted = false;
};

/// Takes the words apart. Returns: false when a quotation mark is left open.
bool SplitWords(std::string_view text, std::vector<CWord>& words) {
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(kSpaces), text.size()));
        if (text.empty()) {
            return true;
        }
        std::size_t size = 1;
        if (text.front() == '\'' || text.front() == '"') {
            std::size_t const end = text.find(text.front(), 1);
            if (end == std::string_view::npos) {
                return false;
            }
            words.push_back({std::string(text.substr(1, end - 1)), true});
            size = end + 1;
        } else {
            if (kOperatorSigns.find(text.front()) != std::string_view::npos) {
                size = std::min(text.find_first_not_of(kOperatorSigns), text.size());
            } else if (text.front() != '(' && text.front() != ')') {
                size = std::min(text.find_first_of(" \t\r\n=!<>~()'\""), text.size());
            }
            words.push_back({std::string(text.substr(0, size))});
        }
        text.remove_prefix(size);
    }
}

/// Makes operations of words.
class CFilterParser {
public:
    CFilterParser(std::vector<CWord> words, CFilterProblem& problem)
        : m_vWords(std::move(words)), m_problem(problem) {}

    CNode Run() {
        CNode root = ParseEither(0);
        if (IsGood() && m_nNext < m_vWords.size()) {
            Fail(EFilterProblem::Unexpected);
        }
        return root;
    }

private:
    [[nodiscard]] bool IsGood() const { return m_problem.m_problem == EFilterProblem::None; }
    [[nodiscard]] std::string Here() const {
        return m_nNext < m_vWords.size() ? m_vWords[m_nNext].m_sText : std::string();
    }

    void Fail(EFilterProblem problem) { Fail(problem, Here()); }
    void Fail(EFilterProblem problem, std::string word) {
        if (IsGood()) {
            m_problem = {problem, std::move(word)};
        }
    }

    bool Take(std::string_view word) {
        bool const isHere = m_nNext < m_vWords.size() && !m_vWords[m_nNext].m_bQuoted &&
                            Lower(m_vWords[m_nNext].m_sText) == word;
        m_nNext += isHere ? 1 : 0;
        return isHere;
    }

    CNode ParseEither(int depth) {
        CNode node{.m_kind = EKind::Or};
        do {
            node.m_vParts.push_back(ParseAll(depth));
        } while (IsGood() && Take("or"));
        return node;
    }

    CNode ParseAll(int depth) {
        CNode node{.m_kind = EKind::And};
        do {
            node.m_vParts.push_back(ParseOne(depth));
        } while (IsGood() && Take("and"));
        return node;
    }

    CNode ParseOne(int depth) {
        if (depth > kMostNested) {
            Fail(EFilterProblem::Unexpected);
            return {};
        }
        if (Take("not")) {
            CNode node{.m_kind = EKind::Not};
            node.m_vParts.push_back(ParseOne(depth + 1));
            return node;
        }
        if (Take("(")) {
            CNode node = ParseEither(depth + 1);
            if (IsGood() && !Take(")")) {
                Fail(m_nNext < m_vWords.size() ? EFilterProblem::Unexpected
                                               : EFilterProblem::NoClosing);
            }
            return node;
        }
        return ParseComparison();
    }

    CNode ParseComparison() {
        CNode node;
        node.m_pColumn = FindColumn(Here());
        if (node.m_pColumn == nullptr) {
            Fail(EFilterProblem::UnknownColumn);
            return node;
        }
        ++m_nNext;
        auto const found = std::ranges::find(kOperators, std::string_view(Here()),
                                             &std::pair<std::string_view, EKind>::first);
        if (found == kOperators.end()) {
            Fail(EFilterProblem::NoOperator);
            return node;
        }
        node.m_kind = found->second;
        ++m_nNext;
        if (m_nNext >= m_vWords.size()) {
            Fail(EFilterProblem::NoValue, m_vWords.back().m_sText);
            return node;
        }
        TakeValue(node);
        return node;
    }

    void TakeValue(CNode& node) {
        std::string const& text = m_vWords[m_nNext].m_sText;
        if (node.m_kind == EKind::Like && IsColumnOfKeys(*node.m_pColumn)) {
            std::optional<CHarmony> const key = KeyNamed(text);
            if (!key) {
                return Fail(EFilterProblem::NoKey);
            }
            node.m_key = *key;
        } else if (node.m_pColumn->m_nDecimals != kTexts && !text.empty()) {
            if (node.m_kind == EKind::Like) {
                return Fail(EFilterProblem::NotForNumbers, std::string(node.m_pColumn->m_sName));
            }
            double number = 0.0;
            auto const [end, error] =
                std::from_chars(text.data(), text.data() + text.size(), number);
            if (error != std::errc() || end != text.data() + text.size()) {
                return Fail(EFilterProblem::NoNumber);
            }
            node.m_value = number;
        } else {
            node.m_value = text;
        }
        ++m_nNext;
    }

    std::vector<CWord> m_vWords;
    CFilterProblem& m_problem;
    std::size_t m_nNext = 0;
};

bool IsCellTrue(EKind kind, CCell const& cell, CCell const& value) {
    std::string const* const text = std::get_if<std::string>(&value);
    if (text != nullptr && text->empty() && (kind == EKind::Equal || kind == EKind::NotEqual)) {
        return std::holds_alternative<std::monostate>(cell) == (kind == EKind::Equal);
    }
    if (cell.index() != value.index()) {
        return false;
    }
    switch (kind) {
    case EKind::Equal:
        return cell == value;
    case EKind::NotEqual:
        return cell != value;
    case EKind::Less:
        return cell < value;
    case EKind::LessOrEqual:
        return cell <= value;
    case EKind::More:
        return cell > value;
    case EKind::MoreOrEqual:
        return cell >= value;
    default:
        return Holds(std::get<std::string>(cell), *text);
    }
}

bool IsTrue(CNode const& node, CTakenSong const& song) {
    auto const isTrue = [&](CNode const& part) { return IsTrue(part, song); };
    switch (node.m_kind) {
    case EKind::And:
        return std::ranges::all_of(node.m_vParts, isTrue);
    case EKind::Or:
        return std::ranges::any_of(node.m_vParts, isTrue);
    case EKind::Not:
        return std::ranges::none_of(node.m_vParts, isTrue);
    default:
        break;
    }
    if (node.m_kind == EKind::Like && IsColumnOfKeys(*node.m_pColumn)) {
        return DoKeysMix(song.m_harmony, node.m_key);
    }
    return IsCellTrue(node.m_kind, node.m_pColumn->m_pCellOf(song), node.m_value);
}

/// A number that a text begins with, and what follows it; one without comes after all others.
std::pair<double, std::string> NaturalParts(std::string const& text) {
    double number = std::numeric_limits<double>::max();
    char const* end = text.data();
    if (!text.empty() && text.front() >= '0' && text.front() <= '9') {
        end = std::from_chars(text.data(), text.data() + text.size(), number).ptr;
    }
    return {number, Lower(text.substr(static_cast<std::size_t>(end - text.data())))};
}

/// -1, 0 or 1, as `a` comes before `b`, beside it or behind it.
int Compare(CCell const& a, CCell const& b) {
    if (a.index() != b.index() || std::holds_alternative<std::monostate>(a)) {
        return 0;
    }
    if (double const* const number = std::get_if<double>(&a); number != nullptr) {
        return *number < std::get<double>(b) ? -1 : *number > std::get<double>(b) ? 1 : 0;
    }
    auto const first = NaturalParts(std::get<std::string>(a));
    auto const second = NaturalParts(std::get<std::string>(b));
    return first < second ? -1 : second < first ? 1 : 0;
}

} // namespace

std::optional<CHarmony> KeyNamed(std::string_view word) {
    std::string const wanted = Lower(word);
    for (EKeyMode const mode : {EKeyMode::Major, EKeyMode::Minor}) {
        for (std::int32_t tonic = 0; tonic < 12; ++tonic) {
            CHarmony key;
            key.m_eMode = mode;
            key.m_nTonic = tonic;
            if (wanted == Lower(CamelotCode(key)) || wanted == Lower(OpenKeyCode(key)) ||
                wanted == Lower(PlainKey(key))) {
                return key;
            }
        }
    }
    return std::nullopt;
}

bool DoKeysMix(CHarmony const& a, CHarmony const& b) {
    constexpr std::int32_t kFifth = 7; // Standard: semitones, as the next two.
    constexpr std::int32_t kOctave = 12;
    constexpr std::int32_t kToRelative = 3;
    if (a.m_eMode == EKeyMode::None || b.m_eMode == EKeyMode::None) {
        return false;
    }
    if (a.m_eMode != b.m_eMode) {
        std::int32_t const major = a.m_eMode == EKeyMode::Major ? a.m_nTonic : b.m_nTonic;
        std::int32_t const minor = a.m_eMode == EKeyMode::Major ? b.m_nTonic : a.m_nTonic;
        return (minor + kToRelative) % kOctave == major;
    }
    std::int32_t const apart = (a.m_nTonic - b.m_nTonic + kOctave) % kOctave;
    return apart == 0 || apart == kFifth || apart == kOctave - kFifth;
}

std::optional<CSongFilter> CSongFilter::Parse(std::string_view text, CFilterProblem& problem) {
    problem = {};
    std::vector<CWord> words;
    if (!SplitWords(text, words)) {
        problem = {EFilterProblem::NoClosing, std::string(text)};
        return std::nullopt;
    }
    CSongFilter filter;
    filter.m_root = CFilterParser(std::move(words), problem).Run();
    return problem.m_problem == EFilterProblem::None ? std::optional(std::move(filter))
                                                     : std::nullopt;
}

bool CSongFilter::Accepts(CTakenSong const& song) const {
    return IsTrue(m_root, song);
}

std::optional<CSongOrder> CSongOrder::Parse(std::string_view text, CFilterProblem& problem) {
    problem = {};
    CSongOrder order;
    while (true) {
        std::size_t const comma = std::min(text.find(','), text.size());
        std::string_view name = text.substr(0, comma);
        bool const isDown = name.starts_with('-');
        name.remove_prefix(isDown ? 1 : 0);
        order.m_vKeys.push_back({FindColumn(name), isDown});
        if (order.m_vKeys.back().m_pColumn == nullptr) {
            problem = {EFilterProblem::UnknownColumn, std::string(name)};
            return std::nullopt;
        }
        if (comma == text.size()) {
            return order;
        }
        text.remove_prefix(comma + 1);
    }
}

void CSongOrder::Sort(std::vector<CTakenSong>& songs) const {
    std::ranges::stable_sort(songs, [this](CTakenSong const& a, CTakenSong const& b) {
        for (CKey const& key : m_vKeys) {
            CCell const first = key.m_pColumn->m_pCellOf(a);
            CCell const second = key.m_pColumn->m_pCellOf(b);
            bool const hasFirst = !std::holds_alternative<std::monostate>(first);
            bool const hasSecond = !std::holds_alternative<std::monostate>(second);
            if (hasFirst != hasSecond) {
                return hasFirst;
            }
            int const compared = Compare(first, second);
            if (compared != 0) {
                return key.m_bDown ? compared > 0 : compared < 0;
            }
        }
        return false;
    });
}
