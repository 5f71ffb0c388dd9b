// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/PosixFile.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

/// True when this process may not make files of any length.
bool HasSizeLimit() {
    rlimit limit = {};
    return ::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
}

} // namespace

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

ELock LockFile(int file) {
    while (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        switch (errno) {
        case EINTR:
            continue;
        case EWOULDBLOCK:
            return ELock::Busy;
        case EBADF:
            return ELock::OnlyForWriters;
        default:
            return ELock::None;
        }
    }
    return ELock::Taken;
}

bool IsBeingWritten(int file) {
    int const flags = ::fcntl(file, F_GETFL);
    if (flags < 0 || (flags & O_ACCMODE) != O_RDONLY) {
        return false;
    }
    // A lease isn't given while somebody writes. Nobody needs to be told when it is broken in the
    // moment until it is given back: SIGURG is ignored unless asked for.
    if (::fcntl(file, F_SETSIG, SIGURG) != 0 || ::fcntl(file, F_SETLEASE, F_RDLCK) != 0) {
        return errno == EAGAIN;
    }
    (void)::fcntl(file, F_SETLEASE, F_UNLCK);
    return false;
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

void SetWrittenTime(int file, std::optional<std::int64_t> time) {
    if (!time) {
        return;
    }
    std::int64_t rest = *time % kNanosecondsPerSecond;
    rest += rest < 0 ? kNanosecondsPerSecond : 0; // Before 1970 too, the rest counts forwards.
    timespec const written = {.tv_sec = (*time - rest) / kNanosecondsPerSecond,
                              .tv_nsec = static_cast<long>(rest)};
    timespec const times[] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, written};
    (void)::futimens(file, times);
}

EWriteProblem ProblemOf(int error) {
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return EWriteProblem::DiskFull;
    case EFBIG:
        return HasSizeLimit() ? EWriteProblem::FileSizeLimit : EWriteProblem::FileTooLarge;
    case EPERM:
    case EACCES:
    case EBUSY:
        return EWriteProblem::MayNotReplace;
    case ENOMEM:
        return EWriteProblem::NoMemory;
    default:
        return EWriteProblem::WriteFailed;
    }
}
