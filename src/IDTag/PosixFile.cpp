// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/PosixFile.h"

#include <cerrno>
#include <sys/file.h>
#include <unistd.h>

CDescriptor& CDescriptor::operator=(CDescriptor&& other) noexcept {
    std::swap(m_nNumber, other.m_nNumber);
    return *this;
}

CDescriptor::~CDescriptor() {
    if (IsOpen()) {
        ::close(m_nNumber);
    }
}

bool IsSameFile(struct stat const& one, struct stat const& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool IsSameContent(struct stat const& one, struct stat const& other) {
    return IsSameFile(one, other) && one.st_size == other.st_size &&
           one.st_mtim.tv_sec == other.st_mtim.tv_sec &&
           one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

EWriteProblem LockFile(int file) {
    while (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) {
            return EWriteProblem::InUse;
        }
        if (errno != EINTR) {
            return EWriteProblem::NotWritable;
        }
    }
    return EWriteProblem::None;
}

bool ReadAllAt(int file, std::span<std::uint8_t> room, std::uint64_t offset) {
    while (!room.empty()) {
        ssize_t const count = ::pread(file, room.data(), room.size(), static_cast<off_t>(offset));
        if (count == 0 || (count < 0 && errno != EINTR)) {
            return false;
        }
        if (count > 0) {
            room = room.subspan(static_cast<std::size_t>(count));
            offset += static_cast<std::uint64_t>(count);
        }
    }
    return true;
}

EWriteProblem WriteAllAt(int file, std::span<std::uint8_t const> bytes, std::uint64_t offset) {
    while (!bytes.empty()) {
        ssize_t const count =
            ::pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count == 0) {
            return EWriteProblem::WriteFailed;
        }
        if (count < 0 && errno != EINTR) {
            return ProblemOf(errno);
        }
        if (count > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
            offset += static_cast<std::uint64_t>(count);
        }
    }
    return EWriteProblem::None;
}

EWriteProblem ProblemOf(int error) {
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return EWriteProblem::DiskFull;
    case EFBIG:
        return EWriteProblem::FileTooLarge;
    default:
        return EWriteProblem::WriteFailed;
    }
}
