// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/SourceFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

CSourceFile::~CSourceFile() {
    if (m_nFile >= 0) {
        (void)close(m_nFile);
    }
}

EDecodeProblem CSourceFile::Fail(int error) {
    m_nError = error;
    return EDecodeProblem::SystemError;
}

EDecodeProblem CSourceFile::Open(std::string const& path) {
    m_sPath = path;
    // Without blocking, opening a pipe that nobody writes returns at once; files don't mind.
    m_nFile = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    return LookAtFile();
}

EDecodeProblem CSourceFile::Adopt(int descriptor) {
    m_nFile = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    return LookAtFile();
}

EDecodeProblem CSourceFile::LookAtFile() {
    struct stat status {};
    if (m_nFile < 0 || fstat(m_nFile, &status) != 0) {
        return Fail(errno);
    }
    if (S_ISDIR(status.st_mode)) {
        return EDecodeProblem::IsFolder;
    }
    if (!S_ISREG(status.st_mode)) {
        return EDecodeProblem::NotRegular;
    }
    if (status.st_size == 0) {
        return EDecodeProblem::Empty;
    }
    m_identity = IdentityOf(status);
    return EDecodeProblem::None;
}

void CSourceFile::EndAt(std::int64_t size) {
    m_bEndsEarly = size < m_identity.m_nSize;
    m_identity.m_nSize = std::min(size, m_identity.m_nSize);
}

std::int64_t CSourceFile::Read(std::uint8_t* buffer, std::size_t size) {
    if (m_bEndsEarly) {
        std::int64_t const rest = m_identity.m_nSize - lseek(m_nFile, 0, SEEK_CUR);
        size = std::min(size, static_cast<std::size_t>(std::max<std::int64_t>(rest, 0)));
    }
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

std::int64_t CSourceFile::ReadAt(std::int64_t place, std::span<std::uint8_t> bytes) const {
    std::int64_t const rest = std::max<std::int64_t>(m_identity.m_nSize - place, 0);
    std::size_t const count = std::min(bytes.size(), static_cast<std::size_t>(rest));
    ssize_t done = -1;
    do {
        done = pread(m_nFile, bytes.data(), count, place);
    } while (done < 0 && errno == EINTR);
    return done;
}

std::int64_t CSourceFile::Seek(std::int64_t position) {
    return position < 0 ? -1 : lseek(m_nFile, position, SEEK_SET);
}

EDecodeProblem CSourceFile::Explain(EDecodeProblem problem) {
    if (m_nReadError != 0) {
        return Fail(m_nReadError);
    }
    auto const opened = IdentityOf(m_nFile);
    if (!opened) {
        return Fail(errno);
    }
    auto const named = IdentityAt(m_sPath);
    if (!named) {
        return EDecodeProblem::Vanished;
    }
    return *opened == m_identity && named->IsSameFile(m_identity) ? problem
                                                                  : EDecodeProblem::Changed;
}
