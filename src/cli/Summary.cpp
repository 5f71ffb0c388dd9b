// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Summary.h"

#include "cli/ExitCode.h"
#include "export/Json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace {

constexpr double kMinuteSeconds = 60.0;
constexpr std::int64_t kHourMinutes = 60;

/// `value`, which is positive, with `decimals`.
std::string Fixed(double value, int decimals) {
    std::array<char, 400> text{}; // Derived: the largest double has 309 digits before the point.
    char* const end = std::to_chars(text.data(), text.data() + text.size(), value,
                                    std::chars_format::fixed, decimals)
                          .ptr;
    return {text.data(), end};
}

/// ", N word" unless `count` is 0.
std::string Also(std::size_t count, char const* word) {
    return count == 0 ? "" : ", " + std::to_string(count) + " " + word;
}

} // namespace

void CSummary::Add(CReportRow const& row) {
    ++m_nRows;
    bool const isFailed = row.m_source == ETempoSource::None;
    // A damaged file has its answer, and that it isn't stored follows from the damage.
    bool const isDamaged = !isFailed && !row.m_sError.empty();
    m_bWarned = m_bWarned || isDamaged;
    bool const isFailure = isFailed || (row.m_bRefused && !isDamaged);
    m_bFailed = m_bFailed || isFailure;
    // Every file counts once, under its first name.
    if (row.m_bFurtherName) {
        ++m_nFurtherNames;
        return;
    }
    m_nFailures += isFailure ? 1 : 0;
    m_dHeardSeconds += row.m_dHeardSeconds;
    m_bPlan = m_bPlan || row.m_plan != EPlan::None;
    m_nToWrite += row.m_plan == EPlan::Write ? 1 : 0;
    m_nDiffering += row.m_plan == EPlan::Differ ? 1 : 0;
    m_nSkipped += row.m_plan == EPlan::Skip ? 1 : 0;
    m_nFailed += isFailed ? 1 : 0;
    bool const isHeard =
        row.m_source == ETempoSource::Analysis || row.m_source == ETempoSource::Length;
    m_nHeard += isHeard ? 1 : 0;
    m_nTooShort += row.m_bTooShort ? 1 : 0;
    bool const isKept = row.m_source == ETempoSource::Tag || row.m_bKept;
    m_nKept += isKept && row.m_plan != EPlan::Differ ? 1 : 0;
    m_nStored += row.m_writing == EWriting::Stored ? 1 : 0;
    m_nRefused += row.m_bRefused ? 1 : 0;
}

/// Seconds heard in a second; 0 when nothing was listened to.
double CSummary::Rate(std::chrono::duration<double> time) const {
    return time.count() > 0.0 ? m_dHeardSeconds / time.count() : 0.0;
}

std::string CSummary::Line(bool isWriting, std::chrono::duration<double> time) const {
    if (m_bPlan) {
        return std::to_string(m_nToWrite) + " to write, " + std::to_string(m_nKept) + " to keep, " +
               std::to_string(m_nDiffering) + " to keep that differ, " +
               std::to_string(m_nSkipped) + " to skip" +
               Also(m_nFurtherNames, m_nFurtherNames == 1 ? "further name" : "further names") +
               " in " + TimeText(time);
    }
    std::string const stored = isWriting ? ", " + std::to_string(m_nStored) + " stored" : "";
    return std::to_string(m_nHeard) + " heard" + stored + Also(m_nRefused, "not stored") +
           Also(m_nTooShort, "too short") + Also(m_nKept, isWriting ? "kept" : "known from tags") +
           Also(m_nFailed, "failed") +
           Also(m_nFurtherNames, m_nFurtherNames == 1 ? "further name" : "further names") + " in " +
           TimeText(time) + (m_dHeardSeconds > 0.0 ? ", " + RateText(Rate(time)) : "");
}

std::string CSummary::Json(std::chrono::duration<double> time, int exitCode) const {
    return CJsonObject()
        .Add("event", JsonText("end"))
        .Add("rows", std::to_string(m_nRows))
        .Add("heard", std::to_string(m_nHeard))
        .Add("stored", std::to_string(m_nStored))
        .Add("notStored", std::to_string(m_nRefused))
        .Add("kept", std::to_string(m_nKept))
        .Add("failed", std::to_string(m_nFailed))
        .Add("seconds", Fixed(time.count(), 3))
        .Add("rate", RateJson(Rate(time)))
        .Add("exit", std::to_string(exitCode))
        .Close();
}

int CSummary::ExitCode() const {
    if (m_bFailed) {
        return kExitFailed;
    }
    return m_bWarned ? kExitWarned : kExitDone;
}

std::string TimeText(std::chrono::duration<double> time) {
    double const seconds = time.count();
    if (seconds + 0.05 < kMinuteSeconds) { // as it is rounded below
        return Fixed(seconds, 1) + " s";
    }
    auto const whole = static_cast<std::int64_t>(std::max(seconds, kMinuteSeconds));
    std::int64_t const minutes = whole / 60;
    if (minutes < kHourMinutes) {
        return std::to_string(minutes) + " min " + std::to_string(whole % 60) + " s";
    }
    return std::to_string(minutes / kHourMinutes) + " h " + std::to_string(minutes % kHourMinutes) +
           " min";
}

std::string RateText(double rate) {
    constexpr double kWholeFrom = 9.95; // Derived: what is 10.0 with a decimal.
    return Fixed(rate, rate < kWholeFrom ? 1 : 0) + " times real time";
}

std::string RateJson(double rate) {
    return rate > 0.0 ? Fixed(rate, 1) : "null";
}
