// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/SourceFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

std::string ReasonOf(int error) {
    return std::generic_category().message(error);
}

std::int64_t ChangeTimeOf(struct stat const& status) {
    constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
    return std::int64_t{status.st_mtim.tv_sec} * kNanosecondsPerSecond + status.st_mtim.tv_nsec;
}

} // namespace

CSourceFile::~CSourceFile() {
    if (m_nFile >= 0) {
        (void)close(m_nFile);
    }
}

std::string CSourceFile::Open(std::string const& path) {
    m_sPath = path;
    // Without blocking, opening a pipe that nobody writes returns at once; files don't mind.
    m_nFile = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (m_nFile < 0) {
        return ReasonOf(errno);
    }
    struct stat status {};
    if (fstat(m_nFile, &status) != 0) {
        return ReasonOf(errno);
    }
    if (S_ISDIR(status.st_mode)) {
        return "is a folder, not a file";
    }
    if (!S_ISREG(status.st_mode)) {
        return "is not a regular file";
    }
    if (status.st_size == 0) {
        return "the file is empty";
    }
    m_nSize = status.st_size;
    m_nChangeTime = ChangeTimeOf(status);
    return {};
}

std::int64_t CSourceFile::Read(std::uint8_t* buffer, std::size_t size) {
    for (;;) {
        ssize_t const done = read(m_nFile, buffer, size);
        if (done >= 0) {
            return done;
        }
        if (errno != EINTR) {
            m_nReadError = errno;
            return -1;
        }
    }
}

std::int64_t CSourceFile::Seek(std::int64_t position) {
    return position < 0 ? -1 : lseek(m_nFile, position, SEEK_SET);
}

std::string CSourceFile::Explain(std::string const& reason) const {
    if (m_nReadError != 0) {
        return "can't be read: " + ReasonOf(m_nReadError);
    }
    struct stat opened {};
    struct stat named {};
    if (fstat(m_nFile, &opened) != 0) {
        return ReasonOf(errno);
    }
    if (stat(m_sPath.c_str(), &named) != 0) {
        return "vanished while it was read";
    }
    bool const isSame = opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
    if (!isSame || opened.st_size != m_nSize || ChangeTimeOf(opened) != m_nChangeTime) {
        return "changed while it was read";
    }
    return reason;
}
