// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/ExportValues.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>

namespace {

constexpr double kMostMilliseconds = 10'000.0; // Fixed: more is no decoder's delay.
constexpr double kSecondMilliseconds = 1000.0;

std::string ReasonOf(CFilterProblem const& problem) {
    std::string const word = "'" + problem.m_sWord + "'";
    switch (problem.m_problem) {
    case EFilterProblem::None:
        break;
    case EFilterProblem::UnknownColumn:
        return problem.m_sWord.empty() ? "a column is missing" : word + " is no column";
    case EFilterProblem::NoOperator:
        return (problem.m_sWord.empty() ? "nothing" : word) +
               " stands where one of = != < <= > >= ~ has to";
    case EFilterProblem::NoValue:
        return "no value follows " + word;
    case EFilterProblem::NoNumber:
        return word + " is no number";
    case EFilterProblem::NoKey:
        return word + " is no key such as 8A, 1m or Am";
    case EFilterProblem::NotForNumbers:
        return "~ is for texts and keys, and " + word + " is a number";
    case EFilterProblem::NoClosing:
        return "a bracket or quotation mark is left open";
    case EFilterProblem::Unexpected:
        return word + " has no place there";
    }
    return {};
}

[[noreturn]] void Refuse(char const* option, std::string const& reason) {
    throw CLI::ValidationError(option, reason);
}

} // namespace

CSongFilter FilterOf(std::string const& text) {
    CFilterProblem problem;
    std::optional<CSongFilter> filter = CSongFilter::Parse(text, problem);
    if (!filter) {
        Refuse("--where", ReasonOf(problem));
    }
    return *std::move(filter);
}

CSongOrder OrderOf(std::string const& text) {
    CFilterProblem problem;
    std::optional<CSongOrder> order = CSongOrder::Parse(text, problem);
    if (!order) {
        Refuse("--sort", ReasonOf(problem));
    }
    return *std::move(order);
}

std::vector<CColumn const*> ColumnsOf(std::string const& text) {
    std::vector<CColumn const*> columns;
    for (std::string const& name : CLI::detail::split(text, ',')) {
        columns.push_back(FindColumn(name));
        if (columns.back() == nullptr) {
            Refuse("--columns", "'" + name + "' is no column");
        }
    }
    return columns;
}

char DelimiterOf(std::string const& text) {
    if (text == "tab" || text == "\t") {
        return '\t';
    }
    if (text != "," && text != ";" && text != "|") {
        Refuse("--delimiter", "'" + text + "' is none of , ; | and tab");
    }
    return text.front();
}

std::pair<std::string, std::string> BaseOf(std::string const& text) {
    std::size_t const equals = text.find('=');
    if (equals == std::string::npos || equals == 0 || equals + 1 == text.size()) {
        Refuse("--base", "'" + text + "' is no pair of folders such as /mnt/music=D:/Music");
    }
    return {text.substr(0, equals), text.substr(equals + 1)};
}

std::optional<double> OffsetOf(std::string const& text) {
    if (text == "auto") {
        return std::nullopt;
    }
    double milliseconds = 0.0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), milliseconds);
    bool const isNumber = error == std::errc() && end == text.data() + text.size() &&
                          std::abs(milliseconds) <= kMostMilliseconds;
    if (!isNumber) {
        Refuse("--offset", "'" + text + "' is neither auto nor milliseconds up to 10000");
    }
    return milliseconds / kSecondMilliseconds;
}
