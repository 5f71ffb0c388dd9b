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

} // namespace

CProgress::CProgress(bool isWanted) : m_bWanted(isWanted && isatty(STDERR_FILENO) == 1) {
}

void CProgress::Show(std::size_t done, std::size_t total, int percent, std::string_view name) {
    auto const now = std::chrono::steady_clock::now();
    if (!m_bWanted || now - m_lastShown < kBetweenShows) {
        return;
    }
    m_lastShown = now;
    m_bShown = true;
    std::string const line = std::to_string(done) + " of " + std::to_string(total) + " files, " +
                             std::to_string(percent) + "%  " + Printable(name);
    // The last cell stays free: a full line would wrap on some terminals.
    std::string const text = kClearLine + CutToWidth(line, TerminalWidth(STDERR_FILENO) - 1);
    (void)std::fwrite(text.data(), 1, text.size(), stderr);
}

void CProgress::Clear() {
    if (m_bShown) {
        (void)std::fputs(kClearLine, stderr);
        m_bShown = false;
        m_lastShown = {};
    }
}
