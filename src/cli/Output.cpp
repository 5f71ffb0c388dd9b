// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Output.h"

#include "cli/ExitCode.h"
#include "cli/Interrupt.h"
#include "cli/Message.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

constexpr std::size_t kHeldBytes = 65536;       // Tuned: pipes take as much at once.
constexpr std::size_t kUsualTerminalWidth = 80; // Standard: what VT100s had.

} // namespace

COutput::~COutput() {
    if (m_nFile > STDERR_FILENO) {
        (void)close(m_nFile);
    }
}

int COutput::Open(std::string const& path, ReplaceCheck const& check) {
    if (path.empty() || path == "-") {
        return kExitDone;
    }
    m_sName = path;
    struct stat info {};
    bool const isOld = stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
    m_nFile = OpenFile();
    if (m_nFile < 0) {
        ReportProblem(m_sName, SystemReason(errno));
        return kExitOutput;
    }
    if (!isOld) {
        return kExitDone; // there is nothing to be replaced
    }
    std::string const problem = check ? check(path, m_nFile) : "";
    if (!problem.empty()) {
        ReportProblem(m_sName, problem);
        return kExitUsage;
    }
    if (ftruncate(m_nFile, 0) != 0) {
        ReportProblem(m_sName, SystemReason(errno));
        return kExitOutput;
    }
    return kExitDone;
}

/// Opens the file, or makes it, with what it holds: readable when it is there. Negative, with
/// `errno` set, when that can't be done.
int COutput::OpenFile() {
    struct stat info {};
    bool const isThere = stat(m_sName.c_str(), &info) == 0;
    bool const isRegular = isThere && S_ISREG(info.st_mode);
    int const flags = isRegular ? O_RDWR : isThere ? O_WRONLY : O_WRONLY | O_CREAT | O_EXCL;
    int const file = open(m_sName.c_str(), flags | O_CLOEXEC, 0666);
    if (file < 0 && errno == EEXIST) {
        return open(m_sName.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666); // a link to nothing
    }
    return file;
}

bool COutput::Write(std::string_view text) {
    m_sHeld += text;
    // A person wants to see each row as it comes, a file has time.
    if (m_sHeld.size() >= kHeldBytes || IsTerminal()) {
        return Flush();
    }
    return m_nError == 0;
}

bool COutput::Flush() {
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
    return m_nError == 0;
}

bool COutput::Finish() {
    (void)Flush();
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
        ReportProblem(m_sName, "can't be written: " + SystemReason(m_nError));
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
