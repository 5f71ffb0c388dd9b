// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Progress.h"

#include "cli/Message.h"
#include "cli/Output.h"
#include "cli/Summary.h"
#include "cli/Text.h"
#include "export/Json.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds kBetweenShows(100); // Fixed: quicker can't be read.
constexpr char kClearLine[] = "\r\x1B[K";               // Standard: ECMA-48, erase in line.
constexpr double kLongestSeconds = 1e9;                 // Fixed: a guess beyond that is none.

/// "42 s left  ", in whole seconds, so that the line is quiet.
std::string LeftText(std::optional<double> const& left) {
    constexpr double kLongestInSeconds = 60.0;
    if (!left || !(*left < kLongestSeconds)) {
        return "";
    }
    double const seconds = std::ceil(*left);
    std::string const text = seconds < kLongestInSeconds
                                 ? std::to_string(static_cast<std::int64_t>(seconds)) + " s"
                                 : TimeText(std::chrono::duration<double>(seconds));
    return text + " left  ";
}

} // namespace

std::string ProgressLine(CProgressState const& state) {
    if (state.m_nTotal == 0) {
        return "searching for files";
    }
    // The percents mean nothing before all files are known.
    std::string line = std::to_string(state.m_nDone) + " of " + std::to_string(state.m_nTotal) +
                       (state.m_bTotalKnown ? " files, " : " files so far  ");
    if (state.m_bTotalKnown) {
        line += std::to_string(state.m_nPercent) + "%  ";
    }
    if (state.m_dRate > 0.0) {
        line += RateText(state.m_dRate) + "  ";
    }
    return line + LeftText(state.m_left) + Printable(state.m_sName);
}

std::string ProgressJson(CProgressState const& state) {
    bool const hasLeft = state.m_left && *state.m_left < kLongestSeconds;
    return CJsonObject()
        .Add("event", JsonText("progress"))
        .Add("done", std::to_string(state.m_nDone))
        .Add("total", std::to_string(state.m_nTotal))
        .Add("totalKnown", state.m_bTotalKnown ? "true" : "false")
        .Add("percent", state.m_bTotalKnown ? std::to_string(state.m_nPercent) : "null")
        .Add("rate", RateJson(state.m_dRate))
        .Add("secondsLeft", hasLeft ? JsonNumber(static_cast<float>(*state.m_left)) : "null")
        .Add("name", JsonText(state.m_sName))
        .Close();
}

CProgress::CProgress(EProgress form)
    : m_form(form == EProgress::Line && isatty(STDERR_FILENO) != 1 ? EProgress::None : form) {
}

bool CProgress::IsDue() const {
    return m_form != EProgress::None &&
           std::chrono::steady_clock::now() - m_lastShown >= kBetweenShows;
}

void CProgress::Show(CProgressState const& state) {
    if (!IsDue()) {
        return;
    }
    m_lastShown = std::chrono::steady_clock::now();
    std::string text;
    if (m_form == EProgress::Json) {
        text = ProgressJson(state) + "\n";
    } else {
        m_bShown = true;
        // The last cell stays free: a full line would wrap on some terminals.
        text = kClearLine + CutToWidth(ProgressLine(state), TerminalWidth(STDERR_FILENO) - 1);
    }
    (void)std::fwrite(text.data(), 1, text.size(), stderr);
}

void CProgress::Clear() {
    if (m_bShown) {
        (void)std::fputs(kClearLine, stderr);
        m_bShown = false;
        m_lastShown = {};
    }
}
