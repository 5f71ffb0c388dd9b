// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Summary.h"

#include "cli/ExitCode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace {

constexpr double kMinuteSeconds = 60.0;
constexpr std::int64_t kHourMinutes = 60;

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
    m_bFailed = m_bFailed || isFailed || (row.m_bRefused && !isDamaged);
    // Every file counts once, under its first name.
    if (row.m_bFurtherName) {
        ++m_nFurtherNames;
        return;
    }
    m_bPlan = m_bPlan || row.m_plan != EPlan::None;
    m_nToWrite += row.m_plan == EPlan::Write ? 1 : 0;
    m_nDiffering += row.m_plan == EPlan::Differ ? 1 : 0;
    m_nSkipped += row.m_plan == EPlan::Skip ? 1 : 0;
    m_nFailed += isFailed ? 1 : 0;
    m_nHeard += row.m_source == ETempoSource::Analysis ? 1 : 0;
    bool const isKept = row.m_source == ETempoSource::Tag || row.m_bKept;
    m_nKept += isKept && row.m_plan != EPlan::Differ ? 1 : 0;
    m_nStored += row.m_writing == EWriting::Stored ? 1 : 0;
    m_nRefused += row.m_bRefused ? 1 : 0;
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
           Also(m_nKept, isWriting ? "kept" : "known from tags") + Also(m_nFailed, "failed") +
           Also(m_nFurtherNames, m_nFurtherNames == 1 ? "further name" : "further names") + " in " +
           TimeText(time);
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
        std::array<char, 32> text{};
        char* const end = std::to_chars(text.data(), text.data() + text.size(), seconds,
                                        std::chars_format::fixed, 1)
                              .ptr;
        return std::string(text.data(), end) + " s";
    }
    auto const whole = static_cast<std::int64_t>(std::max(seconds, kMinuteSeconds));
    std::int64_t const minutes = whole / 60;
    if (minutes < kHourMinutes) {
        return std::to_string(minutes) + " min " + std::to_string(whole % 60) + " s";
    }
    return std::to_string(minutes / kHourMinutes) + " h " + std::to_string(minutes % kHourMinutes) +
           " min";
}
