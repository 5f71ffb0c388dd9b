// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/OptionValues.h"

#include "export/SongJson.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace {

constexpr std::array<std::pair<std::string_view, EReportFormat>, 4> kReportFormats = {
    {{"table", EReportFormat::Table},
     {"csv", EReportFormat::Csv},
     {"json", EReportFormat::Json},
     {"jsonl", EReportFormat::JsonLines}}};

} // namespace

EReportFormat FormatOf(std::string const& name) {
    std::string const lower = CLI::detail::to_lower(name);
    for (auto const& [known, format] : kReportFormats) {
        if (known == lower) {
            return format;
        }
    }
    throw CLI::ValidationError("--format", "'" + name + "' is none of table, csv, json and jsonl");
}

std::size_t JobsOf(std::string const& text) {
    std::size_t jobs = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), jobs);
    if (error != std::errc() || end != text.data() + text.size() || jobs < 1 || jobs > kMostJobs) {
        throw CLI::ValidationError("--jobs", "'" + text + "' is no number from 1 to " +
                                                 std::to_string(kMostJobs));
    }
    return jobs;
}

std::size_t CountOf(std::string const& option, std::string const& text) {
    std::size_t count = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (error != std::errc() || end != text.data() + text.size() || count < 1) {
        throw CLI::ValidationError(option, "'" + text + "' is no whole number from 1");
    }
    return count;
}

EProgress ProgressOf(std::string const& word) {
    if (word != "line" && word != "json" && word != "none") {
        throw CLI::ValidationError("--progress", "'" + word + "' is none of line, json and none");
    }
    return word == "line" ? EProgress::Line : word == "json" ? EProgress::Json : EProgress::None;
}

double ShareOf(std::string const& text) {
    constexpr double kPercent = 100.0;
    double percent = 0.0;
    char const* const last = text.data() + text.size();
    auto const [end, error] = std::from_chars(text.data(), last, percent);
    bool const isShare = error == std::errc() && std::string_view(end, last) == "%" &&
                         percent >= 0.0 && percent <= kPercent;
    if (!isShare) {
        throw CLI::ValidationError("--only-if-off", "'" + text + "' is no share from 0% to 100%");
    }
    return percent / kPercent;
}

std::pair<double, double> RangeOf(std::string const& text) {
    constexpr double kOctave = 2.0;
    double slowest = 0.0;
    double fastest = 0.0;
    char const* const last = text.data() + text.size();
    auto const [colon, first] = std::from_chars(text.data(), last, slowest);
    bool const isPair = first == std::errc() && colon != last && *colon == ':';
    auto const [end, second] = std::from_chars(isPair ? colon + 1 : last, last, fastest);
    bool const isRange = isPair && second == std::errc() && end == last && slowest >= 1.0 &&
                         fastest >= kOctave * slowest && fastest <= 1000.0;
    if (!isRange) {
        throw CLI::ValidationError("--range", "'" + text +
                                                  "' is no range such as 70:180, whose end is at "
                                                  "least twice its beginning");
    }
    return {slowest, fastest};
}

std::vector<std::string> FieldsOf(std::string const& names) {
    std::vector<std::string_view> const known = SongJsonFields();
    std::vector<std::string> fields;
    for (std::string const& name : CLI::detail::split(names, ',')) {
        if (std::ranges::find(known, name) == known.end()) {
            throw CLI::ValidationError("--fields",
                                       "'" + name + "' is none of " + CLI::detail::join(known));
        }
        fields.push_back(name);
    }
    return fields;
}

int DecimalsOf(std::string const& text) {
    if (text != "0" && text != "1" && text != "2") {
        throw CLI::ValidationError("--round", "'" + text + "' is none of 0, 1 and 2");
    }
    return text.front() - '0';
}

bool KeepsVersion(std::string const& word) {
    if (word != "keep" && word != "2.3") {
        throw CLI::ValidationError("--id3", "'" + word + "' is neither keep nor 2.3");
    }
    return word == "keep";
}
