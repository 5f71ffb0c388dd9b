// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Output.h"

#include "cli/Interrupt.h"
#include "cli/Message.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

namespace {

constexpr std::size_t kHeldBytes = 65536;       // Tuned: pipes take as much at once.
constexpr std::size_t kUsualTerminalWidth = 80; // Standard: what VT100s had.

std::string ReasonOf(int error) {
    return std::generic_category().message(error);
}

} // namespace

COutput::~COutput() {
    if (m_nFile > STDERR_FILENO) {
        (void)close(m_nFile);
    }
}

bool COutput::Open(std::string const& path) {
    if (path.empty() || path == "-") {
        return true;
    }
    m_sName = path;
    m_nFile = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (m_nFile < 0) {
        ReportProblem(m_sName, ReasonOf(errno));
        return false;
    }
    return true;
}

bool COutput::Write(std::string_view text) {
    m_sHeld += text;
    // A person wants to see each row as it comes, a file has time.
    if (m_sHeld.size() >= kHeldBytes || IsTerminal()) {
        Flush();
    }
    return m_nError == 0;
}

void COutput::Flush() {
    std::string_view rest = m_sHeld;
    while (!rest.empty() && m_nError == 0) {
        ssize_t const done = write(m_nFile, rest.data(), rest.size());
        if (done >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(done));
        } else if (errno != EINTR) {
            m_nError = errno;
        }
    }
    m_sHeld.clear();
}

bool COutput::Finish() {
    Flush();
    if (m_nFile > STDERR_FILENO) {
        if (close(m_nFile) != 0 && m_nError == 0) {
            m_nError = errno;
        }
        m_nFile = -1;
    }
    if (m_nError == EPIPE) {
        CInterrupt::EndByBrokenPipe();
    }
    if (m_nError != 0) {
        ReportProblem(m_sName, "can't be written: " + ReasonOf(m_nError));
    }
    return m_nError == 0;
}

bool COutput::IsTerminal() const {
    return isatty(m_nFile) == 1;
}

std::size_t TerminalWidth(int file) {
    if (isatty(file) != 1) {
        return 0;
    }
    if (char const* const columns = std::getenv("COLUMNS"); columns != nullptr) {
        std::string_view const text = columns;
        std::size_t width = 0;
        auto const [end, error] = std::from_chars(text.begin(), text.end(), width);
        if (error == std::errc() && end == text.end() && width > 0) {
            return width;
        }
    }
    winsize size{};
    bool const isKnown = ioctl(file, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : kUsualTerminalWidth;
}

bool AreColoursWelcome() {
    char const* const refused = std::getenv("NO_COLOR");
    char const* const terminal = std::getenv("TERM");
    return (refused == nullptr || *refused == '\0') && terminal != nullptr &&
           std::string_view(terminal) != "dumb";
}
