// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Progress.h"

#include "cli/Message.h"
#include "cli/Output.h"
#include "cli/Text.h"

#include <cstdio>
#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds kBetweenShows(100); // Fixed: quicker can't be read.
constexpr char kClearLine[] = "\r\x1B[K";               // Standard: ECMA-48, erase in line.

std::string LineOf(CProgressState const& state) {
    if (state.m_nTotal == 0) {
        return "searching for files";
    }
    // The percents mean nothing before all files are known.
    std::string const line = std::to_string(state.m_nDone) + " of " +
                             std::to_string(state.m_nTotal) +
                             (state.m_bTotalKnown ? " files, " : " files so far  ");
    std::string const percents =
        state.m_bTotalKnown ? std::to_string(state.m_nPercent) + "%  " : "";
    return line + percents + Printable(state.m_sName);
}

} // namespace

CProgress::CProgress(bool isWanted) : m_bWanted(isWanted && isatty(STDERR_FILENO) == 1) {
}

void CProgress::Show(CProgressState const& state) {
    auto const now = std::chrono::steady_clock::now();
    if (!m_bWanted || now - m_lastShown < kBetweenShows) {
        return;
    }
    m_lastShown = now;
    m_bShown = true;
    // The last cell stays free: a full line would wrap on some terminals.
    std::string const text =
        kClearLine + CutToWidth(LineOf(state), TerminalWidth(STDERR_FILENO) - 1);
    (void)std::fwrite(text.data(), 1, text.size(), stderr);
}

void CProgress::Clear() {
    if (m_bShown) {
        (void)std::fputs(kClearLine, stderr);
        m_bShown = false;
        m_lastShown = {};
    }
}
